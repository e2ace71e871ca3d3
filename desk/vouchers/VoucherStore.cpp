// Reading, writing and deleting typed vouchers, with the documents they settle.
#include "Voucher.h"

#include "desk/documents/DocumentRecords.h"
#include "host/Text.h"

#include <algorithm>
#include <stdexcept>

namespace qx::desk {
namespace {

std::string Id(std::int32_t id) { return std::to_string(id); }

// A document shows the UTR of the payment that settles it in these columns, made where a
// company lacks them, as the reports that print them make them.
void MakeUtrFields(CompanyDb& db) {
    db.AddFields("DOCMAIN", "VarChar(50)", {"UTRNo"});
    db.AddFields("DOCMAIN", "Date", {"UTRDate"});
}

std::vector<std::int32_t> SettledBy(CompanyDb& db, std::int32_t voucherId) {
    std::vector<std::int32_t> documents;
    for (auto rows = db.OpenRecordset("SELECT DOCUMENTID FROM FASETTLED WHERE VOUCHERID=" + Id(voucherId) +
                                      " ORDER BY DOCUMENTID");
         !rows->EndOfRows(); rows->MoveNext())
        documents.push_back(rows->Field(0).AsInt());
    return documents;
}

// The documents the voucher settled give up its UTR, unless it was replaced meanwhile.
void Unsettle(CompanyDb& db, std::int32_t voucherId, const std::vector<std::int32_t>& documents) {
    if (documents.empty())
        return;
    const std::string utr = db.LookupValue("FADOCS", "UTRNO", "VOUCHERID=" + Id(voucherId)).AsText();
    if (db.FieldExists("UTRNO", "DOCMAIN"))
        for (std::int32_t document : documents)
            db.ExecuteSql("UPDATE DOCMAIN SET UTRNO='', UTRDATE=NULL WHERE DOCUMENTID=" + Id(document) +
                          " AND COALESCE(UTRNO,'')=" + SqlQuote(utr));
    db.ExecuteSql("DELETE FROM FASETTLED WHERE VOUCHERID=" + Id(voucherId));
}

void Settle(CompanyDb& db, const Voucher& voucher, std::int32_t voucherId) {
    if (voucher.settles.empty())
        return;
    MakeUtrFields(db);
    const std::string date = voucher.utrDate ? db.DateLiteral(*voucher.utrDate) : std::string("NULL");
    for (std::int32_t document : voucher.settles) {
        db.ExecuteSql("INSERT INTO FASETTLED (VOUCHERID, DOCUMENTID) VALUES (" + Id(voucherId) + "," +
                      Id(document) + ")");
        db.ExecuteSql("UPDATE DOCMAIN SET UTRNO=" + SqlQuote(voucher.utrNo) + ", UTRDATE=" + date +
                      " WHERE DOCUMENTID=" + Id(document));
    }
}

void RemoveRows(CompanyDb& db, std::int32_t voucherId) {
    Unsettle(db, voucherId, SettledBy(db, voucherId));
    DeleteVoucher(db, voucherId);
}

void WriteRows(CompanyDb& db, VoucherUtil& vouchers, const Voucher& voucher, std::int32_t voucherId) {
    auto ledger = db.OpenRecordset("SELECT FIRST 0 * FROM FADATA");
    int serial = 0;
    for (const VoucherLine& line : voucher.lines) {
        VoucherRow row;
        row.trnType = voucher.book;
        row.book = voucher.book;
        row.headName = line.accountName;
        row.serialNo = ++serial;
        row.voucherDate = *voucher.date;
        row.accountCode = line.account;
        row.voucherId = voucherId;
        row.amount = line.amount;
        row.narration = line.narration;
        vouchers.AddVoucherRow(db, *ledger, row);
    }
    auto registered = db.OpenRecordset("SELECT FIRST 0 * FROM FADOCS");
    registered->AddNew();
    registered->SetField("VOUCHERID", voucherId);
    registered->SetField("ISAUTOVOUCHER", 0); // typed by the user
    registered->SetField("VCHDATE", *voucher.date);
    registered->SetField("TRNTYPE", voucher.book);
    registered->SetField("UTRNO", voucher.utrNo);
    registered->SetField("UTRDATE", voucher.utrDate ? Value(*voucher.utrDate) : Value());
    registered->Update();
}

// A voucher of the books that the user typed: one a document or a module posts is theirs.
void CheckTyped(CompanyDb& db, std::int32_t voucherId) {
    auto row = db.OpenRecordset("SELECT ISAUTOVOUCHER, TRNTYPE FROM FADOCS WHERE VOUCHERID=" + Id(voucherId));
    if (row->EndOfRows())
        throw std::runtime_error("There is no voucher no. " + Id(voucherId) + " in the books.");
    if (row->Field(0).AsInt() != 0 || !FindVoucherBook(row->Field(1).AsText()))
        throw std::runtime_error("Voucher no. " + Id(voucherId) +
                                 " is posted by a document: change the document instead.");
}

} // namespace

Voucher ReadVoucher(CompanyDb& db, std::int32_t voucherId) {
    CheckTyped(db, voucherId);
    Voucher voucher;
    voucher.id = voucherId;
    auto head = db.OpenRecordset("SELECT VCHDATE, TRNTYPE, UTRNO, UTRDATE FROM FADOCS WHERE VOUCHERID=" + Id(voucherId));
    voucher.date = head->Field(0).AsDate();
    voucher.book = head->Field(1).AsText();
    voucher.utrNo = head->Field(2).AsText();
    if (!head->Field(3).IsNull())
        voucher.utrDate = head->Field(3).AsDate();
    for (auto rows = db.OpenRecordset("SELECT D.DCD, M.MHD, D.DAMT, N.NARRATION FROM FADATA D LEFT JOIN FAMASTER M "
                                      "ON M.MCD=D.DCD LEFT JOIN FANAR N ON N.NARRATIONID=D.NARRATIONID WHERE "
                                      "D.VOUCHERID=" + Id(voucherId) + " ORDER BY D.DSRNO");
         !rows->EndOfRows(); rows->MoveNext())
        voucher.lines.push_back({rows->Field(0).AsInt(), rows->Field(1).AsText(), rows->Field(2).AsAmount(),
                                 rows->Field(3).AsText()});
    voucher.settles = SettledBy(db, voucherId);
    return voucher;
}

VoucherSaved SaveVoucher(CompanyDb& db, VoucherUtil& vouchers, const Voucher& given) {
    Voucher voucher = given;
    std::ranges::sort(voucher.settles);
    voucher.settles.erase(std::unique(voucher.settles.begin(), voucher.settles.end()), voucher.settles.end());
    voucher.utrNo = Trim(voucher.utrNo);
    Transaction unit(db);
    if (voucher.id != 0)
        CheckTyped(db, voucher.id); // another program may have deleted it meanwhile
    if (std::string refusal = VoucherRefusal(db, voucher); !refusal.empty())
        return {refusal, 0};
    const std::int32_t id = voucher.id != 0 ? voucher.id : vouchers.NextVoucherId(db);
    if (voucher.id != 0)
        RemoveRows(db, id);
    WriteRows(db, vouchers, voucher, id);
    Settle(db, voucher, id);
    unit.Commit();
    return {{}, id};
}

void DeleteTypedVoucher(CompanyDb& db, std::int32_t voucherId) {
    Transaction unit(db);
    CheckTyped(db, voucherId);
    RemoveRows(db, voucherId);
    unit.Commit();
}

std::string SettledName(CompanyDb& db, std::int32_t documentId) {
    auto row = db.OpenRecordset("SELECT DOCSERIES, DOCNUMBER FROM DOCMAIN WHERE DOCUMENTID=" + Id(documentId));
    return row->EndOfRows() ? "document " + Id(documentId)
                            : row->Field(0).AsText() + " " + row->Field(1).AsText();
}

SettledFound FindSettled(CompanyDb& db, std::string_view names) {
    SettledFound found;
    for (std::size_t start = 0; start <= names.size();) {
        const std::size_t comma = std::min(names.find(',', start), names.size());
        const std::string name = Trim(names.substr(start, comma - start));
        start = comma + 1;
        if (name.empty())
            continue;
        const std::size_t blank = name.find_last_of(' ');
        const std::string number = blank == std::string::npos ? std::string() : name.substr(blank + 1);
        if (number.empty() || number.find_first_not_of("0123456789") != std::string::npos || number.size() > 9) {
            found.refusal = "\"" + name + "\" names no document: write its series and number, as in JF 3.";
            return found;
        }
        const std::string condition =
            "UPPER(DOCSERIES)=" + SqlQuote(UpperCase(Trim(name.substr(0, blank)))) + " AND DOCNUMBER=" + number;
        const auto count = db.LookupValue("DOCMAIN", "COUNT(*)", condition).AsInt();
        if (count != 1) {
            found.refusal = count == 0 ? "There is no document " + name + "."
                                       : "There are " + std::to_string(count) + " documents " + name +
                                             " (series of one code): choose the one meant with F2.";
            return found;
        }
        found.documents.push_back(db.LookupValue("DOCMAIN", "DOCUMENTID", condition).AsInt());
    }
    return found;
}

Amount AccountBalance(CompanyDb& db, std::int32_t account) {
    return db.LookupValue("FADATA", "SUM(DAMT)", "DCD=" + Id(account)).AsAmount();
}

} // namespace qx::desk
