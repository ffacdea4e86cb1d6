// Entry fields as the user types in them, and as the program reads and sets them.

#include "text_window.h"

#include <MenuField.h>
#include <StringView.h>

#include <atomic>
#include <climits>

namespace {

using EntryFieldTest = TextTest;

const char* const kThree[] = {"a", "b", "c", nullptr};
const int32_t kIdents[] = {0, -1, INT32_MIN, INT32_MAX};

std::atomic<int32_t> sField;

}  // namespace

TEST_F(EntryFieldTest, KindsOfDatesAndTimesAreNotMadeKept)
{
    for (int32_t kind : {36, 37, 45, 46})
        EXPECT_EQ(Make(kind, 10, 10, 200, 24), 0) << kind;
    FilteredField(4);
    FilteredField(7);
    EXPECT_EQ(CountViews(), 2) << "fields become such by their filter";
}

// --- keys, by filter

TEST_F(EntryFieldTest, KeysByFilter)
{
    const struct {
        int32_t filter;
        const char *typed, *shown, *calls;
    } rows[] = {
        {0, "-", "-", "input -"},
        {0, "4-2a.", "42", "input 4, input 42"},
        {0, " ", "", ""},
        {1, "a1 ", "***", "input *, input **, input ***"},
        {2, "-1.,5.", "-1.5", "input -, input -1, input -1., input -1.5"},
        {3, "aZ ~", "aZ ~", "input a, input aZ, input aZ , input aZ ~"},
        {4, "/1//2/3/4:a", "1/2/34",
         "input 1, input 1/, input 1/2, input 1/2/, input 1/2/3, "
         "input 1/2/34"},
        {7, ":9:/8", "9:8", "input 9, input 9:, input 9:8"},
        {5, "-a é", "-a é", ""},
        {6, "/:", "/:", ""},
    };
    for (const auto& row : rows) {
        const int32_t field = FilteredField(row.filter);
        Type(row.typed);
        EXPECT_STREQ(GetString(field), row.shown) << "filter " << row.filter;
        EXPECT_EQ(Calls(), row.calls) << "filter " << row.filter;
        KillGadget(0, field);
    }
}

TEST_F(EntryFieldTest, EachPrintableKeyByFilter)
{
    const struct {
        int32_t filter;
        const char* taken;  // null: all
    } rows[] = {{0, "-0123456789"}, {1, nullptr},      {2, "-.0123456789"}, {3, nullptr},
                {4, "0123456789"},  {7, "0123456789"}, {5, nullptr},        {6, nullptr}};
    for (const auto& row : rows) {
        const int32_t field = FilteredField(row.filter);
        for (char key = ' '; key < 127; key++) {
            const std::string typed(1, key);
            Type(typed);
            const bool taken = row.taken == nullptr || strchr(row.taken, key) != nullptr;
            const std::string shown = !taken ? "" : row.filter == 1 ? "*" : typed;
            const bool is_told = taken && row.filter != 5 && row.filter != 6;
            EXPECT_EQ(GetString(field), shown) << key << ", filter " << row.filter;
            EXPECT_EQ(gHandlers.Take(), is_told ? "input " + shown : "") << key;
            SetString(field, "");
        }
        KillGadget(0, field);
    }
}

TEST_F(EntryFieldTest, KeysThatAreNoCharactersByFilter)
{
    for (int32_t filter : {0, 1, 2, 3, 4, 7}) {
        const int32_t field = FilteredField(filter);
        Type("123");
        const std::string shown = GetString(field);
        Calls();
        for (int32_t key : {kEscapeKey, kF1Key})
            Key(key);
        Type("é");
        EXPECT_EQ(Calls(), "") << "filter " << filter;
        EXPECT_EQ(GetString(field), shown);
        for (int32_t key : {kLeftKey, kHomeKey, kEndKey})
            Key(key);
        const std::string told = "input " + shown;
        EXPECT_EQ(Calls(), told + ", " + told + ", " + told) << "filter " << filter;
        Key(kBackspaceKey);
        EXPECT_EQ(Calls(), "input " + shown.substr(0, 2));
        Key(kHomeKey);
        Key(kDeleteKey);
        EXPECT_EQ(Calls(), "input " + shown.substr(0, 2) + ", input " + shown.substr(1, 1));
        KillGadget(0, field);
    }
}

