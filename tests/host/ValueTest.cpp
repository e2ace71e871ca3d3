#include "host/Value.h"
#include "host/PropertyBag.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace qx {
namespace {

Amount A(std::string_view text) {
    return *Amount::Parse(text);
}

TEST(Value, TextOfEachKind) {
    EXPECT_EQ(Value().AsText(), "");
    EXPECT_EQ(Value(true).AsText(), "True");
    EXPECT_EQ(Value(-42).AsText(), "-42");
    EXPECT_EQ(Value(0.0001).AsText(), "0.0001");
    EXPECT_EQ(Value(1e20).AsText(), "100000000000000000000");
    EXPECT_EQ(Value(-0.0).AsText(), "0");
    EXPECT_EQ(Value(0.1 + 0.2).AsText(), "0.30000000000000004");
    EXPECT_EQ(Value(A("52.25")).AsText(), "52.25");
    EXPECT_EQ(Value(Date::FromYmd(2024, 11, 5)).AsText(), "05/11/2024");
    for (double number : {0.1, 1.0 / 3, 2.0 / 3 * 1e-7, 123456789.123, -9.75e-3})
        EXPECT_EQ(std::stod(Value(number).AsText()), number);
}

TEST(Value, NumbersOfEachKind) {
    EXPECT_EQ(Value().AsAmount(), Amount());
    EXPECT_EQ(Value(0.1 + 0.2).AsAmount(), A("0.3"));
    EXPECT_EQ(Value(0.00015).AsAmount(), A("0.0002"));
    EXPECT_EQ(Value("1,04,000.00").AsAmount(), A("104000"));
    EXPECT_EQ(Value("12.5 kg").AsDouble(), 12.5);
    EXPECT_EQ(Value(A("0.25")).AsDouble(), 0.25);
    EXPECT_TRUE(Value(A("1")).IsNumber());
    EXPECT_FALSE(Value("1").IsNumber());
    EXPECT_FALSE(Value(Date()).IsNumber());

    // Whole numbers round half to even and must fit.
    EXPECT_EQ(Value(2.5).AsLong(), 2);
    EXPECT_EQ(Value(-2.5).AsLong(), -2);
    EXPECT_EQ(Value(2.51).AsLong(), 3);
    EXPECT_EQ(Value(A("-3.5")).AsLong(), -4);
    EXPECT_EQ(Value("3.5 bags").AsLong(), 4);
    EXPECT_EQ(Value("abc").AsLong(), 0);
    EXPECT_EQ(Value(Date::FromSerial(42917)).AsLong(), 42917);
    EXPECT_THROW(Value(1e19).AsLong(), std::overflow_error);
    EXPECT_THROW(Value(std::numeric_limits<double>::quiet_NaN()).AsLong(), std::overflow_error);
    EXPECT_EQ(Value("-2147483648").AsInt(), -2147483648LL);
    EXPECT_THROW(Value(2147483648LL).AsInt(), std::overflow_error);
    EXPECT_THROW(Value(-3e9).AsInt(), std::overflow_error);
}

TEST(Value, TruthOfEachKind) {
    for (const char* text : {"True", "true", "TRUE", "Yes", "yes", "YES", "-1", "1"})
        EXPECT_TRUE(Value(text).AsBool()) << text;
    for (const char* text : {"False", "No", "0", "", "2", " Yes", "Y", "-1.0"})
        EXPECT_FALSE(Value(text).AsBool()) << text;
    EXPECT_FALSE(Value(0).AsBool());
    EXPECT_TRUE(Value(0.5).AsBool());
    EXPECT_TRUE(Value(A("0.0001")).AsBool());
    EXPECT_FALSE(Value().AsBool());
}

TEST(Value, DatesFromDatesTextsAndSerials) {
    const Date gst = Date::FromSerial(42917);
    EXPECT_EQ(Value("2017-07-01 00:00:00").AsDate(), gst);
    EXPECT_EQ(Value("01/07/2017").AsDate(), gst);
    EXPECT_EQ(Value(42917).AsDate(), gst);
    EXPECT_EQ(Value(A("42917")).AsDate(), gst);
    for (const Value& value :
         {Value(), Value(true), Value("garbage"), Value(""), Value("31/02/2024"), Value(42917.5),
          Value(A("42917.25")), Value(1'000'000'000), Value(-1e300),
          Value(std::numeric_limits<double>::quiet_NaN())})
        EXPECT_THROW(value.AsDate(), std::invalid_argument) << value.AsText();
}

TEST(PropertyBag, NamesIgnoreLatinLetterCaseOnlyAndComeInThatOrder) {
    PropertyBag bag;
    bag.SetValue("FirmProperties", "*GST*");
    bag.SetValue("FIRMPROPERTIES", "*VAT*");
    EXPECT_EQ(bag.GetValue("firmproperties").AsText(), "*VAT*");
    EXPECT_TRUE(bag.GetValue("FirmName").IsNull());
    bag.SetValue("b", 1);
    bag.SetValue("A", 2);
    EXPECT_EQ(bag.Names(), (std::vector<std::string>{"A", "b", "FirmProperties"}));
    bag.Remove("firmProperties");
    EXPECT_FALSE(bag.Has("FirmProperties"));
    bag.Remove("NotThere");

    bag.SetValue("Mandi ਖੰਨਾ", 1);
    bag.SetValue("Mandi ਖੰਨੀ", 2);
    EXPECT_EQ(bag.GetValue("MANDI ਖੰਨਾ").AsLong(), 1);
    EXPECT_EQ(bag.GetValue("mandi ਖੰਨੀ").AsLong(), 2);
}

} // namespace
} // namespace qx
