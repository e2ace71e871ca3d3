#include "BooksCheck.h"

#include "host/HostDocument.h"
#include "host/Text.h"

#include <functional>
#include <sstream>
#include <stdexcept>

namespace qx::desk {
namespace {

// Figures differ when they differ in the fourth decimal, the most a company keeps.
constexpr const char* kDiffers = ">=0.00005";

std::string Money(const Value& value) {
    return FormatAmount(value.AsAmount(), "c2");
}

std::string Day(const Value& value) {
    return value.IsNull() ? std::string("no date") : value.AsDate().ToDisplay();
}

// "JF no. 5 of 05/11/2024" from the series, number and date at the row's first three fields.
std::string DocumentName(const Recordset& row) {
    return row.Field(0).AsText() + " no. " + row.Field(1).AsText() + " of " + Day(row.Field(2));
}

// "Voucher 12 of 05/11/2024" from the voucher id and date at the row's first two fields.
std::string VoucherName(const Recordset& row) {
    return "Voucher " + row.Field(0).AsText() + " of " + Day(row.Field(1));
}

using Fault = std::function<std::string(const Recordset&)>;

void Collect(CompanyDb& db, const std::string& sql, const Fault& fault,
             std::vector<std::string>& faults) {
    for (auto rows = db.OpenRecordset(sql); !rows->EndOfRows(); rows->MoveNext())
        faults.push_back(fault(*rows));
}

constexpr const char* kDocument = "M.DOCSERIES, M.DOCNUMBER, M.DOCDATE";
constexpr const char* kDocumentOrder = " ORDER BY M.DOCDATE, M.DOCSERIES, M.DOCNUMBER";

// (1) Every voucher balances, but for those a module vouches for.
void CheckBalances(CompanyDb& db, const std::vector<std::string>& vouchedTypes,
                   std::vector<std::string>& faults) {
    std::string vouched;
    for (const std::string& type : vouchedTypes)
        vouched += (vouched.empty() ? "" : ",") + SqlQuote(type);
    const std::string skip =
        vouched.empty() ? std::string()
                        : " WHERE NOT (D.DTRNTYPE IN (" + vouched +
                              ") AND EXISTS (SELECT 1 FROM FADOCS F WHERE "
                              "F.VOUCHERID=D.VOUCHERID AND F.ISAUTOVOUCHER<>0))";
    Collect(db,
            "SELECT D.VOUCHERID, MIN(D.DVCHDATE), SUM(CASE WHEN D.DAMT>0 THEN D.DAMT ELSE 0 END), "
            "SUM(CASE WHEN D.DAMT<0 THEN -D.DAMT ELSE 0 END) FROM FADATA D" +
                skip + " GROUP BY D.VOUCHERID HAVING ABS(SUM(D.DAMT))" + kDiffers +
                " ORDER BY 2, 1",
            [](const Recordset& r) {
                return VoucherName(r) + " does not balance: debits " + Money(r.Field(2)) +
                       ", credits " + Money(r.Field(3)) + ".";
            },
            faults);
}

// (2) Every voucher is registered and posts to accounts and documents the company holds.
void CheckLedgerRows(CompanyDb& db, std::vector<std::string>& faults) {
    Collect(db,
            "SELECT D.VOUCHERID, MIN(D.DVCHDATE) FROM FADATA D WHERE NOT EXISTS (SELECT 1 FROM "
            "FADOCS F WHERE F.VOUCHERID=D.VOUCHERID) GROUP BY D.VOUCHERID ORDER BY 2, 1",
            [](const Recordset& r) { return VoucherName(r) + " is not in the voucher register."; },
            faults);
    Collect(db,
            "SELECT D.VOUCHERID, MIN(D.DVCHDATE), D.DCD FROM FADATA D WHERE NOT EXISTS (SELECT 1 "
            "FROM FAMASTER A WHERE A.MCD=D.DCD) GROUP BY D.VOUCHERID, D.DCD ORDER BY 2, 1, 3",
            [](const Recordset& r) {
                return VoucherName(r) + " posts to account " + r.Field(2).AsText() +
                       ", which is not in the masters.";
            },
            faults);
    Collect(db,
            "SELECT D.VOUCHERID, MIN(D.DVCHDATE), D.DDOCUMENTID FROM FADATA D WHERE "
            "D.DDOCUMENTID<>0 AND NOT EXISTS (SELECT 1 FROM DOCMAIN M WHERE "
            "M.DOCUMENTID=D.DDOCUMENTID) GROUP BY D.VOUCHERID, D.DDOCUMENTID ORDER BY 2, 1, 3",
            [](const Recordset& r) {
                return VoucherName(r) + " posts document " + r.Field(2).AsText() +
                       ", which is not in the company.";
            },
            faults);
}

// (3) Every document has its lines, and its totals are its lines and charges.
void CheckDocumentTotals(CompanyDb& db, std::vector<std::string>& faults) {
    const std::string document = kDocument;
    Collect(db,
            "SELECT " + document +
                " FROM DOCMAIN M WHERE NOT EXISTS (SELECT 1 FROM DOCDATA L WHERE "
                "L.DOCUMENTID=M.DOCUMENTID)" +
                kDocumentOrder,
            [](const Recordset& r) { return DocumentName(r) + " has no lines."; }, faults);
    Collect(db,
            "SELECT " + document +
                ", M.GROSSAMT, L.AMT FROM DOCMAIN M INNER JOIN (SELECT DOCUMENTID, SUM(AMOUNT) AS "
                "AMT FROM DOCDATA WHERE COALESCE(ROWMARK,'') NOT LIKE '%" +
                std::string(kHiddenRowMark) +
                "%' GROUP BY DOCUMENTID) L ON L.DOCUMENTID=M.DOCUMENTID WHERE "
                "ABS(COALESCE(M.GROSSAMT,0)-L.AMT)" +
                kDiffers + kDocumentOrder,
            [](const Recordset& r) {
                return DocumentName(r) + ": its gross amount " + Money(r.Field(3)) +
                       " is not the sum of its lines, " + Money(r.Field(4)) + ".";
            },
            faults);
    // A charge keeps its amount unsigned; its series says whether it adds or deducts.
    const std::string expected = "COALESCE(M.GROSSAMT,0)+COALESCE(C.NET,0)+COALESCE(M.ROUNDOFFAMT,0)";
    Collect(db,
            "SELECT " + document + ", M.GRANDTOTAL, " + expected +
                " FROM DOCMAIN M LEFT JOIN (SELECT D.DOCUMENTID, SUM(D.AMOUNT*COALESCE(S.SIGN,1)) "
                "AS NET FROM (DOCCHARGEDATA D INNER JOIN DOCMAIN X ON X.DOCUMENTID=D.DOCUMENTID) "
                "LEFT JOIN DOCCHARGES S ON S.SERIESID=X.DOCSERIESID AND S.CHARGEKEY=D.CHARGEKEY "
                "GROUP BY D.DOCUMENTID) C ON C.DOCUMENTID=M.DOCUMENTID WHERE "
                "ABS(COALESCE(M.GRANDTOTAL,0)-(" +
                expected + "))" + kDiffers + kDocumentOrder,
            [](const Recordset& r) {
                return DocumentName(r) + ": its grand total " + Money(r.Field(3)) +
                       " is not its gross amount with its charges and round off, " +
                       Money(r.Field(4)) + ".";
            },
            faults);
    // The header's copy of a charge, where a series keeps one (the day's voucher reads it).
    struct HeaderCharge {
        std::string seriesId, key, caption, field;
    };
    std::vector<HeaderCharge> copies;
    for (auto rows = db.OpenRecordset("SELECT SERIESID, CHARGEKEY, CAPTION, FIELD FROM "
                                      "DOCCHARGES WHERE FIELD<>'' ORDER BY SERIESID, POSITION");
         !rows->EndOfRows(); rows->MoveNext())
        copies.push_back({rows->Field(0).AsText(), rows->Field(1).AsText(),
                          rows->Field(2).AsText(), rows->Field(3).AsText()});
    for (const HeaderCharge& copy : copies) {
        if (!db.FieldExists(copy.field, "DOCMAIN"))
            continue; // nothing kept to disagree
        Collect(db,
                "SELECT " + document + ", M." + copy.field +
                    ", D.AMOUNT FROM DOCMAIN M INNER JOIN DOCCHARGEDATA D ON "
                    "D.DOCUMENTID=M.DOCUMENTID WHERE M.DOCSERIESID=" +
                    copy.seriesId + " AND D.CHARGEKEY=" + SqlQuote(copy.key) + " AND ABS(COALESCE(M." +
                    copy.field + ",0)-D.AMOUNT)" + kDiffers + kDocumentOrder,
                [&](const Recordset& r) {
                    return DocumentName(r) + ": its " + copy.caption + " is " +
                           Money(r.Field(4)) + " but its header keeps " + Money(r.Field(3)) + ".";
                },
                faults);
    }
}

// (4) A voucher a document names is its voucher.
void CheckDocumentVouchers(CompanyDb& db, std::vector<std::string>& faults) {
    Collect(db,
            std::string("SELECT ") + kDocument +
                ", M.VOUCHERID FROM DOCMAIN M WHERE M.VOUCHERID<>0 AND NOT EXISTS (SELECT 1 FROM "
                "FADATA D WHERE D.VOUCHERID=M.VOUCHERID AND D.DDOCUMENTID=M.DOCUMENTID)" +
                kDocumentOrder,
            [](const Recordset& r) {
                return DocumentName(r) + " names voucher " + r.Field(3).AsText() +
                       ", but the books hold no voucher " + r.Field(3).AsText() +
                       " of this document.";
            },
            faults);
}

// (5) What a document names is in the masters.
void CheckDocumentNames(CompanyDb& db, std::vector<std::string>& faults) {
    const std::string document = kDocument;
    Collect(db,
            "SELECT " + document +
                ", M.PARTYCODE FROM DOCMAIN M WHERE NOT EXISTS (SELECT 1 FROM FAMASTER A WHERE "
                "A.MCD=M.PARTYCODE)" +
                kDocumentOrder,
            [](const Recordset& r) {
                return DocumentName(r) + ": its party, account " + r.Field(3).AsText() +
                       ", is not in the masters.";
            },
            faults);
    Collect(db,
            "SELECT " + document +
                ", L.REFNO, L.PRODUCTID, L.CUSTOMERID, I.QMCD, A.MCD FROM (DOCDATA L INNER JOIN "
                "DOCMAIN M ON M.DOCUMENTID=L.DOCUMENTID) LEFT JOIN STKMASTER I ON "
                "I.QMCD=L.PRODUCTID LEFT JOIN FAMASTER A ON A.MCD=L.CUSTOMERID WHERE I.QMCD IS "
                "NULL OR (L.CUSTOMERID<>0 AND A.MCD IS NULL)" +
                kDocumentOrder + ", L.REFNO",
            [](const Recordset& r) {
                const std::string line = DocumentName(r) + ", line " + r.Field(3).AsText() + ": ";
                if (r.Field(6).IsNull())
                    return line + "its item, code " + r.Field(4).AsText() +
                           ", is not in the masters.";
                return line + "its party, account " + r.Field(5).AsText() +
                       ", is not in the masters.";
            },
            faults);
}

// The lines of a module's answer.
void AddLines(const Value& text, std::vector<std::string>& to) {
    std::istringstream lines(text.AsText());
    for (std::string line; std::getline(lines, line);)
        if (!Trim(line).empty())
            to.push_back(line);
}

// Each module that vouches for automatic vouchers of its own says of which transaction types.
std::vector<std::string> VouchedTypes(DeskApp& app) {
    std::vector<std::string> types;
    for (const LoadedModule& loaded : app.Modules()) {
        try {
            std::istringstream answer(loaded.module->Obj().Invoke("AutoVoucherTypes", {}).AsText());
            for (std::string type; std::getline(answer, type, ',');)
                if (!Trim(type).empty())
                    types.push_back(Trim(type));
        } catch (const std::invalid_argument&) {
            // vouches for none
        }
    }
    return types;
}

void AskModules(DeskApp& app, BooksReport& report) {
    for (const LoadedModule& loaded : app.Modules()) {
        Value args[2] = {std::string(), std::string()};
        try {
            loaded.module->Obj().Invoke("CheckBooks", args);
        } catch (const std::invalid_argument&) {
            continue; // the module checks nothing of its own
        } catch (const std::exception& error) {
            // Books a module could not check are not proven.
            report.faults.push_back("The checks of the module " + loaded.module->ID() +
                                    " could not be made: " + error.what());
            continue;
        }
        AddLines(args[0], report.faults);
        AddLines(args[1], report.notes);
    }
}

// (6) A receipt or payment settles documents the company holds, and is in the books.
void CheckSettlements(CompanyDb& db, std::vector<std::string>& faults) {
    Collect(db,
            "SELECT S.VOUCHERID, S.DOCUMENTID, F.VOUCHERID, M.DOCUMENTID FROM (FASETTLED S LEFT JOIN "
            "FADOCS F ON F.VOUCHERID=S.VOUCHERID) LEFT JOIN DOCMAIN M ON M.DOCUMENTID=S.DOCUMENTID "
            "WHERE F.VOUCHERID IS NULL OR M.DOCUMENTID IS NULL ORDER BY 1, 2",
            [](const Recordset& r) {
                return "Voucher " + r.Field(0).AsText() + " settles document " + r.Field(1).AsText() + ", but " +
                       (r.Field(2).IsNull() ? "the voucher is not in the books." : "the document is not in the company.");
            },
            faults);
}

} // namespace

BooksReport CheckBooks(DeskApp& app) {
    CompanyDb& db = app.DeskSession().Database();
    BooksReport report;
    CheckBalances(db, VouchedTypes(app), report.faults);
    CheckLedgerRows(db, report.faults);
    CheckDocumentVouchers(db, report.faults);
    CheckDocumentTotals(db, report.faults);
    CheckDocumentNames(db, report.faults);
    CheckSettlements(db, report.faults);
    AskModules(app, report);
    return report;
}

} // namespace qx::desk
