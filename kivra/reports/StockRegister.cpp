#include "StockRegister.h"

#include "ReportRows.h"

namespace kivra {
namespace {

enum Col { kDate, kLastBalance, kReceipt, kTotal, kSale, kBalance, kRemarks };

const std::vector<ReportColumn> kColumns = {
    {"Date", 1400, Figure::Text},       {"Last Balance", 1600, Figure::Balance},
    {"Receipt", 1600, Figure::Quantity}, {"Total", 1600, Figure::Balance},
    {"Sale", 1600, Figure::Quantity},    {"Balance", 1600, Figure::Balance},
    {"Remarks", 2400, Figure::Text},
};

// A day's receipt and sale of an item.
struct Movement {
    qx::Amount receipt;
    qx::Amount sale;

    void Add(const qx::Recordset& row) {
        const qx::Amount qty = row.Field("Qty").AsAmount();
        const std::int64_t stock = row.Field("StockFactor").AsLong();
        if (row.Field("JFactor").AsLong() == 1) {
            receipt += qty; // a J-Form line waiting for its buyer
        } else if (row.Field("DocSeries").AsText() == "IF") {
            // What the buyer took; goods his weighing found short come back into stock.
            if (stock == 1) sale -= qty;
            else sale += qty;
        } else if (stock == 1) {
            receipt += qty;
        } else if (stock == -1) {
            sale += qty;
        }
    }
};

// What the firm held of an item before the period: its stock and the J-Form quintals still
// waiting, the opening balances whatever their date.
qx::Amount Opening(ModuleContext& context, const qx::Value& item, qx::Date from) {
    auto rows = context.Db().OpenRecordset(
        "Select sum((a.Quantity+a.FreeQuantity)*a.StockFactor),sum((a.Quantity+a.FreeQuantity)*a.JFactor) "
        "from DocData a Inner Join DocMain b on a.DocumentID=b.DocumentID where a.ProductID=" +
        item.AsText() + " and (b.DocDate<" + context.Util().SqlDate(from) + " or b.DocSeries='0B')");
    qx::Amount opening;
    if (!rows->EndOfRows()) opening = rows->Field(0).AsAmount() + rows->Field(1).AsAmount();
    rows->Close();
    return opening;
}

} // namespace

qx::PrintJob StockRegisterJob(ModuleContext& context, const ReportScope& scope, const std::string& items) {
    qx::PrintJob job;
    job.reportName = "StockRegister";
    job.title = "Stock Register";
    job.title2 = scope.PeriodHeading();
    ReportRows rows(job, kColumns);
    ReportScope everyMarket = scope;
    everyMarket.marketId = 0;
    auto moves = context.Db().OpenRecordset(
        "Select a.ProductID,s.qmhd,b.DocDate,(a.Quantity+a.FreeQuantity) as Qty,a.JFactor,a.StockFactor,"
        "b.DocSeries from (DocData a Inner Join DocMain b on a.DocumentID=b.DocumentID) Inner Join "
        "StkMaster s on a.ProductID=s.qmcd where b.DocSeries<>'0B' and " +
        everyMarket.Condition(context) + (items.empty() ? "" : " and " + items) +
        " and (a.JFactor<>0 or a.StockFactor<>0) order by a.ProductID,b.DocDate");
    qx::Amount balance;
    auto day = [&](qx::Date date, const Movement& movement) {
        const qx::Amount total = balance + movement.receipt;
        rows.Text(kDate, date.ToDisplay())
            .Number(kLastBalance, balance)
            .Number(kReceipt, movement.receipt)
            .Number(kTotal, total)
            .Number(kSale, movement.sale)
            .Number(kBalance, total - movement.sale)
            .Add();
        balance = total - movement.sale;
    };
    while (!moves->EndOfRows()) {
        const qx::Value item = moves->Field("ProductID");
        rows.Heading(moves->Field("qmhd").AsText(), "*headingfonts*blanklinebefore*blanklineafter*");
        balance = Opening(context, item, scope.from);
        while (!moves->EndOfRows() && moves->Field("ProductID").AsLong() == item.AsLong()) {
            const qx::Date date = moves->Field("DocDate").AsDate();
            Movement movement;
            for (; !moves->EndOfRows() && moves->Field("ProductID").AsLong() == item.AsLong() &&
                   moves->Field("DocDate").AsDate() == date;
                 moves->MoveNext())
                movement.Add(*moves);
            day(date, movement);
        }
        rows.Rule();
        rows.Totals("Totals", "*hline1*totals*totalreset*");
    }
    moves->Close();
    return job;
}

} // namespace kivra
