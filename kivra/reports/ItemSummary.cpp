#include "ItemSummary.h"

#include "ReportRows.h"

#include <array>

namespace kivra {
namespace {

struct Section {
    char letter;
    const char* heading;
    const char* headingMarks;
    const char* subTotalsMarks;
    const char* detailHeading;
    const char* detailCondition;
    std::string base;
};

const char* const kJFormBase =
    "Select a.ProductID,s.QMHD,a.DocumentID,Sum(a.Quantity) as Qty,Sum(a.Amount) as Amt,"
    "Sum(a.iLabourAmtIF) as LabourSelf,Sum(a.iMarketFeeAmt) MarketFee,Sum(a.iRDFAmt) as RDF,"
    "Sum(a.iPIDFAmt) as PIDF,Sum(a.NoOfBoxes) as Bags,Max(b.GrossAmt) as GAmt,Max(b.Labour) as "
    "Labour,Max(b.StitchAmt) as Stitch from ((DocData a Inner Join DocMain b on "
    "a.DocumentID=b.DocumentID) Inner Join StkMaster s on a.ProductID=s.qmcd) Left Join "
    "MarketMaster mm on b.MarketID=mm.MarketID where b.DocSeries='JF' and a.StockFactor=";

const std::array<Section, 3> kSections = {{
    {'A', "J-Forms (Self Purchase)", "*headingfonts*blanklineafter*blanklinebefore*",
     "*totals*totalreset*", "   Self Purchase Details", " And b.DocSeries='JF' And a.StockFactor=1",
     std::string(kJFormBase) + "1 and "},
    {'B', "J-Forms", "*headingfonts*blanklineafter*blanklinebefore*", "*totals*totalreset*hline1*",
     "   J-Form Details", " And b.DocSeries='JF' And a.StockFactor=0 And a.JFactor<>0",
     std::string(kJFormBase) + "0 and "},
    {'C', "I-Forms", "*headingfonts*blanklinebefore*blanklineafter*", "*totals*totalreset*hline1*",
     "   I-Form Details", " And b.DocSeries='IF' And a.JFactor<>0",
     "Select a.ProductID,s.QMHD,a.DocumentID,Sum(a.Quantity+(a.AddLessKgs/100)) as Qty,"
     "Sum(a.Amount) as Amt,Sum(a.NoOfBoxes) as Bags,Max(b.GrossAmt) as GAmt,Max(b.DamiAmt) as "
     "Dami,Max(b.Labour) as Labour,Max(b.Loading) as Loading,Max(b.StitchAmt) as Stitch from "
     "((DocData a Inner Join DocMain b on a.DocumentID=b.DocumentID) Inner Join StkMaster s on "
     "a.ProductID=s.qmcd) Left Join MarketMaster mm on b.MarketID=mm.MarketID where "
     "b.DocSeries='IF' and a.JFactor<>0 and "},
}};

const Section& SectionOf(char letter) {
    for (const Section& section : kSections)
        if (section.letter == letter) return section;
    throw std::invalid_argument(std::string("no item summary section ") + letter);
}

// The figure columns shared by the summary and the detail, after their leading text columns.
enum Fig { kBags, kQty, kAmount, kDami, kLabour, kLoading, kStitch, kLabourSelf, kMarketFee, kRdf, kPidf, kFigures };

const std::vector<ReportColumn> kFigureColumns = {
    {"Bags", 1100, Figure::Count},          {"Qty.", 1400, Figure::Quantity},
    {"Amount", 1600, Figure::Money},        {"Dami", 1400, Figure::Money},
    {"Labour", 1400, Figure::Money},        {"Loading", 1400, Figure::Money},
    {"Stitching", 1400, Figure::Money},     {"Labour (Self)", 1400, Figure::Money},
    {"Market Fee", 1400, Figure::Money},    {"R.D.F.", 1400, Figure::Money},
    {"P.I.D.F.", 1400, Figure::Money},
};

qx::Amount Num(const qx::Recordset& rows, std::string_view field) { return rows.Field(field).AsAmount(); }

// One form's figures for an item: its own, and its share of the form's header charges in
// proportion to the item's value. A form whose gross amount is 0 shares out nothing.
std::array<qx::Amount, kFigures> FormFigures(const qx::Recordset& rows, bool iForm) {
    std::array<qx::Amount, kFigures> figures{};
    figures[kBags] = Num(rows, "Bags");
    figures[kQty] = Num(rows, "Qty");
    const qx::Amount amount = Num(rows, "Amt");
    figures[kAmount] = amount;
    const qx::Amount gross = Num(rows, "GAmt");
    auto share = [&](Fig fig, std::string_view field) {
        if (!gross.IsZero()) figures[fig] = amount * Num(rows, field) / gross;
    };
    share(kLabour, "Labour");
    share(kStitch, "Stitch");
    if (iForm) {
        share(kDami, "Dami");
        share(kLoading, "Loading");
    } else {
        figures[kLabourSelf] = Num(rows, "LabourSelf");
        figures[kMarketFee] = Num(rows, "MarketFee");
        figures[kRdf] = Num(rows, "RDF");
        figures[kPidf] = Num(rows, "PIDF");
    }
    return figures;
}

void Put(ReportRows& rows, int firstFigureCol, const std::array<qx::Amount, kFigures>& figures, int count) {
    for (int f = 0; f < count; ++f) rows.Number(firstFigureCol + f, figures[static_cast<std::size_t>(f)]);
}

} // namespace

ItemSummary ItemSummaryJob(ModuleContext& context, const ReportScope& scope) {
    ItemSummary summary;
    summary.job.reportName = "ItemSummary";
    summary.job.title = "Item Summary";
    summary.job.title2 = scope.Heading();
    std::vector<ReportColumn> columns = {{"Item", 2000, Figure::Text}};
    columns.insert(columns.end(), kFigureColumns.begin(), kFigureColumns.end());
    ReportRows rows(summary.job, columns);
    const std::string where = scope.Condition(context) +
                              " Group by a.ProductID,s.QMHD,a.DocumentID Order by s.QMHD,a.ProductID";
    for (const Section& section : kSections) {
        const bool iForm = section.letter == 'C';
        auto forms = context.Db().OpenRecordset(section.base + where);
        if (forms->EndOfRows()) continue;
        rows.Heading(section.heading, section.headingMarks);
        while (!forms->EndOfRows()) {
            const std::int32_t item = forms->Field("ProductID").AsInt();
            const std::string name = forms->Field("QMHD").AsText();
            std::array<qx::Amount, kFigures> totals{};
            for (; !forms->EndOfRows() && forms->Field("ProductID").AsInt() == item; forms->MoveNext()) {
                const auto figures = FormFigures(*forms, iForm);
                for (std::size_t f = 0; f < totals.size(); ++f) totals[f] += figures[f];
            }
            rows.Text(0, name);
            Put(rows, 1, totals, iForm ? kLabourSelf : kFigures);
            rows.Add();
            summary.keys.resize(summary.job.rows.size());
            summary.keys.back() = {section.letter, item};
        }
        forms->Close();
        rows.Rule();
        rows.Totals("Sub Totals", section.subTotalsMarks);
    }
    summary.keys.resize(summary.job.rows.size());
    return summary;
}

qx::PrintJob ItemDetailJob(ModuleContext& context, const ReportScope& scope, ItemLineKey line) {
    const Section& section = SectionOf(line.section);
    const bool iForm = line.section == 'C';
    qx::PrintJob job;
    job.reportName = "ItemSummary";
    job.title = "Item Summary";
    job.title2 = scope.Heading();
    std::vector<ReportColumn> columns = {{"Date", 1400, Figure::Text},
                                         {"Book No.", 700, Figure::Text},
                                         {"Form No.", 800, Figure::Text},
                                         {iForm ? "Buyer" : "Seller", 4000, Figure::Text}};
    // The I-Forms bear none of the firm's own levies.
    columns.insert(columns.end(), kFigureColumns.begin(), kFigureColumns.end() - (iForm ? 4 : 0));
    ReportRows rows(job, columns);
    const std::string item = std::to_string(line.productId);
    rows.Heading("Item: " + context.Db().LookupValue("STKMASTER", "QMHD", "QMCD=" + item).AsText(),
                 "*headingfonts*");
    rows.Heading(scope.DateHeading(), "*headingfonts*");
    rows.Heading(section.detailHeading, "*headingfonts*blanklineafter*");
    // The I-Forms' quantity is the weight the buyer's weighing found, as in their summary line.
    auto forms = context.Db().OpenRecordset(
        std::string("Select a.DocumentID,b.PartyCode,b.DocDate,b.FormBookNo,b.FormNo,b.DocNumber,m.MHD,") +
        (iForm ? "(a.Quantity+(a.AddLessKgs/100))" : "a.Quantity") +
        " as Qty,a.Amount as Amt,a.iLabourAmtIF as LabourSelf,a.iMarketFeeAmt MarketFee,a.iRDFAmt as "
        "RDF,a.iPIDFAmt as PIDF,a.NoOfBoxes as Bags,b.GrossAmt as GAmt,b.DamiAmt as Dami,b.Labour,"
        "b.Loading,b.StitchAmt as Stitch from ((DocData a Inner Join DocMain b on "
        "a.DocumentID=b.DocumentID) Inner Join FAMaster m on b.PartyCode=m.MCD) Left Join MarketMaster "
        "mm on b.MarketID=mm.MarketID where " +
        scope.Condition(context) + " And a.ProductID=" + item + section.detailCondition +
        " Order by b.DocDate,b.DocNumber");
    for (; !forms->EndOfRows(); forms->MoveNext()) {
        rows.Text(0, forms->Field("DocDate").AsDate().Format("dd-MMM-yyyy"));
        if (const auto book = forms->Field("FormBookNo").AsLong(); book != 0) rows.Text(1, std::to_string(book));
        const auto form = forms->Field("FormNo").AsLong();
        rows.Text(2, std::to_string(form != 0 ? form : forms->Field("DocNumber").AsLong()));
        rows.Text(3, forms->Field("MHD").AsText());
        Put(rows, 4, FormFigures(*forms, iForm), iForm ? kLabourSelf : kFigures);
        rows.Add();
    }
    forms->Close();
    rows.Rule();
    rows.Totals("Totals", "*totals*");
    return job;
}

} // namespace kivra
