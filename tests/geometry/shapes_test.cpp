// Points, rectangles, sizes, polygons, shapes and transformations.

#include <AffineTransform.h>
#include <Message.h>
#include <Polygon.h>
#include <Rect.h>
#include <Shape.h>

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "interface/drawing/ShapeData.h"

TEST(Rects, IntersectionUnionAndContainment)
{
    const BRect a(0, 0, 10, 10), b(10, 5, 20, 15), away(11, 0, 20, 10), invalid;
    EXPECT_EQ(a & b, BRect(10, 5, 10, 10));
    EXPECT_EQ(a | b, BRect(0, 0, 20, 15));
    EXPECT_TRUE(a.Intersects(b));  // they share a column
    EXPECT_FALSE(a.Intersects(away));
    EXPECT_FALSE((a & away).IsValid());
    EXPECT_FALSE(a.Intersects(invalid));
    EXPECT_EQ(invalid | a, a);
    EXPECT_EQ(a | invalid, a);
    EXPECT_TRUE(a.Contains(BPoint(10, 10)));
    EXPECT_FALSE(a.Contains(BPoint(10.1f, 10)));
    EXPECT_TRUE(a.Contains(BRect(2, 2, 10, 10)));
    EXPECT_FALSE(a.Contains(b));
    EXPECT_EQ(a.Width(), 10);
    EXPECT_EQ(BRect(8, 4), BRect(0, 0, 7, 3));
    EXPECT_EQ(BRect(BPoint(1, 2), BSize(3, 4)), BRect(1, 2, 4, 6));
}

TEST(Rects, MovingKeepsTheSizeAndInsettingTheMiddle)
{
    BRect rect(3, 4, 13, 24);
    EXPECT_EQ(rect.OffsetToCopy(0, 0), BRect(0, 0, 10, 20));
    EXPECT_EQ(rect.OffsetByCopy(BPoint(1, -1)), BRect(4, 3, 14, 23));
    EXPECT_EQ(rect.InsetByCopy(2, 3), BRect(5, 7, 11, 21));
    rect.InsetBySelf(-1, -1).OffsetBySelf(1, 1);
    EXPECT_EQ(rect, BRect(3, 4, 15, 26));
    rect.SetLeftBottom(BPoint(0, 30));
    EXPECT_EQ(rect, BRect(0, 4, 15, 30));
}

TEST(Rects, IntegerSizesRoundUpAndStopAtTheLimits)
{
    EXPECT_EQ(BRect(0, 0, 10.2f, 9.9f).IntegerWidth(), 11);
    EXPECT_EQ(BRect(0, 0, 10.2f, -1).IntegerHeight(), -1);
    EXPECT_EQ(BRect(-3e38f, 0, 3e38f, NAN).IntegerWidth(), INT32_MAX);
    EXPECT_EQ(BRect(0, 0, 0, NAN).IntegerHeight(), 0);
    EXPECT_EQ(BSize(-3e38f, 4.5f).IntegerWidth(), -INT32_MAX);
    EXPECT_EQ(BSize(-3e38f, 4.5f).IntegerHeight(), 5);
    BPoint point(50, -5);
    point.ConstrainTo(BRect(0, 0, 10, 10));
    EXPECT_EQ(point, BPoint(10, 0));
}

TEST(Polygons, FrameFollowsThePointsAndTheMapping)
{
    const BPoint points[] = {BPoint(0, 0), BPoint(10, 5), BPoint(4, 20)};
    BPolygon polygon(points, 3);
    EXPECT_EQ(polygon.Frame(), BRect(0, 0, 10, 20));
    polygon.MapTo(BRect(0, 0, 10, 20), BRect(100, 100, 120, 110));
    EXPECT_EQ(polygon.Frame(), BRect(100, 100, 120, 110));
    BPolygon copy(&polygon);
    copy.AddPoints(points, 1);
    copy.AddPoints(nullptr, 4);
    copy.AddPoints(points, -4);
    EXPECT_EQ(copy.CountPoints(), 4);
    EXPECT_EQ(copy.Frame(), BRect(0, 0, 120, 110));
    EXPECT_EQ(polygon.CountPoints(), 3);
    polygon.MapTo(BRect(5, 5, 5, 5), BRect(1, 1, 2, 2));  // no size to stretch
    EXPECT_EQ(polygon.Frame(), BRect(1, 1, 1, 1));
    EXPECT_FALSE(BPolygon().Frame().IsValid());
}

