/* exit() in the program's code or in a handler ends the process with that status, the program's own
   exit handlers run, and what it wrote is in its files. */

#include "again.h"

#include <Injection.h>

static char own_path[256], channel_path[256];

static void say_farewell(void)
{
    /* What these need may be gone by now. */
    const int32_t window = OpenWindow(10, 10, 50, 50);
    FRectangle(window, 0, 0, 9, 9);
    inject_save_screen("/dev/null");
    CloseWindow(window);
    FILE* file = fopen(own_path, "a");
    fputs(", farewell", file); /* which nobody closes */
}

static void write_something(void)
{
    FILE* file = fopen(own_path, "w");
    fputs("own", file);
    fflush(file);
    atexit(say_farewell);
    WriteFile(OpenFile(channel_path, 1), "channel");
    printf("said");
    inject_save_screen("/dev/null");
}

static void leave_by_click(int32_t x, int32_t y, int32_t button, int32_t clicks)
{
    (void)x;
    (void)y;
    (void)button;
    (void)clicks;
    exit(7);
}

static void leave(const char* way, const char* folder)
{
    snprintf(own_path, sizeof(own_path), "%s/own", folder);
    snprintf(channel_path, sizeof(channel_path), "%s/channel", folder);
    int32_t windows[3] = {0};
    for (int i = 0; i < 3 && strcmp(way, "bare") != 0; i++)
        windows[i] = OpenWindow(100 + 250 * i, 100, 200, 150);
    write_something();
    if (strcmp(way, "handler") == 0) {
        SetHandlerForWindow(windows[1], PLINTH_MOUSE_DOWN, (void*)leave_by_click);
        inject_pointer(360, 110);
        inject_button(1, true);
        for (;;)
            FRectangle(windows[0], 0, 0, 100, 100);
    }
    if (strcmp(way, "ended") == 0)
        End();
    exit(7);
}

void ProgramMain(void)
{
    static const char* const ways[] = {"bare", "windows", "handler", "ended"};
    Open_Sys(0);
    if (__GetCommand(2)[0] == '/')
        leave(__GetCommand(1), __GetCommand(2));
    const char* folder = new_folder();
    char output[256];
    snprintf(output, sizeof(output), "%s/output", folder);
    snprintf(own_path, sizeof(own_path), "%s/own", folder);
    snprintf(channel_path, sizeof(channel_path), "%s/channel", folder);
    for (int i = 0; i < 4; i++) {
        const int status = run_again(ways[i], folder, output);
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 7)
            fprintf(stderr, "%s: status %x\n", ways[i], (unsigned)status);
        expect(WIFEXITED(status) && WEXITSTATUS(status) == 7);
        expect(holds(own_path, "own, farewell"));
        expect(holds(channel_path, "channel"));
        expect(holds(output, "said"));
    }
    remove_folder(folder);
    End();
}
