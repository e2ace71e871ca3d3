#pragma once
// Proving a company's books, as `qx check` does after a power cut: the desk's own invariants
// of documents and vouchers, then whatever each loaded module checks of its own rows. Every
// fault is one line in words a clerk or his accountant reads ("Voucher 12 of 05/11/2024 does
// not balance: debits 1,230.00, credits 1,200.00.").
//
// What always holds in the desk's books:
//  (1) every voucher balances, apart from the automatic vouchers of the transaction types a
//      module vouches for (its operation "AutoVoucherTypes") and checks itself;
//  (2) every voucher is in the voucher register (FADOCS), and posts only to accounts of the
//      masters and only for documents the company holds;
//  (3) every document has lines, its gross amount is the sum of its lines (but those an
//      extension keeps hidden, which are never billed), and its grand total
//      is the gross amount with its charges (as their series adds or deducts them) and round
//      off; an amount a series keeps in a header field is the one its charge row holds;
//  (4) a voucher a document names is in the books and posts that document;
//  (5) a document's party, its lines' items and parties are in the masters;
//  (6) a voucher that settles documents is in the books, and so are the documents.
//
// A module answers the late-bound operation "CheckBooks" (faults&, notes&): each a text of one
// line per fault, or per note (what is not wrong but a reader should know).

#include "desk/core/DeskApp.h"

#include <string>
#include <vector>

namespace qx::desk {

struct BooksReport {
    std::vector<std::string> faults;
    std::vector<std::string> notes;
};

// Reads; what a module rebuilds to compare, it undoes. A module whose checks fail is a fault.
BooksReport CheckBooks(DeskApp& app);

} // namespace qx::desk
