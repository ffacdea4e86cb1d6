#include <Alignment.h>

float BAlignment::RelativeHorizontal() const
{
    switch (horizontal) {
        case B_ALIGN_LEFT:
            return 0.0f;
        case B_ALIGN_CENTER:
            return 0.5f;
        case B_ALIGN_RIGHT:
            return 1.0f;
        default:
            return float(horizontal);
    }
}

float BAlignment::RelativeVertical() const
{
    switch (vertical) {
        case B_ALIGN_TOP:
            return 0.0f;
        case B_ALIGN_MIDDLE:
            return 0.5f;
        case B_ALIGN_BOTTOM:
            return 1.0f;
        default:
            return float(vertical);
    }
}
