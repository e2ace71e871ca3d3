#include "Value.h"

#include "PropertyBag.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <set>
#include <stdexcept>

namespace qx {

namespace {

template <class... Handlers> struct Overloaded : Handlers... { using Handlers::operator()...; };
template <class... Handlers> Overloaded(Handlers...) -> Overloaded<Handlers...>;

// Fixed notation, never "1e-04": the text goes into cells and SQL, where 0.0001 is expected.
std::string ShortestText(double value) {
    if (value == 0) {
        return "0"; // also for -0.0
    }
    char buffer[400]; // enough for any double in fixed notation
    const auto written =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed);
    return std::string(buffer, written.ptr);
}

std::int64_t RoundHalfEven(double value) {
    // nearbyint rounds in the default mode, to the nearest and half to even.
    const double whole = std::nearbyint(value);
    const double limit = std::ldexp(1.0, 63);
    if (!(whole >= -limit && whole < limit)) {
        throw std::overflow_error("number out of the range of a whole number");
    }
    return static_cast<std::int64_t>(whole);
}

std::int64_t WholeNumber(Amount amount) {
    return amount.Round(0).WholePart();
}

// A day serial held as a number; only whole serials of days the calendar writes are days.
Date DateFromSerial(double serial) {
    static const double kFirst = Date::FromYmd(1, 1, 1).Serial();
    static const double kLast = Date::FromYmd(9999, 12, 31).Serial();
    if (serial != std::trunc(serial) || serial < kFirst || serial > kLast) {
        throw std::invalid_argument("not a day: serial " + ShortestText(serial));
    }
    return Date::FromSerial(static_cast<std::int32_t>(serial));
}

} // namespace

bool Value::IsNumber() const {
    return std::holds_alternative<std::int64_t>(v_) || std::holds_alternative<double>(v_) ||
           std::holds_alternative<Amount>(v_);
}

std::string Value::AsText() const {
    return std::visit(Overloaded{
                          [](std::monostate) { return std::string(); },
                          [](bool v) { return std::string(v ? "True" : "False"); },
                          [](std::int64_t v) { return std::to_string(v); },
                          [](double v) { return ShortestText(v); },
                          [](Amount v) { return v.ToPlainString(); },
                          [](Date v) { return v.ToDisplay(); },
                          [](const std::string& v) { return v; },
                      },
                      v_);
}

std::int64_t Value::AsLong() const {
    return std::visit(Overloaded{
                          [](std::monostate) -> std::int64_t { return 0; },
                          [](bool v) -> std::int64_t { return v ? 1 : 0; },
                          [](std::int64_t v) { return v; },
                          [](double v) { return RoundHalfEven(v); },
                          [](Amount v) { return WholeNumber(v); },
                          [](Date v) -> std::int64_t { return v.Serial(); },
                          [](const std::string& v) { return WholeNumber(TextToAmount(v)); },
                      },
                      v_);
}

std::int32_t Value::AsInt() const {
    const std::int64_t value = AsLong();
    if (value < std::numeric_limits<std::int32_t>::min() ||
        value > std::numeric_limits<std::int32_t>::max()) {
        throw std::overflow_error("number out of the range of a code: " + std::to_string(value));
    }
    return static_cast<std::int32_t>(value);
}

Amount Value::AsAmount() const {
    return std::visit(Overloaded{
                          [](std::monostate) { return Amount(); },
                          [](bool v) { return Amount::FromInt(v ? 1 : 0); },
                          [](std::int64_t v) { return Amount::FromInt(v); },
                          [](double v) { return Amount::FromDouble(v); },
                          [](Amount v) { return v; },
                          [](Date v) { return Amount::FromInt(v.Serial()); },
                          [](const std::string& v) { return TextToAmount(v); },
                      },
                      v_);
}

double Value::AsDouble() const {
    return std::visit(Overloaded{
                          [](std::monostate) { return 0.0; },
                          [](bool v) { return v ? 1.0 : 0.0; },
                          [](std::int64_t v) { return static_cast<double>(v); },
                          [](double v) { return v; },
                          [](Amount v) { return v.ToDouble(); },
                          [](Date v) { return static_cast<double>(v.Serial()); },
                          [](const std::string& v) { return TextToAmount(v).ToDouble(); },
                      },
                      v_);
}

bool Value::AsBool() const {
    // "-1" is how the host's older settings wrote true.
    static const std::set<std::string_view, CaseInsensitiveLess> kTrueTexts{"True", "Yes", "-1",
                                                                            "1"};
    return std::visit(Overloaded{
                          [](std::monostate) { return false; },
                          [](bool v) { return v; },
                          [](std::int64_t v) { return v != 0; },
                          [](double v) { return v != 0; },
                          [](Amount v) { return !v.IsZero(); },
                          [](Date v) { return v.Serial() != 0; },
                          [](const std::string& v) { return kTrueTexts.contains(v); },
                      },
                      v_);
}

Date Value::AsDate() const {
    const auto notADate = [this]() {
        return std::invalid_argument("not a date: \"" + AsText() + "\"");
    };
    return std::visit(Overloaded{
                          [&](std::monostate) -> Date { throw notADate(); },
                          [&](bool) -> Date { throw notADate(); },
                          [](std::int64_t v) { return DateFromSerial(static_cast<double>(v)); },
                          [](double v) { return DateFromSerial(v); },
                          [](Amount v) { return DateFromSerial(v.ToDouble()); },
                          [](Date v) { return v; },
                          [&](const std::string& v) {
                              const auto date = Date::Parse(v);
                              if (!date) {
                                  throw notADate();
                              }
                              return *date;
                          },
                      },
                      v_);
}

} // namespace qx
