#include <AffineTransform.h>

#include <TypeConstants.h>

#include <cmath>
#include <cstring>

const BAffineTransform B_AFFINE_IDENTITY_TRANSFORM;

namespace {

bool is_near(double a, double b, double epsilon) { return std::fabs(a - b) < epsilon; }

}  // namespace

BAffineTransform::BAffineTransform() : sx(1), shy(0), shx(0), sy(1), tx(0), ty(0) {}

BAffineTransform::BAffineTransform(double sx, double shy, double shx, double sy, double tx,
                                   double ty)
    : sx(sx), shy(shy), shx(shx), sy(sy), tx(tx), ty(ty)
{
}

BAffineTransform::BAffineTransform(const BAffineTransform& copyFrom) = default;

BAffineTransform::~BAffineTransform() = default;

bool BAffineTransform::IsFixedSize() const { return true; }

type_code BAffineTransform::TypeCode() const { return B_AFFINE_TRANSFORM_TYPE; }

ssize_t BAffineTransform::FlattenedSize() const { return 6 * sizeof(double); }

status_t BAffineTransform::Flatten(void* buffer, ssize_t size) const
{
    if (buffer == nullptr || size < FlattenedSize())
        return B_BAD_VALUE;
    const double values[] = {sx, shy, shx, sy, tx, ty};
    memcpy(buffer, values, sizeof(values));
    return B_OK;
}

status_t BAffineTransform::Unflatten(type_code code, const void* buffer, ssize_t size)
{
    if (buffer == nullptr || size < FlattenedSize() || code != B_AFFINE_TRANSFORM_TYPE)
        return B_BAD_VALUE;
    double values[6];
    memcpy(values, buffer, sizeof(values));
    *this = BAffineTransform(values[0], values[1], values[2], values[3], values[4], values[5]);
    return B_OK;
}

BAffineTransform BAffineTransform::AffineTranslation(double x, double y)
{
    return BAffineTransform(1, 0, 0, 1, x, y);
}

BAffineTransform BAffineTransform::AffineRotation(double angle)
{
    const double c = std::cos(angle), s = std::sin(angle);
    return BAffineTransform(c, s, -s, c, 0, 0);
}

BAffineTransform BAffineTransform::AffineScaling(double x, double y)
{
    return BAffineTransform(x, 0, 0, y, 0, 0);
}

BAffineTransform BAffineTransform::AffineScaling(double scale)
{
    return AffineScaling(scale, scale);
}

BAffineTransform BAffineTransform::AffineShearing(double x, double y)
{
    return BAffineTransform(1, std::tan(y), std::tan(x), 1, 0, 0);
}

void BAffineTransform::Apply(double* x, double* y) const
{
    const double oldX = *x;
    *x = oldX * sx + *y * shx + tx;
    *y = oldX * shy + *y * sy + ty;
}

void BAffineTransform::ApplyInverse(double* x, double* y) const
{
    const double d = InverseDeterminant();
    const double a = (*x - tx) * d, b = (*y - ty) * d;
    *x = a * sy - b * shx;
    *y = b * sx - a * shy;
}

BPoint BAffineTransform::Apply(const BPoint& point) const
{
    double x = point.x, y = point.y;
    Apply(&x, &y);
    return BPoint(x, y);
}

BPoint BAffineTransform::ApplyInverse(const BPoint& point) const
{
    double x = point.x, y = point.y;
    ApplyInverse(&x, &y);
    return BPoint(x, y);
}

void BAffineTransform::Apply(BPoint* point) const
{
    if (point != nullptr)
        *point = Apply(*point);
}

void BAffineTransform::ApplyInverse(BPoint* point) const
{
    if (point != nullptr)
        *point = ApplyInverse(*point);
}

void BAffineTransform::Apply(BPoint* points, uint32 count) const
{
    for (uint32 i = 0; points != nullptr && i < count; i++)
        Apply(&points[i]);
}

void BAffineTransform::ApplyInverse(BPoint* points, uint32 count) const
{
    for (uint32 i = 0; points != nullptr && i < count; i++)
        ApplyInverse(&points[i]);
}

const BAffineTransform& BAffineTransform::TranslateBy(double x, double y)
{
    tx += x;
    ty += y;
    return *this;
}

const BAffineTransform& BAffineTransform::TranslateBy(const BPoint& delta)
{
    return TranslateBy(delta.x, delta.y);
}

const BAffineTransform& BAffineTransform::PreTranslateBy(double x, double y)
{
    return PreMultiply(AffineTranslation(x, y));
}

BAffineTransform BAffineTransform::TranslateByCopy(double x, double y) const
{
    return BAffineTransform(*this).TranslateBy(x, y);
}

BAffineTransform BAffineTransform::TranslateByCopy(const BPoint& delta) const
{
    return TranslateByCopy(delta.x, delta.y);
}

