#include "CKivraDoc.h"

#include "kivra/masters/frmDocAutoPostingItem.h"
#include "kivra/module/mKivraModule.h"

#include "host/Text.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <stdexcept>

namespace kivra {
namespace {

using qx::Amount;

// The charges grid: one row per charge of the document.
constexpr int kChargeRateCol = 3;
constexpr int kChargeKeyCol = 17;

const Amount kHundred = Amount::FromInt(100);

// The item-master column that supplies a charge's rate, by series mode; null where the mode
// leaves the rate as the host set it.
struct ChargeRateColumns {
    const char* key;
    const char* jForm;
    const char* iForm;
    const char* other; // purchases and ordinary series
};

constexpr ChargeRateColumns kChargeRates[] = {
    {"LABOUR", "qLabourJF", "qLabourIF", "qLabour"},
    {"DAMI", nullptr, "qDamiIF", "qDami"},
    {"DHARMADA", nullptr, "qDharamIF", nullptr},
    {"LOADING", nullptr, "qLoadingIF", "qLoading"},
    {"STITCHING", nullptr, "qStitchIF", "qStitch"},
    {"MARKET_FEE", nullptr, nullptr, "qMarketFee"},
    {"RDF", nullptr, nullptr, "qRDF"},
    {"CANCER_FUND", nullptr, nullptr, "qCancerFund"},
    {"DAMPING", nullptr, nullptr, "qDamping"},
    {"PIDF", nullptr, nullptr, "qPIDF"},
    {"COMMISSION", nullptr, nullptr, "qCommission"},
};

// The levies of the tax summary, with the item-master column of each rate.
struct Levy {
    const char* caption;
    const char* rateColumn;
};

constexpr Levy kLevies[] = {
    {"M.Fee", "QMARKETFEE"},
    {"R.D.F.", "QRDF"},
    {"Cancer Fund", "QCANCERFUND"},
    {"P.I.D.F.", "QPIDF"},
};
constexpr Levy kPurchaseTax = {"Purchase Tax", "QPURTAX"};
constexpr std::size_t kPidfLevy = 3;

// The charge rates kept per line of a saved document, in this order.
constexpr const char* kSavedRateFields[] = {"iMarketFeeRate", "iRDFRate", "iPIDFRate",
                                            "iPurTaxRate", "iLabourRateIF"};
constexpr const char* kSavedRateSeparator = "<||>";

std::string SavedRatesKey(const qx::Value& productId) {
    return "i" + std::to_string(productId.AsLong());
}

// The bags a weight in quintals fills, in double precision as the mandi's rules reckon them,
// from the exact whole numbers of ten-thousandths: 9.20 quintals in bags of 40 kg are 23 bags,
// not 22.999...
double BagsIn(Amount quintals, Amount kgPerBag) {
    return static_cast<double>(quintals.Raw()) * 100.0 / static_cast<double>(kgPerBag.Raw());
}

// Runs one step of a sequence whose failures are skipped, so that the next step still runs.
template <class Step> void Skipping(Step&& step) {
    try {
        step();
    } catch (const std::exception&) {
    }
}

} // namespace

CKivraDoc::CKivraDoc(ModuleContext& context) : context_(context) {}

CKivraDoc::~CKivraDoc() {
    Terminate();
}

bool CKivraDoc::IsGSTApplicableOn(qx::Date documentDate) {
    return documentDate >= qx::Date::FromYmd(2017, 7, 1);
}

bool CKivraDoc::IsGSTApplicable() const {
    return IsGSTApplicableOn(Doc().DocDate());
}

void CKivraDoc::Init(qx::HostDocument& document) {
    doc_ = &document;
    document.Subscribe(*this);
    itemGrid_ = &document.Form().Grid();
    chargesGrid_ = &document.Form().GridTot2();
    // A document opens even when the company database refuses the module's columns.
    Skipping([&] { CheckKivraFields(document.Database()); });
    Skipping([&] { multipleMarkets_ = MultipleMarketRqr(context_); });
}

void CKivraDoc::Terminate() {
    if (doc_) doc_->Unsubscribe(*this);
    doc_ = nullptr;
    itemGrid_ = nullptr;
    chargesGrid_ = nullptr;
    savedItemRates_ = {};
    pickedBatches_.clear();
    columns_ = {};
    formBookBox_.reset();
    formNoBox_.reset();
}

qx::HostDocument& CKivraDoc::Doc() const {
    if (!doc_) throw std::logic_error("The Kivra document extension is not bound to a document.");
    return *doc_;
}

qx::ui::Grid& CKivraDoc::ItemGrid() const {
    if (!itemGrid_)
        throw std::logic_error("The Kivra document extension is not bound to a document.");
    return *itemGrid_;
}

std::string CKivraDoc::Cell(int row, int col) const {
    return col > 0 ? ItemGrid().TextMatrix(row, col) : std::string();
}

Amount CKivraDoc::Number(int row, int col) const {
    return qx::TextToAmount(Cell(row, col));
}

void CKivraDoc::SetCell(int row, int col, std::string text) {
    if (col > 0) ItemGrid().SetTextMatrix(row, col, std::move(text));
}

void CKivraDoc::SetCellInColumnFormat(int row, int col, Amount value) {
    if (col > 0) SetCell(row, col, qx::FormatAmount(value, ItemGrid().ColumnFormat(col)));
}

std::int32_t CKivraDoc::FirstLineItemCode() const {
    if (ItemGrid().Rows() < 2) return 0;
    return qx::Value(Cell(1, columns_.stkCode)).AsInt();
}

std::int32_t CKivraDoc::MarketId() const {
    return Doc().MainFields().GetValue("MarketID").AsInt();
}

// ---- Series and set-up -----------------------------------------------------------------

void CKivraDoc::SelectSeries() {
    ratesLoaded_ = false;
    jFormPickingDone_ = false;
    mode_ = {};
    auto& doc = Doc();
    if (!qx::EqualsNoCase(doc.DocType(), "Purchase")) {
        // A series tagged both ways is an I-Form series.
        const std::string properties = doc.SeriesProperties();
        if (qx::ContainsNoCase(properties, "*IForm*"))
            mode_.iForm = true;
        else if (qx::ContainsNoCase(properties, "*JForm*"))
            mode_.jForm = true;
    } else {
        mode_.purchase = true;
        mode_.localPurchase =
            qx::ContainsNoCase(doc.SeriesInfo().GetValue("SubSeriesName").AsText(), "Local");
    }
    Form().SetShowGridinfo(mode_.localPurchase || mode_.jForm);
}

void CKivraDoc::MakeGridColumnsBegin() {
    columns_.addLessKgs = 0;
    columns_.revBags = 0;
    columns_.revBags2 = 0;
}

void CKivraDoc::MakeGridColumns(int col, const std::string& key) {
    if (key == "ADD_LESS_KGS")
        columns_.addLessKgs = col;
    else if (key == "REV_BAGS")
        columns_.revBags = col;
    else if (key == "REV_BAGS2")
        columns_.revBags2 = col;
}

void CKivraDoc::MakeGridColumnsEnd() {
    const auto& form = Form();
    columns_.productId = form.Member("COL_PRODUCT_ID");
    columns_.qtyPerBox = form.Member("COL_QTY_PER_BOX");
    columns_.quantity = form.Member("COL_QUANTITY");
    columns_.rate = form.Member("COL_RATE");
    columns_.amount = form.Member("COL_AMOUNT");
    columns_.stkCode = form.Member("COL_STK_CODE");
    columns_.customerId = form.Member("COL_CUSTOMER_ID");
    columns_.totalWt = form.Member("COL_TOTAL_WT");
    columns_.noOfBoxes = form.Member("COL_NO_OF_BOXES");
    columns_.pcs = form.Member("COL_PCS");
    columns_.qualityCut = form.Member("COL_QUALITY_CUT");
    columns_.batchNo = form.Member("COL_BATCH_NO");
}

void CKivraDoc::MakeInputControls() {
    formBookBox_.reset();
    formNoBox_.reset();
    const auto boxes = Form().TXPUDI();
    // Every box is examined: of two boxes with one name, the last wins.
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        if (!boxes[i]) continue;
        const std::string name = boxes[i]->ExtVal().GetValue("Name").AsText();
        if (name == "FORM_BOOK_NO")
            formBookBox_ = i;
        else if (name == "FORM_NO")
            formNoBox_ = i;
    }
}

