#include "server/painter/PainterGradient.h"

#include <Gradient.h>
#include <GradientConic.h>
#include <GradientDiamond.h>
#include <GradientLinear.h>
#include <GradientRadial.h>
#include <GradientRadialFocus.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "server/painter/PainterBrush.h"

namespace server {

namespace {

const double kDiamondSize = 100;  // pixels from the middle to the last colour

// Stops run from 0 to 255, in any order; between two of them colours are mixed evenly.
void fill_table(const BGradient& gradient, uint32* table, int32 steps)
{
    std::vector<BGradient::ColorStop> stops;
    for (int32 i = 0; i < gradient.CountColorStops(); i++)
        stops.push_back(*gradient.ColorStopAt(i));
    std::stable_sort(stops.begin(), stops.end(),
                     [](const auto& a, const auto& b) { return a.offset < b.offset; });
    size_t next = 0;
    for (int32 i = 0; i <= steps; i++) {
        const float offset = 255.0f * float(i) / float(steps);
        while (next < stops.size() && !(stops[next].offset > offset))
            next++;
        if (stops.empty()) {
            table[i] = 0;
        } else if (next == 0 || next == stops.size()) {
            table[i] = pixel_of(stops[next == 0 ? 0 : next - 1].color);
        } else {
            const auto& before = stops[next - 1];
            const auto& after = stops[next];
            const float part = (offset - before.offset) / (after.offset - before.offset);
            table[i] = mix_pixels(pixel_of(before.color), pixel_of(after.color),
                                  uint32(std::clamp(part, 0.0f, 1.0f) * 255 + 0.5f));
        }
    }
}

double reciprocal(double value)
{
    return std::isfinite(value) && std::abs(value) > 1e-9 ? 1 / value : 0;
}

// Distance along the ray from the focus through (x, y), in parts of the way to the unit circle.
double focal_distance(double x, double y, double focusX, double focusY)
{
    const double dx = x - focusX, dy = y - focusY;
    const double a = dx * dx + dy * dy;
    const double b = dx * focusX + dy * focusY;
    const double c = focusX * focusX + focusY * focusY - 1;
    if (a == 0)
        return 0;
    const double reach = (-b + std::sqrt(std::max(0.0, b * b - a * c))) / a;
    return reach > 0 ? 1 / reach : 1;
}

}  // namespace

GradientColors::GradientColors(const BGradient& gradient, float unit) : type(gradient.GetType())
{
    fill_table(gradient, table, kSteps);
    BPoint origin;
    double radius = 1;
    switch (gradient.GetType()) {
        case BGradient::TYPE_LINEAR: {
            const auto& linear = static_cast<const BGradientLinear&>(gradient);
            origin = linear.Start();
            const double dx = linear.End().x - origin.x, dy = linear.End().y - origin.y;
            acrossX = dx * reciprocal(dx * dx + dy * dy);
            acrossY = dy * reciprocal(dx * dx + dy * dy);
            break;
        }
        case BGradient::TYPE_RADIAL: {
            const auto& radial = static_cast<const BGradientRadial&>(gradient);
            origin = radial.Center();
            radius = radial.Radius();
            break;
        }
        case BGradient::TYPE_RADIAL_FOCUS: {
            const auto& radial = static_cast<const BGradientRadialFocus&>(gradient);
            origin = radial.Center();
            radius = radial.Radius();
            focusX = (radial.Focal().x - origin.x) * reciprocal(radius);
            focusY = (radial.Focal().y - origin.y) * reciprocal(radius);
            // A focus outside the circle would see it from without.
            const double length = std::hypot(focusX, focusY);
            if (!(length < 0.99)) {
                const double shrink = std::isfinite(length) ? 0.99 / length : 0;
                focusX *= shrink;
                focusY *= shrink;
            }
            break;
        }
        case BGradient::TYPE_DIAMOND:
            origin = static_cast<const BGradientDiamond&>(gradient).Center();
            radius = kDiamondSize;
            break;
        case BGradient::TYPE_CONIC: {
            const auto& conic = static_cast<const BGradientConic&>(gradient);
            origin = conic.Center();
            angle = conic.Angle() * M_PI / 180;
            break;
        }
        default:
            break;
    }
    if (type != BGradient::TYPE_LINEAR)
        acrossX = acrossY = reciprocal(radius);
    originX = (double(origin.x) + 0.5) * double(unit) - 0.5;
    originY = (double(origin.y) + 0.5) * double(unit) - 0.5;
    acrossX /= double(unit);
    acrossY /= double(unit);
}

void GradientColors::Row(uint32* pixels, int32 x, int32 y, int32 count) const
{
    const double dy = (y - originY) * acrossY;
    for (int32 i = 0; i < count; i++) {
        const double dx = (x + i - originX) * acrossX;
        double place;
        switch (type) {
            case BGradient::TYPE_LINEAR:
                place = dx + dy;
                break;
            case BGradient::TYPE_RADIAL:
                place = std::sqrt(dx * dx + dy * dy);
                break;
            case BGradient::TYPE_RADIAL_FOCUS:
                place = focal_distance(dx, dy, focusX, focusY);
                break;
            case BGradient::TYPE_DIAMOND:
                place = std::max(std::abs(dx), std::abs(dy));
                break;
            case BGradient::TYPE_CONIC:
                place = (std::atan2(-dy, dx) - angle) / (2 * M_PI);
                place -= std::floor(place);
                break;
            default:
                place = 0;
                break;
        }
        // NaN counts as the start.
        pixels[i] = table[place > 0 ? int32(std::min(place, 1.0) * kSteps + 0.5) : 0];
    }
}

}  // namespace server
