// Calls whose memory fails: each gives its failure value, or does its work without, and the program
// goes on. Every allocation of a call fails once, the first to the last.

#include "memory/support/failing_memory.h"

#include <Clipboard.h>
#include <Message.h>

#include <string>
#include <vector>

#include <unistd.h>

namespace {

TEST_F(FailingMemory, RegistryIsNullThen)
{
    void** table = nullptr;
    int failures = -1;
    with_each_failing([&] {
        failures++;
        table = Open_Sys(1);
        EXPECT_EQ(table == nullptr, has_failed());
    });
    EXPECT_GT(failures, 9);
    Close_Sys(table);
    gRegistry = Open_Sys(1);
}

TEST_F(FailingMemory, WindowIsNotOpenThen)
{
    CloseWindow(OpenWindow(10, 10, 50, 50));  // what is made once
    int opened = 0;
    with_each_failing([&] {
        const int32_t window = OpenWindow(100, 100, 200, 100);
        stop_failing();
        EXPECT_TRUE(window != 0 || has_failed());
        if (window != 0) {
            opened++;
            EXPECT_TRUE(is_window_ident(window));
            FRectangle(window, 0, 0, 20, 20);
            EXPECT_NE(GetPixel(window, 5, 5), GetPixel(window, 50, 50));
        }
        CloseWindow(window);
    });
    EXPECT_GT(opened, 0);
}

TEST_F(FailingMemory, WindowWithoutAThreadIsNotOpen)
{
    fail_threads(true);
    const int32_t window = OpenWindow(100, 100, 200, 100);
    fail_threads(false);
    EXPECT_EQ(window, 0);
    TestWindow next;
    EXPECT_TRUE(is_window_ident(next));
}

TEST_F(FailingMemory, DrawingGoesOn)
{
    TestWindow window(100, 100, 300, 200);
    static const int16_t points[] = {0, 0, 50, 10, 40, 60, 5, 90};
    const std::vector<std::function<void()>> calls = {
        [&] { FRectangle(window, 0, 0, 20, 20); },
        [&] { SetStrokeRectangle(window, 0, 0, 20, 20, 5, 5); },
        [&] { SetStrokeFill(window, 0, 0, 20, 20, 5, 5); },
        [&] { Circle(window, 50, 50, 20); },
        [&] { FEllipse(window, 50, 50, 20, 10); },
        [&] { FArc(window, 50, 50, 20, 20, 10, 200); },
        [&] { FTriangle(window, 0, 0, 30, 30, 0, 30); },
        [&] { Line(window, 0, 0, 30, 17); },
        [&] { LineTo(window, 90, 80); },
        [&] { FillPolygon(window, 4, points); },
        [&] { StrokePolygon(window, 4, points, 1); },
        [&] { FillBezier(window, points); },
        [&] { StrokeBezier(window, points); },
        [&] { PolyDraw(window, 4, points); },
        [&] { Text(window, "never seen before \xc3\xa9"); },
        [&] { GetTextWidth(window, "nor this"); },
        [&] { Clear(window); },
        [&] { Blit(window, 0, 0, 50, 50, 60, 60); },
        [&] { SetClipping(window, 10, 10, 80, 80); },
        [&] { SetClippingAll(window); },
        [&] { DrawAcces(window, 0); },
        [&] { SetForeColor(window, 0xFF, 0xFF00FF); },
        [&] { SetPenWidth(window, 5); },
        [&] { SetLineMode(window, 1, 2); },
        [&] { SetRefreshWindowMode(window, 1); },
        [&] { SetDefaultGfx(window); },
        [&] { Line(window, 3, 5, 30, 17); },
        [&] { Arc(window, 50, 50, 20, 30, 10, 200); },
        [&] { DrawSeparatorHoriz(window, 0, 0, 30); },
        [&] { GetPixel(window, 0, 0); },
    };
    Text(window, "what a thread has once");
    for (const auto& call : calls)
        with_each_failing(call);
    SetClippingAll(window);
    Clear(window);
    FRectangle(window, 0, 0, 20, 20);
    EXPECT_NE(GetPixel(window, 5, 5), GetPixel(window, 50, 50));
}

TEST_F(FailingMemory, FilesSayThatTheyFailed)
{
    char name[] = "/tmp/plinth-memory-XXXXXX";
    const std::string folder = mkdtemp(name);
    const std::string file = folder + "/file";
    const std::string deep = folder + "/some/more";
    with_each_failing([&] {
        const int32_t ch = OpenFile(file.c_str(), 1);
        EXPECT_TRUE(ch != 0 || has_failed());
        const bool written = WriteFile(ch, "some text");
        EXPECT_TRUE(written || has_failed());
        CloseFile(ch);
    });
    EXPECT_EQ(GetLengthFile(file.c_str()), 9);
    with_each_failing([&] { EXPECT_TRUE(GetLengthFile(file.c_str()) == 9 || has_failed()); });
    with_each_failing([&] { EXPECT_TRUE(GetFileType(file.c_str()) == 0 || has_failed()); });
    with_each_failing([&] { FindFirstEntry(folder.c_str()); });
    with_each_failing([&] { FindNextEntry(); });
    with_each_failing([&] { MakeDir(deep.c_str()); });
    with_each_failing([&] { IsEmptyDirectory(folder.c_str()); });
    with_each_failing([&] { CreateLink(file.c_str(), "link"); });
    with_each_failing([&] { RenameFile(file.c_str(), "file"); });
    with_each_failing([&] { FileMoveTo(file.c_str(), folder.c_str()); });
    with_each_failing([&] { CreateFileSize(file.c_str(), 20); });
    with_each_failing([&] { GetAttribut(file.c_str()); });
    with_each_failing([&] { SetAttribut(file.c_str(), "rw-r--r--"); });
    with_each_failing([&] { GetPath(0); });
    with_each_failing([&] { GetPath(1); });
    with_each_failing([&] { GetBootVolumeName(); });
    with_each_failing([&] { ExtractPathName("a/b/c"); });
    with_each_failing([&] { ExtractFileName("a/b/c"); });
    with_each_failing([&] { WatchDir(folder.c_str(), 1); });
    with_each_failing([&] { WatchDir(folder.c_str(), 0); });
    with_each_failing([&] { DeleteFile(file.c_str()); });
    EXPECT_EQ(system(("rm -rf '" + folder + "'").c_str()), 0);
}

TEST_F(FailingMemory, ClipboardKeepsWhatItHasOrTakesTheNewText)
{
    ASSERT_TRUE(SetStringClipboard("before"));
    EXPECT_STREQ(GetStringClipboard(), "before");  // makes what a thread has once
    with_each_failing([&] {
        const bool set = SetStringClipboard("after");
        stop_failing();
        EXPECT_TRUE(set || has_failed());
        if (set) {
            EXPECT_STREQ(GetStringClipboard(), "after");
        }
    });
    with_each_failing([&] { GetStringClipboard(); });
    with_each_failing([&] { IsEmptyClipboard(); });
    with_each_failing([&] { ClearClipboard(); });
    EXPECT_TRUE(SetStringClipboard("at last"));
    EXPECT_STREQ(GetStringClipboard(), "at last");
}

// As another program does: what is there has to be fetched again.
static void change_clipboard()
{
    static const char kText[] = "another text that is longer than what is held in place";
    BClipboard other("system");
    ASSERT_TRUE(other.Lock());
    other.Clear();
    other.Data()->AddData("text/plain", B_MIME_TYPE, kText, sizeof(kText) - 1);
    EXPECT_EQ(other.Commit(), B_OK);
    other.Unlock();
}

TEST_F(FailingMemory, EntryFieldsLetGoOfTheClipboard)
{
    TestWindow window;
    const int32_t field = CreateGadget(PLINTH_STRING_FIELD, window, 10, 10, 180, 24, "", 0);
    for (int command : {1, 2, 3}) {
        for (int before = 0; before < 60; before++) {
            SetString(field, "a text");
            SelectCommand(field, 4);
            change_clipboard();
            fail_after(before);
            SelectCommand(field, command);
            stop_failing();
            EXPECT_FALSE(be_clipboard->IsLocked()) << command << ", " << before;
        }
    }
}

TEST_F(FailingMemory, FontsGoOn)
{
    TestWindow window;
    Text(window, "what a thread has once");
    with_each_failing([&] {
        const int32_t font = OpenFont("DejaVu Sans", "Book", 14);
        stop_failing();
        EXPECT_TRUE(font != 0 || has_failed());
        CloseFont(font);
    });
    with_each_failing([&] { SetFontSize(window, 17); });
    with_each_failing([&] { FontExists("No Such Font"); });
    with_each_failing([&] { CountFontList(); });
    with_each_failing([&] { GetList(PLINTH_LIST_FONTS); });
}

TEST_F(FailingMemory, TextsStayOrAreTheNewOnes)
{
    TestWindow window(100, 100, 300, 200);
    const int32_t field = CreateGadget(3, window, 10, 10, 200, 24, "Name", 0);
    const int32_t editor = CreateGadget(27, window, 10, 40, 200, 100, nullptr, 0);
    const int32_t font = OpenFont(nullptr, nullptr, 20);
    const std::string file = "/tmp/plinth-memory-text-" + std::to_string(getpid());
    const std::string words = "some words that are broken into lines, and more of them\n";
    GetString(field);  // makes what a thread has once
    TEditSetText(editor, words.c_str());
    ASSERT_TRUE(TEditSaveFile(editor, file.c_str()));
    const std::vector<std::function<void()>> calls = {
        [&] { SetString(field, "a text that is longer than what is held in place"); },
        [&] { SetInteger(field, 42); },
        [&] { GetString(field); },
        [&] { SetDiviser(field, -10); },
        [&] { SelectCommand(field, 4); },
        [&] { SelectCommand(field, 2); },
        [&] { TEditSetText(editor, words.c_str()); },
        [&] { TEditInsertText(editor, words.c_str()); },
        [&] { TEditWordWrap(editor, 0); },
        [&] { TEditWordWrap(editor, 1); },
        [&] { TEditSelect(editor, 5, 10); },
        [&] { TEditReplaceSelection(editor, "other"); },
        [&] { TEditUndo(editor); },
        [&] { TEditRedo(editor); },
        [&] { TEditSetColor(editor, 3, 20, 0x112233FF); },
        [&] { TEditSetFont(editor, 3, 20, font); },
        [&] { TEditGetLine(editor, 1); },
        [&] { TEditFind(editor, "lines", 0, 0); },
        [&] { TEditSetMaxSize(editor, 100); },
        [&] { MyFree(TEditGetAll(editor)); },
    };
    for (size_t i = 0; i < calls.size(); i++) {
        SCOPED_TRACE(i);
        with_each_failing(calls[i]);
        TEditGetSize(editor);
    }
    TEditSetText(editor, "kept");
    with_each_failing([&] {
        const bool loaded = TEditLoadFile(editor, file.c_str());
        stop_failing();
        EXPECT_TRUE(loaded || has_failed());
        if (loaded) {
            EXPECT_EQ(TEditGetSize(editor), static_cast<int32_t>(words.size()));
        }
    });
    with_each_failing([&] {
        const bool saved = TEditSaveFile(editor, file.c_str());
        stop_failing();
        EXPECT_TRUE(saved || has_failed());
        EXPECT_EQ(GetLengthFile(file.c_str()), static_cast<int32_t>(words.size()));
    });
    CloseFont(font);
    DeleteFile(file.c_str());
}

}  // namespace
