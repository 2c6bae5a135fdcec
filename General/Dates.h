// The local date and time of day as fields and as text, the day before the month.
#pragma once

#include "datastruct/String.h"

namespace TamLib {

// Where each field stands in the array that DateFields gives.
enum DateField {
    dateYear,
    dateMonth,
    dateDay,
    dateWeekDay,
    dateYearDay,
    dateHour,
    dateMinute,
    dateSecond,
    dateMilliseconds
};

// The present in 9 numbers: year, month from 1, day of the month, day of the week (0 is Sunday),
// day of the year from 1, hour, minute, second, milliseconds. Intended: the milliseconds are those
// of `timeGetTime`, which do not turn with the second, and the years 1900 to 1969 of the run-time
// are given as 2000 to 2069.
Array<int> DateFields();

// "05.12.2009": day, month, year.
StringBase<wchar_t> DateText();

// "05.12.2009 14:30:00", and ".045" behind it with milliseconds.
StringBase<wchar_t> DateTimeText(bool withMilliseconds);

}  // namespace TamLib
