#pragma once
// One value crossing the host boundary: a database field, a setting, an event parameter.
// Conversions follow what the host's users expect of a loosely typed field: null reads as
// 0, empty text or false; text reads as a number by its leading number (TextToAmount).

#include "Amount.h"
#include "Date.h"

#include <cstdint>
#include <string>
#include <variant>

namespace qx {

class Value {
public:
    Value() = default;
    Value(bool v) : v_(v) {}
    Value(int v) : v_(static_cast<std::int64_t>(v)) {}
    Value(long v) : v_(static_cast<std::int64_t>(v)) {}
    Value(long long v) : v_(static_cast<std::int64_t>(v)) {}
    Value(double v) : v_(v) {}
    Value(Amount v) : v_(v) {}
    Value(Date v) : v_(v) {}
    Value(std::string v) : v_(std::move(v)) {}
    Value(std::string_view v) : v_(std::string(v)) {}
    Value(const char* v) : v_(std::string(v)) {}

    bool IsNull() const { return std::holds_alternative<std::monostate>(v_); }
    bool IsText() const { return std::holds_alternative<std::string>(v_); }
    bool IsDate() const { return std::holds_alternative<Date>(v_); }
    bool IsNumber() const;

    // Numbers as plain decimals, dates as dd/MM/yyyy, booleans as "True"/"False", null as "".
    std::string AsText() const;
    std::int64_t AsLong() const; // rounds half to even to a whole number
    std::int32_t AsInt() const;  // AsLong, checked to fit 32 bits
    Amount AsAmount() const;
    double AsDouble() const;
    bool AsBool() const; // non-zero numbers, "True"/"Yes"/"-1" text
    // Dates, ISO or dd/MM/yyyy text, day serials; std::invalid_argument otherwise.
    Date AsDate() const;

    bool operator==(const Value& other) const = default;

    using Storage = std::variant<std::monostate, bool, std::int64_t, double, Amount, Date, std::string>;
    const Storage& Raw() const { return v_; }

private:
    Storage v_;
};

} // namespace qx
