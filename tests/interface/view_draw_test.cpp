// Drawing into a bitmap through its views: mapping, clipping, state stack, pixels copied.

#include "Drawing.h"

#include <Picture.h>
#include <Polygon.h>
#include <Region.h>
#include <Shape.h>

#include <cmath>
#include <cstring>

static const rgb_color kRed = {255, 0, 0, 255};
static const rgb_color kGreen = {0, 255, 0, 255};
static const rgb_color kBlue = {0, 0, 255, 255};

TEST(ViewDraw, RectanglesIncludeTheirEdgesAndGoToTheNearestPixels)
{
    Board board(9, 3);
    board.view->FillRect(BRect(1, 0, 3, 0));
    board.view->FillRect(BRect(1.9f, 1.2f, 3.7f, 1.8f));
    board.view->StrokeRect(BRect(-2, 2, 20, 8));
    EXPECT_EQ(board.Picture(),
              ".###......\n"
              "..###.....\n"
              "##########\n"
              "..........\n");
    board.view->FillRect(BRect(3, 3, 2, 3));  // covers nothing
    EXPECT_EQ(board.Row(3), "..........");
}

TEST(ViewDraw, OnlyAttachedViewsDraw)
{
    BView view(BRect(0, 0, 9, 9), "view", 0, B_WILL_DRAW);
    view.FillRect(view.Bounds());
    view.StrokeLine(BPoint(3, 4), BPoint(5, 6));
    EXPECT_EQ(view.PenLocation(), BPoint(5, 6));
    view.Invalidate();
    BRegion region(BRect(0, 0, 5, 5));
    view.GetClippingRegion(&region);
    EXPECT_EQ(region.CountRects(), 0);
}

TEST(ViewDraw, ParentsFrontSiblingsAndChildrenClip)
{
    Board board(11, 4);
    BView* back = new_view(BRect(1, 1, 8, 9));
    BView* front = new_view(BRect(6, 0, 10, 2));
    BView* child = new_view(BRect(1, 1, 2, 1));
    board.view->AddChild(back);
    board.view->AddChild(front);
    back->AddChild(child);
    board.view->SetHighColor(kGreen);
    board.view->FillRect(board.view->Bounds());
    back->FillRect(BRect(-10, -10, 100, 100));
    child->SetHighColor(kRed);
    child->FillRect(BRect(-10, -10, 100, 100));
    EXPECT_EQ(board.Picture(),
              "gggggg.....g\n"
              "g#####.....g\n"
              "g#rr##.....g\n"
              "g########ggg\n"
              "g########ggg\n");
    back->SetFlags(B_DRAW_ON_CHILDREN);
    back->SetHighColor(kBlue);
    back->FillRect(BRect(0, 1, 3, 1));
    EXPECT_EQ(board.Row(2), "gbbbb#.....g");
    front->SetFlags(B_TRANSPARENT_BACKGROUND);
    back->FillRect(BRect(0, 0, 9, 0));
    EXPECT_EQ(board.Row(1), "gbbbbbbbb..g");
    front->RemoveSelf();
    delete front;
    board.view->FillRect(BRect(9, 0, 9, 0));
    EXPECT_EQ(board.Row(0), "gggggg...g.g");
}

TEST(ViewDraw, ClippingFollowsEveryChangeOfTheTree)
{
    Board board(9, 0);
    BView* first = new_view(BRect(0, 0, 9, 0));
    BView* second = new_view(BRect(3, 0, 5, 0));
    board.view->AddChild(first);
    board.view->AddChild(second);
    auto drawn = [&] {
        first->Hide();
        second->Hide();
        board.Clear();
        first->Show();
        second->Show();
        first->FillRect(first->Bounds());
        return board.Row(0);
    };
    EXPECT_EQ(drawn(), "###...####");
    second->MoveTo(0, 0);
    EXPECT_EQ(drawn(), "...#######");
    second->ResizeTo(0, 0);
    EXPECT_EQ(drawn(), ".#########");
    board.view->ScrollTo(1, 0);
    EXPECT_EQ(drawn(), "#########.");
    first->MoveBy(2, 0);
    board.view->ScrollTo(0, 0);
    EXPECT_EQ(drawn(), "..########");
}