namespace {

class Recorder : public BShapeIterator {
public:
    std::ostringstream log;
    status_t answer = B_OK;

    virtual status_t IterateMoveTo(BPoint* point)
    {
        log << 'M' << point->x << ' ';
        return answer;
    }
    virtual status_t IterateLineTo(int32 count, BPoint* points)
    {
        log << 'L' << count << ':' << points[count - 1].x << ' ';
        return answer;
    }
    virtual status_t IterateBezierTo(int32 count, BPoint* points)
    {
        log << 'B' << count << ':' << points[3 * count - 1].x << ' ';
        return answer;
    }
    virtual status_t IterateClose()
    {
        log << "Z ";
        return answer;
    }
    virtual status_t IterateArcTo(float& rx, float&, float&, bool large, bool counter, BPoint& end)
    {
        log << 'A' << rx << (large ? "l" : "") << (counter ? "c" : "") << ':' << end.x << ' ';
        return answer;
    }
};

BShape sample_shape()
{
    BShape shape;
    shape.MoveTo(BPoint(1, 1));
    shape.MoveTo(BPoint(2, 2));
    shape.LineTo(BPoint(3, 3));
    shape.LineTo(BPoint(4, 9));
    shape.BezierTo(BPoint(5, 5), BPoint(6, 6), BPoint(7, 7));
    shape.ArcTo(10, 5, 0, true, false, BPoint(20, 7));
    shape.Close();
    shape.LineTo(BPoint(30, 8));
    return shape;
}

}  // namespace

TEST(Shapes, IterationGathersLinesAndStopsWhereAHookSaysSo)
{
    BShape shape = sample_shape();
    Recorder all;
    EXPECT_EQ(all.Iterate(&shape), B_OK);
    EXPECT_EQ(all.log.str(), "M2 L2:4 B1:7 A10l:20 Z L1:30 ");
    Recorder stopped;
    stopped.answer = B_ERROR;
    EXPECT_EQ(stopped.Iterate(&shape), B_ERROR);
    EXPECT_EQ(stopped.log.str(), "M2 ");
    EXPECT_EQ(stopped.Iterate(nullptr), B_BAD_VALUE);
    EXPECT_EQ(shape.CurrentPosition(), BPoint(30, 8));
    shape.Close();
    EXPECT_EQ(shape.CurrentPosition(), BPoint(2, 2));
}

TEST(Shapes, CopiesArchivesAndJoinsAreEqual)
{
    BShape shape = sample_shape();
    BShape copy(shape);
    EXPECT_TRUE(copy == shape);
    BMessage archive;
    ASSERT_EQ(shape.Archive(&archive), B_OK);
    BArchivable* made = BShape::Instantiate(&archive);
    auto* restored = dynamic_cast<BShape*>(made);
    ASSERT_NE(restored, nullptr);
    EXPECT_TRUE(*restored == shape);
    delete made;

    BMessage broken;
    broken.AddString("class", "BShape");
    broken.AddInt32("ops", 2);
    broken.AddInt32("ops", 77);
    EXPECT_TRUE(BShape(&broken) == BShape());

    copy.AddShape(&copy);
    EXPECT_TRUE(copy != shape);
    EXPECT_EQ(copy.AddShape(nullptr), B_BAD_VALUE);
    copy.Clear();
    EXPECT_FALSE(copy.Bounds().IsValid());
    copy.MoveFrom(shape);
    EXPECT_TRUE(shape == BShape());
    EXPECT_EQ(copy.CurrentPosition(), BPoint(30, 8));
}

