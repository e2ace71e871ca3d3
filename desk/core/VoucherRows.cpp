#include "VoucherRows.h"

namespace qx::desk {

std::int32_t LedgerVoucherUtil::NextVoucherId(CompanyDb& db) {
    // Vouchers deleted from FADATA keep their number in the register, so both are asked.
    auto inLedger = db.LookupValue("FADATA", "MAX(VOUCHERID)", "").AsInt();
    auto inRegister = db.LookupValue("FADOCS", "MAX(VOUCHERID)", "").AsInt();
    return std::max(inLedger, inRegister) + 1;
}

void LedgerVoucherUtil::AddVoucherRow(CompanyDb& db, Recordset& rows, const VoucherRow& row) {
    auto narrationId = db.LookupValue("FANAR", "NARRATIONID", "NARRATION=?", {row.narration}).AsInt();
    if (narrationId == 0) {
        narrationId = db.LookupValue("FANAR", "MAX(NARRATIONID)", "").AsInt() + 1;
        db.ExecuteSql("INSERT INTO FANAR (NARRATIONID, NARRATION) VALUES (" +
                      std::to_string(narrationId) + "," + SqlQuote(row.narration) + ")");
    }
    rows.AddNew();
    rows.SetField("VOUCHERID", row.voucherId);
    rows.SetField("DSRNO", row.serialNo);
    rows.SetField("DCD", row.accountCode);
    rows.SetField("DVCHDATE", row.voucherDate);
    rows.SetField("DBOOK", row.book);
    rows.SetField("DTRNTYPE", row.trnType);
    rows.SetField("DAMT", row.amount);
    rows.SetField("NARRATIONID", narrationId);
    rows.SetField("DDOCUMENTID", row.documentId);
    rows.SetField("DENTRYKIND", row.entryKind);
    rows.Update();
}

} // namespace qx::desk
