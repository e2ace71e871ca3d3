#include "InterestGrid.h"

namespace kivra {
namespace {

using qx::Amount;

std::string Money(const std::optional<Amount>& amount) {
    return amount ? qx::FormatAmount(*amount, "c2") : std::string();
}

std::optional<Amount> Cell(const qx::ui::Grid& grid, int row, int col) {
    const std::string& text = grid.TextMatrix(row, col);
    if (text.empty()) return std::nullopt;
    return qx::TextToAmount(text);
}

// Lays the lines out; a day's many entries, and every entry's rate, share one text each.
class LineLayout {
public:
    void Add(qx::PrintJob& job, const StatementLine& line) {
        std::vector<std::string> cells(kStatementCols);
        if (line.serial > 0) cells[kSerialCol] = std::to_string(line.serial);
        cells[kDateCol] = Shown(line.date);
        cells[kBookCol] = line.book;
        cells[kNarrationCol] = line.narration;
        cells[kDebitCol] = Money(line.debit);
        cells[kCreditCol] = Money(line.credit);
        cells[kBalanceCol] = qx::FormatAmount(line.balance, "c2");
        if (line.days) cells[kDaysCol] = qx::FormatAmount(*line.days, "C0");
        if (line.rate) cells[kRateCol] = Shown(*line.rate);
        cells[kDrInterestCol] = Money(line.drInterest);
        cells[kCrInterestCol] = Money(line.crInterest);
        cells[kInterestCol] = Money(line.interest);
        job.rows.push_back({std::move(cells), {}});
    }

private:
    const std::string& Shown(qx::Date date) {
        if (!dateText_ || date != date_) dateText_ = (date_ = date).ToDisplay();
        return *dateText_;
    }
    const std::string& Shown(Amount rate) {
        if (!rateText_ || rate != rate_) rateText_ = (rate_ = rate).ToPlainString();
        return *rateText_;
    }

    qx::Date date_;
    std::optional<std::string> dateText_;
    Amount rate_;
    std::optional<std::string> rateText_;
};

void AddFooter(qx::PrintJob& job, const InterestStatement& statement) {
    const StatementTotals& totals = statement.totals;
    auto row = [&job](std::string marks = {}) -> std::vector<std::string>& {
        job.rows.push_back({std::vector<std::string>(kStatementCols), std::move(marks)});
        return job.rows.back().cells;
    };
    auto& total = row("*hline1*");
    total[kNarrationCol] = "Total";
    total[kDebitCol] = Money(totals.debit);
    total[kCreditCol] = Money(totals.credit);
    total[kDrInterestCol] = Money(totals.drInterest);
    total[kCrInterestCol] = Money(totals.crInterest);
    total[kInterestCol] = Money(totals.interest);
    if (statement.terms.method == InterestMethod::Zimidar) {
        auto& zimidar = row();
        zimidar[kDebitCol] = "Total Debit";
        zimidar[kCreditCol] = "Balance(Cr-Dr)";
        // The second screen captions the same two figures again, beside them.
        if (statement.terms.screen == InterestScreen::Second) {
            zimidar[kBalanceCol] = "Total Dr(Intr)";
            zimidar[kDaysCol] = "Balance";
        }
        zimidar[kDrInterestCol] = Money(totals.drInterest);
        zimidar[kCrInterestCol] = Money(totals.crInterest - totals.drInterest);
    }
    auto& grace = row();
    grace[kBalanceCol] = "Grace Days";
    grace[kDaysCol] = std::to_string(statement.terms.creditDays);
    grace[kInterestCol] = Money(totals.graceInterest);
    auto& rate = row();
    rate[kBalanceCol] = "Interest @";
    rate[kDaysCol] = statement.terms.rate.ToPlainString() + "%";
    rate[kInterestCol] = Money(totals.afterGrace);
    auto& closing = row();
    closing[kBalanceCol] = "Closing Bal";
    closing[kInterestCol] = Money(totals.closing);
    auto& after = row();
    after[kDaysCol] = "After Inter.";
    after[kInterestCol] = DrCr(totals.afterInterest);
}

} // namespace

std::string DrCr(Amount amount) {
    return qx::FormatAmount(amount.Abs(), "c2") + (amount >= Amount() ? "Dr" : "Cr");
}

qx::PrintJob StatementJob(const InterestStatement& statement) {
    const bool zimidar = statement.terms.method == InterestMethod::Zimidar;
    const bool second = statement.terms.screen == InterestScreen::Second;
    const int methodTwo = zimidar ? 1100 : 0, methodOne = zimidar ? 0 : 1100;
    using qx::Align;
    qx::PrintJob job;
    job.reportName = second ? "KivraInterest2" : "KivraInterest";
    job.columns = {{second ? "SNo." : "Sr.", 500, Align::Right},
                   {"Date", 1100, Align::Left},
                   {"Book", 600, Align::Left},
                   {"Narration", 3000, Align::Left},
                   {"Debit", 1400, Align::Right},
                   {"Credit", 1600, Align::Right},
                   {"C.Bal", 1500, Align::Right},
                   {"Days", 1100, Align::Right},
                   {"Rate", 0, Align::Right},
                   {"Dr.Intr", methodTwo, Align::Right},
                   {"Cr.Intr", methodTwo, Align::Right},
                   {"Interest", methodOne, Align::Right}};
    job.rows.reserve(statement.lines.size() + 7);
    LineLayout layout;
    for (const StatementLine& line : statement.lines) layout.Add(job, line);
    AddFooter(job, statement);
    return job;
}

void ReadEdits(const qx::ui::Grid& grid, InterestStatement& statement) {
    const int lines = std::min(static_cast<int>(statement.lines.size()), grid.Rows() - 1);
    for (int row = 2; row <= lines; ++row) { // the opening row is not recalculated
        StatementLine& line = statement.lines[static_cast<std::size_t>(row - 1)];
        line.debit = Cell(grid, row, kDebitCol);
        line.credit = Cell(grid, row, kCreditCol);
        line.days = Cell(grid, row, kDaysCol);
        line.rate = Cell(grid, row, kRateCol);
    }
}

} // namespace kivra
