#include "host/CompanyDb.h"
#include "host/PrintJob.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

TEST(PrintJob, MarksMatchWholeWordsInAnyCase) {
    EXPECT_TRUE(HasMark("*hline1*totals*", "totals"));
    EXPECT_FALSE(HasMark("*hline1*totals*", "total"));
    EXPECT_FALSE(HasMark("*hline1*totals*", "line1"));
    EXPECT_TRUE(HasMark("*totals*totalreset*", "TotalReset"));
    EXPECT_FALSE(HasMark("*bhline1*", "hline1"));
    EXPECT_TRUE(HasMark("*blanklineafter*headingfonts*", "*headingfonts*"));
    EXPECT_TRUE(HasMark("totals", "totals"));
    EXPECT_FALSE(HasMark("", "totals"));
    EXPECT_FALSE(HasMark("*totals*", ""));
    EXPECT_FALSE(HasMark("**", "*"));

    const PrintRow row{.cells = {"Sub Totals (Market)"}, .marks = "*totals*totalreset*hline1*"};
    EXPECT_TRUE(row.Has("totalreset"));
    EXPECT_FALSE(row.Has("blanklinebefore"));
}

TEST(SqlQuote, DoublesQuotesAndKeepsEverythingElse) {
    EXPECT_EQ(SqlQuote("D'SOUZA"), "'D''SOUZA'");
    EXPECT_EQ(SqlQuote("''"), "''''''");
    EXPECT_EQ(SqlQuote(""), "''");
    EXPECT_EQ(SqlQuote("राम's"), "'राम''s'");
}

} // namespace
} // namespace qx
