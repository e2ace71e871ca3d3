#pragma once
// What choosing an item brings to a mandi form: the charge rates of the document from the item
// master, and the set-up of the item's accounts where the series posts vouchers of its own.

#include "MandiForm.h"

namespace kivra {

// Fills the charges grid's rates from the first line's item, by the columns of the series
// mode; failures are skipped rate by rate.
void LoadChargeRates(MandiForm& form);

// Opens the auto-posting set-up of an item whose tax category has no accounts for the series,
// when the series posts its own vouchers with Kivra's automatic posting.
void OfferAccountsSetUp(MandiForm& form, bool flag, const qx::PropertyBag& item);

} // namespace kivra
