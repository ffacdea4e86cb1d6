// How the parts of controls are drawn: whole pixels, evenly, at every size of the font.

#include <Font.h>

#include <interface/controls/Look.h>

#include <cmath>

#include <tests/interface/Drawing.h>

using BPrivate::Look;

static const float kSizes[] = {8, 12, 18, 24, 36};

namespace {

// A grey board that draws with a font of some size.
class LookBoard : public Board {
public:
    explicit LookBoard(float size, float side = 79) : Board(side, side)
    {
        view->SetViewColor(ui_color(B_PANEL_BACKGROUND_COLOR));
        view->SetFontSize(size);
        ground = make_color(216, 216, 216);
        Look(view).Fill(view->Bounds(), ground);
        view->SetHighColor(0, 0, 0);
    }
    bool IsDrawn(int32 x, int32 y) const { return At(x, y) != 0xD8D8D8; }
    // The smallest rectangle around what differs from the ground.
    BRect Drawn() const
    {
        BRect drawn;
        for (int32 y = 0; y <= int32(bitmap.Bounds().bottom); y++) {
            for (int32 x = 0; x <= int32(bitmap.Bounds().right); x++) {
                const BRect pixel(x, y, x, y);
                if (IsDrawn(x, y))
                    drawn = drawn.IsValid() ? drawn | pixel : pixel;
            }
        }
        return drawn;
    }

    rgb_color ground;
};

}  // namespace

TEST(LookMeasures, EdgesAreWholePixelsThatGrowWithTheFont)
{
    const float lines[] = {1, 1, 1, 2, 3};
    for (int i = 0; i < 5; i++) {
        LookBoard board(kSizes[i]);
        const Look look(board.view);
        EXPECT_EQ(look.Line(), lines[i]) << kSizes[i];
        EXPECT_EQ(look.Scaled(2.5f), std::floor(look.Scaled(2.5f)));
        EXPECT_GT(look.MarkFrame().Width(), kSizes[i]);
    }
}

TEST(LookMeasures, TinyFontsKeepOnePixel)
{
    BFont font;
    font.SetSize(0);
    const Look look(font);
    EXPECT_EQ(look.Line(), 1);
    EXPECT_EQ(look.Scaled(1), 1);
}

TEST(LookParts, StayInsideTheirRectangles)
{
    const BRect rect(10, 12, 49, 47);
    for (float size : kSizes) {
        for (uint32 state : {0u, uint32(Look::kOn), uint32(Look::kMixed), uint32(Look::kDisabled),
                             Look::kPressed | Look::kOn, Look::kFocused | Look::kDefault}) {
            for (int part = 0; part < 5; part++) {
                LookBoard board(size);
                const Look look(board.view);
                switch (part) {
                    case 0:
                        look.DrawButton(rect, state);
                        break;
                    case 1:
                        look.DrawCheckBox(rect, state);
                        break;
                    case 2:
                        look.DrawRadio(rect, state);
                        break;
                    case 3:
                        look.DrawArrow(rect, Look::Way::Down, state);
                        break;
                    case 4:
                        look.DrawTick(rect, state);
                        break;
                }
                EXPECT_TRUE(board.Drawn().IsValid());
                EXPECT_TRUE(rect.Contains(board.Drawn())) << part << " at " << size;
            }
        }
    }
}

TEST(LookParts, ArrowIsTheSameOnBothSidesOfItsMiddle)
{
    for (float size : kSizes) {
        LookBoard board(size);
        const BRect rect(20, 20, 40, 40);
        Look(board.view).DrawArrow(rect, Look::Way::Up, 0);
        const BRect drawn = board.Drawn();
        EXPECT_EQ(drawn.left + drawn.right, rect.left + rect.right) << size;
        EXPECT_TRUE(board.IsDrawn(30, int32(drawn.top)));
        EXPECT_FALSE(board.IsDrawn(29, int32(drawn.top)));
        EXPECT_TRUE(board.IsDrawn(int32(drawn.left), int32(drawn.bottom)));
    }
}

TEST(LookParts, MarkOfACheckBoxIsTheSameMirrored)
{
    for (float size : kSizes) {
        LookBoard board(size);
        board.view->SetHighColor(0, 0, 0);
        const Look look(board.view);
        const BRect box = look.MarkFrame();
        const BRect drawn = box.OffsetByCopy(10, 10);
        look.DrawCheckBox(drawn, Look::kOn);
        const uint32 mark = 0x1B528C;
        for (int32 y = int32(drawn.top); y <= int32(drawn.bottom); y++) {
            for (int32 x = int32(drawn.left); x <= int32(drawn.right); x++) {
                const int32 mirrored = int32(drawn.left + drawn.right) - x;
                ASSERT_EQ(board.At(x, y) == mark, board.At(mirrored, y) == mark)
                    << size << " at " << x << ", " << y;
            }
        }
    }
}