TEST_F(EntryFieldTest, EnterTellsTheTextAndDropsTheFocus)
{
    for (int32_t filter : {0, 2, 3}) {
        const int32_t field = FilteredField(filter);
        Type("42");
        Calls();
        Key(kEnterKey);
        EXPECT_EQ(Calls(), "enter 42") << "filter " << filter;
        EXPECT_TRUE(NobodyHasFocus());
        Key(kEnterKey);
        EXPECT_EQ(Calls(), "");
        KillGadget(0, field);
    }
}

TEST_F(EntryFieldTest, EnterInADateGoesOnAndInATimeDropsTheFocus)
{
    FilteredField(4);
    Key(kEnterKey);
    EXPECT_EQ(Calls(), "");
    EXPECT_TRUE(HasFocus(0)) << "nothing comes after it";
    Make(1, 10, 50, 80, 24);
    Key(kEnterKey);
    EXPECT_TRUE(HasFocus(1));
    EXPECT_EQ(Calls(), "");
    FilteredField(7);
    EXPECT_TRUE(HasFocus(2));
    Key(kEnterKey);
    EXPECT_TRUE(NobodyHasFocus());
    EXPECT_EQ(Calls(), "");
}

TEST_F(EntryFieldTest, TheKeyToCloseReachesTheWindow)
{
    window.Handle(
        PLINTH_CLOSE_REQUESTED, +[] {
            gHandlers.Add("close");
            return 0;
        });
    const int32_t kLetterW = 0x28;
    for (int32_t filter : {0, 2, 3, 4, 7}) {
        const int32_t field = FilteredField(filter);
        KeyWith(kCommandKey, kLetterW);
        EXPECT_EQ(Calls(), "close") << "and no input, filter " << filter;
        EXPECT_STREQ(GetString(field), "");
        KillGadget(0, field);
    }
}

TEST_F(EntryFieldTest, TheKeyToCloseIsALetterOfPasswordsKept)
{
    window.Handle(
        PLINTH_CLOSE_REQUESTED, +[] {
            gHandlers.Add("close");
            return 0;
        });
    const int32_t field = Field(5);
    KeyWith(kCommandKey, 0x28);
    EXPECT_EQ(Calls(), "input *");
    EXPECT_STREQ(GetString(field), "*");
    Key(kEnterKey);
    EXPECT_EQ(Calls(), "enter w");
}

TEST_F(EntryFieldTest, ShortcutsOfTheControlKeyWorkInEveryField)
{
    const int32_t kLetterA = 0x3c, kLetterC = 0x4e, kLetterV = 0x4f;
    const int32_t field = Field(4);
    SetString(field, "789");
    KeyWith(kControlKey, kLetterA);
    KeyWith(kControlKey, kLetterC);
    EXPECT_TRUE(eventually([] { return Clip() == "789"; }));
    Key(kEndKey);
    KeyWith(kControlKey, kLetterV);
    EXPECT_TRUE(eventually([&] { return std::string(GetString(field)) == "789789"; }));
}

// --- Tab

TEST_F(EntryFieldTest, TabGoesOnAndIsTold)
{
    Field();
    Make(1, 10, 50, 80, 24);
    Make(19, 10, 80, 80, 24, kThree);
    const int32_t last = Field(4, 120);
    ActivateGadget(last);
    Calls();
    Key(kTabKey);
    EXPECT_EQ(Calls(), "input ");
    EXPECT_TRUE(HasFocus(0)) << "round to the first";
    Key(kTabKey);
    EXPECT_TRUE(HasFocus(1));
    Key(kTabKey);
    EXPECT_TRUE(HasFocus(2));
    Key(kTabKey);
    EXPECT_TRUE(HasFocus(3));
    EXPECT_STREQ(GetString(last), "");
}

