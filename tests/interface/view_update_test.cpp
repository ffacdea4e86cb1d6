// The update cycle of views in a window: who is asked to Draw() what, and what the screen gets.

#include "Drawing.h"

#include <Message.h>
#include <MessageQueue.h>
#include <Region.h>
#include <Window.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace {

// Notes what it is asked to draw, in "name left,top,right,bottom" form.
class Drawer : public BView {
public:
    Drawer(BRect frame, const char* name, uint32 mode = B_FOLLOW_LEFT_TOP, uint32 flags = 0)
        : BView(frame, name, mode, flags | B_WILL_DRAW)
    {
        SetViewColor(0, 255, 0);
    }
    void Draw(BRect update) override
    {
        char text[100];
        snprintf(text, sizeof(text), "%s %g,%g,%g,%g; ", Name(), update.left, update.top,
                 update.right, update.bottom);
        log += text;
        if (PenLocation() == BPoint(0, 0))
            MovePenTo(1, 1);
        else
            log += "state stayed; ";
        FillRect(BRect(0, 0, 1, 1));
    }
    void DrawAfterChildren(BRect) override { log += std::string(Name()) + " after; "; }
    void FrameMoved(BPoint where) override
    {
        moved = where;
        frameMoves++;
    }
    void FrameResized(float width, float) override { widths.push_back(width); }

    static std::string log;
    BPoint moved;
    int frameMoves = 0;
    std::vector<float> widths;
};

std::string Drawer::log;

class ViewUpdate : public testing::Test {
protected:
    ViewUpdate()
        : window(new BWindow(BRect(100, 100, 199, 179), "updates", B_TITLED_WINDOW, 0)),
          back(new Drawer(BRect(0, 0, 49, 49), "back")),
          child(new Drawer(BRect(10, 10, 29, 29), "child")),
          front(new Drawer(BRect(40, 0, 59, 19), "front"))
    {
        window->AddChild(back);
        back->AddChild(child);
        window->AddChild(front);
        window->Show();
        Settle();
        Drawer::log.clear();
    }
    ~ViewUpdate() override
    {
        EXPECT_TRUE(window->Lock());
        window->Quit();
    }
    // Waits until the window has drawn all it was asked to.
    void Settle()
    {
        for (int i = 0; i < 20000; i++) {
            if (!window->NeedsUpdate() && window->MessageQueue()->CountMessages() == 0 &&
                window->Lock()) {
                const bool done = !window->NeedsUpdate();
                window->Unlock();
                if (done && ++fCalm > 3)
                    break;
            } else {
                fCalm = 0;
            }
            snooze(1000);
        }
        fCalm = 0;
    }
    template <class Act>
    std::string After(Act act)
    {
        if (window->Lock()) {
            Drawer::log.clear();
            act();
            window->Unlock();
        }
        Settle();
        window->Lock();
        std::string log = Drawer::log;
        window->Unlock();
        return log;
    }

    BWindow* window;
    Drawer* back;
    Drawer* child;
    Drawer* front;

private:
    int fCalm = 0;
};

}  // namespace

TEST_F(ViewUpdate, OnlyWhatIsInvalidIsDrawnParentsFirst)
{
    EXPECT_EQ(After([&] { child->Invalidate(BRect(2, 3, 5, 6)); }), "child 2,3,5,6; ");
    EXPECT_EQ(After([&] { back->Invalidate(BRect(0, 0, 15, 5)); }), "back 0,0,15,5; ");
    // A view behind another one is asked for what shows of it.
    EXPECT_EQ(After([&] { back->Invalidate(BRect(30, 0, 49, 9)); }), "back 30,0,39,9; ");
    EXPECT_EQ(After([&] {
                  child->Invalidate();
                  front->Invalidate(BRect(0, 0, 0, 0));
                  back->Invalidate(BRect(0, 40, 3, 49));
              }),
              "back 0,40,3,49; child 0,0,19,19; front 0,0,0,0; ");
}

TEST_F(ViewUpdate, ChildrenAreDrawnWhereTheirParentIsInvalid)
{
    // The child's part of the parent is its own to draw.
    EXPECT_EQ(After([&] { back->Invalidate(BRect(12, 12, 20, 20)); }), "child 2,2,10,10; ");
    EXPECT_EQ(After([&] { back->Invalidate(BRect(0, 15, 14, 40)); }),
              "back 0,15,14,40; child 0,5,4,19; ");
    const BRegion parts(BRect(0, 29, 29, 29));
    EXPECT_EQ(After([&] { back->Invalidate(&parts); }), "back 0,29,9,29; child 0,19,19,19; ");
    EXPECT_EQ(After([&] { child->Hide(), back->Invalidate(BRect(12, 12, 20, 20)); }),
              "back 10,10,29,29; ");
}

TEST_F(ViewUpdate, ManyInvalidationsMakeOneDraw)
{
    EXPECT_EQ(After([&] {
                  for (int i = 0; i < 1000; i++)
                      child->Invalidate(BRect(i % 10, 0, i % 10 + 5, 5));
              }),
              "child 0,0,14,5; ");
}

