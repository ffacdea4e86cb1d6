/* Close_Sys, even of no table, and End quit the application, but not that of a host. */

#include <plinth.h>
#include <stdlib.h>

static volatile int sMayQuit = 0;

static void check(void)
{
    if (!sMayQuit)
        abort();
}

void ProgramMain(void)
{
    atexit(check);
    void** table = Open_Sys(200);
    End();
    Close_Sys(NULL);
    Close_Sys(table);
    WaitTicks(50000); /* time to quit in, which it must not */
    sMayQuit = 1;
    Open_Sys(0);
    Close_Sys(NULL);
    for (;;)
        WaitTicks(10000);
}
