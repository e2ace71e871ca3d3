#pragma once
// A J-Form line as it is saved: a line sold to a buyer waits to be picked into his I-Form; a
// line the agent buys himself (buyer SELF) goes into his stock and bears the levies, at the
// rates the form was made with, or at the item's rates where the user revises them.

#include "MandiForm.h"

namespace kivra {

// Keeps the levy rates a saved line carries, per item, for the line to be saved with again.
void KeepSavedRates(qx::PropertyBag& store, const qx::PropertyBag& savedLine);

// Sets the line's stock and J-Form factors, and for a SELF line its rates and levies.
// labourInForce: I-Form labour is charged (from 1 April 2011, when the firm says so).
void SaveJFormLine(MandiForm& form, const qx::PropertyBag& savedRates, bool labourInForce,
                   int row, qx::PropertyBag& item);

} // namespace kivra
