#ifndef _DEBUG_H
#define _DEBUG_H

#include <OS.h>
#include <SupportDefs.h>

#include <stdio.h>
#include <stdlib.h>

// Helpers that exist only where DEBUG is defined, and not 0.

#ifndef DEBUG
#define DEBUG 0
#endif

extern "C" {
bool _debugFlag();
bool _setDebugFlag(bool flag);
int _debugPrintf(const char* format, ...);
}

/* Called by ASSERT: says where, and goes into the debugger. */
int _debuggerAssertFailed(const char* file, int line, const char* message);

#if DEBUG
#define SET_DEBUG_ENABLED(FLAG) _setDebugFlag(FLAG)
#define IS_DEBUG_ENABLED() _debugFlag()
#define SERIAL_PRINT(ARGS) ((void)(IS_DEBUG_ENABLED() && _debugPrintf ARGS))
#define PRINT(ARGS) ((void)(IS_DEBUG_ENABLED() && _debugPrintf ARGS))
#define PRINT_OBJECT(OBJ)          \
    do {                           \
        if (IS_DEBUG_ENABLED()) {  \
            PRINT(("%s\t", #OBJ)); \
            (OBJ).PrintToStream(); \
        }                          \
    } while (0)
#define TRACE()                                                                              \
    ((void)(IS_DEBUG_ENABLED() && _debugPrintf("File: %s, Line: %d, Thread: %d\n", __FILE__, \
                                               __LINE__, static_cast<int>(find_thread(nullptr)))))
#define SERIAL_TRACE() TRACE()
#define DEBUGGER(MSG) ((void)(IS_DEBUG_ENABLED() ? (debugger(MSG), 0) : 0))
#define ASSERT(E) ((void)((E) ? 0 : _debuggerAssertFailed(__FILE__, __LINE__, #E)))
#define ASSERT_WITH_MESSAGE(expr, msg) \
    ((void)((expr) ? 0 : _debuggerAssertFailed(__FILE__, __LINE__, msg)))
#define TRESPASS() DEBUGGER("Should not be here")
#define DEBUG_ONLY(x) x
#else
#define SET_DEBUG_ENABLED(FLAG) ((void)0)
#define IS_DEBUG_ENABLED() 0
#define SERIAL_PRINT(ARGS) ((void)0)
#define PRINT(ARGS) ((void)0)
#define PRINT_OBJECT(OBJ) ((void)0)
#define TRACE() ((void)0)
#define SERIAL_TRACE() ((void)0)
#define DEBUGGER(MSG) ((void)0)
#define ASSERT(E) ((void)0)
#define ASSERT_WITH_MESSAGE(expr, msg) ((void)0)
#define TRESPASS() ((void)0)
#define DEBUG_ONLY(x)
#endif

#define STATIC_ASSERT(x) static_assert(x, #x)

#endif  // _DEBUG_H
