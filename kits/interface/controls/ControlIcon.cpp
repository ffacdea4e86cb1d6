// Pictures beside labels: copies of what a program gives, and what is made of them for other
// states.

#include <interface/controls/ControlIcon.h>

#include <InterfaceDefs.h>
#include <View.h>

#include <algorithm>
#include <new>
#include <utility>

namespace BPrivate {

static const int32 kStates = 3;
static const float kActiveTint = 1.15f;
static const float kPartialTint = 1.07f;

static int32 place_of(uint32 which)
{
    const uint32 state = which & ~uint32(B_DISABLED_ICON_BITMAP);
    if (state >= kStates)
        return -1;
    return int32(state) + ((which & B_DISABLED_ICON_BITMAP) != 0 ? kStates : 0);
}

static std::unique_ptr<BBitmap> with_alpha(const BBitmap* source)
{
    auto copy = std::make_unique<BBitmap>(source->Bounds(), B_RGBA32);
    if (copy->InitCheck() != B_OK || copy->ImportBits(source) != B_OK)
        return nullptr;
    return copy;
}

// Calls `change` for each pixel's four bytes: blue, green, red, alpha.
template <class Change>
static void each_pixel(BBitmap* bitmap, Change change)
{
    const BRect bounds = bitmap->Bounds();
    for (int32 y = 0; y <= int32(bounds.Height()); y++) {
        uint8* row = static_cast<uint8*>(bitmap->Bits()) + y * bitmap->BytesPerRow();
        for (int32 x = 0; x <= int32(bounds.Width()); x++)
            change(row + 4 * x, x, y);
    }
}

static std::unique_ptr<BBitmap> tinted(const BBitmap& source, float tint)
{
    auto copy = with_alpha(&source);
    if (copy != nullptr) {
        each_pixel(copy.get(), [=](uint8* pixel, int32, int32) {
            const rgb_color color =
                tint_color(make_color(pixel[2], pixel[1], pixel[0], pixel[3]), tint);
            pixel[0] = color.blue;
            pixel[1] = color.green;
            pixel[2] = color.red;
        });
    }
    return copy;
}

static std::unique_ptr<BBitmap> faded(const BBitmap& source)
{
    auto copy = with_alpha(&source);
    if (copy != nullptr)
        each_pixel(copy.get(), [](uint8* pixel, int32, int32) { pixel[3] /= 3; });
    return copy;
}

// Without what is transparent around it; with the same proportions if `keep_aspect`.
static std::unique_ptr<BBitmap> trimmed(std::unique_ptr<BBitmap> source, bool keep_aspect)
{
    BRect box;
    each_pixel(source.get(), [&](const uint8* pixel, int32 x, int32 y) {
        const BPoint place(x, y);
        const BRect one(place, place);
        if (pixel[3] != 0)
            box = box.IsValid() ? box | one : one;
    });
    if (!box.IsValid() || box == source->Bounds())
        return source;
    if (keep_aspect) {
        const BRect all = source->Bounds();
        const float margin =
            std::min({box.left, box.top, all.right - box.right, all.bottom - box.bottom});
        box = all.InsetByCopy(margin, margin);
    }
    auto cut = std::make_unique<BBitmap>(box.OffsetToCopy(B_ORIGIN), B_RGBA32);
    if (cut->InitCheck() != B_OK || cut->ImportBits(source.get(), box.LeftTop(), B_ORIGIN,
                                                    BSize(box.Width(), box.Height())) != B_OK)
        return source;
    return cut;
}

static std::unique_ptr<BBitmap> taken(const BBitmap* bitmap, uint32 flags)
{
    auto copy = with_alpha(bitmap);
    if ((flags & B_KEEP_ICON_BITMAP) != 0)
        delete bitmap;
    if (copy != nullptr && (flags & (B_TRIM_ICON_BITMAP | B_TRIM_ICON_BITMAP_KEEP_ASPECT)) != 0)
        copy = trimmed(std::move(copy), (flags & B_TRIM_ICON_BITMAP_KEEP_ASPECT) != 0);
    return copy;
}

status_t ControlIcon::_Make(const BBitmap* bitmap, uint32 flags)
{
    fBitmaps[0] = taken(bitmap, flags);
    if (fBitmaps[0] == nullptr)
        return B_NO_MEMORY;
    if ((flags & B_CREATE_ACTIVE_ICON_BITMAP) != 0)
        fBitmaps[1] = tinted(*fBitmaps[0], kActiveTint);
    if ((flags & B_CREATE_PARTIALLY_ACTIVE_ICON_BITMAP) != 0)
        fBitmaps[2] = tinted(*fBitmaps[0], kPartialTint);
    for (int32 i = 0; (flags & B_CREATE_DISABLED_ICON_BITMAPS) != 0 && i < kStates; i++) {
        if (fBitmaps[i] != nullptr)
            fBitmaps[i + kStates] = faded(*fBitmaps[i]);
    }
    return B_OK;
}

status_t ControlIcon::Set(ControlIcon** icon, BView* control, const BBitmap* bitmap, uint32 flags)
{
    if (bitmap != nullptr && !bitmap->IsValid())
        return B_BAD_VALUE;
    auto made = bitmap != nullptr ? std::make_unique<ControlIcon>() : nullptr;
    const status_t status = made != nullptr ? made->_Make(bitmap, flags) : B_OK;
    if (status == B_OK) {
        delete std::exchange(*icon, made.release());
        control->Invalidate();
    }
    return status;
}

status_t ControlIcon::SetOne(ControlIcon** icon, BView* control, const BBitmap* bitmap,
                             uint32 which, uint32 flags)
{
    const int32 place = place_of(which);
    if (place < 0 || (bitmap != nullptr && !bitmap->IsValid()))
        return B_BAD_VALUE;
    if (*icon == nullptr)
        *icon = new ControlIcon;
    (*icon)->fBitmaps[place] = bitmap != nullptr ? taken(bitmap, flags) : nullptr;
    control->Invalidate();
    return bitmap == nullptr || (*icon)->fBitmaps[place] != nullptr ? B_OK : B_NO_MEMORY;
}

const BBitmap* ControlIcon::Bitmap(uint32 which) const
{
    const int32 place = place_of(which);
    return place >= 0 ? fBitmaps[place].get() : nullptr;
}

const BBitmap* ControlIcon::BitmapFor(uint32 which) const
{
    const uint32 enabled = which & ~uint32(B_DISABLED_ICON_BITMAP);
    for (uint32 candidate : {which, which & uint32(B_DISABLED_ICON_BITMAP), enabled}) {
        if (const BBitmap* bitmap = Bitmap(candidate))
            return bitmap;
    }
    return Bitmap(B_INACTIVE_ICON_BITMAP);
}

}  // namespace BPrivate
