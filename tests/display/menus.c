/* A window with a menu bar and a pop-up menu that prints what is chosen, pressed and typed. */

#include <plinth.h>
#include <stdio.h>

static const char* const bar[] = {"t*00000000File",
                                  "iO00000101Open",
                                  "i*00000102Save",
                                  "x*00000000Recent",
                                  "e*00000103xxxx",
                                  "s*00000104xxxx",
                                  "i*00000105Quit",
                                  "t*00000000Edit",
                                  "i*00000201Undo",
                                  "i*00000202Redo",
                                  "q",
                                  NULL};
static const char* const pop_up[] = {"i*00000301One", "i*00000302Two", "q", NULL};

static void choice(int32_t code) { printf("choice %d\n", code); }
static void beginning(void) { puts("menus"); }
static void key(int32_t code, int32_t modifiers) { printf("key %d %x\n", code, modifiers & 7); }
static void press(int32_t x, int32_t y, int32_t button, int32_t clicks)
{
    printf("press %d %d %d %d\n", x, y, button, clicks);
}

void ProgramMain(void)
{
    setvbuf(stdout, NULL, _IOLBF, 0);
    Open_Sys(0);
    int32_t window = OpenWindow(100, 120, 299, 199);
    SetHandlerForWindow(window, PLINTH_MENU_ITEM, (void*)choice);
    SetHandlerForWindow(window, PLINTH_MENUS_BEGINNING, (void*)beginning);
    SetHandlerForWindow(window, PLINTH_KEY, (void*)key);
    SetHandlerForWindow(window, PLINTH_MOUSE_DOWN, (void*)press);
    AttachMenuToWin(window, CreateMenu(bar));
    AttachPopUpToWindow(window, CreatePopUpMenu(pop_up));
    puts("ready");
}