qx::ui::TextBox* CKivraDoc::InputBox(std::optional<std::size_t> index) const {
    if (!index) return nullptr;
    const auto boxes = Form().TXPUDI();
    return *index < boxes.size() ? boxes[*index] : nullptr;
}

// ---- New, edit, delete -------------------------------------------------------------------

void CKivraDoc::NewDocumentEnd() {
    ratesLoaded_ = false;
    jFormPickingDone_ = false;
    pickedProduct_ = 0;
    documentDate_.reset();
    if (mode_.iForm) OpenPendingJFormList();
}

void CKivraDoc::EditDocumentBegin() {
    savedItemRates_ = {};
}

void CKivraDoc::EditMain(const qx::PropertyBag& savedMain) {
    if (!multipleMarkets_) return;
    auto& mainFields = Doc().MainFields();
    if (mainFields.GetValue("MarketID").AsText().empty())
        mainFields.SetValue("MarketID", savedMain.GetValue("MarketID"));
}

void CKivraDoc::EditItem(const qx::PropertyBag& savedLine) {
    std::string rates = savedLine.GetValue(kSavedRateFields[0]).AsText();
    for (std::size_t i = 1; i < std::size(kSavedRateFields); ++i)
        rates += kSavedRateSeparator + savedLine.GetValue(kSavedRateFields[i]).AsText();
    // A later line of the same item replaces what an earlier one kept.
    savedItemRates_.SetValue(SavedRatesKey(savedLine.GetValue("ProductID")), rates);
}

