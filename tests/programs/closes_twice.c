/* Close_Sys with windows open, twice, then calls on what is gone, then End. */

#include <plinth.h>
#include <stdlib.h>

void ProgramMain(void)
{
    void** registry = Open_Sys(0);
    int32_t window = OpenWindow(100, 100, 200, 100);
    SetDefaultGfx(window);
    Close_Sys(registry);
    Close_Sys(registry);
    Close_Sys(NULL);
    FRectangle(window, 0, 0, 10, 10);
    FRectangle(-1, 0, 0, 10, 10);
    Text(window, "gone");
    CloseWindow(window);
    if (is_window_ident(window) || OpenWindow(0, 0, 10, 10) != 0)
        abort();
    End();
}
