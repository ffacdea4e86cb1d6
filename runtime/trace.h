#ifndef RUNTIME_TRACE_H
#define RUNTIME_TRACE_H

// Why a call did nothing. Failures are silent; a debug build, and any build while the environment
// variable PLINTH_TRACE is set, writes one line for each to standard error.

#include <SupportDefs.h>

#include <stdint.h>

enum TraceCode : int32_t {
    kNoSuchWindow = 1,
    kNoTarget = 2,
    kBadArgument = 3,
    kIsGadget = 4,
    kNoMemory = 5,
    kNoSuchChannel = 6,
    kFileError = 7,
    kNoService = 8,
    kNoSuchProgram = 9,
};

// As show_dbg, and says what status the system gave. Any thread.
void show_status(TraceCode code, int32_t ident, const char* call, status_t status);

extern "C" {
// `text` names the call. Any thread.
void show_dbg(int32_t code, int32_t ident, const char* text);
}

#endif  // RUNTIME_TRACE_H
