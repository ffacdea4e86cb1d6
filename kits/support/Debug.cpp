// What the macros of Debug.h call.

#include <Debug.h>

#include <stdarg.h>

#include <atomic>

static std::atomic<bool> sEnabled{true};

bool _debugFlag() { return sEnabled; }

bool _setDebugFlag(bool flag) { return sEnabled.exchange(flag); }

int _debugPrintf(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    const int written = vprintf(format, args);
    va_end(args);
    return written;
}

int _debuggerAssertFailed(const char* file, int line, const char* message)
{
    char text[1024];
    snprintf(text, sizeof(text), "Assert failed: File: %s, Line: %d. %s", file, line, message);
    debugger(text);
    return 0;
}
