// The picture of the screen: windows in stacking order with their decoration.

#include "server/screen/ScreenPicture.h"

#include <algorithm>
#include <cstdlib>

#include "server/qt/ImagePlugins.h"
#include "server/text/Fonts.h"
#include "server/screen/ScreenWindow.h"
#include "server/screen/Stage.h"
#include "support/Boxes.h"

namespace server {

namespace {

uint32 sDesktop GUARDED_BY(gStageLock) = 0xff336698;

const int32 kBoxSize = 13;   // close and zoom boxes in the tab
const int32 kLeastTab = 19;  // its height, also where the window manager's own titles are lower

// Fills and frames in a picture of the screen whose first pixel is somewhere on it.
class Screenshot {
public:
    Screenshot(const Surface& target, BPoint leftTop)
        : fTarget(target), fLeft(int32(leftTop.x)), fTop(int32(leftTop.y))
    {
    }

    void Fill(const clipping_rect& area, uint32 color)
    {
        const clipping_rect rect = _Visible(area);
        if (rect.right < rect.left)
            return;
        for (int32 y = rect.top; y <= rect.bottom; y++) {
            uint8* bits = fTarget.bits + ptrdiff_t(y) * fTarget.bytesPerRow;
            auto* row = reinterpret_cast<uint32*>(bits);
            std::fill(row + rect.left, row + rect.right + 1, color);
        }
    }

    // One pixel wide: light above and on the left, dark below and on the right.
    void Bevel(const clipping_rect& r, uint32 light, uint32 dark)
    {
        Fill({r.left, r.top, r.right, r.top}, light);
        Fill({r.left, r.top, r.left, r.bottom}, light);
        Fill({r.left, r.bottom, r.right, r.bottom}, dark);
        Fill({r.right, r.top, r.right, r.bottom}, dark);
    }

    void Title(const std::string& text, const clipping_rect& room, uint32 background);
    void Content(ScreenWindow& window) REQUIRES(gStageLock);
    // Lays a picture over what is there.
    void Blend(const DragPicture& picture, BPoint leftTop);

private:
    // The pixels of a part of the screen, as far as the picture has them.
    clipping_rect _Visible(const clipping_rect& area) const
    {
        const clipping_rect rect =
            pixels_of({area.left - fLeft, area.top - fTop, area.right - fLeft, area.bottom - fTop},
                      fTarget.scale);
        return {std::max(rect.left, 0), std::max(rect.top, 0),
                std::min(rect.right, fTarget.width - 1), std::min(rect.bottom, fTarget.height - 1)};
    }
    int32 _Pixel(int32 unit) const { return first_pixel(unit, fTarget.scale); }

