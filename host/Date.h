#pragma once
// A calendar day. Its serial counts days from 30 December 1899 (day 0), as the host's
// date scale does; 1 July 2017 is day 42917.

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qx {

class Date {
public:
    constexpr Date() = default;
    static constexpr Date FromSerial(std::int32_t serial) { return Date(serial); }
    static Date FromYmd(int year, int month, int day); // throws std::invalid_argument
    // "dd/MM/yyyy" (also d/M/yyyy); nullopt for anything that is not a real day.
    static std::optional<Date> ParseDisplay(std::string_view text);
    // Why the text is not a day as ParseDisplay reads it, in the words a clerk is shown
    // ("31/02/2024 is not a date: February 2024 has 29 days."); empty when it is one.
    static std::string DisplayRefusal(std::string_view text);
    // "yyyy-MM-dd", optionally followed by a time that is ignored.
    static std::optional<Date> ParseIso(std::string_view text);
    // Either of the two forms.
    static std::optional<Date> Parse(std::string_view text);

    constexpr std::int32_t Serial() const { return serial_; }
    int Year() const;
    int Month() const;
    int Day() const;
    // Monday 1 ... Sunday 7.
    int Weekday() const;

    // Patterns made of dd, d, MM, MMM, MMMM, yyyy, dddd and literal text,
    // e.g. "dd/MM/yyyy", "dd-MMM-yyyy", "dd/MM/yyyy (dddd)".
    std::string Format(std::string_view pattern) const;
    std::string ToDisplay() const { return Format("dd/MM/yyyy"); }
    std::string ToIso() const { return Format("yyyy-MM-dd"); }

    Date AddDays(int days) const { return Date(serial_ + days); }
    int DaysUntil(Date later) const { return later.serial_ - serial_; }

    constexpr auto operator<=>(const Date&) const = default;

private:
    constexpr explicit Date(std::int32_t serial) : serial_(serial) {}
    std::int32_t serial_ = 0;
};

} // namespace qx
