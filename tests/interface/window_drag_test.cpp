// Drags from view to view and from window to window, and files that fall in.

#include <Bitmap.h>
#include <Entry.h>
#include <Handler.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "window_harness.h"

using namespace window_test;

namespace {

class WindowDrag : public WindowTest {
protected:
    void OpenPair()
    {
        Make();
        a = Add(BRect(10, 10, 49, 49), "a");
        b = Add(BRect(60, 10, 99, 49), "b");
        a->onDown = [this] {
            BMessage message('drag');
            message.AddInt32("number", 7);
            a->DragMessage(&message, BRect(2, 3, 20, 20), replyTo);
        };
        Start();
    }

    TestView* a = nullptr;
    TestView* b = nullptr;
    BHandler* replyTo = nullptr;
};

}  // namespace

TEST_F(WindowDrag, EndsAsAMessageToTheViewBelow)
{
    OpenPair();
    inject_pointer(115, 116);
    inject_button(1, true);
    Settle();
    inject_pointer(120, 120);
    Settle();
    inject_pointer(165, 118);
    Settle();
    inject_button(1, false);
    Settle();
    EXPECT_EQ(log.Lines({"a entered", "a down", "a drag", "a up", "a dropped", "b "}),
              "a entered 5,6; a down 5,6; a drag inside 10,10; a drag exited 55,8; "
              "b drag entered 5,8; b up 5,8; b dropped drag");
    const BMessage drop = log.Message("b dropped drag");
    EXPECT_EQ(drop.FindInt32("number"), 7);
    EXPECT_EQ(drop.FindInt32("buttons"), 1);
    BPoint offset;
    EXPECT_EQ(drop.DropPoint(&offset), BPoint(165, 118));
    EXPECT_EQ(offset, BPoint(3, 3));

    const BMessage move = log.Message("a drag inside");
    BMessage dragged;
    ASSERT_EQ(move.FindMessage("be:drag_message", &dragged), B_OK);
    EXPECT_EQ(dragged.what, uint32('drag'));
    EXPECT_EQ(dragged.FindInt32("number"), 7);

    // It is over.
    inject_pointer(166, 118);
    Settle();
    EXPECT_EQ(log.Count("b inside 6,8"), 1);
}

TEST_F(WindowDrag, CrossesToAnotherWindow)
{
    OpenPair();
    Log other_log;
    auto* other = new TestWindow(other_log, BRect(400, 100, 499, 199));
    other->AddChild(new TestView(other_log, BRect(0, 0, 99, 99), "other"));
    other->Show();
    Settle(other);
    inject_pointer(115, 116);
    inject_button(1, true);
    Settle();
    inject_pointer(420, 130);
    Settle();
    Settle(other);
    inject_pointer(700, 600);  // over nothing
    Settle();
    Settle(other);
    inject_pointer(430, 140);
    inject_button(1, false);
    Settle();
    Settle(other);
    EXPECT_EQ(other_log.Lines({"other drag", "other up", "other dropped", "other exited"}),
              "other drag entered 20,30; other exited 300,500; other drag entered 30,40; "
              "other up 30,40; other dropped drag");
    EXPECT_EQ(log.Count("a dropped"), 0);
    Close(other);
}

TEST_F(WindowDrag, DropOverNothingVanishes)
{
    OpenPair();
    inject_pointer(115, 116);
    inject_button(1, true);
    Settle();
    inject_pointer(700, 600);
    inject_button(1, false);
    Settle();
    EXPECT_EQ(log.Count("a dropped") + log.Count("b dropped") + log.Count("dropped"), 0);
    inject_pointer(165, 118);
    Settle();
    EXPECT_EQ(log.Count("b drag"), 0);
}

TEST_F(WindowDrag, DropNobodyWantsReachesTheWindow)
{
    OpenPair();
    inject_pointer(115, 116);
    inject_button(1, true);
    Settle();
    inject_pointer(250, 220);  // beside the views
    inject_button(1, false);
    Settle();
    EXPECT_EQ(log.Lines({"dropped"}), "dropped drag");
}

TEST_F(WindowDrag, ReplyGoesToTheHandlerOfTheDrag)
{
    OpenPair();
    struct Answers : BHandler {
        explicit Answers(Log& log) : BHandler("answers"), fLog(log) {}
        void MessageReceived(BMessage* message) override
        {
            fLog.Add(message, "answer %s", code_text(message->what).c_str());
        }
        Log& fLog;
    } answers(log);
    window->Lock();
    window->AddHandler(&answers);
    window->Unlock();
    replyTo = &answers;
    b->onMessage = [](BMessage* message) {
        if (message->WasDropped())
            message->SendReply('took');
    };
    inject_pointer(115, 116);
    inject_button(1, true);
    Settle();
    inject_pointer(165, 118);
    inject_button(1, false);
    Settle();
    EXPECT_EQ(log.Count("answer took"), 1);
    window->Lock();
    window->RemoveHandler(&answers);
    window->Unlock();
}

