#include "CompanyDb.h"

namespace qx {

// Only the quote is special inside an SQL string; every other byte, UTF-8 included, stays.
std::string SqlQuote(std::string_view text) {
    std::string quoted = "'";
    for (const char c : text) {
        if (c == '\'') {
            quoted += '\'';
        }
        quoted += c;
    }
    quoted += '\'';
    return quoted;
}

Transaction::~Transaction() {
    if (done_) return;
    try {
        db_.Rollback();
    } catch (...) {
        // nothing more can be done while leaving the scope
    }
}

void Transaction::Commit() {
    db_.Commit();
    done_ = true;
}

} // namespace qx
