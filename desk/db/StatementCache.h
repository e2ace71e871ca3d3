#pragma once
// Prepared statements of one SQLite connection kept by their text, so that a statement run
// again (a ledger row written, a look-up by its parameters) is not prepared again. A statement
// is taken out while it runs and given back when it is done, so that two statements of one
// text can run at once; the least recently given back goes when the cache is full.

#include <cstddef>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

struct sqlite3_stmt;

namespace qx::db {

class StatementCache {
public:
    explicit StatementCache(std::size_t capacity = 200) : capacity_(capacity) {}
    // Finalizes every statement kept: it goes before its connection is closed.
    ~StatementCache() { Clear(); }
    StatementCache(const StatementCache&) = delete;
    StatementCache& operator=(const StatementCache&) = delete;

    // A kept statement of that text, now the caller's; null when none is kept.
    sqlite3_stmt* Take(std::string_view sql);
    // Keeps a statement the caller is done with, reset and with no values bound.
    void Give(std::string sql, sqlite3_stmt* statement);
    void Clear();

private:
    std::size_t capacity_;
    // Least recently given back first.
    std::list<std::pair<std::string, sqlite3_stmt*>> kept_;
    std::unordered_multimap<std::string_view, decltype(kept_)::iterator> byText_;
};

} // namespace qx::db
