#include "SqliteErrors.h"

#include <sqlite3.h>

#include <cerrno>
#include <cstring>

namespace qx::db {
namespace {

// The table and columns a unique index named in SQLite's "UNIQUE constraint failed: T.A, T.B"
// (or "index 'NAME'"), so that the user is told what is doubled.
std::string DoubledKey(std::string_view sqliteMessage) {
    const auto colon = sqliteMessage.find(": ");
    return colon == std::string_view::npos ? std::string()
                                           : std::string(sqliteMessage.substr(colon + 2));
}

} // namespace

std::string ReadOnlyMessage(std::string_view company) {
    return std::string(company) + " is read-only: nothing can be saved to it.";
}

DbError CompanyError(sqlite3* db, std::string_view statement, std::string company) {
    if (company.empty()) {
        const char* file = db != nullptr ? sqlite3_db_filename(db, "main") : nullptr;
        company = file != nullptr && *file != '\0' ? file : "the company";
    }
    const int code = db != nullptr ? sqlite3_extended_errcode(db) : SQLITE_NOMEM;
    const int systemError = db != nullptr ? sqlite3_system_errno(db) : 0;
    const std::string sqliteMessage = db != nullptr ? sqlite3_errmsg(db) : "out of memory";

    const int primary = code & 0xff;
    // The system's error is SQLite's last one, perhaps of a step it recovered from: it tells
    // only what went wrong in reading or writing the files.
    if (primary == SQLITE_IOERR || primary == SQLITE_CANTOPEN || primary == SQLITE_FULL) {
        if (systemError == ENOSPC || systemError == EDQUOT || primary == SQLITE_FULL)
            return DbError("The disk holding " + company +
                           " is full: free some space and try again.");
        if (systemError == EACCES || systemError == EPERM)
            return DbError("You have no permission to read " + company + ".");
        if (systemError == EROFS)
            return DbError(ReadOnlyMessage(company));
    }
    switch (primary) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return DbError("Another program is saving to " + company +
                       ": try again in a moment.");
    case SQLITE_READONLY:
        return DbError(ReadOnlyMessage(company));
    case SQLITE_NOTADB:
        return DbError(company + " is not a QX Desk company file");
    case SQLITE_CORRUPT:
        return DbError(company + " is damaged: restore it from a backup copy.");
    case SQLITE_CANTOPEN:
    case SQLITE_IOERR:
        return DbError(company + " cannot be read or written (" +
                       (systemError != 0 ? std::strerror(systemError) : sqliteMessage) + ").");
    case SQLITE_CONSTRAINT:
        if (code == SQLITE_CONSTRAINT_UNIQUE || code == SQLITE_CONSTRAINT_PRIMARYKEY)
            return DbError("The company already holds a record with the same " +
                               DoubledKey(sqliteMessage) + ": nothing was saved.",
                           DbProblem::Duplicate);
        break;
    default:
        break;
    }
    return DbError(sqliteMessage + " in: " + std::string(statement));
}

} // namespace qx::db
