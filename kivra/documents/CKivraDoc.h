#pragma once
// The module's extension of the host's document engine: it turns an ordinary stock document
// into a mandi form (J-Form, I-Form, local or outside purchase). The host creates one per
// open document screen, binds it with Init and raises the document's events on it; CKivraDoc
// keeps the per-document state and hands each event to the part that deals with it (line
// figures, charge rates, checks before saving, the tax summary, saving the form, its own
// voucher and the day's consolidated voucher).

#include "DailyVoucher.h"
#include "FormVoucher.h"
#include "JFormPicking.h"
#include "MandiForm.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>

namespace kivra {

class CKivraDoc : public qx::IDocExtension, public qx::DocumentEvents {
public:
    explicit CKivraDoc(ModuleContext& context);
    ~CKivraDoc() override;
    CKivraDoc(const CKivraDoc&) = delete;
    CKivraDoc& operator=(const CKivraDoc&) = delete;

    // IDocExtension
    void Init(qx::HostDocument& document) override;
    void Terminate() override;

    static bool IsGSTApplicableOn(qx::Date documentDate) {
        return MandiForm::IsGSTApplicableOn(documentDate);
    }
    bool IsGSTApplicable() const { return form_.IsGSTApplicable(); }

    const SeriesMode& Mode() const { return form_.mode; }

    // Setting up the screen for a series.
    void SelectSeries() override;
    void MakeGridColumnsBegin() override { form_.ForgetModuleColumns(); }
    void MakeGridColumns(int col, const std::string& key) override { form_.NoteColumn(col, key); }
    void MakeGridColumnsEnd() override { form_.FindStandardColumns(); }
    void MakeInputControls() override { form_.FindInputBoxes(); }
    // New, edit, delete.
    void NewDocumentEnd() override;
    void EditDocumentBegin() override;
    void EditMain(const qx::PropertyBag& savedMain) override;
    void EditItem(const qx::PropertyBag& savedLine) override;
    void EditDocumentEnd() override;
    void DeleteDocument(std::int32_t documentId, bool& cancel) override;
    void DeleteDocumentEnd() override;
    // Typing.
    void PartySelected() override;
    void FillStkInfo(int row, bool flag, const qx::PropertyBag& item) override;
    void GridCellBeforeLostFocus(int row, int col, const std::string& newValue,
                                 bool& cancel) override;
    void GridCellLostFocus(int row, int col) override;
    void RecalcGridRow(int& row) override;
    void UpdateTotals2() override;
    // Saving.
    void BeforeSaveDocument(bool& cancel) override;
    void SaveDocumentBegin() override;
    void SaveMain(qx::PropertyBag& main) override;
    void SaveItem(int row, qx::PropertyBag& item) override;
    void SaveVoucherBegin() override { voucher_.Begin(); }
    void SaveVoucherAddRow(const qx::PropertyBag& /*row*/) override { voucher_.RowAdded(); }
    void SaveVoucherEnd() override { voucher_.End(); }
    void SaveDocumentEnd() override;
    // Printing.
    void PrintDocument(qx::DocumentPaper& paper) override;

    // Builds the day's consolidated I/J-Form voucher, and the pending J-Forms of the document's
    // buyers, again from the day's documents.
    void PostDay(qx::Date day);

private:
    MandiForm form_;
    FormVoucher voucher_{form_};
    // The optional document columns whose heads the day's voucher needs.
    DayColumns dayColumns_;
    JFormPicking picking_{form_};
    bool ratesLoaded_ = false;
    // The day of the document last edited or deleted, whose voucher and pending are rebuilt.
    std::optional<qx::Date> documentDate_;
    // The buyers of the document's lines being saved or deleted, as stored before and after,
    // whose pending J-Forms are kept again.
    std::set<std::int32_t> buyers_;
    // Charge rates stored on the lines of the document being edited, by "i" + item code.
    qx::PropertyBag savedItemRates_;
};

} // namespace kivra
