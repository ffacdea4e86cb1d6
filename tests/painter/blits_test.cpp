// Moved, scaled and clipped pixels against a model that works one by one.

#include "painter/board.h"

#include <cmath>
#include <cstring>

using namespace server;

namespace {

// A banded clip with a hole.
struct HoledClip {
    explicit HoledClip(Board& board) { target = {&board.surface, rects, 4, {4, 5, 90, 75}}; }
    bool Contains(int x, int y) const
    {
        for (const clipping_rect& rect : rects) {
            if (is_inside(rect, x, y))
                return true;
        }
        return false;
    }
    clipping_rect rects[4] = {{4, 5, 90, 20}, {4, 21, 30, 50}, {50, 21, 90, 50}, {4, 51, 90, 75}};
    Target target;
};

}  // namespace

TEST(Blits, CopyRectMovesOverlappingPixels)
{
    std::mt19937 random(21);
    for (int round = 0; round < 600; round++) {
        Board board, before, expected;
        before.FillRandom(random);
        board.CopyFrom(before);
        expected.CopyFrom(before);
        const int left = int(random() % 110) - 10, top = int(random() % 100) - 10;
        const BRect from(left, top, left + random() % 80, top + random() % 70);
        const int near = round % 2 == 0 ? 7 : 90;
        const int dx = int(random() % (2 * near + 1)) - near;
        const int dy = int(random() % (2 * near + 1)) - near;
        const HoledClip clip(board);
        const bool holed = round % 3 == 0;
        CopyRect(holed ? clip.target : board.Whole(), from, from.LeftTop() + BPoint(dx, dy));
        for (int y = 0; y < Board::kHeight; y++) {
            for (int x = 0; x < Board::kWidth; x++) {
                const int sourceX = x - dx, sourceY = y - dy;
                const bool exists = sourceX >= 0 && sourceX < Board::kWidth && sourceY >= 0 &&
                                    sourceY < Board::kHeight;
                if (exists && from.Contains(BPoint(sourceX, sourceY)) &&
                    (!holed || clip.Contains(x, y)))
                    expected.At(x, y) = before.At(sourceX, sourceY);
            }
        }
        expect_same(board, expected, holed ? "holed" : "whole");
        if (HasFailure())
            FAIL() << "by " << dx << ", " << dy;
    }
}

TEST(Blits, CopyRectMovesSingleBits)
{
    std::mt19937 random(22);
    const int width = 50, height = 20, pitch = 7;
    for (int round = 0; round < 200; round++) {
        uint8 bits[pitch * height], before[pitch * height];
        for (uint8& byte : bits)
            byte = uint8(random());
        memcpy(before, bits, sizeof(bits));
        Surface surface{bits, pitch, width, height, B_GRAY1};
        const clipping_rect clip = {0, 0, width - 1, height - 1};
        const int dx = int(random() % 21) - 10, dy = int(random() % 11) - 5;
        const BRect from(3, 2, 40, 17);
        CopyRect({&surface, &clip, 1, clip}, from, from.LeftTop() + BPoint(dx, dy));
        const auto bit = [](const uint8* rows, int x, int y) {
            return rows[y * pitch + x / 8] >> (7 - x % 8) & 1;
        };
        for (int y = 0; y < height; y++) {
            for (int x = 0; x < width; x++) {
                const bool moved = from.Contains(BPoint(x - dx, y - dy));
                ASSERT_EQ(bit(bits, x, y), moved ? bit(before, x - dx, y - dy) : bit(before, x, y));
            }
        }
    }
}