TEST_F(ViewUpdate, HidingShowingAddingAndRemovingDrawWhatComesToLight)
{
    EXPECT_EQ(After([&] { front->Hide(); }), "back 40,0,49,19; ");
    EXPECT_EQ(After([&] { front->Show(); }), "front 0,0,19,19; ");
    EXPECT_EQ(After([&] { child->RemoveSelf(); }), "back 10,10,29,29; ");
    EXPECT_EQ(After([&] { back->AddChild(child); }), "child 0,0,19,19; ");
}

TEST_F(ViewUpdate, MovedPixelsAreKept)
{
    // Only what the view left is drawn anew.
    EXPECT_EQ(After([&] { child->MoveBy(5, 0); }), "back 10,10,14,29; ");
    // Scrolling: what came in; the pixels of children go along.
    EXPECT_EQ(After([&] { child->ScrollBy(0, 4); }), "child 0,20,19,23; ");
    EXPECT_EQ(After([&] { child->ScrollBy(0, -4); }), "child 0,0,19,3; ");
    // What waited for Draw() waits at the new place.
    EXPECT_EQ(After([&] {
                  child->Invalidate(BRect(0, 10, 4, 12));
                  child->ScrollBy(0, 10);
              }),
              "child 0,10,19,29; ");
}

TEST_F(ViewUpdate, ResizingDrawsTheNewPartOrAll)
{
    EXPECT_EQ(After([&] { child->ResizeBy(3, 0); }), "child 20,0,22,19; ");
    EXPECT_EQ(After([&] { child->ResizeBy(-3, 0); }), "back 30,10,32,29; ");
    child->SetFlags(child->Flags() | B_FULL_UPDATE_ON_RESIZE);
    EXPECT_EQ(After([&] { child->ResizeBy(0, 1); }), "child 0,0,19,20; ");
    front->SetResizingMode(B_FOLLOW_LEFT_RIGHT | B_FOLLOW_TOP);
    EXPECT_EQ(After([&] { window->ResizeBy(10, 0); }), "front 20,0,29,19; ");
}

TEST_F(ViewUpdate, BackgroundIsClearedAndDrawingStaysInside)
{
    After([&] {
        back->SetFlags(back->Flags() | B_DRAW_ON_CHILDREN);
        back->SetHighColor(255, 0, 0);
        back->FillRect(back->Bounds());
    });
    // Draw() of the view with children in it may draw over them, and comes once more after them.
    EXPECT_EQ(After([&] { back->Invalidate(BRect(0, 0, 20, 20)); }),
              "back 0,0,20,20; child 0,0,10,10; back after; ");
}

TEST_F(ViewUpdate, FrameEventsTellTheNewestFrame)
{
    After([&] { child->MoveBy(1, 1); });
    EXPECT_EQ(child->frameMoves, 0);
    After([&] {
        child->SetFlags(child->Flags() | B_FRAME_EVENTS);
        child->MoveTo(1, 2);
        child->MoveTo(3, 4);
        child->ResizeTo(9, 9);
    });
    EXPECT_EQ(child->moved, BPoint(3, 4));
    EXPECT_EQ(child->frameMoves, 1);
    EXPECT_EQ(child->widths, std::vector<float>{9});
}

TEST_F(ViewUpdate, DrawMayChangeTheTreeAndAskAgain)
{
    class Restless : public Drawer {
    public:
        using Drawer::Drawer;
        void Draw(BRect update) override
        {
            Drawer::Draw(update);
            if (doomed != nullptr) {
                BView* view = std::exchange(doomed, nullptr);
                view->RemoveSelf();
                delete view;
                Invalidate(BRect(0, 0, 2, 2));
            }
        }
        BView* doomed = nullptr;
    };
    std::string log = After([&] {
        auto* restless = new Restless(BRect(60, 40, 79, 59), "restless");
        restless->doomed = new Drawer(BRect(5, 5, 9, 9), "doomed");
        restless->AddChild(restless->doomed);
        window->AddChild(restless);
    });
    EXPECT_EQ(log.find("doomed"), std::string::npos) << log;
    EXPECT_EQ(log.substr(0, 25), "restless 0,0,19,19; restl") << log;
}

TEST_F(ViewUpdate, OtherThreadsDrawWithTheLock)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; i++) {
        threads.emplace_back([this, i] {
            for (int round = 0; round < 200; round++) {
                if (!window->Lock())
                    return;
                child->FillRect(BRect(i, 0, i + 5, 5));
                child->Invalidate(BRect(0, 0, 3, 3));
                if (round % 50 == i) {
                    child->MoveBy(i % 2 ? 1 : -1, 0);
                    back->ScrollBy(0, i % 2 ? 1 : -1);
                }
                window->Unlock();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    Settle();
    EXPECT_FALSE(window->NeedsUpdate());
}
