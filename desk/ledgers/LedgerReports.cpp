#include "LedgerReports.h"

#include "LedgerSql.h"

#include "desk/core/PartyPicker.h"
#include "host/Text.h"

#include <stdexcept>

namespace qx::desk {

using namespace ledger;

ChosenAccount FindAccount(CompanyDb& db, std::string_view name) {
    const std::string wanted = Trim(name);
    if (wanted.empty()) throw std::runtime_error("Type the party's name, or choose it from the list with F2.");
    auto found = db.OpenRecordset("SELECT MCD, MHD FROM FAMASTER WHERE UPPER(MHD)=" + SqlQuote(UpperCase(wanted)) +
                                  " ORDER BY MCD");
    if (found->EndOfRows()) throw std::runtime_error("There is no account named \"" + wanted + "\".");
    ChosenAccount account{found->Field(0).AsInt(), found->Field(1).AsText()};
    found->MoveNext();
    if (!found->EndOfRows())
        throw std::runtime_error("Several accounts are named \"" + wanted +
                                 "\": give each its own name in the masters to see its ledger.");
    return account;
}

PrintJob PartyLedgerJob(CompanyDb& db, const ChosenAccount& party, const Period& period) {
    PrintJob job;
    job.reportName = "PartyLedger";
    job.title = "Ledger Account";
    job.title2 = party.name + "   " + period.from.ToDisplay() + " to " + period.to.ToDisplay();
    job.columns = {{"Date", kDateWidth, Align::Left},      {"Book", 700, Align::Left},
                   {"Vch No.", 900, Align::Right},         {"Narration", 3600, Align::Left},
                   {"Debit", kMoneyWidth, Align::Right},   {"Credit", kMoneyWidth, Align::Right},
                   {"Balance", 1900, Align::Right}};
    const std::string account = "A.DCD=" + std::to_string(party.code);

    Amount balance;
    {
        auto opening = db.OpenRecordset("SELECT SUM(A.DAMT) FROM FADATA A WHERE " + account + " AND " + kInAccounts +
                                        " AND (A.DVCHDATE<" + db.DateLiteral(period.from) + " OR " + kOpeningEntry +
                                        ")");
        balance = opening->Field(0).AsAmount();
    }
    Amount debits = balance > Amount() ? balance : Amount();
    Amount credits = balance < Amount() ? -balance : Amount();
    job.rows.push_back({{period.from.ToDisplay(), "", "", "Opening Balance", Money(debits), Money(credits),
                         BalanceText(balance)},
                        ""});

    auto rows = db.OpenRecordset(
        "SELECT A.DVCHDATE, A.DBOOK, A.VOUCHERID, N.NARRATION, A.DAMT FROM FADATA A LEFT JOIN FANAR N ON "
        "N.NARRATIONID=A.NARRATIONID WHERE " + account + " AND A.DVCHDATE BETWEEN " + db.DateLiteral(period.from) +
        " AND " + db.DateLiteral(period.to) + " AND " + kInAccounts + " AND NOT " + kOpeningEntry +
        " ORDER BY A.DVCHDATE, A.VOUCHERID, A.DSRNO");
    DayText day;
    for (; !rows->EndOfRows(); rows->MoveNext()) {
        const Amount amount = rows->Field(4).AsAmount();
        balance += amount;
        (amount > Amount() ? debits : credits) += amount.Abs();
        job.rows.push_back({{day(rows->Field(0).AsDate()), rows->Field(1).AsText(), rows->Field(2).AsText(),
                             rows->Field(3).AsText(), amount > Amount() ? Money(amount) : "",
                             amount < Amount() ? Money(-amount) : "", BalanceText(balance)},
                            ""});
    }
    job.rows.push_back({{"", "", "", "Totals", Total(debits), Total(credits), ""}, "*hline1*totals*"});
    job.rows.push_back({{"", "", "", "Closing Balance", "", "", BalanceText(balance)}, "*headingfonts*"});
    return job;
}

PrintJob DayBookJob(CompanyDb& db, const Period& period) {
    PrintJob job;
    job.reportName = "DayBook";
    job.title = "Day Book";
    job.title2 = period.from == period.to ? period.from.Format("dd/MM/yyyy (dddd)")
                                          : period.from.ToDisplay() + " to " + period.to.ToDisplay();
    job.columns = {{"Date", kDateWidth, Align::Left},    {"Vch No.", 900, Align::Right},
                   {"Book", 700, Align::Left},           {"Account", 3000, Align::Left},
                   {"Narration", 3000, Align::Left},     {"Debit", kMoneyWidth, Align::Right},
                   {"Credit", kMoneyWidth, Align::Right}};
    auto rows = db.OpenRecordset(
        "SELECT A.DVCHDATE, A.VOUCHERID, A.DBOOK, M.MHD, A.DCD, N.NARRATION, A.DAMT FROM FADATA A LEFT JOIN "
        "FAMASTER M ON M.MCD=A.DCD LEFT JOIN FANAR N ON N.NARRATIONID=A.NARRATIONID WHERE A.DVCHDATE BETWEEN " +
        db.DateLiteral(period.from) + " AND " + db.DateLiteral(period.to) + " AND " + kInAccounts +
        " ORDER BY A.DVCHDATE, A.VOUCHERID, A.DSRNO");
    Amount debits, credits;
    std::int64_t voucher = -1;
    DayText day;
    for (; !rows->EndOfRows(); rows->MoveNext()) {
        const Amount amount = rows->Field(6).AsAmount();
        (amount > Amount() ? debits : credits) += amount.Abs();
        // A voucher's date, number and book stand on its first row, a blank line before it.
        const bool first = rows->Field(1).AsLong() != voucher;
        voucher = rows->Field(1).AsLong();
        std::string account = rows->Field(3).AsText();
        if (rows->Field(3).IsNull()) account = "Account " + rows->Field(4).AsText() + " (not in the masters)";
        job.rows.push_back({{first ? day(rows->Field(0).AsDate()) : "", first ? rows->Field(1).AsText() : "",
                             first ? rows->Field(2).AsText() : "", std::move(account), rows->Field(5).AsText(),
                             amount > Amount() ? Money(amount) : "", amount < Amount() ? Money(-amount) : ""},
                            first && !job.rows.empty() ? "*blanklinebefore*" : ""});
    }
    job.rows.push_back({{"", "", "", "Totals", "", Total(debits), Total(credits)}, "*hline1*totals*"});
    return job;
}

} // namespace qx::desk
