// The statements the module's registers and I-Form picking run, written as the module writes
// them (several mandis), run through the company database on the generated season: every row
// read, field by field, as a report fills its grid.
#include "SeasonCompany.h"

#include "desk/core/Session.h"

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

namespace qx::bench {
namespace {

struct Season {
    CompanyDb& db;
    Date firstDay;
    Date lastDay;

    std::string Between(Date from, Date to) const {
        return "b.DocDate between " + db.DateLiteral(from) + " and " + db.DateLiteral(to);
    }
    std::string WholeSeason() const { return Between(firstDay, lastDay); }
    std::string LastDay() const { return Between(lastDay, lastDay); }
};

using Statement = std::function<std::string(const Season&)>;

void Report(benchmark::State& state, const Statement& statement) {
    desk::Session session;
    session.Open(SeasonCompany());
    CompanyDb& db = session.Database();
    const Season season{db, db.LookupValue("DOCMAIN", "MIN(DOCDATE)", "").AsDate(),
                        db.LookupValue("DOCMAIN", "MAX(DOCDATE)", "").AsDate()};
    const std::string sql = statement(season);
    std::int64_t rows = 0;
    for (auto _ : state) {
        rows = 0;
        for (auto set = db.OpenRecordset(sql); !set->EndOfRows(); set->MoveNext(), ++rows)
            for (int i = 0; i < set->FieldCount(); ++i)
                benchmark::DoNotOptimize(set->Field(i));
    }
    state.counters["rows"] = static_cast<double>(rows);
}

const std::string kFromLinesAndForms =
    "from (((DocData a Inner Join DocMain b on a.DocumentID=b.DocumentID) Inner Join FAMaster m on "
    "b.PartyCode=m.mcd) Inner Join StkMaster s on a.ProductID=s.qmcd) Left Join MarketMaster mm on "
    "b.MarketID=mm.MarketID";

// Daily summary: each J-Form line with its charges.
std::string JFormLines(const Season&, const std::string& period) {
    return "Select "
           "b.*,a.ProductID,a.Quantity,a.Rate,a.Amount,a.StockFactor,a.iLabourAmtIF,a."
           "iMarketFeeAmt,"
           "a.iRDFAmt,a.iPIDFAmt,a.iPurTaxAmt,m.mhd,m.mst,s.qmhd,mm.marketname,a.QualityCut,a."
           "NoOfBoxes as Bags " +
           kFromLinesAndForms + " where b.DocSeries='JF' and " + period +
           " Order by b.DocDate,b.DocNumber,a.RefNo";
}
BENCHMARK_CAPTURE(Report, daily_summary_jforms_of_a_day, [](const Season& s) {
    return JFormLines(s, s.LastDay());
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Report, daily_summary_jforms_of_the_season, [](const Season& s) {
    return JFormLines(s, s.WholeSeason());
})->Unit(benchmark::kMillisecond);

// Daily summary: the agent's own purchases on J-Forms, by mandi and item.
BENCHMARK_CAPTURE(Report, daily_summary_purchase_self_of_the_season, [](const Season& s) {
    return "Select a.ProductID,s.qmhd,mm.marketname,sum(a.Quantity) as Qty,sum(a.Amount) as Amt "
           "from ((DocData a "
           "Inner Join DocMain b on a.DocumentID=b.DocumentID) Inner Join StkMaster s on "
           "a.ProductID=s.qmcd) Left "
           "Join MarketMaster mm on b.MarketID=mm.MarketID where b.DocSeries='JF' and "
           "a.StockFactor=1 and " +
           s.WholeSeason() + " group by mm.marketname,a.ProductID,s.qmhd";
})->Unit(benchmark::kMillisecond);

// Daily summary: the goods account's surplus and loss, items whose J-Forms are settled.
BENCHMARK_CAPTURE(Report, daily_summary_mal_khata_of_the_season, [](const Season& s) {
    return "Select a.ProductID,s.qmhd,mm.MarketName,sum(a.Amount*(a.jFactor-a.StockFactor)) as Amt "
           "from ((DocData a "
           "Inner Join DocMain b on a.DocumentID=b.DocumentID) Inner Join StkMaster s on "
           "a.ProductID=s.qmcd) Left "
           "Join MarketMaster mm on b.MarketID=mm.MarketID where b.DocSeries IN ('JF','IF') and "
           "(a.JFactor<>0 or "
           "(a.StockFactor<>0 and b.DocSeries='IF')) and " +
           s.WholeSeason() +
           " group by a.ProductID,s.qmhd,mm.MarketName having sum(a.Quantity*a.JFactor)=0 and "
           "sum(a.Amount*(a.jFactor-a.StockFactor))<>0";
})->Unit(benchmark::kMillisecond);

// Daily summary: J-Form quantities not yet taken over, by buyer and item.
BENCHMARK_CAPTURE(Report, daily_summary_pending_items_of_the_season, [](const Season& s) {
    return "Select a.CustomerID,a.ProductID,mm.MarketName,Sum(a.Quantity*a.JFactor) as "
           "Qty,Max(a.Rate) as "
           "Rate,Sum(a.Amount*a.JFactor) as Amt,s.qmhd,m.mhd,m.mst from (((DocData a Inner Join "
           "DocMain b on "
           "a.DocumentID=b.DocumentID) Inner Join StkMaster s on a.ProductID=s.qmcd) Inner Join "
           "FAMaster m on "
           "a.CustomerID=m.mcd) Left Join MarketMaster mm on b.MarketID=mm.MarketID where "
           "a.JFactor<>0 and " +
           s.WholeSeason() +
           " group by a.CustomerID,m.mhd,m.mst,a.ProductID,s.qmhd,mm.MarketName having "
           "sum(a.Quantity*a.JFactor)<>0 "
           "order by m.mhd,s.qmhd";
})->Unit(benchmark::kMillisecond);

// Stock register: every movement of the season, item by item and day by day.
BENCHMARK_CAPTURE(Report, stock_register_movements_of_the_season, [](const Season& s) {
    return "Select a.ProductID,s.qmhd,b.DocDate,(a.Quantity+a.FreeQuantity) as "
           "Qty,a.JFactor,a.StockFactor,"
           "b.DocSeries from (DocData a Inner Join DocMain b on a.DocumentID=b.DocumentID) Inner "
           "Join StkMaster s "
           "on a.ProductID=s.qmcd where b.DocSeries<>'0B' and " +
           s.WholeSeason() +
           " and (a.JFactor<>0 or a.StockFactor<>0) order by a.ProductID,b.DocDate";
})->Unit(benchmark::kMillisecond);

// A new I-Form on the last day: J-Forms of Khanna still pending on an earlier day refuse it.
// Read from the pending J-Forms the saves keep, and, as it was read before, from the season's
// lines.
BENCHMARK_CAPTURE(Report, iform_pending_before_the_day, [](const Season& s) {
    return "Select First 1 sum(a.Quantity),a.DocDate from JFormPending a where a.ItemPending=1 "
           "and a.DocDate<" +
           s.db.DateLiteral(s.lastDay) +
           " and a.MarketID=1 group by a.DocDate having sum(a.Quantity)<>0 order by a.DocDate";
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Report, iform_pending_before_the_day_from_the_lines, [](const Season& s) {
    const std::string quantity = "(a.Quantity+a.FreeQuantity)*a.JFactor";
    return "Select First 1 sum(" + quantity +
           "),b.docdate from DocData a Inner Join DocMain b on "
           "a.DocumentID=b.DocumentID where a.JFactor<>0 and b.DocDate<" +
           s.db.DateLiteral(s.lastDay) + " and b.MarketID=1 group by b.docdate having sum(" +
           quantity + ")<>0";
})->Unit(benchmark::kMillisecond);

// A new I-Form at Khanna: the list of its pending J-Forms by day, buyer, item and rate (the
// season keeps rates apart), from the kept pending J-Forms and from the season's lines.
std::string PendingList(const std::string& inner) {
    return "Select q.DocDate,m.MHD as Party,s.QMHD as Item,q.Rate,q.Qty,q.CustomerID,q.ProductID "
           "From ((" +
           inner +
           ") q Inner Join FAMaster m on q.CustomerID=m.mcd) Inner Join StkMaster s on "
           "q.ProductID=s.QMCD Order by q.DocDate,m.MHD,s.QMHD";
}
BENCHMARK_CAPTURE(Report, iform_pending_list, [](const Season&) {
    return PendingList("Select a.DocDate,a.CustomerID,a.ProductID,a.Rate,Sum(a.Quantity) as Qty "
                       "From JFormPending a Where a.RatePending=1 and a.MarketID=1 Group by "
                       "a.DocDate,a.CustomerID,a.ProductID,a.Rate Having Sum(a.Quantity)<>0");
})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Report, iform_pending_list_from_the_lines, [](const Season&) {
    const std::string quantity = "(a.Quantity+a.FreeQuantity)*a.JFactor";
    return PendingList("Select b.DocDate,a.CustomerID,a.ProductID,a.Rate,Sum(" + quantity +
                       ") as Qty From DocData a Inner Join DocMain b on a.DocumentID=b.DocumentID "
                       "Where a.JFactor<>0 and b.MarketID=1 Group by b.DocDate,a.CustomerID,"
                       "a.ProductID,a.Rate Having Sum(" +
                       quantity + ")<>0");
})->Unit(benchmark::kMillisecond);

// A new I-Form on the last day: the buyer's pending J-Form items of the day at Khanna.
BENCHMARK_CAPTURE(Report, iform_pick_the_buyers_items, [](const Season& s) {
    const std::string inner = "Select ((a.Quantity+a.FreeQuantity)*a.JFactor) as "
                              "Qty,a.BatchNo,a.Rate,a.QualityCut,a.ProductID,"
                              "a.QtyPerBox From DocData a Inner Join DocMain b on "
                              "a.DocumentID=b.DocumentID Where a.DocumentID<>0 And "
                              "a.CustomerID=" +
                              std::to_string(kFirstBuyerCode) +
                              " And a.JFactor<>0 And b.DocDate=" + s.db.DateLiteral(s.lastDay) +
                              " and b.MarketID=1";
    return "Select ProductID,QMHD as Product,Sum(Qty) as Qty,Rate,QualityCut,QtyPerBox From (" +
           inner +
           ") q Inner Join StkMaster sm on q.ProductID=sm.qmcd Group by "
           "ProductID,QMHD,QtyPerBox,Rate,QualityCut "
           "Having Sum(Qty)<>0  Order by QMHD";
})->Unit(benchmark::kMillisecond);

} // namespace
} // namespace qx::bench
