#include "CKivraDoc.h"

#include "ChargeRates.h"
#include "FormPaper.h"
#include "FormSaving.h"
#include "JFormLines.h"
#include "LineFigures.h"
#include "PendingJForms.h"
#include "SaveChecks.h"
#include "TaxSummary.h"

#include "kivra/module/mKivraModule.h"

#include "host/Text.h"

namespace kivra {

CKivraDoc::CKivraDoc(ModuleContext& context) : form_(context) {}

CKivraDoc::~CKivraDoc() {
    Terminate();
}

void CKivraDoc::Init(qx::HostDocument& document) {
    form_.Bind(document);
    document.Subscribe(*this);
    // A document opens even when the company database refuses the module's columns.
    Skipping([&] { CheckKivraFields(document.Database()); });
    Skipping([&] { form_.multipleMarkets = MultipleMarketRqr(form_.Context()); });
    Skipping([&] { dayColumns_ = DayColumns::Of(document.Database()); });
}

void CKivraDoc::Terminate() {
    if (form_.Bound()) form_.Doc().Unsubscribe(*this);
    form_.Release();
    savedItemRates_ = {};
    picking_.Forget();
}

void CKivraDoc::SelectSeries() {
    ratesLoaded_ = false;
    picking_.done = false;
    SeriesMode& mode = form_.mode;
    mode = {};
    auto& doc = form_.Doc();
    if (!qx::EqualsNoCase(doc.DocType(), "Purchase")) {
        // A series tagged both ways is an I-Form series.
        const std::string properties = doc.SeriesProperties();
        if (qx::ContainsNoCase(properties, "*IForm*"))
            mode.iForm = true;
        else if (qx::ContainsNoCase(properties, "*JForm*"))
            mode.jForm = true;
    } else {
        mode.purchase = true;
        mode.localPurchase =
            qx::ContainsNoCase(doc.SeriesInfo().GetValue("SubSeriesName").AsText(), "Local");
    }
    form_.Form().SetShowGridinfo(mode.localPurchase || mode.jForm);
    form_.seriesMarketId = doc.MainFields().GetValue("MarketID").AsInt();
}

// ---- New, edit, delete -------------------------------------------------------------------

void CKivraDoc::NewDocumentEnd() {
    ratesLoaded_ = false;
    picking_.Forget();
    documentDate_.reset();
    if (!form_.mode.iForm) return;
    // The new document's screen is drawn before the list opens over it.
    form_.Context().Ui().DoEvents();
    form_.Context().Ui().DoEvents();
    picking_.SelectJForm();
}

void CKivraDoc::EditDocumentBegin() {
    savedItemRates_ = {};
}

void CKivraDoc::EditMain(const qx::PropertyBag& savedMain) {
    if (!form_.multipleMarkets) return;
    auto& mainFields = form_.Doc().MainFields();
    if (mainFields.GetValue("MarketID").AsText().empty())
        mainFields.SetValue("MarketID", savedMain.GetValue("MarketID"));
}

void CKivraDoc::EditItem(const qx::PropertyBag& savedLine) {
    KeepSavedRates(savedItemRates_, savedLine);
}

void CKivraDoc::EditDocumentEnd() {
    ratesLoaded_ = false;
    documentDate_ = form_.Doc().DocDate();
}

void CKivraDoc::DeleteDocument(std::int32_t documentId, bool& /*cancel*/) {
    buyers_ = BuyersOf(form_.Doc().Database(), documentId);
    // Read before the row goes, so that the day's voucher can be rebuilt without it.
    const qx::Value stored = form_.Doc().Database().LookupValue(
        "DOCMAIN", "DocDate", "DocumentID=" + std::to_string(documentId));
    documentDate_.reset();
    if (!stored.IsNull() && !stored.AsText().empty()) documentDate_ = stored.AsDate();
}

void CKivraDoc::DeleteDocumentEnd() {
    if (documentDate_) PostDay(*documentDate_);
}

void CKivraDoc::PostDay(qx::Date day) {
    qx::CompanyDb& db = form_.Doc().Database();
    DailyVoucher(form_.Context(), db, form_.multipleMarkets, dayColumns_).Post(day);
    KeepPendingOf(db, day, buyers_);
}

// ---- Typing ---------------------------------------------------------------------------------

// An I-Form takes over its buyer's pending J-Form lines with the I-Form charges of their item,
// and the cursor moves on past the party.
void CKivraDoc::PartySelected() {
    if (!picking_.OfferedForParty()) return;
    picking_.PickJFormItems();
    LoadChargeRates(form_);
    ratesLoaded_ = true;
    picking_.done = true;
    form_.Context().Util().SendKeys("{TAB}");
}

void CKivraDoc::FillStkInfo(int /*row*/, bool flag, const qx::PropertyBag& item) {
    OfferAccountsSetUp(form_, flag, item);
}

void CKivraDoc::GridCellLostFocus(int row, int /*col*/) {
    // Rates come from the first line's item, once, and only for a document never saved: a
    // saved document keeps the rates it was saved with.
    if (ratesLoaded_ || row != 1 || form_.Doc().DocumentID() != 0) return;
    LoadChargeRates(form_);
    ratesLoaded_ = true;
}

void CKivraDoc::GridCellBeforeLostFocus(int row, int col, const std::string& newValue,
                                        bool& cancel) {
    CheckBagsWeighed(form_, row, col, newValue, cancel);
}

void CKivraDoc::RecalcGridRow(int& row) {
    RecalcLine(form_, row);
    NoteWeighedDifference(form_, row);
}

void CKivraDoc::UpdateTotals2() {
    ShowTaxSummary(form_);
}

void CKivraDoc::BeforeSaveDocument(bool& cancel) {
    CheckBeforeSave(form_, cancel);
    // Read in the unit that saves, before the lines go: the buyers whose pending J-Forms the
    // lines as stored count in.
    auto& doc = form_.Doc();
    buyers_.clear();
    if (!cancel && doc.DocumentID() != 0) buyers_ = BuyersOf(doc.Database(), doc.DocumentID());
}

void CKivraDoc::SaveDocumentBegin() {
    BeginSavingForm(form_);
}

void CKivraDoc::SaveMain(qx::PropertyBag& main) {
    StampMarket(form_, main);
}

void CKivraDoc::SaveItem(int row, qx::PropertyBag& item) {
    SaveFormLine(form_, savedItemRates_, row, item);
}

// The day the form was on before this edit no longer counts it; the day it is on now does.
void CKivraDoc::SaveDocumentEnd() {
    const qx::Date day = form_.Doc().DocDate();
    buyers_.merge(BuyersOf(form_.Doc().Database(), form_.Doc().DocumentID()));
    if (documentDate_ && *documentDate_ != day) PostDay(*documentDate_);
    PostDay(day);
}

void CKivraDoc::PrintDocument(qx::DocumentPaper& paper) {
    DressPaper(form_, paper);
}

} // namespace kivra
