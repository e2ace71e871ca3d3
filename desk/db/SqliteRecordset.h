#pragma once
// The rows of one query. A query of the form "SELECT * FROM T [WHERE ...]" (also "SELECT FIRST
// 0 * FROM T") is writable and read whole when it runs: AddNew + SetField + Update inserts a
// row into T, SetField + Update on a row read changes that row, found again by its rowid.
// Any other query is read as it is moved through, each field of the current row as it is
// asked, so that a register of thousands of wide rows copies only what it shows; before
// anything is written through the connection, such a row set reads the rest of its rows whole
// (RowsBeingRead), so it gives the rows its query found when it ran, whatever is written while
// it is open.

#include "SqlAdapter.h"

#include "host/CompanyDb.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

struct sqlite3;

namespace qx::db {

class SqliteRecordset;
class Statement;
class StatementCache;

// The row sets of one connection still reading their query's rows as they are moved through.
// Each holds its statement in progress, and with it the connection's read of the company.
class RowsBeingRead {
public:
    RowsBeingRead() = default;
    RowsBeingRead(const RowsBeingRead&) = delete;
    RowsBeingRead& operator=(const RowsBeingRead&) = delete;

    void Add(SqliteRecordset& rows) { sets_.push_back(&rows); }
    void Remove(SqliteRecordset& rows);
    // Each reads the rest of its rows whole and lets its statement go: before a write, so that
    // what is written cannot change rows still to be read, and no statement in progress holds
    // up a transaction, a change of a table or the end of a unit of work. A row set that fails
    // to read throws, and its reading after that throws the same.
    void ReadWhole();

private:
    std::vector<SqliteRecordset*> sets_;
};

class SqliteRecordset final : public Recordset {
public:
    // db, its statement cache and its rows being read must outlive a writable row set; the
    // connection reads the rest of the others whole before it closes.
    SqliteRecordset(sqlite3* db, StatementCache& cache, RowsBeingRead& reads, std::string_view sql);
    ~SqliteRecordset() override;

    bool EndOfRows() const override;
    void MoveNext() override;
    int FieldCount() const override;
    std::string FieldName(int index) const override;
    bool HasField(std::string_view name) const override;
    int FieldIndex(std::string_view name) const override;
    const Value& Field(std::string_view name) const override;
    const Value& Field(int index) const override;

    void AddNew() override;
    void SetField(std::string_view name, Value value) override;
    void Update() override;
    void Close() override;

private:
    friend class RowsBeingRead;

    struct Row {
        std::int64_t rowid = 0; // 0: a new row not written yet
        std::vector<Value> values;
        std::vector<bool> changed; // empty for a row read and not changed
        // Written, and to be read back before its values are read: defaults and stored forms
        // show as the database holds them. A row appended and never read is not read back.
        bool readBack = false;
    };

    std::optional<std::size_t> FindField(std::string_view name) const;
    std::size_t IndexOf(std::string_view name) const;
    const Value& Cell(std::size_t index) const;
    Row ReadWholeRow(const Statement& query, int first) const;
    // The query's next row, while it is read as moved through.
    void StepLive();
    void ReadRest();
    void StopReading();
    const Row& CurrentRow() const;
    Row& CurrentRow();
    // The current row as the database holds it.
    const Row& StoredRow() const;
    bool HasUnwrittenChanges() const;
    void ReadRow(std::int64_t rowid, Row& row);

    sqlite3* db_;
    StatementCache& cache_;
    RowsBeingRead& reads_;
    std::string sql_;
    std::optional<WritableQuery> writable_;
    std::vector<std::string> names_;
    // Field names without regard to letter case, found from a name as it is given.
    struct NameHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const;
    };
    struct NameEqual {
        using is_transparent = void;
        bool operator()(std::string_view a, std::string_view b) const;
    };
    std::unordered_map<std::string, std::size_t, NameHash, NameEqual> byName_;
    std::vector<SqlTypeKind> kinds_;
    std::vector<Row> rows_;
    std::size_t current_ = 0;
    // The query while its rows are read as they are moved through: the current row is its row
    // (rows_ is empty meanwhile), its fields read as they are asked.
    std::unique_ptr<Statement> live_;
    mutable std::vector<Value> liveValues_;
    mutable std::vector<unsigned char> liveRead_;
    // Why the rows after those read cannot be read, when reading them failed.
    std::string failure_;
    // The statement that wrote the last row, kept for the next row that sets the same fields:
    // rows appended one after another are written by one statement.
    std::unique_ptr<Statement> write_;
    std::vector<std::size_t> writeFields_;
    bool writeInserts_ = false;
};

} // namespace qx::db
