#include "host/Date.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <tuple>

namespace qx {
namespace {

// Serials count days from 30/12/1899, and 1900 was no leap year (60 is 28/02, 61 is 01/03).
TEST(Date, SerialsWeekdaysAndLeapYears) {
    EXPECT_EQ(Date::FromYmd(1899, 12, 30).Serial(), 0);
    EXPECT_EQ(Date::FromYmd(1900, 2, 28).Serial(), 60);
    EXPECT_EQ(Date::FromYmd(1900, 3, 1).Serial(), 61);
    const Date gst = Date::FromSerial(42917);
    EXPECT_EQ(gst, Date::FromYmd(2017, 7, 1));
    EXPECT_EQ(gst.Weekday(), 6); // Saturday

    EXPECT_EQ(Date::FromYmd(2000, 2, 29).AddDays(1), Date::FromYmd(2000, 3, 1));
    // A financial year that holds 29 February has 366 days.
    EXPECT_EQ(Date::FromYmd(2023, 4, 1).DaysUntil(Date::FromYmd(2024, 4, 1)), 366);
    EXPECT_EQ(Date::FromYmd(2024, 4, 1).DaysUntil(Date::FromYmd(2025, 4, 1)), 365);
    for (auto [year, month, day] : {std::tuple(1900, 2, 29), {2023, 2, 29}, {2100, 2, 29},
                                    {2024, 4, 31}, {2024, 13, 1}, {2024, 0, 1}, {2024, 1, 0},
                                    {10000, 1, 1}})
        EXPECT_THROW(Date::FromYmd(year, month, day), std::invalid_argument)
            << year << "-" << month << "-" << day;
}

// Every day from 1800 to 2200 comes back through its year, month and day, follows the day
// before it and falls one weekday later.
TEST(Date, CalendarIsContinuous) {
    const Date first = Date::FromYmd(1800, 1, 1);
    const Date last = Date::FromYmd(2200, 12, 31);
    for (Date day = first; day < last; day = day.AddDays(1)) {
        ASSERT_EQ(Date::FromYmd(day.Year(), day.Month(), day.Day()), day) << day.Serial();
        const Date next = day.AddDays(1);
        const bool sameMonth = next.Month() == day.Month();
        ASSERT_EQ(next.Day(), sameMonth ? day.Day() + 1 : 1) << day.ToIso();
        ASSERT_EQ(next.Weekday(), day.Weekday() % 7 + 1) << day.ToIso();
    }
}

TEST(Date, FormatPatterns) {
    const Date day = Date::FromYmd(2024, 11, 5);
    EXPECT_EQ(day.Format("dd/MM/yyyy (dddd)"), "05/11/2024 (Tuesday)");
    EXPECT_EQ(day.Format("d/M/yyyy dd-MMM"), "5/11/2024 05-Nov");
    EXPECT_EQ(day.Format("dddd, d MMMM yyyy"), "Tuesday, 5 November 2024");
    EXPECT_EQ(day.Format("Week of dd.MM"), "Week of 05.11");
    EXPECT_EQ(day.ToIso(), "2024-11-05");
    EXPECT_EQ(Date::FromYmd(987, 3, 9).ToDisplay(), "09/03/0987");
}

TEST(Date, ParseDisplay) {
    EXPECT_EQ(Date::ParseDisplay("01/07/2017"), Date::FromSerial(42917));
    EXPECT_EQ(Date::ParseDisplay("1/7/2017"), Date::FromSerial(42917));
    EXPECT_EQ(Date::ParseDisplay(" 29/02/2024 "), Date::FromYmd(2024, 2, 29));
    for (const char* text :
         {"31/02/2024", "29/02/1900", "29/02/2023", "garbage", "", "01/07/17", "01-07-2017",
          "01/07/2017x", "001/07/2017", "1/13/2017", "0/1/2017", "-1/07/2017", "+1/07/2017",
          "01/07/2017/", "01//2017", "2017-07-01", "a1/07/2017", "01/07/ 2017"}) {
        EXPECT_FALSE(Date::ParseDisplay(text)) << text;
        EXPECT_NE(Date::DisplayRefusal(text), "") << text;
    }
    EXPECT_EQ(Date::DisplayRefusal("01/07/2017"), "");
    // A clerk is told what is wrong with the day he wrote, not only how to write one.
    EXPECT_EQ(Date::DisplayRefusal("31/02/2024"), "31/02/2024 is not a date: February 2024 has 29 days.");
    EXPECT_EQ(Date::DisplayRefusal(" 31/4/2024"), "31/4/2024 is not a date: April 2024 has 30 days.");
    EXPECT_EQ(Date::DisplayRefusal("1/13/2017"), "1/13/2017 is not a date: there is no month 13.");
    EXPECT_EQ(Date::DisplayRefusal("0/1/2017"), "0/1/2017 is not a date: there is no day 0.");
    EXPECT_EQ(Date::DisplayRefusal("01-07-2017"), "Enter the date as dd/MM/yyyy.");
}

TEST(Date, ParseTakesTheIsoOrTheDisplayForm) {
    const Date gst = Date::FromSerial(42917);
    EXPECT_EQ(Date::ParseIso("2017-07-01 00:00:00"), gst);
    EXPECT_EQ(Date::ParseIso("2017-07-01T23:59:59"), gst);
    for (const char* text : {"2017-7-1", "2017-07-01x", "2017-02-30", "17-07-01", "2017/07/01",
                             "01/07/2017", "", "2017-07-0"})
        EXPECT_FALSE(Date::ParseIso(text)) << text;
    EXPECT_FALSE(Date::Parse("1 July 2017"));
    for (int serial : {0, 61, 36526, 42917, 45601}) {
        const Date day = Date::FromSerial(serial);
        EXPECT_EQ(Date::Parse(day.ToDisplay()), day);
        EXPECT_EQ(Date::Parse(day.ToIso()), day);
    }
}

} // namespace
} // namespace qx
