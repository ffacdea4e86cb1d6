// Text editors as the user types in them, and every call on them at its edges.

#include "support/temp_folder.h"
#include "text_window.h"

#include <ScrollView.h>

#include <atomic>
#include <climits>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

const int32_t kOffsets[] = {INT32_MIN, -1, 0, 1, 5, 6, 1000, INT32_MAX};

std::atomic<int32_t> sEditor;

class TextEditorTest : public TextTest {
protected:
    int32_t Editor(int32_t kind = 26, const char* text = "")
    {
        const int32_t ident = Make(kind, 10, 10, 240, 160, nullptr);
        TEditSetText(ident, text);
        ActivateGadget(ident);
        return ident;
    }
    static std::string All(int32_t ident)
    {
        char* block = TEditGetAll(ident);
        std::string text = block != nullptr ? block : "(null)";
        MyFree(block);
        return text;
    }
    static std::string Selection(int32_t ident)
    {
        return std::to_string(TEditGetSelection(ident, 0)) + "-" +
               std::to_string(TEditGetSelection(ident, 1));
    }
    template <class Act>
    auto WithEditor(Act act)
    {
        return WithView(0, [&](BView* view) {
            auto* scroll = dynamic_cast<BScrollView*>(view);
            return act(*dynamic_cast<BTextView*>(scroll != nullptr ? scroll->ChildAt(0) : view));
        });
    }
};

