#include "BooksCheck.h"

#include "DailyVoucher.h"
#include "PendingJForms.h"

#include "kivra/module/mKivraModule.h"

#include <set>

namespace kivra {
namespace {

using qx::Amount;

// (1) The I-Forms of a buyer never take more of a day's item than his J-Forms left pending.
void CheckPendingQuantities(ModuleContext& context, BooksFindings& findings) {
    auto rows = context.Db().OpenRecordset(
        std::string("Select m.MHD, b.DocDate, s.QMHD, Sum(") + kLinePending +
        ") as Qty, a.CustomerID, a.ProductID From ((DocData a Inner Join DocMain b on "
        "a.DocumentID=b.DocumentID) Left Join FAMaster m on m.MCD=a.CustomerID) Left Join "
        "StkMaster s on s.QMCD=a.ProductID Where a.JFactor<>0 Group by a.CustomerID, b.DocDate, "
        "a.ProductID, m.MHD, s.QMHD Having Sum(" +
        kLinePending + ")<0 Order by b.DocDate, m.MHD, s.QMHD");
    for (; !rows->EndOfRows(); rows->MoveNext()) {
        const qx::Value buyer = rows->Field(0);
        const qx::Value item = rows->Field(2);
        findings.faults.push_back(
            "The I-Forms of " +
            (buyer.IsNull() ? "account " + rows->Field(4).AsText() : buyer.AsText()) + " take " +
            context.Util().FormatAmount(-rows->Field(3).AsAmount(), "n2") + " quintals more " +
            (item.IsNull() ? "of item " + rows->Field(5).AsText() : item.AsText()) +
            " than the J-Forms of " + rows->Field(1).AsDate().ToDisplay() + " left pending.");
    }
}

// A row of a day's voucher as an accountant reads it.
struct DayRow {
    std::string head;
    Amount amount;
    std::string narration;
    std::int32_t documentId = 0;

    bool operator==(const DayRow&) const = default;
};

std::vector<DayRow> DayRows(ModuleContext& context, const std::string& dayLiteral) {
    std::vector<DayRow> rows;
    for (auto row = context.Db().OpenRecordset(
             "Select m.MHD, d.dAmt, n.Narration, d.dDocumentID, d.dCD From (FAData d Left Join "
             "FAMaster m on m.MCD=d.dCD) Left Join FANar n on n.NarrationID=d.NarrationID Where "
             "d.dTrnType='IJF' and d.dVchDate=" +
             dayLiteral + " Order by d.dSrNo");
         !row->EndOfRows(); row->MoveNext())
        rows.push_back({row->Field(0).IsNull() ? "account " + row->Field(4).AsText()
                                               : row->Field(0).AsText(),
                        row->Field(1).AsAmount(), row->Field(2).AsText(),
                        row->Field(3).AsInt()});
    return rows;
}

// "GURMEET SINGH Cr 29,888.00 ("J-Form No. KHN 12/101")", as a ledger shows a row.
std::string Shown(ModuleContext& context, const DayRow& row) {
    return row.head + (row.amount > Amount() ? " Dr " : " Cr ") +
           context.Util().FormatAmount(row.amount.Abs(), "c2") + " (\"" + row.narration + "\")";
}

// How the day's voucher as kept differs from the one its forms make; empty when it does not.
std::string Difference(ModuleContext& context, const std::vector<DayRow>& kept,
                       const std::vector<DayRow>& made) {
    if (kept == made)
        return {};
    if (kept.empty())
        return "there is none, but the day's forms make one of " + std::to_string(made.size()) +
               " rows";
    if (made.empty())
        return "the day's forms make none";
    for (std::size_t i = 0;; ++i) {
        if (i < kept.size() && i < made.size() && kept[i] == made[i])
            continue;
        const std::string row = "row " + std::to_string(i + 1) + " ";
        if (i >= kept.size())
            return "it ends at row " + std::to_string(i) + ", where the forms make row " +
                   std::to_string(i + 1) + " " + Shown(context, made[i]);
        if (i >= made.size())
            return row + "is " + Shown(context, kept[i]) + ", which the forms do not make";
        return row + "is " + Shown(context, kept[i]) + ", the forms make " +
               Shown(context, made[i]);
    }
}

// (2) Every day's "IJF" voucher is what the day's forms make: the day is posted again inside
// a unit of work that is never committed, and the rows compared one by one. (3) The voucher
// balances; what the round-off rule moves onto the round off is said as a note.
void CheckDayVouchers(ModuleContext& context, BooksFindings& findings) {
    qx::CompanyDb& db = context.Db();
    std::set<qx::Date> days;
    for (const char* sql : {"Select Distinct DocDate From DocMain Where DocSeries in ('JF','IF')",
                            "Select Distinct dVchDate From FAData Where dTrnType='IJF'"})
        for (auto row = db.OpenRecordset(sql); !row->EndOfRows(); row->MoveNext())
            days.insert(row->Field(0).AsDate());
    if (days.empty())
        return;
    qx::Transaction unit(db); // never committed: what is posted again is undone
    DailyVoucher voucher(context, db, MultipleMarketRqr(context), DayColumns::Of(db));
    for (const qx::Date day : days) {
        const std::string literal = context.Util().SqlDate(day);
        const std::string name = "The day voucher (IJF) of " + day.ToDisplay();
        const std::vector<DayRow> kept = DayRows(context, literal);
        Amount debits, credits;
        for (const DayRow& row : kept)
            (row.amount > Amount() ? debits : credits) += row.amount;
        if (!(debits + credits).IsZero())
            findings.faults.push_back(name + " does not balance: debits " +
                                      context.Util().FormatAmount(debits, "c2") + ", credits " +
                                      context.Util().FormatAmount(-credits, "c2") + ".");
        voucher.Post(day);
        const std::vector<DayRow> made = DayRows(context, literal);
        if (const std::string difference = Difference(context, kept, made); !difference.empty())
            findings.faults.push_back(name + " is not what the day's forms make: " + difference +
                                      ".");
        // The forms' own round off, and what the day's voucher puts on the round-off head.
        const Amount formsRoundOff = db.LookupValue("DocMain", "Sum(RoundOffAmt)",
                                                    "DocDate=" + literal +
                                                        " and DocSeries in ('JF','IF') and "
                                                        "(Cancelled=0 or Cancelled is null)")
                                         .AsAmount();
        Amount posted;
        for (const DayRow& row : kept)
            if (row.head == "ROUND OFF")
                posted += row.amount;
        if (!kept.empty() && posted != formsRoundOff)
            findings.notes.push_back(name + " puts " + context.Util().FormatAmount(posted, "c2") +
                                     " on ROUND OFF where its forms round off " +
                                     context.Util().FormatAmount(formsRoundOff, "c2") +
                                     ": the round-off rule takes a difference below 2.00 there.");
    }
}

} // namespace

BooksFindings CheckBooks(ModuleContext& context) {
    BooksFindings findings;
    CheckPendingQuantities(context, findings);
    // (4) A company of an older version keeps them from the first form opened on it.
    if (!context.Db().TableExists("JFORMPENDING"))
        findings.notes.push_back("The pending J-Forms are not kept yet: opening a form keeps them.");
    else
        for (std::string& fault : PendingDisagreements(context))
            findings.faults.push_back(std::move(fault));
    CheckDayVouchers(context, findings);
    return findings;
}

} // namespace kivra