const BAffineTransform& BAffineTransform::RotateBy(double angle)
{
    return Multiply(AffineRotation(angle));
}

const BAffineTransform& BAffineTransform::RotateBy(const BPoint& center, double angle)
{
    TranslateBy(-center);
    RotateBy(angle);
    return TranslateBy(center);
}

const BAffineTransform& BAffineTransform::PreRotateBy(double angleRadians)
{
    return PreMultiply(AffineRotation(angleRadians));
}

BAffineTransform BAffineTransform::RotateByCopy(double angle) const
{
    return BAffineTransform(*this).RotateBy(angle);
}

BAffineTransform BAffineTransform::RotateByCopy(const BPoint& center, double angle) const
{
    return BAffineTransform(*this).RotateBy(center, angle);
}

const BAffineTransform& BAffineTransform::ScaleBy(double scale) { return ScaleBy(scale, scale); }

const BAffineTransform& BAffineTransform::ScaleBy(const BPoint& center, double scale)
{
    return ScaleBy(center, scale, scale);
}

const BAffineTransform& BAffineTransform::ScaleBy(double x, double y)
{
    return Multiply(AffineScaling(x, y));
}

const BAffineTransform& BAffineTransform::ScaleBy(const BPoint& center, double x, double y)
{
    TranslateBy(-center);
    ScaleBy(x, y);
    return TranslateBy(center);
}

const BAffineTransform& BAffineTransform::ScaleBy(const BPoint& scale)
{
    return ScaleBy(scale.x, scale.y);
}

const BAffineTransform& BAffineTransform::ScaleBy(const BPoint& center, const BPoint& scale)
{
    return ScaleBy(center, scale.x, scale.y);
}

const BAffineTransform& BAffineTransform::PreScaleBy(double x, double y)
{
    return PreMultiply(AffineScaling(x, y));
}

BAffineTransform BAffineTransform::ScaleByCopy(double scale) const
{
    return ScaleByCopy(scale, scale);
}

BAffineTransform BAffineTransform::ScaleByCopy(const BPoint& center, double scale) const
{
    return ScaleByCopy(center, scale, scale);
}

BAffineTransform BAffineTransform::ScaleByCopy(double x, double y) const
{
    return BAffineTransform(*this).ScaleBy(x, y);
}

BAffineTransform BAffineTransform::ScaleByCopy(const BPoint& center, double x, double y) const
{
    return BAffineTransform(*this).ScaleBy(center, x, y);
}

BAffineTransform BAffineTransform::ScaleByCopy(const BPoint& scale) const
{
    return ScaleByCopy(scale.x, scale.y);
}

BAffineTransform BAffineTransform::ScaleByCopy(const BPoint& center, const BPoint& scale) const
{
    return ScaleByCopy(center, scale.x, scale.y);
}

const BAffineTransform& BAffineTransform::SetScale(double scale) { return SetScale(scale, scale); }

const BAffineTransform& BAffineTransform::SetScale(double x, double y)
{
    double oldX, oldY;
    GetScaleAbs(&oldX, &oldY);
    if (oldX > 0) {
        sx *= x / oldX;
        shy *= x / oldX;
    }
    if (oldY > 0) {
        shx *= y / oldY;
        sy *= y / oldY;
    }
    return *this;
}

const BAffineTransform& BAffineTransform::ShearBy(double x, double y)
{
    return Multiply(AffineShearing(x, y));
}

const BAffineTransform& BAffineTransform::ShearBy(const BPoint& center, double x, double y)
{
    TranslateBy(-center);
    ShearBy(x, y);
    return TranslateBy(center);
}

const BAffineTransform& BAffineTransform::ShearBy(const BPoint& shear)
{
    return ShearBy(shear.x, shear.y);
}

const BAffineTransform& BAffineTransform::ShearBy(const BPoint& center, const BPoint& shear)
{
    return ShearBy(center, shear.x, shear.y);
}

BAffineTransform BAffineTransform::ShearByCopy(double x, double y) const
{
    return BAffineTransform(*this).ShearBy(x, y);
}

BAffineTransform BAffineTransform::ShearByCopy(const BPoint& center, double x, double y) const
{
    return BAffineTransform(*this).ShearBy(center, x, y);
}

BAffineTransform BAffineTransform::ShearByCopy(const BPoint& shear) const
{
    return ShearByCopy(shear.x, shear.y);
}

BAffineTransform BAffineTransform::ShearByCopy(const BPoint& center, const BPoint& shear) const
{
    return ShearByCopy(center, shear.x, shear.y);
}

const BAffineTransform& BAffineTransform::Multiply(const BAffineTransform& other)
{
    const BAffineTransform o(other);  // it may be this one
    return *this = BAffineTransform(sx * o.sx + shy * o.shx, sx * o.shy + shy * o.sy,
                                    shx * o.sx + sy * o.shx, shx * o.shy + sy * o.sy,
                                    tx * o.sx + ty * o.shx + o.tx, tx * o.shy + ty * o.sy + o.ty);
}

