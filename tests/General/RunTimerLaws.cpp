// Laws of the stopwatch over random sequences of operations with a settled clock.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <vector>

#include "General/RunTimer.h"
#include "tests/General/Settled.h"

using namespace TamLib;

namespace {

// What happens to a watch, each after some milliseconds.
struct Step {
    DWORD milliseconds;
    int operation;  // 0 pause, 1 resume, 2 to 4 texts, 5 nothing
};

std::vector<Step> AnySteps() {
    const auto times =
        *rc::gen::container<std::vector<std::uint32_t>>(rc::gen::inRange<std::uint32_t>(0, 500000));
    std::vector<Step> steps;
    for (const std::uint32_t time : times) steps.push_back({time, *rc::gen::inRange(0, 6)});
    return steps;
}

void Do(RunTimer& timer, int operation) {
    StringBase<wchar_t> text;
    switch (operation) {
        case 0:
            timer.Pause();
            break;
        case 1:
            timer.Resume();
            break;
        case 2:
            timer.TimeText(text, true);
            break;
        case 3:
            timer.ElapsedText(text);
            break;
        case 4:
            timer.ClockText(text, true);
            break;
        default:
            break;
    }
}

bool Near(double a, double b) {
    return std::fabs(a - b) < 1e-6;
}

RC_GTEST_PROP(RunTimerLaws, ElapsedIsTheTimeNotPaused, ()) {
    settled::Clock clock;
    RunTimer timer;
    double running = 0;
    for (const Step& step : AnySteps()) {
        clock.Go(step.milliseconds);
        if (!timer.paused) running += step.milliseconds / 1000.0;
        Do(timer, step.operation);
        RC_ASSERT(Near(timer.Elapsed(), running));
    }
}

RC_GTEST_PROP(RunTimerLaws, PausingAndResumingAtOnceChangesNoMark, ()) {
    settled::Clock clock;
    RunTimer timer;
    for (const Step& step : AnySteps()) {
        clock.Go(step.milliseconds);
        Do(timer, step.operation);
    }
    const RunTimer before = timer;
    if (timer.paused) {
        timer.Resume();
        timer.Pause();
    } else {
        timer.Pause();
        timer.Resume();
    }
    RC_ASSERT(timer.paused == before.paused);
    RC_ASSERT(Near(timer.realMark, before.realMark));
    RC_ASSERT(timer.counterMark == before.counterMark);
}

RC_GTEST_PROP(RunTimerLaws, TextsLeaveWhatTheyShow, ()) {
    settled::Clock clock;
    RunTimer timer;
    for (const Step& step : AnySteps()) {
        clock.Go(step.milliseconds);
        Do(timer, step.operation);
    }
    StringBase<wchar_t> first;
    StringBase<wchar_t> second;
    const bool paused = timer.paused;
    timer.TimeText(first, true);
    timer.TimeText(second, true);
    RC_ASSERT(first.Compare(second) == 0);
    RC_ASSERT(timer.paused == paused);
}

RC_GTEST_PROP(RunTimerLaws, MovingTheStartAddsToARunningWatchAndTakesFromAPausedOne, ()) {
    settled::Clock clock;
    RunTimer timer;
    clock.Go(*rc::gen::inRange<std::uint32_t>(0, 1000000));
    const double moved = *rc::gen::inRange(-100000, 100000) / 1000.0;
    const bool paused = *rc::gen::arbitrary<bool>();
    if (paused) timer.Pause();
    const double before = timer.Elapsed();
    timer.SetMark(moved, moved);
    RC_ASSERT(Near(timer.Elapsed(), paused ? before - moved : before + moved));
}

}  // namespace