void CKivraDoc::EditDocumentEnd() {
    ratesLoaded_ = false;
    documentDate_ = Doc().DocDate();
}

void CKivraDoc::DeleteDocument(std::int32_t documentId, bool& /*cancel*/) {
    // Read before the row goes, so that the day's voucher can be rebuilt without it.
    const qx::Value stored = Doc().Database().LookupValue(
        "DOCMAIN", "DocDate", "DocumentID=" + std::to_string(documentId));
    documentDate_.reset();
    if (!stored.IsNull() && !stored.AsText().empty()) documentDate_ = stored.AsDate();
}

void CKivraDoc::DeleteDocumentEnd() {
    if (documentDate_) PostDailyVoucher(*documentDate_);
}

void CKivraDoc::OpenPendingJFormList() {
    // The list of pending J-Forms that a new I-Form is filled from comes with the picking of
    // J-Form items; until then a new I-Form starts empty.
}

void CKivraDoc::PostDailyVoucher(qx::Date /*day*/) {
    // The day's consolidated I/J-Form voucher comes with the voucher posting; until then a
    // deletion leaves the ledger to the host.
}

// ---- Item information and charge rates -----------------------------------------------------

void CKivraDoc::FillStkInfo(int /*row*/, bool flag, const qx::PropertyBag& item) {
    auto& doc = Doc();
    auto taxRates =
        doc.Database().OpenRecordset("SELECT FIRST 1 * FROM VATCATEGORYTAXRATES WHERE SERIESID=" +
                                     std::to_string(doc.SeriesID()) + " AND VATCTGNO=" +
                                     std::to_string(item.GetValue("qVATCtgNo").AsLong()));
    const bool accountsSetUp = !taxRates->EndOfRows();
    taxRates->Close();
    if (accountsSetUp || flag) return;

    // Only a series that posts its own vouchers needs the item's accounts.
    const auto& series = doc.SeriesInfo();
    if (!series.GetValue("DocCodeSale").AsAmount().IsZero()) return;
    if (series.GetValue("DocVoucherFactor").AsAmount().IsZero()) return;
    if (series.GetValue("DocProperties").AsText().find("*AutoPostingKivra*") == std::string::npos)
        return;

    frmDocAutoPostingItem setUp(context_, item.GetValue("qmcd").AsInt(),
                                series.GetValue("SeriesID").AsInt());
    context_.Ui().ShowModal(setUp);
}

