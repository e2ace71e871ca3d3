#pragma once
// Appends ledger rows (FADATA) to a voucher being written.

#include "Amount.h"
#include "CompanyDb.h"
#include "Date.h"

#include <string>

namespace qx {

struct VoucherRow {
    std::string trnType;  // DTRNTYPE, e.g. "IJF"
    std::string book;     // DBOOK
    std::string headName; // for messages; the row is posted by code
    std::string entryKind;
    int serialNo = 0;
    Date voucherDate;
    std::int32_t accountCode = 0; // DCD
    std::int32_t voucherId = 0;
    Amount amount; // positive debit, negative credit
    std::string narration;
    std::int32_t documentId = 0;
};

class VoucherUtil {
public:
    virtual ~VoucherUtil() = default;
    // A new voucher id, unique in the company.
    virtual std::int32_t NextVoucherId(CompanyDb& db) = 0;
    // Appends one row to an appendable FADATA row set; the narration is kept in FANAR.
    virtual void AddVoucherRow(CompanyDb& db, Recordset& rows, const VoucherRow& row) = 0;
};

} // namespace qx
