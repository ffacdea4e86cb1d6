#ifndef _AFFINETRANSFORM_H
#define _AFFINETRANSFORM_H

#include <Point.h>
#include <Flattenable.h>
#include <SupportDefs.h>

// Turns (x, y) into (x * sx + y * shx + tx, x * shy + y * sy + ty). Calls that change it act after
// what it did before, those named Pre... act first. Angles are radians. The inverse of one that
// is not valid has no finite values.
class BAffineTransform : public BFlattenable {
public:
    static constexpr double kDefaultEpsilon = 1e-14;
    BAffineTransform();
    BAffineTransform(double sx, double shy, double shx, double sy, double tx, double ty);
    BAffineTransform(const BAffineTransform& copyFrom);
    virtual ~BAffineTransform();

    virtual bool IsFixedSize() const;
    virtual type_code TypeCode() const;
    virtual ssize_t FlattenedSize() const;
    virtual status_t Flatten(void* buffer, ssize_t size) const;
    virtual status_t Unflatten(type_code code, const void* buffer, ssize_t size);

    static BAffineTransform AffineTranslation(double x, double y);
    static BAffineTransform AffineRotation(double angle);
    static BAffineTransform AffineScaling(double x, double y);
    static BAffineTransform AffineScaling(double scale);
    static BAffineTransform AffineShearing(double x, double y);

    void Apply(double* x, double* y) const;
    void ApplyInverse(double* x, double* y) const;
    BPoint Apply(const BPoint& point) const;
    BPoint ApplyInverse(const BPoint& point) const;
    void Apply(BPoint* point) const;
    void ApplyInverse(BPoint* point) const;
    void Apply(BPoint* points, uint32 count) const;
    void ApplyInverse(BPoint* points, uint32 count) const;

    const BAffineTransform& TranslateBy(double x, double y);
    const BAffineTransform& TranslateBy(const BPoint& delta);
    const BAffineTransform& PreTranslateBy(double x, double y);
    BAffineTransform TranslateByCopy(double x, double y) const;
    BAffineTransform TranslateByCopy(const BPoint& delta) const;
    const BAffineTransform& RotateBy(double angle);
    const BAffineTransform& RotateBy(const BPoint& center, double angle);
    const BAffineTransform& PreRotateBy(double angleRadians);
    BAffineTransform RotateByCopy(double angle) const;
    BAffineTransform RotateByCopy(const BPoint& center, double angle) const;
    const BAffineTransform& ScaleBy(double scale);
    const BAffineTransform& ScaleBy(const BPoint& center, double scale);
    const BAffineTransform& ScaleBy(double x, double y);
    const BAffineTransform& ScaleBy(const BPoint& center, double x, double y);
    const BAffineTransform& ScaleBy(const BPoint& scale);
    const BAffineTransform& ScaleBy(const BPoint& center, const BPoint& scale);
    const BAffineTransform& PreScaleBy(double x, double y);
    BAffineTransform ScaleByCopy(double scale) const;
    BAffineTransform ScaleByCopy(const BPoint& center, double scale) const;
    BAffineTransform ScaleByCopy(double x, double y) const;
    BAffineTransform ScaleByCopy(const BPoint& center, double x, double y) const;
    BAffineTransform ScaleByCopy(const BPoint& scale) const;
    BAffineTransform ScaleByCopy(const BPoint& center, const BPoint& scale) const;
    const BAffineTransform& SetScale(double scale);
    const BAffineTransform& SetScale(double x, double y);
    const BAffineTransform& ShearBy(double x, double y);
    const BAffineTransform& ShearBy(const BPoint& center, double x, double y);
    const BAffineTransform& ShearBy(const BPoint& shear);
    const BAffineTransform& ShearBy(const BPoint& center, const BPoint& shear);
    BAffineTransform ShearByCopy(double x, double y) const;
    BAffineTransform ShearByCopy(const BPoint& center, double x, double y) const;
    BAffineTransform ShearByCopy(const BPoint& shear) const;
    BAffineTransform ShearByCopy(const BPoint& center, const BPoint& shear) const;

    const BAffineTransform& Multiply(const BAffineTransform& other);
    const BAffineTransform& PreMultiply(const BAffineTransform& other);
    const BAffineTransform& MultiplyInverse(const BAffineTransform& other);
    const BAffineTransform& PreMultiplyInverse(const BAffineTransform& other);

    BAffineTransform& operator=(const BAffineTransform& copyFrom);
    bool operator==(const BAffineTransform& other) const;
    bool operator!=(const BAffineTransform& other) const;
    const BAffineTransform& operator*=(const BAffineTransform& other);
    const BAffineTransform& operator/=(const BAffineTransform& other);
    BAffineTransform operator*(const BAffineTransform& other) const;
    BAffineTransform operator/(const BAffineTransform& other) const;
    BAffineTransform operator~() const;

    bool IsValid(double epsilon = kDefaultEpsilon) const;
    bool IsIdentity(double epsilon = kDefaultEpsilon) const;
    bool IsDilation(double epsilon = kDefaultEpsilon) const;
    bool IsEqual(const BAffineTransform& other, double epsilon = kDefaultEpsilon) const;

    const BAffineTransform& Invert();
    const BAffineTransform& FlipX();
    const BAffineTransform& FlipY();
    const BAffineTransform& Reset();

    double Determinant() const;
    double InverseDeterminant() const;
    void GetTranslation(double* tx, double* ty) const;
    double Rotation() const;
    double Scale() const;
    void GetScale(double* sx, double* sy) const;
    void GetScaleAbs(double* sx, double* sy) const;
    // Each may be null. False, and nothing set, for a transformation that is not valid.
    bool GetAffineParameters(double* translationX, double* translationY, double* rotation,
                             double* scaleX, double* scaleY, double* shearX, double* shearY) const;

    double sx;
    double shy;
    double shx;
    double sy;
    double tx;
    double ty;
};

extern const BAffineTransform B_AFFINE_IDENTITY_TRANSFORM;

#endif  // _AFFINETRANSFORM_H
