#include "Date.h"

#include <array>
#include <charconv>
#include <chrono>
#include <stdexcept>

namespace qx {

namespace {

// Pure calendar arithmetic: a day never goes through the C library's time zone functions,
// so no date depends on the machine's zone.
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr sys_days kDayZero{std::chrono::year{1899} / std::chrono::December / 30};

constexpr std::array<std::string_view, 12> kMonthNames{
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

constexpr std::array<std::string_view, 7> kWeekdayNames{
    "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"};

year_month_day Civil(Date date) {
    return year_month_day{kDayZero + std::chrono::days{date.Serial()}};
}

// Years are written with four digits, so the calendar stops at 9999.
std::optional<Date> MakeDate(int year, int month, int day) {
    if (year < 1 || year > 9999 || month < 1 || month > 12 || day < 1 || day > 31) {
        return std::nullopt;
    }
    const year_month_day civil{std::chrono::year{year},
                               std::chrono::month{static_cast<unsigned>(month)},
                               std::chrono::day{static_cast<unsigned>(day)}};
    if (!civil.ok()) {
        return std::nullopt;
    }
    return Date::FromSerial(static_cast<std::int32_t>((sys_days{civil} - kDayZero).count()));
}

// A field of a written date: digits only, between minLength and maxLength of them.
std::optional<int> ReadField(std::string_view text, std::size_t minLength, std::size_t maxLength) {
    if (text.size() < minLength || text.size() > maxLength) {
        return std::nullopt;
    }
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || text[0] == '-') {
        return std::nullopt;
    }
    return value;
}

std::string_view TrimBlanks(std::string_view text) {
    const std::size_t start = text.find_first_not_of(' ');
    if (start == std::string_view::npos) {
        return {};
    }
    return text.substr(start, text.find_last_not_of(' ') - start + 1);
}

// A day as written "dd/MM/yyyy" (also d/M/yyyy), its fields read but not yet checked against
// the calendar; nullopt when the text is not of that shape.
struct WrittenDay {
    int year;
    int month;
    int day;
};

std::optional<WrittenDay> ReadDisplay(std::string_view text) {
    text = TrimBlanks(text);
    const std::size_t firstSlash = text.find('/');
    const std::size_t secondSlash =
        firstSlash == std::string_view::npos ? firstSlash : text.find('/', firstSlash + 1);
    if (secondSlash == std::string_view::npos) {
        return std::nullopt;
    }
    const auto day = ReadField(text.substr(0, firstSlash), 1, 2);
    const auto month = ReadField(text.substr(firstSlash + 1, secondSlash - firstSlash - 1), 1, 2);
    const auto year = ReadField(text.substr(secondSlash + 1), 4, 4);
    if (!day || !month || !year) {
        return std::nullopt;
    }
    return WrittenDay{*year, *month, *day};
}

std::string Padded(int number, std::size_t width) {
    std::string digits = std::to_string(number);
    if (digits.size() < width) {
        digits.insert(0, width - digits.size(), '0');
    }
    return digits;
}

} // namespace

Date Date::FromYmd(int year, int month, int day) {
    const auto date = MakeDate(year, month, day);
    if (!date) {
        throw std::invalid_argument("not a day: " + std::to_string(day) + "/" +
                                    std::to_string(month) + "/" + std::to_string(year));
    }
    return *date;
}

std::optional<Date> Date::ParseDisplay(std::string_view text) {
    const auto written = ReadDisplay(text);
    if (!written) {
        return std::nullopt;
    }
    return MakeDate(written->year, written->month, written->day);
}

std::string Date::DisplayRefusal(std::string_view text) {
    const auto written = ReadDisplay(text);
    if (!written) {
        return "Enter the date as dd/MM/yyyy.";
    }
    const auto [year, month, day] = *written;
    if (MakeDate(year, month, day)) {
        return {};
    }
    const std::string notADate = std::string(TrimBlanks(text)) + " is not a date: ";
    if (month < 1 || month > 12) {
        return notADate + "there is no month " + std::to_string(month) + ".";
    }
    if (year < 1) {
        return notADate + "there is no year 0.";
    }
    if (day < 1) {
        return notADate + "there is no day 0.";
    }
    const std::chrono::year_month_day_last last{
        std::chrono::year{year},
        std::chrono::month_day_last{std::chrono::month{static_cast<unsigned>(month)}}};
    return notADate + std::string(kMonthNames[static_cast<std::size_t>(month - 1)]) + " " +
           std::to_string(year) + " has " + std::to_string(static_cast<unsigned>(last.day())) +
           " days.";
}

std::optional<Date> Date::ParseIso(std::string_view text) {
    text = TrimBlanks(text);
    // Databases give a day as "2017-07-01" or with a time after it, "2017-07-01 00:00:00".
    if (text.size() < 10 || text[4] != '-' || text[7] != '-' ||
        (text.size() > 10 && text[10] != ' ' && text[10] != 'T')) {
        return std::nullopt;
    }
    const auto year = ReadField(text.substr(0, 4), 4, 4);
    const auto month = ReadField(text.substr(5, 2), 2, 2);
    const auto day = ReadField(text.substr(8, 2), 2, 2);
    if (!day || !month || !year) {
        return std::nullopt;
    }
    return MakeDate(*year, *month, *day);
}

std::optional<Date> Date::Parse(std::string_view text) {
    if (auto date = ParseIso(text)) {
        return date;
    }
    return ParseDisplay(text);
}

int Date::Year() const {
    return static_cast<int>(Civil(*this).year());
}

int Date::Month() const {
    return static_cast<int>(static_cast<unsigned>(Civil(*this).month()));
}

int Date::Day() const {
    return static_cast<int>(static_cast<unsigned>(Civil(*this).day()));
}

int Date::Weekday() const {
    const std::chrono::weekday weekday{kDayZero + std::chrono::days{serial_}};
    return static_cast<int>(weekday.iso_encoding());
}

std::string Date::Format(std::string_view pattern) const {
    const year_month_day civil = Civil(*this);
    const auto day = static_cast<int>(static_cast<unsigned>(civil.day()));
    const auto month = static_cast<int>(static_cast<unsigned>(civil.month()));
    const std::string_view monthName = kMonthNames[static_cast<std::size_t>(month - 1)];
    // Longer tokens first, so that "dddd" is the weekday and not two days.
    const auto take = [&pattern](std::string_view token) {
        if (!pattern.starts_with(token)) {
            return false;
        }
        pattern.remove_prefix(token.size());
        return true;
    };
    std::string text;
    while (!pattern.empty()) {
        if (take("dddd")) {
            text += kWeekdayNames[static_cast<std::size_t>(Weekday() - 1)];
        } else if (take("dd")) {
            text += Padded(day, 2);
        } else if (take("d")) {
            text += std::to_string(day);
        } else if (take("MMMM")) {
            text += monthName;
        } else if (take("MMM")) {
            text += monthName.substr(0, 3);
        } else if (take("MM")) {
            text += Padded(month, 2);
        } else if (take("M")) {
            text += std::to_string(month);
        } else if (take("yyyy")) {
            text += Padded(static_cast<int>(civil.year()), 4);
        } else {
            text += pattern.front();
            pattern.remove_prefix(1);
        }
    }
    return text;
}

} // namespace qx
