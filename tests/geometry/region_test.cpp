// Regions beside a bitmap: random operations on both have to agree.

#include <Region.h>

#include <gtest/gtest.h>

#include <bitset>
#include <cmath>
#include <limits>
#include <random>

namespace {

const int kSize = 48;

class Model {
public:
    bool At(int x, int y) const { return fBits[y * kSize + x]; }
    void Set(int x, int y, bool value) { fBits[y * kSize + x] = value; }
    void Fill(const clipping_rect& rect, bool value)
    {
        for (int y = std::max(rect.top, 0); y <= std::min(rect.bottom, kSize - 1); y++) {
            for (int x = std::max(rect.left, 0); x <= std::min(rect.right, kSize - 1); x++)
                Set(x, y, value);
        }
    }
    std::bitset<kSize * kSize> fBits;
};

clipping_rect any_rect(std::mt19937& random)
{
    const int left = int(random() % kSize), top = int(random() % kSize);
    return {left, top, std::min<int>(left + random() % 20, kSize - 1),
            std::min<int>(top + random() % 20, kSize - 1)};
}

void any_region(std::mt19937& random, BRegion* region, Model* model)
{
    const int count = int(random() % 6);
    for (int i = 0; i < count; i++) {
        const clipping_rect rect = any_rect(random);
        region->Include(rect);
        model->Fill(rect, true);
    }
}

// Same pixels, and rectangles as the class promises them.
void expect_same(const BRegion& region, const Model& model)
{
    Model covered;
    clipping_rect frame = {INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN};
    for (int32 i = 0; i < region.CountRects(); i++) {
        const clipping_rect rect = region.RectAtInt(i);
        ASSERT_TRUE(rect.left <= rect.right && rect.top <= rect.bottom);
        for (int y = rect.top; y <= rect.bottom; y++) {
            for (int x = rect.left; x <= rect.right; x++) {
                ASSERT_FALSE(covered.At(x, y)) << "rectangles overlap";
                covered.Set(x, y, true);
            }
        }
        frame = {std::min(frame.left, rect.left), std::min(frame.top, rect.top),
                 std::max(frame.right, rect.right), std::max(frame.bottom, rect.bottom)};
        if (i == 0)
            continue;
        const clipping_rect above = region.RectAtInt(i - 1);
        if (rect.top == above.top) {
            ASSERT_EQ(rect.bottom, above.bottom);
            ASSERT_GT(rect.left, above.right + 1) << "neighbours are not joined";
        } else {
            ASSERT_GT(rect.top, above.bottom);
        }
    }
    ASSERT_EQ(covered.fBits, model.fBits);
    if (region.CountRects() > 0) {
        ASSERT_EQ(region.Frame(), BRect(frame.left, frame.top, frame.right, frame.bottom));
    } else {
        ASSERT_FALSE(region.Frame().IsValid());
    }
    for (int i = 0; i < 20; i++) {
        const int x = i * 37 % kSize, y = i * 11 % kSize;
        ASSERT_EQ(region.Contains(x, y), model.At(x, y));
        ASSERT_EQ(region.Contains(BPoint(x + 0.5f, y)), model.At(x, y));
    }
}

}  // namespace

TEST(Regions, OperationsAgreeWithABitmap)
{
    std::mt19937 random(1);
    for (int round = 0; round < 3000; round++) {
        BRegion region;
        Model model;
        any_region(random, &region, &model);
        for (int step = 0; step < 6; step++) {
            BRegion other;
            Model otherModel;
            any_region(random, &other, &otherModel);
            const clipping_rect rect = any_rect(random);
            switch (random() % 7) {
                case 0:
                    region.Include(rect);
                    model.Fill(rect, true);
                    break;
                case 1:
                    region.Exclude(BRect(rect.left, rect.top, rect.right, rect.bottom));
                    model.Fill(rect, false);
                    break;
                case 2:
                    region.Include(&other);
                    model.fBits |= otherModel.fBits;
                    break;
                case 3:
                    region.Exclude(&other);
                    model.fBits &= ~otherModel.fBits;
                    break;
                case 4:
                    region.IntersectWith(&other);
                    model.fBits &= otherModel.fBits;
                    break;
                case 5:
                    region.ExclusiveInclude(&other);
                    model.fBits ^= otherModel.fBits;
                    break;
                default: {
                    Model hit;
                    hit.Fill(rect, true);
                    EXPECT_EQ(region.Intersects(rect), (hit.fBits & model.fBits).any());
                    break;
                }
            }
            expect_same(region, model);
            if (HasFatalFailure())
                FAIL() << "round " << round << " step " << step;
        }
        // However a set of pixels came about, its rectangles are the same.
        BRegion again;
        for (int32 i = region.CountRects(); i-- > 0;)
            again.Include(region.RectAt(i));
        EXPECT_TRUE(again == region);
    }
}

