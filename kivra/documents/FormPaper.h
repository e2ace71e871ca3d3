#pragma once
// A mandi form on paper: the J-Form as the farmer's copy, the I-Form as the buyer's bill. The
// host sets out the lines, charges and total; the form adds its market, book and form number,
// names its party as the farmer or the buyer, and lists the levies of the lines the agent
// bought for himself as the screen's tax summary shows them.

#include "MandiForm.h"

namespace kivra {

void DressPaper(const MandiForm& form, qx::DocumentPaper& paper);

} // namespace kivra
