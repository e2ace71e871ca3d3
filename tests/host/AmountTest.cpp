#include "host/Amount.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <stdexcept>

namespace qx {
namespace {

Amount A(std::string_view text) {
    return Amount::Parse(text).value();
}

// Rounding, products and quotients all go half to even, on the value's own sign.
TEST(Amount, RoundsMultipliesAndDividesHalfToEven) {
    EXPECT_EQ(A("0.125").Round(2), A("0.12"));
    EXPECT_EQ(A("0.135").Round(2), A("0.14"));
    EXPECT_EQ(A("-0.125").Round(2), A("-0.12"));
    EXPECT_EQ(A("0.1251").Round(2), A("0.13")); // past the half: up, whatever the parity
    EXPECT_EQ(A("-2.5").Round(0), A("-2"));
    EXPECT_EQ(RoundAmount(A("99.995"), 2), A("100"));
    EXPECT_THROW(A("1").Round(-1), std::invalid_argument);

    EXPECT_EQ(A("0.0001") * A("0.5"), A("0"));
    EXPECT_EQ(A("0.0003") * A("0.5"), A("0.0002"));
    EXPECT_EQ(A("25487.35") * A("2.5") / A("100"), A("637.1838")); // 637.18375
    // The intermediate product needs more than 64 bits: 10^13 x 0.18.
    EXPECT_EQ(Amount::FromInt(10'000'000'000'000) * A("0.18"), Amount::FromInt(1'800'000'000'000));

    EXPECT_EQ(A("10") / A("3"), A("3.3333"));
    EXPECT_EQ(A("2") / A("-3"), A("-0.6667"));
    EXPECT_EQ(A("0.0001") / A("2"), A("0"));
    EXPECT_THROW(A("1") / Amount(), std::domain_error);
}

TEST(Amount, OverflowThrowsInsteadOfWrapping) {
    const Amount big = Amount::FromInt(10'000'000'000'000); // 10^13
    EXPECT_EQ(big * 90, Amount::FromInt(900'000'000'000'000));
    EXPECT_THROW(big * 100, std::overflow_error);
    EXPECT_THROW(big / A("0.001"), std::overflow_error);
    EXPECT_THROW(Amount::FromInt(1'000'000'000'000'000), std::overflow_error);
    const Amount largest = Amount::FromRaw(INT64_MAX);
    EXPECT_THROW(largest + A("0.0001"), std::overflow_error);
    EXPECT_THROW(largest.Round(0), std::overflow_error);
    EXPECT_THROW(TextToAmount("922337203685477.5808"), std::overflow_error);
    EXPECT_EQ(TextToAmount("922337203685477.5807"), largest);
}

TEST(Amount, FromDoubleTakesTheDecimalTheDoubleStandsFor) {
    EXPECT_EQ(Amount::FromDouble(0.1 + 0.2).Raw(), 3000);
    // 0.00015 is stored a little below the half and 0.00025 a little above; both are read
    // as the exact half and go to the even neighbour.
    EXPECT_EQ(Amount::FromDouble(0.00015), A("0.0002"));
    EXPECT_EQ(Amount::FromDouble(0.00025), A("0.0002"));
    EXPECT_EQ(Amount::FromDouble(1234567.891), A("1234567.891"));
    EXPECT_EQ(Amount::FromDouble(1e14), Amount::FromInt(100'000'000'000'000));
    // A column's figures of four decimals come back exactly, on both sides of the sizes read
    // without writing the double out; a fifth decimal of 5 still goes to the even neighbour.
    for (const std::int64_t whole : {0LL, 1LL, 8'589'934'591LL, 8'589'934'593LL})
        for (const std::int64_t raw : {whole * 10000 + 1, whole * 10000 + 4999, -whole * 10000 - 7}) {
            EXPECT_EQ(Amount::FromDouble(static_cast<double>(raw) / 10000).Raw(), raw);
            EXPECT_EQ(Amount::FromDouble((static_cast<double>(raw) + 0.5) / 10000).Raw() % 2, 0)
                << raw;
        }
    EXPECT_THROW(Amount::FromDouble(1e15), std::overflow_error);
    EXPECT_THROW(Amount::FromDouble(std::numeric_limits<double>::infinity()), std::overflow_error);
    EXPECT_THROW(Amount::FromDouble(std::numeric_limits<double>::quiet_NaN()), std::domain_error);
}

TEST(Amount, TypedNumbersAreGroupedTheIndianOrTheWesternWayOrNotAtAll) {
    EXPECT_EQ(A("1,74,000"), Amount::FromInt(174000));
    EXPECT_EQ(A("174,000"), Amount::FromInt(174000));
    EXPECT_EQ(A("12,34,567.50"), A("1234567.5"));
    EXPECT_EQ(A("-1,00,00,000"), Amount::FromInt(-10000000));
    EXPECT_EQ(A("+3"), Amount::FromInt(3));
    EXPECT_EQ(A(".5"), A("0.5"));
    EXPECT_EQ(A("1.50000000"), A("1.5"));
    const std::string howToWrite =
        " is not a number: commas group digits as in 1,74,000 or 174,000, and decimals follow "
        "a point, as in 3.75.";
    for (const char* text : {"12,00", "3,75", "2,3,0,0", ",5", "1,,000", "1,", "123,45,678",
                             "1234,567", "1,234,56", "1.2,5"}) {
        const TypedAmount read = ReadTypedAmount(text);
        EXPECT_FALSE(read.amount) << text;
        EXPECT_EQ(read.refusal, text + howToWrite);
    }
    EXPECT_EQ(ReadTypedAmount("0.00001").refusal, "0.00001 has more than four decimals.");
    EXPECT_EQ(ReadTypedAmount("99999999999999999999").refusal,
              "99999999999999999999 is too large a figure.");
    EXPECT_FALSE(Amount::Parse(""));
    for (const char* text : {"-", ".", "abc", "12abc", " 12", "12 ", "1..2", "--1"}) {
        EXPECT_FALSE(Amount::Parse(text)) << text;
        EXPECT_EQ(ReadTypedAmount(text).refusal, text + std::string(" is not a number.")) << text;
    }
    EXPECT_TRUE(ReadTypedAmount("12.5").refusal.empty());
}

// Reading a cell leniently takes the leading number; a comma out of place ends it.
TEST(Amount, TextToAmountReadsTheLeadingNumber) {
    EXPECT_EQ(TextToAmount("12,00"), A("12"));
    EXPECT_EQ(TextToAmount("2,3,0,0"), A("2"));
    EXPECT_EQ(TextToAmount("12 kg"), A("12"));
    EXPECT_EQ(TextToAmount("kg 12"), Amount());
    EXPECT_EQ(TextToAmount("\t1,04,000.00 Dr"), A("104000"));
    EXPECT_EQ(TextToAmount("-.5"), A("-0.5"));
    EXPECT_EQ(TextToAmount("1.2.3"), A("1.2"));
    EXPECT_EQ(TextToAmount("12.34565"), A("12.3456"));
    EXPECT_EQ(TextToAmount("12.34575"), A("12.3458"));
}

TEST(Amount, FormatGroupsTheIndianWayAndReadsBack) {
    EXPECT_EQ(FormatAmount(A("999"), "c2"), "999.00");
    EXPECT_EQ(FormatAmount(A("1234.5"), "c2"), "1,234.50");
    EXPECT_EQ(FormatAmount(A("123456"), "C2"), "1,23,456.00");
    EXPECT_EQ(FormatAmount(Amount::FromInt(10'000'000'000'000), "c2"), "1,00,00,00,00,00,000.00");
    EXPECT_EQ(FormatAmount(A("-12345678.9"), "c2"), "-1,23,45,678.90");
    EXPECT_EQ(FormatAmount(A("0.125"), "c2"), "0.12");
    EXPECT_EQ(FormatAmount(A("-0.004"), "c2"), "0.00");
    EXPECT_EQ(FormatAmount(A("1234567.5"), "c0"), "12,34,568");
    EXPECT_EQ(FormatAmount(A("-2.5"), "n0"), "-2");
    for (const char* format : {"", "0.00", "c3", "c", "x2", "c20"})
        EXPECT_EQ(FormatAmount(A("1234567.125"), format), "1234567.125") << format;
    EXPECT_EQ(A("1234567.5").ToPlainString(), "1234567.5");
    EXPECT_EQ(A("-0.0001").ToPlainString(), "-0.0001");

    for (const char* text : {"0", "-0.01", "999.99", "1000", "-1234567.5", "9999999999999.99"}) {
        const Amount amount = A(text);
        EXPECT_EQ(TextToAmount(FormatAmount(amount, "c2")), amount) << text;
        EXPECT_EQ(Amount::Parse(FormatAmount(amount, "n2")), amount) << text;
        EXPECT_EQ(TextToAmount(amount.ToPlainString()), amount) << text;
    }
}

} // namespace
} // namespace qx
