#pragma once
// The books the interest statements are worked out on by hand: farmers' accounts with their
// credit days and rate, and their ledger rows written as the host writes any voucher (each row
// against CASH, so that every voucher balances). The statements run from 01/04/2024 to
// 30/06/2024.
//
// GURMEET SINGH (101, 15 credit days, 12 %):
//   01/03/2024 MEM  type MEM      500 Dr  memorandum: counted by neither screen
//   15/03/2024 CB   type PMT   10,000 Dr  before the period: the opening balance
//   10/04/2024 0B   type 0B     1,000 Dr  an opening entry inside the period: the first screen
//                                         counts it in the opening balance (11,000) and shows
//                                         no row; the second shows it as a row
//   01/05/2024 JF   type JF     4,000 Cr  } the same day, in this order
//   01/05/2024 CB   type PMT    1,500 Dr  }
//   15/05/2024 MEM  type MEM      300 Dr  shown by the second screen only
//   20/05/2024 JV   type zzz      200 Cr  shown by the second screen only
//   30/06/2024 JF   type JF     9,000 Cr  on the To date; the account ends in credit
// PUNGRAIN (102, 15 days, 12 %): 11,000 Dr on 15/03/2024, then GURMEET SINGH's three entries
//   of 01/05 and 30/06: no opening entry in the period, no memorandum, no "zzz".
// HARPAL SINGH (103, 0 credit days, 12 %): 5,000 Cr on 20/03/2024 (a credit opening balance),
//   2,000 Dr on 11/06/2024.
// NIL SINGH (104): no rows at all.

#include "desk/core/VoucherRows.h"
#include "host/CompanyDb.h"

#include <string>

namespace qx::test {

inline void PostLedgerRow(CompanyDb& db, std::int32_t party, const char* date, const char* book,
                          const char* type, const char* amount, const char* narration) {
    desk::LedgerVoucherUtil vouchers;
    auto rows = db.OpenRecordset("SELECT FIRST 0 * FROM FADATA");
    const std::int32_t voucher = vouchers.NextVoucherId(db);
    const Date day = *Date::ParseDisplay(date);
    const Amount figure = *Amount::Parse(amount);
    vouchers.AddVoucherRow(db, *rows, {type, book, "", "", 1, day, party, voucher, figure, narration});
    vouchers.AddVoucherRow(db, *rows, {type, book, "CASH", "", 2, day, 1, voucher, -figure, narration});
    db.ExecuteSql("INSERT INTO FADOCS (VOUCHERID, ISAUTOVOUCHER, VCHDATE, TRNTYPE) VALUES (" +
                  std::to_string(voucher) + ", 0, " + db.DateLiteral(day) + ", " + SqlQuote(type) + ")");
}

inline void PostInterestBooks(CompanyDb& db) {
    db.ExecuteSql("INSERT INTO FAMASTER (MCD, MHD, MST, MCRDAYS, MINTTRATE) VALUES (1, 'CASH', '', 0, 0), "
                  "(101, 'GURMEET SINGH', 'KHANNA', 15, 12), (102, 'PUNGRAIN', 'KHANNA', 15, 12), "
                  "(103, 'HARPAL SINGH', 'JAGRAON', 0, 12), (104, 'NIL SINGH', 'JAGRAON', 0, 12)");
    PostLedgerRow(db, 101, "01/03/2024", "MEM", "MEM", "500", "Memo: tractor hire");
    PostLedgerRow(db, 101, "15/03/2024", "CB", "PMT", "10000", "Loan for seed");
    PostLedgerRow(db, 101, "10/04/2024", "0B", "0B", "1000", "Opening balance of the old books");
    PostLedgerRow(db, 101, "01/05/2024", "JF", "JF", "-4000", "J-Form 101 paddy");
    PostLedgerRow(db, 101, "01/05/2024", "CB", "PMT", "1500", "Cash for diesel");
    PostLedgerRow(db, 101, "15/05/2024", "MEM", "MEM", "300", "Memo: bags lent");
    PostLedgerRow(db, 101, "20/05/2024", "JV", "zzz", "-200", "Rebate (zzz)");
    PostLedgerRow(db, 101, "30/06/2024", "JF", "JF", "-9000", "J-Form 245 wheat");
    PostLedgerRow(db, 102, "15/03/2024", "CB", "PMT", "11000", "Loan for seed");
    PostLedgerRow(db, 102, "01/05/2024", "JF", "JF", "-4000", "J-Form 101 paddy");
    PostLedgerRow(db, 102, "01/05/2024", "CB", "PMT", "1500", "Cash for diesel");
    PostLedgerRow(db, 102, "30/06/2024", "JF", "JF", "-9000", "J-Form 245 wheat");
    PostLedgerRow(db, 103, "20/03/2024", "JF", "JF", "-5000", "J-Form 77 cotton");
    PostLedgerRow(db, 103, "11/06/2024", "CB", "PMT", "2000", "Cash advance");
}

} // namespace qx::test
