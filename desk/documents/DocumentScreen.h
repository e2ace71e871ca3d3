#pragma once
// The document-entry screen: a series' header boxes, item grid and charges, the totals, and
// the user's commands (new, browse, delete, save, print). It raises the document's events on
// the extensions the firm names (firm setting "DocExtensions"), and saves or deletes a
// document with its lines, charges and voucher as one unit of work.
//
// The screen holds the controls and wires them to the pieces that do the work: the header
// (DocumentHeader), the item grid (ItemGrid), the charges (ChargesGrid), the totals
// (TotalBoxes), typing into the grids (GridTyping), the checks and writing of a save
// (SaveChecks, DocumentWriter), browsing (DocumentBrowsing) and printing (DocumentPrint).
//
// Keys: F2 look-up, F3 delete, F4 series, F5 new, F6 browse, F8 preview, F9 print, F10 save,
// Esc exit.
// Presets: "DocSeriesID", or "DocSeriesCode" (with "DocSeriesName" to tell apart series of
// one code); without either the user chooses the series (of "DocType" when given).

#include "ChargesGrid.h"
#include "DeskDocument.h"
#include "DocumentBrowsing.h"
#include "DocumentExtensions.h"
#include "DocumentHeader.h"
#include "GridTyping.h"
#include "ItemGrid.h"
#include "TotalBoxes.h"

#include "desk/core/DeskApp.h"
#include "host/HostDocument.h"
#include "host/ui/Screen.h"

#include <optional>
#include <string>
#include <vector>

namespace qx::desk {

class DocumentScreen : public ui::Screen, public DocumentForm {
public:
    explicit DocumentScreen(DeskApp& app);

    DeskDocument& Document() { return document_; }

    // What the user does through the command bar; each refusal has been shown to him. Errors
    // (a failed write, an extension's) are thrown, with the company and the screen as before.
    bool SaveDocument();
    void NewDocument();
    void OpenDocument(std::int32_t documentId);
    bool DeleteDocument();
    // Saves the open document as cancelled: it stays numbered and posts nothing.
    bool CancelDocument();
    // The document as the screen holds it, as its paper, made the extensions' own (F8 previews
    // it, F9 prints it; DeskApp::Named gives it the firm's heading).
    PrintJob Paper();

    // Ctrl+Delete in the item grid removes the line the cursor is on.
    bool KeyDown(const ui::KeyPress& key) override;

    // DocumentForm
    ui::Screen& Screen() override { return *this; }
    ui::Grid& Grid() override { return grid_; }
    ui::Grid& GridTot2() override { return charges_; }
    ui::Grid& GridInfo() override { return gridInfo_; }
    ui::Control& PicGridInfo() override { return picGridInfo_; }
    bool ShowGridinfo() const override { return showGridInfo_; }
    void SetShowGridinfo(bool show) override;
    std::vector<ui::TextBox*> TXPUDI() override { return header_.SeriesBoxes(); }
    ui::TextBox& TXPSALETYPE() override { return saleType_; }
    ui::TextBox& TxpCustomer() override { return party_; }
    ui::TextBox& TxpDocDate() override { return date_; }
    void ChooseParty(std::int32_t code, const std::string& name) override;
    int Member(std::string_view name) const override { return itemGrid_.Member(name); }
    void FillStkInfo(int row) override { itemGrid_.FillItem(row); }
    void RecalcGridRow(int row) override { itemGrid_.WorkOut(row); }
    void SeriesSelected() override;
    void SetupMode() override;
    void RecalcGrid() override;

    // The charges grid's columns that extensions address.
    static constexpr int kChargeCaptionCol = ChargesGrid::kCaptionCol;
    static constexpr int kChargeBasisCol = ChargesGrid::kBasisCol;
    static constexpr int kChargeRateCol = ChargesGrid::kRateCol;
    static constexpr int kChargeAmountCol = ChargesGrid::kAmountCol;
    static constexpr int kChargeKeyCol = ChargesGrid::kKeyCol;
    static constexpr int kChargeHeadCol = ChargesGrid::kHeadCol;

protected:
    void Load() override;
    void FirstActivate() override;
    void QueryUnload(bool& cancel) override;
    void Unload() override;

private:
    CompanyDb& Db() { return app_.DeskSession().Database(); }
    const Series& CurrentSeries() const { return document_.CurrentSeries(); }
    std::vector<ui::TextBox*> MakeBoxPool();
    std::int32_t PresetSeries();
    // Sets the screen up for a series; the screen changes series only once it has loaded.
    void ShowSeries(std::int32_t seriesId);
    std::int32_t SeriesId() const { return CurrentSeries().id; }
    void ClearContent();
    void FocusFirstBox();
    void BeginNewDocument();
    std::string ContentNow() const;
    bool LeaveDocument();

    // Saving (DocumentSaving.cpp).
    bool Save(bool cancelled);
    std::int32_t NumberToSave(bool proposed);
    bool TakeTyping();
    std::string SavedStatus(std::int32_t number) const;

    void Browse();
    void ChangeSeries();
    void OnCommand(const std::string& key);

    DeskApp& app_;
    DeskDocument document_;
    // The controls, in the order Enter moves through them.
    ui::TextBox& date_;
    ui::TextBox& number_;
    ui::TextBox& party_;
    ui::TextBox& saleType_;
    std::vector<ui::TextBox*> boxPool_; // the series' own boxes: see DocumentHeader
    ui::Grid& grid_;
    ui::Grid& charges_;
    ui::TextBox& gross_;
    ui::TextBox& chargesTotal_;
    ui::TextBox& roundOff_;
    ui::TextBox& grandTotal_;
    ui::Label& picGridInfo_;
    ui::Grid& gridInfo_;
    ui::Label& status_; // what the last save did: "J-Form 150 saved: form 12/108, 1,97,303.00"
    ui::ButtonBar& bar_;

    ItemGrid itemGrid_;
    ChargesGrid chargesGrid_;
    TotalBoxes totals_;
    DocumentHeader header_;
    GridTyping typing_;
    // Destroyed before the document they are bound to.
    DocumentExtensions extensions_;

    std::string shownContent_;   // the document as last shown, new or opened
    std::string proposedNumber_; // the number a new document was shown with
    bool showGridInfo_ = false;
    bool shown_ = false;
    bool newDocumentWaiting_ = false; // begun before the screen was drawn
    std::optional<Date> lastDate_; // a new document takes the date of the one saved last
};

} // namespace qx::desk