void CKivraDoc::GridCellLostFocus(int row, int /*col*/) {
    // Rates come from the first line's item, once, and only for a document never saved: a
    // saved document keeps the rates it was saved with.
    if (ratesLoaded_ || row != 1 || Doc().DocumentID() != 0) return;
    LoadChargeRates();
    ratesLoaded_ = true;
}

void CKivraDoc::LoadChargeRates() {
    // The general look-up takes a charge key in any letter case; the J-Form and I-Form
    // look-ups take it only as the series configuration spells it.
    const bool general = !mode_.iForm && !mode_.jForm;
    const auto modeColumn = mode_.iForm   ? &ChargeRateColumns::iForm
                            : mode_.jForm ? &ChargeRateColumns::jForm
                                          : &ChargeRateColumns::other;
    std::int32_t itemCode = 0;
    Skipping([&] { itemCode = FirstLineItemCode(); });
    std::unique_ptr<qx::Recordset> item;
    Skipping([&] {
        const std::string sql =
            general ? "Select * From StkMaster Where QMCD=" : "Select * from StkMaster where qmcd=";
        item = Doc().Database().OpenRecordset(sql + std::to_string(itemCode));
    });
    if (!item) return;
    if (!item->EndOfRows()) {
        for (int row = 1; row < chargesGrid_->Rows(); ++row) {
            Skipping([&] {
                std::string key = chargesGrid_->TextMatrix(row, kChargeKeyCol);
                if (general) key = qx::UpperCase(key);
                for (const auto& charge : kChargeRates) {
                    if (key != charge.key) continue;
                    const char* column = charge.*modeColumn;
                    if (!column) break;
                    const qx::Value rate = item->Field(column);
                    if (!rate.IsNull())
                        chargesGrid_->SetTextMatrix(row, kChargeRateCol, rate.AsText());
                    break;
                }
            });
        }
    }
    Skipping([&] { item->Close(); });
}

// ---- Line recalculation and the bag check ------------------------------------------------

// A step runs only when every column it needs is on the screen: a figure of a column the
// series does not have is unknown, not 0. Bags and kilograms are counted exactly, so that
// 10 quintals in bags of 37.5 kg are 26 bags and 25 kg.
void CKivraDoc::RecalcGridRow(int& row) {
    const auto& c = columns_;
    const Amount quantity = Number(row, c.quantity);
    const Amount kgPerBag = Number(row, c.qtyPerBox);
    const Amount quantityInKg = quantity * 100;

    // Bags weighed against the quantity: the kilograms the whole bags weigh more (or less)
    // than the quantity go into add/less, unless they come to a whole bag or more.
    if (c.addLessKgs > 0 && c.revBags2 > 0 && c.qtyPerBox > 0) {
        Amount revisedBags = Number(row, c.revBags2);
        if (!quantity.IsZero() && revisedBags.IsZero()) {
            revisedBags = quantityInKg / kgPerBag;
            SetCellInColumnFormat(row, c.revBags2, revisedBags);
        }
        if (!quantity.IsZero() && !revisedBags.IsZero() && revisedBags.IsWhole()) {
            const Amount difference = revisedBags * kgPerBag - quantityInKg;
            if (!difference.IsZero() && difference.Abs() < kgPerBag)
                SetCell(row, c.addLessKgs, difference.ToPlainString());
        }
    }

    if (c.addLessKgs > 0 && c.quantity > 0 && c.totalWt > 0) {
        const Amount totalWeight = quantity + Number(row, c.addLessKgs) / kHundred;
        SetCellInColumnFormat(row, c.totalWt, totalWeight);
    }

    // An I-Form line is valued on its weight; other lines are the host's own calculation.
    if (mode_.iForm && c.totalWt > 0 && c.rate > 0 && c.amount > 0) {
        const Amount amount = Number(row, c.totalWt) * Number(row, c.rate);
        SetCell(row, c.amount, qx::FormatAmount(amount, "c2"));
    }

    if (c.qtyPerBox > 0 && c.noOfBoxes >= 1 && c.pcs >= 1 && Number(row, c.noOfBoxes).IsZero() &&
        !quantity.IsZero() && !kgPerBag.IsZero()) {
        const qx::WholeDivision bags = qx::DivideWhole(quantityInKg, kgPerBag);
        SetCell(row, c.noOfBoxes, std::to_string(bags.count));
        if (!bags.remainder.IsZero()) SetCell(row, c.pcs, bags.remainder.ToPlainString());
    }

    if (c.revBags > 0 && c.totalWt > 0 && c.qtyPerBox > 0) {
        if (kgPerBag > Amount()) {
            SetCellInColumnFormat(row, c.revBags,
                                  Amount::FromDouble(BagsIn(Number(row, c.totalWt), kgPerBag)));
        } else {
            SetCell(row, c.revBags, {});
        }
    }
}

