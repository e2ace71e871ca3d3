#pragma once
// The checks of a mandi form before it is saved: doubtful bag figures are asked about, and the
// form book and form numbers must be given and unused. The host raises them inside the unit of
// work that saves, so that no other program can take a form number between check and write.

#include "MandiForm.h"

namespace kivra {

void CheckBeforeSave(MandiForm& form, bool& cancel);

} // namespace kivra
