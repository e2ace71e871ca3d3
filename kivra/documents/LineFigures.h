#pragma once
// The figures of one line of a mandi form kept consistent with each other as the user types:
// bags, kilograms per bag, add/less kilograms, total weight and, on an I-Form, the amount.

#include "MandiForm.h"

namespace kivra {

// Recalculates one line; a step runs only when every column it needs is on the screen.
void RecalcLine(MandiForm& form, int row);

// The bags weighed on a line must fit its quantity: the whole bags it fills, or one more.
void CheckBagsWeighed(MandiForm& form, int row, int col, const std::string& newValue,
                      bool& cancel);

} // namespace kivra
