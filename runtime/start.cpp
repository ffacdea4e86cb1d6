// How a compiled program starts and ends: the application's loop on the main thread, the program's
// own code on a thread beside it.

#include "plinth.h"
#include "runtime/registry.h"
#include "windows/window.h"

#include <Application.h>
#include <OS.h>

#include <atomic>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

static const char* const kSignature = "application/x-vnd.plinth.program";

static std::atomic<bool> sProgramRuns = false;

class MyApp : public BApplication {
public:
    explicit MyApp(status_t* status) : BApplication(kSignature, status) {}
};

static status_t run_program(void* entry)
{
    reinterpret_cast<void (*)()>(entry)();
    sProgramRuns = false;
    // Without a window nothing more can happen: the program came to its end without saying so.
    if (GetActiveWindow() == nullptr)
        quit_application();
    return B_OK;
}

// The process may end while the program's thread is still inside a call. Nothing is taken down
// under its feet then: the process leaves at once, and the system frees what it had. Only what
// was written is not lost, as at any end of a C program.
static void leave_at_once()
{
    if (!sProgramRuns)
        return;
    if (ftrylockfile(stdout) == 0) {
        fflush(stdout);
        funlockfile(stdout);
    }
    flush_channels();
    _exit(EXIT_SUCCESS);
}

extern "C" int32_t PlinthStart(int argc, char** argv, void (*program)(void))
{
    __argc = argc;
    __argv = argv;
    status_t status = B_OK;
    auto* app = new MyApp(&status);
    if (status != B_OK)
        return status;
    atexit(leave_at_once);
    sProgramRuns = true;
    const thread_id thread =
        spawn_thread(run_program, "program", B_NORMAL_PRIORITY, reinterpret_cast<void*>(program));
    if (thread < B_OK || resume_thread(thread) != B_OK) {
        sProgramRuns = false;
        delete app;
        return B_NO_MORE_THREADS;
    }
    app->Run();
    if (!sProgramRuns) {
        status_t result;
        wait_for_thread(thread, &result);  // it may still be asking the application to quit
        delete app;
    }
    return B_OK;
}
