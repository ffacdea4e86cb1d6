// Rows of pixels by the quickest code and by the plain one, and bitmaps scaled with them, against
// models that work with one component at a time.

#include "board.h"

#include <server/painter/PainterRows.h>

#include <algorithm>
#include <cmath>
#include <string>

using namespace server;

namespace {

const int kMost = 67;  // pixels: some vectors, and what remains

int component(uint32 pixel, int shift) { return int(pixel >> shift & 255); }

// Applies to each component of two pixels; alpha too.
template <class Mix>
uint32 by_component(uint32 one, uint32 other, Mix mix)
{
    uint32 pixel = 0;
    for (int shift = 0; shift < 32; shift += 8)
        pixel |= uint32(mix(component(one, shift), component(other, shift))) << shift;
    return pixel;
}

// Runs of clear, opaque and other pixels.
std::vector<uint32> random_row(std::mt19937& random)
{
    std::vector<uint32> row;
    while (row.size() < kMost + 1) {
        const uint32 kind = random() % 3;
        for (int i = int(random() % 20); i >= 0; i--)
            row.push_back(kind == 0   ? random() & 0xFFFFFF
                          : kind == 1 ? random() | 0xFF000000
                                      : uint32(random()));
    }
    row.resize(kMost + 1);
    return row;
}

uint32 multiplied(uint32 pixel)
{
    return by_component(pixel | 0xFF000000, 0, [=](int color, int) {
        return (color * component(pixel, 24) * 2 + 255) / 510;
    });
}

class Rows : public testing::TestWithParam<const RowCode*> {
protected:
    // Rows of every length, at places that no vector likes.
    template <class Run, class Expect>
    void EachLength(Run run, Expect expect)
    {
        std::mt19937 random(5);
        for (int count = 0; count <= kMost; count++) {
            const std::vector<uint32> from = random_row(random), before = random_row(random);
            std::vector<uint32> to = before;
            run(from.data(), to.data(), count);
            for (int i = 0; i < count; i++)
                ASSERT_EQ(to[i], expect(from[i], before[i])) << i << " of " << count;
            for (size_t i = size_t(count); i < to.size(); i++)
                ASSERT_EQ(to[i], before[i]) << "behind " << count;
        }
    }
};

std::string name_of(const testing::TestParamInfo<const RowCode*>& info)
{
    return info.param == &plain_row_code() ? "plain" : "quickest";
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(, Rows, testing::Values(&plain_row_code(), &row_code()), name_of);

TEST_P(Rows, CopiesAreOpaque)
{
    EachLength(GetParam()->copyOpaque, [](uint32 from, uint32) { return from | 0xFF000000; });
}

TEST_P(Rows, ColoursAreMultipliedByAlphaToTheNearest)
{
    EachLength(GetParam()->multiply, [](uint32 from, uint32) { return multiplied(from); });
}

TEST_P(Rows, PixelsLieOverOthersByTheirAlpha)
{
    EachLength(GetParam()->layOver, [](uint32 from, uint32 before) {
        const int alpha = component(from, 24);
        if (alpha == 0)
            return before;
        return by_component(from | 0xFF000000, before, [=](int above, int below) {
            return (2 * (above * alpha + below * (255 - alpha)) + 255) / 510;
        });
    });
}

TEST_P(Rows, MultipliedPixelsLieOverOthersToo)
{
    EachLength(
        [&](const uint32* from, uint32* to, int32 count) {
            std::vector<uint32> pixels(from, from + count);
            std::transform(pixels.begin(), pixels.end(), pixels.begin(), multiplied);
            GetParam()->layMultiplied(pixels.data(), to, count);
        },
        [](uint32 from, uint32 before) {
            const int rest = 255 - component(from, 24);
            if (rest == 255)
                return before;
            return by_component(multiplied(from), before, [=](int above, int below) {
                return above + (2 * below * rest + 255) / 510;
            });
        });
}

// The coverage is that of the pixels' alpha.
TEST_P(Rows, AColourIsMixedInByItsCoverage)
{
    for (const uint32 color : {0u, 0xFFFFFFFFu, 0xFF8040C1u, 0x01FE7F80u}) {
        EachLength(
            [&](const uint32* from, uint32* to, int32 count) {
                std::vector<uint8> coverage(size_t(count) + 1, 255);
                for (int i = 0; i < count; i++)
                    coverage[size_t(i)] = uint8(component(from[i], 24));
                GetParam()->cover(color, coverage.data(), to, count);
            },
            [=](uint32 from, uint32 before) {
                const int weight = component(from, 24);
                return by_component(color, before, [=](int above, int below) {
                    return (2 * (above * weight + below * (255 - weight)) + 255) / 510;
                });
            });
    }
}

TEST_P(Rows, RowsAreMixedByAnyWeight)
{
    for (int weight = 0; weight <= 256; weight++) {
        EachLength(
            [&](const uint32* from, uint32* to, int32 count) {
                GetParam()->mixRows(from, to, weight, 0x01000000, to, count);
            },
            [=](uint32 above, uint32 below) {
                return 0x01000000 | by_component(above, below, [=](int first, int second) {
                           return (first * (256 - weight) + second * weight) / 256;
                       });
            });
    }
}

TEST_P(Rows, ColumnsAreMixedFromWhereTheyLie)
{
    std::mt19937 random(6);
    for (int count = 0; count <= kMost; count++) {
        const std::vector<uint32> from = random_row(random);
        std::vector<int32> indexes;
        std::vector<uint32> weights;
        for (int i = 0; i < count; i++) {
            indexes.push_back(int32(random() % kMost));
            weights.push_back(uint32(random() % 257) * 0x10001);
        }
        std::vector<uint32> to(kMost + 1, 7);
        GetParam()->mixColumns(from.data(), {indexes.data(), weights.data()}, 0x80, to.data(),
                               count);
        for (int i = 0; i < count; i++) {
            const int weight = int(weights[i] & 0xFFFF);
            const uint32 mixed =
                by_component(from[indexes[i]], from[indexes[i] + 1], [=](int first, int second) {
                    return (first * (256 - weight) + second * weight) / 256;
                });
            ASSERT_EQ(to[i], mixed | 0x80) << i << " of " << count;
        }
        ASSERT_EQ(to[count], 7u);
    }
}

namespace {

// What one component of a scaled pixel is, exactly, between the four around its place.
class Exact {
public:
    Exact(const Board& source, const clipping_rect& from, bool hasAlpha)
        : fSource(source), fFrom(from), fHasAlpha(hasAlpha)
    {
    }
    double At(double x, double y, int shift) const
    {
        x = std::clamp(x - 0.5, double(fFrom.left), double(fFrom.right));
        y = std::clamp(y - 0.5, double(fFrom.top), double(fFrom.bottom));
        const int column = int(x), row = int(y);
        const double right = x - column, below = y - row;
        return (_Pixel(column, row, shift) * (1 - right) + _Pixel(column + 1, row, shift) * right) *
                   (1 - below) +
               (_Pixel(column, row + 1, shift) * (1 - right) +
                _Pixel(column + 1, row + 1, shift) * right) *
                   below;
    }

private:
    double _Pixel(int x, int y, int shift) const
    {
        const uint32 pixel =
            fSource.At(std::min(x, int(fFrom.right)), std::min(y, int(fFrom.bottom)));
        const double alpha = fHasAlpha ? component(pixel, 24) / 255.0 : 1;
        return (shift == 24 ? 255 : component(pixel, shift)) * alpha;
    }
    const Board& fSource;
    const clipping_rect fFrom;
    const bool fHasAlpha;
};

}  // namespace

// Any part of a bitmap, a single pixel too, to any size, by columns first and by rows first.
TEST(Scaling, SmoothPixelsAreWhatLiesAroundTheirPlace)
{
    std::mt19937 random(31);
    for (int round = 0; round < 400; round++) {
        Board source, board, before;
        source.FillRandom(random);
        before.FillRandom(random);
        board.CopyFrom(before);
        const bool hasAlpha = round % 2 == 0;
        if (!hasAlpha)
            source.surface.space = B_RGB32;
        const int left = int(random() % 60), top = int(random() % 60);
        const int width = 1 + int(random() % (round % 5 == 0 ? 2 : 37));
        const int height = 1 + int(random() % (round % 7 == 0 ? 2 : 23));
        const int toWidth = 1 + int(random() % (round % 3 == 0 ? 6 : 110));
        const int toHeight = 1 + int(random() % (round % 4 == 0 ? 6 : 90));
        if (width == toWidth && height == toHeight)
            continue;  // is drawn as it is
        const int toLeft = int(random() % 30) - 15, toTop = int(random() % 30) - 15;
        Paint paint;
        paint.mode = B_OP_ALPHA;
        paint.alphaSource = B_PIXEL_ALPHA;
        paint.alphaFunction = B_ALPHA_OVERLAY;
        if (!hasAlpha)
            paint.mode = B_OP_COPY;
        clipping_rect parts[2] = {{0, 0, 40, Board::kHeight - 1},
                                  {45, 0, Board::kWidth - 1, Board::kHeight - 1}};
        const Target target{
            &board.surface, parts, 2, {0, 0, Board::kWidth - 1, Board::kHeight - 1}};
        DrawBitmap(target, paint, source.surface,
                   BRect(left, top, left + width - 1, top + height - 1),
                   BRect(toLeft, toTop, toLeft + toWidth - 1, toTop + toHeight - 1),
                   B_FILTER_BITMAP_BILINEAR);
        const Exact exact(source, {left, top, left + width - 1, top + height - 1}, hasAlpha);
        for (int y = 0; y < Board::kHeight; y++) {
            for (int x = 0; x < Board::kWidth; x++) {
                const uint32 below = before.At(x, y);
                if (x < toLeft || x >= toLeft + toWidth || y < toTop || y >= toTop + toHeight ||
                    (x > 40 && x < 45)) {
                    ASSERT_EQ(board.At(x, y), below);
                    continue;
                }
                const double fromX = left + (x - toLeft + 0.5) * width / toWidth;
                const double fromY = top + (y - toTop + 0.5) * height / toHeight;
                const double rest = 1 - exact.At(fromX, fromY, 24) / 255;
                for (int shift = 0; shift < 24; shift += 8)
                    ASSERT_NEAR(component(board.At(x, y), shift),
                                exact.At(fromX, fromY, shift) + component(below, shift) * rest, 4)
                        << x << ", " << y << " of " << width << " x " << height << " to " << toWidth
                        << " x " << toHeight << (hasAlpha ? " alpha" : "");
            }
        }
    }
}
