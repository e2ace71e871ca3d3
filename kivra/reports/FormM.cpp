#include "FormM.h"

#include "ReportRows.h"

#include "kivra/module/mKivraModule.h"

#include <array>
#include <set>
#include <string_view>
#include <variant>

namespace kivra {
namespace {

enum Col {
    kSrNo, kDate, kItem, kBook, kSeller, kBank, kBags, kQty, kRate, kAmount, kJFormAmount, kBuyer,
    kFeeApplicable, kFeeAmount, kSaleQty, kSaleRate, kSaleAmount, kUtrNo, kUtrDate, kColumns
};

struct FormMColumn {
    ReportColumn column;
    bool daily;
    bool weekly;
};

const std::array<FormMColumn, kColumns> kAllColumns = {{
    {{"SrNo", 600, Figure::Text}, true, false},
    {{"Date", 1400, Figure::Text}, false, true},
    {{"Item", 2000, Figure::Text}, true, true},
    {{"Book / J.F. No.", 1000, Figure::Text}, true, true},
    {{"Name of farmer / seller", 4000, Figure::Text}, true, true},
    {{"Bank Details", 3500, Figure::Text}, true, true},
    {{"Bags", 1100, Figure::Count}, true, false},
    {{"Qty.(Qtl)", 1400, Figure::Quantity}, true, true},
    {{"Rate", 1200, Figure::Rate}, true, true},
    {{"Amount", 1600, Figure::Money}, true, true},
    {{"J-Form Amount", 1600, Figure::Money}, true, true},
    {{"Buyer", 4000, Figure::Text}, true, true},
    {{"Fee Applicable", 1000, Figure::Text}, false, true},
    {{"Fee Amount", 1400, Figure::Text}, false, true},
    {{"Sale Qty.", 1300, Figure::Quantity}, false, true},
    {{"Rate", 1200, Figure::Rate}, false, true},
    {{"Amount", 1600, Figure::Money}, false, true},
    {{"U.T.R. No.", 2000, Figure::Text}, true, true},
    {{"U.T.R. Date", 1500, Figure::Text}, true, true},
}};

// The statements' tables: lines "a", documents "b", buyers "c", sellers "d", items "s" and
// series "dc".
constexpr const char* kTables =
    " from ((((DocData a Inner Join DocMain b on a.DocumentID=b.DocumentID) Left Join FAMaster c on "
    "a.CustomerID=c.mcd) Inner Join FAMaster d on b.PartyCode=d.mcd) Inner Join StkMaster s on "
    "a.ProductID=s.qmcd) Inner Join docconfig dc on b.DocSeriesID=dc.SeriesID";

std::string FilterCondition(const FormMOptions& options) {
    const std::string both = " and (b.DocSeries in ('JF','PL') or dc.DocProperties like '%*RDF*%')";
    const std::string buyer = " and a.CustomerID=" + std::to_string(options.buyer);
    switch (options.filter) {
    case FormMFilter::Both:
        return options.daily ? " and b.DocSeries='JF'" : both;
    case FormMFilter::SelfPurchase:
        return options.daily ? " and (c.mhd='SELF' and b.DocSeries='JF')"
                             : " and ((b.DocSeries='JF' and c.mhd='SELF') or b.DocSeries='PL' or "
                               "dc.DocProperties like '%*RDF*%')";
    case FormMFilter::IForms:
        return options.daily ? " and (c.mhd<>'SELF' and b.DocSeries='JF')"
                             : " and b.DocSeries='JF' and c.mhd<>'SELF'";
    case FormMFilter::Buyer:
        return options.daily ? " and b.DocSeries='JF'" + buyer : both + buyer;
    }
    return {};
}

// The fields of a statement read row by row, at the positions of their names found once.
template <std::size_t N>
class FieldsAt {
public:
    FieldsAt(const qx::Recordset& rows, const std::array<const char*, N>& names) : rows_(rows) {
        for (std::size_t i = 0; i < N; ++i) at_[i] = rows.FieldIndex(names[i]);
    }
    const qx::Value& operator[](std::size_t field) const { return rows_.Field(at_[field]); }

private:
    const qx::Recordset& rows_;
    std::array<int, N> at_{};
};

// The fields of a line of the return, in the order of kLineFields.
enum LineField {
    fDocumentID, fDocDate, fFormBookNo, fFormNo, fGrandTotal, fSeller, fSAdd1, fSStation, fSCellNo,
    fSAadharNo, fSPAN, fBankAcNo, fIFSCCode, fMICRCode, fBankName, fUTRNo, fUTRDate, fItem, fBags,
    fQuantity, fRate, fAmount, fStockFactor, fBuyer, fBStation, fBCellNo, fMarketFee, fRDF,
    fCancerFund, kLineFieldCount
};
constexpr std::array<const char*, kLineFieldCount> kLineFields = {
    "DocumentID", "DocDate", "FormBookNo", "FormNo", "GrandTotal", "Seller", "SAdd1", "SStation",
    "SCellNo", "SAadharNo", "SPAN", "mBankAcNo", "mIFSCCode", "mMICRCode", "mBankName", "UTRNo",
    "UTRDate", "qmhd", "NoOfBoxes", "Quantity", "Rate", "Amount", "StockFactor", "Buyer", "BStation",
    "BCellNo", "qMarketFee", "qRDF", "qCancerFund"};
using LineFields = FieldsAt<kLineFieldCount>;

// A field as AsText gives it, a text field's without a copy; scratch holds any other's.
std::string_view TextOf(const qx::Value& field, std::string& scratch) {
    if (const auto* text = std::get_if<std::string>(&field.Raw())) return *text;
    return scratch = field.AsText();
}

// The market charges of the weekly return, each of an item whose rate is not 0.
struct Fees {
    std::array<qx::Amount, 3> amounts{};
    static constexpr std::array<const char*, 3> kNames = {"M.Fee", "R.D.F.", "C.Fund"};

