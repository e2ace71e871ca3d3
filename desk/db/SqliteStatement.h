#pragma once
// One prepared SQLite statement, and the rules by which values cross into and out of SQLite:
// how a Value is bound and how a column is read back as a Value.

#include "SqlAdapter.h"

#include "host/Value.h"

#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace qx::db {

class StatementCache;

class Statement {
public:
    // What the text given is: SQLite's own, or a module's, adapted (AdaptSql) before it is
    // prepared.
    enum class Text { Adapted, Module };

    // Prepares the first statement of sql. Errors throw DbError naming shownSql, the text as
    // its author wrote it (sql itself when empty). With a cache, a statement of the same text
    // kept there is taken instead of adapted and prepared again, and a single statement is
    // given back to it when done.
    Statement(sqlite3* db, std::string_view sql, std::string_view shownSql = {},
              StatementCache* cache = nullptr, Text text = Text::Adapted);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    // True when sql held only blanks or comments.
    bool Empty() const { return stmt_ == nullptr; }
    // The text after the prepared statement.
    std::string_view Rest() const { return rest_; }

    // Binds parameter index (from 1). A value bound for a column of known kind is stored in
    // that column's form: an Amount as a whole number in an integer column, as plain text in
    // a text column, as a real number otherwise; a Date always as ISO text.
    void Bind(int index, const Value& value, SqlTypeKind column = SqlTypeKind::Other);
    // Runs to the next row; false when the statement is done.
    bool Step();
    // Ready to run again, with no values bound.
    void Reset();
    // True when running the statement changes nothing in the company file, as SQLite judges it.
    bool ReadOnly() const;

    int ColumnCount() const;
    std::string ColumnName(int index) const;
    // The declared type of the column behind a result column; Other for expressions.
    SqlTypeKind ColumnKind(int index) const;
    // By the declared type when there is one: integers as int64, decimal columns as Amount,
    // ISO text in a date column as Date; otherwise by what SQLite holds (int64, double, text).
    Value Column(int index) const { return Column(index, ColumnKind(index)); }
    // The same, for a caller that knows the column's kind already.
    Value Column(int index, SqlTypeKind kind) const;

private:
    [[noreturn]] void Fail() const;

    sqlite3* db_;
    sqlite3_stmt* stmt_ = nullptr;
    std::string adapted_; // a module's text as it was prepared
    std::string_view rest_;
    std::string shownSql_;
    // Where the statement goes back to, under its text; null when it is finalized.
    StatementCache* cache_ = nullptr;
    std::string cacheKey_;
};

} // namespace qx::db
