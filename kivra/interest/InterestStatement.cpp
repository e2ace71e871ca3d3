#include "InterestStatement.h"

namespace kivra {
namespace {

using qx::Amount;

bool IsFirst(const InterestTerms& terms) { return terms.screen == InterestScreen::First; }

// The opening row's book: "0B" on the first screen, the letters "OB" on the second.
const char* OpeningBook(const InterestTerms& terms) { return IsFirst(terms) ? "0B" : "OB"; }

// Rows left out of the grace base: the opening row on the first screen; on the second only a
// row of book "O", which no row has, so that its opening row and in-period opening entries
// count.
bool InGraceBase(const InterestTerms& terms, const StatementLine& line) {
    return line.book != (IsFirst(terms) ? "0B" : "O");
}

Amount Days(qx::Date from, qx::Date to) { return Amount::FromInt(from.DaysUntil(to)); }

// Above 0 a debit; anything else a credit, so that a nil balance shows 0.00 as a credit.
void ShowAmount(StatementLine& line, Amount amount) {
    if (amount > Amount()) line.debit = amount;
    else line.credit = -amount;
}

void AddTotals(InterestStatement& statement) {
    const InterestTerms& terms = statement.terms;
    StatementTotals totals;
    for (const StatementLine& line : statement.lines) {
        const Amount debit = line.debit.value_or(Amount()), credit = line.credit.value_or(Amount());
        totals.debit += debit;
        totals.credit += credit;
        totals.drInterest += line.drInterest.value_or(Amount());
        totals.crInterest += line.crInterest.value_or(Amount());
        totals.interest += line.interest.value_or(Amount());
        if (InGraceBase(terms, line)) totals.graceBase += terms.graceOn == GraceOn::Credit ? credit : debit;
    }
    totals.graceInterest =
        InterestOn(totals.graceBase, terms.rate, terms.YearLength(), Amount::FromInt(terms.creditDays));
    // The grace always shrinks the interest towards 0, whichever side it is on.
    totals.afterGrace = totals.interest >= Amount() ? totals.interest - totals.graceInterest
                                                    : totals.interest + totals.graceInterest;
    totals.closing = statement.lines.back().balance;
    totals.afterInterest = totals.closing + totals.afterGrace;
    statement.totals = totals;
}

} // namespace

int InterestTerms::YearLength() const {
    if (!IsFirst(*this)) return totalDays;
    return method == InterestMethod::Zimidar ? 360 : 365;
}

int InterestTerms::RecalculateYear() const { return IsFirst(*this) ? 360 : totalDays; }

Amount InterestOn(Amount amount, Amount rate, int yearLength, Amount days) {
    const Amount product = amount * rate;
    const double interest = product.ToDouble() / 100 / yearLength * days.ToDouble();
    return Amount::FromDouble(interest).Round(2);
}

InterestStatement WorkOutInterest(const InterestTerms& terms, const qx::Period& period, LedgerExtract ledger) {
    InterestStatement statement{terms, period, {}, {}};
    const bool zimidar = terms.method == InterestMethod::Zimidar;
    auto& lines = statement.lines;
    lines.reserve(ledger.entries.size() + 1);

    StatementLine& opening = lines.emplace_back();
    opening.date = period.from;
    opening.book = OpeningBook(terms);
    opening.narration = "Opening Balance";
    ShowAmount(opening, ledger.opening);
    Amount balance = ledger.opening.Round(2);
    opening.balance = balance;

    qx::Date previous = period.from;
    for (LedgerEntry& entry : ledger.entries) {
        StatementLine line;
        line.serial = static_cast<int>(lines.size());
        line.date = entry.date;
        line.book = std::move(entry.book);
        line.narration = std::move(entry.narration);
        ShowAmount(line, entry.amount);
        line.rate = terms.rate;
        if (zimidar) {
            line.days = Days(entry.date, period.to);
            const Amount interest = InterestOn(entry.amount.Abs(), terms.rate, terms.YearLength(), *line.days);
            (entry.amount > Amount() ? line.drInterest : line.crInterest) = interest;
        } else {
            lines.back().days = Days(previous, entry.date);
            previous = entry.date;
        }
        balance = (balance + entry.amount).Round(2);
        line.balance = balance;
        lines.push_back(std::move(line));
    }
    // The To date counts as a day. Method 2 computed the last entry's interest on one day
    // fewer, and keeps it until Recalculate.
    lines.back().days = Days(lines.back().date, period.to) + Amount::FromInt(1);

    if (!zimidar)
        for (StatementLine& line : lines)
            if (line.days && *line.days > Amount())
                line.interest = InterestOn(line.balance, terms.rate, terms.YearLength(), *line.days);
    AddTotals(statement);
    return statement;
}

void Recalculate(InterestStatement& statement) {
    const int year = statement.terms.RecalculateYear();
    for (StatementLine& line : statement.lines) {
        if (line.serial == 0) continue;
        const Amount rate = line.rate.value_or(Amount()), days = line.days.value_or(Amount());
        const Amount debit = line.debit.value_or(Amount());
        if (!debit.IsZero()) line.drInterest = InterestOn(debit, rate, year, days);
        else line.crInterest = InterestOn(line.credit.value_or(Amount()), rate, year, days);
    }
    // Only the Dr.Intr and Cr.Intr totals are worked out again; the rest stands as calculated.
    StatementTotals& totals = statement.totals;
    totals.drInterest = totals.crInterest = Amount();
    for (const StatementLine& line : statement.lines) {
        totals.drInterest += line.drInterest.value_or(Amount());
        totals.crInterest += line.crInterest.value_or(Amount());
    }
}

} // namespace kivra
