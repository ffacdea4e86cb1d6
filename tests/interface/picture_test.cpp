// Recorded drawing: what is played is what was called.

#include "Drawing.h"

#include <DataIO.h>
#include <GradientLinear.h>
#include <Message.h>
#include <Picture.h>
#include <Region.h>
#include <Shape.h>

#include <cstring>
#include <memory>
#include <random>
#include <vector>

// A gradient colours the call it is given to, and none behind it.
static void draw_gradients(BView& view)
{
    BGradientLinear gradient(BPoint(0, 0), BPoint(79, 0));
    gradient.AddColor(rgb_color{255, 0, 0, 255}, 0);
    gradient.AddColor(rgb_color{0, 0, 255, 255}, 255);
    view.FillRect(BRect(5, 45, 40, 50), gradient);
    view.FillRect(BRect(44, 45, 48, 50));
    view.StrokePolygon(static_cast<const BPoint*>(nullptr), 0, true, gradient);
    view.StrokeLine(BPoint(0, 52), BPoint(79, 52));
    BRegion two(BRect(0, 54, 20, 55));
    two.Include(BRect(40, 54, 60, 55));
    view.FillRegion(&two, gradient);
}

static void clip_to_a_picture(BView& view)
{
    BPicture hole;
    view.BeginPicture(&hole);
    view.FillEllipse(BPoint(20, 20), 10, 10);
    view.EndPicture();
    view.ClipToPicture(&hole, BPoint(5, 0));
    view.FillRect(BRect(0, 0, 40, 22), B_MIXED_COLORS);
    view.ClipToPicture(nullptr);
    view.PushState();
    view.ClipToInversePicture(&hole);
    view.FillRect(BRect(0, 28, 40, 32), B_MIXED_COLORS);
    view.PopState();
    view.FillRect(BRect(76, 56, 79, 59));
}

static void draw_everything(BView& view)
{
    view.SetHighColor(255, 0, 0);
    view.SetPenSize(2);
    view.StrokeLine(BPoint(2, 2), BPoint(50, 9));
    view.StrokeLine(BPoint(60, 30));
    view.SetPenSize(1);
    view.PushState();
    view.SetOrigin(10, 10);
    view.SetScale(1.5f);
    view.SetHighColor(0, 0, 255);
    view.FillRect(BRect(0, 0, 9, 9), B_MIXED_COLORS);
    view.StrokeEllipse(BRect(0, 0, 20, 12));
    view.PopState();
    view.FillArc(BPoint(60, 20), 10, 10, 0, 90);
    view.SetDrawingMode(B_OP_INVERT);
    view.FillRoundRect(BRect(30, 5, 70, 40), 5, 5);
    view.SetDrawingMode(B_OP_COPY);
    const BPoint triangle[] = {{5, 40}, {25, 40}, {15, 55}};
    view.FillPolygon(triangle, 3);
    view.StrokePolygon(triangle, 3, false, B_SOLID_LOW);
    BPoint curve[] = {{0, 0}, {10, 60}, {50, -20}, {79, 59}};
    view.StrokeBezier(curve);
    BRegion clip(BRect(0, 0, 40, 59));
    view.ConstrainClippingRegion(&clip);
    view.FillEllipse(BPoint(40, 40), 15, 8);
    view.ConstrainClippingRegion(nullptr);
    view.BeginLineArray(1);
    view.AddLine(BPoint(0, 58), BPoint(79, 58), rgb_color{1, 200, 3, 255});
    view.EndLineArray();
    BShape shape;
    shape.MoveTo(BPoint(0, 0));
    shape.LineTo(BPoint(9, 0));
    shape.LineTo(BPoint(0, 9));
    shape.Close();
    view.MovePenTo(65, 45);
    view.FillShape(&shape);
    view.InvertRect(BRect(70, 0, 79, 9));
    BBitmap dot(BRect(0, 0, 2, 2), B_BITMAP_CLEAR_TO_WHITE, B_RGBA32);
    view.DrawBitmap(&dot, BPoint(72, 2));
    BBitmap stripes(BRect(0, 0, 3, 2), 0, B_RGBA32);
    memset(stripes.Bits(), 0xFF, size_t(stripes.BytesPerRow()) * 2);
    view.DrawTiledBitmap(&stripes, BRect(50, 45, 58, 52), BPoint(1, 2));
    view.DrawString("Ag", BPoint(3, 30));
    view.CopyBits(BRect(0, 0, 9, 9), BRect(50, 50, 59, 59));
    draw_gradients(view);
    clip_to_a_picture(view);
}

class PictureTest : public testing::Test {
protected:
    PictureTest() : direct(79, 59), played(79, 59)
    {
        draw_everything(*direct.view);
        played.view->BeginPicture(&picture);
        draw_everything(*played.view);
        EXPECT_EQ(played.view->EndPicture(), &picture);
    }

    Board direct, played;
    BPicture picture;
};

TEST_F(PictureTest, PlayingDrawsTheSamePixels)
{
    EXPECT_EQ(played.Picture().find_first_not_of(".\n"), std::string::npos)
        << "recording draws nothing";
    Board fresh(79, 59);
    fresh.view->DrawPicture(&picture, BPoint(0, 0));
    EXPECT_EQ(fresh.Picture(), direct.Picture());
    EXPECT_TRUE(fresh.view->HighColor() == (rgb_color{0, 0, 0, 255})) << "the state stays";
}

