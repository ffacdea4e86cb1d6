/* The program's code has returned; the process ends when the user has closed the last window, one
   of which refuses at first. */

#include <Injection.h>
#include <plinth.h>
#include <stdlib.h>

static int asked;

static int32_t refuse_once(void)
{
    if (asked++ == 0) {
        inject_window_close(310, 110);
        return 256; /* only the low byte counts */
    }
    return 1;
}

void ProgramMain(void)
{
    Open_Sys(0);
    OpenWindow(20, 100, 150, 100);
    int32_t window = OpenWindow(300, 100, 150, 100);
    SetHandlerForWindow(window, PLINTH_CLOSE_REQUESTED, (void*)refuse_once);
    inject_window_close(30, 110);
    inject_window_close(310, 110);
}