TEST_F(EntryFieldTest, ShiftAndTabGoBackToWhatIsEnabled)
{
    const int32_t first = Field();
    const int32_t button = Make(1, 10, 50, 80, 24);
    const int32_t choice = Make(19, 10, 80, 80, 24, kThree);
    Make(11, 10, 100, 80, 24);
    const int32_t last = Field(3, 120);
    const auto back_from = [&](int32_t ident) {
        ActivateGadget(ident);
        Calls();
        KeyWith(kShiftKey, kTabKey);
        EXPECT_EQ(Calls(), "") << "no key of the field";
    };
    back_from(last);
    EXPECT_TRUE(HasFocus(2)) << "past the label to the choice field";
    SetEnabled(choice, 0);
    back_from(last);
    EXPECT_TRUE(HasFocus(1));
    SetEnabled(button, 0);
    back_from(last);
    EXPECT_TRUE(HasFocus(0));
    SetEnabled(first, 0);
    back_from(last);
    EXPECT_TRUE(HasFocus(4)) << "there is none";
}

TEST_F(EntryFieldTest, OnlyTheFirstGadgetGoesBackRoundKept)
{
    const int32_t first = Field();
    Make(11, 10, 40, 80, 24);
    const int32_t button = Make(1, 10, 70, 80, 24);
    Make(11, 10, 100, 80, 24);
    ActivateGadget(first);
    KeyWith(kShiftKey, kTabKey);
    EXPECT_TRUE(HasFocus(2)) << "the last that is enabled";
    SetEnabled(button, 0);
    ActivateGadget(first);
    KeyWith(kShiftKey, kTabKey);
    EXPECT_TRUE(HasFocus(0)) << "itself";
    KillGadget(0, first);
    const int32_t second = Field();
    ActivateGadget(second);
    KeyWith(kShiftKey, kTabKey);
    EXPECT_TRUE(HasFocus(3)) << "others come before it, and none can have the focus";
}

// --- passwords

TEST_F(EntryFieldTest, APasswordIsToldAndNeverShown)
{
    const int32_t field = Field(5);
    Type("secret");
    EXPECT_STREQ(GetString(field), "******");
    Calls();
    Key(kBackspaceKey);
    Key(kEnterKey);
    EXPECT_EQ(Calls(), "input *****, enter secre");
}

TEST_F(EntryFieldTest, ThePasswordFollowsKeysAndNoEdits)
{
    const int32_t field = Field(5);
    Type("abc");
    Key(kHomeKey);
    Key(kDeleteKey);
    Type("d");
    Key(kHomeKey);
    Key(kBackspaceKey);  // nothing before it is shown
    Calls();
    EXPECT_STREQ(GetString(field), "***");
    Key(kEnterKey);
    EXPECT_EQ(Calls(), "enter abc");
}

TEST_F(EntryFieldTest, APasswordThatIsSetShowsPlainKept)
{
    const int32_t field = Field(5);
    SetString(field, "open");
    EXPECT_STREQ(GetString(field), "open");
    Key(kEndKey);
    Type("ed");
    EXPECT_STREQ(GetString(field), "open**");
    Calls();
    Key(kEnterKey);
    EXPECT_EQ(Calls(), "enter opened");
}

TEST_F(EntryFieldTest, KeysBeyondTheLimitAreToldButNotKept)
{
    const int32_t field = Field(5);
    SetMaxSizeString(field, 3);
    Type("abcd");
    EXPECT_EQ(Calls(), "input *, input **, input ***, input ***");
    Key(kEnterKey);
    EXPECT_EQ(Calls(), "enter abc");
    SetMaxSizeString(field, 2);
    ActivateGadget(field);
    Key(kEndKey);
    Calls();
    Key(kEnterKey);
    EXPECT_EQ(Calls(), "enter ab");
}

