#pragma once
// A voucher the user types into the books: receipts, payments, journal and contra vouchers, and
// opening balances. Its rows go to the ledger (FADATA, FANAR) through the host's voucher-row
// operation, as a module's do. A receipt or payment may carry the bank's reference of the
// transfer (UTR) and name the documents it settles, which then show that reference.

#include "host/Amount.h"
#include "host/CompanyDb.h"
#include "host/Date.h"
#include "host/VoucherUtil.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx::desk {

// A book of typed vouchers. Its code is the rows' book and transaction type, so that a ledger
// tells a receipt from a payment; opening balances are book and type "0B", which interest
// statements read as the opening of an account whatever their date.
struct VoucherBook {
    std::string_view code;
    std::string_view caption;
    int firstSide; // the side a voucher's first row is proposed on: +1 Dr, -1 Cr
    bool bankReference; // carries a UTR and settles documents
};

inline constexpr std::array kVoucherBooks = {
    VoucherBook{"RCPT", "Receipt", -1, true},
    VoucherBook{"PYMT", "Payment", +1, true},
    VoucherBook{"JRNL", "Journal", +1, false},
    VoucherBook{"CNTR", "Contra", +1, false},
    VoucherBook{"0B", "Opening Balance", +1, false},
};

// Null for a code or caption (any letter case) of no book.
const VoucherBook* FindVoucherBook(std::string_view codeOrCaption);

struct VoucherLine {
    std::int32_t account = 0; // FAMASTER MCD; 0 when the row names none
    std::string accountName;
    Amount amount; // positive debit, negative credit; 0 when the row has none
    std::string narration;
};

struct Voucher {
    std::int32_t id = 0; // 0: not saved yet
    std::optional<Date> date;
    std::string book; // a VoucherBook's code
    std::vector<VoucherLine> lines;
    std::string utrNo;
    std::optional<Date> utrDate;
    std::vector<std::int32_t> settles; // DOCMAIN DOCUMENTID
};

// A typed voucher as saved; throws std::runtime_error when the books hold none of that number,
// or it is posted by a document (changed through its document, never here).
Voucher ReadVoucher(CompanyDb& db, std::int32_t voucherId);

struct VoucherSaved {
    std::string refusal; // why nothing was written; empty when saved
    std::int32_t id = 0;
};

// Checks and writes the voucher in one unit of work: its rows (replacing those of a saved one),
// its place in the voucher register with its UTR, and the documents it settles, which take its
// UTR (those it no longer settles lose it). A refusal writes nothing.
VoucherSaved SaveVoucher(CompanyDb& db, VoucherUtil& vouchers, const Voucher& voucher);
// Removes a typed voucher with its rows and settlements in one unit of work.
void DeleteTypedVoucher(CompanyDb& db, std::int32_t voucherId);

// Why the voucher may not be written; empty when it may. Run inside the unit that writes it.
std::string VoucherRefusal(CompanyDb& db, const Voucher& voucher);

// "JF 3": the series' code and the document's number.
std::string SettledName(CompanyDb& db, std::int32_t documentId);
// "JF 3, JF 5" back into documents; a name of no document, or of several, is refused.
struct SettledFound {
    std::vector<std::int32_t> documents;
    std::string refusal;
};
SettledFound FindSettled(CompanyDb& db, std::string_view names);

// An account's balance in the books (a cell shows it with desk::BalanceText).
Amount AccountBalance(CompanyDb& db, std::int32_t account);

} // namespace qx::desk
