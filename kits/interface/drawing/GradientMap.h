#ifndef INTERFACE_GRADIENT_MAP_H
#define INTERFACE_GRADIENT_MAP_H

#include <GradientConic.h>
#include <GradientDiamond.h>
#include <GradientLinear.h>
#include <GradientRadial.h>
#include <GradientRadialFocus.h>

#include <variant>

namespace BPrivate {

// A copy of a gradient of a view, with its places where they are in the window.
class MappedGradient {
public:
    MappedGradient(const BGradient& gradient, float scale, float x, float y)
    {
        auto map = [=](BPoint p) { return BPoint(p.x * scale + x, p.y * scale + y); };
        auto take = [&](auto& from) -> auto&
        {
            using Kind = std::decay_t<decltype(from)>;
            return fCopy.emplace<Kind>(from);
        };
        switch (gradient.GetType()) {
            case BGradient::TYPE_LINEAR: {
                auto& linear = take(static_cast<const BGradientLinear&>(gradient));
                linear.SetStart(map(linear.Start()));
                linear.SetEnd(map(linear.End()));
                break;
            }
            case BGradient::TYPE_RADIAL: {
                auto& radial = take(static_cast<const BGradientRadial&>(gradient));
                radial.SetCenter(map(radial.Center()));
                radial.SetRadius(radial.Radius() * scale);
                break;
            }
            case BGradient::TYPE_RADIAL_FOCUS: {
                auto& radial = take(static_cast<const BGradientRadialFocus&>(gradient));
                radial.SetCenter(map(radial.Center()));
                radial.SetFocal(map(radial.Focal()));
                radial.SetRadius(radial.Radius() * scale);
                break;
            }
            case BGradient::TYPE_DIAMOND: {
                auto& diamond = take(static_cast<const BGradientDiamond&>(gradient));
                diamond.SetCenter(map(diamond.Center()));
                break;
            }
            case BGradient::TYPE_CONIC: {
                auto& conic = take(static_cast<const BGradientConic&>(gradient));
                conic.SetCenter(map(conic.Center()));
                break;
            }
            case BGradient::TYPE_NONE:
                break;
        }
    }
    // Null for a gradient of no kind.
    const BGradient* Gradient() const
    {
        return std::visit(
            [](const auto& copy) -> const BGradient* {
                if constexpr (std::is_same_v<decltype(copy), const std::monostate&>)
                    return nullptr;
                else
                    return &copy;
            },
            fCopy);
    }

private:
    std::variant<std::monostate, BGradientLinear, BGradientRadial, BGradientRadialFocus,
                 BGradientDiamond, BGradientConic>
        fCopy;
};

}  // namespace BPrivate

#endif  // INTERFACE_GRADIENT_MAP_H
