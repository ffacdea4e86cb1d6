/* What was written to a channel is in its file, though the program's thread was still busy when the
   application quit. The program starts itself once more to see that. */

#include <Injection.h>
#include <plinth.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static void on_key(int32_t key, int32_t modifiers)
{
    (void)key;
    (void)modifiers;
    End();
}

static void write_and_quit(const char* path)
{
    int32_t window = OpenWindow(100, 100, 300, 200);
    SetHandlerForWindow(window, PLINTH_KEY, (void*)on_key);
    inject_window_activate(110, 110);
    int32_t channel = OpenFile(path, 1);
    WriteFile(channel, "kept");
    inject_text("q");
    for (;;)
        FRectangle(window, 0, 0, 300, 200);
}

void ProgramMain(void)
{
    Open_Sys(0);
    if (strcmp(__GetCommand(1), "write") == 0)
        write_and_quit(__GetCommand(2));

    char path[] = "/tmp/plinth-kept-XXXXXX";
    int file = mkstemp(path);
    char command[4096];
    snprintf(command, sizeof command, "'%s' write '%s'", __GetCommand(0), path);
    char text[8] = "";
    if (file < 0 || system(command) != 0 || read(file, text, 7) != 4 || strcmp(text, "kept") != 0)
        abort();
    close(file);
    unlink(path);
    End();
}
