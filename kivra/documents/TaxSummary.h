#pragma once
// The levies a J-Form's own purchases or a local purchase bear, shown under the item grid:
// market fee, R.D.F., cancer fund, P.I.D.F. and, before GST, purchase tax.

#include "MandiForm.h"

namespace kivra {

// Fills the summary grid (GridInfo) after the host has totalled the document; a failing step
// is skipped and the rest of the summary still shows.
void ShowTaxSummary(MandiForm& form);

} // namespace kivra
