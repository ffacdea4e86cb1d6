/* Several registries: the windows of the older ones are known no more, and closing an older one
   leaves those of the newest alone. */

#include <Injection.h>
#include <plinth.h>
#include <stdlib.h>

static void expect(int holds)
{
    if (!holds)
        abort();
}

void ProgramMain(void)
{
    void** first = Open_Sys(1);
    int32_t old = OpenWindow(10, 10, 100, 100);
    FRectangle(old, 0, 0, 5, 5);
    Open_Sys(1);
    expect(!is_window_ident(old));
    int32_t window = OpenWindow(300, 10, 100, 100);
    inject_window_close(20, 20);
    Close_Sys(first);
    expect(is_window_ident(window));
    for (int i = 0; i < 20; i++) {
        CloseWindow(OpenWindow(10, 150, 100, 100));
        FRectangle(old, 0, 0, 5, 5);
    }
    Open_Sys(0);
    End();
}
