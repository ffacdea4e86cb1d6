// The drawing state of views: what is set is told, saved, and seen in what is drawn.

#include "Drawing.h"

#include <Alignment.h>
#include <InterfaceDefs.h>
#include <Message.h>
#include <Size.h>
#include <String.h>

#include <cmath>
#include <limits>

TEST(ViewState, PushedStatesComeBackWhole)
{
    Board board;
    BView& view = *board.view;
    view.SetHighColor(1, 2, 3);
    view.SetLowColor(4, 5, 6);
    view.SetDrawingMode(B_OP_OVER);
    view.SetBlendingMode(B_CONSTANT_ALPHA, B_ALPHA_COMPOSITE);
    view.SetPenSize(3);
    view.SetLineMode(B_SQUARE_CAP, B_BEVEL_JOIN, 7);
    view.SetFillRule(B_NONZERO);
    view.SetFontSize(33);
    view.MovePenTo(5, 6);
    view.PushState();
    view.SetHighColor(9, 9, 9);
    view.SetLowColor(9, 9, 9);
    view.SetDrawingMode(B_OP_INVERT);
    view.SetBlendingMode(B_PIXEL_ALPHA, B_ALPHA_OVERLAY);
    view.SetPenSize(1);
    view.SetLineMode(B_ROUND_CAP, B_ROUND_JOIN, 2);
    view.SetFillRule(B_EVEN_ODD);
    view.SetFontSize(8);
    view.MovePenBy(10, -2);
    EXPECT_EQ(BPoint(15, 4), view.PenLocation());
    view.PopState();
    view.PopState();  // one too many does nothing

    EXPECT_TRUE(view.HighColor() == (rgb_color{1, 2, 3, 255}));
    EXPECT_TRUE(view.LowColor() == (rgb_color{4, 5, 6, 255}));
    EXPECT_EQ(B_OP_OVER, view.DrawingMode());
    source_alpha source;
    alpha_function function;
    view.GetBlendingMode(&source, &function);
    view.GetBlendingMode(nullptr, nullptr);
    EXPECT_EQ(B_CONSTANT_ALPHA, source);
    EXPECT_EQ(B_ALPHA_COMPOSITE, function);
    EXPECT_EQ(3, view.PenSize());
    EXPECT_EQ(B_SQUARE_CAP, view.LineCapMode());
    EXPECT_EQ(B_BEVEL_JOIN, view.LineJoinMode());
    EXPECT_EQ(7, view.LineMiterLimit());
    EXPECT_EQ(B_NONZERO, view.FillRule());
    BFont font;
    view.GetFont(&font);
    EXPECT_EQ(33, font.Size());
    EXPECT_EQ(BPoint(5, 6), view.PenLocation());
}

TEST(ViewState, NonsenseChangesNothing)
{
    Board board;
    BView& view = *board.view;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinity = std::numeric_limits<float>::infinity();
    view.SetScale(2);
    for (float scale : {0.f, -1.f, nan, infinity})
        view.SetScale(scale);
    EXPECT_EQ(2, view.Scale());
    view.SetFillRule(B_EVEN_ODD);
    view.SetFillRule(77);
    EXPECT_EQ(B_EVEN_ODD, view.FillRule());
    view.SetLineMode(B_BUTT_CAP, B_MITER_JOIN, nan);
    EXPECT_EQ(B_DEFAULT_MITER_LIMIT, view.LineMiterLimit());
    view.SetFont(nullptr);
    BFont font(be_bold_font);
    view.SetFont(&font, 0);
    view.GetFont(nullptr);
    view.GetFontHeight(nullptr);
}

TEST(ViewState, FillRuleDecidesWhatLiesInside)
{
    // A square wound twice in the same sense.
    const BPoint points[] = {{2, 1}, {16, 1}, {16, 8}, {2, 8}, {2, 1},
                             {6, 3}, {12, 3}, {12, 6}, {6, 6}, {6, 3}};
    Board board;
    board.view->SetFillRule(B_NONZERO);
    board.view->FillPolygon(points, 10);
    EXPECT_EQ(0u, board.At(9, 4));
    board.Clear();
    board.view->SetFillRule(B_EVEN_ODD);
    board.view->FillPolygon(points, 10);
    EXPECT_EQ(0xFFFFFFu, board.At(9, 4));
    EXPECT_EQ(0u, board.At(4, 4));
}

TEST(ViewState, TransformCallsAddToTheTransform)
{
    Board board(39, 39);
    BView& view = *board.view;
    view.TranslateBy(10, 20);
    view.ScaleBy(2, 3);
    view.RotateBy(M_PI / 2);
    const BAffineTransform all = view.Transform();
    const BPoint place = all.Apply(BPoint(1, 0));  // turned to (0, 1), stretched, moved
    EXPECT_NEAR(10, place.x, 1e-4);
    EXPECT_NEAR(23, place.y, 1e-4);
    view.FillRect(BRect(1, -2, 2, -1));
    EXPECT_EQ(0u, board.At(13, 24));
    EXPECT_EQ(0xFFFFFFu, board.At(8, 24));
    EXPECT_TRUE(view.TransformTo(B_CURRENT_STATE_COORDINATES).IsIdentity());
    EXPECT_TRUE(view.TransformTo(B_VIEW_COORDINATES).IsEqual(all));
}

