#ifndef TESTS_PAINTER_BOARD_H
#define TESTS_PAINTER_BOARD_H

#include <server/painter/Painter.h>

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <vector>

// Pixels with guard words around them, to draw on.
class Board {
public:
    static constexpr int kWidth = 97, kHeight = 83, kPadding = 3;

    explicit Board(uint32 color = 0) : fPixels(kPitch * (kHeight + 2), kGuard)
    {
        for (int y = 0; y < kHeight; y++) {
            for (int x = 0; x < kWidth; x++)
                At(x, y) = color;
        }
        surface.bits = reinterpret_cast<uint8*>(&At(0, 0));
        surface.bytesPerRow = kPitch * 4;
        surface.width = kWidth;
        surface.height = kHeight;
        surface.space = B_RGBA32;
    }
    ~Board()
    {
        int damaged = 0;
        for (int row = 0; row < kHeight + 2; row++) {
            for (int x = 0; x < kPitch; x++) {
                const bool inside = row > 0 && row <= kHeight && x < kWidth;
                damaged += !inside && fPixels[row * kPitch + x] != kGuard;
            }
        }
        EXPECT_EQ(damaged, 0) << "pixels outside of the surface were written";
    }
    Board(const Board&) = delete;

    uint32& At(int x, int y) { return fPixels[(y + 1) * kPitch + x]; }
    uint32 At(int x, int y) const { return fPixels[(y + 1) * kPitch + x]; }
    server::Target Whole()
    {
        fWhole = {0, 0, kWidth - 1, kHeight - 1};
        return {&surface, &fWhole, 1, fWhole};
    }
    void FillRandom(std::mt19937& random)
    {
        for (int y = 0; y < kHeight; y++) {
            for (int x = 0; x < kWidth; x++)
                At(x, y) = random();
        }
    }
    void CopyFrom(const Board& other)
    {
        for (int y = 0; y < kHeight; y++) {
            for (int x = 0; x < kWidth; x++)
                At(x, y) = other.At(x, y);
        }
    }
    int Count(uint32 color) const
    {
        int count = 0;
        for (int y = 0; y < kHeight; y++) {
            for (int x = 0; x < kWidth; x++)
                count += At(x, y) == color;
        }
        return count;
    }

    server::Surface surface;

private:
    static constexpr int kPitch = kWidth + kPadding;
    static constexpr uint32 kGuard = 0xDEADBEEF;
    std::vector<uint32> fPixels;
    clipping_rect fWhole;
};

// Compares pixel by pixel and shows the first difference.
inline void expect_same(const Board& actual, const Board& expected, const std::string& what)
{
    for (int y = 0; y < Board::kHeight; y++) {
        for (int x = 0; x < Board::kWidth; x++) {
            if (actual.At(x, y) != expected.At(x, y)) {
                ADD_FAILURE() << what << ": pixel (" << x << ", " << y << ") is " << std::hex
                              << actual.At(x, y) << " instead of " << expected.At(x, y);
                return;
            }
        }
    }
}

inline bool is_inside(const clipping_rect& box, int x, int y)
{
    return x >= box.left && x <= box.right && y >= box.top && y <= box.bottom;
}

using Draw = std::function<clipping_rect(const server::Target&, const server::Paint&)>;

struct Shape {
    std::string name;
    Draw draw;
};

// One shape of every kind, at places that often lie partly outside of the board.
std::vector<Shape> random_shapes(std::mt19937& random);

#endif  // TESTS_PAINTER_BOARD_H
