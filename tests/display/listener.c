/* A program with one window that prints each call of a handler as a line: slot, then arguments. It
   refuses to close the first time. With an argument a second window opens beside it, which closes
   itself when it is clicked. */

#include <plinth.h>
#include <stdio.h>

static int refused;

static void activated(void) { puts("activated"); }
static void deactivated(void) { puts("deactivated"); }
static void minimized(int32_t state) { printf("minimized %d\n", state); }
static void moved(int32_t x, int32_t y) { printf("moved %d %d\n", x, y); }
static void hidden(void) { puts("hidden"); }
static void shown(void) { puts("shown"); }
static void resized(int32_t w, int32_t h) { printf("resized %d %d\n", w, h); }
static void redrawn(int32_t width) { printf("redrawn %d\n", width); }
static void zoomed(void) { puts("zoomed"); }
static void sent(int32_t old, int32_t set) { printf("workspaces %x %x\n", old, set); }
static void key(int32_t code, int32_t modifiers) { printf("key %d %x\n", code, modifiers & 0xff); }
static void mouse_moved(int32_t x, int32_t y) { printf("pointer %d %d\n", x, y); }

static int32_t close_requested(void)
{
    puts(refused ? "closing" : "refused");
    return refused++;
}

static void mouse_down(int32_t x, int32_t y, int32_t button, int32_t clicks)
{
    printf("press %d %d %d %d\n", x, y, button, clicks);
}

static void dropped(int32_t count, char** paths)
{
    for (int32_t i = 0; i < count; i++)
        printf("dropped %s\n", paths[i]);
}

static int32_t second;
static void close_itself(int32_t x, int32_t y, int32_t button, int32_t clicks)
{
    printf("closes itself %d %d %d %d\n", x, y, button, clicks);
    CloseWindow(second);
}

void ProgramMain(void)
{
    static const struct {
        int slot;
        void* handler;
    } handlers[] = {
        {PLINTH_ACTIVATED, (void*)activated},
        {PLINTH_DEACTIVATED, (void*)deactivated},
        {PLINTH_MINIMIZED, (void*)minimized},
        {PLINTH_MOVED, (void*)moved},
        {PLINTH_HIDDEN, (void*)hidden},
        {PLINTH_SHOWN, (void*)shown},
        {PLINTH_RESIZED, (void*)resized},
        {PLINTH_REDRAWN, (void*)redrawn},
        {PLINTH_ZOOMED, (void*)zoomed},
        {PLINTH_WORKSPACES_CHANGED, (void*)sent},
        {PLINTH_CLOSE_REQUESTED, (void*)close_requested},
        {PLINTH_KEY, (void*)key},
        {PLINTH_MOUSE_DOWN, (void*)mouse_down},
        {PLINTH_MOUSE_MOVED, (void*)mouse_moved},
        {PLINTH_FILES_DROPPED, (void*)dropped},
    };
    setvbuf(stdout, NULL, _IOLBF, 0);
    Open_Sys(0);
    int32_t window = OpenWindow(100, 120, 299, 199);
    for (unsigned i = 0; i < sizeof(handlers) / sizeof(*handlers); i++)
        SetHandlerForWindow(window, handlers[i].slot, handlers[i].handler);
    SetForeColor(window, 0x2060c0ff, 0xffffffff);
    FRectangle(window, 0, 0, 299, 199);
    if (__GetCommand(1)[0] != '\0') {
        second = OpenWindow(500, 120, 299, 199);
        SetHandlerForWindow(second, PLINTH_MOUSE_DOWN, (void*)close_itself);
    }
    puts("ready");
}