TEST_F(EntryFieldTest, APasswordHasAtMost1023Bytes)
{
    const int32_t field = Field(5);
    SetMaxSizeString(field, 5000);
    SetString(field, std::string(1500, 'x').c_str());
    EXPECT_EQ(strlen(GetString(field)), 1500u);
    Key(kEndKey);
    Type("y");
    Calls();
    Key(kEnterKey);
    EXPECT_EQ(Calls(), "enter " + std::string(1023, 'x'));
}

TEST_F(EntryFieldTest, AFieldThatBecomesAPasswordTakes256Bytes)
{
    const int32_t field = Field();
    const std::string long_text(300, 'x');
    for (int32_t filter : {0, 2, 3, 4, 5, 6, 7, 1}) {
        SetMaxSizeString(field, 300);
        SetFilterString(field, filter);
        SetString(field, long_text.c_str());
        EXPECT_EQ(strlen(GetString(field)), filter == 1 ? 256u : 300u) << filter;
    }
    for (int32_t filter : {8, -1, INT32_MAX, INT32_MIN})
        SetFilterString(field, filter);
    SetString(field, "");
    Type("a");
    EXPECT_STREQ(GetString(field), "*") << "still a password";
}

// --- what the program sets

TEST_F(EntryFieldTest, ANewFieldTakesFifteenBytes)
{
    for (int32_t kind : {3, 4, 5, 6}) {
        const int32_t field = Field(kind);
        Type("12345678901234567890");
        EXPECT_EQ(strlen(GetString(field)), 15u) << kind;
        SetString(field, "abcdefghijklmnopqrst");
        EXPECT_STREQ(GetString(field), "abcdefghijklmno");
    }
}

TEST_F(EntryFieldTest, NumbersLoseTheirSignKept)
{
    const int32_t field = Field(4);
    const struct {
        int32_t number;
        const char* shown;
    } rows[] = {
        {42, "42"}, {-42, "42"}, {0, "0"}, {INT32_MAX, "2147483647"}, {INT32_MIN, "2147483648"}};
    for (const auto& row : rows) {
        SetInteger(field, row.number);
        EXPECT_STREQ(GetString(field), row.shown);
    }
    Key(kEndKey);
    Type("1");
    Calls();
    for (int32_t filter : {1, 2, 3, 4, 5, 6, 7}) {
        SetFilterString(field, filter);
        SetInteger(field, 7);
        EXPECT_STREQ(GetString(field), "21474836481") << filter;
    }
}

TEST_F(EntryFieldTest, TheLimitIsAnyNumber)
{
    const int32_t field = Field();
    SetString(field, "abcdef");
    for (int32_t limit : {INT32_MAX, 100, 6}) {
        SetMaxSizeString(field, limit);
        EXPECT_STREQ(GetString(field), "abcdef");
    }
    SetMaxSizeString(field, 2);
    EXPECT_STREQ(GetString(field), "ab");
    for (int32_t limit : {0, -1, INT32_MIN}) {
        SetMaxSizeString(field, limit);
        Type("xyz");
        SetString(field, "xyz");
        GetString(field);
    }
    SetMaxSizeString(field, 3);
    SetString(field, "xyz");
    EXPECT_STREQ(GetString(field), "xyz");
}

TEST_F(EntryFieldTest, TextsOfAnyBytesAreKept)
{
    const int32_t field = Field();
    SetMaxSizeString(field, 1 << 20);
    for (const std::string& text : {std::string("\xFF\xFE\x80"), std::string(1 << 20, 'a'),
                                    std::string("日本語"), std::string()}) {
        SetString(field, text.c_str());
        EXPECT_EQ(GetString(field), text);
    }
    SetString(field, "x");
    SetString(field, nullptr);
    EXPECT_STREQ(GetString(field), "");
    SetString(field, "twice");
    SetString(field, GetString(field));
    EXPECT_STREQ(GetString(field), "twice");
    EXPECT_STREQ(TEditGetText(field), "twice");
}

