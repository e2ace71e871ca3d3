#pragma once
// What the ledger reports share: the conditions on FADATA that say which rows are in the
// accounts and which are an account's opening, and how a figure stands in a Dr or Cr column.

#include "host/Amount.h"
#include "host/CompanyDb.h"

#include <string>

namespace qx::desk::ledger {

// Rows in the accounts: memorandum entries (book "MEM") are not. Written for FADATA under the
// alias A.
inline constexpr const char* kInAccounts = "COALESCE(A.DBOOK,'')<>'MEM'";
// An opening entry, whatever its date.
inline constexpr const char* kOpeningEntry = "(A.DBOOK='0B' OR A.DTRNTYPE='0B')";

// Rows of the accounts that make a balance as on the day: those dated up to it and the opening
// entries.
inline std::string UpTo(CompanyDb& db, Date day) {
    return std::string(kInAccounts) + " AND (A.DVCHDATE<=" + db.DateLiteral(day) + " OR " + kOpeningEntry + ")";
}

// A figure in a column of debits or credits: blank when nil, as a ledger leaves it.
inline std::string Money(Amount value) { return value.IsZero() ? std::string() : FormatAmount(value, "c2"); }
// A total: shown even when nil.
inline std::string Total(Amount value) { return FormatAmount(value, "c2"); }

// A day as dd/MM/yyyy, written once for the many entries of one day that follow each other.
class DayText {
public:
    const std::string& operator()(Date day) {
        if (text_.empty() || day != day_) {
            day_ = day;
            text_ = day.ToDisplay();
        }
        return text_;
    }

private:
    Date day_;
    std::string text_;
};

inline constexpr int kMoneyWidth = 1500;
inline constexpr int kDateWidth = 1100;

} // namespace qx::desk::ledger
