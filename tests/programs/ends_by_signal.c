/* A signal that asks the program to end does so as End does, at once and whatever its threads are
   at: what was written is in its files. The process then ends by that signal. One that was ignored
   before the program began stays so. */

#include "again.h"

#include <Injection.h>
#include <pthread.h>
#include <signal.h>

static void never_return(int32_t x, int32_t y, int32_t button, int32_t clicks)
{
    (void)x;
    (void)y;
    (void)button;
    (void)clicks;
    kill(getpid(), SIGTERM);
    for (;;)
        WaitTicks(1000);
}

/* Keeps the latest of all streams for good. */
static void* read_for_ever(void* unused)
{
    int ends[2];
    expect(pipe(ends) == 0);
    getc(fdopen(ends[0], "r"));
    return unused;
}

static int32_t refuse(void) { return 0; }

static void be_signalled(int number, const char* folder, int in_handler)
{
    char path[256];
    snprintf(path, sizeof(path), "%s/channel", folder);
    const int32_t window = OpenWindow(100, 100, 200, 150);
    SetHandlerForWindow(window, PLINTH_CLOSE_REQUESTED, (void*)refuse);
    WriteFile(OpenFile(path, 1), "channel");
    printf("said");
    pthread_t reader;
    expect(pthread_create(&reader, NULL, read_for_ever, NULL) == 0);
    if (number == SIGHUP) {
        kill(getpid(), SIGHUP); /* ignored */
        WaitTicks(50000);
        exit(5);
    }
    if (in_handler) {
        SetHandlerForWindow(window, PLINTH_MOUSE_DOWN, (void*)never_return);
        inject_pointer(110, 110);
        inject_button(1, true);
    } else {
        kill(getpid(), number);
    }
    for (;;)
        FRectangle(window, 0, 0, 100, 100);
}

static int ends_by(int number, const char* way, const char* folder)
{
    char path[256], output[256];
    snprintf(path, sizeof(path), "%s/channel", folder);
    snprintf(output, sizeof(output), "%s/output", folder);
    const int status = run_again(way, folder, output);
    if (number == SIGHUP)
        expect(WIFEXITED(status) && WEXITSTATUS(status) == 5);
    else
        expect(WIFSIGNALED(status) && WTERMSIG(status) == number);
    return holds(path, "channel") && holds(output, "said");
}

void ProgramMain(void)
{
    Open_Sys(0);
    if (__GetCommand(2)[0] == '/')
        be_signalled(atoi(__GetCommand(1)), __GetCommand(2), __GetCommand(1)[0] == 'h');
    const char* folder = new_folder();
    expect(ends_by(SIGTERM, "15", folder));
    expect(ends_by(SIGINT, "2", folder));
    expect(ends_by(SIGTERM, "handler", folder));
    signal(SIGHUP, SIG_IGN);
    expect(ends_by(SIGHUP, "1", folder));
    remove_folder(folder);
    End();
}
