#include "General/RunTimer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <regex>
#include <tuple>

#include "tests/General/RunTimeScript.h"
#include "tests/General/Settled.h"
#include "tests/General/TestFolder.h"

using namespace TamLib;
using test::Std;
using test::Text;

namespace {

constexpr ULONGLONG second = 10000000;  // of processor time

auto Fields(const RunTimer& timer) {
    return std::tuple(timer.paused, timer.realMark, timer.realNow, timer.cpuMark, timer.userMark,
                      timer.kernelMark, timer.cpuNow, timer.userNow, timer.kernelNow,
                      timer.counterMark, timer.counterNow);
}

std::wstring TimeText(RunTimer& timer, bool brief) {
    Text text(L"before");
    timer.TimeText(text, brief);
    return Std(text);
}
std::wstring ElapsedText(RunTimer& timer) {
    Text text(L"before");
    timer.ElapsedText(text);
    return Std(text);
}
std::wstring ClockText(RunTimer& timer, bool withFraction) {
    Text text(L"before");
    timer.ClockText(text, withFraction);
    return Std(text);
}

// A moment at which no clock is at 0.
settled::Clocks Morning() {
    settled::Clocks clocks;
    clocks.milliseconds = 100000;
    clocks.counter = 777000000;
    clocks.userTime = 3 * second;
    clocks.kernelTime = second / 2;
    return clocks;
}

// The texts of a watch that shows so many milliseconds.
std::wstring ElapsedTextAt(DWORD milliseconds) {
    settled::Clock clock(Morning());
    RunTimer timer;
    clock.Go(milliseconds);
    return ElapsedText(timer);
}
std::wstring ClockTextAt(DWORD milliseconds, bool withFraction) {
    settled::Clock clock(Morning());
    RunTimer timer;
    clock.Go(milliseconds);
    return ClockText(timer, withFraction);
}

TEST(RunTimer, KeepsItsFieldsInOrder) {
    EXPECT_EQ(offsetof(RunTimer, paused), 0u);
    EXPECT_EQ(offsetof(RunTimer, realMark), 8u);
    EXPECT_EQ(offsetof(RunTimer, realNow), 16u);
    EXPECT_EQ(offsetof(RunTimer, cpuMark), 24u);
    EXPECT_EQ(offsetof(RunTimer, userMark), 32u);
    EXPECT_EQ(offsetof(RunTimer, kernelMark), 40u);
    EXPECT_EQ(offsetof(RunTimer, cpuNow), 48u);
    EXPECT_EQ(offsetof(RunTimer, userNow), 56u);
    EXPECT_EQ(offsetof(RunTimer, kernelNow), 64u);
    EXPECT_EQ(offsetof(RunTimer, counterMark), 72u);
    EXPECT_EQ(offsetof(RunTimer, counterNow), 80u);
}

TEST(RunTimer, ANewWatchRunsFromNow) {
    const settled::Clock clock(Morning());
    const RunTimer timer;
    EXPECT_FALSE(timer.paused);
    EXPECT_EQ(timer.realMark, 100.0);
    EXPECT_EQ(timer.realNow, 100.0);
    EXPECT_EQ(timer.userMark, 3.0);
    EXPECT_EQ(timer.userNow, 3.0);
    EXPECT_EQ(timer.kernelMark, 0.5);
    EXPECT_EQ(timer.kernelNow, 0.5);
    EXPECT_EQ(timer.cpuMark, 3.5);
    EXPECT_EQ(timer.cpuNow, 3.5);
    EXPECT_EQ(timer.counterMark, 777000000);
    EXPECT_EQ(timer.counterNow, 777000000);
    EXPECT_EQ(timer.Elapsed(), 0.0);
}

TEST(RunTimer, ASampleReadsEveryClockAndLeavesTheMarks) {
    settled::Clock clock(Morning());
    RunTimer timer;
    clock.Go(1500, second, second / 4);
    timer.Sample();
    EXPECT_EQ(timer.realNow, 101.5);
    EXPECT_EQ(timer.userNow, 4.0);
    EXPECT_EQ(timer.kernelNow, 0.75);
    EXPECT_EQ(timer.cpuNow, 4.75);
    EXPECT_EQ(timer.counterNow, 777000000 + 15000000);
    EXPECT_EQ(timer.realMark, 100.0);
    EXPECT_EQ(timer.cpuMark, 3.5);
    EXPECT_EQ(timer.counterMark, 777000000);
}

TEST(RunTimer, ProcessorTimesAreWholeBeyond32Bits) {
    settled::Clock clock(Morning());
    clock.userTime = 0x1'0000'0001;
    clock.kernelTime = 0x2'0000'0000;
    clock.Show();
    const RunTimer timer;
    EXPECT_EQ(timer.userNow, 4294967297.0 / 1e7);
    EXPECT_EQ(timer.kernelNow, 8589934592.0 / 1e7);
}

TEST(RunTimer, WithoutProcessTimesTheProcessorClockCountsAsUserTime) {
    const settled::Clock clock(Morning());
    run_time::Script script;
    script.clock = [] { return std::clock_t{CLOCKS_PER_SEC * 7 / 2}; };
    const run_time::Following following(script);
    const settled::FailingCall failing("GetProcessTimes", 1, ERROR_ACCESS_DENIED, 1000);
    RunTimer timer;
    EXPECT_EQ(timer.userNow, 3.5);
    EXPECT_EQ(timer.kernelNow, 0.0);
    EXPECT_EQ(timer.cpuNow, 3.5);
    EXPECT_EQ(timer.realNow, 100.0);
    EXPECT_EQ(timer.counterNow, 777000000);
}

TEST(RunTimer, PausingTurnsStartsIntoElapsedTimeAndResumingBack) {
    settled::Clock clock(Morning());
    RunTimer timer;
    clock.Go(2000, second, second / 2);
    EXPECT_TRUE(timer.Pause());
    EXPECT_TRUE(timer.paused);
    EXPECT_EQ(timer.realMark, 2.0);
    EXPECT_EQ(timer.userMark, 1.0);
    EXPECT_EQ(timer.kernelMark, 0.5);
    EXPECT_EQ(timer.cpuMark, 1.5);
    EXPECT_EQ(timer.counterMark, 20000000);
    clock.Go(50000, 9 * second, 9 * second);
    EXPECT_TRUE(timer.Resume());
    EXPECT_FALSE(timer.paused);
    EXPECT_EQ(timer.realMark, 150.0);  // 152 now, 2 s ago
    EXPECT_EQ(timer.userMark, 12.0);
    EXPECT_EQ(timer.kernelMark, 9.5);
    EXPECT_EQ(timer.cpuMark, 21.5);
    EXPECT_EQ(timer.counterMark, clock.counter - 20000000);
    EXPECT_EQ(timer.Elapsed(), 2.0);
}

TEST(RunTimer, PausingTwiceIsRefusedAndReadsNothing) {
    settled::Clock clock(Morning());
    RunTimer timer;
    clock.Go(1000);
    EXPECT_TRUE(timer.Pause());
    clock.Go(1000, second, second);
    const RunTimer before = timer;
    EXPECT_FALSE(timer.Pause());
    EXPECT_EQ(Fields(timer), Fields(before));
}

TEST(RunTimer, ResumingARunningWatchIsRefusedAndReadsNothing) {
    settled::Clock clock(Morning());
    RunTimer timer;
    clock.Go(1000, second, second);
    const RunTimer before = timer;
    EXPECT_FALSE(timer.Resume());
    EXPECT_EQ(Fields(timer), Fields(before));
}

TEST(RunTimer, ResetStartsAPausedWatchAnew) {
    settled::Clock clock(Morning());
    RunTimer timer;
    clock.Go(1000);
    timer.Pause();
    clock.Go(1000, second);
    timer.Reset();
    EXPECT_FALSE(timer.paused);
    EXPECT_EQ(timer.realMark, 102.0);
    EXPECT_EQ(timer.userMark, 4.0);
    EXPECT_EQ(timer.Elapsed(), 0.0);
}

TEST(RunTimer, ElapsedAsksTheMillisecondsAloneAndChangesNothing) {
    settled::Clock clock(Morning());
    RunTimer timer;
    clock.milliseconds += 250;
    clock.counter += 999999999;
    clock.Show();
    const RunTimer before = timer;
    EXPECT_EQ(timer.Elapsed(), 100250 / 1000.0 - 100.0);
    EXPECT_EQ(Fields(timer), Fields(before));
    timer.Pause();
    clock.Go(5000);
    EXPECT_EQ(timer.Elapsed(), timer.realMark);
    EXPECT_EQ(timer.Elapsed(), 100250 / 1000.0 - 100.0);
}

TEST(RunTimer, AcrossTheWrapOf49DaysElapsedIsNegative) {
    settled::Clocks start = Morning();
    start.milliseconds = 0xFFFFFFFF;
    settled::Clock clock(start);
    RunTimer timer;
    EXPECT_EQ(timer.realMark, 4294967.295);
    clock.milliseconds = 1;  // two milliseconds later
    clock.Show();
    EXPECT_EQ(timer.Elapsed(), 0.001 - 4294967.295);
    EXPECT_LT(timer.Elapsed(), -4294967.0);
    // The texts show what that gives: no hour and no minute.
    EXPECT_EQ(ElapsedText(timer), L"-47.294 secs");
    EXPECT_EQ(ClockText(timer, false), L"-2:-47");
    EXPECT_EQ(TimeText(timer, false).substr(0, 30), L"Real time used -4294967.294, C");
    EXPECT_TRUE(timer.Pause());
    EXPECT_EQ(timer.Elapsed(), 0.001 - 4294967.295);
}

TEST(RunTimer, SetMarkMovesTheStartButNotThatOfKernelTime) {
    settled::Clock clock(Morning());
    RunTimer timer;
    timer.SetMark(2.5, 1.25);
    EXPECT_EQ(timer.realMark, 97.5);
    EXPECT_EQ(timer.userMark, 1.75);
    EXPECT_EQ(timer.cpuMark, 2.25);
    EXPECT_EQ(timer.kernelMark, 0.5);
    EXPECT_EQ(timer.counterMark, 777000000 - 25000000);
    EXPECT_EQ(timer.Elapsed(), 2.5);
}

TEST(RunTimer, SetMarkCutsTheCountersTicks) {
    settled::Clock clock(Morning());
    clock.frequency = 3;
    clock.Show();
    RunTimer timer;
    timer.SetMark(0.9, 0);  // 2.7 ticks
    EXPECT_EQ(timer.counterMark, 777000000 - 2);
    timer.SetMark(-0.9, 0);
    EXPECT_EQ(timer.counterMark, 777000000);
}

TEST(RunTimer, SetMarkOnAPausedWatchTakesFromTheTimeElapsed) {
    settled::Clock clock(Morning());
    RunTimer timer;
    clock.Go(10000);
    timer.Pause();
    timer.SetMark(4.0, 1.0);
    EXPECT_EQ(timer.Elapsed(), 6.0);
    EXPECT_EQ(timer.userMark, -1.0);
}

TEST(RunTimer, SetMarkTakesAnyNumber) {
    settled::Clock clock(Morning());
    for (const double seconds :
         {1e300, -1e300, std::numeric_limits<double>::infinity(), std::nan(""), 9.3e11, -9.3e11}) {
        RunTimer timer;
        timer.SetMark(seconds, seconds);
        timer.SetMark(seconds, seconds);
        timer.Pause();
        EXPECT_FALSE(TimeText(timer, true).empty());
        EXPECT_FALSE(ElapsedText(timer).empty());
        EXPECT_FALSE(ClockText(timer, false).empty());
        EXPECT_TRUE(timer.paused);
    }
}

TEST(RunTimer, TimeTextNamesRealProcessorUserKernelAndLoad) {
    settled::Clock clock(Morning());
    RunTimer timer;
    clock.Go(2000, second, second / 4);
    EXPECT_EQ(TimeText(timer, false),
              L"Real time used   2.000, CPU time used   1.250 [  1.000 user,   0.250 kernel,   "
              L"62.50% in average]");
    EXPECT_EQ(TimeText(timer, true),
              L"Real   2.000 (  2.000), CPU   1.250 [  1.000 U,   0.250 S,   62.50%]");
}

TEST(RunTimer, OnlyTheBriefTextHasTheCountersSeconds) {
    settled::Clock clock(Morning());
    RunTimer timer;
    clock.Go(1000);
    clock.counter += 5 * clock.frequency;  // this clock alone
    clock.Show();
    EXPECT_EQ(TimeText(timer, true).substr(0, 25), L"Real   1.000 (  6.000), C");
    EXPECT_EQ(TimeText(timer, false).find(L"6.000"), std::wstring::npos);
}

TEST(RunTimer, TheLoadIsHundredUpToATenthOfAMillisecondAndMayPassHundred) {
    settled::Clock clock(Morning());
    RunTimer timer;
    clock.userTime += second;
    clock.Show();
    const auto load = [&timer] {
        const std::wstring text = TimeText(timer, true);
        return text.substr(text.rfind(L',') + 1);
    };
    EXPECT_EQ(load(), L"  100.00%]");  // no real time at all
    timer.realMark = clock.milliseconds / 1000.0 - 0.0001;
    const double real = clock.milliseconds / 1000.0 - timer.realMark;
    EXPECT_EQ(load() == L"  100.00%]", !(real > 0.0001));
    timer.realMark = 100.0 - 0.00009;
    EXPECT_EQ(load(), L"  100.00%]");
    timer.realMark = 100.0 - 0.5;
    EXPECT_EQ(load(), L"  200.00%]");
    timer.realMark = 100.0 + 5;  // a clock that went back
    EXPECT_EQ(load(), L"  100.00%]");
}

TEST(RunTimer, ElapsedTextAtItsBorders) {
    EXPECT_EQ(ElapsedTextAt(0), L"  0.000 secs");
    EXPECT_EQ(ElapsedTextAt(59900), L" 59.900 secs");
    EXPECT_EQ(ElapsedTextAt(59999), L" 59.999 secs");
    EXPECT_EQ(ElapsedTextAt(60000), L" 1 mins,   0.000 secs");
    EXPECT_EQ(ElapsedTextAt(100000), L" 1 mins,  40.000 secs");
    EXPECT_EQ(ElapsedTextAt(3599999), L"59 mins,  59.999 secs");
    EXPECT_EQ(ElapsedTextAt(3600000), L"  1 hours,  0 mins,   0.000 secs");
    EXPECT_EQ(ElapsedTextAt(4294000000), L"1192 hours, 46 mins,  40.000 secs");
}

TEST(RunTimer, ClockTextAtItsBorders) {
    EXPECT_EQ(ClockTextAt(0, false), L"00:00");
    EXPECT_EQ(ClockTextAt(5500, false), L"00:05");
    EXPECT_EQ(ClockTextAt(59999, false), L"00:59");
    EXPECT_EQ(ClockTextAt(60000, false), L"01:00");
    EXPECT_EQ(ClockTextAt(100000, false), L"01:40");
    EXPECT_EQ(ClockTextAt(3599000, false), L"59:59");
    EXPECT_EQ(ClockTextAt(3600000, false), L"01:00:00");
    EXPECT_EQ(ClockTextAt(36610000, false), L"10:10:10");
    EXPECT_EQ(ClockTextAt(360000000, false), L"100:00:00");  // not cut
}

TEST(RunTimer, ClockTextWithItsFractionDoesNotPadTheSeconds) {
    EXPECT_EQ(ClockTextAt(5500, true), L"00:5.500");
    EXPECT_EQ(ClockTextAt(65500, true), L"01:5.500");
    EXPECT_EQ(ClockTextAt(3665250, true), L"01:01:5.250");
    EXPECT_EQ(ClockTextAt(12345, true), L"00:12.345");
}

TEST(RunTimer, TextsLeaveThePausedStateAsTheyFoundIt) {
    settled::Clock clock(Morning());
    RunTimer timer;
    clock.Go(61000, 2 * second, second);
    for (const bool paused : {false, true}) {
        if (paused) {
            ASSERT_TRUE(timer.Pause());
            clock.Go(500000, second, second);  // stands meanwhile
        }
        EXPECT_EQ(TimeText(timer, false).substr(0, 22), L"Real time used  61.000");
        EXPECT_EQ(timer.paused, paused);
        EXPECT_EQ(TimeText(timer, true).substr(0, 39), L"Real  61.000 ( 61.000), CPU   3.000 [  ");
        EXPECT_EQ(timer.paused, paused);
        EXPECT_EQ(ElapsedText(timer), L" 1 mins,   1.000 secs");
        EXPECT_EQ(timer.paused, paused);
        EXPECT_EQ(ClockText(timer, false), L"01:01");
        EXPECT_EQ(timer.paused, paused);
        EXPECT_EQ(timer.Elapsed(), 61.0);
    }
}

// The watch against plain sums of milliseconds, over random operations.
TEST(RunTimer, PausesAreLeftOutWhateverTheOrderOfOperations) {
    std::mt19937 random(53);
    for (int round = 0; round < 200; ++round) {
        settled::Clock clock(Morning());
        RunTimer timer;
        double real = 0;
        double user = 0;
        double kernel = 0;
        bool paused = false;
        for (int step = 0; step < 60; ++step) {
            const auto passed = static_cast<DWORD>(random() % 100000);
            const ULONGLONG userUnits = random() % second;
            const ULONGLONG kernelUnits = random() % second;
            clock.Go(passed, userUnits, kernelUnits);
            if (!paused) {
                real += passed / 1000.0;
                user += static_cast<double>(userUnits) / 1e7;
                kernel += static_cast<double>(kernelUnits) / 1e7;
            }
            switch (random() % 5) {
                case 0:
                    EXPECT_EQ(timer.Pause(), !paused);
                    paused = true;
                    break;
                case 1:
                    EXPECT_EQ(timer.Resume(), paused);
                    paused = false;
                    break;
                case 2:
                    TimeText(timer, random() % 2 != 0);
                    break;
                case 3:
                    ElapsedText(timer);
                    break;
                default:
                    break;
            }
            ASSERT_EQ(timer.paused, paused);
            ASSERT_NEAR(timer.Elapsed(), real, 1e-6);
        }
        timer.Pause();
        EXPECT_NEAR(timer.userMark, user, 1e-6);
        EXPECT_NEAR(timer.kernelMark, kernel, 1e-6);
        EXPECT_NEAR(timer.cpuMark, user + kernel, 1e-6);
        EXPECT_NEAR(static_cast<double>(timer.counterMark) / 1e7, real, 1e-9);
    }
}

TEST(RunTimer, TheMachinesOwnClocksGoOn) {
    RunTimer timer;
    const RunTimer start = timer;
    double work = 0;
    while (timer.Elapsed() < 0.03) work += std::sqrt(work + 1);
    timer.Sample();
    EXPECT_GT(work, 0);
    EXPECT_GE(timer.realNow - start.realNow, 0.03);
    EXPECT_GT(timer.counterNow, start.counterNow);
    EXPECT_GE(timer.cpuNow, start.cpuNow);
    EXPECT_TRUE(std::regex_match(
        TimeText(timer, false),
        std::wregex(LR"(Real time used +[\d.]+, CPU time used +[\d.]+ \[ *[\d.]+ user, )"
                    LR"( *[\d.]+ kernel, +[\d.]+% in average\])")));
}

}  // namespace
