// Frames, coordinates, resizing modes, scrolling, hiding, hit tests.

#include "Drawing.h"

#include <Window.h>

#include <cmath>
#include <limits>
#include <memory>

TEST(ViewFrame, CoordinatesGoThroughScrolledParents)
{
    Board board(99, 99);
    BView* outer = new_view(BRect(10, 20, 80, 90));
    BView* inner = new_view(BRect(5, 6, 25, 26));
    board.view->AddChild(outer);
    outer->AddChild(inner);
    outer->ScrollTo(3, 4);
    inner->ScrollBy(-1, -2);
    EXPECT_EQ(inner->Bounds(), BRect(-1, -2, 19, 18));
    EXPECT_EQ(inner->Frame(), BRect(5, 6, 25, 26));
    EXPECT_EQ(inner->LeftTop(), BPoint(-1, -2));
    EXPECT_EQ(inner->ConvertToParent(BPoint(0, 0)), BPoint(6, 8));
    EXPECT_EQ(outer->ConvertToParent(inner->ConvertToParent(BPoint(0, 0))), BPoint(13, 24));
    EXPECT_EQ(inner->ConvertFromScreen(inner->ConvertToScreen(BRect(1, 2, 3, 4))),
              BRect(1, 2, 3, 4));
    EXPECT_EQ(inner->ConvertToScreen(BPoint()) - board.view->ConvertToScreen(BPoint()),
              BPoint(13, 24));
}

TEST(ViewFrame, PlacesBecomeWholePixelsWhateverIsGiven)
{
    const float huge = std::numeric_limits<float>::max();
    const float nan = std::nanf("");
    BView view(BRect(1.4f, 2.6f, 11.4f, 12.6f), "view", 0, 0);
    EXPECT_EQ(view.Frame(), BRect(1, 3, 11, 13));
    view.MoveTo(0.5f, -0.6f);
    EXPECT_EQ(view.Frame().LeftTop(), BPoint(1, -1));
    view.ResizeTo(7.7f, nan);
    EXPECT_EQ(view.Bounds(), BRect(0, 0, 8, 0));
    for (float value : {huge, -huge, nan, std::numeric_limits<float>::infinity()}) {
        Board board;
        BView* child = new_view(BRect(0, 0, 5, 5), B_FOLLOW_ALL);
        board.view->AddChild(child);
        board.view->MoveTo(value, value);
        board.view->ResizeTo(value, value);
        child->ScrollTo(value, value);
        child->FillRect(BRect(value, value, -value, -value));
        child->FillRect(child->Bounds());
        EXPECT_FALSE(std::isnan(board.view->Frame().right));
        EXPECT_FALSE(std::isnan(child->Bounds().left));
    }
}

struct ModeRow {
    uint32 mode;
    BRect grown;   // parent 10 wider and 20 higher
    BRect shrunk;  // then 5 narrower and 7 lower than at first
};

TEST(ViewFrame, ResizingModesMoveEdges)
{
    const BRect frame(10, 10, 29, 29);
    const ModeRow rows[] = {
        {B_FOLLOW_NONE, frame, frame},
        {B_FOLLOW_LEFT_TOP, frame, frame},
        {B_FOLLOW_ALL, BRect(10, 10, 39, 49), BRect(10, 10, 24, 22)},
        {B_FOLLOW_LEFT_RIGHT | B_FOLLOW_TOP, BRect(10, 10, 39, 29), BRect(10, 10, 24, 29)},
        {B_FOLLOW_LEFT | B_FOLLOW_TOP_BOTTOM, BRect(10, 10, 29, 49), BRect(10, 10, 29, 22)},
        {B_FOLLOW_RIGHT | B_FOLLOW_BOTTOM, BRect(20, 30, 39, 49), BRect(5, 3, 24, 22)},
        {B_FOLLOW_H_CENTER | B_FOLLOW_V_CENTER, BRect(15, 20, 34, 39), BRect(8, 7, 27, 26)},
        {0x1235, BRect(10, 10, 34, 49), BRect(10, 10, 27, 22)},  // right edge to the middle
        {0x1535, BRect(15, 10, 34, 49), BRect(8, 10, 27, 22)},   // both to the middle
    };
    for (const ModeRow& row : rows) {
        auto parent = std::make_unique<BView>(BRect(0, 0, 99, 99), "parent", 0, 0);
        BView* child = new_view(frame, row.mode);
        parent->AddChild(child);
        parent->ResizeBy(10, 20);
        EXPECT_EQ(child->Frame(), row.grown) << std::hex << row.mode;
        parent->ResizeTo(94, 92);
        EXPECT_EQ(child->Frame(), row.shrunk) << std::hex << row.mode;
        parent->ResizeTo(99, 99);
        EXPECT_EQ(child->Frame(), frame) << std::hex << row.mode;
    }
}

