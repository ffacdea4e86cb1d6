#ifndef _STOPWATCH_H
#define _STOPWATCH_H

#include <SupportDefs.h>

#include <string>

/* Measures time from its construction on, in microseconds, and tells it on standard output when it
   is destroyed, unless silent. */
class BStopWatch {
public:
    BStopWatch(const char* name, bool silent = false);
    virtual ~BStopWatch();

    void Suspend();
    void Resume();
    bigtime_t Lap();  // notes a lap, and returns the elapsed time; 0 while suspended
    bigtime_t ElapsedTime() const;
    void Reset();
    const char* Name() const;

private:
    BStopWatch(const BStopWatch&) = delete;
    BStopWatch& operator=(const BStopWatch&) = delete;

    static constexpr int kMaxLaps = 10;

    std::string fName;
    bool fSilent;
    bigtime_t fStart;
    bigtime_t fSuspended;  // since when; 0 while running
    bigtime_t fLaps[kMaxLaps];
    int fLapCount;
};

#endif  // _STOPWATCH_H
