#include "DecimalSum.h"

#include "host/CompanyDb.h"

#include <sqlite3.h>

#include <cmath>
#include <cstdint>

namespace qx::db {
namespace {

constexpr double kMicros = 1e6;
// Beyond this a REAL term no longer fits the fixed-point sum (about 9.2 million crore).
constexpr double kLargestScaled = 9.2e18;

struct SumState {
    std::int64_t terms = 0; // non-null terms in the sum (the window removes them again)
    std::int64_t realTerms = 0;
    std::int64_t whole = 0;  // INTEGER terms
    std::int64_t micros = 0; // REAL terms, in millionths
    double plain = 0;        // every term in floating point, used once fixed point overflows
    bool overflow = false;
};

// Adds the term (sign +1) or takes it out again (sign -1, a row leaving a window frame).
void AddTerm(SumState& state, sqlite3_value* value, int sign) {
    const int type = sqlite3_value_numeric_type(value);
    if (type == SQLITE_NULL)
        return;
    auto addChecked = [&](std::int64_t& sum, std::int64_t term) {
        state.overflow = state.overflow || (sign > 0 ? __builtin_add_overflow(sum, term, &sum)
                                                     : __builtin_sub_overflow(sum, term, &sum));
    };
    state.terms += sign;
    state.plain += sign * sqlite3_value_double(value);
    if (type == SQLITE_INTEGER) {
        addChecked(state.whole, sqlite3_value_int64(value));
        return;
    }
    state.realTerms += sign;
    const double scaled = std::round(sqlite3_value_double(value) * kMicros);
    if (std::fabs(scaled) < kLargestScaled)
        addChecked(state.micros, static_cast<std::int64_t>(scaled));
    else
        state.overflow = true;
}

void Step(sqlite3_context* context, int, sqlite3_value** args) {
    if (auto* state = static_cast<SumState*>(sqlite3_aggregate_context(context, sizeof(SumState))))
        AddTerm(*state, args[0], +1);
}

void Inverse(sqlite3_context* context, int, sqlite3_value** args) {
    if (auto* state = static_cast<SumState*>(sqlite3_aggregate_context(context, sizeof(SumState))))
        AddTerm(*state, args[0], -1);
}

void Result(sqlite3_context* context) {
    const auto* state = static_cast<SumState*>(sqlite3_aggregate_context(context, 0));
    if (state == nullptr || state->terms == 0) {
        sqlite3_result_null(context);
        return;
    }
    if (state->realTerms == 0) {
        if (state->overflow)
            sqlite3_result_error(context, "integer overflow", -1);
        else
            sqlite3_result_int64(context, state->whole);
        return;
    }
    std::int64_t total = 0;
    if (state->overflow ||
        __builtin_mul_overflow(state->whole, static_cast<std::int64_t>(kMicros), &total) ||
        __builtin_add_overflow(total, state->micros, &total)) {
        sqlite3_result_double(context, state->plain);
        return;
    }
    // One division of an exact integer: the double nearest the decimal total.
    sqlite3_result_double(context, static_cast<double>(total) / kMicros);
}

} // namespace

void RegisterDecimalSum(sqlite3* db) {
    const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    if (sqlite3_create_window_function(db, "sum", 1, flags, nullptr, Step, Result, Result, Inverse,
                                       nullptr) != SQLITE_OK)
        throw DbError(std::string("cannot install the decimal SUM: ") + sqlite3_errmsg(db));
}

} // namespace qx::db
