#include "General/RunTimer.h"

#include <windows.h>

#include <cmath>
#include <ctime>
#include <limits>

namespace TamLib {
namespace {

constexpr double kUnitsPerSecond = 1e7;  // processor times come in units of 100 ns

// The number without its fraction; what does not fit becomes the nearest limit, no number 0.
template <class Integer>
Integer Truncated(double number) {
    constexpr auto kLeast = std::numeric_limits<Integer>::min();
    if (std::isnan(number)) return 0;
    if (number < static_cast<double>(kLeast)) return kLeast;
    if (number >= -static_cast<double>(kLeast)) return std::numeric_limits<Integer>::max();
    return static_cast<Integer>(number);
}

double RealSeconds() {
    return timeGetTime() / 1000.0;
}

// Counters wrap.
std::int64_t Difference(std::int64_t now, std::int64_t mark) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(now) -
                                     static_cast<std::uint64_t>(mark));
}

double CounterFrequency() {
    LARGE_INTEGER frequency{};
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(frequency.QuadPart);
}

double Seconds(const FILETIME& time) {
    const ULONGLONG units = static_cast<ULONGLONG>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
    return static_cast<double>(units) / kUnitsPerSecond;
}

// User time by the run-time's processor clock, for a system that does not give it. A tick of the
// clock is so many units; 10000 on Windows.
double ClockSeconds() {
    constexpr std::int64_t kUnitsPerTick = 10000000 / CLOCKS_PER_SEC;
    return static_cast<double>(std::clock() * kUnitsPerTick) / kUnitsPerSecond;
}

// Lets a paused watch run for as long as it lives.
class Running {
  public:
    explicit Running(RunTimer& timer) : timer_(timer), resumed_(timer.Resume()) {}
    ~Running() {
        if (resumed_) timer_.Pause();
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

  private:
    RunTimer& timer_;
    bool resumed_;
};

// Real seconds in hours, minutes of the hour, and seconds of the minute with their fraction.
struct ClockParts {
    int hours;
    int minutes;
    double seconds;

    explicit ClockParts(double total) {
        const int allMinutes = Truncated<int>(total) / 60;
        hours = allMinutes / 60;
        minutes = allMinutes - 60 * hours;
        seconds = total - 60.0 * allMinutes;
    }
};

// Turns every mark from a start into the time elapsed, or back.
void TurnMarks(RunTimer& timer) {
    timer.Sample();
    timer.realMark = timer.realNow - timer.realMark;
    timer.cpuMark = timer.cpuNow - timer.cpuMark;
    timer.userMark = timer.userNow - timer.userMark;
    timer.kernelMark = timer.kernelNow - timer.kernelMark;
    timer.counterMark = Difference(timer.counterNow, timer.counterMark);
}

}  // namespace

void RunTimer::Sample() {
    FILETIME creation{};
    FILETIME exit{};
    FILETIME kernel{};
    FILETIME user{};
    if (GetProcessTimes(GetCurrentProcess(), &creation, &exit, &kernel, &user) != FALSE) {
        userNow = Seconds(user);
        kernelNow = Seconds(kernel);
    } else {
        userNow = ClockSeconds();
        kernelNow = 0;
    }
    cpuNow = userNow + kernelNow;
    realNow = RealSeconds();
    LARGE_INTEGER counter{};
    QueryPerformanceCounter(&counter);
    counterNow = counter.QuadPart;
}

void RunTimer::Reset() {
    Sample();
    realMark = realNow;
    cpuMark = cpuNow;
    userMark = userNow;
    kernelMark = kernelNow;
    counterMark = counterNow;
    paused = false;
}

bool RunTimer::Pause() {
    if (paused) return false;
    TurnMarks(*this);
    paused = true;
    return true;
}

bool RunTimer::Resume() {
    if (!paused) return false;
    TurnMarks(*this);
    paused = false;
    return true;
}

double RunTimer::Elapsed() const {
    return paused ? realMark : RealSeconds() - realMark;
}

void RunTimer::SetMark(double realSeconds, double cpuSeconds) {
    realMark -= realSeconds;
    userMark -= cpuSeconds;
    cpuMark -= cpuSeconds;
    counterMark =
        Difference(counterMark, Truncated<std::int64_t>(realSeconds * CounterFrequency()));
}

void RunTimer::TimeText(StringBase<wchar_t>& result, bool brief) {
    const Running running(*this);
    Sample();
    const double real = realNow - realMark;
    const double cpu = cpuNow - cpuMark;
    const double user = userNow - userMark;
    const double kernel = kernelNow - kernelMark;
    const double load = real > 0.0001 ? cpu / real * 100.0 : 100.0;
    if (brief) {
        const double counted =
            static_cast<double>(Difference(counterNow, counterMark)) / CounterFrequency();
        result.Format(L"Real %7.3f (%7.3f), CPU %7.3f [%7.3f U, %7.3f S, %7.2f%%]", real, counted,
                      cpu, user, kernel, load);
    } else {
        result.Format(
            L"Real time used %7.3f, CPU time used %7.3f [%7.3f user, %7.3f kernel, %7.2f%% in "
            L"average]",
            real, cpu, user, kernel, load);
    }
}

void RunTimer::ElapsedText(StringBase<wchar_t>& result) {
    const Running running(*this);
    const ClockParts time(Elapsed());
    if (time.hours >= 1) {
        result.Format(L"%3i hours, %2i mins, %7.3f secs", time.hours, time.minutes, time.seconds);
    } else if (time.minutes >= 1) {
        result.Format(L"%2i mins, %7.3f secs", time.minutes, time.seconds);
    } else {
        result.Format(L"%7.3f secs", time.seconds);
    }
}

void RunTimer::ClockText(StringBase<wchar_t>& result, bool withFraction) {
    const Running running(*this);
    const ClockParts time(Elapsed());
    if (time.hours >= 1) {
        result.Format(L"%02i:%02i:", time.hours, time.minutes);
    } else {
        result.Format(L"%02i:", time.minutes);
    }
    StringBase<wchar_t> seconds;
    if (withFraction) {
        seconds.Format(L"%02.3f", time.seconds);
    } else {
        seconds.Format(L"%02i", Truncated<int>(time.seconds));
    }
    result.Append(seconds);
}

}  // namespace TamLib
