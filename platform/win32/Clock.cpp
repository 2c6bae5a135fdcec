#include <sys/resource.h>

#include <cerrno>
#include <ctime>
#include <mutex>

#include "Faults.h"
#include "FileHandles.h"
#include "HeadlessSystem.h"
#include "tchar.h"

namespace {

struct Settled {
    std::mutex guard;
    headless::Clocks clocks;
};

Settled& TheSettled() {
    static Settled settled;
    return settled;
}

headless::Clocks SettledClocks() {
    const std::lock_guard<std::mutex> lock(TheSettled().guard);
    return TheSettled().clocks;
}

// Nanoseconds since some moment in the past.
std::int64_t Nanoseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::int64_t>(now.tv_sec) * 1000000000 + now.tv_nsec;
}

ULONGLONG Units(const timeval& time) {
    return static_cast<ULONGLONG>(time.tv_sec) * 10000000 +
           static_cast<ULONGLONG>(time.tv_usec) * 10;
}

}  // namespace

DWORD timeGetTime() {
    const auto settled = SettledClocks().milliseconds;
    return settled ? *settled : static_cast<DWORD>(Nanoseconds() / 1000000);
}

BOOL QueryPerformanceCounter(LARGE_INTEGER* counter) {
    const auto settled = SettledClocks().counter;
    counter->QuadPart = settled ? *settled : Nanoseconds() / 100;
    return TRUE;
}

BOOL QueryPerformanceFrequency(LARGE_INTEGER* frequency) {
    frequency->QuadPart = SettledClocks().frequency.value_or(10000000);
    return TRUE;
}

BOOL GetProcessTimes(HANDLE process, FILETIME* creation, FILETIME* exit, FILETIME* kernel,
                     FILETIME* user) {
    if (posix::Refused("GetProcessTimes")) return FALSE;
    if (process != GetCurrentProcess()) {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const headless::Clocks settled = SettledClocks();
    *creation = {};
    *exit = {};
    *kernel = posix::WindowsTime(settled.kernelTime.value_or(Units(usage.ru_stime)));
    *user = posix::WindowsTime(settled.userTime.value_or(Units(usage.ru_utime)));
    return TRUE;
}

__time64_t _time64(__time64_t* result) {
    const __time64_t now = SettledClocks().seconds.value_or(std::time(nullptr));
    if (result != nullptr) *result = now;
    return now;
}

errno_t _localtime64_s(std::tm* fields, const __time64_t* time) {
    const std::time_t seconds = *time;
    return localtime_r(&seconds, fields) != nullptr ? 0 : EINVAL;
}

void headless::SetClocks(const Clocks& clocks) {
    const std::lock_guard<std::mutex> lock(TheSettled().guard);
    TheSettled().clocks = clocks;
}
