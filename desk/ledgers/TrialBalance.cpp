// The trial balance and the outstanding list: balances as on a day, account by account under
// their groups.
#include "LedgerReports.h"

#include "LedgerSql.h"

namespace qx::desk {
namespace {

using namespace ledger;

// The chart's groups of parties: those who owe the firm and those it owes.
constexpr int kSundryDebtors = 40;
constexpr int kSundryCreditors = 180;

// A group's accounts under its heading, closed by its sub totals; the grand totals of every
// group come last.
class GroupedBalances {
public:
    // balanced: the grand totals must agree (a trial balance), and a difference is shown.
    GroupedBalances(PrintJob& job, bool balanced) : job_(job), balanced_(balanced) {}

    // An account's row, its balance in the Dr or the Cr column; after it the texts given.
    void Add(const std::string& group, const std::string& account, Amount balance,
             std::vector<std::string> after = {}) {
        if (group != group_) {
            CloseGroup();
            group_ = group;
            job_.rows.push_back({{group}, "*headingfonts*"});
        }
        std::vector<std::string> cells{account, balance > Amount() ? Money(balance) : "",
                                       balance < Amount() ? Money(-balance) : ""};
        cells.insert(cells.end(), after.begin(), after.end());
        job_.rows.push_back({std::move(cells), ""});
        (balance > Amount() ? groupDr_ : groupCr_) += balance.Abs();
    }

    // The last group's sub totals and the grand totals; when the totals should agree and do not
    // (the books do not balance), the difference on the shorter side.
    void Finish() {
        CloseGroup();
        job_.rows.push_back({{"Grand Totals", Total(debits_), Total(credits_)}, "*bhline1*totals*"});
        if (balanced_ && debits_ != credits_)
            job_.rows.push_back({{"Difference", debits_ < credits_ ? Money(credits_ - debits_) : "",
                                  credits_ < debits_ ? Money(debits_ - credits_) : ""},
                                 "*headingfonts*"});
    }

private:
    void CloseGroup() {
        if (group_.empty()) return;
        job_.rows.push_back({{"Sub Totals", Total(groupDr_), Total(groupCr_)}, "*hline1*totals*totalreset*"});
        debits_ += groupDr_;
        credits_ += groupCr_;
        groupDr_ = groupCr_ = Amount();
    }

    PrintJob& job_;
    bool balanced_;
    std::string group_;
    Amount groupDr_, groupCr_, debits_, credits_;
};

// A report of balances as on the day: account, Dr and Cr columns.
PrintJob BalancesJob(std::string name, std::string title, Date asOn) {
    PrintJob job;
    job.reportName = std::move(name);
    job.title = std::move(title);
    job.title2 = "As on " + asOn.ToDisplay();
    job.columns = {{"Account", 4200, Align::Left}, {"Debit", kMoneyWidth, Align::Right},
                   {"Credit", kMoneyWidth, Align::Right}};
    return job;
}

std::string GroupName(const Recordset& rows) {
    return rows.Field(1).IsNull() ? "NO GROUP" : rows.Field(1).AsText();
}

std::string AccountName(const Recordset& rows) {
    return rows.Field(3).IsNull() ? "Account " + rows.Field(2).AsText() + " (not in the masters)" : rows.Field(3).AsText();
}

} // namespace

PrintJob TrialBalanceJob(CompanyDb& db, Date asOn) {
    PrintJob job = BalancesJob("TrialBalance", "Trial Balance", asOn);
    // Groups in the chart's order; accounts without one (or not in the masters) last.
    auto rows = db.OpenRecordset(
        "SELECT G.GROUPNO, G.GROUPNAME, A.DCD, M.MHD, SUM(A.DAMT) FROM FADATA A LEFT JOIN FAMASTER M ON "
        "M.MCD=A.DCD LEFT JOIN FAGROUPS G ON G.GROUPNO=M.MBSHNO WHERE " + UpTo(db, asOn) +
        " GROUP BY G.GROUPNO, G.GROUPNAME, A.DCD, M.MHD ORDER BY CASE WHEN G.GROUPNO IS NULL THEN 1 ELSE 0 END, "
        "G.GROUPNO, M.MHD, A.DCD");
    GroupedBalances balances(job, true);
    for (; !rows->EndOfRows(); rows->MoveNext())
        if (const Amount balance = rows->Field(4).AsAmount(); !balance.IsZero())
            balances.Add(GroupName(*rows), AccountName(*rows), balance);
    balances.Finish();
    return job;
}

PrintJob OutstandingJob(CompanyDb& db, Date asOn) {
    PrintJob job = BalancesJob("Outstanding", "Outstanding Balances", asOn);
    job.columns.push_back({"Last Entry", kDateWidth, Align::Left});
    job.columns.push_back({"Days", 700, Align::Right});
    const std::string day = db.DateLiteral(asOn);
    auto rows = db.OpenRecordset(
        "SELECT G.GROUPNO, G.GROUPNAME, A.DCD, M.MHD, SUM(A.DAMT), MAX(CASE WHEN A.DVCHDATE<=" + day +
        " THEN A.DVCHDATE END) FROM FADATA A JOIN FAMASTER M ON M.MCD=A.DCD JOIN FAGROUPS G ON "
        "G.GROUPNO=M.MBSHNO WHERE M.MBSHNO IN (" + std::to_string(kSundryDebtors) + "," +
        std::to_string(kSundryCreditors) + ") AND " + UpTo(db, asOn) +
        " GROUP BY G.GROUPNO, G.GROUPNAME, A.DCD, M.MHD ORDER BY G.GROUPNO, M.MHD, A.DCD");
    GroupedBalances balances(job, false);
    for (; !rows->EndOfRows(); rows->MoveNext()) {
        const Amount balance = rows->Field(4).AsAmount();
        if (balance.IsZero()) continue;
        // Only opening entries dated after the day: no entry of his stands on or before it.
        std::vector<std::string> last{"", ""};
        if (!rows->Field(5).IsNull()) {
            const Date lastDay = rows->Field(5).AsDate();
            last = {lastDay.ToDisplay(), std::to_string(lastDay.DaysUntil(asOn))};
        }
        balances.Add(GroupName(*rows), AccountName(*rows), balance, std::move(last));
    }
    balances.Finish();
    return job;
}

} // namespace qx::desk