TEST(LookParts, CrossOfACheckBoxHasThinStrokesAtEverySize)
{
    for (float size : kSizes) {
        LookBoard board(size);
        const BRect box = Look(board.view).MarkFrame().OffsetByCopy(10, 10);
        Look(board.view).DrawCheckBox(box, Look::kOn);
        const auto row = int32(box.top + box.Height() / 3);
        int32 first = int32(box.left), last = int32(box.right);
        while (board.At(first, row) != 0x1B528C)
            first++;
        while (board.At(last, row) != 0x1B528C)
            last--;
        int32 run = first;
        while (board.At(run, row) == 0x1B528C)
            run++;
        EXPECT_LT(run, last) << "two strokes, at " << size;
        EXPECT_LE(run - first, (last - first + 1) / 2) << size;
    }
}

TEST(LookParts, HashMarksAreAllOfTheSameThickness)
{
    for (float size : kSizes) {
        LookBoard board(size);
        const Look look(board.view);
        look.DrawHashMarks(BRect(10, 10, 70, 20), B_HORIZONTAL, 4);
        const uint32 dark = board.At(10, 15);
        EXPECT_NE(dark, 0xD8D8D8u);
        for (int32 at : {10, 30, 50, 70}) {
            float thick = 0;
            for (int32 x = at - 5; x <= at + 5; x++)
                thick += board.At(x, 15) == dark ? 1 : 0;
            EXPECT_EQ(thick, look.Line()) << at << " at " << size;
        }
    }
}

TEST(LookParts, HashMarksBeyondThePixelsAreOneAPixel)
{
    for (float size : kSizes) {
        for (const int32 count : {61, 62, 1000, INT32_MAX}) {
            LookBoard board(size);
            Look(board.view).DrawHashMarks(BRect(10, 10, 70, 20), B_HORIZONTAL, count);
            const uint32 dark = board.At(10, 15);
            EXPECT_NE(dark, 0xD8D8D8u);
            for (int32 x = 10; x <= 70; x++)
                EXPECT_EQ(board.At(x, 15), dark) << count << " at " << x << " at " << size;
            EXPECT_EQ(board.At(9, 15), 0xD8D8D8u);
            EXPECT_EQ(board.At(71, 15), 0xD8D8D8u);
        }
    }
}

TEST(LookEdges, FillTheWidthOfABorder)
{
    LookBoard board(36);
    const Look look(board.view);
    EXPECT_EQ(look.DrawBorder(BRect(10, 10, 30, 30), B_FANCY_BORDER), BRect(12, 12, 28, 28));
    EXPECT_TRUE(board.IsDrawn(11, 11));
    EXPECT_FALSE(board.IsDrawn(12, 12));
    EXPECT_EQ(look.DrawBorder(BRect(40, 10, 60, 30), B_PLAIN_BORDER), BRect(41, 11, 59, 29));
    EXPECT_EQ(look.DrawBorder(BRect(40, 40, 60, 60), B_NO_BORDER), BRect(40, 40, 60, 60));
    EXPECT_FALSE(board.IsDrawn(50, 40));
}

TEST(LookEdges, AreDrawnOfEmptyRectanglesToo)
{
    LookBoard board(12);
    const Look look(board.view);
    for (BRect rect : {BRect(), BRect(5, 5, 5, 5), BRect(5, 5, 4, 30), BRect(30, 30, 5, 5)}) {
        look.DrawButton(rect, Look::kDefault);
        look.DrawCheckBox(rect, Look::kOn);
        look.DrawRadio(rect, Look::kOn);
        look.DrawArrow(rect, Look::Way::Left, 0);
        look.DrawGroup(rect, B_FANCY_BORDER);
    }
}

TEST(LookLabels, AreGreyWhenDisabled)
{
    LookBoard board(12);
    const Look look(board.view);
    EXPECT_EQ(look.Text(Look::kDisabled),
              tint_color(make_color(216, 216, 216), B_DISABLED_LABEL_TINT));
    EXPECT_EQ(look.Text(), make_color(0, 0, 0));
}

TEST(LookLabels, StayInTheirRectangle)
{
    for (float size : kSizes) {
        LookBoard board(size);
        const BRect rect(20, 10, 59, 69);
        Look(board.view).DrawLabel("WWWWWWWWWWWWWWWWW", rect, B_ALIGN_CENTER, 0);
        EXPECT_TRUE(rect.InsetByCopy(-1, -1).Contains(board.Drawn())) << size;
    }
    LookBoard board(12);
    Look(board.view).DrawLabel(nullptr, BRect(0, 0, 20, 20), B_ALIGN_LEFT, 0);
    Look(board.view).DrawLabel("", BRect(0, 0, 20, 20), B_ALIGN_LEFT, 0);
    EXPECT_FALSE(board.Drawn().IsValid());
}
