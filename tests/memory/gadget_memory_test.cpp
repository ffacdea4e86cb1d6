// Gadgets whose memory fails.

#include "memory/support/failing_memory.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace {

const char* const kLong = "A text that is too long to be kept in any small buffer of a string";
const char* const kLines =
    "A first line of some length\n\tand a second one\n\nThe third one is below an empty one\n";
const char* const kChoices[] = {"first", kLong, "third", nullptr};

bool has_labels(int32_t kind) { return kind == 18 || kind == 19; }

const void* text_of(int32_t kind)
{
    return has_labels(kind) ? static_cast<const void*>(kChoices) : kLong;
}

// Every kind there is, and some that are none.
const int32_t kLastKind = 36;

TEST_F(FailingMemory, GadgetsAreWholeOrNone)
{
    TestWindow window(100, 100, 400, 300);
    for (int32_t kind = 0; kind <= kLastKind; kind++) {
        const bool exists = [&] {
            const int32_t gadget = CreateGadget(kind, window, 10, 10, 200, 100, text_of(kind), 5);
            KillGadget(window, gadget);
            return gadget != 0;
        }();
        SCOPED_TRACE(kind);
        with_each_failing([&] {
            const int32_t gadget = CreateGadget(kind, window, 10, 10, 200, 100, text_of(kind), 5);
            EXPECT_TRUE(gadget != 0 || has_failed() || !exists);
            stop_failing();
            EXPECT_EQ(is_gadget_ident(gadget), gadget != 0);
            KillGadget(window, gadget);
        });
    }
}

class GadgetCalls : public FailingMemory {
protected:
    int32_t Make(int32_t kind)
    {
        return CreateGadget(kind, fWindow, 10, 10, 200, 100, text_of(kind), 5);
    }
    TestWindow fWindow{100, 100, 400, 300};
};

