#include "SqliteStatement.h"

#include "SqliteErrors.h"
#include "StatementCache.h"

#include <sqlite3.h>

#include <cstdint>
#include <type_traits>

namespace qx::db {

namespace {

bool IsBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n;") == std::string_view::npos;
}

} // namespace

Statement::Statement(sqlite3* db, std::string_view sql, std::string_view shownSql,
                     StatementCache* cache, Text text)
    : db_(db), shownSql_(shownSql.empty() ? sql : shownSql) {
    if (cache)
        if ((stmt_ = cache->Take(sql))) {
            cache_ = cache;
            cacheKey_ = sql;
            return; // a kept statement is its whole text: nothing rests
        }
    std::string_view prepared = sql;
    if (text == Text::Module)
        prepared = adapted_ = AdaptSql(sql);
    const char* tail = nullptr;
    if (sqlite3_prepare_v2(db, prepared.data(), static_cast<int>(prepared.size()), &stmt_,
                           &tail) != SQLITE_OK)
        Fail();
    rest_ = prepared.substr(static_cast<std::size_t>(tail - prepared.data()));
    // Only a statement that is the whole text can stand for it.
    if (cache && stmt_ && IsBlank(rest_)) {
        cache_ = cache;
        cacheKey_ = sql;
    }
}

Statement::~Statement() {
    if (cache_)
        cache_->Give(std::move(cacheKey_), stmt_);
    else
        sqlite3_finalize(stmt_);
}

void Statement::Fail() const {
    throw CompanyError(db_, shownSql_);
}

void Statement::Bind(int index, const Value& value, SqlTypeKind column) {
    auto bindText = [&](const std::string& text) {
        return sqlite3_bind_text(stmt_, index, text.data(), static_cast<int>(text.size()),
                                 SQLITE_TRANSIENT);
    };
    const int rc = std::visit(
        [&](const auto& v) -> int {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, std::monostate>) {
                return sqlite3_bind_null(stmt_, index);
            } else if constexpr (std::is_same_v<T, bool>) {
                return sqlite3_bind_int(stmt_, index, v ? 1 : 0);
            } else if constexpr (std::is_same_v<T, std::int64_t>) {
                return sqlite3_bind_int64(stmt_, index, v);
            } else if constexpr (std::is_same_v<T, double>) {
                return sqlite3_bind_double(stmt_, index, v);
            } else if constexpr (std::is_same_v<T, Amount>) {
                if (column == SqlTypeKind::Integer && v.IsWhole())
                    return sqlite3_bind_int64(stmt_, index, v.WholePart());
                if (column == SqlTypeKind::Text)
                    return bindText(v.ToPlainString());
                return sqlite3_bind_double(stmt_, index, v.ToDouble());
            } else if constexpr (std::is_same_v<T, Date>) {
                return bindText(v.ToIso());
            } else {
                return bindText(v);
            }
        },
        value.Raw());
    if (rc != SQLITE_OK)
        Fail();
}

bool Statement::Step() {
    const int rc = sqlite3_step(stmt_);
    if (rc == SQLITE_ROW)
        return true;
    if (rc == SQLITE_DONE)
        return false;
    Fail();
}

void Statement::Reset() {
    sqlite3_reset(stmt_);
    sqlite3_clear_bindings(stmt_);
}

bool Statement::ReadOnly() const {
    return sqlite3_stmt_readonly(stmt_) != 0;
}

int Statement::ColumnCount() const {
    return sqlite3_column_count(stmt_);
}

std::string Statement::ColumnName(int index) const {
    const char* name = sqlite3_column_name(stmt_, index);
    return name != nullptr ? name : "";
}

SqlTypeKind Statement::ColumnKind(int index) const {
    const char* declared = sqlite3_column_decltype(stmt_, index);
    return declared != nullptr ? ClassifySqlType(declared) : SqlTypeKind::Other;
}

Value Statement::Column(int index, SqlTypeKind kind) const {
    const int stored = sqlite3_column_type(stmt_, index);
    if (stored == SQLITE_NULL)
        return {};
    if (stored == SQLITE_INTEGER) {
        const std::int64_t number = sqlite3_column_int64(stmt_, index);
        if (kind == SqlTypeKind::Decimal)
            return Amount::FromInt(number);
        return Value(number);
    }
    if (stored == SQLITE_FLOAT) {
        const double number = sqlite3_column_double(stmt_, index);
        if (kind == SqlTypeKind::Decimal)
            return Amount::FromDouble(number);
        return number;
    }
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(stmt_, index));
    std::string text(bytes, static_cast<std::size_t>(sqlite3_column_bytes(stmt_, index)));
    if (kind == SqlTypeKind::Date)
        if (auto date = Date::ParseIso(text))
            return *date;
    return text;
}

} // namespace qx::db
