#pragma once
// The voucher a document posts: the party on one side, the lines' value (to the series'
// account for each item's VAT category), the charges and the round off on the other.

#include "Series.h"

#include "host/PropertyBag.h"
#include "host/VoucherUtil.h"

#include <vector>

namespace qx::desk {

struct VoucherSource {
    std::int32_t voucherId = 0;
    std::int32_t documentId = 0;
    Date date;
    std::int32_t partyCode = 0;
    Amount partyAmount; // what the party is debited (sale) or credited (purchase), unsigned
    struct Line {
        std::int32_t productId = 0;
        Amount amount;
    };
    std::vector<Line> lines;
    struct Charge {
        std::string caption;
        std::int32_t headCode = 0;
        Amount amount; // signed: + added to the document, - deducted
    };
    std::vector<Charge> charges;
    Amount roundOff;
};

// The voucher's rows, numbered from 1, rows of nothing left out. The lines go to one row per
// account. Throws std::runtime_error when an account is missing: a voucher is posted whole
// or not at all.
std::vector<VoucherRow> BuildVoucherRows(CompanyDb& db, const Series& series,
                                         const VoucherSource& source);
// A row as the document's extensions see it (SaveVoucherAddRow): FADATA's names.
PropertyBag RowRecord(const VoucherRow& row);
// Writes the rows, each with the narration, and registers the voucher in FADOCS.
void WriteVoucher(CompanyDb& db, VoucherUtil& vouchers, const Series& series,
                  const VoucherSource& source, std::vector<VoucherRow> rows,
                  const std::string& narration);

} // namespace qx::desk
