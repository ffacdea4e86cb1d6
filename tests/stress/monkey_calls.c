/* Calls of every function that gadgets have, and of those that change their windows, with any
   arguments. */

#include "monkey.h"

#include <plinth.h>

#include <limits.h>
#include <stdbool.h>
#include <stdlib.h>
#include <string.h>

static _Atomic int32_t first_ident;

void monkey_keep_below(int32_t ident) { first_ident = ident; }

/* --- arguments */

static int32_t any_int(void)
{
    static const int32_t edges[] = {0, -1, 1, 2, INT_MAX, INT_MIN, INT_MAX - 1, 255, 256, 100};
    switch (monkey_number(4)) {
        case 0:
            return edges[monkey_number(sizeof edges / sizeof edges[0])];
        case 1:
            return (int32_t)monkey_number(UINT32_MAX);
        default:
            return (int32_t)monkey_number(300) - 20;
    }
}

static int32_t lately_given(bool (*is_one)(int32_t))
{
    const uint32_t end = GetUniqueID();
    const uint32_t count = end - (uint32_t)first_ident;
    for (int32_t i = 0; i < 30 && count > 0; i++) {
        const int32_t ident = first_ident + (int32_t)monkey_number(count);
        if (is_one(ident))
            return ident;
    }
    return any_int();
}

int32_t monkey_gadget(void)
{
    return monkey_number(12) != 0 ? lately_given(is_gadget_ident) : monkey_window();
}

int32_t monkey_window(void)
{
    return monkey_number(12) != 0 ? lately_given(is_window_ident) : any_int();
}

static const char* any_text(void)
{
    static char long_text[100001];
    static const char* const texts[] = {NULL,
                                        "",
                                        "text",
                                        "two\nlines",
                                        "\xff\xfe\x80",
                                        "%s%n",
                                        "Gr\xc3\xbc\xc3\x9f"
                                        "e"};
    if (monkey_number(40) != 0)
        return texts[monkey_number(sizeof texts / sizeof texts[0])];
    if (long_text[0] == '\0')
        memset(long_text, 'x', sizeof long_text - 1);
    return long_text;
}

static const char* const* any_texts(void)
{
    static const char* const none[] = {NULL};
    static const char* const empty[] = {"", NULL};
    static const char* const gap[] = {"a", "", "longer", NULL};
    static const char* const three[] = {"one", "two", "three", NULL};
    static const char* const pop_up[] = {"i*00000001First", "i*00000002Second", "q", NULL};
    static const char* const* const all[] = {NULL, none, empty, gap, three, three, pop_up};
    return all[monkey_number(sizeof all / sizeof all[0])];
}

static int32_t any_font(void)
{
    static _Atomic int32_t fonts[4];
    const uint32_t place = monkey_number(4);
    if (monkey_number(8) == 0) {
        CloseFont(fonts[place]);
        fonts[place] = OpenFont(NULL, NULL, 8 + (int32_t)monkey_number(30));
    }
    return fonts[place];
}

static int32_t any_menu(void)
{
    static _Atomic int32_t menu;
    if (menu == 0 || monkey_number(20) == 0) {
        KillMenu(menu);
        menu = CreatePopUpMenu(any_texts());
    }
    return monkey_number(4) != 0 ? menu : any_int();
}

/* A handler that does something itself. Its arguments are those of any slot. */
static int32_t restless(intptr_t first, intptr_t second)
{
    static _Thread_local int depth;
    monkey_note("handler %ld %ld", (long)first, (long)second);
    if (depth > 2)
        return 1;
    depth++;
    for (uint32_t i = monkey_number(3); i > 0; i--)
        monkey_call();
    depth--;
    return 1;
}

static intptr_t any_handler(void) { return monkey_number(3) != 0 ? (intptr_t)restless : 0; }

/* --- calls */

/* What a call takes, a letter each: a gadget, window, int, text, array of texts, font, menu, slot,
   handler, kind, a size that fits a screen. All are words, which any of these functions can be
   called with. */
struct call {
    const char* name;
    void* function;
    const char* takes;
    int often;
};

#define CALL(name, takes)            \
    {                                \
#name, (void*)name, takes, 4 \
    }
#define SELDOM(name, takes)          \
    {                                \
#name, (void*)name, takes, 1 \
    }

