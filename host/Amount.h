#pragma once
// Money, rates and quantities of the host: fixed point with four decimals in a 64-bit
// integer (the host's currency type).
//
// What is exact: construction from text or whole numbers, addition, subtraction,
// comparison, multiplication by a whole number.
// What rounds: multiplying or dividing two amounts gives eight or more decimals and is
// rounded back to four, half to even; Round(n) rounds to n decimals, half to even.
// Where double is allowed: only FromDouble (values read from a REAL column or a rule that
// asks for double precision) and ToDouble; FromDouble rounds half to even to four places.
// Overflow of the 64-bit range throws std::overflow_error; division by zero throws
// std::domain_error. Nothing rounds silently anywhere else.
//
// Text: a number is written with an optional sign, its whole part grouped by commas the
// Indian way (12,34,567) or the Western way (1,234,567) or not at all, and an optional point
// with decimals. Commas anywhere else do not group: "12,00" is not 1200.

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qx {

class Amount {
public:
    static constexpr std::int64_t kScale = 10000;

    constexpr Amount() = default;
    static constexpr Amount FromRaw(std::int64_t raw) { return Amount(raw); }
    static Amount FromInt(std::int64_t whole);
    static Amount FromDouble(double value);
    // The whole text as a number ("-12.5", "1,04,000.00"), exactly; nullopt when it is not
    // one this type holds (ReadTypedAmount says why).
    static std::optional<Amount> Parse(std::string_view text);

    constexpr std::int64_t Raw() const { return raw_; }
    double ToDouble() const { return static_cast<double>(raw_) / kScale; }
    // Whole part, truncated toward zero.
    std::int64_t WholePart() const { return raw_ / kScale; }
    bool IsWhole() const { return raw_ % kScale == 0; }
    bool IsZero() const { return raw_ == 0; }

    Amount Round(int decimals) const;
    Amount Abs() const { return raw_ < 0 ? Amount(-raw_) : *this; }

    // Plain decimal text without grouping and without trailing zeros: "10", "-0.6", "52.25".
    std::string ToPlainString() const;

    Amount operator-() const { return Amount(-raw_); }
    Amount operator+(Amount other) const;
    Amount operator-(Amount other) const;
    Amount operator*(Amount other) const;
    Amount operator/(Amount other) const;
    Amount operator*(std::int64_t factor) const;
    Amount& operator+=(Amount other) { return *this = *this + other; }
    Amount& operator-=(Amount other) { return *this = *this - other; }

    constexpr auto operator<=>(const Amount&) const = default;

private:
    constexpr explicit Amount(std::int64_t raw) : raw_(raw) {}
    std::int64_t raw_ = 0;
};

// What a user typed into a cell or a box, read exactly as an amount; or, when it is not one,
// why, as the user is to be told ("0.00001 has more than four decimals.").
struct TypedAmount {
    std::optional<Amount> amount;
    std::string refusal; // empty when there is an amount
};
TypedAmount ReadTypedAmount(std::string_view text);

// The leading number of a text, as the host reads a cell or an input box: blanks before it
// are skipped, grouping commas inside it are read as grouping, anything after it is dropped
// (a comma out of place ends the number); a text that does not start with a number gives 0
// ("0012" -> 12, "12 kg" -> 12, "12,00" -> 12, "abc" -> 0).
Amount TextToAmount(std::string_view text);

// How many whole times the divisor goes into the dividend and what is left over, exactly:
// 1000 kg fill 26 bags of 37.5 kg with 25 kg left. The count is truncated toward zero and
// the remainder has the dividend's sign. A zero divisor throws std::domain_error.
struct WholeDivision {
    std::int64_t count = 0;
    Amount remainder;
};
WholeDivision DivideWhole(Amount dividend, Amount divisor);

// Half to even to the given number of decimals (0 to 4).
Amount RoundAmount(Amount value, int decimals);

// Formats "c2"/"C2" and "n2"/"N2": two decimals with Indian grouping (12,34,567.00);
// "c0"/"C0" and "n0"/"N0": no decimals, grouped. Rounds half to even. Any other format
// text: plain decimal. A negative amount starts with '-'.
std::string FormatAmount(Amount value, std::string_view format);

} // namespace qx
