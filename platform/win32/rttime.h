// The run-time library's calendar. Comes with <tchar.h>.
#pragma once

#include <cstdint>
#include <ctime>

using __time64_t = std::int64_t;
using errno_t = int;

// Seconds since 1970 (UTC), also into `result` if it is not null. A test can set them in
// `HeadlessSystem.h`.
__time64_t _time64(__time64_t* result);
// The fields of a time in the local zone. Not 0 when the time has none.
errno_t _localtime64_s(std::tm* fields, const __time64_t* time);
