#include "General/Dates.h"

#include <windows.h>

#include <ctime>

#include <tchar.h>

namespace TamLib {
namespace {

// The present in the run-time's fields; all 0 for a time that it has none for.
std::tm LocalNow() {
    const __time64_t now = _time64(nullptr);
    std::tm fields{};
    if (_localtime64_s(&fields, &now) != 0) fields = {};
    return fields;
}

}  // namespace

Array<int> DateFields() {
    const std::tm now = LocalNow();
    // The run-time counts years from 1900; intended: below 70 they are taken for two digits.
    const int year = now.tm_year < 70 ? 2000 + now.tm_year : 1900 + now.tm_year;
    const auto milliseconds = static_cast<int>(timeGetTime() % 1000);
    Array<int> fields(9);
    for (const int field : {year, now.tm_mon + 1, now.tm_mday, now.tm_wday, now.tm_yday + 1,
                            now.tm_hour, now.tm_min, now.tm_sec, milliseconds}) {
        fields.Append(field);
    }
    return fields;
}

StringBase<wchar_t> DateText() {
    const Array<int> now = DateFields();
    StringBase<wchar_t> text;
    text.Format(L"%02d.%02d.%d", now[dateDay], now[dateMonth], now[dateYear]);
    return text;
}

StringBase<wchar_t> DateTimeText(bool withMilliseconds) {
    const Array<int> now = DateFields();
    StringBase<wchar_t> text;
    text.Format(L"%02i.%02i.%04i %02i:%02i:%02i", now[dateDay], now[dateMonth], now[dateYear],
                now[dateHour], now[dateMinute], now[dateSecond]);
    if (withMilliseconds) {
        StringBase<wchar_t> fraction;
        fraction.Format(L".%03i", now[dateMilliseconds]);
        text.Append(fraction);
    }
    return text;
}

}  // namespace TamLib
