/* A program with a gadget of each sort for a screen reader to look at. Prints what its handlers are
   called with. What a line of its input names is done: "kill" the button, "value" of the slider,
   "label" of the check box, "type" into the field, "close" the second window, "end". */

#include <plinth.h>
#include <stdio.h>
#include <string.h>

static int32_t window, second, button, check, slider, field, list;

static void pressed(void) { puts("pressed"); }
static void checked(int32_t value) { printf("checked %d\n", value); }
static void slid(int32_t value) { printf("slid %d\n", value); }
static void typed(const char* text) { printf("typed %s\n", text); }
static void chosen(int32_t row) { printf("chosen %d\n", row); }
static void edited(void) { puts("edited"); }
static void radio(int32_t which) { printf("radio %d\n", which); }
static void option(int32_t which) { printf("option %d\n", which); }
static void there(void) { puts("there"); }
static void menu(int32_t which) { printf("menu %d\n", which); }

static void obey(const char* line)
{
    static int32_t value = 70;
    if (strcmp(line, "kill") == 0)
        KillGadget(0, button);
    else if (strcmp(line, "value") == 0)
        SetValue(slider, value++);
    else if (strcmp(line, "label") == 0)
        SetLabel(check, "Louder");
    else if (strcmp(line, "type") == 0)
        SetString(field, "typed");
    else if (strcmp(line, "close") == 0)
        CloseWindow(second);
    else if (strcmp(line, "end") == 0)
        End();
    printf("done %s\n", line);
}

static void fill(void)
{
    static const char* const kMenu[] = {"t*00000000File", "iO00000011Open", "i*10000012Save", "q",
                                        NULL};
    static const char* const kColors[] = {"Red", "Green", "Blue", NULL};
    AttachMenuToWin(window, CreateMenu(kMenu));
    SetHandlerForWindow(window, PLINTH_MENU_ITEM, (void*)menu);
    button = CreateGadget(PLINTH_BUTTON, window, 20, 20, 80, 24, "Press me", 0);
    SetHandlerForGadget(button, PLINTH_GADGET_ACTION, (void*)pressed);
    SetTipsWindow(button, "What it does");
    check = CreateGadget(PLINTH_CHECK_BOX, window, 20, 60, 120, 20, "Loud", 0);
    SetHandlerForGadget(check, PLINTH_GADGET_VALUE, (void*)checked);
    slider = CreateGadget(PLINTH_SLIDER, window, 20, 90, 200, 40, "", 100);
    SetHandlerForGadget(slider, PLINTH_GADGET_VALUE, (void*)slid);
    SetTipsWindow(slider, "Volume");
    field = CreateGadget(PLINTH_STRING_FIELD, window, 20, 140, 200, 24, "Name", 0);
    SetHandlerForGadget(field, PLINTH_GADGET_INPUT, (void*)typed);
    SetString(field, "one two");
    const int32_t password =
        CreateGadget(PLINTH_PASSWORD_FIELD, window, 20, 170, 200, 24, "Key", 0);
    SetString(password, "secret");
    list = CreateGadget(8, window, 20, 210, 200, 80, NULL, 0);
    SetTipsWindow(list, "Fruit");
    SetHandlerForGadget(list, PLINTH_GADGET_VALUE, (void*)chosen);
    for (int32_t i = 0; i < 1000; i++) {
        char text[20];
        snprintf(text, sizeof(text), "Row %d", i);
        AddLvEntry(list, text);
    }
    const int32_t outline = CreateGadget(20, window, 250, 20, 200, 80, NULL, 0);
    AddLvEntry(outline, "Top");
    AddEntryInSub(outline, 0, "Below");
    LvExpandAll(outline);
    const int32_t tabs = CreateGadget(25, window, 250, 110, 220, 80, NULL, 0);
    AddTab(tabs, "First");
    AddTab(tabs, "Second");
    const int32_t editor = CreateGadget(27, window, 250, 210, 200, 80, NULL, 0);
    SetTipsWindow(editor, "Letter");
    TEditSetText(editor, "Dear \xc3\xa9\nreader");
    SetHandlerForGadget(editor, PLINTH_GADGET_VALUE, (void*)edited);
    const int32_t choice = CreateGadget(PLINTH_CHOICE_FIELD, window, 20, 310, 200, 24, kColors, 0);
    SetHandlerForGadget(choice, PLINTH_GADGET_VALUE, (void*)option);
    CreateGadget(PLINTH_INTEGER_FIELD, window, 250, 280, 200, 24, "Number", 0);
    SetTextString(CreateGadget(PLINTH_TEXT_LABEL, window, 250, 310, 100, 20, NULL, 0),
                  "Plain \xb1");
    const int32_t radios = CreateGadget(PLINTH_RADIO_GROUP, window, 250, 370, 100, 0, kColors, 0);
    SetTipsWindow(radios, "Radios");
    SetHandlerForGadget(radios, PLINTH_GADGET_VALUE, (void*)radio);
    SetRange(CreateGadget(PLINTH_SCROLL_BAR, window, 250, 340, 200, 15, NULL, 0), 10, 60);
    CreateGadget(PLINTH_STATUS_BAR, window, 20, 345, 200, 40, "Busy", 0);
    const int32_t off = CreateGadget(PLINTH_BUTTON, window, 120, 20, 80, 24, "Off", 0);
    SetEnabled(off, 0);
}

void ProgramMain(void)
{
    char line[64];
    setvbuf(stdout, NULL, _IOLBF, 0);
    Open_Sys(0);
    second = OpenWindow(650, 120, 199, 99);
    SetWindowTitle(second, "Other");
    SetHandlerForGadget(CreateGadget(PLINTH_BUTTON, second, 20, 20, 80, 24, "There", 0),
                        PLINTH_GADGET_ACTION, (void*)there);
    window = OpenWindow(100, 120, 499, 419);
    SetWindowTitle(window, "Told");
    fill();
    puts("ready");
    while (fgets(line, sizeof(line), stdin) != NULL) {
        line[strcspn(line, "\n")] = '\0';
        obey(line);
    }
}