TEST(Blits, ScaledPixelsComeFromTheNearestPlace)
{
    std::mt19937 random(23);
    Board source;
    source.FillRandom(random);
    for (int round = 0; round < 300; round++) {
        Board board, expected;
        const int left = int(random() % 100) - 20, top = int(random() % 90) - 20;
        const int width = 1 + random() % 60, height = 1 + random() % 60;
        const int toLeft = int(random() % 100) - 30, toTop = int(random() % 90) - 30;
        const int toWidth = 1 + random() % 120, toHeight = 1 + random() % 120;
        const HoledClip clip(board);
        DrawBitmap(clip.target, Paint(), source.surface,
                   BRect(left, top, left + width - 1, top + height - 1),
                   BRect(toLeft, toTop, toLeft + toWidth - 1, toTop + toHeight - 1), 0);
        for (int y = 0; y < Board::kHeight; y++) {
            for (int x = 0; x < Board::kWidth; x++) {
                const int column = x - toLeft, row = y - toTop;
                if (column < 0 || column >= toWidth || row < 0 || row >= toHeight ||
                    !clip.Contains(x, y))
                    continue;
                const int fromX = left + (2 * column + 1) * width / (2 * toWidth);
                const int fromY = top + (2 * row + 1) * height / (2 * toHeight);
                if (fromX >= 0 && fromX < Board::kWidth && fromY >= 0 && fromY < Board::kHeight)
                    expected.At(x, y) = source.At(fromX, fromY);
            }
        }
        expect_same(board, expected, "scaled");
        if (HasFailure())
            FAIL() << width << " x " << height << " to " << toWidth << " x " << toHeight;
    }
}

TEST(Blits, SmoothScalingMixesNeighbours)
{
    Board source(0xFF000000), board;
    source.At(1, 0) = source.At(1, 1) = 0xFFFFFFFF;
    DrawBitmap(board.Whole(), Paint(), source.surface, BRect(0, 0, 1, 1), BRect(0, 0, 39, 39),
               B_FILTER_BITMAP_BILINEAR);
    for (int x = 1; x < 40; x++)
        EXPECT_GE(board.At(x, 20) & 255, board.At(x - 1, 20) & 255);
    EXPECT_EQ(board.At(0, 20), 0xFF000000);
    EXPECT_NEAR(int(board.At(20, 20) & 255), 130, 6);
}

TEST(Blits, SpacesAreConvertedAndTransparencyKept)
{
    // Index 255 and the magic value are holes in every mode but copy.
    uint8 indices[4] = {42, 255, 52, 0};
    const Surface palette{indices, 4, 4, 1, B_CMAP8};
    Board board(0xFF808080);
    Paint paint;
    paint.mode = B_OP_OVER;
    DrawBitmap(board.Whole(), paint, palette, BRect(0, 0, 3, 0), BRect(10, 10, 13, 10), 0);
    EXPECT_EQ(board.At(10, 10), 0xFF000000 | uint32(SystemPalette()[42].red) << 16 |
                                    uint32(SystemPalette()[42].green) << 8 |
                                    SystemPalette()[42].blue);
    EXPECT_EQ(board.At(11, 10), 0xFF808080);
    EXPECT_EQ(board.At(13, 10), 0xFF000000);

    uint32 pixels[2] = {B_TRANSPARENT_MAGIC_RGBA32, 0x00123456};
    const Surface plain{reinterpret_cast<uint8*>(pixels), 8, 2, 1, B_RGB32};
    DrawBitmap(board.Whole(), paint, plain, BRect(0, 0, 1, 0), BRect(20, 10, 21, 10), 0);
    EXPECT_EQ(board.At(20, 10), 0xFF808080);
    EXPECT_EQ(board.At(21, 10), 0xFF123456);  // without alpha of its own it is opaque
}

TEST(Blits, SurfaceCanBeDrawnOntoItself)
{
    std::mt19937 random(24);
    Board board, before;
    before.FillRandom(random);
    board.CopyFrom(before);
    DrawBitmap(board.Whole(), Paint(), board.surface, BRect(0, 0, 50, 50), BRect(3, 2, 53, 52), 0);
    for (int y = 2; y <= 52; y++) {
        for (int x = 3; x <= 53; x++)
            ASSERT_EQ(board.At(x, y), before.At(x - 3, y - 2));
    }
}