const BAffineTransform& BAffineTransform::PreMultiply(const BAffineTransform& other)
{
    return *this = BAffineTransform(other).Multiply(*this);
}

const BAffineTransform& BAffineTransform::MultiplyInverse(const BAffineTransform& other)
{
    return Multiply(~other);
}

const BAffineTransform& BAffineTransform::PreMultiplyInverse(const BAffineTransform& other)
{
    return PreMultiply(~other);
}

BAffineTransform& BAffineTransform::operator=(const BAffineTransform& copyFrom) = default;

bool BAffineTransform::operator==(const BAffineTransform& other) const { return IsEqual(other); }

bool BAffineTransform::operator!=(const BAffineTransform& other) const { return !IsEqual(other); }

const BAffineTransform& BAffineTransform::operator*=(const BAffineTransform& other)
{
    return Multiply(other);
}

const BAffineTransform& BAffineTransform::operator/=(const BAffineTransform& other)
{
    return MultiplyInverse(other);
}

BAffineTransform BAffineTransform::operator*(const BAffineTransform& other) const
{
    return BAffineTransform(*this).Multiply(other);
}

BAffineTransform BAffineTransform::operator/(const BAffineTransform& other) const
{
    return BAffineTransform(*this).MultiplyInverse(other);
}

BAffineTransform BAffineTransform::operator~() const { return BAffineTransform(*this).Invert(); }

bool BAffineTransform::IsValid(double epsilon) const { return std::fabs(Determinant()) > epsilon; }

bool BAffineTransform::IsIdentity(double epsilon) const
{
    return IsDilation(epsilon) && is_near(sx, 1, epsilon) && is_near(sy, 1, epsilon) &&
           is_near(tx, 0, epsilon) && is_near(ty, 0, epsilon);
}

bool BAffineTransform::IsDilation(double epsilon) const
{
    return is_near(shy, 0, epsilon) && is_near(shx, 0, epsilon);
}

bool BAffineTransform::IsEqual(const BAffineTransform& other, double epsilon) const
{
    return is_near(sx, other.sx, epsilon) && is_near(shy, other.shy, epsilon) &&
           is_near(shx, other.shx, epsilon) && is_near(sy, other.sy, epsilon) &&
           is_near(tx, other.tx, epsilon) && is_near(ty, other.ty, epsilon);
}

const BAffineTransform& BAffineTransform::Invert()
{
    const double d = InverseDeterminant();
    return *this = BAffineTransform(sy * d, -shy * d, -shx * d, sx * d, (ty * shx - tx * sy) * d,
                                    (tx * shy - ty * sx) * d);
}

const BAffineTransform& BAffineTransform::FlipX()
{
    sx = -sx;
    shy = -shy;
    tx = -tx;
    return *this;
}

const BAffineTransform& BAffineTransform::FlipY()
{
    shx = -shx;
    sy = -sy;
    ty = -ty;
    return *this;
}

const BAffineTransform& BAffineTransform::Reset() { return *this = BAffineTransform(); }

double BAffineTransform::Determinant() const { return sx * sy - shy * shx; }

double BAffineTransform::InverseDeterminant() const { return 1.0 / Determinant(); }

void BAffineTransform::GetTranslation(double* x, double* y) const
{
    *x = tx;
    *y = ty;
}

double BAffineTransform::Rotation() const { return std::atan2(shy, sx); }

double BAffineTransform::Scale() const
{
    // How much longer a diagonal of length 1 becomes.
    return std::hypot(M_SQRT1_2 * (sx + shx), M_SQRT1_2 * (shy + sy));
}

void BAffineTransform::GetScale(double* x, double* y) const
{
    const BAffineTransform unturned = RotateByCopy(-Rotation());
    *x = unturned.sx;
    *y = unturned.sy;
}

void BAffineTransform::GetScaleAbs(double* x, double* y) const
{
    *x = std::hypot(sx, shy);
    *y = std::hypot(shx, sy);
}

bool BAffineTransform::GetAffineParameters(double* translationX, double* translationY,
                                           double* rotation, double* scaleX, double* scaleY,
                                           double* shearX, double* shearY) const
{
    const double width = std::hypot(sx, shy);
    if (!(width > 0) || !IsValid())
        return false;
    if (translationX != nullptr)
        *translationX = tx;
    if (translationY != nullptr)
        *translationY = ty;
    if (rotation != nullptr)
        *rotation = Rotation();
    if (scaleX != nullptr)
        *scaleX = width;
    if (scaleY != nullptr)
        *scaleY = Determinant() / width;
    if (shearX != nullptr)
        *shearX = (sx * shx + shy * sy) / (width * width);
    if (shearY != nullptr)
        *shearY = 0;  // all of the shear is seen as one along x
    return true;
}