TEST(ViewState, ColoursOfTheSystemStayNamed)
{
    Board board;
    BView& view = *board.view;
    auto* child = new BView(BRect(0, 0, 5, 5), "child", B_FOLLOW_NONE, B_WILL_DRAW);
    view.AddChild(child);
    view.AdoptSystemColors();
    EXPECT_TRUE(view.HasSystemColors());
    EXPECT_FALSE(view.HasDefaultColors());
    float tint = 0;
    EXPECT_EQ(B_PANEL_BACKGROUND_COLOR, view.ViewUIColor(&tint));
    EXPECT_EQ(B_NO_TINT, tint);
    EXPECT_EQ(B_PANEL_TEXT_COLOR, view.HighUIColor());
    EXPECT_TRUE(view.ViewColor() == ui_color(B_PANEL_BACKGROUND_COLOR));

    child->AdoptParentColors();
    EXPECT_TRUE(child->HasSystemColors());
    child->SetLowUIColor(B_CONTROL_BACKGROUND_COLOR, B_DARKEN_1_TINT);
    EXPECT_EQ(B_CONTROL_BACKGROUND_COLOR, child->LowUIColor(&tint));
    EXPECT_EQ(B_DARKEN_1_TINT, tint);
    EXPECT_TRUE(child->LowColor() ==
                tint_color(ui_color(B_CONTROL_BACKGROUND_COLOR), B_DARKEN_1_TINT));
    child->SetLowColor(1, 2, 3);
    EXPECT_EQ(B_NO_COLOR, child->LowUIColor());
    child->AdoptViewColors(nullptr);
    EXPECT_TRUE(child->LowColor() == (rgb_color{1, 2, 3, 255}));
    BView fresh(BRect(0, 0, 5, 5), "fresh", B_FOLLOW_NONE, 0);
    EXPECT_TRUE(fresh.HasDefaultColors());
}

TEST(ViewState, TextIsMeasuredInItsFont)
{
    Board board;
    BView& view = *board.view;
    BFont font(be_plain_font);
    font.SetSize(24);
    view.SetFont(&font);
    EXPECT_EQ(font.StringWidth("Wide"), view.StringWidth("Wide"));
    EXPECT_EQ(font.StringWidth("Wi"), view.StringWidth("Wide", 2));
    char first[] = "a", second[] = "much longer";
    char* texts[] = {first, second};
    int32 lengths[] = {1, 4};
    float widths[2];
    view.GetStringWidths(texts, lengths, 2, widths);
    EXPECT_EQ(view.StringWidth("a"), widths[0]);
    EXPECT_EQ(view.StringWidth("much"), widths[1]);
    BString text("a text that is far too long");
    view.TruncateString(&text, B_TRUNCATE_END, 80);
    EXPECT_LE(view.StringWidth(text.String()), 80);
    EXPECT_NE(0, text.Length());
    view.ForceFontAliasing(true);
    view.GetFont(&font);
    EXPECT_NE(0u, font.Flags() & B_DISABLE_ANTIALIASING);
    view.ForceFontAliasing(false);
    view.GetFont(&font);
    EXPECT_EQ(0u, font.Flags() & B_DISABLE_ANTIALIASING);
}

TEST(ViewState, CharactersAndPlacedStringsMoveThePen)
{
    Board board(79, 29), placed(79, 29);
    board.view->DrawChar('A', BPoint(5, 20));
    EXPECT_EQ(5 + board.view->StringWidth("A"), board.view->PenLocation().x);
    board.view->DrawChar('B');
    EXPECT_EQ(5 + board.view->StringWidth("A") + board.view->StringWidth("B"),
              board.view->PenLocation().x);
    const BPoint places[] = {{5, 20}, {5 + board.view->StringWidth("A"), 20}};
    placed.view->DrawString("AB", places, 2);
    EXPECT_EQ(board.Picture(), placed.Picture());
    placed.view->DrawString(nullptr, places, 2);
    placed.view->DrawString("AB", static_cast<const BPoint*>(nullptr), 2);
    placed.view->DrawString("AB", places, 0);
    EXPECT_EQ(board.Picture(), placed.Picture());
}

TEST(ViewState, PreferredAndExplicitSizesAreTold)
{
    BView view(BRect(0, 0, 30, 20), "view", B_FOLLOW_NONE, 0);
    float width = 0, height = 0;
    view.GetPreferredSize(&width, &height);
    view.GetPreferredSize(nullptr, nullptr);
    EXPECT_EQ(30, width);
    EXPECT_EQ(20, height);
    view.ResizeToPreferred();
    EXPECT_EQ(BRect(0, 0, 30, 20), view.Frame());
    EXPECT_EQ(B_SIZE_UNLIMITED, view.MaxSize().width);
    view.SetExplicitMinSize(BSize(5, B_SIZE_UNSET));
    EXPECT_TRUE(view.MinSize() == BSize(5, 20));
    view.SetExplicitPreferredSize(BSize(B_SIZE_UNSET, 9));
    EXPECT_TRUE(view.PreferredSize() == BSize(30, 9));
    view.SetExplicitSize(BSize(7, 8));
    EXPECT_TRUE(view.MinSize() == BSize(7, 8));
    EXPECT_TRUE(view.MaxSize() == BSize(7, 8));
    EXPECT_TRUE(view.ExplicitPreferredSize() == BSize(7, 8));
    view.SetExplicitAlignment(BAlignment(B_ALIGN_RIGHT, B_ALIGN_BOTTOM));
    EXPECT_EQ(B_ALIGN_RIGHT, view.LayoutAlignment().horizontal);
    EXPECT_FALSE(view.HasHeightForWidth());
    float least, most, liked;
    view.GetHeightForWidth(3, &least, &most, &liked);
    EXPECT_EQ(8, least);
    EXPECT_EQ(8, most);
    EXPECT_EQ(8, liked);
}