void CKivraDoc::GridCellBeforeLostFocus(int row, int col, const std::string& newValue,
                                        bool& cancel) {
    if (columns_.revBags2 <= 0 || col != columns_.revBags2) return;
    const Amount bags = qx::TextToAmount(newValue);
    if (bags.IsZero()) return;
    const Amount quantity = Number(row, columns_.quantity);
    const Amount kgPerBag = Number(row, columns_.qtyPerBox);
    if (kgPerBag.IsZero()) throw std::domain_error("Division by zero: the line has no Kg./Bag.");
    const auto fewest = static_cast<std::int64_t>(std::floor(BagsIn(quantity, kgPerBag)));
    if (bags >= Amount::FromInt(fewest) && bags <= Amount::FromInt(fewest + 1)) return;
    context_.Util().ShowMessage("Bags must be either " + std::to_string(fewest) + " or " +
                                    std::to_string(fewest + 1),
                                "", "W");
    cancel = true;
}

// ---- Pre-save validation -------------------------------------------------------------------

int CKivraDoc::Ask(const std::string& question) {
    return context_.Util().ShowMessage(question, "2", "Q");
}

void CKivraDoc::Notify(const std::string& notice) {
    context_.Util().ShowMessage(notice, "", "W");
}

void CKivraDoc::BeforeSaveDocument(bool& cancel) {
    CheckBagFigures(cancel);
    // The form numbers are checked even when the user stopped at a bag question.
    CheckFormNumbers(cancel);
}

void CKivraDoc::CheckBagFigures(bool& cancel) {
    const auto& c = columns_;
    if (c.pcs < 1 && c.addLessKgs < 1) return;
    const auto& grid = ItemGrid();
    for (int row = 1; row < grid.Rows(); ++row) {
        if (c.revBags > 0 && c.pcs > 0) {
            const Amount revisedBags = Number(row, c.revBags);
            if (!revisedBags.IsZero() && !revisedBags.IsWhole() &&
                Ask("Fractional bags sale / purchase found. Do you want to continue?") ==
                    qx::kAnswerNo) {
                cancel = true;
                return;
            }
        }
        if (c.addLessKgs > 0) {
            // Deductions are never questioned.
            const Amount addLess = Number(row, c.addLessKgs);
            if (addLess > Amount() && addLess >= Number(row, c.qtyPerBox) &&
                Ask("Kgs more than Kg./Bag found at row no: " + std::to_string(row) +
                    ". Do you want to continue?") == qx::kAnswerNo) {
                cancel = true;
                return;
            }
        }
    }
}

void CKivraDoc::CheckFormNumbers(bool& cancel) {
    qx::ui::TextBox* formNoBox = InputBox(formNoBox_);
    if (!formNoBox) return;
    qx::ui::TextBox* formBookBox = InputBox(formBookBox_);
    auto& doc = Doc();
    const Amount formNo = qx::TextToAmount(formNoBox->Text());

    std::string duplicate = "DocumentID<>" + std::to_string(doc.DocumentID());
    if (formBookBox) {
        const Amount bookNo = qx::TextToAmount(formBookBox->Text());
        if (bookNo.IsZero()) {
            Notify("Book no. not specified.");
            if (formBookBox->Visible()) formBookBox->SetFocus();
            cancel = true;
            return;
        }
        duplicate += " and FormBookNo=" + bookNo.ToPlainString();
    }
    duplicate += " and FormNo=" + formNo.ToPlainString() +
                 " and DocSeries=" + context_.Util().SqlQuote(doc.SeriesCode());
    if (multipleMarkets_) duplicate += " and MarketID=" + std::to_string(MarketId());
    const std::int32_t duplicateId =
        doc.Database().LookupValue("DOCMAIN", "DOCUMENTID", duplicate).AsInt();

    if (formNo.IsZero()) {
        Notify("Form no. not specified.");
        if (formNoBox->Visible()) formNoBox->SetFocus();
        cancel = true;
        return;
    }
    if (duplicateId != 0) {
        Notify("This form no. already exists");
        if (formNoBox->Visible()) formNoBox->SetFocus();
        cancel = true;
    }
}

