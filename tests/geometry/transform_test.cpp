// Affine transformations: each call against the sum it stands for, at random points.

#include <AffineTransform.h>
#include <Point.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <random>

namespace {

const double kNear = 1e-3;  // places are singles

using Place = std::function<BPoint(BPoint)>;

// One that turns, stretches, slants and moves.
BAffineTransform crooked() { return BAffineTransform(1.5, 0.25, -0.5, 2, 10, -20); }

void expect_same(const BAffineTransform& transform, const Place& place, const char* what)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<float> number(-50, 50);
    for (int i = 0; i < 20; i++) {
        const BPoint point(number(random), number(random));
        const BPoint got = transform.Apply(point), wanted = place(point);
        EXPECT_NEAR(wanted.x, got.x, kNear) << what;
        EXPECT_NEAR(wanted.y, got.y, kNear) << what;
    }
}

// What a call adds to a crooked transformation: behind it, or with Pre before.
struct Row {
    const char* name;
    BAffineTransform result;
    Place place;
    bool first = false;
};

}  // namespace

TEST(TransformCalls, ActBehindWhatWasThereAndPreCallsBefore)
{
    const BPoint center(3, -4), scale(2, 0.5f), shear(0.3f, -0.2f);
    const double turn = 0.7;
    const Place move = [](BPoint p) { return p + BPoint(5, 6); };
    const Place rotate = [=](BPoint p) {
        return BPoint(float(p.x * cos(turn) - p.y * sin(turn)),
                      float(p.x * sin(turn) + p.y * cos(turn)));
    };
    const Place stretch = [=](BPoint p) { return BPoint(p.x * scale.x, p.y * scale.y); };
    const Place twice = [](BPoint p) { return BPoint(p.x * 2, p.y * 2); };
    // Shears are angles.
    const Place slant = [=](BPoint p) {
        return BPoint(p.x + p.y * std::tan(shear.x), p.x * std::tan(shear.y) + p.y);
    };
    const auto around = [=](Place place) {
        return [=](BPoint p) { return place(p - center) + center; };
    };
    const auto with = [](auto change) {
        BAffineTransform transform = crooked();
        change(transform);
        return transform;
    };
    using T = BAffineTransform&;
    const BAffineTransform base = crooked();
    const Row rows[] = {
        {"TranslateBy", with([](T t) { t.TranslateBy(5, 6); }), move},
        {"TranslateBy point", with([](T t) { t.TranslateBy(BPoint(5, 6)); }), move},
        {"TranslateByCopy", base.TranslateByCopy(5, 6), move},
        {"TranslateByCopy point", base.TranslateByCopy(BPoint(5, 6)), move},
        {"PreTranslateBy", with([](T t) { t.PreTranslateBy(5, 6); }), move, true},
        {"RotateBy", with([=](T t) { t.RotateBy(turn); }), rotate},
        {"RotateBy center", with([=](T t) { t.RotateBy(center, turn); }), around(rotate)},
        {"RotateByCopy", base.RotateByCopy(turn), rotate},
        {"RotateByCopy center", base.RotateByCopy(center, turn), around(rotate)},
        {"PreRotateBy", with([=](T t) { t.PreRotateBy(turn); }), rotate, true},
        {"ScaleBy", with([](T t) { t.ScaleBy(2); }), twice},
        {"ScaleBy center", with([=](T t) { t.ScaleBy(center, 2); }), around(twice)},
        {"ScaleBy x, y", with([=](T t) { t.ScaleBy(scale.x, scale.y); }), stretch},
        {"ScaleBy center, x, y", with([=](T t) { t.ScaleBy(center, scale.x, scale.y); }),
         around(stretch)},
        {"ScaleBy point", with([=](T t) { t.ScaleBy(scale); }), stretch},
        {"ScaleBy center, point", with([=](T t) { t.ScaleBy(center, scale); }), around(stretch)},
        {"PreScaleBy", with([=](T t) { t.PreScaleBy(scale.x, scale.y); }), stretch, true},
        {"ScaleByCopy", base.ScaleByCopy(2), twice},
        {"ScaleByCopy center", base.ScaleByCopy(center, 2), around(twice)},
        {"ScaleByCopy x, y", base.ScaleByCopy(scale.x, scale.y), stretch},
        {"ScaleByCopy center, x, y", base.ScaleByCopy(center, scale.x, scale.y), around(stretch)},
        {"ScaleByCopy point", base.ScaleByCopy(scale), stretch},
        {"ScaleByCopy center, point", base.ScaleByCopy(center, scale), around(stretch)},
        {"ShearBy", with([=](T t) { t.ShearBy(shear.x, shear.y); }), slant},
        {"ShearBy center", with([=](T t) { t.ShearBy(center, shear.x, shear.y); }), around(slant)},
        {"ShearBy point", with([=](T t) { t.ShearBy(shear); }), slant},
        {"ShearBy center, point", with([=](T t) { t.ShearBy(center, shear); }), around(slant)},
        {"ShearByCopy", base.ShearByCopy(shear.x, shear.y), slant},
        {"ShearByCopy center", base.ShearByCopy(center, shear.x, shear.y), around(slant)},
        {"ShearByCopy point", base.ShearByCopy(shear), slant},
        {"ShearByCopy center, point", base.ShearByCopy(center, shear), around(slant)},
        {"Multiply", with([=](T t) { t.Multiply(BAffineTransform::AffineRotation(turn)); }),
         rotate},
        {"PreMultiply", with([=](T t) { t.PreMultiply(BAffineTransform::AffineRotation(turn)); }),
         rotate, true},
        {"*=", with([=](T t) { t *= BAffineTransform::AffineShearing(shear.x, shear.y); }), slant},
        {"*", base * BAffineTransform::AffineTranslation(5, 6), move},
        {"MultiplyInverse",
         with([](T t) { t.MultiplyInverse(BAffineTransform::AffineTranslation(-5, -6)); }), move},
        {"PreMultiplyInverse",
         with([](T t) { t.PreMultiplyInverse(BAffineTransform::AffineTranslation(-5, -6)); }), move,
         true},
        {"/=", with([](T t) { t /= BAffineTransform::AffineScaling(0.5); }), twice},
        {"/", base / BAffineTransform::AffineScaling(0.5), twice},
    };
    for (const Row& row : rows) {
        const auto both = [&](BPoint p) {
            return row.first ? base.Apply(row.place(p)) : row.place(base.Apply(p));
        };
        expect_same(row.result, both, row.name);
    }
}

