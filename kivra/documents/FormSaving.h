#pragma once
// What a mandi form writes of itself as the host saves it: the ledger heads of a local
// purchase's other charges, the market of a new form, and each line's stock and J-Form
// factors, levies and share of the other charges. An I-Form line whose weight differs from
// the J-Form quantity it settles gets a companion row that moves the difference through the
// agent's stock.

#include "MandiForm.h"

namespace kivra {

void BeginSavingForm(MandiForm& form);
void StampMarket(const MandiForm& form, qx::PropertyBag& main);
void SaveFormLine(MandiForm& form, const qx::PropertyBag& savedRates, int row,
                  qx::PropertyBag& item);

// Warns (never refuses) when issuing the quantity would leave the item's stock below 0.
void CheckNegativeStock(MandiForm& form, std::int32_t itemCode, qx::Amount quantity);

// An I-Form line's difference quantity: the quintals its weight (what the buyer takes) differs
// from its quantity (the J-Form quintals it settles), that is its add/less kilograms.
void NoteWeighedDifference(MandiForm& form, int row);

} // namespace kivra
