#include "SqliteStatement.h"

#include "SqliteErrors.h"

#include <sqlite3.h>

#include <cstdint>
#include <type_traits>

namespace qx::db {

Statement::Statement(sqlite3* db, std::string_view sql, std::string_view shownSql)
    : db_(db), shownSql_(shownSql.empty() ? sql : shownSql) {
    const char* tail = nullptr;
    if (sqlite3_prepare_v2(db, sql.data(), static_cast<int>(sql.size()), &stmt_, &tail) !=
        SQLITE_OK)
        Fail();
    rest_ = sql.substr(static_cast<std::size_t>(tail - sql.data()));
}

Statement::~Statement() {
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

Value Statement::Column(int index) const {
    const int stored = sqlite3_column_type(stmt_, index);
    if (stored == SQLITE_NULL)
        return {};
    const SqlTypeKind kind = ColumnKind(index);
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
