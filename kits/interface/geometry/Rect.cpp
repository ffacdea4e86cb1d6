#include <Rect.h>

#include <cstdio>

#include "interface/geometry/Rounding.h"

void BRect::PrintToStream() const
{
    printf("BRect(l:%.1f, t:%.1f, r:%.1f, b:%.1f)\n", left, top, right, bottom);
}

void BRect::SetLeftTop(const BPoint point)
{
    left = point.x;
    top = point.y;
}

void BRect::SetRightBottom(const BPoint point)
{
    right = point.x;
    bottom = point.y;
}

void BRect::SetLeftBottom(const BPoint point)
{
    left = point.x;
    bottom = point.y;
}

void BRect::SetRightTop(const BPoint point)
{
    right = point.x;
    top = point.y;
}

int32 BRect::IntegerWidth() const { return BPrivate::ceil_to_int32(Width()); }

int32 BRect::IntegerHeight() const { return BPrivate::ceil_to_int32(Height()); }
