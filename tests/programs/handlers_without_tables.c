/* Handlers that nothing can unwind: one that closes its own window ends there all the same. What
   its thread held is free again, and who waits for its end goes on. Compiled without tables. */

#include <Injection.h>
#include <plinth.h>
#include <stdatomic.h>
#include <stdlib.h>

static int32_t closing, other;

static void close_own(int32_t x, int32_t y, int32_t button, int32_t clicks)
{
    (void)x;
    (void)y;
    (void)button;
    (void)clicks;
    CloseWindow(closing);
    abort();
}

static int32_t close_own_when_asked(void)
{
    CloseWindow(closing);
    abort();
}

static void expect(int holds)
{
    if (!holds)
        abort();
}

void ProgramMain(void)
{
    Open_Sys(0);
    other = OpenWindow(400, 100, 100, 100);
    for (int i = 0; i < 30; i++) {
        closing = OpenWindow(100, 100, 200, 150);
        SetHandlerForWindow(closing, PLINTH_MOUSE_DOWN, (void*)close_own);
        SetHandlerForWindow(closing, PLINTH_CLOSE_REQUESTED, (void*)close_own_when_asked);
        if (i % 2 == 0) {
            inject_pointer(110, 110);
            inject_button(1, true);
            inject_button(1, false);
        } else {
            inject_window_close(110, 110);
        }
        CloseWindow(closing); /* waits for the thread if it is still there */
        while (is_window_ident(closing))
            WaitTicks(500);
        FRectangle(other, 0, 0, 50, 50);
    }
    expect(is_window_ident(other));
    End();
}