TEST_F(PictureTest, FlatAndArchivedPicturesAreThemselves)
{
    BMallocIO stream;
    ASSERT_EQ(picture.Flatten(&stream), B_OK);
    stream.Seek(0, SEEK_SET);
    BPicture flat;
    ASSERT_EQ(flat.Unflatten(&stream), B_OK);
    BMessage archive;
    ASSERT_EQ(picture.Archive(&archive), B_OK);
    std::unique_ptr<BArchivable> object(BPicture::Instantiate(&archive));
    for (BPicture* copy : {&flat, static_cast<BPicture*>(object.get())}) {
        Board fresh(79, 59);
        fresh.view->DrawPicture(copy, BPoint(0, 0));
        EXPECT_EQ(fresh.Picture(), direct.Picture());
    }
}

TEST_F(PictureTest, DamagedBytesDoNoHarm)
{
    BMallocIO stream;
    ASSERT_EQ(picture.Flatten(&stream), B_OK);
    const auto* bytes = static_cast<const uint8*>(stream.Buffer());
    const std::vector<uint8> good(bytes, bytes + stream.BufferLength());
    std::mt19937 random(7);
    Board board(79, 59);
    for (int round = 0; round < 300; round++) {
        std::vector<uint8> bad = good;
        bad.resize(round % 3 == 0 ? random() % good.size() : good.size());
        for (int i = 0; i < 5 && !bad.empty(); i++)
            bad[random() % bad.size()] = uint8(random());
        BMemoryIO input(static_cast<const void*>(bad.data()), bad.size());
        BPicture damaged;
        if (damaged.Unflatten(&input) == B_OK)
            board.view->DrawPicture(&damaged, BPoint(0, 0));
    }
    EXPECT_EQ(board.view->Origin(), BPoint(0, 0));
}

TEST(Picture, PicturesNestAndAppend)
{
    Board board(9, 0);
    BPicture inner, outer;
    board.view->BeginPicture(&outer);
    board.view->FillRect(BRect(0, 0, 0, 0));
    board.view->BeginPicture(&inner);
    board.view->FillRect(BRect(0, 0, 1, 0));
    EXPECT_EQ(board.view->EndPicture(), &inner);
    board.view->DrawPicture(&inner, BPoint(4, 0));
    EXPECT_EQ(board.view->EndPicture(), &outer);
    EXPECT_EQ(board.view->EndPicture(), nullptr);
    board.view->AppendToPicture(&outer);
    board.view->FillRect(BRect(2, 0, 2, 0));
    board.view->EndPicture();
    EXPECT_EQ(board.Row(0), "..........");
    board.view->DrawPicture(&outer, BPoint(1, 0));
    EXPECT_EQ(board.Row(0), ".#.#.##...");
}

TEST(Picture, KeepsTheStateThatTheRecordingBeganWith)
{
    Board board(9, 0);
    BPicture picture;
    board.view->SetHighColor(255, 0, 0);
    board.view->SetLowColor(0, 255, 0);
    board.view->SetPenSize(3);
    board.view->SetDrawingMode(B_OP_OVER);
    board.view->BeginPicture(&picture);
    board.view->FillRect(BRect(0, 0, 1, 0));
    board.view->FillRect(BRect(2, 0, 3, 0), B_SOLID_LOW);
    board.view->EndPicture();
    board.view->SetHighColor(0, 0, 255);
    board.view->SetLowColor(0, 0, 0);
    board.view->SetDrawingMode(B_OP_COPY);
    board.view->DrawPicture(&picture, BPoint(1, 0));
    EXPECT_EQ(board.Row(0), ".rr.......") << "the low colour is left out by the recording's mode";
    board.view->FillRect(BRect(8, 0, 9, 0));
    EXPECT_EQ(board.Row(0), ".rr.....bb") << "the view's own state is as it was";
}

TEST(Picture, TablesAreCalledInOrder)
{
    Board board;
    BPicture picture;
    board.view->BeginPicture(&picture);
    board.view->SetHighColor(1, 2, 3);
    board.view->ClipToRect(BRect(0, 0, 5, 5));  // no entry: passed over
    board.view->FillRect(BRect(1, 2, 3, 4));
    board.view->SetPenSize(7);
    board.view->EndPicture();

    std::vector<std::string> calls;
    using Calls = std::vector<std::string>*;
    void* table[40] = {};
    table[4] = reinterpret_cast<void*>(+[](void* user, BRect rect) {
        static_cast<Calls>(user)->push_back("fill " + std::to_string(int(rect.bottom)));
    });
    table[32] = reinterpret_cast<void*>(+[](void* user, float size) {
        static_cast<Calls>(user)->push_back("pen " + std::to_string(int(size)));
    });
    table[33] = reinterpret_cast<void*>(+[](void* user, rgb_color color) {
        static_cast<Calls>(user)->push_back("high " + std::to_string(color.green));
    });
    EXPECT_EQ(picture.Play(table, 40, &calls), B_OK);
    EXPECT_EQ(calls, (std::vector<std::string>{"high 0", "pen 1", "high 2", "fill 4", "pen 7"}));
    calls.clear();
    EXPECT_EQ(picture.Play(table, 32, &calls), B_OK);
    EXPECT_EQ(calls, (std::vector<std::string>{"fill 4"}));
    EXPECT_EQ(picture.Play(nullptr, 3, nullptr), B_BAD_VALUE);
}
