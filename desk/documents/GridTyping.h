#pragma once
// Typing into the item grid and the charges' rates. A cell is checked before it is left: a name
// must name a record of the column's groups, a figure must be one its column takes, and a new
// figure must leave its line and the document's total workable. What passes is taken as the
// cell is left; what is refused stays in view, untaken, for the user to mend, and a save checks
// it again.

#include "ChargesGrid.h"
#include "DeskDocument.h"
#include "ItemGrid.h"
#include "TotalBoxes.h"

#include "desk/core/DeskApp.h"

#include <cstdint>
#include <optional>
#include <string>

namespace qx::desk {

class GridTyping {
public:
    GridTyping(DeskApp& app, DeskDocument& document, ItemGrid& items, ChargesGrid& charges,
               TotalBoxes& totals)
        : app_(app), document_(document), items_(items), charges_(charges), totals_(totals) {}

    void CheckCell(int row, int col, const std::string& typed, bool& cancel);
    // A new item fills its line, and the totals follow what changed.
    void TakeCell(int row, int col);
    // F2 in an item or party cell: the choice is typed into the cell and taken as a typed name
    // is, and the cursor moves on as Enter moves it.
    void LookUpCell();
    // A rate is never below 0 (the series says whether the charge adds or deducts).
    void CheckRate(int row, int col, const std::string& typed, bool& cancel);
    void TakeRate(int row, int col);

    // Before a save: what is being typed is taken and checked, and so is a cell whose text a
    // check refused, which would otherwise be saved unchecked. False when one is refused.
    bool CommitTyping();
    // The checks made were of the content that goes.
    void Forget();

    // While the screen is reset, leaving a cell is not the user's doing: no checks, no events.
    class Quietly {
    public:
        explicit Quietly(bool& quiet) : quiet_(quiet), was_(quiet) { quiet_ = true; }
        ~Quietly() { quiet_ = was_; }
        Quietly(const Quietly&) = delete;
        Quietly& operator=(const Quietly&) = delete;

    private:
        bool& quiet_;
        bool was_;
    };
    [[nodiscard]] Quietly Quiet() { return Quietly(quiet_); }

private:
    // A cell the user left, checked: what it is to show and, for an item or party, the code.
    struct CheckedCell {
        int row = 0;
        int col = 0;
        std::string text;
        std::int32_t code = 0;
        bool changed = false;
    };
    std::string Accept(CheckedCell& cell);
    std::string WorkOutWith(CheckedCell& cell, const std::string& typed);

    DeskApp& app_;
    DeskDocument& document_;
    ItemGrid& items_;
    ChargesGrid& charges_;
    TotalBoxes& totals_;
    std::optional<CheckedCell> checked_;
    std::optional<std::string> rateTyped_; // a charge's new rate, checked, as the cell shows it
    // The current cell of a grid holds text a check refused.
    bool itemCellRefused_ = false;
    bool rateRefused_ = false;
    bool quiet_ = false;
};

} // namespace qx::desk
