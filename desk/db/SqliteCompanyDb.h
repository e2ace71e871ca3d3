#pragma once
// A company kept in one SQLite file: embedded, nothing to install, copied and backed up as a
// file. The module's SQL text reaches SQLite through AdaptSql.

#include "SqliteRecordset.h"
#include "StatementCache.h"

#include "host/CompanyDb.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

struct sqlite3;

namespace qx::db {

class Statement;

class SqliteCompanyDb final : public CompanyDb {
public:
    // A new company file with the host's tables; refuses a path that exists.
    static std::unique_ptr<SqliteCompanyDb> Create(const std::filesystem::path& path,
                                                   const std::string& companyName);
    // An existing company. Whatever keeps it from being opened is said plainly (no such file,
    // a folder, no permission, another program's lock, a full disk, a damaged file, a file that
    // is no QX Desk company, one of a newer QX Desk), before anything is written to it. A
    // company this process cannot write is opened read-only and leaves no files beside it.
    static std::unique_ptr<SqliteCompanyDb> Open(const std::filesystem::path& path);
    ~SqliteCompanyDb() override;
    SqliteCompanyDb(const SqliteCompanyDb&) = delete;
    SqliteCompanyDb& operator=(const SqliteCompanyDb&) = delete;

    void ExecuteSql(std::string_view sql, int options = 128) override;
    std::unique_ptr<Recordset> OpenRecordset(std::string_view sql) override;
    // One statement, as the modules write it, prepared to be stepped through: its rows are
    // read one at a time as they come, so that a query of millions of rows holds one. Text
    // that holds more than one statement (or none) is refused with DbError.
    std::unique_ptr<Statement> Query(std::string_view sql);
    bool TableExists(std::string_view table) override;
    bool FieldExists(std::string_view field, std::string_view table) override;
    // A new number column gets DEFAULT 0, so that rows saved before it existed add up.
    void AddFields(std::string_view table, std::string_view sqlType,
                   const std::vector<std::string>& fields) override;
    Value LookupValue(std::string_view table, std::string_view fieldOrAggregate,
                      std::string_view condition) override;
    Value LookupValue(std::string_view table, std::string_view fieldOrAggregate,
                      std::string_view condition, const std::vector<Value>& values) override;
    std::string DateLiteral(Date date) const override;

    void BeginTransaction() override;
    void Commit() override;
    void Rollback() override;

    const std::filesystem::path& Path() const { return path_; }

private:
    SqliteCompanyDb(sqlite3* db, std::filesystem::path path);
    void Run(std::string_view sql);
    // Runs work inside the unit of work that is open, or in one of its own.
    void InOneUnit(const std::function<void()>& work);

    sqlite3* db_;
    StatementCache cache_;
    RowsBeingRead reads_;
    std::filesystem::path path_;
    bool readOnly_;
    bool inTransaction_ = false;
};

} // namespace qx::db
