#pragma once
// The document-entry screen: a series' header boxes, item grid and charges, the totals, and
// the user's commands (new, browse, delete, save, print). It raises the document's events on
// the extensions the firm names (firm setting "DocExtensions"), and saves or deletes a
// document with its lines, charges and voucher as one unit of work.
//
// Keys: F2 look-up, F3 delete, F4 series, F5 new, F6 browse, F9 print, F10 save, Esc exit.
// Presets: "DocSeriesID", or "DocSeriesCode" (with "DocSeriesName" to tell apart series of
// one code); without either the user chooses the series (of "DocType" when given).

#include "DeskDocument.h"
#include "DocumentBrowsing.h"
#include "DocumentExtensions.h"
#include "DocumentRecords.h"
#include "DocumentTotals.h"
#include "DocumentVoucher.h"

#include "desk/core/DeskApp.h"
#include "desk/masters/MasterDefinition.h"
#include "host/HostDocument.h"
#include "host/ui/Screen.h"

#include <map>
#include <memory>
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
    std::vector<ui::TextBox*> TXPUDI() override;
    ui::TextBox& TXPSALETYPE() override { return saleType_; }
    ui::TextBox& TxpCustomer() override { return party_; }
    ui::TextBox& TxpDocDate() override { return date_; }
    int Member(std::string_view name) const override;
    void FillStkInfo(int row) override;
    void RecalcGridRow(int row) override;
    void SeriesSelected() override;
    void SetupMode() override;
    void RecalcGrid() override;

    // The charges grid's columns that extensions address.
    static constexpr int kChargeCaptionCol = 1;
    static constexpr int kChargeBasisCol = 2;
    static constexpr int kChargeRateCol = 3;
    static constexpr int kChargeAmountCol = 4;
    static constexpr int kChargeKeyCol = 17;
    static constexpr int kChargeHeadCol = 24;

protected:
    void Load() override;
    void FirstActivate() override;
    void QueryUnload(bool& cancel) override;
    void Unload() override;

private:
    // A cell the user left, checked: what it is to show and, for an item or party, the code.
    struct CheckedCell {
        int row = 0;
        int col = 0;
        std::string text;
        std::int32_t code = 0;
        bool changed = false;
    };
    // What a failed save puts back.
    struct Content {
        std::vector<std::vector<std::string>> items;
        std::vector<std::string> itemMarks;
        std::vector<std::vector<std::string>> charges;
        PropertyBag mainFields;
        std::int32_t documentId = 0;
        bool isNew = true;
    };

    CompanyDb& Db() { return app_.DeskSession().Database(); }
    // What a column of the item grid holds; a column the series did not make holds text that
    // is not saved.
    const SeriesColumn& ColumnAt(int col) const;
    const Series& CurrentSeries() const { return document_.CurrentSeries(); }
    std::vector<ui::TextBox*> MakeBoxPool();
    std::int32_t PresetSeries();

    void BuildItemGrid();
    void BuildBoxes();
    void FillCharges(const std::vector<AppliedCharge>* applied);
    void ClearContent();
    void ShowSavedHeader(const PropertyBag& main);
    void ShowSavedLine(int row, const PropertyBag& line);
    void FocusFirstBox();

    // Typing.
    void CheckRate(int row, int col, const std::string& typed, bool& cancel);
    void CheckCell(int row, int col, const std::string& typed, bool& cancel);
    std::string Accept(CheckedCell& cell);
    std::string WorkOutWith(CheckedCell& cell, const std::string& typed);
    bool IsWorkedOut(int row) const;
    void TakeCell(int row, int col);
    void CheckDate(bool& cancel);
    bool HasLines() const;
    void CheckParty(bool& cancel);
    void PartyChosen(std::int32_t code, const std::string& name);
    void BoxChanged(std::size_t index);
    void CheckNumberBox(ui::TextBox& box, ColumnKind kind, bool& cancel);
    void CheckLookupBox(std::size_t index, bool& cancel);
    void LookupBox(std::size_t index);
    void LookupCell();
    void NumberRow(int row);

    // Figures.
    DocumentTotals CurrentTotals();
    void ShowTotals();

    // Saving and deleting (DocumentSaving.cpp).
    std::int32_t NumberToSave(bool proposed);
    bool RowHasContent(int row) const;
    std::string UnworkedRefusal(int row) const;
    std::string LineRefusal(int row) const;
    std::string ContentSnapshot() const;
    bool LeaveDocument();
    std::string Refusal(std::int32_t number);
    // What the series asks of a document (DocumentRules.cpp): the boxes it requires filled, the
    // party and the lines' parties from its account groups. The refusal, with the cursor put
    // where it is to be mended; empty when the document passes.
    std::string SeriesRefusal();
    bool Save(bool cancelled);
    Content TakeContent();
    void PutBack(const Content& content);
    void WriteDocument(std::int32_t number, bool cancelled);
    PropertyBag MainRecord(std::int32_t documentId, std::int32_t number, bool isNew,
                           const DocumentTotals& totals, bool cancelled);
    PropertyBag LineRecord(int row, std::int32_t documentId, int refNo);
    std::vector<AppliedCharge> AppliedCharges(const DocumentTotals& totals);
    void PostVoucher(VoucherSource source, const PropertyBag& main);
    bool TakeTyping();

    void Browse();
    void ChangeSeries();
    void PrintDocument();
    void OnCommand(const std::string& key);
    void Warn(const std::string& message);

    DeskApp& app_;
    DeskDocument document_;
    ui::TextBox& date_;
    ui::TextBox& number_;
    ui::TextBox& party_;
    ui::TextBox& saleType_;
    std::vector<ui::TextBox*> boxPool_; // as many as the series with most boxes has
    std::string shownContent_; // the document as last shown, new or opened
    std::string proposedNumber_; // the number a new document was shown with
    ui::Grid& grid_;
    ui::Grid& charges_;
    ui::TextBox& gross_;
    ui::TextBox& chargesTotal_;
    ui::TextBox& roundOff_;
    ui::TextBox& grandTotal_;
    ui::Label& picGridInfo_;
    ui::Grid& gridInfo_;
    ui::ButtonBar& bar_;
    // Destroyed before the document they are bound to.
    DocumentExtensions extensions_;

    std::int32_t seriesId_ = 0;
    std::vector<SeriesColumn> gridColumns_;           // by grid column; column 0 the serial number
    std::map<std::string, int, std::less<>> members_; // "COL_QUANTITY" -> column
    int partyCodeCol_ = 0;                            // hidden: the code of a line's party
    int unworkedCol_ = 0;                             // hidden: marks a line not worked out
    std::string partyName_;                           // the party chosen, as shown
    std::vector<std::string> boxChoices_;             // a look-up box's chosen text
    bool showGridInfo_ = false;
    std::optional<CheckedCell> checked_;
    std::optional<std::string> rateTyped_; // a charge's new rate, checked, as the cell shows it
    // The current cell of the grid holds text a check refused: it stays in view for the user
    // to correct, untaken, and a save checks it again.
    bool itemCellRefused_ = false;
    bool rateRefused_ = false;
    bool quiet_ = false; // the screen is being reset: leaving a cell is not the user's doing
    std::optional<Date> lastDate_; // a new document takes the date of the one saved last
    Date totalledOn_;              // the document's date when its totals were last shown
    bool totalsWaiting_ = false;   // for the item grid to draw again
};

} // namespace qx::desk