TEST(TransformCalls, PointsComeInAllForms)
{
    const BAffineTransform transform = crooked();
    const BPoint wanted = transform.Apply(BPoint(7, 8));
    BPoint one(7, 8), many[] = {BPoint(7, 8), BPoint(0, 0), BPoint(7, 8)};
    transform.Apply(&one);
    transform.Apply(many, 3);
    double x = 7, y = 8;
    transform.Apply(&x, &y);
    EXPECT_EQ(wanted, one);
    EXPECT_EQ(wanted, many[0]);
    EXPECT_EQ(BPoint(10, -20), many[1]);
    EXPECT_EQ(wanted, many[2]);
    EXPECT_FLOAT_EQ(wanted.x, float(x));
    transform.ApplyInverse(&one);
    transform.ApplyInverse(many, 3);
    transform.ApplyInverse(&x, &y);
    for (const BPoint& back : {one, many[0], many[2], BPoint(float(x), float(y))}) {
        EXPECT_NEAR(7, back.x, kNear);
        EXPECT_NEAR(8, back.y, kNear);
    }
    EXPECT_NEAR(0, many[1].x, kNear);
}

TEST(TransformCalls, TellAndChangeTheirParts)
{
    BAffineTransform transform = BAffineTransform::AffineScaling(2, 3);
    transform.RotateBy(0.5);
    transform.TranslateBy(7, 8);
    double x, y;
    transform.GetTranslation(&x, &y);
    EXPECT_NEAR(7, x, 1e-9);
    EXPECT_NEAR(8, y, 1e-9);
    transform.GetScaleAbs(&x, &y);
    EXPECT_NEAR(2, x, 1e-9);
    EXPECT_NEAR(3, y, 1e-9);
    EXPECT_NEAR(0.5, transform.Rotation(), 1e-9);
    EXPECT_NEAR(6, transform.Determinant(), 1e-9);
    EXPECT_NEAR(1 / 6., transform.InverseDeterminant(), 1e-9);
    double turn, sx, sy, shear_x, shear_y;
    ASSERT_TRUE(transform.GetAffineParameters(&x, &y, &turn, &sx, &sy, &shear_x, &shear_y));
    EXPECT_NEAR(2, sx, 1e-9);
    EXPECT_NEAR(3, sy, 1e-9);
    EXPECT_FALSE(BAffineTransform::AffineScaling(0).GetAffineParameters(&x, &y, &turn, &sx, &sy,
                                                                        &shear_x, &shear_y));

    BAffineTransform flipped;
    flipped.FlipX();
    EXPECT_EQ(BPoint(-1, 2), flipped.Apply(BPoint(1, 2)));
    flipped.FlipY();
    EXPECT_EQ(BPoint(-1, -2), flipped.Apply(BPoint(1, 2)));
    EXPECT_TRUE(flipped != transform);
    EXPECT_TRUE(flipped.IsFixedSize());
    EXPECT_TRUE(flipped.Reset().IsIdentity());
    EXPECT_TRUE(BAffineTransform::AffineTranslation(3, 4).IsDilation());
    EXPECT_FALSE(crooked().IsDilation());
    EXPECT_TRUE(crooked().IsEqual(crooked().TranslateByCopy(1e-6, 0), 1e-5));
    EXPECT_FALSE(crooked().IsEqual(crooked().TranslateByCopy(1e-4, 0), 1e-5));
    BAffineTransform inverse = crooked();
    expect_same(
        inverse.Invert() * crooked(), [](BPoint p) { return p; }, "Invert");
}
