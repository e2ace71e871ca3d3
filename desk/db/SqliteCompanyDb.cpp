#include "SqliteCompanyDb.h"

#include "DecimalSum.h"
#include "HostSchema.h"
#include "SqlAdapter.h"
#include "SqliteErrors.h"
#include "SqliteRecordset.h"
#include "SqliteStatement.h"

#include <sqlite3.h>

#include <charconv>
#include <memory>
#include <optional>
#include <system_error>

#include <unistd.h>

namespace qx::db {
namespace {

// Another program (qx beside the desktop) may hold the write lock for a moment.
constexpr int kBusyTimeoutMs = 5000;

// SQLite's URI form of a file name: '%', '?' and '#' would otherwise be read as the URI's own.
std::string FileUri(const std::filesystem::path& path) {
    std::string uri = "file:";
    for (const char c : path.string()) {
        if (c == '%') uri += "%25";
        else if (c == '?') uri += "%3f";
        else if (c == '#') uri += "%23";
        else uri += c;
    }
    return uri;
}

bool Writable(const std::filesystem::path& path) {
    return ::access(path.c_str(), W_OK) == 0;
}

// How this process can open a company. One it cannot write (the file or its folder) is opened
// read-only without leaving -wal or -shm files of its own: SQLite makes them with the
// permissions of the company file, which would keep the company unwritable once it is made
// writable again, and cannot make them at all in a read-only folder. Without a -wal nothing
// waits outside the company file, so the file is read as it stands (immutable); with one, what
// the -wal holds is read through it and nothing new is made.
enum class Access { ReadWrite, ReadOnly, Immutable };

Access AccessTo(const std::filesystem::path& path) {
    const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
    if (Writable(path) && Writable(folder))
        return Access::ReadWrite;
    std::error_code ec;
    return std::filesystem::exists(path.string() + "-wal", ec) ? Access::ReadOnly
                                                                : Access::Immutable;
}

sqlite3* OpenHandle(const std::filesystem::path& path, Access access, int createFlag = 0) {
    int flags = access == Access::ReadWrite ? SQLITE_OPEN_READWRITE | createFlag
                                            : SQLITE_OPEN_READONLY;
    // SQLite takes file names in UTF-8 on every system.
    std::string name = path.string();
    if (access == Access::Immutable) {
        name = FileUri(path) + "?immutable=1";
        flags |= SQLITE_OPEN_URI;
    }
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(name.c_str(), &db, flags, nullptr) != SQLITE_OK) {
        DbError error = CompanyError(db, {}, path.string());
        sqlite3_close(db);
        throw error;
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

// What stands in the way of opening the path as a company, said plainly: nothing there, a
// folder, a file of another kind, a company of a newer QX Desk; and whatever keeps SQLite from
// reading it (permission, a lock, a full disk, damage). The file is looked at through a
// read-only connection, so that a file of another program is refused exactly as it was found.
// Gives the company's schema version.
int CheckCompanyFile(const std::filesystem::path& path, Access access) {
    std::error_code ec;
    const auto status = std::filesystem::status(path, ec);
    if (status.type() == std::filesystem::file_type::not_found)
        throw DbError(path.string() + " does not exist");
    if (ec)
        throw DbError(path.string() + " cannot be reached: " + ec.message() + ".");
    if (std::filesystem::is_directory(status))
        throw DbError(path.string() + " is a folder, not a company file.");

    std::unique_ptr<sqlite3, decltype(&sqlite3_close)> db(
        OpenHandle(path, access == Access::ReadWrite ? Access::ReadOnly : access), &sqlite3_close);
    const std::string notCompany = path.string() + " is not a QX Desk company file";
    bool marked = false;
    try {
        Statement marker(db.get(), "SELECT 1 FROM sqlite_master WHERE type='table' AND "
                                   "name='QXCOMPANY'");
        marked = marker.Step();
    } catch (const DbError&) {
        // The first read is where SQLite finds a file that is no database at all.
        if (sqlite3_errcode(db.get()) == SQLITE_NOTADB)
            throw DbError(notCompany);
        throw;
    }
    if (!marked)
        throw DbError(notCompany);
    const std::optional<std::string> format = MarkerValue(db.get(), "FORMAT");
    const std::optional<std::string> version = MarkerValue(db.get(), "SCHEMAVERSION");
    int schemaVersion = 0;
    if (version)
        std::from_chars(version->data(), version->data() + version->size(), schemaVersion);
    if (format != kCompanyFormat || schemaVersion < 1)
        throw DbError(notCompany);
    if (schemaVersion > kHostSchemaVersion)
        throw DbError(path.string() + " was made by a newer QX Desk (schema version " + *version +
                      ")");
    return schemaVersion;
}

bool IsBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

} // namespace

SqliteCompanyDb::SqliteCompanyDb(sqlite3* db, std::filesystem::path path)
    : db_(db), path_(std::move(path)), readOnly_(sqlite3_db_readonly(db, "main") == 1) {
    try {
        RegisterDecimalSum(db_);
        if (!readOnly_)
            Run("PRAGMA journal_mode=WAL");
    } catch (...) {
        sqlite3_close(db_);
        throw;
    }
}

SqliteCompanyDb::~SqliteCompanyDb() {
    // A row set left open keeps its rows; one that fails to read them says so as it is read on.
    for (bool done = false; !done;) {
        try {
            reads_.ReadWhole();
            done = true;
        } catch (const DbError&) {
        }
    }
    if (inTransaction_)
        sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
    cache_.Clear();
    sqlite3_close_v2(db_);
}

std::unique_ptr<SqliteCompanyDb> SqliteCompanyDb::Create(const std::filesystem::path& path,
                                                         const std::string& companyName) {
    if (std::filesystem::exists(path))
        throw DbError(path.string() + " already exists");
    std::unique_ptr<SqliteCompanyDb> db(new SqliteCompanyDb(
        OpenHandle(path, Access::ReadWrite, SQLITE_OPEN_CREATE), path));
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
    const Access access = AccessTo(path);
    const int schemaVersion = CheckCompanyFile(path, access);
    std::unique_ptr<SqliteCompanyDb> db(new SqliteCompanyDb(OpenHandle(path, access), path));
    // A company made by an older QX Desk is brought up to date as it is opened.
    if (schemaVersion < kHostSchemaVersion) {
        if (db->readOnly_)
            throw DbError(path.string() + " was made by an older QX Desk and is read-only: make "
                                          "it writable and open it again to bring it up to date.");
        qx::Transaction transaction(*db);
        UpgradeHostSchema(*db);
        transaction.Commit();
    }
    return db;
}

void SqliteCompanyDb::Run(std::string_view sql) {
    reads_.ReadWhole();
    Statement statement(db_, sql);
    while (statement.Step()) {
    }
}

void SqliteCompanyDb::ExecuteSql(std::string_view sql, int /*options: no rows wanted*/) {
    reads_.ReadWhole();
    Statement first(db_, sql, sql, &cache_, Statement::Text::Module);
    // A text may hold several statements; the ones after the first are prepared from the rest
    // of its adapted text as they come.
    std::unique_ptr<Statement> next;
    for (Statement* statement = &first; !statement->Empty();) {
        while (statement->Step()) {
        }
        if (statement->Rest().empty())
            break;
        next = std::make_unique<Statement>(db_, statement->Rest(), sql);
        statement = next.get();
    }
}

std::unique_ptr<Recordset> SqliteCompanyDb::OpenRecordset(std::string_view sql) {
    return std::make_unique<SqliteRecordset>(db_, cache_, reads_, sql);
}

std::unique_ptr<Statement> SqliteCompanyDb::Query(std::string_view sql) {
    reads_.ReadWhole(); // the statement may write
    const std::string adapted = AdaptSql(sql);
    auto query = std::make_unique<Statement>(db_, adapted, sql);
    if (query->Empty())
        throw DbError("There is no statement in \"" + std::string(sql) + "\".");
    // What follows the statement may be blanks, comments and semicolons, nothing else.
    const DbError several("Only one statement at a time: \"" + std::string(sql) + "\" holds more.");
    for (std::string_view rest = query->Rest(); !IsBlank(rest);) {
        std::unique_ptr<Statement> next;
        try {
            next = std::make_unique<Statement>(db_, rest, sql);
        } catch (const DbError&) {
            throw several; // not a statement, but more than blanks
        }
        if (!next->Empty() || next->Rest().size() == rest.size())
            throw several;
        rest = next->Rest();
    }
    return query;
}

bool SqliteCompanyDb::TableExists(std::string_view table) {
    Statement query(db_, "SELECT 1 FROM sqlite_master WHERE type IN ('table','view') AND "
                         "name=? COLLATE NOCASE");
    query.Bind(1, Value(table));
    return query.Step();
}

bool SqliteCompanyDb::FieldExists(std::string_view field, std::string_view table) {
    // A table that does not exist has no fields: pragma_table_info gives no rows for it.
    Statement query(db_, "SELECT 1 FROM pragma_table_info(?1) WHERE name=?2 COLLATE NOCASE");
    query.Bind(1, Value(table));
    query.Bind(2, Value(field));
    return query.Step();
}

void SqliteCompanyDb::AddFields(std::string_view table, std::string_view sqlType,
                                const std::vector<std::string>& fields) {
    const SqlTypeKind kind = ClassifySqlType(sqlType);
    const bool number = kind == SqlTypeKind::Integer || kind == SqlTypeKind::Decimal;
    auto missing = [&] {
        std::vector<std::string> absent;
        for (const std::string& field : fields)
            if (!FieldExists(field, table))
                absent.push_back(field);
        return absent;
    };
    // Asked first without the write lock, so that a company with every field (the usual case)
    // is not locked, nor refused when it is read-only; then again under it, so that two
    // programs adding the same field do not both find it missing.
    if (missing().empty())
        return;
    InOneUnit([&] {
        for (const std::string& field : missing())
            ExecuteSql("ALTER TABLE " + std::string(table) + " ADD " + field + " " +
                       std::string(sqlType) + (number ? " DEFAULT 0" : ""));
    });
}

void SqliteCompanyDb::InOneUnit(const std::function<void()>& work) {
    if (inTransaction_) {
        work();
        return;
    }
    qx::Transaction unit(*this);
    work();
    unit.Commit();
}

Value SqliteCompanyDb::LookupValue(std::string_view table, std::string_view fieldOrAggregate,
                                   std::string_view condition) {
    std::string sql = "SELECT " + std::string(fieldOrAggregate) + " FROM " + std::string(table);
    if (!IsBlank(condition))
        sql += " WHERE " + std::string(condition);
    Statement query(db_, sql + " LIMIT 1", sql, &cache_, Statement::Text::Module);
    return query.Step() ? query.Column(0) : Value();
}

Value SqliteCompanyDb::LookupValue(std::string_view table, std::string_view fieldOrAggregate,
                                   std::string_view condition, const std::vector<Value>& values) {
    const std::string sql = "SELECT " + std::string(fieldOrAggregate) + " FROM " +
                            std::string(table) + " WHERE " + std::string(condition);
    Statement query(db_, sql + " LIMIT 1", sql, &cache_, Statement::Text::Module);
    for (std::size_t i = 0; i < values.size(); ++i)
        query.Bind(static_cast<int>(i) + 1, values[i]);
    return query.Step() ? query.Column(0) : Value();
}

std::string SqliteCompanyDb::DateLiteral(Date date) const {
    return "'" + date.ToIso() + "'";
}

void SqliteCompanyDb::BeginTransaction() {
    if (inTransaction_)
        throw DbError("a transaction is already open on " + path_.string());
    if (readOnly_)
        throw DbError(ReadOnlyMessage(path_.string()));
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
