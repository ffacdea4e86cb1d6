// Drawings in SVG, by librsvg: it needs no display for texts, limits what a drawing may ask for,
// and looks at no other file.

#include "translation/ImageFormats.h"

#include <librsvg/rsvg.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>

namespace BPrivate {

static const off_t kMostBytes = 32 * 1024 * 1024;
static const double kDefaultSide = 256;  // pixels, of a drawing that names no size
static const int32 kMostSide = 32767;    // as far as cairo counts

struct Unref {
    void operator()(RsvgHandle* handle) const { g_object_unref(handle); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};

static RsvgHandle* open_svg(BPositionIO* source, status_t* status)
{
    off_t size = 0;
    *status = source->GetSize(&size);
    if (*status != B_OK)
        return nullptr;
    *status = B_NO_MEMORY;
    if (size > kMostBytes)
        return nullptr;
    const std::unique_ptr<uint8[]> bytes(new (std::nothrow) uint8[size_t(size)]);
    if (bytes == nullptr)
        return nullptr;
    *status = B_BAD_DATA;
    if (size == 0 || source->ReadAtExactly(0, bytes.get(), size_t(size)) != B_OK)
        return nullptr;
    return rsvg_handle_new_from_data(bytes.get(), size_t(size), nullptr);
}

// The size that the drawing names, else that of its view box.
static void find_size(RsvgHandle* handle, double* width, double* height)
{
    if (rsvg_handle_get_intrinsic_size_in_pixels(handle, width, height) && *width > 0 &&
        *height > 0)
        return;
    gboolean has_width, has_height, has_box;
    RsvgLength length;
    RsvgRectangle box = {};
    rsvg_handle_get_intrinsic_dimensions(handle, &has_width, &length, &has_height, &length,
                                         &has_box, &box);
    *width = has_box && box.width > 0 ? box.width : kDefaultSide;
    *height = has_box && box.height > 0 ? box.height : kDefaultSide;
}

// From cairo's pixels, multiplied by their alpha, to plain ones.
static void divide_by_alpha(const Surface& surface)
{
    for (int32 y = 0; y < surface.height; y++) {
        uint8* pixel = surface.bits + ptrdiff_t(y) * surface.bytesPerRow;
        for (int32 x = 0; x < surface.width; x++, pixel += 4) {
            const uint32 alpha = pixel[3];
            if (alpha == 0 || alpha == 255)
                continue;
            for (int i = 0; i < 3; i++)
                pixel[i] = uint8(std::min<uint32>((pixel[i] * 255u + alpha / 2) / alpha, 255));
        }
    }
}

status_t ReadSvg(BPositionIO* source, const PlaceForImage& place)
{
    status_t status;
    const std::unique_ptr<RsvgHandle, Unref> handle(open_svg(source, &status));
    if (handle == nullptr)
        return status;
    double width, height;
    find_size(handle.get(), &width, &height);
    if (!(width <= kMostSide) || !(height <= kMostSide) ||
        std::ceil(width) * std::ceil(height) > double(server::kMostPixels))
        return B_NO_MEMORY;
    const Surface target = place(int32(std::ceil(width)), int32(std::ceil(height)), B_RGBA32);
    if (target.bits == nullptr)
        return B_NO_MEMORY;
    const std::unique_ptr<cairo_surface_t, Unref> surface(cairo_image_surface_create_for_data(
        target.bits, CAIRO_FORMAT_ARGB32, target.width, target.height, target.bytesPerRow));
    const std::unique_ptr<cairo_t, Unref> context(cairo_create(surface.get()));
    const RsvgRectangle all = {0, 0, width, height};
    if (!rsvg_handle_render_document(handle.get(), context.get(), &all, nullptr))
        return B_BAD_DATA;
    cairo_surface_finish(surface.get());
    divide_by_alpha(target);
    return B_OK;
}

}  // namespace BPrivate
