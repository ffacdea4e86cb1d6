/* End closes every window without asking, and a second End does no harm. */

#include <plinth.h>
#include <stdlib.h>

static int32_t refuse(void) { abort(); }

void ProgramMain(void)
{
    Open_Sys(0);
    for (int i = 0; i < 4; i++) {
        int32_t window = OpenWindow(10 + 50 * i, 60, 120, 80);
        SetHandlerForWindow(window, PLINTH_CLOSE_REQUESTED, (void*)refuse);
        if (window == 0)
            abort();
    }
    End();
    End();
}
