// A stopwatch for real and processor time, with pause and resume and the figures as text.
//
// Times are seconds. Real time is that of `timeGetTime`, in steps of a millisecond or more; nothing
// guards against its wrap after 49.7 days (intended): a time measured across it comes out too small
// by 4294967.296 s. Processor time is that of all threads of the process and may pass the real
// time. A timer belongs to one thread.
//
// Marks and samples. Each clock has a mark and the value of the last sample. While the watch runs
// the mark is the time of the start; while it is paused, the time elapsed. Pausing and resuming
// both turn one into the other as `now - mark`.
#pragma once

#include <cstdint>

#include "datastruct/String.h"

namespace TamLib {

class RunTimer {
  public:
    // A running watch that starts now.
    RunTimer() { Reset(); }

    // Reads all clocks. When the system does not give the processor times, the run-time's own
    // processor clock counts as user time.
    void Sample();
    // Starts anew from now, running.
    void Reset();
    // Stops the watch. False, and nothing is changed or read, when it is paused already.
    bool Pause();
    // Lets the watch run on. False, and nothing is changed or read, when it runs.
    bool Resume();
    // Real seconds since the start without the pauses, of a paused watch until it was paused. No
    // field changes.
    double Elapsed() const;
    // Moves the start back, so that the watch shows more: `realSeconds` of real time and of the
    // performance counter, `cpuSeconds` of user time and of processor time. Intended: kernel time
    // is left alone, and on a paused watch, whose marks hold elapsed time, it shows less.
    void SetMark(double realSeconds, double cpuSeconds);

    // Texts of the figures. The watch goes on or stays paused as it was; a paused one is resumed
    // for the moment.

    // "Real time used <real>, CPU time used <sum> [<user> user, <kernel> kernel, <load>% in
    // average]", or `brief`: "Real <real> (<counter's seconds>), CPU <sum> [<user> U, <kernel> S,
    // <load>%]". Seconds are seven wide with three decimals. The load is processor time in percent
    // of real time, 100 when that is 0.0001 s or less.
    void TimeText(StringBase<wchar_t>& result, bool brief);
    // "%3i hours, %2i mins, %7.3f secs" from one hour on, "%2i mins, %7.3f secs" from one minute
    // on, "%7.3f secs" below.
    void ElapsedText(StringBase<wchar_t>& result);
    // "hours:minutes:seconds", or "minutes:seconds" below one hour, two digits each. Intended:
    // with the fraction the seconds are "%02.3f", which does not pad them to two digits ("5.500").
    void ClockText(StringBase<wchar_t>& result, bool withFraction);

    bool paused = false;           // true while the watch stands
    double realMark = 0;           // the start, or the time elapsed while paused; so all marks
    double realNow = 0;            // the last sample; so all of this name
    double cpuMark = 0;            // user and kernel time together
    double userMark = 0;           // time in the program
    double kernelMark = 0;         // time in the system
    double cpuNow = 0;             // user and kernel time together
    double userNow = 0;            // time in the program
    double kernelNow = 0;          // time in the system
    std::int64_t counterMark = 0;  // the performance counter, in its ticks
    std::int64_t counterNow = 0;   // the performance counter, in its ticks
};
static_assert(sizeof(RunTimer) == 88, "the flag (padded), eight times, two counters");

}  // namespace TamLib
