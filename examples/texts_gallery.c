/* Gadgets that hold texts: lists and outlines with every choice of scroll bars, entry fields,
   editors, tabs. */

#include <plinth.h>

#include <stdio.h>

#include "gallery.h"

enum { WIDTH = 564, HEIGHT = 268 };

static int32_t window;

LOGGED(list)
LOGGED(outline)

static void on_list_opened(int32_t row) { gallery_log("list", "opened", row); }

static void on_list_drop(int32_t files, char **paths)
{
    (void)paths;
    gallery_log("list", "files", files);
}

static void fill_list(int32_t ident)
{
    char text[32];
    for (int32_t i = 1; i <= 12; i++) {
        snprintf(text, sizeof text, i % 4 ? "Row %d" : "Row %d is wider", i);
        AddLvEntry(ident, text);
    }
    EnableItemLv(ident, 2, 0);
    SetSelectEntry(ident, 1);
    SetDragLv(ident, 1);
    list_log(ident);
    SetHandlerForGadget(ident, PLINTH_GADGET_LIST, (void *)on_list_opened);
    SetHandlerForGadget(ident, PLINTH_GADGET_DROP, (void *)on_list_drop);
}

static void fill_outline(int32_t ident)
{
    char text[32];
    for (int32_t i = 0; i < 4; i++) {
        snprintf(text, sizeof text, "Branch %d", i + 1);
        AddLvEntry(ident, text);
        for (int32_t twig = 0; twig < 3; twig++) {
            snprintf(text, sizeof text, "Twig %d", twig + 1);
            AddEntryInSub(ident, i, text);
        }
    }
    LvCollapse(ident, 4);
    outline_log(ident);
}

/* Four kinds that differ by their scroll bars alone: none, upright, lying, both. */
static void row_of_four(int32_t kind, int32_t y, int32_t width, int32_t height,
                        void (*fill)(int32_t))
{
    for (int32_t i = 0; i < 4; i++) {
        const int32_t ident =
            CreateGadget(kind + i, window, 10 + i * 138, y, width, height, NULL, 0);
        if (ident != 0)
            fill(ident);
    }
}

/* Text, a whole number, a password and a decimal number. */
static void fill_field(int32_t ident)
{
    SetDiviser(ident, 0);
    SetString(ident, "1234567");
}

static void fill_editor(int32_t ident)
{
    const int32_t large = OpenFont(NULL, "Bold", 16);
    TEditSetText(ident, "A text of several lines, the long ones broken, and styles.\nThe end.");
    TEditSetFont(ident, 2, 6, large);
    TEditSetColor(ident, 2, 6, (int32_t)0xC62828FF);
    CloseFont(large);
}

void texts_open(int32_t left, int32_t top)
{
    window = OpenWindow(left, top, WIDTH, HEIGHT);
    SetWindowTitle(window, "Lists and texts");
    row_of_four(7, 10, 128, 76, fill_list);
    row_of_four(20, 96, 128, 76, fill_outline);
    row_of_four(PLINTH_STRING_FIELD, 180, 128, 24, fill_field);
    row_of_four(PLINTH_TEXT_EDITOR, 212, 108, 36, fill_editor);
}