    // rates: the item's market fee, R.D.F. and cancer fund.
    static Fees On(std::array<const qx::Value*, 3> rates, qx::Amount amount) {
        Fees fees;
        for (std::size_t i = 0; i < rates.size(); ++i)
            fees.amounts[i] = amount * rates[i]->AsAmount() / qx::Amount::FromInt(100);
        return fees;
    }
    void operator+=(const Fees& other) {
        for (std::size_t i = 0; i < amounts.size(); ++i) amounts[i] += other.amounts[i];
    }
    // The names of the charges, and their amounts, one a line of the two cells.
    std::pair<std::string, std::string> Cells() const {
        std::string names, figures;
        for (std::size_t i = 0; i < amounts.size(); ++i) {
            if (amounts[i].IsZero()) continue;
            if (!names.empty()) {
                names += '\n';
                figures += '\n';
            }
            names += kNames[i];
            figures += qx::FormatAmount(amounts[i], "n2");
        }
        return {names, figures};
    }
};

// Parts of a cell, one a line, each only when it says something: a label and its field, if
// shown at all.
std::string Lines(std::initializer_list<std::pair<std::string_view, const qx::Value*>> parts) {
    std::string cell, scratch;
    for (const auto& [label, field] : parts) {
        if (field == nullptr) continue;
        const std::string_view text = TextOf(*field, scratch);
        if (text.empty()) continue;
        if (!cell.empty()) cell += '\n';
        cell.append(label).append(text);
    }
    return cell;
}

class FormM {
public:
    FormM(ModuleContext& context, const ReportScope& scope, const FormMOptions& options, qx::PrintJob& job)
        : context_(context), options_(options), rows_(job, Columns(options.daily)),
          grouped_(MultipleMarketRqr(context) && scope.marketId <= 0),
          condition_(scope.Condition(context) + FilterCondition(options) +
                     (options.items.empty() ? "" : " and " + options.items)) {
        for (int c = 0, at = 0; c < kColumns; ++c) {
            const FormMColumn& column = kAllColumns[static_cast<std::size_t>(c)];
            at_[static_cast<std::size_t>(c)] = (options.daily ? column.daily : column.weekly) ? at++ : -1;
        }
    }
    void Headings(const std::string& heading);
    void Detail();
    void Summary();

private:
    static std::vector<ReportColumn> Columns(bool daily) {
        std::vector<ReportColumn> columns;
        for (const FormMColumn& column : kAllColumns)
            if (daily ? column.daily : column.weekly) columns.push_back(column.column);
        return columns;
    }
    int At(Col col) const { return at_[static_cast<std::size_t>(col)]; }
    void Text(Col col, std::string text) {
        if (At(col) >= 0) rows_.Text(At(col), std::move(text));
    }
    void Number(Col col, qx::Amount value) {
        if (At(col) >= 0) rows_.Number(At(col), value);
    }
    void ShowFees(const Fees& fees) {
        if (options_.daily) return;
        auto [names, figures] = fees.Cells();
        Text(kFeeApplicable, std::move(names));
        Text(kFeeAmount, std::move(figures));
    }
    // A closing line, with the charges since the last one.
    void Close(const std::string& caption, const std::string& marks) {
        ShowFees(fees_);
        rows_.Totals(caption, marks);
        fees_ = {};
    }
    void Document(const LineFields& row);
    void Line(const LineFields& row);

