#pragma once
// The rows of one query, read whole when the query runs (simple, and safe under WAL at a
// company's sizes). A query of the form "SELECT * FROM T [WHERE ...]" (also "SELECT FIRST 0 *
// FROM T") is writable: AddNew + SetField + Update inserts a row into T, SetField + Update on
// a row read changes that row, found again by its rowid.

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

class Statement;
class StatementCache;

class SqliteRecordset final : public Recordset {
public:
    // db and its statement cache must outlive a writable row set.
    SqliteRecordset(sqlite3* db, StatementCache& cache, std::string_view sql);
    ~SqliteRecordset() override;

    bool EndOfRows() const override;
    void MoveNext() override;
    int FieldCount() const override;
    std::string FieldName(int index) const override;
    bool HasField(std::string_view name) const override;
    const Value& Field(std::string_view name) const override;
    const Value& Field(int index) const override;

    void AddNew() override;
    void SetField(std::string_view name, Value value) override;
    void Update() override;
    void Close() override;

private:
    struct Row {
        std::int64_t rowid = 0; // 0: a new row not written yet
        std::vector<Value> values;
        std::vector<bool> changed; // empty for a row read and not changed
        // Written, and to be read back before its values are read: defaults and stored forms
        // show as the database holds them. A row appended and never read is not read back.
        bool readBack = false;
    };

    std::optional<std::size_t> FindField(std::string_view name) const;
    std::size_t FieldIndex(std::string_view name) const;
    const Row& CurrentRow() const;
    Row& CurrentRow();
    // The current row as the database holds it.
    const Row& StoredRow() const;
    bool HasUnwrittenChanges() const;
    void ReadRow(std::int64_t rowid, Row& row);

    sqlite3* db_;
    StatementCache& cache_;
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
    // The statement that wrote the last row, kept for the next row that sets the same fields:
    // rows appended one after another are written by one statement.
    std::unique_ptr<Statement> write_;
    std::vector<std::size_t> writeFields_;
    bool writeInserts_ = false;
};

} // namespace qx::db