std::string contents(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Who may not do everything, for as long as it lives.
class AsNobody {
public:
    AsNobody() { EXPECT_TRUE(!fWasRoot || seteuid(65534) == 0); }
    ~AsNobody() { EXPECT_TRUE(!fWasRoot || seteuid(0) == 0); }
    AsNobody(const AsNobody&) = delete;

private:
    const bool fWasRoot = geteuid() == 0;
};

// Files cannot grow beyond some bytes, for as long as it lives.
class NoRoom {
public:
    explicit NoRoom(rlim_t bytes)
    {
        fFormer = signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &fLimit);
        const rlimit limit = {bytes, fLimit.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~NoRoom()
    {
        setrlimit(RLIMIT_FSIZE, &fLimit);
        signal(SIGXFSZ, fFormer);
    }
    NoRoom(const NoRoom&) = delete;

private:
    rlimit fLimit;
    void (*fFormer)(int);
};

int error_of(bool done)
{
    EXPECT_FALSE(done);
    return GetDosErr(0);
}

}  // namespace

// --- creation

TEST_F(TextEditorTest, KindsDifferByTheirBars)
{
    for (int32_t kind : {26, 27, 28, 29}) {
        const int32_t editor = Editor(kind, "text");
        const std::string bars = WithView(0, [](BView* view) {
            auto* scroll = dynamic_cast<BScrollView*>(view);
            if (scroll == nullptr)
                return std::string("none");
            return std::string(scroll->ScrollBar(B_VERTICAL) != nullptr ? "v" : "") +
                   (scroll->ScrollBar(B_HORIZONTAL) != nullptr ? "h" : "");
        });
        EXPECT_EQ(bars, kind == 26 ? "none" : kind == 27 ? "v" : kind == 28 ? "h" : "vh");
        EXPECT_EQ(WithEditor([](BTextView& text) { return text.Bounds(); }), BRect(0, 0, 240, 160))
            << "the bars take nothing of it";
        EXPECT_EQ(TEditGetSize(editor), 4);
        KillGadget(0, editor);
    }
}

TEST_F(TextEditorTest, DegenerateSizesArePassedOn)
{
    for (int32_t kind : {3, 26, 29}) {
        for (int32_t size : {0, -1, -100, INT32_MAX, INT32_MIN}) {
            const int32_t ident = Make(kind, 5, 5, size, size, nullptr);
            EXPECT_NE(ident, 0) << kind << " of " << size;
            TEditSetText(ident, "some words to be broken");
            SetString(ident, "some words");
            KillGadget(0, ident);
        }
    }
    Settle();
}

// --- the user

TEST_F(TextEditorTest, TypingIsToldByTheLengthOfTheText)
{
    const int32_t editor = Editor();
    Type("ab");
    EXPECT_EQ(Calls(), "value 1, key 97, value 2, key 98");
    Key(kBackspaceKey);
    EXPECT_EQ(Calls(), "value 1, key 8");
    Key(kLeftKey);
    EXPECT_EQ(Calls(), "key 28") << "nothing was changed";
    TEditSetText(editor, "xyz");
    TEditInsertText(editor, "!");
    EXPECT_EQ(Calls(), "") << "by the program";
    SelectAll(editor);
    Type("n");
    EXPECT_EQ(Calls(), "value 1, key 110") << "once, though two things changed";
}

TEST_F(TextEditorTest, PastesAndUndoByTheUserAreTold)
{
    const int32_t kLetterV = 0x4f, kLetterZ = 0x4c;
    const int32_t editor = Editor();
    SetClip("pasted");
    KeyWith(kControlKey, kLetterV);
    EXPECT_TRUE(eventually([&] { return All(editor) == "pasted"; }));
    EXPECT_EQ(Calls(), "value 6");
    KeyWith(kControlKey, kLetterZ);
    EXPECT_TRUE(eventually([&] { return All(editor).empty(); }));
    EXPECT_EQ(Calls(), "value 0");
}

TEST_F(TextEditorTest, WhatAnInputMethodMakesIsToldOnceWhenItIsDone)
{
    const int32_t editor = Editor();
    inject_composition("ni", 2, "");
    inject_composition("nih", 3, "");
    EXPECT_TRUE(eventually([&] { return All(editor) == "nih"; }));
    EXPECT_EQ(Calls(), "");
    inject_composition("", 0, "日本");
    EXPECT_TRUE(eventually([&] { return All(editor) == "日本"; }));
    EXPECT_EQ(Calls(), "value 6");
    inject_composition("x", 1, "");
    inject_composition("", 0, "");
    EXPECT_TRUE(eventually([&] { return All(editor) == "日本"; }));
    EXPECT_EQ(Calls(), "") << "cancelled";
    TEditSelect(editor, 0, 3);
    inject_composition("x", 1, "");
    inject_composition("", 0, "");
    EXPECT_TRUE(eventually([&] { return All(editor) == "本"; }));
    EXPECT_EQ(Calls(), "value 3") << "what was selected is gone";
    inject_composition("ka", 2, "");
    EXPECT_TRUE(eventually([&] { return All(editor) == "ka本"; }));
    Click(200, 100);
    EXPECT_EQ(Calls(), "value 5") << "a press keeps it";
    EXPECT_EQ(All(editor), "ka本");
    inject_composition("ki", 2, "");
    EXPECT_TRUE(eventually([&] { return All(editor) == "ka本ki"; }));
    EXPECT_EQ(Calls(), "");
    const int32_t button = Make(1, 250, 0, 40, 20);
    ActivateGadget(button);
    EXPECT_EQ(Calls(), "value 7") << "and so does what takes the keyboard";
}

TEST_F(TextEditorTest, AHandlerOfAChangeSetsAndKillsItsEditor)
{
    sEditor = Editor();
    SetHandlerForGadget(sEditor, 3, reinterpret_cast<void*>(+[](int32_t length) {
                            TEditSetText(sEditor, length == 1 ? "much longer" : "");
                            if (length > 1)
                                KillGadget(0, sEditor);
                            return on_value(length);
                        }));
    SetHandlerForGadget(sEditor, 2, nullptr);
    Type("a");
    EXPECT_EQ(All(sEditor), "much longer");
    Type("b");
    EXPECT_EQ(Calls(), "value 1, value 12");
    EXPECT_FALSE(is_gadget_ident(sEditor));
}

TEST_F(TextEditorTest, FilesDroppedComeToTheEditorAndToTheWindow)
{
    const auto dropped_on = +[](int32_t count, char** paths) {
        gHandlers.Add(std::to_string(count) + " " + paths[0]);
        return 0;
    };
    const char* const dropped[] = {"/usr"};
    const int32_t editor = Editor(29, "text");
    window.Handle(PLINTH_FILES_DROPPED, dropped_on);
    inject_file_drop(window.X(50), window.Y(50), dropped, 1);
    EXPECT_TRUE(eventually([] { return gHandlers.Take() == "1 /usr"; }));
    window.Handle(PLINTH_FILES_DROPPED, static_cast<int32_t (*)(int32_t, char**)>(nullptr));
    SetHandlerForGadget(editor, 7, reinterpret_cast<void*>(dropped_on));
    inject_file_drop(window.X(50), window.Y(50), dropped, 1);
    EXPECT_TRUE(eventually([] { return gHandlers.Take() == "1 /usr"; }));
    EXPECT_EQ(All(editor), "text");
    EXPECT_EQ(Calls(), "");
}

TEST_F(TextEditorTest, AnEditorThatIsNotEditableCanBeRead)
{
    const int32_t editor = Editor(26, "abc");
    TEditMakeEditable(editor, 0);
    SetHandlerForGadget(editor, 2, nullptr);
    Type("x");
    Key(kBackspaceKey);
    EXPECT_EQ(Calls(), "");
    EXPECT_EQ(All(editor), "abc");
    TEditSetText(editor, "by the program");
    EXPECT_EQ(All(editor), "by the program");
    TEditMakeEditable(editor, 1);
    Type("x");
    EXPECT_EQ(Calls(), "value 15");
}

// --- texts and lines

TEST_F(TextEditorTest, LinesEndAtLineFeeds)
{
    const int32_t editor = Editor(26, "one\ntwo\n");
    EXPECT_EQ(TEditCountLines(editor), 3);
    EXPECT_EQ(TEditGetSize(editor), 8);
    const struct {
        int32_t line;
        const char* text;
    } rows[] = {{0, "one"},      {1, "two"},  {2, ""},           {3, ""},
                {INT32_MAX, ""}, {-1, "one"}, {INT32_MIN, "one"}};
    for (const auto& row : rows)
        EXPECT_STREQ(TEditGetLine(editor, row.line), row.text) << row.line;
    const char* first = TEditGetLine(editor, 0);
    EXPECT_EQ(TEditGetLine(editor, 1), first) << "always in the ring's first slot";
    TEditSetText(editor, "");
    EXPECT_EQ(TEditCountLines(editor), 1);
    EXPECT_STREQ(TEditGetLine(editor, 0), "");
}

TEST_F(TextEditorTest, ALineIsCutAt256Bytes)
{
    const int32_t editor = Editor();
    TEditWordWrap(editor, 0);
    for (int length : {255, 256, 257, 300}) {
        TEditSetText(editor, (std::string(static_cast<size_t>(length), 'x') + "\nnext").c_str());
        EXPECT_EQ(strlen(TEditGetLine(editor, 0)), static_cast<size_t>(std::min(length, 256)));
        EXPECT_STREQ(TEditGetLine(editor, 1), "next");
    }
    Left("other text", 3);
    EXPECT_STREQ(TEditGetLine(editor, 1), "next");
}

TEST_F(TextEditorTest, LinesAndOffsetsAreEachOthersPlaces)
{
    const int32_t editor = Editor(26, "ab\ncd\n");
    for (const auto& [offset, line] : {std::pair{-1, 0}, {0, 0}, {2, 0}, {3, 1}, {5, 1}, {6, 2}})
        EXPECT_EQ(TEditLineAt(editor, offset), line) << offset;
    EXPECT_EQ(TEditLineAt(editor, INT32_MAX), 2);
    for (const auto& [line, start] : {std::pair{-1, 0}, {0, 0}, {1, 3}, {2, 6}, {3, 6}})
        EXPECT_EQ(TEditLineStart(editor, line), start) << line;
    EXPECT_EQ(TEditLineStart(editor, INT32_MAX), 6);
    EXPECT_EQ(TEditLineStart(editor, INT32_MIN), 0);
}

TEST_F(TextEditorTest, ABrokenLineIsReadAsFarAsItsLineFeed)
{
    const int32_t editor = Editor();
    std::string text;
    for (int i = 0; i < 20; i++)
        text += "word ";
    TEditSetText(editor, (text + "\nend").c_str());
    ASSERT_GT(TEditCountLines(editor), 2);
    EXPECT_EQ(TEditGetLine(editor, 0), text) << "not only what is shown on it";
    EXPECT_TRUE(text.ends_with(TEditGetLine(editor, 1)));
    TEditWordWrap(editor, 0);
    EXPECT_EQ(TEditCountLines(editor), 2);
    TEditCommand(editor, 0, 1);
    EXPECT_GT(TEditCountLines(editor), 2);
}

TEST_F(TextEditorTest, TheCaretStandsBehindWhatIsInserted)
{
    const int32_t editor = Editor(26, "ad");
    TEditSelect(editor, 1, 1);
    TEditInsertText(editor, "b");
    TEditInsertText(editor, "c");
    EXPECT_EQ(All(editor), "abcd");
    EXPECT_EQ(Selection(editor), "3-3");
    TEditSelect(editor, 0, 2);
    TEditInsertText(editor, "<");
    EXPECT_EQ(All(editor), "<abcd") << "before a selection, which stays";
    EXPECT_EQ(Selection(editor), "1-1");
    for (const char* nothing : {"", static_cast<const char*>(nullptr)})
        TEditInsertText(editor, nothing);
    EXPECT_EQ(All(editor), "<abcd");
    TEditSetText(editor, nullptr);
    EXPECT_EQ(All(editor), "");
}

TEST_F(TextEditorTest, TextsBehindTheMaximumAreCut)
{
    const int32_t editor = Editor();
    TEditSetMaxSize(editor, 5);
    TEditSetText(editor, "abcdefgh");
    EXPECT_EQ(All(editor), "abcde");
    TEditInsertText(editor, "x");
    EXPECT_EQ(All(editor), "abcde");
    Type("y");
    EXPECT_EQ(All(editor), "abcde");
    TEditSetMaxSize(editor, 2);
    EXPECT_EQ(All(editor), "ab");
    for (int32_t maximum : {0, -1, INT32_MIN, INT32_MAX}) {
        TEditSetMaxSize(editor, maximum);
        TEditSetText(editor, "abc");
        TEditInsertText(editor, "d");
    }
    EXPECT_EQ(All(editor), "dabc");
}

TEST_F(TextEditorTest, TextsOfAnyBytesComeBack)
{
    const int32_t editor = Editor();
    std::string bytes;
    for (int i = 1; i < 256; i++)
        bytes += static_cast<char>(i);
    for (const std::string& text : {bytes, std::string("\xF0\x9F\x98"), std::string(1 << 20, 'a'),
                                    std::string("é日本\n\r\n\t")}) {
        TEditSetText(editor, text.c_str());
        EXPECT_EQ(All(editor), text);
        EXPECT_EQ(TEditGetSize(editor), static_cast<int32_t>(text.size()));
    }
    Settle();
}

TEST_F(TextEditorTest, GoesToLines)
{
    const int32_t editor = Editor(27, "one\ntwo\nthree");
    const struct {
        int32_t line, caret;
    } rows[] = {{1, 4}, {2, 8}, {0, 0}, {-1, 0}, {INT32_MIN, 0}};
    for (const auto& row : rows) {
        TEditGotoLine(editor, row.line);
        EXPECT_EQ(TEditCaret(editor), row.caret) << row.line;
    }
    TEditGotoLine(editor, INT32_MAX);
    EXPECT_GE(TEditCaret(editor), 8);
}

TEST_F(TextEditorTest, ModesAreSetByNumber)
{
    const int32_t editor = Editor();
    const auto modes = [&] {
        return WithEditor([](BTextView& text) {
            return std::to_string(text.DoesWordWrap()) + std::to_string(text.DoesAutoindent()) +
                   std::to_string(text.IsEditable()) + std::to_string(text.IsSelectable());
        });
    };
    EXPECT_EQ(modes(), "1011");
    const char* const off[] = {"0111", "1011", "1101", "1110"};
    TEditAutoIdent(editor, 1);
    for (int32_t command = 0; command < 4; command++) {
        TEditCommand(editor, command, 0);
        EXPECT_EQ(modes(), off[command]);
        TEditCommand(editor, command, 1);
    }
    for (int32_t command : {4, -1, INT32_MAX, INT32_MIN})
        TEditCommand(editor, command, 0);
    EXPECT_EQ(modes(), "1111");
    TEditMakeSelectable(editor, 0);
    EXPECT_EQ(modes(), "1110");
    TEditSetText(editor, "a\tb\t\tc and more to be broken\t\t\t\t\t\td");
    for (int32_t width : {50, 1, 0, -1, INT32_MAX, INT32_MIN}) {
        TEditSetTabWidth(editor, width);
        EXPECT_GE(TEditCountLines(editor), 1) << width;
        Settle();  // it is drawn
    }
    TEditSetTabWidth(editor, 40);
    EXPECT_EQ(WithEditor([](BTextView& text) { return text.TabWidth(); }), 40);
}

// --- the selection

TEST_F(TextEditorTest, SelectsWhateverOffsetsAreGiven)
{
    const int32_t editor = Editor(26, "abcde");
    for (int32_t from : kOffsets) {
        for (int32_t to : kOffsets) {
            TEditSelect(editor, from, to);
            const auto [start, end] = std::minmax({std::clamp(from, 0, 5), std::clamp(to, 0, 5)});
            EXPECT_EQ(Selection(editor), std::to_string(start) + "-" + std::to_string(end));
        }
    }
    for (int32_t which : {2, -1, INT32_MAX, INT32_MIN})
        EXPECT_EQ(TEditGetSelection(editor, which), 0);
}

TEST_F(TextEditorTest, TheCaretIsTheEndThatMoves)
{
    const int32_t editor = Editor(26, "abcdef");
    TEditSelect(editor, 3, 3);
    EXPECT_EQ(TEditCaret(editor), 3);
    KeyWith(kShiftKey, kLeftKey);
    KeyWith(kShiftKey, kLeftKey);
    EXPECT_EQ(Selection(editor), "1-3");
    EXPECT_EQ(TEditCaret(editor), 1);
    Key(kEndKey);
    Settle();
    EXPECT_EQ(TEditCaret(editor), 6);
    Type("gh");
    EXPECT_EQ(TEditCaret(editor), 8);
    TEditSetMaxSize(editor, 3);
    EXPECT_EQ(TEditCaret(editor), 3);
    TEditSetText(editor, "a");
    EXPECT_EQ(TEditCaret(editor), 0);
}

TEST_F(TextEditorTest, CommandsActWithAndWithoutBars)
{
    for (int32_t kind : {26, 29}) {
        const int32_t editor = Editor(kind, "text");
        SelectAll(editor);
        EXPECT_EQ(Selection(editor), "0-4");
        CopyString(editor);
        EXPECT_EQ(Clip(), "text");
        SelectNone(editor);
        EXPECT_EQ(Selection(editor), "0-0");
        PasteString(editor);
        EXPECT_EQ(All(editor), "texttext");
        SelectAll(editor);
        CutString(editor);
        EXPECT_EQ(Clip(), "texttext");
        EXPECT_EQ(All(editor), "");
        KillGadget(0, editor);
    }
}

TEST_F(TextEditorTest, WhatHasNoTextIsPastedAsNothingKept)
{
    const int32_t editor = Editor(26, "text");
    be_clipboard->Lock();
    be_clipboard->Clear();
    be_clipboard->Data()->AddData("image/x-any", B_MIME_TYPE, "1234", 4);
    be_clipboard->Commit();
    be_clipboard->Unlock();
    SelectAll(editor);
    PasteString(editor);
    EXPECT_EQ(All(editor), "text");
    EXPECT_TRUE(WithEditor([](BTextView& text) {
        BMessage nothing;
        return text.AcceptsPaste(be_clipboard) && text.AcceptsPaste(nullptr) &&
               text.AcceptsDrop(&nothing);
    }));
}

TEST_F(TextEditorTest, ReplacesTheSelection)
{
    const int32_t editor = Editor(26, "one two");
    TEditSelect(editor, 4, 7);
    TEditReplaceSelection(editor, "three");
    EXPECT_EQ(All(editor), "one three");
    EXPECT_EQ(Selection(editor), "9-9");
    TEditSelect(editor, 0, 4);
    TEditReplaceSelection(editor, nullptr);
    EXPECT_EQ(All(editor), "three");
    TEditReplaceSelection(editor, ">");
    EXPECT_EQ(All(editor), ">three");
    EXPECT_EQ(Calls(), "");
}

TEST_F(TextEditorTest, FindsTexts)
{
    const int32_t editor = Editor(27, "One two one");
    EXPECT_EQ(TEditFind(editor, "ONE", 0, 0), 0);
    EXPECT_EQ(TEditFind(editor, "one", 0, 1), 8);
    EXPECT_EQ(TEditFind(editor, "one", INT32_MAX, 2), 8);
    EXPECT_EQ(TEditFind(editor, "on", 0, 4), -1);
    EXPECT_EQ(TEditFind(editor, "three", 0, 0), -1);
    EXPECT_EQ(TEditFind(editor, "", 0, 0), -1);
    EXPECT_EQ(TEditFind(editor, nullptr, 0, 0), -1);
    for (int32_t from : kOffsets) {
        for (int32_t flags : kOffsets)
            TEditFind(editor, "o", from, flags);
    }
}

TEST_F(TextEditorTest, FindsTextsFarAndNearAlike)
{
    const int32_t editor = Editor();
    TEditWordWrap(editor, 0);
    // The word stands around the places where a search looks further.
    for (int32_t place : {4085, 4092, 4096, 4100, 65530, 65536, 65550, 1 << 20}) {
        std::string text(static_cast<size_t>(place), 'x');
        text[text.size() - 1] = '\n';
        text += "Wörd\n" + std::string(static_cast<size_t>(place), 'x');
        TEditSetText(editor, text.c_str());
        const int32_t size = TEditGetSize(editor);
        for (int32_t flags : {0, 1, 4, 5}) {
            EXPECT_EQ(TEditFind(editor, "Wörd", 0, flags), place) << flags;
            EXPECT_EQ(TEditFind(editor, "Wörd", place, flags), place);
            EXPECT_EQ(TEditFind(editor, "Wörd", place + 1, flags), -1);
            EXPECT_EQ(TEditFind(editor, "Wörd", size, flags | 2), place);
            EXPECT_EQ(TEditFind(editor, "Wörd", place + 5, flags | 2), place);
            EXPECT_EQ(TEditFind(editor, "Wörd", place + 4, flags | 2), -1);
        }
        EXPECT_EQ(TEditFind(editor, "wör", 0, 4), -1);
        EXPECT_EQ(TEditFind(editor, "ÖRD", 0, 6), -1);
        EXPECT_EQ(TEditFind(editor, "ÖRD", size, 2), place + 1);
    }
}

TEST_F(TextEditorTest, TakesStepsBackAndBringsThemAgain)
{
    const int32_t editor = Editor();
    Type("one ");
    TEditUndo(editor);
    EXPECT_NE(All(editor), "one ");
    while (!All(editor).empty())
        TEditUndo(editor);
    TEditUndo(editor);
    EXPECT_EQ(All(editor), "") << "there is nothing left";
    for (int i = 0; i < 5; i++)
        TEditRedo(editor);
    EXPECT_EQ(All(editor), "one ");
    TEditSetText(editor, "new");
    TEditUndo(editor);
    TEditRedo(editor);
    EXPECT_EQ(All(editor), "new");
}

TEST_F(TextEditorTest, PartsHaveColoursAndFonts)
{
    const int32_t editor = Editor(26, "abcde");
    const int32_t font = OpenFont(nullptr, nullptr, 30);
    TEditSetColor(editor, 3, 1, static_cast<int32_t>(0xFF0000FF));
    TEditSetFont(editor, 1, 3, font);
    const auto style_at = [&](int32_t offset) {
        return WithEditor([=](BTextView& text) {
            BFont style;
            rgb_color color;
            text.GetFontAndColor(offset, &style, &color);
            return std::to_string(int(style.Size()) == 30) + std::to_string(color.red);
        });
    };
    EXPECT_EQ(style_at(0), "00");
    EXPECT_EQ(style_at(1), "1255");
    EXPECT_EQ(style_at(2), "1255");
    EXPECT_EQ(style_at(3), "00");
    for (int32_t from : kOffsets) {
        for (int32_t to : kOffsets) {
            TEditSetColor(editor, from, to, from ^ to);
            TEditSetFont(editor, from, to, font);
        }
    }
    TEditSetFont(editor, 0, 5, 0);
    EXPECT_EQ(All(editor), "abcde");
    SetFontGadget(editor, font);
    EXPECT_EQ(style_at(0).front(), '1');
    CloseFont(font);
}

// --- what is no editor

TEST_F(TextEditorTest, OtherGadgetsAndUnknownIdentsAnswerNothing)
{
    const int32_t field = Field();
    const int32_t editor = Editor(29, "text");
    SetString(field, "field");
    EXPECT_STREQ(TEditGetText(field), "field");
    EXPECT_STREQ(TEditGetText(editor), "");
    EXPECT_STREQ(GetString(editor), "");
    for (int32_t ident : {field, window.Ident(), 0, -1, INT32_MAX, INT32_MIN}) {
        TEditSetText(ident, "x");
        TEditInsertText(ident, "x");
        TEditSetTextCommand(ident, "x", 1);
        TEditReplaceSelection(ident, "x");
        TEditSetMaxSize(ident, 1);
        TEditGotoLine(ident, 1);
        TEditSetTabWidth(ident, 1);
        TEditCommand(ident, 0, 1);
        TEditSelect(ident, 0, 1);
        TEditSetColor(ident, 0, 1, 0);
        TEditSetFont(ident, 0, 1, 0);
        TEditUndo(ident);
        TEditRedo(ident);
        EXPECT_EQ(TEditCountLines(ident), 0);
        EXPECT_EQ(TEditGetSize(ident), 0);
        EXPECT_STREQ(TEditGetLine(ident, 0), "");
        EXPECT_EQ(TEditGetAll(ident), nullptr);
        EXPECT_EQ(TEditGetSelection(ident, 1), 0);
        EXPECT_EQ(TEditCaret(ident), 0);
        EXPECT_EQ(TEditFind(ident, "x", 0, 0), -1);
        EXPECT_FALSE(TEditLoadFile(ident, "/etc/passwd"));
        EXPECT_FALSE(TEditSaveFile(ident, "/nowhere/at/all"));
    }
    EXPECT_STREQ(GetString(field), "field");
    EXPECT_EQ(All(editor), "text");
}

TEST_F(TextEditorTest, AnEditorWorksWithoutAWindow)
{
    const int32_t editor = CreateGadget(27, -1, 0, 0, 100, 100, nullptr, 0);
    TEditSetText(editor, "early\ntext");
    EXPECT_EQ(All(editor), "early\ntext");
    EXPECT_STREQ(TEditGetLine(editor, 1), "text");
    EXPECT_EQ(TEditFind(editor, "text", 0, 0), 6);
    AttachGadgetToWindow(window, editor);
    EXPECT_EQ(All(editor), "early\ntext");
    KillGadget(0, editor);
    EXPECT_EQ(TEditGetAll(editor), nullptr);
}

// --- files

TEST_F(TextEditorTest, FilesAreReadAndWrittenWhole)
{
    TempFolder folder;
    const int32_t editor = Editor();
    const std::string text = "é\r\n\xFF\n" + std::string(3 << 20, 'x');
    EXPECT_TRUE(TEditLoadFile(editor, folder.Put("/in", text).c_str()));
    EXPECT_EQ(All(editor), text);
    EXPECT_TRUE(TEditSaveFile(editor, folder.At("/out").c_str()));
    EXPECT_EQ(contents(folder.At("/out")), text);
    EXPECT_TRUE(TEditLoadFile(editor, folder.Put("/empty").c_str()));
    EXPECT_EQ(TEditGetSize(editor), 0);
    EXPECT_TRUE(TEditSaveFile(editor, folder.At("/out").c_str()));
    EXPECT_EQ(contents(folder.At("/out")), "");
    EXPECT_TRUE(TEditLoadFile(editor, folder.Put("/zero", std::string("a\0b", 3)).c_str()));
    EXPECT_EQ(TEditGetSize(editor), 3);
    EXPECT_TRUE(TEditSaveFile(editor, folder.At("/zero2").c_str()));
    EXPECT_EQ(contents(folder.At("/zero2")), std::string("a\0b", 3));
    size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path()))
        files += entry.path().filename().string().front() == '.' ? 100 : 1;
    EXPECT_EQ(files, 5u) << "nothing else is left behind";
    EXPECT_EQ(Calls(), "");
}

