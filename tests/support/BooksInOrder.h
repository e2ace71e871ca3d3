#pragma once
// What every test that writes to a company ends with: the books it leaves are proven as
// `qx check` proves them.

#include "desk/documents/BooksCheck.h"

#include <gmock/gmock.h>

namespace qx::test {

inline void ExpectBooksInOrder(desk::DeskApp& app) {
    if (!app.DeskSession().HasCompany())
        return;
    EXPECT_THAT(desk::CheckBooks(app).faults, testing::IsEmpty()) << "the books the test left";
}

} // namespace qx::test