// ---- Tax summary ---------------------------------------------------------------------------

void CKivraDoc::UpdateTotals2() {
    if (!mode_.localPurchase && !mode_.jForm) return;
    const std::int32_t itemCode = FirstLineItemCode();
    if (itemCode == 0) return;

    // From here a failing step is skipped and the rest of the summary still shows.
    std::unique_ptr<qx::Recordset> item;
    Skipping([&] {
        item = Doc().Database().OpenRecordset(
            "SELECT QMARKETFEE,QRDF,QPIDF,QPURTAX,QCANCERFUND FROM STKMASTER WHERE QMCD=" +
            std::to_string(itemCode));
    });
    auto rateOf = [&](const char* column) {
        std::optional<Amount> rate;
        Skipping([&] {
            if (item && !item->EndOfRows()) rate = item->Field(column).AsAmount();
        });
        return rate;
    };

    // A J-Form bears the levies only on what the agent bought himself.
    Amount base;
    Skipping([&] {
        if (mode_.jForm) {
            const auto& grid = ItemGrid();
            for (int row = 1; row < grid.Rows(); ++row) {
                if (Number(row, columns_.stkCode).IsZero()) continue;
                if (Cell(row, columns_.customerId) == "SELF") base += Number(row, columns_.amount);
            }
        } else {
            base = Doc().DocumentAmount();
        }
    });

    auto& form = Form();
    if (mode_.jForm) {
        const bool show = !base.IsZero();
        Skipping([&] {
            form.SetShowGridinfo(show);
            if (form.PicGridInfo().Visible() != show) form.PicGridInfo().SetVisible(show);
        });
        if (!show) return;
    }

    auto& summary = form.GridInfo();
    Skipping([&] {
        summary.SetRedraw(false);
        summary.ClearColumns();
        summary.SetRows(1);
        const int width = summary.Width() > 0 ? summary.Width() : 6000;
        summary.AddColumn("Tax Type", width * 30 / 100, qx::Align::Left);
        summary.AddColumn("Rate %", width * 20 / 100, qx::Align::Right);
        summary.AddColumn("Charged on", width * 25 / 100, qx::Align::Right);
        summary.AddColumn("Tax Amount", width * 25 / 100, qx::Align::Right);
    });
    auto writeLevy = [&](int row, const Levy& levy, Amount chargedOn) {
        std::optional<Amount> taxAmount;
        Skipping([&] {
            summary.SetRows(std::max(summary.Rows(), row + 1));
            summary.SetTextMatrix(row, 0, levy.caption);
            summary.SetTextMatrix(row, 2, qx::FormatAmount(chargedOn, "c2"));
            const auto rate = rateOf(levy.rateColumn);
            if (!rate) return;
            taxAmount = qx::RoundAmount(chargedOn * *rate / kHundred, 2);
            summary.SetTextMatrix(row, 1, rate->ToPlainString());
            summary.SetTextMatrix(row, 3, qx::FormatAmount(*taxAmount, "c2"));
        });
        return taxAmount.value_or(Amount());
    };
    Amount pidf;
    for (std::size_t k = 0; k < std::size(kLevies); ++k) {
        const Amount taxAmount = writeLevy(static_cast<int>(k) + 1, kLevies[k], base);
        if (k == kPidfLevy) pidf = taxAmount;
    }
    // Purchase tax is levied on the P.I.D.F. as well.
    bool gst = true;
    Skipping([&] { gst = IsGSTApplicable(); });
    if (!gst) writeLevy(static_cast<int>(std::size(kLevies)) + 1, kPurchaseTax, base + pidf);
    Skipping([&] { summary.SetRedraw(true); });
    Skipping([&] {
        if (item) item->Close();
    });
}

} // namespace kivra
