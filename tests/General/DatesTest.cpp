#include "General/Dates.h"

#include <gtest/gtest.h>

#include <ctime>
#include <vector>

#include "tests/General/Settled.h"
#include "tests/General/TestFolder.h"

using namespace TamLib;
using test::Std;

namespace {

// A moment of the local calendar.
std::int64_t Local(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    std::tm fields{};
    fields.tm_year = year - 1900;
    fields.tm_mon = month - 1;
    fields.tm_mday = day;
    fields.tm_hour = hour;
    fields.tm_min = minute;
    fields.tm_sec = second;
    fields.tm_isdst = -1;
    return std::mktime(&fields);
}

class Moment : public settled::Clock {
  public:
    explicit Moment(std::int64_t at, DWORD millisecondsOfDay = 0) {
        seconds = at;
        milliseconds = millisecondsOfDay;
        Show();
    }
};

std::vector<int> Fields() {
    const Array<int> fields = DateFields();
    return {fields.begin(), fields.end()};
}

TEST(Dates, NineFieldsWithMonthAndDayOfTheYearFromOne) {
    const Moment moment(Local(2009, 12, 5, 14, 30, 7), 1234567);
    EXPECT_EQ(Fields(), (std::vector<int>{2009, 12, 5, 6, 339, 14, 30, 7, 567}));
}

TEST(Dates, TheFirstDayOfAYear) {
    const Moment moment(Local(2012, 1, 1));  // a Sunday
    EXPECT_EQ(Fields(), (std::vector<int>{2012, 1, 1, 0, 1, 0, 0, 0, 0}));
}

TEST(Dates, TheLastSecondOfALeapYear) {
    const Moment moment(Local(2016, 12, 31, 23, 59, 59));
    EXPECT_EQ(Fields(), (std::vector<int>{2016, 12, 31, 6, 366, 23, 59, 59, 0}));
}

TEST(Dates, YearsFrom1970OnAreThemselves) {
    for (const int year : {1971, 1999, 2000, 2026, 2069, 2070, 2100}) {
        if (sizeof(std::time_t) < 8 && year > 2037) continue;
        const Moment moment(Local(year, 6, 15, 12));
        EXPECT_EQ(Fields()[dateYear], year);
    }
}

TEST(Dates, MillisecondsAreThoseOfTheOtherClock) {
    for (const DWORD clock : {0u, 999u, 1000u, 4294967295u}) {
        const Moment moment(Local(2020, 2, 2), clock);
        EXPECT_EQ(Fields()[dateMilliseconds], static_cast<int>(clock % 1000));
    }
}

TEST(Dates, TextsHaveTheDayFirst) {
    const Moment moment(Local(2009, 2, 5, 4, 3, 7), 12045);
    EXPECT_EQ(Std(DateText()), L"05.02.2009");
    EXPECT_EQ(Std(DateTimeText(false)), L"05.02.2009 04:03:07");
    EXPECT_EQ(Std(DateTimeText(true)), L"05.02.2009 04:03:07.045");
}

TEST(Dates, TextsAtTheEndOfTheCentury) {
    const Moment moment(Local(1999, 12, 31, 23, 59, 59), 5);
    EXPECT_EQ(Std(DateText()), L"31.12.1999");
    EXPECT_EQ(Std(DateTimeText(true)), L"31.12.1999 23:59:59.005");
}

TEST(Dates, ATimeWithoutACalendarIsAllZeros) {
    const Moment moment(INT64_MAX);
    EXPECT_EQ(Fields(), (std::vector<int>{2000, 1, 0, 0, 1, 0, 0, 0, 0}));
    EXPECT_EQ(Std(DateText()), L"00.01.2000");
}

TEST(Dates, ThePresentIsThatOfTheMachine) {
    const std::time_t before = std::time(nullptr);
    const Array<int> now = DateFields();
    const std::time_t after = std::time(nullptr);
    const std::int64_t told = Local(now[dateYear], now[dateMonth], now[dateDay], now[dateHour],
                                    now[dateMinute], now[dateSecond]);
    EXPECT_GE(told, before);
    EXPECT_LE(told, after);
}

#ifndef _WIN32
TEST(Dates, NativelyWhereTimesBefore1970ExistTheirYearsAreTakenForTwoDigits) {
    const Moment moment(Local(1969, 7, 20, 12));
    EXPECT_EQ(Fields()[dateYear], 2069);
    const Moment earlier(Local(1900, 7, 20, 12));
    EXPECT_EQ(Fields()[dateYear], 2000);
}
#endif

}  // namespace
