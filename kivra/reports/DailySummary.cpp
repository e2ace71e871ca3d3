#include "DailySummary.h"

#include "ReportRows.h"

#include "kivra/module/mKivraModule.h"

namespace kivra {
namespace {

enum Col {
    kDate, kBook, kForm, kMarket, kParty, kItem, kBags, kQty, kRate, kQualityCut, kAmount,
    kDami, kLabour, kLoading, kStitching, kDharam, kRoundOff, kTotal, kLabourSelf, kMarketFee,
    kRdf, kPidf, kPurTax
};

const std::vector<ReportColumn> kColumns = {
    {"Date", 1300, Figure::Text},         {"Book No.", 700, Figure::Text},
    {"Form No.", 800, Figure::Text},      {"Market", 1400, Figure::Text},
    {"Party", 2800, Figure::Text},        {"Item", 1600, Figure::Text},
    {"Bags", 700, Figure::Count},         {"Qty.", 1000, Figure::Quantity},
    {"Rate", 1000, Figure::Rate},         {"Quality Cut", 800, Figure::Rate},
    {"Amount", 1400, Figure::Money},      {"Dami", 1000, Figure::Money},
    {"Labour", 1000, Figure::Money},      {"Loading", 1000, Figure::Money},
    {"Stitching", 1000, Figure::Money},   {"Dharam", 1000, Figure::Money},
    {"Round Off", 900, Figure::Money},    {"Total", 1400, Figure::Money},
    {"Labour (Self)", 1000, Figure::Money}, {"Market Fee", 1000, Figure::Money},
    {"R.D.F.", 1000, Figure::Money},      {"P.I.D.F.", 1000, Figure::Money},
    {"Purchase Tax", 1000, Figure::Money},
};

constexpr const char* kFirstHeading = "*headingfonts*blanklineafter*blanklinebefore*";
constexpr const char* kHeading = "*headingfonts*blanklinebefore*blanklineafter*";
constexpr const char* kSubTotals = "*totals*totalreset*";
// The closing line of the J-Forms, of the I-Forms with their goods account, and of the pending
// items.
constexpr const char* kGroupTotals = "*hline1*totals*totalreset*";

qx::Amount Num(const qx::Recordset& rows, std::string_view field) { return rows.Field(field).AsAmount(); }

class Summary {
public:
    Summary(ModuleContext& context, const ReportScope& scope, qx::PrintJob& job)
        : context_(context), scope_(scope), several_(MultipleMarketRqr(context)),
          where_(" and " + scope.Condition(context)), rows_(job, kColumns) {}

    void JForms();
    void SelfPurchases();
    void IForms();
    void GoodsAccount();
    void PendingItems();

private:
    std::unique_ptr<qx::Recordset> Open(const std::string& sql) { return context_.Db().OpenRecordset(sql); }
    // The market's name, where the firm works in several.
    void Market(const qx::Recordset& rows) {
        if (several_) rows_.Text(kMarket, rows.Field("MarketName").AsText());
    }
    // Date, book, form number, market and party, on the first line of a form.
    void Form(const qx::Recordset& rows);
    using Charges = std::vector<std::pair<Col, const char*>>;
    // The form's own charges and total, on its first line, so that they add up once.
    void FormCharges(const qx::Recordset& rows, const Charges& charges);
    // The lines of the J-Forms or the I-Forms, each form's own columns on its first line, and
    // the firm's levies where its lines bear them.
    void FormLines(const std::string& sql, const char* heading, const char* marks,
                   const Charges& formCharges, const Charges& levies);

