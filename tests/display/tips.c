/* A program with a window, at (100, 120) or where its two arguments say, and a button in it that
   has a tool tip. Prints when the button is pressed. */

#include <plinth.h>
#include <stdio.h>
#include <stdlib.h>

static void pressed(void) { puts("pressed"); }

void ProgramMain(void)
{
    const int32_t x = __argc > 2 ? atoi(__argv[1]) : 100, y = __argc > 2 ? atoi(__argv[2]) : 120;
    setvbuf(stdout, NULL, _IOLBF, 0);
    Open_Sys(0);
    int32_t window = OpenWindow(x, y, 299, 199);
    int32_t button = CreateGadget(PLINTH_BUTTON, window, 20, 20, 80, 24, "button", 0);
    SetHandlerForGadget(button, PLINTH_GADGET_ACTION, (void*)pressed);
    SetTipsWindow(button, "What the button does");
    puts("ready");
}