static const struct call calls[] = {
    CALL(CreateGadget, "kwssssai"),
    CALL(CreateGadget, "kwssssti"),
    CALL(HideGadget, "wg"),
    CALL(SetGadget, "wg"),
    CALL(ShowGadget, "wg"),
    CALL(KillGadget, "wg"),
    SELDOM(RemoveAll, "w"),
    CALL(AttachGadgetToWindow, "wg"),
    CALL(SetHandlerForGadget, "gSh"),
    CALL(FocusOnClick, "gi"),
    CALL(is_gadget_ident, "i"),
    CALL(SetFontGadget, "gf"),
    CALL(SetAntiliasingGadget, "gi"),
    CALL(SetForeColorGadget, "gii"),
    CALL(SetBackColorGadget, "gi"),
    CALL(SetLabel, "gt"),
    CALL(SetEnabled, "gi"),
    CALL(GetEnabled, "g"),
    CALL(ActivateGadget, "g"),
    CALL(AttachPopUpToGadget, "gm"),
    CALL(ResizeGadget, "gss"),
    SELDOM(ResizeGadget, "gii"),
    CALL(SetChecked, "gi"),
    CALL(GetChecked, "g"),
    CALL(SetValue, "gi"),
    CALL(GetValue, "g"),
    CALL(RadSelected, "gi"),
    CALL(MxSelected, "gi"),
    CALL(ChangeMxData, "ga"),
    CALL(SetProportion, "gi"),
    CALL(SetRange, "gii"),
    CALL(SetSteps, "gii"),
    CALL(SetSliderPosition, "gi"),
    CALL(SetSliderProportion, "gi"),
    CALL(SetStyle, "gi"),
    CALL(SetBarColor, "gi"),
    CALL(SetFillColor, "gi"),
    CALL(SetHashCount, "gi"),
    CALL(SetHashType, "gi"),
    CALL(SetLimitsLabel, "gtt"),
    CALL(SetStatusLabel, "gt"),
    CALL(SetStatusTrail, "gt"),
    CALL(SetStatusMaxValue, "gi"),
    CALL(SetStatusValue, "gi"),
    CALL(SetStatusBarColor, "gi"),
    CALL(SetStatusBarHeight, "gi"),
    CALL(SetBorder, "gi"),
    CALL(SetLabelBBox, "gt"),
    CALL(BBoxAddGadget, "gg"),
    CALL(BBoxAddGadgetTitle, "gg"),
    CALL(SetCellSize, "gi"),
    CALL(SetLayout, "gi"),
    CALL(SetColorRgb, "gi"),
    CALL(SetColorInt, "gi"),
    CALL(GetColor, "g"),
    CALL(ReturnIntFromRgb, "iii"),
    CALL(AddLvEntry, "gt"),
    CALL(AddEntryInSub, "git"),
    CALL(RemoveItem, "gi"),
    SELDOM(ClearListView, "g"),
    CALL(ChangeEntryStr, "git"),
    CALL(ChangeItemColor, "giiiii"),
    CALL(EnableItemLv, "gii"),
    CALL(ChangeLvColor, "giiiiii"),
    CALL(SetMultiSelect, "gi"),
    CALL(SetSelectEntry, "gi"),
    CALL(SetDeSelectEntry, "gi"),
    CALL(LvSelectAll, "g"),
    CALL(LvSelectNone, "g"),
    CALL(IsItemSelected, "gi"),
    CALL(CountEntry, "g"),
    CALL(GetLvSelected, "g"),
    CALL(SwapItem, "gii"),
    CALL(MoveItem, "gii"),
    CALL(SortLv, "g"),
    CALL(SetLvSelectEntry, "gii"),
    CALL(CountEntry_system, "gi"),
    CALL(SwapPosition, "giii"),
    CALL(LvExpandSystem, "giii"),
    CALL(TabSystem, "gii"),
    CALL(LvExpand, "gi"),
    CALL(LvCollapse, "gi"),
    CALL(LvExpandAll, "g"),
    CALL(LvCollapseAll, "g"),
    CALL(SetDragLv, "gi"),
    CALL(SetDrawHookLv, "gih"),
    CALL(AddTab, "gt"),
    CALL(RemoveTab, "gi"),
    CALL(AddGadgetInTab, "ggi"),
    CALL(TabEnable, "gii"),
    CALL(TabSelect, "gi"),
    CALL(TabSelection, "g"),
    CALL(TabSetFocus, "gii"),
    CALL(TabSetFocus2, "gi"),
    CALL(SetTabHeight, "gi"),
    CALL(SetTabWidth, "gi"),
    CALL(ToolTipsWindow, "wi"),
    CALL(SetTipsWindow, "gt"),
    CALL(SetString, "gt"),
    CALL(GetString, "g"),
    CALL(SetInteger, "gi"),
    CALL(SetMaxSizeString, "gi"),
    CALL(SetFilterString, "gi"),
    CALL(SetDiviser, "gi"),
    CALL(SetStringInputHandler, "gh"),
    CALL(SetStringEnterHandler, "gh"),
    CALL(MakeStringSelectable, "gii"),
    CALL(SelectCommand, "gi"),
    CALL(SetTextString, "gt"),
    CALL(SetNumberString, "gi"),
    CALL(TEditSetText, "gt"),
    CALL(TEditInsertText, "gt"),
    CALL(TEditSetMaxSize, "gi"),
    CALL(TEditGotoLine, "gi"),
    CALL(TEditSetTabWidth, "gi"),
    CALL(TEditCommand, "gii"),
    CALL(TEditCountLines, "g"),
    CALL(TEditGetSize, "g"),
    CALL(TEditLineAt, "gi"),
    CALL(TEditLineStart, "gi"),
    CALL(TEditCaret, "g"),
    CALL(TEditGetSelection, "gi"),
    CALL(TEditSelect, "gii"),
    CALL(TEditReplaceSelection, "gt"),
    CALL(TEditFind, "gtii"),
    CALL(TEditUndo, "g"),
    CALL(TEditRedo, "g"),
    CALL(TEditSetColor, "giii"),
    CALL(TEditSetFont, "giif"),
    SELDOM(SetDefaultButton, "wg"),
    SELDOM(MoveWindow, "wss"),
    SELDOM(ChangeWindow, "wss"),
    SELDOM(CenterWindow, "w"),
    SELDOM(HideWindow, "w"),
    CALL(ShowWindow, "w"),
    SELDOM(ActivateWindow, "w"),
    SELDOM(Iconifie, "wi"),
    SELDOM(SetWindowLook, "wi"),
    SELDOM(CloseWindow, "w"),
    CALL(FRectangle, "wssss"),
    CALL(SetRefreshWindowMode, "wi"),
};