    ModuleContext& context_;
    const ReportScope& scope_;
    const bool several_;
    const std::string where_;
    ReportRows rows_;
};

void Summary::Form(const qx::Recordset& rows) {
    rows_.Text(kDate, rows.Field("DocDate").AsDate().Format("dd-MMM-yyyy"));
    const std::int64_t book = rows.Field("FormBookNo").AsLong();
    const std::int64_t form = rows.Field("FormNo").AsLong();
    if (book != 0) rows_.Text(kBook, std::to_string(book));
    // A form without a printed number is known by its document number.
    rows_.Text(kForm, std::to_string(form != 0 ? form : rows.Field("DocNumber").AsLong()));
    Market(rows);
    rows_.Text(kParty, rows.Field("mhd").AsText());
}

void Summary::FormCharges(const qx::Recordset& rows, const Charges& charges) {
    for (const auto& [col, field] : charges) rows_.Number(col, Num(rows, field));
    rows_.Number(kRoundOff, Num(rows, "RoundOffAmt"));
    rows_.Number(kTotal, Num(rows, "GrandTotal"));
}

void Summary::JForms() {
    const std::string sql =
        several_ ? "Select b.*,a.ProductID,a.Quantity,a.Rate,a.Amount,a.StockFactor,a.iLabourAmtIF,"
                   "a.iMarketFeeAmt,a.iRDFAmt,a.iPIDFAmt,a.iPurTaxAmt,m.mhd,m.mst,s.qmhd,mm.marketname,"
                   "a.QualityCut,a.NoOfBoxes as Bags from (((DocData a Inner Join DocMain b on "
                   "a.DocumentID=b.DocumentID) Inner Join FAMaster m on b.PartyCode=m.mcd) Inner Join "
                   "StkMaster s on a.ProductID=s.qmcd) Left Join MarketMaster mm on b.MarketID=mm.MarketID "
                   "where b.DocSeries='JF'"
                 : "Select b.*,a.ProductID,a.Quantity,a.Rate,a.Amount,a.StockFactor,a.iLabourAmtIF,"
                   "a.iMarketFeeAmt,a.iRDFAmt,a.iPIDFAmt,a.iPurTaxAmt,m.mhd,m.mst,s.qmhd,a.QualityCut,"
                   "a.NoOfBoxes as Bags from ((DocData a Inner Join DocMain b on "
                   "a.DocumentID=b.DocumentID) Inner Join FAMaster m on b.PartyCode=m.mcd) Inner Join "
                   "StkMaster s on a.ProductID=s.qmcd where b.DocSeries='JF'";
    FormLines(sql + where_ + " Order by b.DocDate,b.DocNumber,a.RefNo", "J-Forms", kFirstHeading,
              {{kLabour, "Labour"}, {kStitching, "StitchAmt"}},
              {{kLabourSelf, "iLabourAmtIF"},
               {kMarketFee, "iMarketFeeAmt"},
               {kRdf, "iRDFAmt"},
               {kPidf, "iPIDFAmt"},
               {kPurTax, "iPurTaxAmt"}});
}

void Summary::SelfPurchases() {
    const std::string sql =
        several_ ? "Select a.ProductID,s.qmhd,mm.marketname,sum(a.Quantity) as Qty,sum(a.Amount) as Amt "
                   "from ((DocData a Inner Join DocMain b on a.DocumentID=b.DocumentID) Inner Join "
                   "StkMaster s on a.ProductID=s.qmcd) Left Join MarketMaster mm on "
                   "b.MarketID=mm.MarketID where b.DocSeries='JF' and a.StockFactor=1" + where_ +
                       " group by mm.marketname,a.ProductID,s.qmhd"
                 : "Select a.ProductID,s.qmhd,sum(a.Quantity) as Qty,sum(a.Amount) as Amt from (DocData "
                   "a Inner Join DocMain b on a.DocumentID=b.DocumentID) Inner Join StkMaster s on "
                   "a.ProductID=s.qmcd where b.DocSeries='JF' and a.StockFactor=1" + where_ +
                       " group by a.ProductID,s.qmhd";
    auto rows = Open(sql);
    if (rows->EndOfRows()) return;
    rows_.Heading("Purchase (Self)", kHeading);
    for (; !rows->EndOfRows(); rows->MoveNext()) {
        Market(*rows);
        rows_.Text(kItem, rows->Field("qmhd").AsText())
            .Number(kQty, Num(*rows, "Qty"))
            .Number(kAmount, Num(*rows, "Amt"))
            .Add();
    }
    rows->Close();
    rows_.Rule();
    rows_.Totals("Totals (J-Forms)", kGroupTotals);
}

void Summary::IForms() {
    // Without markets the statement is the same without the market master.
    const std::string sql =
        "Select b.*,a.ProductID,(a.Quantity+(a.AddLessKgs/100)) as Quantity,a.NoOfBoxes as Bags,"
        "a.Rate,a.Amount,m.mhd,m.mst,s.qmhd," +
        std::string(several_ ? "mm.marketname," : "") +
        "a.QualityCut from " + (several_ ? "(((" : "((") +
        "DocData a Inner Join DocMain b on a.DocumentID=b.DocumentID) Inner Join FAMaster m on "
        "b.PartyCode=m.mcd) Inner Join StkMaster s on a.ProductID=s.qmcd" +
        (several_ ? ") Left Join MarketMaster mm on b.MarketID=mm.MarketID" : "") +
        " where b.DocSeries='IF' and a.JFactor<>0" + where_ + " order by b.DocDate,b.DocNumber,a.RefNo";
    FormLines(sql, "I-Forms", kHeading,
              {{kDami, "DamiAmt"},
               {kLabour, "Labour"},
               {kLoading, "Loading"},
               {kStitching, "StitchAmt"},
               {kDharam, "DharmadaAmt"}},
              {});
}

void Summary::FormLines(const std::string& sql, const char* heading, const char* marks,
                        const Charges& formCharges, const Charges& levies) {
    auto rows = Open(sql);
    if (rows->EndOfRows()) return;
    rows_.Heading(heading, marks);
    std::int64_t form = -1;
    for (; !rows->EndOfRows(); rows->MoveNext()) {
        if (rows->Field("DocumentID").AsLong() != form) {
            form = rows->Field("DocumentID").AsLong();
            Form(*rows);
            FormCharges(*rows, formCharges);
        }
        rows_.Text(kItem, rows->Field("qmhd").AsText())
            .Number(kBags, Num(*rows, "Bags"))
            .Number(kQty, Num(*rows, "Quantity"))
            .Number(kRate, Num(*rows, "Rate"))
            .Number(kQualityCut, Num(*rows, "QualityCut"))
            .Number(kAmount, Num(*rows, "Amount"));
        for (const auto& [col, field] : levies) rows_.Number(col, Num(*rows, field));
        rows_.Add();
    }
    rows->Close();
    rows_.Rule();
    rows_.Totals("Sub Totals", kSubTotals);
}

// The goods bought and given on I-Forms, and the differences of items whose J-Form quantity
// is settled: a buyer who paid more than the farmers were credited leaves a surplus, one who
// paid less a loss. The closing line is what the goods account is debited with: the goods,
// less the surplus, plus the loss.
void Summary::GoodsAccount() {
    const std::string from =
        several_ ? " from ((DocData a Inner Join DocMain b on a.DocumentID=b.DocumentID) Inner Join "
                   "StkMaster s on a.ProductID=s.qmcd) Left Join MarketMaster mm on b.MarketID=mm.MarketID"
                 : " from (DocData a Inner Join DocMain b on a.DocumentID=b.DocumentID) Inner Join "
                   "StkMaster s on a.ProductID=s.qmcd";
    auto goods = Open(std::string(several_ ? "Select mm.MarketName,a.ProductID,s.qmhd," : "Select a.ProductID,s.qmhd,") +
                      "sum(a.Quantity*a.StockFactor) as Qty,sum(a.Amount*a.StockFactor) as Amt" + from +
                      " where b.DocSeries='IF' and a.StockFactor<>0" + where_ +
                      (several_ ? " group by a.ProductID,s.qmhd,mm.MarketName" : " group by a.ProductID,s.qmhd"));
    auto differences = Open(
        std::string(several_ ? "Select a.ProductID,s.qmhd,mm.MarketName," : "Select a.ProductID,s.qmhd,") +
        "sum(a.Amount*(a.jFactor-a.StockFactor)) as Amt" + from +
        " where b.DocSeries IN ('JF','IF') and (a.JFactor<>0 or (a.StockFactor<>0 and b.DocSeries='IF'))" +
        where_ + (several_ ? " group by a.ProductID,s.qmhd,mm.MarketName" : " group by a.ProductID,s.qmhd") +
        " having sum(a.Quantity*a.JFactor)=0 and sum(a.Amount*(a.jFactor-a.StockFactor))<>0");
    if (goods->EndOfRows() && differences->EndOfRows()) return;
    rows_.Heading("Mal Khata", kHeading);
    for (; !goods->EndOfRows(); goods->MoveNext()) {
        Market(*goods);
        rows_.Text(kItem, goods->Field("qmhd").AsText())
            .Number(kQty, Num(*goods, "Qty"))
            .Number(kAmount, Num(*goods, "Amt"))
            .Add();
    }
    goods->Close();
    // The difference is what the goods account is debited with: below 0 a surplus.
    struct Difference {
        std::string market, item;
        qx::Amount amount;
    };
    std::vector<Difference> surplus, loss;
    for (; !differences->EndOfRows(); differences->MoveNext()) {
        Difference difference{several_ ? differences->Field("MarketName").AsText() : "",
                              differences->Field("qmhd").AsText(), Num(*differences, "Amt")};
        (difference.amount < qx::Amount() ? surplus : loss).push_back(difference);
    }
    differences->Close();
    auto print = [&](const char* heading, const std::vector<Difference>& list) {
        if (list.empty()) return;
        rows_.Heading(heading, kHeading);
        for (const Difference& difference : list) {
            if (several_) rows_.Text(kMarket, difference.market);
            rows_.Text(kItem, difference.item).Number(kAmount, difference.amount.Abs(), difference.amount).Add();
        }
    };
    print("Mal Khata (Surplus)", surplus);
    print("Mal Khata (Loss)", loss);
    rows_.Rule();
    rows_.Totals("Totals (I-Forms)", kGroupTotals);
}

void Summary::PendingItems() {
    const std::string sql =
        several_ ? "Select a.CustomerID,a.ProductID,mm.MarketName,Sum(a.Quantity*a.JFactor) as Qty,"
                   "Max(a.Rate) as Rate,Sum(a.Amount*a.JFactor) as Amt,s.qmhd,m.mhd,m.mst from (((DocData "
                   "a Inner Join DocMain b on a.DocumentID=b.DocumentID) Inner Join StkMaster s on "
                   "a.ProductID=s.qmcd) Inner Join FAMaster m on a.CustomerID=m.mcd) Left Join "
                   "MarketMaster mm on b.MarketID=mm.MarketID where a.JFactor<>0" + where_ +
                       " group by a.CustomerID,m.mhd,m.mst,a.ProductID,s.qmhd,mm.MarketName having "
                       "sum(a.Quantity*a.JFactor)<>0 order by m.mhd,s.qmhd"
                 : "Select a.CustomerID,a.ProductID,Sum(a.Quantity*a.JFactor) as Qty,Max(a.Rate) as "
                   "Rate,Sum(a.Amount*a.JFactor) as Amt,s.qmhd,m.mhd,m.mst from ((DocData a Inner Join "
                   "DocMain b on a.DocumentID=b.DocumentID) Inner Join StkMaster s on a.ProductID=s.qmcd) "
                   "Inner Join FAMaster m on a.CustomerID=m.mcd where a.JFactor<>0" + where_ +
                       " group by a.CustomerID,m.mhd,m.mst,a.ProductID,s.qmhd having "
                       "sum(a.Quantity*a.JFactor)<>0 order by m.mhd,s.qmhd";
    auto rows = Open(sql);
    if (rows->EndOfRows()) return;
    rows_.Heading("Pending Items", kHeading);
    for (; !rows->EndOfRows(); rows->MoveNext()) {
        Market(*rows);
        rows_.Text(kParty, rows->Field("mhd").AsText())
            .Text(kItem, rows->Field("qmhd").AsText())
            .Number(kQty, Num(*rows, "Qty"))
            .Number(kRate, Num(*rows, "Rate"))
            .Number(kAmount, Num(*rows, "Amt"))
            .Add();
    }
    rows->Close();
    rows_.Rule();
    rows_.Totals("Totals (Pending Items)", kGroupTotals);
}

} // namespace

qx::PrintJob DailySummaryJob(ModuleContext& context, const ReportScope& scope) {
    qx::PrintJob job;
    job.reportName = "DailySummary";
    job.title = "Daily Summary";
    job.title2 = scope.Heading();
    Summary summary(context, scope, job);
    summary.JForms();
    summary.SelfPurchases();
    summary.IForms();
    summary.GoodsAccount();
    summary.PendingItems();
    // A firm that works in one market has no market to show.
    if (!MultipleMarketRqr(context)) DropColumn(job, kMarket);
    return job;
}

} // namespace kivra