TEST_F(EntryFieldTest, TheDividerStandsAtAPlaceOrBehindTheLabel)
{
    const int32_t field = Field();
    const int32_t choice = Make(19, 10, 80, 200, 24, kThree);
    const auto divider = [&] {
        return WithField(0, [](BTextControl& control) { return control.Divider(); });
    };
    EXPECT_EQ(divider(), 125);
    SetDiviser(field, 40);
    EXPECT_EQ(divider(), 40);
    SetDiviser(field, 0);
    EXPECT_EQ(divider(), 0);
    const float label =
        WithField(0, [](BTextControl& control) { return control.StringWidth(control.Label()); });
    SetDiviser(field, -10);
    EXPECT_EQ(divider(), floorf(label + 10.5f));
    for (int32_t place : {INT32_MAX, INT32_MIN})
        SetDiviser(field, place);
    SetDiviser(choice, 30);
    EXPECT_EQ(WithView(1, [](BView* view) { return dynamic_cast<BMenuField*>(view)->Divider(); }),
              30);
    SetDiviser(Make(1, 10, 110, 80, 24), 5);
}

TEST_F(EntryFieldTest, EditingAndSelectingCanBeForbidden)
{
    const int32_t field = Field();
    SetString(field, "ab");
    MakeEditable(field, 0);
    Type("c");
    EXPECT_STREQ(GetString(field), "ab");
    MakeEditable(field, 1);
    Key(kEndKey);
    Type("c");
    EXPECT_STREQ(GetString(field), "abc");
    for (int8_t flag : {0, 1}) {
        MakeSelectable(field, flag);
        EXPECT_EQ(
            WithField(0, [](BTextControl& control) { return control.TextView()->IsSelectable(); }),
            flag == 1);
    }
    for (int32_t mode : {2, -1, INT32_MAX, INT32_MIN})
        MakeStringSelectable(field, mode, 0);
    EXPECT_TRUE(WithField(0, [](BTextControl& control) {
        return control.TextView()->IsEditable() && control.TextView()->IsSelectable();
    }));
}

TEST_F(EntryFieldTest, EditingForbiddenWhileDisabledStaysSo)
{
    const int32_t field = Field();
    SetString(field, "ab");
    SetEnabled(field, 0);
    MakeEditable(field, 0);
    SetEnabled(field, 1);
    ActivateGadget(field);
    Type("c");
    EXPECT_STREQ(GetString(field), "ab");
    MakeEditable(field, 1);
    Key(kEndKey);
    Type("c");
    EXPECT_STREQ(GetString(field), "abc");
}

TEST_F(EntryFieldTest, CommandsActOnTheSelection)
{
    const int32_t field = Field();
    const auto selection = [&] {
        return WithField(0, [](BTextControl& control) {
            int32 start, end;
            control.TextView()->GetSelection(&start, &end);
            return std::to_string(start) + "-" + std::to_string(end);
        });
    };
    SetString(field, "abcd");
    SelectAll(field);
    EXPECT_EQ(selection(), "0-4");
    CopyString(field);
    EXPECT_EQ(Clip(), "abcd");
    SelectNone(field);
    EXPECT_EQ(selection(), "0-0");
    PasteString(field);
    EXPECT_STREQ(GetString(field), "abcdabcd");
    SelectAll(field);
    ClearString(field);
    EXPECT_STREQ(GetString(field), "");
    SetString(field, "xy");
    SelectAll(field);
    CutString(field);
    EXPECT_STREQ(GetString(field), "");
    EXPECT_EQ(Clip(), "xy");
    SetString(field, "zz");
    SelectAll(field);
    for (int32_t command : {6, -1, INT32_MAX, INT32_MIN})
        SelectCommand(field, command);
    EXPECT_STREQ(GetString(field), "zz");
    EXPECT_EQ(selection(), "0-2");
    EXPECT_EQ(Clip(), "xy");
    for (int32_t ident : {Make(1, 10, 50, 80, 24), 0, -1, window.Ident()}) {
        for (int32_t command = 0; command < 6; command++)
            SelectCommand(ident, command);
    }
}

