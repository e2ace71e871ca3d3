#include "HostSchema.h"

#include "SqlAdapter.h"

#include <string>
#include <vector>

namespace qx::db {
namespace {

struct ColumnSpec {
    std::string_view name;
    std::string_view type;
    // What a row written without the column holds; empty: 0 or '' by the type.
    std::string_view defaultValue = {};
    // What the rows a company already held take when an upgrade adds the column, where that
    // differs from the default: what was allowed before the column existed stays allowed.
    std::string_view existingRows = {};
};

struct TableSpec {
    std::string_view name;
    std::vector<ColumnSpec> columns;
    std::vector<std::string_view> primaryKey;
};

// Types by what a column holds. Statements of the module divide, sum and compare these.
constexpr std::string_view kCode = "INTEGER";
constexpr std::string_view kFlag = "INTEGER";
constexpr std::string_view kNumber = "INTEGER";
constexpr std::string_view kMoney = "DECIMAL(16,4)";
constexpr std::string_view kQuantity = "DECIMAL(16,4)";
constexpr std::string_view kRate = "DECIMAL(8,4)";
constexpr std::string_view kDate = "DATE";

// Names are upper case, as the tables' users write them in SQL of every letter case.
const std::vector<TableSpec> kTables = {
    {"QXCOMPANY", {{"NAME", "VARCHAR(40)"}, {"VALUE", "VARCHAR(250)"}}, {"NAME"}},
    // Items
    {"STKMASTER",
     {{"QMCD", kCode}, {"QMHD", "VARCHAR(60)"}, {"QVATCTGNO", kCode}, {"QUNIT", "VARCHAR(10)"}},
     {"QMCD"}},
    // VAT categories of items
    {"CTGMASTER", {{"CTGNO", kCode}, {"CTGNAME", "VARCHAR(60)"}}, {"CTGNO"}},
    // Groups of the chart of accounts; NATURE: A asset, L liability, I income, E expense
    {"FAGROUPS",
     {{"GROUPNO", kCode}, {"GROUPNAME", "VARCHAR(60)"}, {"NATURE", "VARCHAR(1)"}},
     {"GROUPNO"}},
    // Accounts (ledger heads); MST is the station or sub-type, MBSHNO the group (FAGROUPS)
    {"FAMASTER",
     {{"MCD", kCode},
      {"MHD", "VARCHAR(80)"},
      {"MST", "VARCHAR(40)"},
      {"MSTATE", "VARCHAR(40)"},
      {"MDISTRICT", "VARCHAR(40)"},
      {"MTINNO", "VARCHAR(20)"},
      {"MBSHNO", kCode},
      {"MLGRNO", kCode},
      {"MGRPNO", kCode},
      {"MSPO", "VARCHAR(4)"},
      {"MTRDNO", kCode},
      {"MHDA1", "VARCHAR(80)"},
      {"MCELLNO", "VARCHAR(20)"},
      {"MAADHARNO", "VARCHAR(20)"},
      {"MPANNO", "VARCHAR(20)"},
      {"MBANKACNO", "VARCHAR(30)"},
      {"MIFSCCODE", "VARCHAR(20)"},
      {"MMICRCODE", "VARCHAR(20)"},
      {"MBANKNAME", "VARCHAR(60)"},
      {"MCRDAYS", kNumber},
      {"MINTTRATE", kRate}},
     {"MCD"}},
    // Print heads of accounts
    {"FAHEADS",
     {{"CODE", kCode}, {"SUBCODE", kCode}, {"HEAD", "VARCHAR(80)"}, {"PRESSHEAD", "VARCHAR(80)"}},
     {"CODE", "SUBCODE"}},
    // VAT classes of accounts
    {"VATMASTER", {{"CODE", kCode}, {"VATCODE", kCode}}, {"CODE", "VATCODE"}},
    {"VATCLASSES",
     {{"VATCLASSNO", kCode},
      {"VATCLASSNAME", "VARCHAR(60)"},
      {"PRESSHEAD", "VARCHAR(80)"},
      {"SPO", "VARCHAR(4)"}},
     {"VATCLASSNO"}},
    // Posting accounts per series and VAT category
    {"VATCATEGORYTAXRATES",
     {{"SERIESID", kCode},
      {"VATCTGNO", kCode},
      {"SALEPOSTINGCODE", kCode},
      {"SALEVATCLASSCODE", kCode},
      {"TAXPOSTINGCODE", kCode},
      {"TAXVATCLASSCODE", kCode}},
     {"SERIESID", "VATCTGNO"}},
    // Document series
    {"DOCCONFIG",
     {{"SERIESID", kCode},
      {"SERIESCODE", "VARCHAR(10)"},
      {"SERIESNAME", "VARCHAR(60)"},
      {"SUBSERIESNAME", "VARCHAR(60)"},
      {"DOCTYPE", "VARCHAR(20)"},
      {"DOCPROPERTIES", "VARCHAR(250)"},
      {"DOCTAXRATE", kRate},
      {"DOCVATBILL", kFlag},
      {"DOCCODESALE", kCode},
      // +1 the party is debited, -1 credited, 0 the series posts no voucher of its own
      {"DOCVOUCHERFACTOR", kNumber},
      // the voucher's narration; a module may replace "##" in it
      {"NARRATION", "VARCHAR(250)"},
      {"NEXTNUMBER", kNumber, "1"},
      {"TRNTYPE", "VARCHAR(10)"},
      {"BOOK", "VARCHAR(10)"},
      // the account groups (FAGROUPS numbers, "180,40") the party comes from; empty: any
      {"PARTYGROUPS", "VARCHAR(250)"},
      // what the status line adds after a save, with the boxes' texts for {BOXNAME}
      {"SAVEDNOTE", "VARCHAR(100)"}},
     {"SERIESID"}},
    // A series' item grid, column by column after the host's serial column. COLKEY is one of
    // the host's standard keys (PRODUCT_ID, QUANTITY, ...) or the series' own; an own column is
    // numeric when it has a FORMAT and is saved into the DOCDATA column FIELD when one is named.
    // GROUPS: the account groups a party column's accounts come from, as DOCCONFIG.PARTYGROUPS.
    {"DOCCOLUMNS",
     {{"SERIESID", kCode},
      {"POSITION", kNumber},
      {"COLKEY", "VARCHAR(30)"},
      {"CAPTION", "VARCHAR(40)"},
      {"WIDTH", kNumber, "1000"},
      {"FORMAT", "VARCHAR(10)"},
      {"EDITABLE", kFlag, "1"},
      {"FIELD", "VARCHAR(30)"},
      // the figures a number column takes: '' 0 or more, 'positive' more than 0 on every
      // line, 'signed' negative as well
      {"FIGURES", "VARCHAR(10)", {}, "'signed'"},
      {"GROUPS", "VARCHAR(250)"},
      // worked out from other cells: Enter passes the column by
      {"COMPUTED", kFlag},
      // a new line proposes the line above's text in the column
      {"REPEATS", kFlag}},
     {"SERIESID", "POSITION"}},
    // A series' own header boxes, saved into the DOCMAIN column FIELD. LOOKUP names a module's
    // operation that chooses the box's record, LOOKUPTEXT the one that names a saved choice;
    // a REQUIRED box must be filled before a document is saved; an ISDATE box holds a day.
    {"DOCBOXES",
     {{"SERIESID", kCode},
      {"POSITION", kNumber},
      {"BOXNAME", "VARCHAR(30)"},
      {"CAPTION", "VARCHAR(40)"},
      {"FIELD", "VARCHAR(30)"},
      {"NUMERIC", kFlag},
      {"VISIBLE", kFlag, "1"},
      {"LOOKUP", "VARCHAR(40)"},
      {"LOOKUPTEXT", "VARCHAR(40)"},
      {"REQUIRED", kFlag},
      {"ISDATE", kFlag},
      // a new document starts with what the one before held (a book number)
      {"CARRIED", kFlag},
      // a new document proposes one more than the highest its series saved with the same
      // carried boxes and look-ups (a form number within its book and market)
      {"NUMBERED", kFlag}},
     {"SERIESID", "POSITION"}},
    // A series' charges: BASIS 'B' per bag, 'P' percent of the gross amount, 'F' fixed; SIGN +1
    // adds to the document, -1 deducts; posted to HEADCODE; the amount kept in DOCMAIN.FIELD.
    {"DOCCHARGES",
     {{"SERIESID", kCode},
      {"POSITION", kNumber},
      {"CHARGEKEY", "VARCHAR(30)"},
      {"CAPTION", "VARCHAR(40)"},
      {"RATE", kMoney},
      {"BASIS", "VARCHAR(1)", "'F'"},
      {"SIGN", kNumber, "1"},
      {"HEADCODE", kCode},
      {"FIELD", "VARCHAR(30)"}},
     {"SERIESID", "POSITION"}},
    // Document headers
    {"DOCMAIN",
     {{"DOCUMENTID", kCode},
      {"DOCSERIES", "VARCHAR(10)"},
      {"DOCSERIESID", kCode},
      {"DOCNUMBER", kNumber},
      {"DOCDATE", kDate},
      {"PARTYCODE", kCode},
      {"GROSSAMT", kMoney},
      {"GRANDTOTAL", kMoney},
      {"LABOUR", kMoney},
      {"LOADING", kMoney},
      {"ROUNDOFFAMT", kMoney},
      {"JFORMNOPORTAL", "VARCHAR(20)"},
      {"CANCELLED", kFlag},
      {"NARRATION", "VARCHAR(250)"},
      {"SALETYPE", kNumber, "1"},
      // the document's own voucher (FADATA, FADOCS); 0 when it posts none
      {"VOUCHERID", kCode}},
     {"DOCUMENTID"}},
    // The charges of a saved document as they were applied, so that an edited document keeps
    // its rates.
    {"DOCCHARGEDATA",
     {{"DOCUMENTID", kCode},
      {"POSITION", kNumber},
      {"CHARGEKEY", "VARCHAR(30)"},
      {"RATE", kMoney},
      {"AMOUNT", kMoney},
      {"HEADCODE", kCode}},
     {"DOCUMENTID", "POSITION"}},
    // Document lines; REFNO numbers the lines of a document
    {"DOCDATA",
     {{"DOCUMENTID", kCode},
      {"REFNO", kNumber},
      {"PRODUCTID", kCode},
      {"CUSTOMERID", kCode},
      {"QUANTITY", kQuantity},
      {"FREEQUANTITY", kQuantity},
      {"QTYPERBOX", kQuantity},
      {"NOOFBOXES", kQuantity},
      {"RATE", kMoney},
      {"AMOUNT", kMoney},
      {"QUALITYCUT", kQuantity},
      {"BATCHNO", "VARCHAR(30)"},
      {"STOCKFACTOR", kNumber},
      {"JFACTOR", kNumber},
      {"OH_OTHERS", kMoney},
      {"PCS", kQuantity},
      {"TOTALWT", kQuantity},
      {"SALEAMOUNT", kMoney},
      // a quantity the line differs by from what it settles, as its series' extension means it
      {"DIFFQTY", kQuantity},
      // "*Hidden*": a line an extension wrote while saving, saved but never shown
      {"ROWMARK", "VARCHAR(20)"}},
     {"DOCUMENTID", "REFNO"}},
    // Ledger rows: DAMT positive for debit, negative for credit; DSRNO numbers the rows of a
    // voucher
    {"FADATA",
     {{"VOUCHERID", kCode},
      {"DSRNO", kNumber},
      {"DCD", kCode},
      {"DVCHDATE", kDate},
      {"DBOOK", "VARCHAR(10)"},
      {"DTRNTYPE", "VARCHAR(10)"},
      {"DAMT", kMoney},
      {"NARRATIONID", kCode},
      {"DDOCUMENTID", kCode},
      {"DENTRYKIND", "VARCHAR(10)"}},
     {}},
    {"FANAR", {{"NARRATIONID", kCode}, {"NARRATION", "VARCHAR(250)"}}, {"NARRATIONID"}},
    // Voucher register
    {"FADOCS",
     {{"VOUCHERID", kCode},
      {"ISAUTOVOUCHER", kFlag},
      {"VCHDATE", kDate},
      {"TRNTYPE", "VARCHAR(10)"},
      // a receipt's or payment's bank reference (UTR), which the documents it settles show
      {"UTRNO", "VARCHAR(50)"},
      {"UTRDATE", kDate}},
     {"VOUCHERID"}},
    // The documents a typed receipt or payment settles
    {"FASETTLED", {{"VOUCHERID", kCode}, {"DOCUMENTID", kCode}}, {"VOUCHERID", "DOCUMENTID"}},
    {"FIRMSETTINGS", {{"NAME", "VARCHAR(60)"}, {"VALUE", "VARCHAR(1000)"}}, {"NAME"}},
    {"FIRMOPTIONS", {{"OPTIONNO", kNumber}, {"OPTIONVALUE", "VARCHAR(250)"}}, {"OPTIONNO"}},
    // The firm's print designs: named sections of text (its heading, address, licence lines)
    // that reports print above or below their pages
    {"PRINTDESIGNS",
     {{"DESIGNNAME", "VARCHAR(40)"}, {"SECTIONNAME", "VARCHAR(40)"}, {"SECTIONTEXT", "VARCHAR(4000)"}},
     {"DESIGNNAME", "SECTIONNAME"}},
};

struct GroupSpec {
    int number;
    std::string_view name;
    std::string_view nature;
};

// The chart's standard groups. Their numbers are the chart's own: modules file the heads they
// create under them (sales under 72, payables under 190), so they are fixed, not generated.
// Names are in upper case, as the masters keep every name.
const std::vector<GroupSpec> kStandardGroups = {
    {10, "CASH-IN-HAND", "A"},      {20, "BANK ACCOUNTS", "A"},
    {40, "SUNDRY DEBTORS", "A"},    {59, "DUTIES & TAXES", "L"},
    {60, "STOCK-IN-HAND", "A"},     {62, "PURCHASE ACCOUNTS", "E"},
    {64, "PURCHASE RETURNS", "E"},  {66, "DIRECT EXPENSES", "E"},
    {72, "SALES ACCOUNTS", "I"},    {74, "SALES RETURNS", "I"},
    {89, "INPUT TAX CREDITS", "A"}, {99, "PROVISIONS", "L"},
    {150, "CAPITAL ACCOUNT", "L"},  {180, "SUNDRY CREDITORS", "L"},
    {190, "CURRENT LIABILITIES", "L"},
    // A commodity's trading account closes into its gross profit: counted with income.
    {195, "TRADING ACCOUNTS", "I"},
};

struct IndexSpec {
    std::string_view table;
    std::vector<std::string_view> columns;
    bool unique = false;
};

// What every save and every report reads: documents by date and series, lines by document and
// by product, ledger rows by transaction type and date, by account and date, by date (the day
// book) and by voucher (the next voucher's number, a voucher deleted to be written again),
// narrations by their text (every voucher row looks its narration up), names. A document's
// number is its series' once: the index is the last word on it, whatever a program checked
// before writing.
const std::vector<IndexSpec> kIndexes = {
    {"DOCMAIN", {"DOCDATE", "DOCSERIES"}},
    {"DOCMAIN", {"DOCSERIESID", "DOCNUMBER"}, true},
    {"DOCDATA", {"DOCUMENTID"}},
    {"DOCDATA", {"PRODUCTID"}},
    {"FADATA", {"DTRNTYPE", "DVCHDATE"}},
    {"FADATA", {"DCD", "DVCHDATE"}},
    {"FADATA", {"VOUCHERID"}},
    {"FADATA", {"DVCHDATE"}},
    {"FANAR", {"NARRATION"}},
    {"FASETTLED", {"DOCUMENTID"}},
    {"FAMASTER", {"MHD"}},
    {"STKMASTER", {"QMHD"}},
};

std::string Joined(const std::vector<std::string_view>& names, std::string_view separator) {
    std::string out;
    for (std::string_view name : names)
        out += (out.empty() ? "" : std::string(separator)) + std::string(name);
    return out;
}

bool IsKey(const TableSpec& table, std::string_view column) {
    for (std::string_view key : table.primaryKey)
        if (key == column)
            return true;
    return false;
}

// Keys must be given; other columns start as 0 or '' so that rows written without them still
// add up and compare ("MST=''", "Quantity+FreeQuantity").
std::string ColumnDefinition(const TableSpec& table, const ColumnSpec& column) {
    std::string definition = std::string(column.name) + " " + std::string(column.type);
    if (IsKey(table, column.name))
        return definition + " NOT NULL";
    if (!column.defaultValue.empty())
        return definition + " DEFAULT " + std::string(column.defaultValue);
    switch (ClassifySqlType(column.type)) {
    case SqlTypeKind::Integer:
    case SqlTypeKind::Decimal:
        return definition + " DEFAULT 0";
    case SqlTypeKind::Text:
        return definition + " DEFAULT ''";
    default:
        return definition;
    }
}

std::string CreateTableSql(const TableSpec& table) {
    std::string sql = "CREATE TABLE " + std::string(table.name) + " (";
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        sql += (i == 0 ? "" : ", ") + ColumnDefinition(table, table.columns[i]);
    if (!table.primaryKey.empty())
        sql += ", PRIMARY KEY (" + Joined(table.primaryKey, ", ") + ")";
    return sql + ")";
}

std::string IndexName(const IndexSpec& index, bool unique) {
    return (unique ? "UX_" : "IX_") + std::string(index.table) + "_" + Joined(index.columns, "_");
}

std::string CreateIndexSql(const IndexSpec& index) {
    return std::string(index.unique ? "CREATE UNIQUE INDEX" : "CREATE INDEX") +
           " IF NOT EXISTS " + IndexName(index, index.unique) + " ON " +
           std::string(index.table) + " (" + Joined(index.columns, ", ") + ")";
}

// Two documents of a series with one number (made before the number was unique) stop the
// upgrade: which one keeps the number is the user's to say, never the program's.
void RefuseDoubledDocumentNumbers(CompanyDb& db) {
    auto rows = db.OpenRecordset(
        "SELECT D.DOCSERIES, D.DOCNUMBER, D.DOCUMENTID FROM DOCMAIN D WHERE EXISTS (SELECT 1 "
        "FROM DOCMAIN O WHERE O.DOCSERIESID=D.DOCSERIESID AND O.DOCNUMBER=D.DOCNUMBER AND "
        "O.DOCUMENTID<>D.DOCUMENTID) ORDER BY D.DOCSERIESID, D.DOCNUMBER, D.DOCUMENTID");
    std::string doubled;
    std::string last;
    for (; !rows->EndOfRows(); rows->MoveNext()) {
        const std::string number =
            rows->Field(0).AsText() + " no. " + rows->Field(1).AsText();
        const std::string id = rows->Field(2).AsText();
        if (number == last) {
            doubled += ", " + id;
            continue;
        }
        doubled += (doubled.empty() ? "" : "); ") + number + " (documents " + id;
        last = number;
    }
    if (doubled.empty())
        return;
    throw DbError("The company holds documents that share a number in their series: " + doubled +
                  "). This QX Desk keeps every number once; give each of them its own number "
                  "in the QX Desk that made the company, then open it here. Nothing was changed.");
}

void InsertStandardGroups(CompanyDb& db) {
    for (const GroupSpec& group : kStandardGroups)
        db.ExecuteSql("INSERT INTO FAGROUPS (GROUPNO, GROUPNAME, NATURE) VALUES (" +
                      std::to_string(group.number) + ", " + SqlQuote(group.name) + ", " +
                      SqlQuote(group.nature) + ")");
}

} // namespace

void CreateHostSchema(CompanyDb& db, std::string_view companyName) {
    for (const TableSpec& table : kTables)
        db.ExecuteSql(CreateTableSql(table));
    for (const IndexSpec& index : kIndexes)
        db.ExecuteSql(CreateIndexSql(index));
    InsertStandardGroups(db);
    auto mark = [&](std::string_view name, std::string_view value) {
        db.ExecuteSql("INSERT INTO QXCOMPANY (NAME, VALUE) VALUES (" + SqlQuote(name) + ", " +
                      SqlQuote(value) + ")");
    };
    mark("FORMAT", kCompanyFormat);
    mark("SCHEMAVERSION", std::to_string(kHostSchemaVersion));
    mark("COMPANYNAME", companyName);
}

void UpgradeHostSchema(CompanyDb& db) {
    for (const TableSpec& table : kTables) {
        if (!db.TableExists(table.name)) {
            db.ExecuteSql(CreateTableSql(table));
            if (table.name == "FAGROUPS") InsertStandardGroups(db);
            continue;
        }
        for (const ColumnSpec& column : table.columns) {
            if (db.FieldExists(column.name, table.name)) continue;
            db.ExecuteSql("ALTER TABLE " + std::string(table.name) + " ADD " + ColumnDefinition(table, column));
            if (!column.existingRows.empty())
                db.ExecuteSql("UPDATE " + std::string(table.name) + " SET " + std::string(column.name) + "=" +
                              std::string(column.existingRows));
        }
    }
    RefuseDoubledDocumentNumbers(db);
    for (const IndexSpec& index : kIndexes) {
        // A unique index replaces the plain one of an older version.
        if (index.unique)
            db.ExecuteSql("DROP INDEX IF EXISTS " + IndexName(index, false));
        db.ExecuteSql(CreateIndexSql(index));
    }
    db.ExecuteSql("UPDATE QXCOMPANY SET VALUE=" + SqlQuote(std::to_string(kHostSchemaVersion)) +
                  " WHERE NAME='SCHEMAVERSION'");
}

} // namespace qx::db
