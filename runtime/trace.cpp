// The diagnostic hook. Any thread.

#include "runtime/trace.h"

#include "plinth.h"
#include "runtime/status_names.h"

#include <errno.h>
#include <stdio.h>
#include <stdlib.h>

static const char* reason_of(int32_t code)
{
    switch (code) {
        case kNoSuchWindow:
            return "no such window";
        case kNoTarget:
            return "no window or plain view to draw into";
        case kBadArgument:
            return "argument out of range";
        case kIsGadget:
            return "the ident is a gadget's";
        case kNoMemory:
            return "out of memory";
        case kNoSuchChannel:
            return "no such channel";
        case kFileError:
            return "the file operation failed";
        case kNoService:
            return "the system's service is not there, or failed";
        case kNoSuchProgram:
            return "no such program, or it can not be started";
        default:
            return "failed";
    }
}

static bool is_traced()
{
#ifdef NDEBUG
    static const bool traced = getenv("PLINTH_TRACE") != nullptr;
    return traced;
#else
    return true;
#endif
}

static void trace(int32_t code, int32_t ident, const char* call, const char* status)
{
    if (!is_traced())
        return;
    const int number = errno;
    fprintf(stderr, status != nullptr ? "plinth: %s(%d): %s (%s)\n" : "plinth: %s(%d): %s\n",
            call != nullptr ? call : "?", static_cast<int>(ident), reason_of(code), status);
    errno = number;  // programs learn of it through dos_err, traced or not
}

void show_status(TraceCode code, int32_t ident, const char* call, status_t status)
{
    trace(code, ident, call, status_name(status));
}

extern "C" void show_dbg(int32_t code, int32_t ident, const char* text)
{
    trace(code, ident, text, nullptr);
}

extern "C" void OpenDebug(void) {}
extern "C" void CloseDebug(void) {}
extern "C" void SetDebug(void) {}
extern "C" void SetMessage(void) {}
extern "C" void Redim(void) {}