TEST_F(EntryFieldTest, WhatIsPastedIsNotFilteredKept)
{
    const int32_t field = Field(4);
    SetClip("ab\ncd");
    PasteString(field);
    EXPECT_STREQ(GetString(field), "ab cd") << "one line of it";
    EXPECT_EQ(Calls(), "");
}

TEST_F(EntryFieldTest, LabelsShowTextsAndNumbers)
{
    const int32_t text = Make(11, 10, 10, 80, 24), number = Make(12, 10, 40, 80, 24);
    const auto shown = [&](int32 index) {
        return WithView(index, [](BView* view) {
            const char* shows = dynamic_cast<BStringView*>(view)->Text();
            return std::string(shows != nullptr ? shows : "(none)");
        });
    };
    SetTextString(text, "hello");
    SetNumberString(number, INT32_MIN);
    EXPECT_EQ(shown(0), "hello");
    EXPECT_EQ(shown(1), "-2147483648");
    SetTextString(number, "other kind");
    SetNumberString(text, 5);
    EXPECT_EQ(shown(0), "hello");
    EXPECT_EQ(shown(1), "-2147483648");
    SetTextString(text, nullptr);
    EXPECT_EQ(shown(0), "(none)");
}

TEST_F(EntryFieldTest, OtherGadgetsAndUnknownIdentsAreLeftAlone)
{
    const int32_t button = Make(1, 10, 50, 80, 24);
    std::vector<int32_t> idents(std::begin(kIdents), std::end(kIdents));
    idents.push_back(button);
    idents.push_back(window.Ident());
    for (int32_t ident : idents) {
        SetString(ident, "x");
        SetInteger(ident, 1);
        SetMaxSizeString(ident, 1);
        SetFilterString(ident, 1);
        SetDiviser(ident, 1);
        MakeEditable(ident, 0);
        MakeSelectable(ident, 0);
        SetStringEnterHandler(ident, reinterpret_cast<void*>(on_enter));
        SetStringInputHandler(ident, reinterpret_cast<void*>(on_input));
        SetTextString(ident, "x");
        SetNumberString(ident, 1);
        EXPECT_STREQ(GetString(ident), "");
        EXPECT_STREQ(TEditGetText(ident), "");
    }
    EXPECT_STREQ(GetLabel(button), "label");
}

TEST_F(EntryFieldTest, AFieldWithoutAWindowIsLeftAloneKept)
{
    const int32_t field = CreateGadget(3, -1, 10, 10, 200, 24, "Name", 0);
    SetString(field, "early");
    EXPECT_STREQ(GetString(field), "");
    AttachGadgetToWindow(window, field);
    SetString(field, "late");
    EXPECT_STREQ(GetString(field), "late");
    SetHandlerForGadget(field, 5, reinterpret_cast<void*>(on_enter));
    ActivateGadget(field);
    Key(kEnterKey);
    EXPECT_EQ(Calls(), "enter late");
    SetHandlerForGadget(field, 5, nullptr);
    ActivateGadget(field);
    Key(kEnterKey);
    EXPECT_EQ(Calls(), "");
    const int32_t never = CreateGadget(5, -1, 10, 10, 200, 24, nullptr, 0);
    KillGadget(0, never);
}

// --- hooks

TEST_F(EntryFieldTest, ADisabledFieldTakesNoFocusAndNoPress)
{
    const int32_t field = Make(3, 10, 10, 250, 24, "Name");
    SetEnabled(field, 0);
    EXPECT_EQ(GetEnabled(field), 0);
    ActivateGadget(field);
    EXPECT_FALSE(HasFocus(0));
    Click(20, 20);
    Click(200, 20);
    EXPECT_FALSE(HasFocus(0));
    EXPECT_EQ(Calls(), "");
    SetEnabled(field, 1);
    ActivateGadget(field);
    EXPECT_TRUE(HasFocus(0));
    Type("ok");
    EXPECT_STREQ(GetString(field), "ok");
}

