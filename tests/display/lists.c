/* A window with a list of several selected rows, an outline and tabs that prints what its handlers
   are told: the rows that are selected, keys, double clicks, tabs and dropped files. */

#include <plinth.h>
#include <stdio.h>

static int32_t list, outline, tabs;

static int32_t selected(int32_t first)
{
    printf("first %d rows", first);
    for (int32_t i = 0; i < CountEntry(list); i++) {
        if (IsItemSelected(list, i))
            printf(" %d", i);
    }
    puts("");
    return 0;
}
static int32_t key(int32_t code, int32_t modifiers)
{
    printf("key %d %x\n", code, modifiers & 7);
    return 0;
}
static int32_t twice(int32_t row)
{
    printf("double %d\n", row);
    return 0;
}
static int32_t in_outline(int32_t row)
{
    printf("outline %d of %d\n", row, CountEntry(outline));
    return 0;
}
static int32_t tab(int32_t index)
{
    printf("tab %d\n", index);
    return 0;
}
static int32_t dropped(int32_t count, char** paths)
{
    for (int32_t i = 0; i < count; i++)
        printf("dropped %s\n", paths[i]);
    return 0;
}

void ProgramMain(void)
{
    setvbuf(stdout, NULL, _IOLBF, 0);
    Open_Sys(0);
    const int32_t window = OpenWindow(100, 120, 400, 300);
    list = CreateGadget(8, window, 10, 10, 170, 120, NULL, 0);
    outline = CreateGadget(20, window, 200, 10, 170, 120, NULL, 0);
    tabs = CreateGadget(25, window, 10, 150, 370, 120, NULL, 0);
    for (int32_t i = 0; i < 30; i++) {
        char text[20];
        snprintf(text, sizeof text, "Row %d", i);
        AddLvEntry(list, text);
    }
    AddLvEntry(outline, "Top");
    AddEntryInSub(outline, 0, "Below");
    AddLvEntry(outline, "Next");
    for (int32_t i = 0; i < 3; i++)
        AddTab(tabs, "Tab");
    SetMultiSelect(list, 1);
    FocusOnClick(list, 1);
    FocusOnClick(outline, 1);
    SetHandlerForGadget(list, 2, (void*)key);
    SetHandlerForGadget(list, 3, (void*)selected);
    SetHandlerForGadget(list, 6, (void*)twice);
    SetHandlerForGadget(list, 7, (void*)dropped);
    SetHandlerForGadget(outline, 3, (void*)in_outline);
    SetHandlerForGadget(tabs, 3, (void*)tab);
    puts("ready");
}
