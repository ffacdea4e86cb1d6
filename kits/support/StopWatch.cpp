// BStopWatch: measures and prints.

#include <StopWatch.h>

#include <OS.h>

#include <inttypes.h>
#include <stdio.h>

BStopWatch::BStopWatch(const char* name, bool silent)
    : fName(name != nullptr ? name : ""), fSilent(silent)
{
    Reset();
}

BStopWatch::~BStopWatch()
{
    if (fSilent)
        return;
    printf("StopWatch \"%s\": %" PRId64 " usecs.\n", fName.c_str(), ElapsedTime());
    for (int i = 0; i < fLapCount; ++i) {
        const bigtime_t before = i > 0 ? fLaps[i - 1] : 0;
        printf("   [%d: %" PRId64 "#%" PRId64 "]\n", i + 1, fLaps[i], fLaps[i] - before);
    }
    fflush(stdout);
}

void BStopWatch::Suspend()
{
    if (fSuspended == 0)
        fSuspended = system_time();
}

void BStopWatch::Resume()
{
    if (fSuspended == 0)
        return;
    fStart += system_time() - fSuspended;
    fSuspended = 0;
}

bigtime_t BStopWatch::Lap()
{
    if (fSuspended != 0)
        return 0;
    const bigtime_t elapsed = ElapsedTime();
    // The last place is for the latest lap.
    if (fLapCount < kMaxLaps)
        ++fLapCount;
    fLaps[fLapCount - 1] = elapsed;
    return elapsed;
}

bigtime_t BStopWatch::ElapsedTime() const
{
    return (fSuspended != 0 ? fSuspended : system_time()) - fStart;
}

void BStopWatch::Reset()
{
    fStart = system_time();
    fSuspended = 0;
    fLapCount = 0;
}

const char* BStopWatch::Name() const { return fName.c_str(); }
