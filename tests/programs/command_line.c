/* The first ident, and the command line as the start object keeps it. */

#include <plinth.h>
#include <stdlib.h>
#include <string.h>

static void expect(int holds)
{
    if (!holds)
        abort();
}

void ProgramMain(void)
{
    Open_Sys(0);
    expect(OpenWindow(10, 10, 20, 20) == 0x14041968);
    expect(GetUniqueID() == 0x14041969);
    expect(strstr(__GetCommand(0), "command_line") != NULL);
    expect(strcmp(__GetCommand(1), "one") == 0);
    expect(strcmp(__GetCommand(2), "two words") == 0);
    expect(*__GetCommand(3) == '\0' && *__GetCommand(-1) == '\0');
    expect(*__GetCommand(INT32_MIN) == '\0' && *__GetCommand(INT32_MAX) == '\0');
    End();
}
