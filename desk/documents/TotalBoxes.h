#pragma once
// The document's totals as the screen shows them: each charge's amount in its row of the
// charges grid; the gross amount, the charges, the round off and the grand total in boxes.

#include "ChargesGrid.h"
#include "DeskDocument.h"
#include "DocumentTotals.h"
#include "ItemGrid.h"

#include "host/ui/Control.h"

namespace qx::desk {

class TotalBoxes {
public:
    struct Boxes {
        ui::TextBox& gross;
        ui::TextBox& charges;
        ui::TextBox& roundOff;
        ui::TextBox& grandTotal;
    };
    TotalBoxes(Boxes boxes, const ItemGrid& items, ChargesGrid& charges, DeskDocument& document)
        : boxes_(boxes), items_(items), charges_(charges), document_(document) {}

    // Throws std::overflow_error when a total is too large to be worked out.
    DocumentTotals Current() const;
    // The totals, then the extensions' summaries (UpdateTotals2); or, while the item grid's
    // redraw is off, nothing until it draws again.
    void Show();
    bool Waiting() const { return waiting_; }
    // The content they waited for is gone.
    void StopWaiting() { waiting_ = false; }
    // The document's date when they were last shown.
    Date ShownFor() const { return shownFor_; }

private:
    Boxes boxes_;
    const ItemGrid& items_;
    ChargesGrid& charges_;
    DeskDocument& document_;
    bool waiting_ = false;
    Date shownFor_;
};

} // namespace qx::desk
