#pragma once
// The open company's database as a module sees it. It accepts SQL text as the module
// writes it (rows limited with "SELECT FIRST n", decimal columns, date literals made by
// DateLiteral) and adapts it to the backend. Field names are looked up without regard to
// letter case. Failures throw DbError. TableExists, FieldExists and LookupValue report
// absence (no such table, no such field, no row) by their result, and throw for every error
// (a wrong column, a company locked by another program, a damaged file): an error is never
// read as "nothing found".

#include "Date.h"
#include "Value.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

// What kind of refusal a DbError is, for the callers that say it in their own words.
enum class DbProblem {
    Failure,
    // A unique index refused a row: the company already holds one with the same key.
    Duplicate,
};

class DbError : public std::runtime_error {
public:
    explicit DbError(const std::string& message, DbProblem problem = DbProblem::Failure)
        : std::runtime_error(message), problem_(problem) {}
    DbProblem Problem() const { return problem_; }

private:
    DbProblem problem_;
};

// Rows of one query. A row set opened on a single table ("SELECT * FROM T WHERE ...",
// "SELECT FIRST 0 * FROM T") is appendable and updatable: AddNew starts a new row,
// SetField fills the current or new row, Update writes it.
class Recordset {
public:
    virtual ~Recordset() = default;

    virtual bool EndOfRows() const = 0;
    virtual void MoveNext() = 0;
    virtual int FieldCount() const = 0;
    virtual std::string FieldName(int index) const = 0;
    virtual bool HasField(std::string_view name) const = 0;
    // The position of a field for Field(int), found once for a row set read row by row;
    // throws DbError for a name the row set does not have.
    virtual int FieldIndex(std::string_view name) const = 0;
    // Throws DbError for a name the row set does not have, or past the last row. The value is
    // the row set's, read without a copy; it stands until the row set moves on, a row is added
    // or the set is closed.
    virtual const Value& Field(std::string_view name) const = 0;
    virtual const Value& Field(int index) const = 0;

    virtual void AddNew() = 0;
    virtual void SetField(std::string_view name, Value value) = 0;
    virtual void Update() = 0;
    virtual void Close() = 0;
};

class CompanyDb {
public:
    virtual ~CompanyDb() = default;

    // Runs DDL or DML. The module passes option 128 (no rows returned), kept for its sake.
    virtual void ExecuteSql(std::string_view sql, int options = 128) = 0;
    virtual std::unique_ptr<Recordset> OpenRecordset(std::string_view sql) = 0;

    virtual bool TableExists(std::string_view table) = 0;
    virtual bool FieldExists(std::string_view field, std::string_view table) = 0;
    // Adds each named field the table lacks, all with the SQL type given ("Decimal(8,4)").
    virtual void AddFields(std::string_view table, std::string_view sqlType,
                           const std::vector<std::string>& fields) = 0;
    // The field or aggregate ("MAX(MCD)") of the first row matching the condition (which may
    // be empty); a null Value, read as 0 or "", when there is none.
    virtual Value LookupValue(std::string_view table, std::string_view fieldOrAggregate,
                              std::string_view condition) = 0;
    // The same with a condition that holds a "?" for each value, in order, bound as it is: a
    // text is never written into SQL, and a look-up made again with other values is the same
    // statement, prepared once. For the host's own statements (a ledger row's narration).
    virtual Value LookupValue(std::string_view table, std::string_view fieldOrAggregate,
                              std::string_view condition, const std::vector<Value>& values) = 0;

    // The backend's SQL literal of a day.
    virtual std::string DateLiteral(Date date) const = 0;

    // One unit of work at a time: beginning a second while one is open throws DbError. A unit
    // takes the company's write lock as it begins, so that what it reads to decide what it
    // writes cannot change under it; a company another program is saving to, or one that is
    // read-only, refuses it with a message saying so.
    virtual void BeginTransaction() = 0;
    virtual void Commit() = 0;
    virtual void Rollback() = 0;
};

// A unit of work that rolls back on leaving its scope unless committed: a save is all or
// nothing.
class Transaction {
public:
    explicit Transaction(CompanyDb& db) : db_(db) { db_.BeginTransaction(); }
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void Commit();

private:
    CompanyDb& db_;
    bool done_ = false;
};

// The text as a quoted SQL string literal, quotes doubled: D'SOUZA -> 'D''SOUZA'.
std::string SqlQuote(std::string_view text);

} // namespace qx