TEST(Regions, CopiesAndMovesKeepTheirOwnRectangles)
{
    BRegion source(BRect(0, 0, 10, 10));
    source.Include(BRect(20, 20, 30, 30));
    BRegion copy(source);
    BRegion moved(std::move(source));
    EXPECT_TRUE(copy == moved);
    EXPECT_EQ(source.CountRects(), 0);
    copy.Exclude(BRect(0, 0, 10, 10));
    EXPECT_EQ(copy.CountRects(), 1);
    EXPECT_EQ(moved.CountRects(), 2);
    moved = copy;
    EXPECT_TRUE(moved.RectAt(0) == BRect(20, 20, 30, 30));
    moved = moved;
    EXPECT_EQ(moved.CountRects(), 1);
    BRegion same(moved);
    same.Include(&same);
    same.IntersectWith(&same);
    EXPECT_TRUE(same == moved);
    same.Exclude(&same);
    EXPECT_EQ(same.CountRects(), 0);
    same.Include(static_cast<const BRegion*>(nullptr));
    EXPECT_FALSE(same.RectAt(0).IsValid());
    EXPECT_FALSE(moved.RectAt(-1).IsValid());
}

TEST(Regions, OffsetAndScaleMoveEveryRectangle)
{
    BRegion region(BRect(0, 0, 9, 9));
    region.Include(BRect(20, 5, 29, 30));
    BRegion moved(region);
    moved.OffsetBy(-100, 50);
    EXPECT_TRUE(moved.Contains(-100, 50));
    EXPECT_TRUE(moved.Contains(-80, 80));
    EXPECT_FALSE(moved.Contains(-85, 55));
    moved.OffsetBy(BPoint(100, -50));
    EXPECT_TRUE(moved == region);

    region.ScaleBy(2, 3);
    BRegion expected(BRect(0, 0, 19, 29));
    expected.Include(BRect(40, 15, 59, 92));
    EXPECT_TRUE(region == expected);
    region.ScaleBy(BSize(-1, 1));
    EXPECT_TRUE(region.Contains(-1, 0));
    EXPECT_FALSE(region.Contains(0, 0));
    region.ScaleBy(0.001f, 1);
    EXPECT_LE(region.CountRects(), 3);
}

TEST(Regions, HugeNumbersAreCutAndNeverOverflow)
{
    const float huge = std::numeric_limits<float>::max();
    BRegion region(BRect(-huge, -huge, huge, huge));
    EXPECT_EQ(region.CountRects(), 1);
    EXPECT_TRUE(region.Contains(1000000000, -1000000000));
    region.Exclude(clipping_rect{INT32_MIN, 0, INT32_MAX, 0});
    EXPECT_EQ(region.CountRects(), 2);
    region.OffsetBy(INT32_MAX, INT32_MAX);
    region.OffsetBy(INT32_MIN, INT32_MIN);
    region.ScaleBy(huge, huge);

    BRegion none(BRect(NAN, 0, 10, 10));
    EXPECT_EQ(none.CountRects(), 0);
    none.Include(BRect(10, 10, 5, 20));
    none.Include(clipping_rect{INT32_MAX, 0, INT32_MIN, 5});
    EXPECT_EQ(none.CountRects(), 0);
    EXPECT_FALSE(none.Contains(BPoint(NAN, NAN)));
    BRegion edge(BRect(INFINITY, 0, INFINITY, 5));
    EXPECT_EQ(edge.CountRects(), 0);
}

TEST(Regions, RectanglesAreWidenedToWholePixels)
{
    const BRegion region(BRect(0.4f, -0.5f, 9.2f, 4.0f));
    EXPECT_TRUE(region.Frame() == BRect(0, -1, 10, 4));
}