TEST(ViewDraw, StateStackKeepsEverything)
{
    Board board(19, 0);
    BView& view = *board.view;
    view.SetOrigin(2, 0);
    view.SetHighColor(kRed);
    view.MovePenTo(7, 7);
    view.PushState();
    EXPECT_EQ(view.Origin(), BPoint(0, 0));
    EXPECT_EQ(view.Scale(), 1);
    EXPECT_TRUE(view.HighColor() == kRed);
    EXPECT_EQ(view.PenLocation(), BPoint(7, 7));
    view.SetOrigin(3, 0);
    view.SetScale(2);
    view.SetHighColor(kBlue);
    view.SetLowColor(kGreen);
    view.SetPenSize(3);
    view.SetDrawingMode(B_OP_INVERT);
    view.SetDrawingMode(B_OP_COPY);
    view.FillRect(BRect(1, 0, 2, 0));  // 2 + 3 + 2 * 1 .. 2 + 3 + 2 * 2
    BRegion clip(BRect(0, 0, 1, 0));
    view.ConstrainClippingRegion(&clip);
    view.PushState();
    view.SetOrigin(-1, 0);
    view.FillRect(BRect(0, 0, 100, 0));  // clipped by the state below: 5 .. 8
    view.PopState();
    view.PopState();
    EXPECT_EQ(view.Origin(), BPoint(2, 0));
    EXPECT_TRUE(view.HighColor() == kRed);
    EXPECT_TRUE(view.LowColor() == (rgb_color{255, 255, 255, 255}));
    EXPECT_EQ(view.PenSize(), 1);
    view.FillRect(BRect(0, 0, 0, 0));
    view.PopState();  // one too many
    EXPECT_EQ(view.Origin(), BPoint(2, 0));
    EXPECT_EQ(board.Row(0).substr(0, 12), "..r..bbbbb..");
}

TEST(ViewDraw, ClippingRegionsNarrow)
{
    Board board(9, 1);
    BView& view = *board.view;
    BRegion clip(BRect(2, 0, 7, 1));
    clip.Exclude(BRect(4, 0, 4, 0));
    view.ConstrainClippingRegion(&clip);
    view.FillRect(view.Bounds());
    EXPECT_EQ(board.Picture(), "..##.###..\n..######..\n");
    BRegion shown;
    view.GetClippingRegion(&shown);
    EXPECT_TRUE(shown == clip);
    view.ClipToRect(BRect(3, 0, 20, 1));
    view.ClipToInverseRect(BRect(6, 0, 6, 1));
    view.SetHighColor(kRed);
    view.FillRect(view.Bounds());
    EXPECT_EQ(board.Picture(), "..#r.r#r..\n..#rrr#r..\n");
    view.ConstrainClippingRegion(nullptr);
    view.SetHighColor(kBlue);
    view.FillRect(BRect(0, 0, 9, 0));
    EXPECT_EQ(board.Row(0), "bbbbbbbbbb");
    BRegion nothing;
    view.ConstrainClippingRegion(&nothing);
    view.FillRect(view.Bounds());
    EXPECT_EQ(board.Row(1), "..#rrr#r..");
}

TEST(ViewDraw, ShapesAndPicturesClip)
{
    Board board(9, 1);
    BShape shape;
    shape.MoveTo(BPoint(2, 0));
    shape.LineTo(BPoint(6, 0));
    shape.LineTo(BPoint(6, 2));
    shape.LineTo(BPoint(2, 2));
    shape.Close();
    board.view->FillShape(&shape);
    const std::string filled = board.Row(0);
    board.Clear();
    board.view->ClipToShape(&shape);
    board.view->FillRect(board.view->Bounds());
    EXPECT_EQ(board.Row(0), filled);
    board.view->ConstrainClippingRegion(nullptr);
    board.Clear();
    board.view->ClipToInverseShape(&shape);
    board.view->FillRect(board.view->Bounds());
    std::string inverse;
    for (char pixel : filled)
        inverse += pixel == '#' ? '.' : '#';
    EXPECT_EQ(board.Row(0), inverse);
    EXPECT_NE(filled.find('#'), std::string::npos);
}

TEST(ViewDraw, TransformsTurnWhatIsDrawn)
{
    Board board(9, 9);
    board.view->SetOrigin(5, 5);
    board.view->RotateBy(M_PI / 2);
    board.view->FillRect(BRect(0, 0, 3, 0));  // from the origin downwards
    int32 painted = 0;
    for (int32 y = 0; y < 10; y++) {
        for (int32 x = 0; x < 10; x++) {
            if (board.At(x, y) == 0) {
                painted++;
                EXPECT_TRUE(x >= 4 && x <= 5 && y >= 5 && y <= 9) << x << "," << y;
            }
        }
    }
    EXPECT_GE(painted, 3);
    const BPoint there = board.view->TransformTo(B_VIEW_COORDINATES).Apply(BPoint(3, 0));
    EXPECT_NEAR(there.x, 5, 1e-4);
    EXPECT_NEAR(there.y, 8, 1e-4);
}

