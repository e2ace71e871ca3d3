#include "AmountWords.h"

#include <array>
#include <cstdint>

namespace qx {
namespace {

constexpr std::array<const char*, 20> kUnits = {
    "Zero",    "One",     "Two",       "Three",    "Four",     "Five",    "Six",
    "Seven",   "Eight",   "Nine",      "Ten",      "Eleven",   "Twelve",  "Thirteen",
    "Fourteen", "Fifteen", "Sixteen",  "Seventeen", "Eighteen", "Nineteen"};
constexpr std::array<const char*, 10> kTens = {"",      "",      "Twenty",  "Thirty", "Forty",
                                               "Fifty", "Sixty", "Seventy", "Eighty", "Ninety"};

void Append(std::string& words, const std::string& more) {
    if (more.empty()) return;
    if (!words.empty()) words += ' ';
    words += more;
}

std::string UpToHundred(std::int64_t n) {
    if (n < 20) return kUnits[static_cast<std::size_t>(n)];
    std::string words = kTens[static_cast<std::size_t>(n / 10)];
    if (n % 10 != 0) Append(words, kUnits[static_cast<std::size_t>(n % 10)]);
    return words;
}

// Indian grouping: the last three digits, then pairs (thousand, lakh), and whatever stands
// above a crore is counted in crores again ("One Thousand Two Hundred Crore").
std::string Whole(std::int64_t n) {
    if (n == 0) return {};
    std::string words;
    if (n >= 10'000'000) {
        Append(words, Whole(n / 10'000'000));
        Append(words, "Crore");
        n %= 10'000'000;
    }
    for (const auto& [size, name] : {std::pair<std::int64_t, const char*>{100'000, "Lakh"},
                                     {1'000, "Thousand"},
                                     {100, "Hundred"}})
        if (n >= size) {
            Append(words, UpToHundred(n / size) + " " + name);
            n %= size;
        }
    if (n > 0) Append(words, UpToHundred(n));
    return words;
}

} // namespace

std::string AmountInWords(Amount value) {
    const Amount rounded = RoundAmount(value, 2);
    const Amount size = rounded.Abs();
    const std::int64_t rupees = size.WholePart();
    const std::int64_t paise = (size - Amount::FromInt(rupees)).Raw() / (Amount::kScale / 100);
    std::string words = rounded.Raw() < 0 ? "Minus " : "";
    if (rupees > 0 || paise == 0) words += "Rupees " + (rupees > 0 ? Whole(rupees) : kUnits[0]);
    if (paise > 0) words += std::string(rupees > 0 ? " and " : "") + UpToHundred(paise) + " Paise";
    return words + " Only";
}

} // namespace qx