    ModuleContext& context_;
    const FormMOptions& options_;
    ReportRows rows_;
    const bool grouped_; // market by market: the firm works in several and chose none
    const std::string condition_;
    std::array<int, kColumns> at_{};
    Fees fees_;
    std::set<std::int64_t> documentsShown_;
};

void FormM::Headings(const std::string& heading) {
    rows_.Heading(heading, "*headingfonts*blanklineafter*");
    if (options_.daily) return;
    // A caption over the columns of what the firm bought, beside those of the sales.
    Text(kQty, "Purchase Qty.");
    rows_.Add("*headingfonts*");
}

void FormM::Document(const LineFields& row) {
    const std::int64_t document = row[fDocumentID].AsLong();
    const bool first = documentsShown_.insert(document).second;
    if (options_.daily && first) Text(kSrNo, std::to_string(documentsShown_.size()));
    Text(kDate, row[fDocDate].AsDate().Format("dd-MMM-yyyy"));
    // A purchase form without a book is known by its number alone.
    const std::int64_t book = row[fFormBookNo].AsLong();
    Text(kBook, (book != 0 ? std::to_string(book) + " / " : "") + row[fFormNo].AsText());
    Text(kSeller, Lines({{"", &row[fSeller]},
                         {"", options_.sellerAddress ? &row[fSAdd1] : nullptr},
                         {"", &row[fSStation]},
                         {"Mobile: ", &row[fSCellNo]},
                         {"Aadhaar: ", &row[fSAadharNo]},
                         {"PAN: ", &row[fSPAN]}}));
    Text(kBank, Lines({{"A/c No: ", &row[fBankAcNo]},
                       {"IFSC Code: ", &row[fIFSCCode]},
                       {"MICR Code: ", &row[fMICRCode]},
                       {"", &row[fBankName]}}));
    // A form listed again in the buyers' order counts its amount once.
    if (first) Number(kJFormAmount, row[fGrandTotal].AsAmount());
    Text(kUtrNo, row[fUTRNo].AsText());
    if (!row[fUTRDate].IsNull()) Text(kUtrDate, row[fUTRDate].AsDate().Format("dd-MMM-yyyy"));
}

void FormM::Line(const LineFields& row) {
    Text(kItem, row[fItem].AsText());
    Number(kBags, row[fBags].AsAmount());
    const qx::Amount qty = row[fQuantity].AsAmount();
    const qx::Amount rate = row[fRate].AsAmount();
    const qx::Amount amount = row[fAmount].AsAmount();
    // The weekly return keeps what the firm bought (stock in) apart from what the farmers
    // sold to the buyers through it.
    if (options_.daily || row[fStockFactor].AsLong() > 0) {
        Number(kQty, qty);
        Number(kRate, rate);
        Number(kAmount, amount);
    } else {
        Number(kSaleQty, qty);
        Number(kSaleRate, rate);
        Number(kSaleAmount, amount);
    }
    Text(kBuyer, Lines({{"", &row[fBuyer]}, {"", &row[fBStation]}, {"Mobile: ", &row[fBCellNo]}}));
    if (!options_.daily) {
        const Fees fees = Fees::On({&row[fMarketFee], &row[fRDF], &row[fCancerFund]}, amount);
        ShowFees(fees);
        fees_ += fees;
    }
    rows_.Add();
}

void FormM::Detail() {
    std::string order = "b.DocDate,b.DocNumber,a.RefNo";
    if (options_.order == FormMOrder::FarmerWise) order = "d.MHD,b.PartyCode," + order;
    if (options_.order == FormMOrder::BuyerWise) order = "c.MHD,a.CustomerID," + order;
    if (grouped_) order = "b.MarketID," + order;
    auto rows = context_.Db().OpenRecordset(
        "Select a.DocumentID,a.ProductID,a.CustomerID,a.Quantity,a.NoOfBoxes,a.Rate,a.Amount,"
        "a.StockFactor,b.PartyCode,b.DocDate,b.FormBookNo,b.FormNo,b.GrandTotal,"
        "c.mhd as Buyer,c.mst as BStation,c.mCellNo as BCellNo,d.mhd as Seller,d.mhda1 as SAdd1,"
        "d.mst as SStation,d.mCellNo as SCellNo,d.mAadharNo as SAadharNo,d.mPANNo as SPAN,"
        "d.mBankAcNo,d.mIFSCCode,d.mMICRCode,d.mBankName,s.qmhd,s.qMarketFee,s.qRDF,"
        "s.qCancerFund,b.UTRNo,b.UTRDate" +
        std::string(grouped_ ? ",b.MarketID" : "") + kTables + " Where " + condition_ + " Order by " + order);
    const LineFields line(*rows, kLineFields);
    const int marketAt = grouped_ ? rows->FieldIndex("MarketID") : -1;
    std::int64_t document = -1;
    std::int64_t market = -1;
    for (; !rows->EndOfRows(); rows->MoveNext()) {
        if (grouped_ && rows->Field(marketAt).AsLong() != market) {
            if (market != -1) {
                rows_.Rule();
                Close("Sub Totals (Market)", "*totals*totalreset*");
            }
            market = rows->Field(marketAt).AsLong();
            rows_.Heading("Market: " + GetMarketName(context_, static_cast<std::int32_t>(market)),
                          "*blanklineafter*headingfonts*");
            document = -1;
        }
        if (line[fDocumentID].AsLong() != document) {
            document = line[fDocumentID].AsLong();
            Document(line);
        }
        Line(line);
    }
    rows->Close();
    if (market == -1 && document == -1) return;
    rows_.Rule();
    Close(grouped_ ? "Sub Totals (Market)" : "Sub Totals", "*totals*totalreset*");
}

// The firm's own purchases of the period, by date, item and rate.
void FormM::Summary() {
    auto rows = context_.Db().OpenRecordset(
        "Select SUM(a.Quantity) as Qty,SUM(a.Amount) as Amt,a.Rate,b.DocDate,s.qmhd,s.qMarketFee,s.qRDF,"
        "s.qCancerFund" + std::string(kTables) + " where a.StockFactor=1 and " + condition_ +
        " group by b.docdate,s.qmhd,a.Rate,s.qMarketFee,s.qRDF,s.qCancerFund Order by b.DocDate,s.qmhd");
    if (rows->EndOfRows()) return;
    rows_.Heading("SUMMARY", "*headingfonts*blanklinebefore*blanklineafter*");
    for (; !rows->EndOfRows(); rows->MoveNext()) {
        Text(kDate, rows->Field("DocDate").AsDate().Format("dd-MMM-yyyy"));
        Text(kItem, rows->Field("qmhd").AsText());
        Number(kQty, rows->Field("Qty").AsAmount());
        Number(kRate, rows->Field("Rate").AsAmount());
        const qx::Amount amount = rows->Field("Amt").AsAmount();
        Number(kAmount, amount);
        const Fees fees = Fees::On({&rows->Field("qMarketFee"), &rows->Field("qRDF"), &rows->Field("qCancerFund")}, amount);
        ShowFees(fees);
        fees_ += fees;
        rows_.Add();
    }
    rows->Close();
    Close("Totals", "*bhline1*hline1*totals*totalreset*");
}

} // namespace

bool AcceptWeek(ModuleContext& context, qx::Date from, qx::Date to) {
    const std::string more = "\r\nDo you want to continue?";
    qx::ModuleUtil& util = context.Util();
    if (from.DaysUntil(to) != 6 &&
        util.ShowMessage("This report should be of one week period ending on Sunday." + more, "2", "Q") != 1)
        return false;
    // Pointed out only: the period stands whatever the answer.
    if (from.Weekday() != 1) util.ShowMessage("Starting day of report should be Monday." + more, "2", "Q");
    else if (to.Weekday() != 7) util.ShowMessage("Ending day of report should be Sunday." + more, "2", "Q");
    return true;
}

void CheckUtrFields(qx::CompanyDb& db) {
    if (db.FieldExists("UTRNo", "DOCMAIN") && db.FieldExists("UTRDate", "DOCMAIN")) return;
    qx::Transaction unit(db);
    db.AddFields("DOCMAIN", "VarChar(50)", {"UTRNo"});
    db.AddFields("DOCMAIN", "Date", {"UTRDate"});
    unit.Commit();
}

std::string FormMHeading(const ReportScope& scope, bool daily) {
    std::string heading = daily ? "Date: " + scope.from.Format("dd/MM/yyyy (dddd)") : scope.PeriodHeading();
    if (scope.marketId > 0) heading += "    Market: " + scope.marketName;
    return heading;
}

qx::PrintJob FormMJob(ModuleContext& context, const ReportScope& scope, const FormMOptions& options) {
    CheckUtrFields(context.Db());
    qx::PrintJob job;
    job.reportName = options.daily ? "DailyReturn" : "FormM";
    job.title = "Form M";
    job.title2 = options.daily ? "   Daily Return" : FormMHeading(scope, false);
    job.options.SetValue("Wrap", "3");
    if (!options.daily) {
        // The firm's heading and footer come from its print designs.
        for (const char* section : {"MainHeadForm1", "MainHeadForm2"}) job.headSections.push_back({"FormM_Head", section});
        for (const char* section : {"SUBFORM6", qx::kBroughtForwardSection, qx::kCarriedForwardSection, "BottomLine"})
            job.footSections.push_back({"FormM_Footer", section});
    }
    FormM report(context, scope, options, job);
    report.Headings(FormMHeading(scope, options.daily));
    report.Detail();
    if (!options.daily) report.Summary();
    return job;
}

} // namespace kivra
