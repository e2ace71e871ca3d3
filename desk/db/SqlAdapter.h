#pragma once
// The module writes its SQL in an older desktop dialect: rows limited with "SELECT FIRST n",
// DECIMAL and CURRENCY columns, Access and ODBC date literals, NOT NULL columns added to
// tables that have rows. AdaptSql turns that text into SQLite's; every statement the company
// database runs goes through it. Nothing inside a quoted string or a quoted name is rewritten.

#include <optional>
#include <string>
#include <string_view>

namespace qx::db {

std::string AdaptSql(std::string_view sql);

// What a declared column type holds, judged the way the host's SQL types are named:
// "Int", "Decimal(8,4)", "VarChar(60)", "Date"...
enum class SqlTypeKind { Integer, Decimal, Date, Text, Other };
SqlTypeKind ClassifySqlType(std::string_view declaredType);

// "SELECT * FROM T [WHERE ...] [ORDER BY ...] [LIMIT n]", already adapted, is the one form of
// query whose rows can be written back. Gives T and the same query with the rowid selected
// first, so that each row can be found again; nullopt for any other statement.
struct WritableQuery {
    std::string table;
    std::string sqlWithRowid;
};
std::optional<WritableQuery> AsWritableQuery(std::string_view adaptedSql);

} // namespace qx::db
