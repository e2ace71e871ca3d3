#include "SqliteCompanyDb.h"

#include "DecimalSum.h"
#include "HostSchema.h"
#include "SqlAdapter.h"
#include "SqliteRecordset.h"
#include "SqliteStatement.h"

#include <sqlite3.h>

#include <charconv>
#include <memory>
#include <optional>
#include <system_error>

namespace qx::db {
namespace {

// Another program (qx beside the desktop) may hold the write lock for a moment.
constexpr int kBusyTimeoutMs = 5000;

sqlite3* OpenHandle(const std::filesystem::path& path, int flags) {
    sqlite3* db = nullptr;
    // SQLite takes file names in UTF-8 on every system.
    const std::u8string name = path.u8string();
    if (sqlite3_open_v2(reinterpret_cast<const char*>(name.c_str()), &db, flags, nullptr) !=
        SQLITE_OK) {
        std::string message = db != nullptr ? sqlite3_errmsg(db) : "out of memory";
        sqlite3_close(db);
        throw DbError(path.string() + ": " + message);
    }
    sqlite3_busy_timeout(db, kBusyTimeoutMs);
    return db;
}

std::optional<std::string> MarkerValue(sqlite3* db, std::string_view name) {
    Statement query(db, "SELECT VALUE FROM QXCOMPANY WHERE NAME=?");
    query.Bind(1, Value(name));
    if (!query.Step())
        return std::nullopt;
    const Value value = query.Column(0);
    if (const auto* text = std::get_if<std::string>(&value.Raw()))
        return *text;
    return std::nullopt;
}

// Looks at the file through a read-only connection, so that a file of another program is
// refused exactly as it was found.
void CheckCompanyFile(const std::filesystem::path& path) {
    if (!std::filesystem::exists(path))
        throw DbError(path.string() + " does not exist");
    std::optional<std::string> format;
    std::optional<std::string> version;
    {
        std::unique_ptr<sqlite3, decltype(&sqlite3_close)> db(
            OpenHandle(path, SQLITE_OPEN_READONLY), &sqlite3_close);
        try {
            format = MarkerValue(db.get(), "FORMAT");
            version = MarkerValue(db.get(), "SCHEMAVERSION");
        } catch (const DbError&) {
            // not an SQLite database, or one without the marker table
        }
    }
    if (format != kCompanyFormat)
        throw DbError(path.string() + " is not a QX Desk company file");
    int schemaVersion = 0;
    if (version)
        std::from_chars(version->data(), version->data() + version->size(), schemaVersion);
    if (schemaVersion < 1)
        throw DbError(path.string() + " is not a QX Desk company file");
    if (schemaVersion > kHostSchemaVersion)
        throw DbError(path.string() + " was made by a newer QX Desk (schema version " + *version +
                      ")");
}

bool IsBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

} // namespace

SqliteCompanyDb::SqliteCompanyDb(sqlite3* db, std::filesystem::path path)
    : db_(db), path_(std::move(path)) {
    try {
        RegisterDecimalSum(db_);
        Run("PRAGMA journal_mode=WAL");
    } catch (...) {
        sqlite3_close(db_);
        throw;
    }
}

SqliteCompanyDb::~SqliteCompanyDb() {
    if (inTransaction_)
        sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close_v2(db_);
}

std::unique_ptr<SqliteCompanyDb> SqliteCompanyDb::Create(const std::filesystem::path& path,
                                                         const std::string& companyName) {
    if (std::filesystem::exists(path))
        throw DbError(path.string() + " already exists");
    std::unique_ptr<SqliteCompanyDb> db(
        new SqliteCompanyDb(OpenHandle(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE), path));
    try {
        qx::Transaction transaction(*db);
        CreateHostSchema(*db, companyName);
        transaction.Commit();
    } catch (...) {
        db.reset();
        std::error_code ignored; // a half-made company must not be left behind
        std::filesystem::remove(path, ignored);
        throw;
    }
    return db;
}

std::unique_ptr<SqliteCompanyDb> SqliteCompanyDb::Open(const std::filesystem::path& path) {
    CheckCompanyFile(path);
    std::unique_ptr<SqliteCompanyDb> db(
        new SqliteCompanyDb(OpenHandle(path, SQLITE_OPEN_READWRITE), path));
    // A company made by an older QX Desk is brought up to date as it is opened.
    if (db->LookupValue("QXCOMPANY", "VALUE", "NAME='SCHEMAVERSION'").AsLong() < kHostSchemaVersion) {
        qx::Transaction transaction(*db);
        UpgradeHostSchema(*db);
        transaction.Commit();
    }
    return db;
}

void SqliteCompanyDb::Run(std::string_view sql) {
    Statement statement(db_, sql);
    while (statement.Step()) {
    }
}

void SqliteCompanyDb::ExecuteSql(std::string_view sql, int /*options: no rows wanted*/) {
    const std::string adapted = AdaptSql(sql);
    for (std::string_view rest = adapted;;) {
        Statement statement(db_, rest, sql);
        if (statement.Empty())
            break;
        while (statement.Step()) {
        }
        rest = statement.Rest();
    }
}

std::unique_ptr<Recordset> SqliteCompanyDb::OpenRecordset(std::string_view sql) {
    return std::make_unique<SqliteRecordset>(db_, sql);
}

bool SqliteCompanyDb::TableExists(std::string_view table) {
    try {
        Statement query(db_, "SELECT 1 FROM sqlite_master WHERE type IN ('table','view') AND "
                             "name=? COLLATE NOCASE");
        query.Bind(1, Value(table));
        return query.Step();
    } catch (const DbError&) {
        return false;
    }
}

bool SqliteCompanyDb::FieldExists(std::string_view field, std::string_view table) {
    try {
        Statement query(db_, "SELECT 1 FROM pragma_table_info(?1) WHERE name=?2 COLLATE NOCASE");
        query.Bind(1, Value(table));
        query.Bind(2, Value(field));
        return query.Step();
    } catch (const DbError&) {
        return false;
    }
}

void SqliteCompanyDb::AddFields(std::string_view table, std::string_view sqlType,
                                const std::vector<std::string>& fields) {
    const SqlTypeKind kind = ClassifySqlType(sqlType);
    const bool number = kind == SqlTypeKind::Integer || kind == SqlTypeKind::Decimal;
    for (const std::string& field : fields) {
        if (FieldExists(field, table))
            continue;
        ExecuteSql("ALTER TABLE " + std::string(table) + " ADD " + field + " " +
                   std::string(sqlType) + (number ? " DEFAULT 0" : ""));
    }
}

Value SqliteCompanyDb::LookupValue(std::string_view table, std::string_view fieldOrAggregate,
                                   std::string_view condition) {
    std::string sql = "SELECT " + std::string(fieldOrAggregate) + " FROM " + std::string(table);
    if (!IsBlank(condition))
        sql += " WHERE " + std::string(condition);
    try {
        Statement query(db_, AdaptSql(sql + " LIMIT 1"));
        return query.Step() ? query.Column(0) : Value();
    } catch (const std::exception&) {
        return {}; // absence, as for a missing row
    }
}

std::string SqliteCompanyDb::DateLiteral(Date date) const {
    return "'" + date.ToIso() + "'";
}

void SqliteCompanyDb::BeginTransaction() {
    if (inTransaction_)
        throw DbError("a transaction is already open on " + path_.string());
    // IMMEDIATE takes the write lock now, so a save never fails half way for want of it.
    Run("BEGIN IMMEDIATE");
    inTransaction_ = true;
}

void SqliteCompanyDb::Commit() {
    if (!inTransaction_)
        throw DbError("no transaction to commit on " + path_.string());
    try {
        Run("COMMIT");
    } catch (const DbError&) {
        inTransaction_ = sqlite3_get_autocommit(db_) == 0;
        throw;
    }
    inTransaction_ = false;
}

void SqliteCompanyDb::Rollback() {
    if (!inTransaction_)
        throw DbError("no transaction to roll back on " + path_.string());
    inTransaction_ = false;
    // SQLite may have rolled back by itself after an error (disk full, for one).
    if (sqlite3_get_autocommit(db_) == 0)
        Run("ROLLBACK");
}

} // namespace qx::db