TEST(Shapes, ArcsReachTheirEndOnTheirEllipse)
{
    struct {
        bool large, counterClockwise;
        BRect bounds;
    } cases[] = {
        // From (10, 0) to (0, 10): quarter or three quarters, about either centre.
        {false, false, BRect(0, 0, 10, 10)},
        {true, true, BRect(-10, -10, 10, 10)},
        {true, false, BRect(0, 0, 20, 20)},
        {false, true, BRect(0, 0, 10, 10)},
    };
    for (const auto& item : cases) {
        BShape shape;
        shape.MoveTo(BPoint(10, 0));
        shape.ArcTo(10, 10, 0, item.large, item.counterClockwise, BPoint(0, 10));
        std::vector<uint8> ops;
        std::vector<BPoint> points;
        ASSERT_TRUE(BPrivate::ShapeData::Of(shape)->AppendPath(BPoint(5, 5), 2, &ops, &points));
        EXPECT_EQ(points.back(), BPoint(5, 25));
        const bool nearCenter = item.large == item.counterClockwise;
        const BPoint center = nearCenter ? BPoint(5, 5) : BPoint(25, 25);
        for (size_t i = 0; i < points.size(); i += 3)
            EXPECT_NEAR(std::hypot(points[i].x - center.x, points[i].y - center.y), 20, 0.01);
        const BRect bounds = shape.Bounds();
        EXPECT_TRUE(bounds.InsetByCopy(-0.01f, -0.01f).Contains(item.bounds) || !item.large);
    }
    BShape flat;
    flat.ArcTo(0, 0, 0, false, false, BPoint(5, 5));
    flat.ArcTo(NAN, 3, 0, true, false, BPoint(9, 5));
    EXPECT_EQ(flat.Bounds(), BRect(0, 0, 9, 5));
}

TEST(Transforms, InverseUndoesAndOrderCounts)
{
    BAffineTransform transform;
    transform.TranslateBy(10, 0).Determinant();
    transform.RotateBy(M_PI / 2);
    const BPoint turned = transform.Apply(BPoint(1, 0));
    EXPECT_NEAR(turned.x, 0, 1e-5);
    EXPECT_NEAR(turned.y, 11, 1e-5);
    const BPoint back = transform.ApplyInverse(turned);
    EXPECT_NEAR(back.x, 1, 1e-5);
    EXPECT_TRUE((transform * ~transform).IsIdentity(1e-9));
    EXPECT_TRUE(transform.IsValid());
    EXPECT_FALSE(BAffineTransform::AffineScaling(0, 1).IsValid());

    BAffineTransform first;
    first.PreTranslateBy(10, 0);
    first.PreRotateBy(M_PI / 2);  // turns first, then moves
    const BPoint moved = first.Apply(BPoint(1, 0));
    EXPECT_NEAR(moved.x, 10, 1e-5);
    EXPECT_NEAR(moved.y, 1, 1e-5);

    double buffer[6];
    BAffineTransform restored;
    ASSERT_EQ(transform.Flatten(buffer, sizeof(buffer)), B_OK);
    EXPECT_EQ(restored.Unflatten(transform.TypeCode(), buffer, 5), B_BAD_VALUE);
    ASSERT_EQ(restored.Unflatten(transform.TypeCode(), buffer, sizeof(buffer)), B_OK);
    EXPECT_TRUE(restored == transform);

    double x, y, angle, scaleX, scaleY, shear;
    BAffineTransform all;
    all.ScaleBy(2, 3);
    all.RotateBy(0.5);
    all.TranslateBy(7, 8);
    ASSERT_TRUE(all.GetAffineParameters(&x, &y, &angle, &scaleX, &scaleY, &shear, nullptr));
    EXPECT_NEAR(x, 7, 1e-9);
    EXPECT_NEAR(angle, 0.5, 1e-9);
    EXPECT_NEAR(scaleX, 2, 1e-9);
    EXPECT_NEAR(scaleY, 3, 1e-9);
    EXPECT_NEAR(shear, 0, 1e-9);
}
