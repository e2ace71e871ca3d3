#pragma once
// SQLite sums REAL values in binary floating point: the J-Form quantities 10.3, -4.1 and -6.2
// add up to 8.9e-16, not 0, and "HAVING SUM(a.Quantity*a.JFactor)<>0" would keep a settled
// J-Form pending for ever. The company database replaces SUM with one that adds decimal
// values exactly, as a database with true decimal columns does.

struct sqlite3;

namespace qx::db {

// Sums REAL terms in millionths (exact for every value of a decimal column, which holds four
// decimals, and for products of two of them to six); sums of INTEGER terms stay integers.
// Usable as an aggregate and as a window function, like the built-in SUM it replaces.
void RegisterDecimalSum(sqlite3* db);

} // namespace qx::db
