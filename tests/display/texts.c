/* A window with entry fields and an editor that prints what their handlers are told. */

#include <plinth.h>
#include <stdio.h>
#include <string.h>

static int32_t field, password, editor;

static void input(const char* text) { printf("input %s\n", text); }
static void enter(const char* text) { printf("enter %s\n", text); }
static void changed(int32_t length)
{
    char* text = TEditGetAll(editor);
    for (char* end = text; (end = strchr(end, '\n')) != NULL;)
        *end = '|';
    printf("changed %d %s\n", length, text);
    MyFree(text);
}
static void key(int32_t code, int32_t modifiers)
{
    printf("key %d %x %d-%d\n", code, modifiers & 7, TEditGetSelection(editor, 0),
           TEditGetSelection(editor, 1));
}

static int32_t add_field(int32_t kind, int32_t window, int32_t y)
{
    const int32_t ident = CreateGadget(kind, window, 10, y, 280, 24, "Label", 0);
    SetMaxSizeString(ident, 200);
    SetStringInputHandler(ident, (void*)input);
    SetStringEnterHandler(ident, (void*)enter);
    return ident;
}

void ProgramMain(void)
{
    setvbuf(stdout, NULL, _IOLBF, 0);
    Open_Sys(0);
    int32_t window = OpenWindow(100, 120, 299, 199);
    field = add_field(PLINTH_STRING_FIELD, window, 10);
    password = add_field(PLINTH_PASSWORD_FIELD, window, 40);
    editor = CreateGadget(PLINTH_TEXT_EDITOR + 1, window, 10, 80, 260, 100, NULL, 0);
    SetHandlerForGadget(editor, PLINTH_GADGET_VALUE, (void*)changed);
    SetHandlerForGadget(editor, PLINTH_GADGET_KEY, (void*)key);
    ActivateGadget(field);
    puts("ready");
}
