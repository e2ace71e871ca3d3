#include "DocumentRecords.h"

#include <stdexcept>
#include <string>

namespace qx::desk {
namespace {

std::string Id(std::int32_t id) {
    return std::to_string(id);
}

// Fills the current row of a row set from a record; a field the table lacks is an error rather
// than a value silently lost.
void SetFields(Recordset& rows, const PropertyBag& record, std::string_view table) {
    for (const std::string& name : record.Names()) {
        if (!rows.HasField(name))
            throw DbError(std::string(table) + " has no field " + name + " for the document's " +
                          (table == "DOCMAIN" ? "header." : "lines."));
        rows.SetField(name, record.GetValue(name));
    }
}

} // namespace

PropertyBag RecordOf(const Recordset& row) {
    PropertyBag record;
    for (int i = 0; i < row.FieldCount(); ++i)
        record.SetValue(row.FieldName(i), row.Field(i));
    return record;
}

PropertyBag ReadMain(CompanyDb& db, std::int32_t documentId) {
    auto rows = db.OpenRecordset("SELECT * FROM DOCMAIN WHERE DOCUMENTID=" + Id(documentId));
    if (rows->EndOfRows())
        throw std::runtime_error("Document " + Id(documentId) + " is no longer in the company.");
    return RecordOf(*rows);
}

std::vector<PropertyBag> ReadLines(CompanyDb& db, std::int32_t documentId) {
    std::vector<PropertyBag> lines;
    auto rows = db.OpenRecordset("SELECT * FROM DOCDATA WHERE DOCUMENTID=" + Id(documentId) +
                                 " ORDER BY REFNO");
    for (; !rows->EndOfRows(); rows->MoveNext())
        lines.push_back(RecordOf(*rows));
    return lines;
}

std::vector<AppliedCharge> ReadCharges(CompanyDb& db, std::int32_t documentId) {
    std::vector<AppliedCharge> charges;
    auto rows = db.OpenRecordset(
        "SELECT CHARGEKEY, RATE, AMOUNT, HEADCODE FROM DOCCHARGEDATA WHERE DOCUMENTID=" +
        Id(documentId) + " ORDER BY POSITION");
    for (; !rows->EndOfRows(); rows->MoveNext())
        charges.push_back({rows->Field(0).AsText(), rows->Field(1).AsAmount(),
                           rows->Field(2).AsAmount(), rows->Field(3).AsInt()});
    return charges;
}

std::int32_t NewDocumentId(CompanyDb& db) {
    return db.LookupValue("DOCMAIN", "MAX(DOCUMENTID)", "").AsInt() + 1;
}

std::int32_t NextNumber(CompanyDb& db, std::int32_t seriesId) {
    auto number =
        std::max(db.LookupValue("DOCCONFIG", "NEXTNUMBER", "SERIESID=" + Id(seriesId)).AsInt(), 1);
    // A saved document renumbered by hand may stand beyond the series' count.
    while (NumberTaken(db, seriesId, number, 0))
        ++number;
    return number;
}

bool NumberTaken(CompanyDb& db, std::int32_t seriesId, std::int32_t number,
                 std::int32_t documentId) {
    return db.LookupValue("DOCMAIN", "DOCUMENTID",
                          "DOCSERIESID=" + Id(seriesId) + " AND DOCNUMBER=" + Id(number) +
                              " AND DOCUMENTID<>" + Id(documentId))
               .AsInt() != 0;
}

void TakeNumber(CompanyDb& db, std::int32_t seriesId, std::int32_t number) {
    db.ExecuteSql("UPDATE DOCCONFIG SET NEXTNUMBER=" + Id(number + 1) + " WHERE SERIESID=" +
                  Id(seriesId) + " AND (NEXTNUMBER IS NULL OR NEXTNUMBER<=" + Id(number) + ")");
}

void WriteMain(CompanyDb& db, const PropertyBag& main, bool isNew) {
    const std::int32_t documentId = main.GetValue("DOCUMENTID").AsInt();
    auto rows =
        db.OpenRecordset(isNew ? std::string("SELECT FIRST 0 * FROM DOCMAIN")
                               : "SELECT * FROM DOCMAIN WHERE DOCUMENTID=" + Id(documentId));
    if (isNew)
        rows->AddNew();
    else if (rows->EndOfRows())
        throw DbError("Document " + Id(documentId) + " is no longer in the company.");
    SetFields(*rows, main, "DOCMAIN");
    rows->Update();
}

void WriteLine(Recordset& lines, const PropertyBag& line) {
    lines.AddNew();
    SetFields(lines, line, "DOCDATA");
    lines.Update();
}

void WriteCharges(CompanyDb& db, std::int32_t documentId,
                  const std::vector<AppliedCharge>& charges) {
    auto rows = db.OpenRecordset("SELECT FIRST 0 * FROM DOCCHARGEDATA");
    int position = 0;
    for (const AppliedCharge& charge : charges) {
        rows->AddNew();
        rows->SetField("DOCUMENTID", documentId);
        rows->SetField("POSITION", ++position);
        rows->SetField("CHARGEKEY", charge.key);
        rows->SetField("RATE", charge.rate);
        rows->SetField("AMOUNT", charge.amount);
        rows->SetField("HEADCODE", charge.headCode);
        rows->Update();
    }
}

std::int32_t VoucherOf(CompanyDb& db, std::int32_t documentId) {
    return db.LookupValue("DOCMAIN", "VOUCHERID", "DOCUMENTID=" + Id(documentId)).AsInt();
}

void DeleteVoucher(CompanyDb& db, std::int32_t voucherId) {
    if (voucherId == 0)
        return;
    db.ExecuteSql("DELETE FROM FADATA WHERE VOUCHERID=" + Id(voucherId));
    db.ExecuteSql("DELETE FROM FADOCS WHERE VOUCHERID=" + Id(voucherId));
}

void DeleteContent(CompanyDb& db, std::int32_t documentId) {
    DeleteVoucher(db, VoucherOf(db, documentId));
    db.ExecuteSql("DELETE FROM DOCDATA WHERE DOCUMENTID=" + Id(documentId));
    db.ExecuteSql("DELETE FROM DOCCHARGEDATA WHERE DOCUMENTID=" + Id(documentId));
}

void DeleteDocumentRows(CompanyDb& db, std::int32_t documentId) {
    DeleteContent(db, documentId);
    // A payment that settled it stays in the books; it no longer names it.
    db.ExecuteSql("DELETE FROM FASETTLED WHERE DOCUMENTID=" + Id(documentId));
    db.ExecuteSql("DELETE FROM DOCMAIN WHERE DOCUMENTID=" + Id(documentId));
}

} // namespace qx::desk
