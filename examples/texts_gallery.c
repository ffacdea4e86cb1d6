/* Gadgets that hold texts: lists and outlines with every choice of scroll bars, entry fields,
   editors, tabs. */

#include <plinth.h>

#include <stdio.h>

#include "gallery.h"

enum { WIDTH = 564, HEIGHT = 312 };
enum { LISTS = 7, OUTLINES = 20, TABS = 25 };

static int32_t window;

LOGGED(list)
LOGGED(outline)
LOGGED(field)
LOGGED(editor)
LOGGED(tabs)
LOGGED(paged)

static void on_list_opened(int32_t row) { gallery_log("list", "opened", row); }

static void on_list_drop(int32_t files, char **paths)
{
    (void)paths;
    gallery_log("list", "files", files);
}

/* Rows that cannot be chosen are grey, rather than red. */
static void quiet_colors(int32_t ident)
{
    ChangeLvColor(ident, -1, -1, -1, -1, (int32_t)0xE2E2E2FF, (int32_t)0x8C8C8CFF);
}

static void fill_list(int32_t ident)
{
    char text[32];
    quiet_colors(ident);
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
    quiet_colors(ident);
    HideGadget(window, ident);
    SetBackColorGadget(ident, (int32_t)0xE2E2E2FF); /* below the rows as well */
    SetGadget(window, ident);
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

static void on_field_input(const char *text) { gallery_log("field", text, -1); }

static void on_field_enter(const char *text) { gallery_log("entered", text, -1); }

static void fill_field(int32_t ident)
{
    field_log(ident);
    SetMaxSizeString(ident, 40);
    SetDiviser(ident, 52);
    SetHandlerForGadget(ident, PLINTH_GADGET_INPUT, (void *)on_field_input);
    SetHandlerForGadget(ident, PLINTH_GADGET_ENTER, (void *)on_field_enter);
}

static void make_fields(int32_t y)
{
    static const char *const labels[] = {"Text", "Number", "Secret", "Decimal"};
    for (int32_t i = 0; i < 4; i++)
        fill_field(
            CreateGadget(PLINTH_STRING_FIELD + i, window, 10 + i * 138, y, 128, 22, labels[i], 0));
}

static void fill_editor(int32_t ident)
{
    const int32_t large = OpenFont(NULL, "Bold", 16);
    editor_log(ident);
    TEditSetText(ident, "A text of several lines, the long ones broken, and styles.\nThe end.");
    TEditSetFont(ident, 2, 6, large);
    TEditSetColor(ident, 2, 6, (int32_t)0xC62828FF);
    CloseFont(large);
}

static void make_tabs(int32_t y)
{
    static const char *const names[] = {"First", "Second", "Third"};
    const int32_t ident = CreateGadget(TABS, window, 10, y, 542, 66, NULL, 0);
    for (int32_t i = 0; i < 3; i++)
        AddTab(ident, names[i]);
    for (int32_t i = 0; i < 3; i++) {
        const int32_t kind = i == 1 ? PLINTH_CHECK_BOX : PLINTH_BUTTON;
        const int32_t page = CreateGadget(kind, window, 10 + i * 40, 8, 120, 24, names[i], 0);
        paged_log(page);
        AddGadgetInTab(page, ident, i);
    }
    TabEnable(ident, 2, 0);
    tabs_log(ident);
}

void texts_open(int32_t left, int32_t top)
{
    window = OpenWindow(left, top, WIDTH, HEIGHT);
    SetWindowTitle(window, "Lists and texts");
    row_of_four(LISTS, 8, 128, 60, fill_list);
    row_of_four(OUTLINES, 74, 128, 60, fill_outline);
    make_fields(142);
    row_of_four(PLINTH_TEXT_EDITOR, 172, 108, 42, fill_editor);
    make_tabs(240);
}