TEST(ViewDraw, LineArraysUseTheirOwnColours)
{
    Board board(9, 2);
    BView& view = *board.view;
    view.AddLine(BPoint(0, 0), BPoint(9, 0), kRed);  // no array was begun
    view.BeginLineArray(2);
    view.AddLine(BPoint(0, 0), BPoint(4, 0), kRed);
    view.AddLine(BPoint(5, 1), BPoint(9, 1), kBlue);
    view.AddLine(BPoint(0, 2), BPoint(9, 2), kGreen);  // more than asked for
    EXPECT_EQ(board.Row(0), "..........");
    view.EndLineArray();
    view.EndLineArray();
    EXPECT_EQ(board.Picture(), "rrrrr.....\n.....bbbbb\n..........\n");
    EXPECT_TRUE(view.HighColor() == (rgb_color{0, 0, 0, 255}));
}

TEST(ViewDraw, PolygonsAreFittedIntoBounds)
{
    Board board(9, 3);
    const BPoint square[] = {{0, 0}, {100, 0}, {100, 50}, {0, 50}};
    board.view->StrokePolygon(square, 4, BRect(1, 0, 6, 3));
    EXPECT_EQ(board.Row(0), ".######...");
    EXPECT_EQ(board.Row(1), ".#....#...");
    EXPECT_EQ(board.Row(3), ".######...");
    board.view->FillPolygon(square, -1);
    board.view->FillPolygon(static_cast<BPoint*>(nullptr), 4);
    board.view->StrokePolygon(static_cast<BPolygon*>(nullptr));
}

TEST(ViewDraw, BitmapsGoWhereTheyAreSent)
{
    BBitmap source(BRect(0, 0, 2, 0), 0, B_RGBA32);
    uint32* pixels = static_cast<uint32*>(source.Bits());
    pixels[0] = 0xFFFF0000;
    pixels[1] = 0xFF00FF00;
    pixels[2] = 0xFF0000FF;
    Board board(9, 3);
    BView& view = *board.view;
    view.DrawBitmap(&source, BPoint(1, 0));
    view.MovePenTo(6, 0);
    view.DrawBitmap(&source);
    view.DrawBitmap(&source, BRect(1, 0, 2, 0), BRect(0, 1, 1, 1));
    view.DrawBitmap(&source, BRect(0, 2, 8, 2));  // three times as wide
    view.DrawTiledBitmap(&source, BRect(1, 3, 8, 3), BPoint(1, 0));
    EXPECT_EQ(board.Picture(),
              ".rgb..rgb.\n"
              "gb........\n"
              "rrrgggbbb.\n"
              ".gbrgbrgb.\n");
    view.DrawBitmap(nullptr, BPoint(0, 0));
    BBitmap invalid(BRect(0, 0, -1, -1), 0, B_RGBA32);
    view.DrawBitmap(&invalid, BPoint(0, 0));
    EXPECT_EQ(board.Row(0), ".rgb..rgb.");
}

TEST(ViewDraw, CopyBitsMovesOverlappingPixels)
{
    Board board(9, 1);
    BView& view = *board.view;
    view.SetHighColor(kRed);
    view.FillRect(BRect(0, 0, 1, 1));
    view.SetHighColor(kBlue);
    view.FillRect(BRect(2, 0, 3, 1));
    view.CopyBits(BRect(0, 0, 3, 1), BRect(1, 0, 4, 1));
    EXPECT_EQ(board.Row(0), "rrrbb.....");
    view.CopyBits(BRect(1, 0, 4, 1), BRect(0, 0, 3, 1));
    EXPECT_EQ(board.Row(0), "rrbbb.....");
    view.CopyBits(BRect(0, 0, 3, 0), BRect(2, 0, 9, 0));  // twice as wide
    EXPECT_EQ(board.Row(0), "rrrrrrbbbb");
}

TEST(ViewDraw, CopyBitsStretchesInEveryColourSpace)
{
    const struct {
        color_space space;
        int bytes;
    } spaces[] = {{B_RGB32, 4}, {B_RGB24, 3}, {B_RGB16, 2}, {B_CMAP8, 1}, {B_GRAY8, 1}};
    for (const auto& row : spaces) {
        BBitmap bitmap(BRect(0, 0, 39, 7), row.space, true);
        auto* view = new BView(bitmap.Bounds(), "board", B_FOLLOW_ALL, B_WILL_DRAW);
        ASSERT_TRUE(bitmap.Lock());
        bitmap.AddChild(view);
        view->FillRect(BRect(20, 4, 39, 7));
        view->CopyBits(BRect(20, 4, 39, 7), BRect(0, 0, 9, 1));
        const auto pixel = [&](int x, int y) {
            const char* bits = static_cast<const char*>(bitmap.Bits());
            return std::string(bits + y * bitmap.BytesPerRow() + x * row.bytes, row.bytes);
        };
        EXPECT_EQ(pixel(0, 0), pixel(30, 6)) << row.space;
        EXPECT_EQ(pixel(9, 1), pixel(30, 6)) << row.space;
        EXPECT_EQ(pixel(10, 1), pixel(15, 5)) << row.space;
        EXPECT_NE(pixel(10, 1), pixel(9, 1)) << row.space;
        bitmap.Unlock();
    }
}