#undef CALL
#undef SELDOM

static intptr_t any_argument(char kind)
{
    switch (kind) {
        case 'g':
            return monkey_gadget();
        case 'w':
            return monkey_window();
        case 't':
            return (intptr_t)any_text();
        case 'a':
            return (intptr_t)any_texts();
        case 'f':
            return any_font();
        case 'm':
            return any_menu();
        case 'S':
            return (intptr_t)monkey_number(10);
        case 'h':
            return any_handler();
        case 'k':
            return (intptr_t)monkey_number(36);
        case 's':
            return (intptr_t)monkey_number(300);
        default:
            return any_int();
    }
}

/* Kinds whose text is an array get one, others a text. */
static bool fits_kind(const struct call* call, int32_t kind)
{
    return call->function != (void*)CreateGadget ||
           (kind == PLINTH_RADIO_GROUP || kind == PLINTH_CHOICE_FIELD) == (call->takes[6] == 'a');
}

void monkey_call(void)
{
    const struct call* call = &calls[monkey_number(sizeof calls / sizeof calls[0])];
    intptr_t words[8] = {0};
    if (call->often == 1 && monkey_number(8) != 0)
        return;
    for (int i = 0; call->takes[i] != '\0'; i++)
        words[i] = any_argument(call->takes[i]);
    if (!fits_kind(call, (int32_t)words[0]))
        return;
    monkey_note("%s %s %lx %lx %lx %lx", call->name, call->takes, (long)words[0], (long)words[1],
                (long)words[2], (long)words[3]);
    typedef intptr_t (*function)(intptr_t, intptr_t, intptr_t, intptr_t, intptr_t, intptr_t,
                                 intptr_t, intptr_t);
    ((function)call->function)(words[0], words[1], words[2], words[3], words[4], words[5], words[6],
                               words[7]);
}

void monkey_kill_all(void)
{
    const int32_t end = (int32_t)GetUniqueID();
    for (int32_t ident = first_ident; ident < end; ident++)
        KillGadget(0, ident);
}

int32_t monkey_count(void)
{
    const int32_t end = (int32_t)GetUniqueID();
    int32_t count = 0;
    for (int32_t ident = first_ident; ident < end; ident++)
        count += is_gadget_ident(ident);
    return count;
}
