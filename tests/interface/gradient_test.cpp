// Gradients: their colours, and that every drawing call takes one.

#include "Drawing.h"

#include <DataIO.h>
#include <Gradient.h>
#include <GradientConic.h>
#include <GradientDiamond.h>
#include <GradientLinear.h>
#include <GradientRadial.h>
#include <GradientRadialFocus.h>
#include <Message.h>
#include <Polygon.h>
#include <Region.h>
#include <Shape.h>

#include <functional>
#include <memory>
#include <vector>

namespace {

const rgb_color kRed = {255, 0, 0, 255};
const rgb_color kBlue = {0, 0, 255, 255};

BGradientLinear plain(rgb_color color)
{
    BGradientLinear gradient(BPoint(0, 0), BPoint(60, 0));
    gradient.AddColor(color, 0);
    gradient.AddColor(color, 255);
    return gradient;
}

}  // namespace

// With one colour from end to end a gradient draws what the solid call draws in that colour.
TEST(Gradients, EveryCallCoversTheSamePixelsAsItsSolidForm)
{
    using View = BView&;
    using Gradient = const BGradient&;
    struct Row {
        const char* name;
        std::function<void(View)> solid;
        std::function<void(View, Gradient)> shaded;
    };
    static const BPoint points[] = {{5, 5}, {50, 12}, {20, 35}};
    static BPolygon polygon(points, 3);
    static BPoint curve[] = {{5, 5}, {50, 40}, {0, 40}, {55, 5}};
    static const BRect frame(10, 8, 40, 30);
    static BShape shape;
    shape.MoveTo(BPoint(5, 5));
    shape.LineTo(BPoint(30, 5));
    shape.LineTo(BPoint(5, 30));
    shape.Close();
    static BRegion region(BRect(3, 3, 20, 20));
    region.Include(BRect(30, 10, 50, 15));
    const BPoint at(30, 20), a(5, 5), b(50, 12), c(20, 35);
#define ROW(call, ...)                                                       \
    {                                                                        \
#call "(" #__VA_ARGS__ ")", [=](View v) { v.call(__VA_ARGS__); }, [= \
        ](View v, Gradient g) { v.call(__VA_ARGS__, g); }                    \
    }
    const Row rows[] = {
        ROW(StrokeLine, b),
        ROW(StrokeLine, a, b),
        ROW(StrokePolygon, &polygon, true),
        ROW(StrokePolygon, points, 3, false),
        ROW(StrokePolygon, points, 3, frame, true),
        ROW(FillPolygon, &polygon),
        ROW(FillPolygon, points, 3),
        ROW(FillPolygon, points, 3, frame),
        ROW(StrokeTriangle, a, b, c),
        ROW(StrokeTriangle, a, b, c, frame),
        ROW(FillTriangle, a, b, c),
        ROW(FillTriangle, a, b, c, frame),
        ROW(StrokeRect, frame),
        ROW(FillRect, frame),
        ROW(FillRegion, &region),
        ROW(StrokeRoundRect, frame, 5, 7),
        ROW(FillRoundRect, frame, 5, 7),
        ROW(StrokeEllipse, at, 20, 10),
        ROW(StrokeEllipse, frame),
        ROW(FillEllipse, at, 20, 10),
        ROW(FillEllipse, frame),
        ROW(StrokeArc, at, 20, 10, 30, 200),
        ROW(StrokeArc, frame, 30, 200),
        ROW(FillArc, at, 20, 10, 30, 200),
        ROW(FillArc, frame, 30, 200),
        ROW(StrokeBezier, curve),
        ROW(FillBezier, curve),
        ROW(StrokeShape, &shape),
        ROW(FillShape, &shape),
    };
#undef ROW
    const std::string nothing = Board(59, 39).Picture();
    for (float pen : {1.f, 4.f}) {
        for (const Row& row : rows) {
            Board solid(59, 39), shaded(59, 39);
            for (Board* board : {&solid, &shaded}) {
                board->view->SetPenSize(pen);
                board->view->MovePenTo(3, 2);
            }
            solid.view->SetHighColor(kRed);
            row.solid(*solid.view);
            row.shaded(*shaded.view, plain(kRed));
            EXPECT_NE(nothing, solid.Picture()) << row.name;
            EXPECT_EQ(solid.Picture(), shaded.Picture()) << row.name << " with pen " << pen;
            EXPECT_TRUE(shaded.view->HighColor() == (rgb_color{0, 0, 0, 255})) << row.name;
        }
    }
}

TEST(Gradients, ColoursRunFromStopToStop)
{
    BGradientLinear linear(BPoint(10, 0), BPoint(50, 0));
    linear.AddColor(kRed, 0);
    linear.AddColor(kBlue, 255);
    Board board(59, 9);
    board.view->FillRect(board.view->Bounds(), linear);
    EXPECT_EQ(0xFF0000u, board.At(0, 5)) << "before the start";
    EXPECT_EQ(0x0000FFu, board.At(59, 5)) << "behind the end";
    int last = 256;
    for (int x = 10; x <= 50; x += 4) {
        const int red = int(board.At(x, 5) >> 16);
        EXPECT_LE(red, last) << x;
        EXPECT_NEAR(red, 255 - int(board.At(x, 5) & 255), 1) << x;
        last = red;
    }
    // The place of a gradient is the view's: it moves with the origin.
    board.view->SetOrigin(20, 0);
    board.view->FillRect(BRect(-20, 0, 39, 9), linear);
    EXPECT_EQ(0xFF0000u, board.At(29, 5));
}