    Surface fTarget;
    int32 fLeft, fTop;
};

rgb_color rgb_of(uint32 color)
{
    return {uint8(color >> 16), uint8(color >> 8), uint8(color), 255};
}

FontSpec title_font()
{
    FontSpec font;
    font.face = B_BOLD_FACE;
    return font;
}

void Screenshot::Title(const std::string& text, const clipping_rect& room, uint32 background)
{
    Target target;
    target.surface = &fTarget;
    target.bounds = _Visible(room);
    if (target.bounds.right < target.bounds.left || target.bounds.bottom < target.bounds.top)
        return;
    target.clip = &target.bounds;
    target.count = 1;
    Paint paint;
    paint.mode = B_OP_OVER;
    paint.low = rgb_of(background);
    BPoint pen(float(room.left - fLeft), float(room.bottom - fTop - 5));
    DrawString(target, paint, title_font(), text.data(), int32(text.size()), nullptr, &pen);
}

void Screenshot::Content(ScreenWindow& window)
{
    BRect frame = window.Frame();
    window.Pixels().Draw(
        pixels_of({0, 0, int32(frame.Width()), int32(frame.Height())}, fTarget.scale), fTarget,
        _Pixel(int32(frame.left) - fLeft), _Pixel(int32(frame.top) - fTop));
}

uint32 blended(uint32 below, uint32 above)
{
    const uint32 alpha = above >> 24;
    uint32 result = 0xff000000;
    for (int32 shift : {0, 8, 16}) {
        const uint32 mix =
            (above >> shift & 0xff) * alpha + (below >> shift & 0xff) * (255 - alpha);
        result |= (mix + 127) / 255 << shift;
    }
    return result;
}

void Screenshot::Blend(const DragPicture& picture, BPoint leftTop)
{
    const int32 left = _Pixel(int32(leftTop.x) - fLeft), top = _Pixel(int32(leftTop.y) - fTop);
    const int32 right = std::min(_Pixel(picture.width), fTarget.width - left);
    const int32 bottom = std::min(_Pixel(picture.height), fTarget.height - top);
    const auto place = [this](int32 at, int32 size) {
        return std::min(int32((float(at) + 0.5f) / fTarget.scale), size - 1);
    };
    for (int32 y = std::max(0, -top); y < bottom; y++) {
        auto* row =
            reinterpret_cast<uint32*>(fTarget.bits + ptrdiff_t(top + y) * fTarget.bytesPerRow);
        const uint32* source =
            &picture.pixels[size_t(place(y, picture.height)) * size_t(picture.width)];
        for (int32 x = std::max(0, -left); x < right; x++)
            row[left + x] = blended(row[left + x], source[place(x, picture.width)]);
    }
}

// How far the tab reaches to the right of the window's left side.
int32 tab_width(const ScreenWindow& window, int32 whole) REQUIRES(gStageLock)
{
    const std::string& title = window.Title();
    float text = StringWidth(title_font(), title.data(), int32(title.size()), nullptr);
    return std::min(whole, int32(text) + 2 * kBoxSize + 32);
}

void draw_window(Screenshot& shot, ScreenWindow& window, bool active) REQUIRES(gStageLock)
{
    BRect outer = window.OuterFrame();
    BRect content = window.Frame();
    int32 left = int32(outer.left), top = int32(outer.top);
    int32 right = int32(outer.right), bottom = int32(outer.bottom);
    int32 side = int32(content.left) - left;
    int32 edge = int32(content.top) - side;  // where the border starts below the tab
    if (side > 0) {
        clipping_rect border = {left, edge, right, bottom};
        shot.Fill(border, active ? 0xffe0e0e0 : 0xffe8e8e8);
        shot.Bevel(border, side > 1 ? 0xffb0b0b0 : 0xff606060, 0xff606060);
        if (side > 2) {
            shot.Bevel({left + 1, edge + 1, right - 1, bottom - 1}, 0xffffffff, 0xffa0a0a0);
            shot.Bevel({left + side - 1, edge + side - 1, right - side + 1, bottom - side + 1},
                       0xff909090, 0xffffffff);
        }
    }
    if (edge > top) {
        top = std::min(top, edge - kLeastTab);
        uint32 color = active ? 0xffffcb00 : 0xffe8e8e8;
        clipping_rect tab = {left, top, left + tab_width(window, right - left), edge};
        shot.Fill(tab, color);
        shot.Bevel(tab, active ? 0xffb08c00 : 0xffb0b0b0, color);
        shot.Bevel({tab.left + 1, tab.top + 1, tab.right - 1, tab.bottom},
                   active ? 0xffffe88c : 0xffffffff, color);
        shot.Fill({tab.right, tab.top, tab.right, tab.bottom}, 0xff707070);
        int32 boxTop = top + (edge - top - kBoxSize) / 2 + 1;
        uint32 dark = active ? 0xffa07800 : 0xff909090;
        int32 textLeft = left + 7;
        int32 textRight = tab.right - 6;
        if ((window.Flags() & B_NOT_CLOSABLE) == 0) {
            shot.Bevel({left + 5, boxTop, left + 4 + kBoxSize, boxTop + kBoxSize - 1}, dark, dark);
            shot.Bevel({left + 6, boxTop + 1, left + 3 + kBoxSize, boxTop + kBoxSize - 2},
                       0xfffff4c0, color);
            textLeft += kBoxSize + 5;
        }
        if ((window.Flags() & B_NOT_ZOOMABLE) == 0) {
            int32 x = tab.right - 5 - kBoxSize;
            shot.Bevel({x + 4, boxTop + 4, x + kBoxSize - 1, boxTop + kBoxSize - 1}, dark, dark);
            shot.Fill({x, boxTop, x + 7, boxTop + 7}, color);
            shot.Bevel({x, boxTop, x + 7, boxTop + 7}, dark, dark);
            textRight -= kBoxSize + 3;
        }
        shot.Title(window.Title(), {textLeft, top + 1, textRight, edge - 1}, color);
    }
    shot.Content(window);
    if (window.Look() == B_DOCUMENT_WINDOW_LOOK && (window.Flags() & B_NOT_RESIZABLE) == 0) {
        clipping_rect knob = {right - side - 13, bottom - side - 13, right - side, bottom - side};
        shot.Fill(knob, 0xffe0e0e0);
        shot.Bevel(knob, 0xff909090, 0xffffffff);
    }
}

}  // namespace

rgb_color desktop_color() { return rgb_of(sDesktop); }

void set_desktop_color(rgb_color color)
{
    sDesktop = 0xff000000 | uint32(color.red) << 16 | uint32(color.green) << 8 | color.blue;
}

void draw_screen(const Surface& target, BPoint leftTop)
{
    Screenshot shot(target, leftTop);
    int32 left = int32(leftTop.x), top = int32(leftTop.y);
    // Never fewer units than the picture has pixels.
    shot.Fill({left, top, left + target.width - 1, top + target.height - 1}, sDesktop);
    for (ScreenWindow* window : stage().Windows()) {
        if (stage().IsVisible(window))
            draw_window(shot, *window, window == stage().Active());
    }
    if (const DragPicture* dragged = stage().Dragged())
        shot.Blend(*dragged, stage().Pointer() - dragged->offset);
}

}  // namespace server
