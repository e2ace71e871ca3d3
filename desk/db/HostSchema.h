#pragma once
// The host's own tables in a company database: items, accounts and their print heads, VAT
// classes and categories, series, document headers and lines, ledger rows, narrations, the
// voucher register, firm settings and options, and the marker that identifies a company.
// Modules add tables and columns of their own on top (AddFields, CREATE TABLE).

#include "host/CompanyDb.h"

#include <array>
#include <string_view>

namespace qx::db {

struct SchemaVersion {
    int version;
    std::string_view change;
};

// One line per version; a company records the version that made it (SCHEMAVERSION).
inline constexpr std::array kSchemaHistory = {
    SchemaVersion{1, "first schema: masters, series, documents, ledger, settings, indexes"},
    SchemaVersion{2, "account groups FAGROUPS, filled with the chart's standard groups"},
    SchemaVersion{3, "series set-up DOCCOLUMNS, DOCBOXES, DOCCHARGES, numbering and voucher of "
                     "DOCCONFIG; applied charges DOCCHARGEDATA; sale type and voucher of DOCMAIN"},
    SchemaVersion{4, "indexes of ledger rows by voucher and of narrations by their text"},
    SchemaVersion{5, "the figures a series' number column takes, DOCCOLUMNS.FIGURES"},
    SchemaVersion{6, "document numbers unique within their series (UX_DOCMAIN_DOCSERIESID_DOCNUMBER "
                     "replaces the plain index)"},
    SchemaVersion{7, "series: the account groups of the party (DOCCONFIG.PARTYGROUPS) and of a "
                     "party column (DOCCOLUMNS.GROUPS); boxes that must be filled (REQUIRED)"},
    SchemaVersion{8, "document lines: a line's difference quantity (DOCDATA.DIFFQTY) and the "
                     "marker of lines an extension keeps out of sight (ROWMARK)"},
    SchemaVersion{9, "the firm's print designs PRINTDESIGNS: named sections of text printed "
                     "above or below a report's pages"},
    SchemaVersion{10, "typed vouchers: a receipt's or payment's bank reference (FADOCS.UTRNO, "
                      "UTRDATE) and the documents it settles (FASETTLED)"},
    SchemaVersion{11, "series boxes that hold a day (DOCBOXES.ISDATE), such as the date of a payment"},
    SchemaVersion{12, "ledger rows by date (the day book reads a day's vouchers of every kind)"},
    SchemaVersion{13, "counter speed: columns Enter passes by (DOCCOLUMNS.COMPUTED) and that repeat "
                      "the line above (REPEATS); boxes a new document carries on (DOCBOXES.CARRIED) "
                      "or numbers on (NUMBERED); the note of a save (DOCCONFIG.SAVEDNOTE)"},
};
inline constexpr int kHostSchemaVersion = kSchemaHistory.back().version;

// The marker table QXCOMPANY (NAME, VALUE): FORMAT = kCompanyFormat says the database is a
// QX Desk company; SCHEMAVERSION and COMPANYNAME go with it.
inline constexpr std::string_view kCompanyFormat = "QX Desk company";

// Creates the tables, their indexes and the marker. The caller wraps it in one transaction.
void CreateHostSchema(CompanyDb& db, std::string_view companyName);
// Brings a company of an older schema version up to this one: the tables, columns and
// indexes it lacks, the standard groups of a new groups table, and the version mark. A
// company whose data breaks a new unique index (two documents of a series with one number) is
// refused with a message naming them: its data is never changed to fit. The caller wraps it in
// one transaction.
void UpgradeHostSchema(CompanyDb& db);

} // namespace qx::db