TEST_F(TextEditorTest, WhatIsNoPlainFileIsNotRead)
{
    TempFolder folder;
    const int32_t editor = Editor(26, "kept");
    mkfifo(folder.At("/pipe").c_str(), 0600);
    const std::string gone = folder.At("/gone");
    const struct {
        std::string path;
        int error;
    } rows[] = {{gone, ENOENT},          {"", ENOENT},
                {folder.Path(), EISDIR}, {folder.At("/pipe"), EINVAL},
                {"/dev/null", EINVAL},   {folder.Put("/file") + "/below", ENOTDIR}};
    for (const auto& row : rows) {
        dos_err = 0;
        EXPECT_EQ(error_of(TEditLoadFile(editor, row.path.c_str())), row.error) << row.path;
        EXPECT_EQ(All(editor), "kept");
    }
    EXPECT_FALSE(TEditLoadFile(editor, nullptr));
    TEditSetMaxSize(editor, 10);
    EXPECT_EQ(error_of(TEditLoadFile(editor, folder.Put("/long", "12345678901").c_str())), EFBIG);
    EXPECT_EQ(All(editor), "kept");
    EXPECT_TRUE(TEditLoadFile(editor, folder.Put("/fits", "1234567890").c_str()));
    const std::string sparse = folder.Put("/sparse");
    ASSERT_EQ(truncate(sparse.c_str(), off_t{1} << 33), 0);
    TEditSetMaxSize(editor, INT32_MAX);
    EXPECT_EQ(error_of(TEditLoadFile(editor, sparse.c_str())), EFBIG);
    EXPECT_EQ(All(editor), "1234567890");
    chmod(folder.Path().c_str(), 0755);
    chmod(folder.At("/fits").c_str(), 0);
    const AsNobody nobody;
    EXPECT_EQ(error_of(TEditLoadFile(editor, folder.At("/fits").c_str())), EACCES);
}