TEST_F(EntryFieldTest, APressOnTheLabelIsAnActionOfTheField)
{
    const int32_t field = Make(3, 10, 10, 250, 24, "Name");
    Click(20, 20);
    EXPECT_EQ(Calls(), "action");
    EXPECT_FALSE(HasFocus(0));
    FocusOnClick(field, 1);
    Click(20, 20);
    EXPECT_EQ(Calls(), "action");
    EXPECT_TRUE(HasFocus(0));
    Click(20, 20, 4);
    Click(20, 20, 2);
    EXPECT_EQ(Calls(), "");
}

TEST_F(EntryFieldTest, APressInTheTextTakesTheFocus)
{
    Make(3, 10, 10, 250, 24, "Name");
    Click(200, 20);
    EXPECT_TRUE(HasFocus(0));
    EXPECT_EQ(Calls(), "");
}

TEST_F(EntryFieldTest, FilesDroppedOnAFieldComeToTheWindowOnce)
{
    Field();
    window.Handle(
        PLINTH_FILES_DROPPED, +[](int32_t count, char** paths) {
            gHandlers.Add(std::to_string(count) + " " + paths[0]);
            return 0;
        });
    const char* const dropped[] = {"/usr"};
    inject_file_drop(window.X(200), window.Y(20), dropped, 1);
    EXPECT_TRUE(eventually([] { return gHandlers.Take() == "1 /usr"; }));
    EXPECT_EQ(Calls(), "");
}

TEST_F(EntryFieldTest, AHandlerSetsItsOwnField)
{
    sField = Field();
    SetStringInputHandler(sField, reinterpret_cast<void*>(+[](const char* text) {
                              SetString(sField, (std::string(text) + "!").c_str());
                              return on_input(text);
                          }));
    SetStringEnterHandler(sField, reinterpret_cast<void*>(+[](const char* text) {
                              SetString(sField, "");
                              return on_enter(text);
                          }));
    Type("a");
    EXPECT_EQ(Calls(), "input a");
    EXPECT_STREQ(GetString(sField), "a!");
    Key(kEnterKey);
    EXPECT_EQ(Calls(), "enter a!");
    EXPECT_STREQ(GetString(sField), "");
}

TEST_F(EntryFieldTest, AHandlerKillsItsOwnField)
{
    const auto kill = +[](const char* text) {
        KillGadget(0, sField);
        return on_enter(text);
    };
    sField = Field();
    SetStringEnterHandler(sField, reinterpret_cast<void*>(kill));
    Key(kEnterKey);
    EXPECT_EQ(Calls(), "enter ");
    EXPECT_FALSE(is_gadget_ident(sField));
    sField = Field();
    SetStringInputHandler(sField, reinterpret_cast<void*>(kill));
    Type("ab");
    EXPECT_EQ(Calls(), "enter a");
    EXPECT_EQ(CountViews(), 0);
}

TEST_F(EntryFieldTest, AHandlerClosesItsWindow)
{
    TestWindow other(100, 100, 300, 100);
    ASSERT_TRUE(eventually([] { return Object()->IsActive(); }));
    static std::atomic<int32_t> closed;
    closed = other.Ident();
    const int32_t field = CreateGadget(3, other, 10, 10, 250, 24, nullptr, 0);
    SetMaxSizeString(field, 100);
    SetString(field, "long enough that its copy is no part of another object");
    SetStringEnterHandler(field, reinterpret_cast<void*>(+[](const char* text) {
                              on_enter(text);
                              CloseWindow(closed);
                              return 0;
                          }));
    ActivateGadget(field);
    inject_key(kEnterKey, true);
    inject_key(kEnterKey, false);
    EXPECT_TRUE(eventually([&] { return !is_window_ident(other); }));
}

