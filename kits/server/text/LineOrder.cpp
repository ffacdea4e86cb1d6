// Any thread; nothing is kept.

#include <server/text/LineOrder.h>

#include <fribidi.h>

#include <algorithm>
#include <numeric>

namespace server {

bool TurnsOrder(uint32 code)
{
    // No letter before the Hebrew ones is read from the right, nor is a sign that says so.
    return code >= 0x590 && (FRIBIDI_IS_RTL(fribidi_get_bidi_type(code)) ||
                             FRIBIDI_IS_ARABIC(fribidi_get_bidi_type(code)));
}

LineOrder OrderOf(const uint32* codes, int32 count)
{
    const auto size = static_cast<size_t>(count);
    LineOrder line;
    line.order.resize(size);
    std::iota(line.order.begin(), line.order.end(), 0);
    std::vector<FriBidiCharType> types(size);
    std::vector<FriBidiBracketType> brackets(size);
    std::vector<FriBidiLevel> levels(size);
    fribidi_get_bidi_types(codes, count, types.data());
    // A line feed that is drawn ends no line.
    std::replace(types.begin(), types.end(), FriBidiCharType(FRIBIDI_TYPE_BS),
                 FriBidiCharType(FRIBIDI_TYPE_WS));
    fribidi_get_bracket_types(codes, count, types.data(), brackets.data());
    FriBidiParType base = FRIBIDI_PAR_LTR;
    if (fribidi_get_par_embedding_levels_ex(types.data(), brackets.data(), count, &base,
                                            levels.data()) == 0 ||
        fribidi_reorder_line(0, types.data(), count, 0, base, levels.data(), nullptr,
                             line.order.data()) == 0) {
        std::fill(levels.begin(), levels.end(), FriBidiLevel(0));
        std::iota(line.order.begin(), line.order.end(), 0);
    }
    line.levels.assign(levels.begin(), levels.end());
    return line;
}

uint32 Mirrored(uint32 code)
{
    FriBidiChar mirrored = code;
    fribidi_get_mirror_char(code, &mirrored);
    return mirrored;
}

}  // namespace server
