#pragma once
// The host's document engine as a module's document extension sees it: one open document
// (HostDocument), its entry screen (DocumentForm), the events the engine raises on the
// extension (DocumentEvents), and the extension's contract (IDocExtension).

#include "Amount.h"
#include "CompanyDb.h"
#include "Date.h"
#include "Object.h"
#include "PrintJob.h"
#include "PropertyBag.h"
#include "ui/Screen.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

// The mark, in a line's ROW_MARK column, of a line an extension adds while the document is
// saved (a stock movement of its own): saved with the document, never shown as a line.
inline constexpr std::string_view kHiddenRowMark = "*Hidden*";

// The document-entry screen, whose members a module reads and writes by name.
class DocumentForm {
public:
    virtual ~DocumentForm() = default;
    virtual ui::Screen& Screen() = 0;
    virtual ui::Grid& Grid() = 0;     // the item grid, one row per line
    virtual ui::Grid& GridTot2() = 0; // the charges grid: column 17 the charge key, 3 its rate
    virtual ui::Grid& GridInfo() = 0; // the summary grid in its panel
    virtual ui::Control& PicGridInfo() = 0; // the summary grid's panel
    virtual bool ShowGridinfo() const = 0;
    virtual void SetShowGridinfo(bool show) = 0;
    // The series' own input boxes, each named by its ExtVal "Name" ("FORM_NO"), numbered from
    // 1: element 0 holds no box, so that a box number of 0 means "absent".
    virtual std::vector<ui::TextBox*> TXPUDI() = 0;
    virtual ui::TextBox& TXPSALETYPE() = 0;
    virtual ui::TextBox& TxpCustomer() = 0; // the party
    // The party chosen by a program as the user chooses it from the list: the party box shows
    // the name and has the keyboard, the document takes the account, PartySelected is raised.
    virtual void ChooseParty(std::int32_t code, const std::string& name) = 0;
    virtual ui::TextBox& TxpDocDate() = 0;
    // A column number of the item grid by its member name ("COL_QUANTITY",
    // "COL_STK_CODE", ...); 0 when the series' grid has no such column.
    virtual int Member(std::string_view name) const = 0;

    // The screen's own operations.
    virtual void FillStkInfo(int row) = 0;   // fill a line's item details from its item code
    virtual void RecalcGridRow(int row) = 0; // the host's line calculation, then the event
    virtual void SeriesSelected() = 0;
    virtual void SetupMode() = 0;
    virtual void RecalcGrid() = 0; // every line, then the totals
};

// A document's paper as the host sets it out, for an extension to make it its own
// (DocumentEvents::PrintDocument): the title, the lines centred under it, the caption of the
// grand total (whose amount the paper also writes in words), and rows of the extension's own
// after the words, each a caption set against a figure under the amount column (a row
// without a figure is a heading).
struct DocumentPaper {
    std::string title;
    std::vector<std::string> particulars;
    std::string totalCaption;
    struct Note {
        std::string caption;
        std::string figure;
    };
    std::vector<Note> notes;
};

// The events of one document, raised in the engine's order. Default handlers do nothing.
// Setting a cancel flag stops the action; once set, no handler clears it.
class DocumentEvents {
public:
    virtual ~DocumentEvents() = default;
    // Setting up the screen for a series.
    virtual void SelectSeries() {}
    virtual void MakeGridColumnsBegin() {}
    virtual void MakeGridColumns(int /*col*/, const std::string& /*key*/) {}
    virtual void MakeGridColumnsEnd() {}
    virtual void MakeInputControls() {}
    // New, edit, delete.
    virtual void NewDocumentEnd() {}
    virtual void EditDocumentBegin() {}
    virtual void EditMain(const PropertyBag& /*savedMain*/) {}
    virtual void EditItem(const PropertyBag& /*savedLine*/) {}
    virtual void EditDocumentEnd() {}
    virtual void DeleteDocument(std::int32_t /*documentId*/, bool& /*cancel*/) {}
    virtual void DeleteDocumentEnd() {}
    // Typing.
    virtual void PartySelected() {}
    virtual void FillStkInfo(int /*row*/, bool /*flag*/, const PropertyBag& /*item*/) {}
    virtual void GridCellBeforeLostFocus(int /*row*/, int /*col*/, const std::string& /*newValue*/,
                                         bool& /*cancel*/) {}
    virtual void GridCellLostFocus(int /*row*/, int /*col*/) {}
    virtual void RecalcGridRow(int& /*row*/) {}
    virtual void UpdateTotals2() {}
    // Saving: all of it is one transaction; an error raised by a handler undoes it.
    virtual void BeforeSaveDocument(bool& /*cancel*/) {}
    virtual void SaveDocumentBegin() {}
    virtual void SaveMain(PropertyBag& /*main*/) {}
    virtual void SaveItem(int /*row*/, PropertyBag& /*item*/) {}
    virtual void SaveVoucherBegin() {}
    virtual void SaveVoucherAddRow(const PropertyBag& /*row*/) {}
    virtual void SaveVoucherEnd() {}
    virtual void SaveDocumentEnd() {}
    // Printing or previewing the document as the screen holds it.
    virtual void PrintDocument(DocumentPaper& /*paper*/) {}
};

// One open document.
class HostDocument {
public:
    virtual ~HostDocument() = default;
    virtual DocumentForm& Form() = 0;
    virtual CompanyDb& Database() = 0;
    virtual Date DocDate() const = 0;
    virtual std::string DocType() const = 0;          // "Purchase", "Sale", ...
    virtual std::string SeriesProperties() const = 0; // tags such as "*JForm*"
    // The series record: "SeriesID", "SeriesCode", "SeriesName", "SubSeriesName",
    // "DocCodeSale", "DocVoucherFactor", "DocProperties", "DocTaxRate", "DocVATBill".
    virtual const PropertyBag& SeriesInfo() const = 0;
    virtual std::int32_t SeriesID() const = 0;
    virtual std::string SeriesCode() const = 0;
    // The main record's values as the screen holds them ("MarketID", ...).
    virtual PropertyBag& MainFields() = 0;
    virtual std::int32_t DocumentID() const = 0; // 0 while never saved
    virtual bool IsNewDocument() const = 0;
    virtual Amount DocumentAmount() const = 0; // total of the line amounts
    virtual std::int32_t PartyID() const = 0;
    // GST of the document ("MGST"): whether it applies, and recomputing its amounts.
    virtual bool GstApplicable() const = 0;
    virtual void CalcTaxAmt() = 0;
    // While the voucher is posted: the amounts the host posts for the document, by index
    // (kPartyPosting: the party's amount), and the voucher's fields ("dTrnType", "dBook",
    // "DocNarration").
    static constexpr int kPartyPosting = 0;
    virtual Amount PostingValue(int index) const = 0;
    virtual void SetPostingValue(int index, Amount value) = 0;
    virtual PropertyBag& VoucherFields() = 0;

    virtual void Subscribe(DocumentEvents& listener) = 0;
    virtual void Unsubscribe(DocumentEvents& listener) = 0;
};

// A module's extension of the document engine, handed out by IModule::GetForm.
class IDocExtension : public Object {
public:
    virtual void Init(HostDocument& document) = 0;
    virtual void Terminate() = 0;
};

} // namespace qx
