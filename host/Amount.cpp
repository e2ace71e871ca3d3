#include "Amount.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <vector>

namespace qx {

namespace {

// Products of two amounts need up to 126 bits before they are rounded back to four decimals.
__extension__ using Int128 = __int128;

constexpr int kDecimals = 4;

Int128 PowerOfTen(int exponent) {
    Int128 power = 1;
    for (int i = 0; i < exponent; ++i) {
        power *= 10;
    }
    return power;
}

// The quotient rounded half to even: the rule for every rounding of money in the host.
Int128 DivideHalfEven(Int128 numerator, Int128 denominator) {
    Int128 quotient = numerator / denominator;
    const Int128 remainder = numerator % denominator;
    if (remainder == 0) {
        return quotient;
    }
    const Int128 twiceRemainder = 2 * (remainder < 0 ? -remainder : remainder);
    const Int128 divisor = denominator < 0 ? -denominator : denominator;
    if (twiceRemainder > divisor || (twiceRemainder == divisor && quotient % 2 != 0)) {
        quotient += (numerator < 0) == (denominator < 0) ? 1 : -1;
    }
    return quotient;
}

// The range is kept symmetric so that negating or taking the magnitude never overflows.
std::int64_t Narrow(Int128 raw) {
    constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
    if (raw > kMax || raw < -kMax) {
        throw std::overflow_error("amount out of range");
    }
    return static_cast<std::int64_t>(raw);
}

std::uint64_t Magnitude(std::int64_t raw) {
    return raw < 0 ? 0 - static_cast<std::uint64_t>(raw) : static_cast<std::uint64_t>(raw);
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// A number as written: value = digits x 10^exponent.
struct WrittenNumber {
    bool negative = false;
    std::string digits;
    int exponent = 0;
};

struct RawValue {
    std::int64_t raw = 0;
    bool exact = true; // false when digits beyond the fourth decimal were rounded away
};

// Commas group a whole part the Indian way (a first group of one or two digits, then twos, the
// last three: 12,34,567) or the Western way (a first group of one to three, then threes).
bool GroupedExactly(std::string_view whole) {
    std::vector<std::size_t> groups;
    for (std::size_t start = 0;;) {
        const std::size_t comma = whole.find(',', start);
        groups.push_back((comma == std::string_view::npos ? whole.size() : comma) - start);
        if (comma == std::string_view::npos) {
            break;
        }
        start = comma + 1;
    }
    if (groups.size() == 1) {
        return true;
    }
    const auto middleOf = [&](std::size_t size) {
        return std::all_of(groups.begin() + 1, groups.end() - 1,
                           [size](std::size_t group) { return group == size; });
    };
    const bool lastOfThree = groups.back() == 3;
    const bool western = groups.front() <= 3 && middleOf(3) && lastOfThree;
    const bool indian = groups.front() <= 2 && middleOf(2) && lastOfThree;
    return western || indian;
}

// The number at the start of the text: an optional sign, digits whose commas group them
// exactly (a comma counts only between two digits, and one out of place ends the number), an
// optional point and decimals. Sets end to just past the number; nullopt when the text does
// not start with a digit or a point followed by one.
std::optional<WrittenNumber> ReadNumber(std::string_view text, std::size_t& end) {
    WrittenNumber number;
    std::size_t pos = 0;
    if (pos < text.size() && (text[pos] == '-' || text[pos] == '+')) {
        number.negative = text[pos] == '-';
        ++pos;
    }
    const std::size_t wholeStart = pos;
    const auto isGroupingComma = [&](std::size_t at) {
        return text[at] == ',' && at > wholeStart && IsDigit(text[at - 1]) &&
               at + 1 < text.size() && IsDigit(text[at + 1]);
    };
    std::size_t wholeEnd = pos;
    while (wholeEnd < text.size() && (IsDigit(text[wholeEnd]) || isGroupingComma(wholeEnd))) {
        ++wholeEnd;
    }
    std::string_view whole = text.substr(pos, wholeEnd - pos);
    if (!GroupedExactly(whole)) {
        whole = whole.substr(0, whole.find(','));
    }
    for (char c : whole) {
        if (c != ',') {
            number.digits += c;
        }
    }
    pos += whole.size();
    if (pos + 1 < text.size() && text[pos] == '.' && IsDigit(text[pos + 1])) {
        for (++pos; pos < text.size() && IsDigit(text[pos]); ++pos) {
            number.digits += text[pos];
            --number.exponent;
        }
    } else if (pos < text.size() && text[pos] == '.' && !number.digits.empty()) {
        ++pos; // "5." is five
    }
    if (number.digits.empty()) {
        return std::nullopt;
    }
    end = pos;
    return number;
}

RawValue ToRaw(const WrittenNumber& number) {
    std::string_view digits = number.digits;
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    // Digits that stand at or above the fourth decimal; the others are rounded away.
    const auto keptCount = static_cast<std::ptrdiff_t>(digits.size()) + number.exponent + kDecimals;
    if (keptCount > std::numeric_limits<std::int64_t>::digits10 + 1) {
        throw std::overflow_error("amount out of range");
    }
    Int128 kept = 0;
    for (std::ptrdiff_t i = 0; i < keptCount; ++i) {
        const auto index = static_cast<std::size_t>(i);
        kept = kept * 10 + (index < digits.size() ? digits[index] - '0' : 0);
    }
    RawValue value;
    if (keptCount < static_cast<std::ptrdiff_t>(digits.size())) {
        const std::string_view dropped =
            digits.substr(static_cast<std::size_t>(std::max<std::ptrdiff_t>(keptCount, 0)));
        value.exact = dropped.find_first_not_of('0') == std::string_view::npos;
        // With keptCount below zero, zeros stand between the point and the dropped digits:
        // less than half a unit.
        if (keptCount >= 0) {
            const bool aboveHalf = dropped.find_first_not_of('0', 1) != std::string_view::npos;
            if (dropped[0] > '5' || (dropped[0] == '5' && (aboveHalf || kept % 2 != 0))) {
                ++kept;
            }
        }
    }
    value.raw = Narrow(number.negative ? -kept : kept);
    return value;
}

// "c2", "N0"... : the number of decimals of a grouped format; nullopt for any other text.
std::optional<int> GroupedFormatDecimals(std::string_view format) {
    if (format.size() != 2 || std::string_view("cCnN").find(format[0]) == std::string_view::npos) {
        return std::nullopt;
    }
    if (format[1] == '0') {
        return 0;
    }
    if (format[1] == '2') {
        return 2;
    }
    return std::nullopt;
}

// Indian grouping: the last three digits, then groups of two (1,00,00,000).
std::string GroupIndian(std::string_view digits) {
    const std::size_t headLength = digits.size() > 3 ? digits.size() - 3 : 0;
    std::string grouped;
    for (std::size_t i = 0; i < headLength; ++i) {
        if (i > 0 && (headLength - i) % 2 == 0) {
            grouped += ',';
        }
        grouped += digits[i];
    }
    if (headLength > 0) {
        grouped += ',';
    }
    grouped += digits.substr(headLength);
    return grouped;
}

// The four decimals of a raw magnitude, "0500" for .05.
std::string FractionDigits(std::uint64_t magnitude) {
    const std::string padded = std::to_string(magnitude % Amount::kScale + Amount::kScale);
    return padded.substr(1);
}

} // namespace

Amount Amount::FromInt(std::int64_t whole) {
    return Amount(Narrow(Int128(whole) * kScale));
}

Amount Amount::FromDouble(double value) {
    if (std::isnan(value)) {
        throw std::domain_error("amount from a value that is not a number");
    }
    if (std::isinf(value)) {
        throw std::overflow_error("amount out of range");
    }
    // A value of at most four decimals, as a decimal column holds, is that decimal when it
    // reads back as the double itself: below 2^33 a double's neighbours lie closer than a
    // ten-thousandth, so no other decimal of four places reads back as it. Read so without
    // writing it out, a report's every figure is cheap.
    if (std::abs(value) < 0x1p33) {
        const double raw = std::nearbyint(value * kScale);
        if (raw / kScale == value) {
            return Amount(static_cast<std::int64_t>(raw));
        }
    }
    // Round the shortest decimal that reads back as this double, which is the value that was
    // written, not its binary neighbour: 0.00015 is stored a hair below the half and must
    // still round as the half does.
    char buffer[32];
    const auto written =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific);
    const std::string_view text(buffer, static_cast<std::size_t>(written.ptr - buffer));
    std::size_t mantissaEnd = 0;
    WrittenNumber number = *ReadNumber(text, mantissaEnd);
    int exponent = 0;
    const char* exponentStart = buffer + mantissaEnd + 1; // past the 'e'
    if (*exponentStart == '+') {
        ++exponentStart; // from_chars takes only a minus sign
    }
    std::from_chars(exponentStart, written.ptr, exponent); // to_chars wrote a valid exponent
    number.exponent += exponent;
    return Amount(ToRaw(number).raw);
}

std::optional<Amount> Amount::Parse(std::string_view text) {
    return ReadTypedAmount(text).amount;
}

Amount Amount::Round(int decimals) const {
    if (decimals < 0) {
        throw std::invalid_argument("rounding to a negative number of decimals");
    }
    if (decimals >= kDecimals) {
        return *this;
    }
    const Int128 unit = PowerOfTen(kDecimals - decimals);
    return Amount(Narrow(DivideHalfEven(raw_, unit) * unit));
}

std::string Amount::ToPlainString() const {
    const std::uint64_t magnitude = Magnitude(raw_);
    std::string text = raw_ < 0 ? "-" : "";
    text += std::to_string(magnitude / kScale);
    std::string fraction = FractionDigits(magnitude);
    fraction.erase(fraction.find_last_not_of('0') + 1);
    if (!fraction.empty()) {
        text += '.';
        text += fraction;
    }
    return text;
}

Amount Amount::operator+(Amount other) const {
    return Amount(Narrow(Int128(raw_) + other.raw_));
}

Amount Amount::operator-(Amount other) const {
    return Amount(Narrow(Int128(raw_) - other.raw_));
}

Amount Amount::operator*(Amount other) const {
    return Amount(Narrow(DivideHalfEven(Int128(raw_) * other.raw_, kScale)));
}

Amount Amount::operator/(Amount other) const {
    if (other.raw_ == 0) {
        throw std::domain_error("division of an amount by zero");
    }
    return Amount(Narrow(DivideHalfEven(Int128(raw_) * kScale, other.raw_)));
}

Amount Amount::operator*(std::int64_t factor) const {
    return Amount(Narrow(Int128(raw_) * factor));
}

// Exact or nothing: a text with more than four decimals that are not zeros is not an amount
// this type can hold without rounding, so it is refused rather than rounded.
TypedAmount ReadTypedAmount(std::string_view text) {
    const std::string written(text);
    std::size_t end = 0;
    const auto number = ReadNumber(text, end);
    if (!number || end != text.size()) {
        return {std::nullopt, written + (text.find(',') == std::string_view::npos
                                             ? " is not a number."
                                             : " is not a number: commas group digits as in "
                                               "1,74,000 or 174,000, and decimals follow a "
                                               "point, as in 3.75.")};
    }
    RawValue value;
    try {
        value = ToRaw(*number);
    } catch (const std::overflow_error&) {
        return {std::nullopt, written + " is too large a figure."};
    }
    if (!value.exact) {
        return {std::nullopt, written + " has more than four decimals."};
    }
    return {Amount::FromRaw(value.raw), {}};
}

// A cell holding more than four decimals reads as the nearest amount, half to even, as the
// host's currency conversion does.
Amount TextToAmount(std::string_view text) {
    const std::size_t start = text.find_first_not_of(" \t");
    if (start == std::string_view::npos) {
        return {};
    }
    std::size_t end = 0;
    const auto number = ReadNumber(text.substr(start), end);
    return number ? Amount::FromRaw(ToRaw(*number).raw) : Amount();
}

WholeDivision DivideWhole(Amount dividend, Amount divisor) {
    if (divisor.IsZero()) {
        throw std::domain_error("division of an amount by zero");
    }
    return {dividend.Raw() / divisor.Raw(), Amount::FromRaw(dividend.Raw() % divisor.Raw())};
}

Amount RoundAmount(Amount value, int decimals) {
    return value.Round(decimals);
}

std::string FormatAmount(Amount value, std::string_view format) {
    const auto decimals = GroupedFormatDecimals(format);
    if (!decimals) {
        return value.ToPlainString();
    }
    const Amount rounded = value.Round(*decimals);
    const std::uint64_t magnitude = Magnitude(rounded.Raw());
    // The sign follows the rounded value: -0.001 shows as 0.00.
    std::string text = rounded.Raw() < 0 ? "-" : "";
    text += GroupIndian(std::to_string(magnitude / Amount::kScale));
    if (*decimals > 0) {
        text += '.';
        text += FractionDigits(magnitude).substr(0, static_cast<std::size_t>(*decimals));
    }
    return text;
}

} // namespace qx