// Each call on a gadget of each kind.
TEST_F(GadgetCalls, OfAllKindsGoOn)
{
    const std::vector<std::function<void(int32_t)>> calls = {
        [&](int32_t g) { HideGadget(fWindow, g); },
        [&](int32_t g) { SetGadget(fWindow, g); },
        [&](int32_t g) { SetFontGadget(g, 0); },
        [&](int32_t g) { SetAntiliasingGadget(g, 1); },
        [&](int32_t g) { SetForeColorGadget(g, 0xFF, 0xFF00); },
        [&](int32_t g) { SetBackColorGadget(g, 0xFF00FF); },
        [&](int32_t g) { FocusOnClick(g, 1); },
        [&](int32_t g) { SetHandlerForGadget(g, 1, nullptr); },
        [&](int32_t g) { SetLabel(g, kLong); },
        [&](int32_t g) { GetLabel(g); },
        [&](int32_t g) { SetEnabled(g, 0); },
        [&](int32_t g) { SetEnabled(g, 1); },
        [&](int32_t g) { GetEnabled(g); },
        [&](int32_t g) { ActivateGadget(g); },
        [&](int32_t g) { SetChecked(g, 1); },
        [&](int32_t g) { GetChecked(g); },
        [&](int32_t g) { SetValue(g, 3); },
        [&](int32_t g) { GetValue(g); },
        [&](int32_t g) { RadSelected(g, 1); },
        [&](int32_t g) { MxSelected(g, 1); },
        [&](int32_t g) { ChangeMxData(g, kChoices); },
        [&](int32_t g) { SetProportion(g, 50); },
        [&](int32_t g) { SetRange(g, 0, 50); },
        [&](int32_t g) { SetSteps(g, 1, 5); },
        [&](int32_t g) { SetSliderPosition(g, 2); },
        [&](int32_t g) { SetSliderProportion(g, 50); },
        [&](int32_t g) { SetStyle(g, 1); },
        [&](int32_t g) { SetBarColor(g, 0xFF00); },
        [&](int32_t g) { SetFillColor(g, 0xFF00); },
        [&](int32_t g) { SetHashCount(g, 5); },
        [&](int32_t g) { SetHashType(g, 3); },
        [&](int32_t g) { SetLimitsLabel(g, kLong, kLong); },
        [&](int32_t g) { SetStatusLabel(g, kLong); },
        [&](int32_t g) { SetStatusTrail(g, kLong); },
        [&](int32_t g) { SetStatusMaxValue(g, 10); },
        [&](int32_t g) { SetStatusValue(g, 3); },
        [&](int32_t g) { SetBorder(g, 1); },
        [&](int32_t g) { SetLabelBBox(g, kLong); },
        [&](int32_t g) { SetCellSize(g, 6); },
        [&](int32_t g) { SetLayout(g, 8); },
        [&](int32_t g) { SetColorRgb(g, 0x336698FF); },
        [&](int32_t g) { SetColorInt(g, 0x336698FF); },
        [&](int32_t g) { GetColor(g); },
        [&](int32_t g) { AddLvEntry(g, kLong); },
        [&](int32_t g) { AddLvEntry(g, "short"); },
        [&](int32_t g) { AddEntryInSub(g, 0, kLong); },
        [&](int32_t g) { ChangeEntryStr(g, 0, kLong); },
        [&](int32_t g) { ChangeItemColor(g, 0, 1, 2, 3, 4); },
        [&](int32_t g) { EnableItemLv(g, 0, 0); },
        [&](int32_t g) { SetMultiSelect(g, 1); },
        [&](int32_t g) { SetSelectEntry(g, 0); },
        [&](int32_t g) { SetDeSelectEntry(g, 0); },
        [&](int32_t g) { LvSelectAll(g); },
        [&](int32_t g) { LvSelectNone(g); },
        [&](int32_t g) { IsItemSelected(g, 0); },
        [&](int32_t g) { CountEntry(g); },
        [&](int32_t g) { SwapItem(g, 0, 1); },
        [&](int32_t g) { MoveItem(g, 0, 1); },
        [&](int32_t g) { SortLv(g); },
        [&](int32_t g) { GetLvItem(g, 0); },
        [&](int32_t g) { LvExpandAll(g); },
        [&](int32_t g) { LvCollapseAll(g); },
        [&](int32_t g) { SetDragLv(g, 1); },
        [&](int32_t g) { SetDrawHookLv(g, 0, nullptr); },
        [&](int32_t g) { RemoveItem(g, 0); },
        [&](int32_t g) { ClearListView(g); },
        [&](int32_t g) { AddTab(g, kLong); },
        [&](int32_t g) { AddTab(g, "short"); },
        [&](int32_t g) { TabEnable(g, 1, 0); },
        [&](int32_t g) { TabEnable(g, 1, 1); },
        [&](int32_t g) { TabSelect(g, 1); },
        [&](int32_t g) { TabSelection(g); },
        [&](int32_t g) { TabSetFocus(g, 0, 1); },
        [&](int32_t g) { SetTabHeight(g, 30); },
        [&](int32_t g) { SetTabWidth(g, 0); },
        [&](int32_t g) { RemoveTab(g, 0); },
        [&](int32_t g) { SetString(g, kLong); },
        [&](int32_t g) { GetString(g); },
        [&](int32_t g) { SetInteger(g, 1234567); },
        [&](int32_t g) { SetMaxSizeString(g, 40); },
        [&](int32_t g) { SetFilterString(g, 5); },
        [&](int32_t g) { TEditSetText(g, kLines); },
        [&](int32_t g) { TEditInsertText(g, kLong); },
        [&](int32_t g) { TEditWordWrap(g, 1); },
        [&](int32_t g) { TEditGotoLine(g, 2); },
        [&](int32_t g) { TEditSetTabWidth(g, 40); },
        [&](int32_t g) { TEditGetLine(g, 1); },
        [&](int32_t g) { TEditGetAll(g); },
        [&](int32_t g) { TEditLineAt(g, 50); },
        [&](int32_t g) { TEditSelect(g, 3, 60); },
        [&](int32_t g) { TEditReplaceSelection(g, kLong); },
        [&](int32_t g) { TEditFind(g, "third", 0, 0); },
        [&](int32_t g) { TEditUndo(g); },
        [&](int32_t g) { TEditRedo(g); },
        [&](int32_t g) { TEditSetColor(g, 2, 9, 0xFF00); },
        [&](int32_t g) { TEditSetFont(g, 4, 30, 0); },
        [&](int32_t g) { TEditSetMaxSize(g, 20); },
        [&](int32_t g) { SelectAll(g); },
        [&](int32_t g) { CopyString(g); },
        [&](int32_t g) { PasteString(g); },
        [&](int32_t g) { CutString(g); },
        [&](int32_t g) { SetDefaultButton(fWindow, g); },
        [&](int32_t g) { AttachPopUpToGadget(g, 0); },
        [&](int32_t g) { ResizeGadget(g, 150, 80); },
        [&](int32_t g) { AttachGadgetToWindow(fWindow, g); },
    };
    for (int32_t kind = 0; kind <= kLastKind; kind++) {
        const int32_t first = Make(kind);
        for (const auto& call : calls)
            call(
                first);  // the C library ends the process where it can not make a thread's own data
        KillGadget(fWindow, first);
        const int32_t gadget = Make(kind);
        if (gadget == 0)
            continue;
        SCOPED_TRACE(kind);
        for (const auto& call : calls)
            with_each_failing([&] { call(gadget); });
        EXPECT_TRUE(is_gadget_ident(gadget));
        KillGadget(fWindow, gadget);
    }
}

// Text, lines and places of an editor.
void expect_whole(int32_t editor)
{
    const int32_t size = TEditGetSize(editor), lines = TEditCountLines(editor);
    char* const text = TEditGetAll(editor);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(int32_t(strlen(text)), size);
    MyFree(text);
    EXPECT_EQ(TEditLineAt(editor, size), lines - 1);
    EXPECT_LE(TEditLineStart(editor, lines - 1), size);
    EXPECT_LE(TEditCaret(editor), size);
}