TEST_F(EntryFieldTest, InputOfFieldsThatAreGoneIsNotTold)
{
    const int32_t field = Field();
    BWindow* object = Object();
    object->Lock();
    inject_text("a");
    BMessage forged(753);
    forged.AddPointer("fi", object);
    object->PostMessage(&forged);
    KillGadget(0, field);
    object->Unlock();
    EXPECT_EQ(Calls(), "");
}

TEST_F(EntryFieldTest, InputThatWaitsForAKilledFieldIsNotTold)
{
    static int32_t window_ident;
    window_ident = window;
    sField = Field();
    SetStringEnterHandler(sField, reinterpret_cast<void*>(+[](const char* text) {
                              KillGadget(0, sField);
                              sField = CreateGadget(3, window_ident, 10, 10, 250, 24, "Name", 0);
                              SetStringInputHandler(sField, reinterpret_cast<void*>(on_input));
                              return on_enter(text);
                          }));
    BWindow* object = Object();
    object->Lock();
    inject_text("a\n");  // the message of the first key comes behind the second key
    object->Unlock();
    EXPECT_EQ(Calls(), "enter a");
}

TEST_F(EntryFieldTest, FontsOfFieldsAreThoseOfTheirTexts)
{
    const int32_t field = Field();
    const int32_t font = OpenFont(nullptr, nullptr, 30);
    SetFontGadget(field, font);
    EXPECT_EQ(WithField(0,
                        [](BTextControl& control) {
                            BFont used;
                            control.TextView()->GetFontAndColor(0, &used);
                            return used.Size();
                        }),
              30);
    EXPECT_GT(FrameOf(0).Height(), 30) << "there is room for it";
    SetFontGadget(field, -1);
    CloseFont(font);
}

TEST_F(EntryFieldTest, ComposedTextComesAsKeysToFieldsWithAFilter)
{
    const int32_t field = Field(4);
    inject_composition("12a", 3, "");
    Settle();
    EXPECT_STREQ(GetString(field), "") << "nothing of it shows before it is done";
    inject_composition("", 0, "1éa2");  // the last one shows that none is on its way
    EXPECT_TRUE(eventually([&] { return std::string(GetString(field)) == "12"; }));
    SetFilterString(field, 1);
    SetString(field, "");
    inject_composition("secret", 6, "");
    Settle();
    EXPECT_STREQ(GetString(field), "");
    inject_composition("", 0, "secret");
    EXPECT_TRUE(eventually([&] { return std::string(GetString(field)) == "******"; }));
    SetFilterString(field, 5);
    SetString(field, "");
    inject_composition("にほ", 6, "");
    EXPECT_TRUE(eventually([&] { return std::string(GetString(field)) == "にほ"; }));
    inject_composition("", 0, "日本");
    EXPECT_TRUE(eventually([&] { return std::string(GetString(field)) == "日本"; }));
}

// An accent of a dead key comes as one character, whose first byte no filter lets through.
TEST_F(EntryFieldTest, LettersWithAccentsAreTypedWithoutAFilterOnly)
{
    for (const int32_t filter : {0, 1, 2, 3, 4, 7}) {
        const int32_t field = FilteredField(filter);
        inject_composition("", 0, "é");
        Type("ñ1");
        EXPECT_EQ(Calls(), filter == 1 ? "input *" : "input 1") << filter;
        Key(kEnterKey);
        EXPECT_EQ(Calls(), filter == 4 || filter == 7 ? "" : "enter 1") << filter;
        KillGadget(0, field);
    }
    for (const int32_t filter : {5, 6}) {
        const int32_t field = FilteredField(filter);
        inject_composition("", 0, "é");
        Type("ñ");
        EXPECT_STREQ(GetString(field), "éñ");
        KillGadget(0, field);
    }
    Calls();
}
