#ifndef SERVER_PAINTER_LINES_H
#define SERVER_PAINTER_LINES_H

#include "server/painter/PainterRaster.h"

#include <cstring>

namespace server {

// Quotient rounded down; `divisor` is positive.
template <class Int>
inline Int floor_div(Int value, Int divisor)
{
    const Int quotient = value / divisor;
    return quotient - (value % divisor < 0);
}

// A line one pixel wide with both end points. Along its longer axis it has a pixel at every
// step i, i = 0 ... length, and across it round(i * rise / length), halves upwards. It has the
// same pixels drawn either way.
class ThinLine {
public:
    ThinLine(int64 x0, int64 y0, int64 x1, int64 y1) : fSteep(std::abs(y1 - y0) > std::abs(x1 - x0))
    {
        if (fSteep ? y0 > y1 : x0 > x1) {
            std::swap(x0, x1);
            std::swap(y0, y1);
        }
        fX = x0, fY = y0;
        fLength = fSteep ? y1 - y0 : x1 - x0;
        fRise = fSteep ? x1 - x0 : y1 - y0;
    }

    clipping_rect Reach() const
    {
        const int64 x1 = fX + (fSteep ? fRise : fLength), y1 = fY + (fSteep ? fLength : fRise);
        return box_of(std::min(fX, x1), std::min(fY, y1), std::max(fX, x1), std::max(fY, y1));
    }

    template <class Pen>
    void Draw(const Pen& pen, const clipping_rect& clip) const
    {
        const clipping_rect reach = Reach();
        const clipping_rect box = intersect(clip, reach);
        if (is_empty(box))
            return;
        if (fRise == 0) {
            if (fSteep || fLength == 0)
                _DrawColumn(pen, box);
            else if (fY >= box.top && fY <= box.bottom)
                draw_run(pen, box, int32(fY), fX, fX + fLength);
            return;
        }
        int64 first = 0, last = fLength, offset = 0, error = fLength;
        if (memcmp(&box, &reach, sizeof(box)) != 0) {
            const bool small = fLength < 1 << 30;
            if (!(small ? _Clip<int64>(box, &first, &last, &offset, &error)
                        : _Clip<__int128>(box, &first, &last, &offset, &error)))
                return;
        }
        _DrawSteps(pen, first, last, offset, error);
    }

private:
    // Narrows the steps to those inside the box, which is part of Reach(), and finds the state of
    // the first one.
    template <class Wide>
    bool _Clip(const clipping_rect& box, int64* first, int64* last, int64* offset,
               int64* error) const
    {
        const Wide length = fLength, rise = fRise;
        const int64 along = fSteep ? fY : fX, across = fSteep ? fX : fY;
        Wide low = std::max<Wide>(0, Wide(fSteep ? box.top : box.left) - along);
        Wide high = std::min<Wide>(length, Wide(fSteep ? box.bottom : box.right) - along);
        const Wide near = Wide(fSteep ? box.left : box.top) - across;
        const Wide far = Wide(fSteep ? box.right : box.bottom) - across;
        // Across stands at floor((2 * rise * i + length) / (2 * length)).
        if (rise > 0) {
            low = std::max<Wide>(low, -floor_div<Wide>(length - 2 * length * near, 2 * rise));
            high = std::min<Wide>(high,
                                  -floor_div<Wide>(length - 2 * length * (far + 1), 2 * rise) - 1);
        } else {
            low = std::max<Wide>(low,
                                 floor_div<Wide>(length - 2 * length * (far + 1), -2 * rise) + 1);
            high = std::min<Wide>(high, floor_div<Wide>(length - 2 * length * near, -2 * rise));
        }
        if (low > high)
            return false;
        const Wide place = 2 * rise * low + length;
        const Wide steps = floor_div<Wide>(place, 2 * length);
        *first = int64(low);
        *last = int64(high);
        *offset = int64(steps);
        *error = int64(place - steps * 2 * length);
        return true;
    }

    template <class Pen>
    void _DrawColumn(const Pen& pen, const clipping_rect& box) const
    {
        if (fX < box.left || fX > box.right)
            return;
        const int64 top = std::max<int64>(fY, box.top);
        const int64 bottom = std::min<int64>(fY + fLength, box.bottom);
        if constexpr (std::is_same_v<Pen, PlainPen>) {
            uint8* pixel = reinterpret_cast<uint8*>(pen.raster.At(int32(fX), int32(top)));
            for (int64 y = top; y <= bottom; y++, pixel += pen.raster.pitch)
                *reinterpret_cast<uint32*>(pixel) = pen.color;
        } else {
            for (int64 y = top; y <= bottom; y++)
                pen.Pixel(int32(fX), int32(y));
        }
    }

    template <class Pen>
    void _DrawSteps(const Pen& pen, int64 first, int64 last, int64 offset, int64 error) const
    {
        const int64 full = 2 * fLength;
        const int64 grow = 2 * std::abs(fRise);
        const int32 side = fRise < 0 ? -1 : 1;
        // A falling line's error counts down from the same start.
        int64 rest = fRise < 0 ? full - 1 - error : error;
        int32 x = int32(fSteep ? fX + offset : fX + first);
        int32 y = int32(fSteep ? fY + first : fY + offset);
        if constexpr (std::is_same_v<Pen, PlainPen>) {
            const ptrdiff_t stepAlong = fSteep ? pen.raster.pitch : 4;
            const ptrdiff_t stepAcross = side * (fSteep ? 4 : pen.raster.pitch);
            uint8* pixel = reinterpret_cast<uint8*>(pen.raster.At(x, y));
            if (grow == full) {
                for (int64 i = first; i <= last; i++, pixel += stepAlong + stepAcross)
                    *reinterpret_cast<uint32*>(pixel) = pen.color;
                return;
            }
            rest -= full;  // below zero until a step across is due
            for (int64 i = first; i <= last; i++) {
                *reinterpret_cast<uint32*>(pixel) = pen.color;
                rest += grow;
                const int64 due = ~(rest >> 63);
                pixel += stepAlong + (stepAcross & due);
                rest -= full & due;
            }
        } else {
            for (int64 i = first; i <= last; i++) {
                pen.Pixel(x, y);
                rest += grow;
                const bool due = rest >= full;
                if (due)
                    rest -= full;
                x += fSteep ? (due ? side : 0) : 1;
                y += fSteep ? 1 : (due ? side : 0);
            }
        }
    }

    int64 fX, fY;  // the end with the lesser coordinate along the longer axis
    int64 fLength;
    int64 fRise;
    bool fSteep;
};

}  // namespace server

#endif  // SERVER_PAINTER_LINES_H
