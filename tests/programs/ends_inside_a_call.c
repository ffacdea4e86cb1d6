/* The application quits while the program's thread is drawing without end. */

#include <Injection.h>
#include <plinth.h>

static void on_key(int32_t key, int32_t modifiers)
{
    (void)key;
    (void)modifiers;
    End();
}

void ProgramMain(void)
{
    Open_Sys(0);
    int32_t window = OpenWindow(100, 100, 300, 200);
    SetHandlerForWindow(window, PLINTH_KEY, (void*)on_key);
    inject_window_activate(110, 110);
    for (uint32_t i = 0;; i++) {
        SetForeColor(window, i << 8 | 255, 0xFFFFFFFF);
        FRectangle(window, 0, 0, 300, 200);
        Text(window, "still here");
        MoveTo(window, 10, 10);
        OpenDebug();
        if (i == 100)
            inject_text("q");
    }
}
