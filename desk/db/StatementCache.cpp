#include "StatementCache.h"

#include <sqlite3.h>

namespace qx::db {

sqlite3_stmt* StatementCache::Take(std::string_view sql) {
    auto found = byText_.find(sql);
    if (found == byText_.end())
        return nullptr;
    auto kept = found->second;
    byText_.erase(found);
    sqlite3_stmt* statement = kept->second;
    kept_.erase(kept);
    return statement;
}

void StatementCache::Give(std::string sql, sqlite3_stmt* statement) {
    sqlite3_reset(statement);
    sqlite3_clear_bindings(statement);
    kept_.emplace_back(std::move(sql), statement);
    auto kept = std::prev(kept_.end());
    byText_.emplace(kept->first, kept);
    if (kept_.size() <= capacity_)
        return;
    auto oldest = kept_.begin();
    for (auto [first, last] = byText_.equal_range(oldest->first); first != last; ++first)
        if (first->second == oldest) {
            byText_.erase(first);
            break;
        }
    sqlite3_finalize(oldest->second);
    kept_.erase(oldest);
}

void StatementCache::Clear() {
    for (auto& [sql, statement] : kept_)
        sqlite3_finalize(statement);
    byText_.clear();
    kept_.clear();
}

} // namespace qx::db
