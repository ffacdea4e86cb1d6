/* A program with two windows that does what it reads from its standard input, a call a line: the
   name, the number of the window (1 or 2), and the numbers or the text that the call takes. Answers
   and calls of handlers are printed as lines. */

#include <plinth.h>

#include <stdio.h>
#include <string.h>

static int32_t windows[3];

static void activated(void) { puts("activated"); }
static void second_activated(void) { puts("second activated"); }
static void minimized(int32_t state) { printf("minimized %d\n", state); }
static void moved(int32_t x, int32_t y) { printf("moved %d %d\n", x, y); }
static void resized(int32_t w, int32_t h) { printf("resized %d %d\n", w, h); }
static void key(int32_t code, int32_t modifiers) { printf("key %d %x\n", code, modifiers & 0xff); }
static void second_key(int32_t code, int32_t modifiers)
{
    (void)modifiers;
    printf("second key %d\n", code);
}
static int32_t close_requested(void)
{
    puts("close requested");
    return 0;
}
static void pressed(int32_t x, int32_t y, int32_t button, int32_t clicks)
{
    (void)button;
    (void)clicks;
    printf("press %d %d\n", x, y);
}

static const struct {
    const char* name;
    void (*call)(int32_t, int32_t);
} settings[] = {
    {"iconify", Iconifie},        {"block", BlockWindow},
    {"look", SetWindowLook},      {"resizable", WindowResizable},
    {"movable", WindowMovable},   {"closable", WindowClosable},
    {"zoomable", WindowZoomable}, {"minimizable", WindowMinimizable},
};
static const struct {
    const char* name;
    void (*call)(int32_t, int32_t, int32_t);
} pairs[] = {
    {"move", MoveWindow},
    {"size", ChangeWindow},
    {"least", SetMinSize},
    {"most", SetMaxSize},
};
static const struct {
    const char* name;
    void (*call)(int32_t);
} actions[] = {
    {"show", ShowWindow},
    {"hide", HideWindow},
    {"activate", ActivateWindow},
    {"center", CenterWindow},
};

static void tell_place(int32_t window)
{
    printf("at %d %d, %d by %d\n", GetWindowPosition(window, 0), GetWindowPosition(window, 1),
           GetWindowPosition(window, 2), GetWindowPosition(window, 3));
}

static void tell_workspaces(int32_t window)
{
    printf("on %x, %d of %d\n", GetWorkspaceWin(window), GetCurrentWorkspace(), CountWorkspace());
}

// Through two thousand places to the last.
static void flood(int32_t window, int32_t x, int32_t y)
{
    for (int32_t i = 2000; i >= 0; i--)
        MoveWindow(window, x + i % 50, y + i % 70);
}

// Faster than any screen follows.
static void wink(int32_t window)
{
    for (int32_t i = 0; i < 10; i++) {
        Iconifie(window, 1);
        Iconifie(window, 0);
    }
    puts("winked");
}

#define IS(text) (strcmp(name, text) == 0)

static void obey(const char* name, int32_t window, int32_t x, int32_t y, const char* rest)
{
    for (unsigned i = 0; i < sizeof settings / sizeof *settings; i++)
        if (IS(settings[i].name))
            settings[i].call(window, x);
    for (unsigned i = 0; i < sizeof pairs / sizeof *pairs; i++)
        if (IS(pairs[i].name))
            pairs[i].call(window, x, y);
    for (unsigned i = 0; i < sizeof actions / sizeof *actions; i++)
        if (IS(actions[i].name))
            actions[i].call(window);
    if (IS("flood"))
        flood(window, x, y);
    if (IS("wink"))
        wink(window);
    if (IS("title"))
        SetWindowTitle(window, rest);
    if (IS("workspaces"))
        SetWorkspaceWin(window, (uint32_t)x);
    if (IS("workspace"))
        SetCurrentWorkspace(x);
    if (IS("count"))
        SetMaxWorkspace(x);
    if (IS("place"))
        tell_place(window);
    if (IS("where"))
        tell_workspaces(window);
}

void ProgramMain(void)
{
    static const struct {
        int window, slot;
        void* handler;
    } handlers[] = {
        {1, PLINTH_ACTIVATED, (void*)activated},
        {1, PLINTH_MINIMIZED, (void*)minimized},
        {1, PLINTH_MOVED, (void*)moved},
        {1, PLINTH_RESIZED, (void*)resized},
        {1, PLINTH_KEY, (void*)key},
        {1, PLINTH_CLOSE_REQUESTED, (void*)close_requested},
        {1, PLINTH_MOUSE_DOWN, (void*)pressed},
        {2, PLINTH_ACTIVATED, (void*)second_activated},
        {2, PLINTH_KEY, (void*)second_key},
    };
    char line[512], name[32];
    setvbuf(stdout, NULL, _IOLBF, 0);
    Open_Sys(0);
    windows[1] = OpenWindow(100, 120, 299, 199);
    windows[2] = OpenWindow(500, 120, 199, 149);
    SetWindowTitle(windows[1], "first window");
    SetWindowTitle(windows[2], "second window");
    for (unsigned i = 0; i < sizeof handlers / sizeof *handlers; i++)
        SetHandlerForWindow(windows[handlers[i].window], handlers[i].slot, handlers[i].handler);
    puts("ready");
    while (fgets(line, sizeof line, stdin) != NULL) {
        int32_t which = 0, x = 0, y = 0;
        int text = 0;
        line[strcspn(line, "\n")] = 0;
        if (sscanf(line, "%31s %d %n%d %d", name, &which, &text, &x, &y) >= 1 && which >= 0 &&
            which <= 2)
            obey(name, windows[which], x, y, line + text);
    }
    End();
}