int32_t line_feeds(int32_t editor)
{
    char* const text = TEditGetAll(editor);
    const int32_t count = int32_t(std::count(text, text + strlen(text), '\n'));
    MyFree(text);
    return count;
}

// What an edit without memory leaves of an editor, the next ones can go on with.
TEST_F(GadgetCalls, EditorsStayWhole)
{
    const std::vector<std::function<void(int32_t)>> edits = {
        [](int32_t g) { TEditSetText(g, kLines); },
        [](int32_t g) { TEditSelect(g, 5, 60); },
        [](int32_t g) { TEditReplaceSelection(g, kLines); },
        [](int32_t g) { TEditInsertText(g, "typed"); },
        [](int32_t g) { TEditSetColor(g, 2, 9, 0xFF00); },
        [](int32_t g) { TEditSetFont(g, 4, 30, 0); },
        [](int32_t g) { TEditUndo(g); },
        [](int32_t g) { TEditRedo(g); },
    };
    std::string many;
    for (int i = 0; i < 300; i++)
        many += "a line\n";
    for (size_t i = 0; i < edits.size(); i++) {
        SCOPED_TRACE(i);
        int before = 0;
        do {
            const int32_t editor = Make(26);
            TEditWordWrap(editor, 0);
            for (size_t done = 0; done < i; done++)
                edits[done](editor);
            TEditGotoLine(editor, 1);
            fail_after(before++);
            edits[i](editor);
            stop_failing();
            expect_whole(editor);
            // The next edit breaks all lines where they should be.
            TEditInsertText(editor, many.c_str());
            expect_whole(editor);
            EXPECT_EQ(TEditCountLines(editor), line_feeds(editor) + 1);
            TEditUndo(editor);
            expect_whole(editor);
            EXPECT_EQ(TEditCountLines(editor), line_feeds(editor) + 1);
            KillGadget(fWindow, editor);
        } while (has_failed());
    }
}

TEST_F(GadgetCalls, MovingGadgetsIntoBoxesGoesOn)
{
    for (int before = 0; before < 40; before++) {
        const int32_t box = Make(24);
        const int32_t inside = Make(1);
        const int32_t title = Make(2);
        fail_after(before);
        BBoxAddGadget(box, inside);
        fail_after(before);
        BBoxAddGadgetTitle(box, title);
        stop_failing();
        EXPECT_TRUE(is_gadget_ident(inside));
        EXPECT_TRUE(is_gadget_ident(title));
        for (int32_t gadget : {inside, title, box})
            KillGadget(fWindow, gadget);
    }
}

// A gadget is on the page, where it was, or in no window.
TEST_F(GadgetCalls, MovingGadgetsIntoTabsGoesOn)
{
    int arrived = 0;
    for (int before = 0; before < 60; before++) {
        const int32_t tabs = Make(25);
        AddTab(tabs, "one");
        const int32_t inside = Make(1);
        fail_after(before);
        AddGadgetInTab(inside, tabs, 0);
        stop_failing();
        EXPECT_TRUE(is_gadget_ident(inside));
        AddGadgetInTab(inside, tabs, 0);
        arrived += !has_failed();
        for (int32_t gadget : {inside, tabs})
            KillGadget(fWindow, gadget);
        EXPECT_FALSE(is_gadget_ident(inside));
    }
    EXPECT_GT(arrived, 0);
}

int32_t sTold = 0;
void told(int32_t) { sTold++; }

// Each tab that is there is brought to the front, which its handler is told of.
TEST_F(GadgetCalls, TabsAreWholeOrNone)
{
    const int32_t tabs = Make(25);
    SetHandlerForGadget(tabs, 3, reinterpret_cast<void*>(told));
    for (int before = 0; before < 60; before++) {
        fail_after(before);
        AddTab(tabs, kLong);
        stop_failing();
    }
    const int32_t before = sTold;
    TabSelect(tabs, 0);
    EXPECT_EQ(sTold, before + 1);
    for (int failing = 0; failing < 60; failing++) {
        fail_after(failing % 20);
        RemoveTab(tabs, 0);
        stop_failing();
    }
    for (int i = 0; i < 60; i++)
        RemoveTab(tabs, 0);
    EXPECT_EQ(TabSelection(tabs), -1);
    KillGadget(fWindow, tabs);
}

TEST_F(GadgetCalls, GadgetsAreKilledAllTheSame)
{
    for (int32_t kind = 0; kind <= kLastKind; kind++) {
        for (int before = 0; before < 20; before++) {
            const int32_t gadget = Make(kind);
            fail_after(before);
            KillGadget(fWindow, gadget);
            stop_failing();
            KillGadget(fWindow, gadget);  // if it could not
            EXPECT_FALSE(is_gadget_ident(gadget));
        }
    }
}

TEST_F(GadgetCalls, RemovingAllGoesOn)
{
    for (int before = 0; before < 30; before++) {
        const int32_t one = Make(1), two = Make(15);
        fail_after(before);
        RemoveAll(fWindow);
        stop_failing();
        KillGadget(fWindow, one);
        KillGadget(fWindow, two);
    }
}

}  // namespace
