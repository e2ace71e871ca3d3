#pragma once
// A document's rows in the company: the header (DOCMAIN), the lines (DOCDATA), the charges as
// applied (DOCCHARGEDATA) and the series' numbering. The caller holds the unit of work.

#include "host/CompanyDb.h"
#include "host/PropertyBag.h"

#include <cstdint>
#include <vector>

namespace qx::desk {

// Every field of the current row, by the names the table has.
PropertyBag RecordOf(const Recordset& row);

// Throws std::runtime_error when the document is gone.
PropertyBag ReadMain(CompanyDb& db, std::int32_t documentId);
std::vector<PropertyBag> ReadLines(CompanyDb& db, std::int32_t documentId);

struct AppliedCharge {
    std::string key;
    Amount rate;
    Amount amount;
    std::int32_t headCode = 0;
};
std::vector<AppliedCharge> ReadCharges(CompanyDb& db, std::int32_t documentId);

std::int32_t NewDocumentId(CompanyDb& db);
// The number a new document of the series gets unless the user gives one: the first free one
// from the series' count on.
std::int32_t NextNumber(CompanyDb& db, std::int32_t seriesId);
// Whether another document of the series has that number.
bool NumberTaken(CompanyDb& db, std::int32_t seriesId, std::int32_t number,
                 std::int32_t documentId);
// Numbering goes on after the number a new document took.
void TakeNumber(CompanyDb& db, std::int32_t seriesId, std::int32_t number);

// Writes the header: a new row, or over the saved one, keeping the columns the record does not
// name. A field the table lacks is an error.
void WriteMain(CompanyDb& db, const PropertyBag& main, bool isNew);
// Appends a line to a row set opened on DOCDATA; a field the table lacks is an error.
void WriteLine(Recordset& lines, const PropertyBag& line);
void WriteCharges(CompanyDb& db, std::int32_t documentId,
                  const std::vector<AppliedCharge>& charges);

// The voucher the document posted, 0 when none.
std::int32_t VoucherOf(CompanyDb& db, std::int32_t documentId);
void DeleteVoucher(CompanyDb& db, std::int32_t voucherId);
// What is written again when an edited document is saved: its lines, charges and voucher.
void DeleteContent(CompanyDb& db, std::int32_t documentId);
// The whole document: its content and its header.
void DeleteDocumentRows(CompanyDb& db, std::int32_t documentId);

} // namespace qx::desk