TEST(ViewDraw, TilesWithoutEndAreLeftOut)
{
    BBitmap tile(BRect(0, 0, 2, 0), 0, B_RGBA32);
    memset(tile.Bits(), 0x80, 12);
    Board board(9, 3);
    BView& view = *board.view;
    view.ScrollTo(4e8f, 4e8f);
    EXPECT_EQ(view.Bounds().Width(), 9) << "floats so far out are no whole numbers";
    view.DrawTiledBitmap(&tile, view.Bounds(), BPoint(1e30f, -5));
    view.ScrollTo(0, 0);
    view.SetScale(1e-9f);
    view.DrawTiledBitmap(&tile, BRect(0, 0, 1e9f, 1e9f));
    view.SetScale(1);
    BPicture picture;
    view.BeginPicture(&picture);
    view.DrawTiledBitmap(&tile, BRect(1, 1, 1e9f, 1e9f), BPoint(1, 0));
    ASSERT_EQ(view.EndPicture(), &picture);
    board.Clear();
    view.DrawPicture(&picture, BPoint(0, 0));
    EXPECT_EQ(board.Row(0), "..........");
    EXPECT_EQ(board.Row(1), ".?????????");
}

TEST(ViewDraw, TextMovesThePen)
{
    Board board(99, 29);
    BView& view = *board.view;
    const float width = view.StringWidth("Text");
    view.DrawString("Text", BPoint(5, 20));
    EXPECT_NEAR(view.PenLocation().x, 5 + width, 0.6);
    EXPECT_EQ(view.PenLocation().y, 20);
    const std::string once = board.Picture();
    EXPECT_NE(once.find_first_not_of(".\n"), std::string::npos);
    board.Clear();
    view.MovePenTo(5, 20);
    view.DrawString("Te", 2);
    view.DrawString("xt and more", 2);
    EXPECT_NEAR(view.PenLocation().x, 5 + width, 1.5);
    view.DrawString("short", 1000, BPoint(0, 10));  // ends with its terminator
    view.DrawString(nullptr);
    view.DrawString("x", -1);
}

TEST(ViewState, FontMasksTakeWhatTheyName)
{
    BView view(BRect(0, 0, 9, 9), "view", 0, 0);
    BFont font;
    view.GetFont(&font);
    const float size = font.Size();
    font.SetSize(size + 5);
    font.SetShear(100);
    font.SetFace(B_ITALIC_FACE | B_BOLD_FACE | B_UNDERSCORE_FACE);
    view.SetFont(&font, B_FONT_SHEAR);
    BFont got;
    view.GetFont(&got);
    EXPECT_EQ(got.Size(), size);
    EXPECT_EQ(got.Shear(), 100);
    view.SetFont(&font, B_FONT_FAMILY_AND_STYLE);
    view.GetFont(&got);
    EXPECT_EQ(got.Face(), font.Face());
    EXPECT_EQ(got.Size(), size);
    view.SetFont(nullptr);
    view.SetFontSize(33);
    view.GetFont(&got);
    EXPECT_EQ(got.Size(), 33);
}

// A view asks for as many pixels as the bits of its floats allow; nothing may leave the bitmap.
TEST(ViewDraw, AnyCoordinatesAreSafe)
{
    Board board(9, 9);
    BView& view = *board.view;
    const float values[] = {0, 3.5f, -1e9f, 1e9f, 3e38f, -3e38f, INFINITY, -INFINITY, NAN};
    for (float a : values) {
        for (float b : values) {
            view.StrokeLine(BPoint(a, b), BPoint(b, a));
            view.StrokeRect(BRect(a, b, b, a));
            view.FillRect(BRect(a, a, b, b));
            view.InvertRect(BRect(b, a, a, b));
            view.FillRoundRect(BRect(a, a, b, b), b, a);
            view.CopyBits(BRect(a, a, b, b), BRect(b, b, a, a));
            view.DrawBitmap(&board.bitmap, BRect(a, b, b, a), BRect(b, a, a, b));
            view.DrawTiledBitmap(&board.bitmap, BRect(a, a, b, b), BPoint(b, a));
            view.ClipToRect(BRect(a, a, b, b));
            view.ConstrainClippingRegion(nullptr);
            view.PushState();
            view.SetOrigin(a, b);
            view.SetScale(b);
            view.FillRect(BRect(0, 0, 5, 5));
            view.PopState();
            view.Invalidate(BRect(a, a, b, b));
        }
    }
    view.FillRect(view.Bounds());
    EXPECT_EQ(board.Row(9), "##########");
}
