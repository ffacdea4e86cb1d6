#include <Point.h>

#include <Rect.h>

#include <cstdio>

const BPoint B_ORIGIN(0, 0);

void BPoint::ConstrainTo(BRect rect)
{
    x = max_c(min_c(x, rect.right), rect.left);
    y = max_c(min_c(y, rect.bottom), rect.top);
}

void BPoint::PrintToStream() const { printf("BPoint(x:%f, y:%f)\n", x, y); }
