// How a compiled program starts: the application's loop on the main thread, the program's own code
// on a thread beside it.

#include "plinth.h"
#include "runtime/ending.h"
#include "runtime/registry.h"
#include "windows/window.h"

#include <Application.h>
#include <OS.h>

static const char* const kSignature = "application/x-vnd.plinth.program";

class MyApp : public BApplication {
public:
    explicit MyApp(status_t* status) : BApplication(kSignature, status) {}

    // What still waits in the queue when the program ends does not hold it up.
    void DispatchMessage(BMessage* message, BHandler* handler) override
    {
        if (must_quit())
            Quit();
        else
            BApplication::DispatchMessage(message, handler);
    }
};

static status_t run_program(void* entry)
{
    program_begins();
    reinterpret_cast<void (*)()>(entry)();
    program_ended();
    // Without a window nothing more can happen: the program came to its end without saying so.
    if (GetActiveWindow() == nullptr)
        quit_application();
    return B_OK;
}

extern "C" int32_t PlinthStart(int argc, char** argv, void (*program)(void))
{
    __argc = argc;
    __argv = argv;
    status_t status = B_OK;
    auto* app = new MyApp(&status);
    if (status != B_OK)
        return status;
    prepare_ending();
    const thread_id thread =
        spawn_thread(run_program, "program", B_NORMAL_PRIORITY, reinterpret_cast<void*>(program));
    if (thread < B_OK || resume_thread(thread) != B_OK) {
        program_ended();
        delete app;
        return B_NO_MORE_THREADS;
    }
    app->Run();
    if (program_has_ended()) {
        status_t result;
        wait_for_thread(thread, &result);  // it may still be asking the application to quit
        delete app;
    }
    loop_ended();
    return B_OK;
}
