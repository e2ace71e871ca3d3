#pragma once
// Ledger rows of a voucher: FADATA rows with their narrations kept once in FANAR.

#include "host/VoucherUtil.h"

namespace qx::desk {

class LedgerVoucherUtil : public VoucherUtil {
public:
    std::int32_t NextVoucherId(CompanyDb& db) override;
    void AddVoucherRow(CompanyDb& db, Recordset& rows, const VoucherRow& row) override;
};

} // namespace qx::desk
