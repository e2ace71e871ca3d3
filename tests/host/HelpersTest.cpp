#include "host/AmountWords.h"
#include "host/CompanyDb.h"
#include "host/PrintJob.h"

#include <gtest/gtest.h>

#include <utility>

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

// The words under a paper's total, Indian grouping: a wrong group name or a lost paisa is a
// wrong paper handed to a farmer.
TEST(AmountInWords, IndianGroupingWithPaise) {
    const std::pair<const char*, const char*> table[] = {
        {"0.50", "Fifty Paise Only"},
        {"0", "Rupees Zero Only"},
        {"1,00,000", "Rupees One Lakh Only"},
        {"1,97,303", "Rupees One Lakh Ninety Seven Thousand Three Hundred Three Only"},
        {"1,97,303.50", "Rupees One Lakh Ninety Seven Thousand Three Hundred Three and Fifty Paise Only"},
        {"12,34,56,789.75", "Rupees Twelve Crore Thirty Four Lakh Fifty Six Thousand Seven Hundred "
                            "Eighty Nine and Seventy Five Paise Only"},
        {"1,00,00,000", "Rupees One Crore Only"},
        {"12,00,00,00,000", "Rupees One Thousand Two Hundred Crore Only"},
        {"19.999", "Rupees Twenty Only"},
        {"-1,010.05", "Minus Rupees One Thousand Ten and Five Paise Only"},
    };
    for (const auto& [figure, words] : table)
        EXPECT_EQ(AmountInWords(*Amount::Parse(figure)), words) << figure;
}

} // namespace
} // namespace qx
