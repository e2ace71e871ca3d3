#pragma once
// The module's extension of the host's document engine: it turns an ordinary stock document
// into a mandi form (J-Form, I-Form, local or outside purchase). The host creates one per
// open document screen, binds it with Init and raises the document's events on it.

#include "kivra/module/ModuleContext.h"

#include "host/HostDocument.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace kivra {

// What the series selection decided. A local purchase is also a purchase; an ordinary sale
// series has no flag set.
struct SeriesMode {
    bool jForm = false;
    bool iForm = false;
    bool purchase = false;
    bool localPurchase = false;
};

class CKivraDoc : public qx::IDocExtension, public qx::DocumentEvents {
public:
    explicit CKivraDoc(ModuleContext& context);
    ~CKivraDoc() override;
    CKivraDoc(const CKivraDoc&) = delete;
    CKivraDoc& operator=(const CKivraDoc&) = delete;

    // IDocExtension
    void Init(qx::HostDocument& document) override;
    void Terminate() override;

    // GST replaced purchase tax on 1 July 2017: every tax decision of a document turns on it.
    static bool IsGSTApplicableOn(qx::Date documentDate);
    bool IsGSTApplicable() const;

    const SeriesMode& Mode() const { return mode_; }

    // Setting up the screen for a series.
    void SelectSeries() override;
    void MakeGridColumnsBegin() override;
    void MakeGridColumns(int col, const std::string& key) override;
    void MakeGridColumnsEnd() override;
    void MakeInputControls() override;
    // New, edit, delete.
    void NewDocumentEnd() override;
    void EditDocumentBegin() override;
    void EditMain(const qx::PropertyBag& savedMain) override;
    void EditItem(const qx::PropertyBag& savedLine) override;
    void EditDocumentEnd() override;
    void DeleteDocument(std::int32_t documentId, bool& cancel) override;
    void DeleteDocumentEnd() override;
    // Typing.
    void FillStkInfo(int row, bool flag, const qx::PropertyBag& item) override;
    void GridCellBeforeLostFocus(int row, int col, const std::string& newValue,
                                 bool& cancel) override;
    void GridCellLostFocus(int row, int col) override;
    void RecalcGridRow(int& row) override;
    void UpdateTotals2() override;
    // Saving.
    void BeforeSaveDocument(bool& cancel) override;

private:
    // Item grid columns the mandi forms need; 0 where the series' grid has none (column 0 is
    // the host's serial column).
    struct ItemColumns {
        int addLessKgs = 0;
        int revBags = 0;
        int revBags2 = 0;
        int stkCode = 0;
        int productId = 0;
        int quantity = 0;
        int rate = 0;
        int amount = 0;
        int qtyPerBox = 0;
        int customerId = 0;
        int totalWt = 0;
        int noOfBoxes = 0;
        int pcs = 0;
        int qualityCut = 0;
        int batchNo = 0;
    };

    qx::HostDocument& Doc() const;
    qx::DocumentForm& Form() const { return Doc().Form(); }
    qx::ui::Grid& ItemGrid() const;
    // A cell of the item grid; an absent column reads as empty and takes no writing.
    std::string Cell(int row, int col) const;
    qx::Amount Number(int row, int col) const;
    void SetCell(int row, int col, std::string text);
    // An amount written in the format the grid gives the column.
    void SetCellInColumnFormat(int row, int col, qx::Amount value);
    // The item on the first line, which decides the rates of the whole document; 0 for none.
    std::int32_t FirstLineItemCode() const;
    // The document's market as its main fields hold it now: the user may choose it in the
    // header after the series was selected, and a new document starts without one.
    std::int32_t MarketId() const;

    void LoadChargeRates();
    void CheckBagFigures(bool& cancel);
    void CheckFormNumbers(bool& cancel);
    qx::ui::TextBox* InputBox(std::optional<std::size_t> index) const;
    int Ask(const std::string& question);
    void Notify(const std::string& notice);

    // Hooks of the I-Form picking and of the daily consolidated voucher, which come with
    // those features; for now they do nothing.
    void OpenPendingJFormList();
    void PostDailyVoucher(qx::Date day);

    ModuleContext& context_;
    qx::HostDocument* doc_ = nullptr;
    qx::ui::Grid* itemGrid_ = nullptr;
    qx::ui::Grid* chargesGrid_ = nullptr;

    bool multipleMarkets_ = false;
    SeriesMode mode_;
    // Chosen in the pending J-Form list of an I-Form.
    std::int32_t pickedProduct_ = 0;
    std::string pickedBatches_;
    bool ratesLoaded_ = false;
    bool jFormPickingDone_ = false;
    // The day of the document last edited or deleted, whose consolidated voucher is rebuilt.
    std::optional<qx::Date> documentDate_;
    // Charge rates stored on the lines of the document being edited, by "i" + item code.
    qx::PropertyBag savedItemRates_;

    ItemColumns columns_;
    // Indices into the screen's TXPUDI boxes.
    std::optional<std::size_t> formBookBox_;
    std::optional<std::size_t> formNoBox_;
};

} // namespace kivra
