#ifndef _STOPWATCH_H
#define _STOPWATCH_H

#include <SupportDefs.h>

class BStopWatch {
public:
    BStopWatch(const char* name, bool silent = false);
    virtual ~BStopWatch();
    void Suspend();
    void Resume();
    bigtime_t Lap();
    bigtime_t ElapsedTime() const;
    void Reset();
    const char* Name() const;

private:
};

#endif  // _STOPWATCH_H
