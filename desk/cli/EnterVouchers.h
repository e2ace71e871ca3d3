#pragma once
// Entering vouchers from a file through the voucher screen, as a clerk at the keyboard would:
// the date typed and left, the book chosen, each row's account, amount, Dr/Cr and narration
// typed cell by cell, the UTR and the documents settled, then F10.
//
// The file (JSON; every value is text):
//   {"vouchers": [
//     {"book": "Payment",                    Receipt, Payment, Journal, Contra or Opening
//                                            Balance (or its code: RCPT, PYMT, JRNL, CNTR, 0B)
//      "date": "06/11/2024",                 dd/MM/yyyy
//      "rows": [{"account": "GURMEET SINGH", "debit": "45,000.00", "narration": "..."},
//               {"account": "PUNJAB NATIONAL BANK", "credit": "45,000.00"}],
//      "utrNo": "PUNBH24110601", "utrDate": "06/11/2024",
//      "settles": [{"series": "JF", "number": "1"},
//                  {"series": "JF", "boxes": {"FORM_BOOK_NO": "12", "FORM_NO": "101"}}]},
//     {"open": "12", "date": "07/11/2024"},  a saved voucher by its number: what is given
//                                            replaces what it holds (its rows, all of them)
//     {"open": "13", "action": "delete"}
//   ]}

#include "desk/core/DeskApp.h"
#include "desk/core/Scripted.h"

#include <filesystem>
#include <iosfwd>

namespace qx::cli {

// Each voucher is saved or refused on its own; the log on out says what became of each
// ("voucher 2 (Payment of 06/11/2024): saved as no. 14"), every message shown with the voucher
// and field it is about, and a refused one on err with why. False when any was refused.
bool EnterVouchers(desk::DeskApp& app, desk::ScriptedFrontend& frontend,
                   const std::filesystem::path& file, std::ostream& out, std::ostream& err);

} // namespace qx::cli