TEST_F(WindowDrag, FlickDropsWhereTheButtonCameUp)
{
    OpenPair();
    WhileBusy([] {
        inject_pointer(115, 116);
        inject_button(1, true);
        inject_pointer(165, 118);
        inject_button(1, false);
    });
    Settle();
    EXPECT_EQ(log.Count("b dropped drag"), 1);
    EXPECT_EQ(log.Message("b dropped").DropPoint(), BPoint(165, 118));
}

TEST_F(WindowDrag, ClosedSourceTakesItsDragAlong)
{
    OpenPair();
    inject_pointer(115, 116);
    inject_button(1, true);
    Settle();
    Close(window);
    Log other_log;
    auto* other = new TestWindow(other_log, BRect(400, 100, 499, 199));
    other->AddChild(new TestView(other_log, BRect(0, 0, 99, 99), "other"));
    other->Show();
    inject_pointer(420, 130);
    inject_button(1, false);
    Settle(other);
    EXPECT_EQ(other_log.Count("other dropped"), 0);
    EXPECT_EQ(other_log.Count("other drag"), 0);
    Close(other);
}

namespace {

// Tells when it goes, and with it the bitmap that it is in.
class ImageView : public BView {
public:
    explicit ImageView(std::atomic<int>& gone)
        : BView(BRect(0, 0, 15, 15), "image", B_FOLLOW_NONE, B_WILL_DRAW), fGone(gone)
    {
    }
    ~ImageView() override { fGone++; }

private:
    std::atomic<int>& fGone;
};

class ImageDrag : public WindowDrag {
protected:
    void SetUp() override
    {
        WindowDrag::SetUp();
        OpenPair();
        a->onDown = [this] {
            BMessage message('drag');
            auto* image = new BBitmap(BRect(0, 0, 15, 15), B_RGBA32, true);
            image->AddChild(new ImageView(gone));
            a->DragMessage(&message, image, BPoint(4, 4));
        };
    }

    std::atomic<int> gone{0};
};

}  // namespace

TEST_F(ImageDrag, ImageThatTakesViewsGoesOnceItWasRead)
{
    for (int turn = 1; turn <= 3; turn++) {
        inject_pointer(115, 116);
        inject_button(1, true);
        Settle();
        EXPECT_EQ(gone, turn);
        inject_pointer(165, 118);
        inject_button(1, false);
        Settle();
        EXPECT_EQ(log.Count("b dropped drag"), turn);
    }
}

TEST_F(ImageDrag, ImageThatTakesViewsGoesWithAFlick)
{
    WhileBusy([] {
        inject_pointer(115, 116);
        inject_button(1, true);
        inject_pointer(165, 118);
        inject_button(1, false);
    });
    Settle();
    EXPECT_EQ(log.Count("b dropped drag"), 1);
    EXPECT_EQ(gone, 1);
}

TEST_F(WindowDrag, DroppedFilesHaveTheDesktopsFields)
{
    OpenPair();
    const std::filesystem::path folder =
        std::filesystem::path(testing::TempDir()) / "window_drag_test";
    std::filesystem::create_directories(folder);
    std::vector<std::string> paths;
    for (const char* name : {"one", "two"}) {
        paths.push_back((folder / name).string());
        std::ofstream(paths.back()) << name;
    }
    const char* const list[] = {paths[0].c_str(), paths[1].c_str()};
    inject_file_drop(165, 118, list, 2);
    Settle();
    const BMessage drop = log.Message("b dropped");
    EXPECT_EQ(drop.what, uint32(B_SIMPLE_DATA));
    EXPECT_EQ(drop.DropPoint(), BPoint(165, 118));
    // Programs take the count for the most files that they may read.
    EXPECT_EQ(drop.CountNames(B_ANY_TYPE), 7);
    for (const char* name : {"refs", "src_window", "click_pt", "TrackerViewToken", "buttons",
                             "_drop_point_", "_drop_offset_"}) {
        type_code type;
        EXPECT_EQ(drop.GetInfo(name, &type), B_OK) << name;
    }
    entry_ref ref;
    for (int32 i = 0; i < 2; i++) {
        ASSERT_EQ(drop.FindRef("refs", i, &ref), B_OK);
        EXPECT_STREQ(ref.name, i == 0 ? "one" : "two");
    }
    EXPECT_NE(drop.FindRef("refs", 2, &ref), B_OK);
    std::filesystem::remove_all(folder);

    log.Clear();
    inject_file_drop(165, 118, list, 0);
    Settle();
    EXPECT_EQ(log.Count("b dropped"), 0);
}
