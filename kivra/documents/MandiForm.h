#pragma once
// A document as a mandi form: the host document the extension is bound to, the series mode,
// where the form's columns and boxes are, and the cell access every part of the extension
// shares. CKivraDoc owns one and hands it to the parts that recalculate lines, check a form
// before it is saved and show its levies.

#include "kivra/module/ModuleContext.h"

#include "host/HostDocument.h"

#include <cstdint>
#include <exception>
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

// Item grid columns the mandi forms need; 0 where the series' grid has none (column 0 is the
// host's serial column).
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
    // The charges of a J-Form line that the firm bears when it buys the line itself.
    int lineCharges = 0;
    // An I-Form line's difference quantity, the marker of the extension's own companion rows
    // and the sale amount such a row carries.
    int diffQty = 0;
    int rowMark = 0;
    int saleAmount = 0;
};

// The charges grid: one row per charge of the document, its key, rate, amount and ledger head
// at these columns.
inline constexpr int kChargeRateCol = 3;
inline constexpr int kChargeAmountCol = 4;
inline constexpr int kChargeKeyCol = 17;
inline constexpr int kChargeHeadCol = 24;


// Runs one step of a sequence whose failures the module's rules skip, so that the next step
// still runs.
template <class Step> void Skipping(Step&& step) {
    try {
        step();
    } catch (const std::exception&) {
    }
}

class MandiForm {
public:
    explicit MandiForm(ModuleContext& context) : context_(context) {}

    void Bind(qx::HostDocument& document);
    void Release();
    bool Bound() const { return doc_ != nullptr; }

    ModuleContext& Context() const { return context_; }
    qx::HostDocument& Doc() const;
    qx::DocumentForm& Form() const { return Doc().Form(); }
    qx::ui::Grid& ItemGrid() const;
    qx::ui::Grid& ChargesGrid() const;

    // GST replaced purchase tax on 1 July 2017: every tax decision of a document turns on it.
    static bool IsGSTApplicableOn(qx::Date documentDate);
    bool IsGSTApplicable() const { return IsGSTApplicableOn(Doc().DocDate()); }

    SeriesMode mode;
    ItemColumns columns;
    bool multipleMarkets = false;
    // The market the document's main fields held when the series was selected, which a new
    // document is saved in.
    std::int32_t seriesMarketId = 0;

    // The series' columns and boxes, found as the host builds the screen.
    void ForgetModuleColumns();
    void NoteColumn(int col, const std::string& key);
    void FindStandardColumns();
    void FindInputBoxes();
    // Numbers of the form book and form number boxes among the screen's TXPUDI boxes, which
    // the host numbers from 1; 0 where the series has no such box.
    int FormBookBoxNumber() const { return formBookBox_; }
    int FormNoBoxNumber() const { return formNoBox_; }
    qx::ui::TextBox& InputBox(int number) const;
    // The boxes themselves; null where the series has none.
    qx::ui::TextBox* FormBookBox() const {
        return formBookBox_ > 0 ? &InputBox(formBookBox_) : nullptr;
    }
    qx::ui::TextBox* FormNoBox() const { return formNoBox_ > 0 ? &InputBox(formNoBox_) : nullptr; }

    // A cell of the item grid; an absent column reads as empty and takes no writing.
    std::string Cell(int row, int col) const;
    qx::Amount Number(int row, int col) const;
    void SetCell(int row, int col, std::string text);
    // An amount written in the format the grid gives the column.
    void SetCellInColumnFormat(int row, int col, qx::Amount value);
    // The item on the first line, which decides the rates of the whole document; 0 for none.
    std::int32_t FirstLineItemCode() const;
    // A row the extension added while saving (marked kHiddenRowMark), not a line the user sees.
    bool IsCompanionRow(int row) const;
    // The document's market as its main fields hold it now: the user may choose it in the
    // header after the series was selected, and a new document starts without one.
    std::int32_t MarketId() const;

    // A Yes/No question (true when answered No) and a notice, through the host's messages.
    bool AnsweredNo(const std::string& question) const;
    void Notify(const std::string& notice) const;

private:
    ModuleContext& context_;
    qx::HostDocument* doc_ = nullptr;
    qx::ui::Grid* itemGrid_ = nullptr;
    qx::ui::Grid* chargesGrid_ = nullptr;
    int formBookBox_ = 0;
    int formNoBox_ = 0;
};

} // namespace kivra
