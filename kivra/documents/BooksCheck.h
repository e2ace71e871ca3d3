#pragma once
// The module's own rules of the books, for the host's check of a company (`qx check`): what
// the mandi forms leave in DOCDATA and in the day's consolidated vouchers must hold whatever
// happened to the program that saved them.
//
//  (1) No pending J-Form quantity is negative: for every buyer, day and item, the I-Forms
//      never take over more than the J-Forms left pending (the sum of
//      (Quantity+FreeQuantity)*JFactor).
//  (2) Every day's "IJF" voucher is what its forms make: the day is posted again inside a unit
//      of work that is never committed, and the rows compared one by one.
//  (3) A day's voucher balances. The round-off rule may put on ROUND OFF more or less than the
//      forms' own round off (it takes a difference of the day below 2.00): that is a note.
//  (4) The pending J-Forms kept for I-Forms are what the forms leave pending (PendingJForms.h).

#include "kivra/module/ModuleContext.h"

#include <string>
#include <vector>

namespace kivra {

struct BooksFindings {
    std::vector<std::string> faults;
    std::vector<std::string> notes; // not wrong, but an accountant should know
};

BooksFindings CheckBooks(ModuleContext& context);

} // namespace kivra