TEST(Gradients, KindsHaveTheirOwnCentres)
{
    const auto with_stops = [](auto gradient) {
        gradient.AddColor(kRed, 0);
        gradient.AddColor(kBlue, 255);
        return gradient;
    };
    Board board(40, 40);
    const BRect all = board.view->Bounds();
    board.view->FillRect(all, with_stops(BGradientRadial(BPoint(20, 20), 15)));
    EXPECT_EQ(0xFF0000u, board.At(20, 20));
    EXPECT_EQ(0x0000FFu, board.At(20, 38));
    board.view->FillRect(all, with_stops(BGradientRadialFocus(BPoint(20, 20), 15, BPoint(14, 20))));
    EXPECT_EQ(0x0000FFu, board.At(1, 1));
    EXPECT_GT(board.At(14, 20) >> 16, 240u);
    board.view->FillRect(all, with_stops(BGradientDiamond(BPoint(20, 20))));
    EXPECT_EQ(0xFF0000u, board.At(20, 20));
    board.view->FillRect(all, with_stops(BGradientConic(BPoint(20, 20), 0)));
    EXPECT_NE(board.At(35, 20), board.At(5, 20));
}

TEST(Gradients, StopsStayInOrderAndWithinTheirList)
{
    BGradient gradient;
    EXPECT_EQ(0, gradient.AddColor(kBlue, 200));
    EXPECT_EQ(0, gradient.AddColor(kRed, 10));
    EXPECT_EQ(1, gradient.AddColor(kRed, 100));
    EXPECT_FALSE(gradient.AddColorStop(BGradient::ColorStop(kRed, 1), 4));
    EXPECT_FALSE(gradient.AddColorStop(BGradient::ColorStop(kRed, 1), -1));
    EXPECT_TRUE(gradient.SetOffset(0, 250));
    EXPECT_TRUE(gradient.SetColor(1, kBlue));
    EXPECT_TRUE(gradient.SetColorStop(2, BGradient::ColorStop(1, 2, 3, 4, 5)));
    gradient.SortColorStopsByOffset();
    ASSERT_EQ(3, gradient.CountColorStops());
    const float offsets[] = {5, 100, 250};
    for (int32 i = 0; i < 3; i++)
        EXPECT_EQ(offsets[i], gradient.ColorStopAt(i)->offset);
    EXPECT_TRUE(gradient.ColorStopAt(0)->color == (rgb_color{1, 2, 3, 4}));
    for (int32 outside : {-1, 3}) {
        EXPECT_EQ(nullptr, gradient.ColorStopAt(outside));
        EXPECT_FALSE(gradient.SetOffset(outside, 1));
        EXPECT_FALSE(gradient.SetColor(outside, kRed));
        EXPECT_FALSE(gradient.SetColorStop(outside, BGradient::ColorStop()));
        EXPECT_FALSE(gradient.RemoveColor(outside));
    }
    EXPECT_TRUE(gradient.RemoveColor(1));
    EXPECT_EQ(2, gradient.CountColorStops());
    EXPECT_EQ(250, gradient.ColorStopAt(1)->offset);
    gradient.MakeEmpty();
    EXPECT_EQ(0, gradient.CountColorStops());
}

TEST(Gradients, CopiesStreamsAndArchivesAreEqual)
{
    std::vector<std::unique_ptr<BGradient>> all;
    all.push_back(std::make_unique<BGradientLinear>(BPoint(1, 2), BPoint(3, 4)));
    all.push_back(std::make_unique<BGradientRadial>(BPoint(1, 2), 5));
    all.push_back(std::make_unique<BGradientRadialFocus>(BPoint(1, 2), 5, BPoint(6, 7)));
    all.push_back(std::make_unique<BGradientDiamond>(BPoint(1, 2)));
    all.push_back(std::make_unique<BGradientConic>(BPoint(1, 2), 90));
    for (const auto& gradient : all) {
        gradient->AddColor(kRed, 0);
        gradient->AddColor(kBlue, 128);
        for (const auto& other : all)
            EXPECT_EQ(gradient == other, *gradient == *other);

        BMallocIO stream;
        ASSERT_EQ(B_OK, gradient->Flatten(&stream));
        BGradient* made = nullptr;
        BMemoryIO input(stream.Buffer(), stream.BufferLength());
        ASSERT_EQ(B_OK, BGradient::Unflatten(made, &input));
        const std::unique_ptr<BGradient> restored(made);
        EXPECT_TRUE(*restored == *gradient);
        EXPECT_EQ(gradient->GetType(), restored->GetType());

        BMessage archive;
        ASSERT_EQ(B_OK, gradient->Archive(&archive));
        BGradient copy(&archive);
        EXPECT_TRUE(copy == *gradient);
        copy.SetOffset(1, 129);
        EXPECT_TRUE(copy != *gradient);

        for (size_t cut = 0; cut < stream.BufferLength(); cut += 3) {
            BMemoryIO part(stream.Buffer(), cut);
            BGradient* none = nullptr;
            EXPECT_NE(B_OK, BGradient::Unflatten(none, &part)) << cut;
            EXPECT_EQ(nullptr, none);
        }
    }
}
