/* A process that ends while its program's thread writes leaves whole lines, each of them once and
   in order: what is flushed at the end is no piece of a call. */

#include "again.h"

#include <Injection.h>

enum { kLine = 8, kRuns = 12 };

static void end(int32_t key, int32_t modifiers)
{
    (void)key;
    (void)modifiers;
    exit(7);
}

/* The key is pressed when the first lines have left the stream's buffer. */
static void write_for_ever(const char* path)
{
    const int32_t window = OpenWindow(100, 100, 100, 80);
    SetHandlerForWindow(window, PLINTH_KEY, (void*)end);
    inject_window_activate(110, 110);
    const int32_t channel = OpenFile(path, 1);
    for (int32_t i = 0;; i++) {
        char line[16];
        snprintf(line, sizeof(line), "%07d\n", (int)(i % 10000000));
        WriteFile(channel, line);
        if (i == 2000)
            inject_text("q");
    }
}

static void expect_lines(const char* path)
{
    FILE* file = fopen(path, "r");
    expect(file != NULL);
    char line[kLine];
    int32_t lines = 0;
    size_t length;
    while ((length = fread(line, 1, kLine, file)) == kLine) {
        char expected[16];
        snprintf(expected, sizeof(expected), "%07d\n", (int)(lines++ % 10000000));
        expect(memcmp(line, expected, kLine) == 0);
    }
    fclose(file);
    expect(length == 0 && lines > 2000);
}

void ProgramMain(void)
{
    Open_Sys(0);
    if (strcmp(__GetCommand(1), "write") == 0)
        write_for_ever(__GetCommand(2));
    const char* folder = new_folder();
    char path[256];
    snprintf(path, sizeof(path), "%s/lines", folder);
    for (int i = 0; i < kRuns; i++) {
        const int status = run_again("write", path, NULL);
        expect(WIFEXITED(status) && WEXITSTATUS(status) == 7);
        expect_lines(path);
    }
    remove_folder(folder);
    End();
}
