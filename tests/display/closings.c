/* Opens windows, and closes them in the way that the first argument names; what it wrote to a
   channel before is left to be flushed. closings WAY WINDOWS DELAY_MS FILE */

#include <plinth.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static const int32_t kPointerRounds = 6;

static int32_t windows[8];
static int32_t count;
static int32_t delay_us;

static void pause_for(int32_t microseconds)
{
    if (microseconds > 0)
        usleep((useconds_t)microseconds);
}

static void open_windows(void* redrawn)
{
    for (int32_t i = 0; i < count; i++) {
        windows[i] = OpenWindow(40 + 60 * i, 60 + 40 * i, 220, 160);
        SetHandlerForWindow(windows[i], PLINTH_REDRAWN, redrawn);
        SetForeColor(windows[i], 0x2060c0ff, 0xffffffff);
        FRectangle(windows[i], 0, 0, 200, 100);
    }
}

static void ends(void) { End(); }

static void end_in_handler(void)
{
    open_windows((void*)ends);
    pause();
}

static void close_in_turn(void)
{
    open_windows(NULL);
    pause_for(delay_us);
    for (int32_t i = 0; i < count; i++)
        CloseWindow(windows[i]);
}

static void end_at_once(void)
{
    open_windows(NULL);
    pause_for(delay_us);
    End();
}

static int32_t under_pointer;
static void close_under_pointer(int32_t x, int32_t y)
{
    (void)x;
    (void)y;
    CloseWindow(under_pointer);
}

/* One window at a time, where the pointer is moving; every other one is closed by its own handler.
 */
static void close_under_the_pointer(void)
{
    int32_t keeper = OpenWindow(600, 500, 100, 100);
    for (int32_t i = 0; i < kPointerRounds * count; i++) {
        under_pointer = OpenWindow(100, 100, 300, 300);
        FRectangle(under_pointer, 0, 0, 200, 100);
        if (i % 2 != 0)
            SetHandlerForWindow(under_pointer, PLINTH_MOUSE_MOVED, (void*)close_under_pointer);
        pause_for(delay_us);
        CloseWindow(under_pointer);
    }
    CloseWindow(keeper);
}

/* Somebody else ends it all. */
static void wait_for_the_end(void)
{
    open_windows(NULL);
    puts("ready");
    fflush(stdout);
    pause();
}

static void let_others_wait(void)
{
    open_windows(NULL);
    puts("ready");
    fflush(stdout);
}

static const struct {
    const char* name;
    void (*go)(void);
} kWays[] = {
    {"end", end_at_once},
    {"in-turn", close_in_turn},
    {"in-handler", end_in_handler},
    {"under-pointer", close_under_the_pointer},
    {"lost-while-busy", wait_for_the_end},
    {"lost", let_others_wait},
};

void ProgramMain(void)
{
    Open_Sys(0);
    count = atoi(__GetCommand(2));
    delay_us = 1000 * atoi(__GetCommand(3));
    int32_t channel = OpenFile(__GetCommand(4), 1);
    for (int32_t i = 0; i < 100; i++)
        WriteFile(channel, "twenty-nine bytes and a feed\n\n");
    for (size_t i = 0; i < sizeof(kWays) / sizeof(*kWays); i++) {
        if (strcmp(__GetCommand(1), kWays[i].name) == 0)
            kWays[i].go();
    }
}
