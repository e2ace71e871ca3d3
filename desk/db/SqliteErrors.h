#pragma once
// What a failure of SQLite means for a company, said the way its user needs to hear it: that
// another program is saving to it, that it is read-only, that the disk is full, that the file
// is damaged or is no company at all. Only a fault in a statement itself (a wrong column, say)
// keeps SQLite's own text, with the statement.

#include "host/CompanyDb.h"

#include <string>
#include <string_view>

struct sqlite3;

namespace qx::db {

// The error of the last call on db that failed. company names the file in messages; empty:
// the file db has open.
DbError CompanyError(sqlite3* db, std::string_view statement, std::string company = {});

// The plain words of the refusals the company database gives itself.
std::string ReadOnlyMessage(std::string_view company);

} // namespace qx::db