TEST_F(TextEditorTest, AFileThatIsReplacedKeepsWhatItWas)
{
    TempFolder folder;
    const int32_t editor = Editor(26, "new");
    const std::string file = folder.Put("/file", "old"), link = folder.At("/link");
    chmod(file.c_str(), 0640);
    const bool has_attributes = setxattr(file.c_str(), "user.note", "kept", 4, 0) == 0;
    std::filesystem::create_symlink("file", link);
    EXPECT_TRUE(TEditSaveFile(editor, link.c_str()));
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(contents(file), "new");
    struct stat info;
    ASSERT_EQ(stat(file.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0640u);
    if (has_attributes) {
        char value[8] = {};
        EXPECT_EQ(getxattr(file.c_str(), "user.note", value, sizeof(value)), 4);
        EXPECT_STREQ(value, "kept");
    }
}

TEST_F(TextEditorTest, AFileThatCannotBeReplacedStaysWhole)
{
    TempFolder folder;
    const int32_t editor = Editor(26, "new");
    mkfifo(folder.At("/pipe").c_str(), 0600);
    const std::string file = folder.Put("/file", "old");
    const struct {
        std::string path;
        int error;
    } rows[] = {{folder.Path(), EISDIR},
                {folder.At("/gone/file"), ENOENT},
                {file + "/below", ENOTDIR},
                {"", ENOENT},
                {folder.At("/") + std::string(300, 'x'), ENAMETOOLONG}};
    for (const auto& row : rows) {
        dos_err = 0;
        EXPECT_EQ(error_of(TEditSaveFile(editor, row.path.c_str())), row.error) << row.path;
    }
    EXPECT_FALSE(TEditSaveFile(editor, nullptr));
    EXPECT_FALSE(TEditSaveFile(editor, folder.At("/pipe").c_str()));
    EXPECT_FALSE(TEditSaveFile(editor, "/dev/null"));
    chmod(folder.Path().c_str(), 0777);
    chmod(file.c_str(), 0444);
    {
        const AsNobody nobody;
        EXPECT_EQ(error_of(TEditSaveFile(editor, file.c_str())), EACCES) << "a file to be read";
    }
    chmod(folder.Path().c_str(), 0555);
    chmod(file.c_str(), 0666);
    {
        const AsNobody nobody;
        EXPECT_EQ(error_of(TEditSaveFile(editor, file.c_str())), EACCES) << "no room beside it";
    }
    chmod(folder.Path().c_str(), 0755);
    EXPECT_EQ(contents(file), "old");
    EXPECT_EQ(All(editor), "new");
}

TEST_F(TextEditorTest, ADiskThatIsFullLeavesTheOldFileWhole)
{
    TempFolder folder;
    const int32_t editor = Editor(26, std::string(100000, 'n').c_str());
    const std::string file = folder.Put("/file", std::string(50000, 'o'));
    {
        const NoRoom full(60000);
        EXPECT_EQ(error_of(TEditSaveFile(editor, file.c_str())), EFBIG);
        EXPECT_EQ(error_of(TEditSaveFile(editor, folder.At("/new").c_str())), EFBIG);
    }
    EXPECT_EQ(contents(file), std::string(50000, 'o'));
    const auto entries = std::filesystem::directory_iterator(folder.Path());
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 1) << "nothing is left behind";
    EXPECT_TRUE(TEditSaveFile(editor, file.c_str()));
    EXPECT_EQ(contents(file).size(), 100000u);
}