TEST(ViewFrame, AChildShrunkBelowNothingComesBack)
{
    auto parent = std::make_unique<BView>(BRect(0, 0, 99, 99), "parent", 0, 0);
    BView* child = new_view(BRect(40, 40, 60, 60), B_FOLLOW_ALL);
    BView* grandchild = new_view(BRect(5, 5, 15, 15), B_FOLLOW_ALL);
    parent->AddChild(child);
    child->AddChild(grandchild);
    parent->ResizeTo(10, 10);
    EXPECT_FALSE(child->Bounds().IsValid());
    parent->ResizeTo(99, 99);
    EXPECT_EQ(child->Frame(), BRect(40, 40, 60, 60));
    EXPECT_EQ(grandchild->Frame(), BRect(5, 5, 15, 15));
    for (int size = 99; size > 50; size--)  // step by step: no drift from rounding
        parent->ResizeTo(float(size), float(size));
    child->SetResizingMode(B_FOLLOW_H_CENTER | B_FOLLOW_V_CENTER);
    const BRect before = child->Frame();
    for (int size = 51; size <= 99; size++)
        parent->ResizeTo(float(size), float(size));
    for (int size = 98; size >= 51; size--)
        parent->ResizeTo(float(size), float(size));
    EXPECT_EQ(child->Frame(), before);
}

TEST(ViewFrame, HidingCountsAndHidesTheChildren)
{
    Board board;
    BView* child = new_view(BRect(0, 0, 5, 5));
    board.view->AddChild(child);
    EXPECT_FALSE(child->IsHidden());
    board.view->Hide();
    board.view->Hide();
    board.view->Show();
    EXPECT_TRUE(child->IsHidden());
    EXPECT_FALSE(child->IsHidden(child));
    child->FillRect(child->Bounds());
    EXPECT_EQ(board.Row(0), "....................");
    board.view->Show();
    EXPECT_FALSE(child->IsHidden());
    child->FillRect(child->Bounds());
    EXPECT_EQ(board.Row(0), "######..............");
}

TEST(ViewFrame, TheDeepestFrontViewIsFound)
{
    Board board(99, 99);
    BView* back = new_view(BRect(10, 10, 50, 50));
    BView* front = new_view(BRect(40, 40, 80, 80));
    BView* inside = new_view(BRect(0, 0, 100, 5));
    board.view->AddChild(back);
    board.view->AddChild(front);
    front->AddChild(inside);
    const struct {
        BPoint place;
        BView* view;
    } rows[] = {
        {BPoint(9, 10), board.view}, {BPoint(10, 10), back},       {BPoint(39, 39), back},
        {BPoint(45, 48), front},     {BPoint(45, 45.5f), inside},  {BPoint(45, 46), front},
        {BPoint(80.9f, 42), inside}, {BPoint(81, 42), board.view},  // children end with the parent
        {BPoint(-1, 0), nullptr},    {BPoint(100, 5), nullptr},
    };
    for (const auto& row : rows)
        EXPECT_EQ(board.bitmap.FindView(row.place), row.view) << row.place.x << "," << row.place.y;
    front->Hide();
    EXPECT_EQ(board.bitmap.FindView(BPoint(45, 45)), back);
}
