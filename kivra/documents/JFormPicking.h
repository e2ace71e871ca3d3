#pragma once
// Filling an I-Form from the J-Form lines still pending for its buyer: the list of pending
// J-Forms a new I-Form opens with, and the picking of the buyer's pending lines of the
// document's date once the party is chosen. A J-Form line is pending while the signed sum of
// its quantities (J factor +1 on the J-Form, -1 on the I-Forms that take it over) for that
// buyer, date and item is not 0. An older day of the market still pending stops the picking:
// the market's forms are settled day by day. The list and that check read the pending J-Forms
// the saves keep (PendingJForms.h); the day's lines of a buyer are read from the forms.

#include "MandiForm.h"

#include <cstdint>
#include <string>

namespace kivra {

class JFormPicking {
public:
    explicit JFormPicking(MandiForm& form) : form_(form) {}

    // A new document: nothing chosen from the list yet.
    void Forget();
    // The party of the document was chosen: true when its pending lines are to be picked (a new
    // I-Form, or a saved one with no lines whose user asked for them).
    bool OfferedForParty();
    // Fills the item grid with the party's pending J-Form lines of the document's date.
    void PickJFormItems();
    // The pending J-Forms of the market; the row the user takes gives the I-Form its date,
    // party, item and batches.
    void SelectJForm();

    // Items were picked, or picking was offered, for this document.
    bool done = false;

private:
    enum class Grouping { ByBatch, ByRate, ByItem };
    Grouping ListGrouping() const;
    // The document's market, with several markets, as a condition on the table of that alias.
    std::string MarketCondition(const char* table) const;
    bool OlderDayPending();

    MandiForm& form_;
    std::int32_t pickedProduct_ = 0;
    // Batch numbers taken from the list, each quoted for SQL and joined by kBatchSeparator.
    std::string pickedBatches_;
};

} // namespace kivra
