/* A window with a menu bar and a pop-up menu that prints what is chosen, pressed and typed. With a
   place as its arguments it opens there, and its pop-up menu has a hundred items. A line "close"
   that it reads closes the window. */

#include <plinth.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static const char* const bar[] = {"t*00000000File",
                                  "iO00000101Open",
                                  "i*00000102Save",
                                  "x*00000000Recent",
                                  "e*00000103xxxx",
                                  "s*00000104xxxx",
                                  "i*00000105Close",
                                  "i*00000106Remove",
                                  "t*00000000Edit",
                                  "i*00000201Undo",
                                  "i*00000202Redo",
                                  "q",
                                  NULL};
static const char* const pop_up[] = {"i*00000301One", "i*00000302Two", "q", NULL};

static int32_t window, menu;

static void choice(int32_t code)
{
    printf("choice %d\n", code);
    if (code == 105)
        CloseWindow(window);
    if (code != 106)
        return;
    RemoveMenu(window);
    KillMenu(menu);
    printf("attached %d\n", AttachMenuToWin(window, menu));
}
static void beginning(void) { puts("menus"); }
static void key(int32_t code, int32_t modifiers) { printf("key %d %x\n", code, modifiers & 7); }
static void press(int32_t x, int32_t y, int32_t button, int32_t clicks)
{
    printf("press %d %d %d %d\n", x, y, button, clicks);
}

// "Item 001" and so on, with codes from 1.
static int32_t tall_menu(void)
{
    static char lines[100][32];
    static const char* all[102];
    for (int i = 0; i < 100; i++) {
        snprintf(lines[i], sizeof lines[i], "i*0000%04dItem %03d", i + 1, i + 1);
        all[i] = lines[i];
    }
    all[100] = "q";
    return CreatePopUpMenu(all);
}

void ProgramMain(void)
{
    const int32_t x = __argc > 2 ? atoi(__argv[1]) : 100, y = __argc > 2 ? atoi(__argv[2]) : 120;
    setvbuf(stdout, NULL, _IOLBF, 0);
    Open_Sys(0);
    window = OpenWindow(x, y, 299, 199);
    SetHandlerForWindow(window, PLINTH_MENU_ITEM, (void*)choice);
    SetHandlerForWindow(window, PLINTH_MENUS_BEGINNING, (void*)beginning);
    SetHandlerForWindow(window, PLINTH_KEY, (void*)key);
    SetHandlerForWindow(window, PLINTH_MOUSE_DOWN, (void*)press);
    menu = CreateMenu(bar);
    AttachMenuToWin(window, menu);
    AttachPopUpToWindow(window, __argc > 2 ? tall_menu() : CreatePopUpMenu(pop_up));
    puts("ready");
    char line[16];
    while (fgets(line, sizeof line, stdin) != NULL)
        if (strcmp(line, "close\n") == 0)
            CloseWindow(window);
}
