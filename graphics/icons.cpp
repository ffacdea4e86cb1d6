// Icons and images: how they are made, found, drawn into and freed. Any thread.

#include "graphics/icons.h"

#include "graphics/raster_port.h"
#include "plinth.h"
#include "runtime/trace.h"

#include <Bitmap.h>
#include <BitmapStream.h>
#include <Entry.h>
#include <File.h>
#include <Node.h>
#include <NodeInfo.h>
#include <TranslationUtils.h>
#include <TranslatorRoster.h>
#include <View.h>

#include <algorithm>
#include <exception>
#include <memory>
#include <new>
#include <string.h>

static const int32_t kMostPixels = 1 << 26;  // of one image, as the translators have it

// What SaveImageFile writes, by its number; 0 leaves the choice to the translators.
static const uint32 kSavedFormats[] = {B_TGA_FORMAT, B_PPM_FORMAT, 0, B_JPEG_FORMAT, B_BMP_FORMAT,
                                       B_GIF_FORMAT, B_TIFF_FORMAT};

// --- records

LastingLocker gImagesLocker("images");

static BBitmap* new_bitmap(int32_t width, int32_t height, color_space space,
                           bool takes_views = false)
{
    if (width < 1 || height < 1 || static_cast<int64_t>(width) * height > kMostPixels)
        return nullptr;
    const BRect bounds(0, 0, static_cast<float>(width - 1), static_cast<float>(height - 1));
    auto* bitmap = new (std::nothrow) BBitmap(bounds, space, takes_views);
    if (bitmap != nullptr && bitmap->InitCheck() != B_OK) {
        delete bitmap;
        bitmap = nullptr;
    }
    return bitmap;
}

static IconRecord* new_icon(color_space space)
{
    auto* icon = static_cast<IconRecord*>(MyAlloc(sizeof(IconRecord)));
    if (icon == nullptr)
        return nullptr;
    icon->image = new_bitmap(B_MINI_ICON, B_MINI_ICON, space);
    icon->selected_image = new_bitmap(B_LARGE_ICON, B_LARGE_ICON, space);
    icon->has_own_second = true;
    if (icon->image != nullptr && icon->selected_image != nullptr)
        return icon;
    MyFreeIcon(icon);
    return nullptr;
}

IconRecord* MyAllocIcon() { return new_icon(B_CMAP8); }

void MyFreeIcon(IconRecord* icon)
{
    delete icon->image;
    delete icon->selected_image;
    MyFree(icon);
}

// Puts a record into the registry. Returns its ident; 0, and the record is gone, if it can not.
static int32_t enter_icon(IconRecord* icon)
{
    const auto ident = static_cast<int32_t>(GetUniqueID());
    icon->ident = ident;
    if (enter_record(RegistryLock(), icon))
        return ident;  // the record may be closed already
    MyFreeIcon(icon);
    return 0;
}

// The same for an image, which is taken over; null gives 0.
static int32_t enter_image(BBitmap* image, const char* call)
{
    auto* icon = image != nullptr ? static_cast<IconRecord*>(MyAlloc(sizeof(IconRecord))) : nullptr;
    if (icon == nullptr) {
        delete image;
        show_dbg(kNoMemory, 0, call);
        return 0;
    }
    icon->image = image;
    return enter_icon(icon);
}

static IconRecord* find_icon(const ImagesLock&, int32_t ident)
{
    return find_record<IconRecord>(RegistryLock(), ident);
}

void Close_All_Icon(BList* icons)
{
    ImagesLock images;
    RegistryLock registry;
    for (int32 i = 0; i < icons->CountItems(); i++)
        MyFreeIcon(static_cast<IconRecord*>(icons->ItemAtFast(i)));
    icons->MakeEmpty();
}

// --- the two images

// Half as bright, as transparent as before; null without memory. Images have 32 bits a pixel.
static BBitmap* darkened(const BBitmap& image)
{
    auto* dark = new (std::nothrow) BBitmap(image.Bounds(), image.ColorSpace());
    if (dark == nullptr || dark->InitCheck() != B_OK) {
        delete dark;
        return nullptr;
    }
    const auto* from = static_cast<const uint8*>(image.Bits());
    auto* to = static_cast<uint8*>(dark->Bits());
    const int32 rows = image.Bounds().IntegerHeight() + 1;
    const size_t row_size = static_cast<size_t>(image.Bounds().IntegerWidth() + 1) * 4;
    for (int32 y = 0; y < rows; y++, from += image.BytesPerRow(), to += dark->BytesPerRow()) {
        for (size_t at = 0; at < row_size; at += 4) {
            uint32 pixel;
            memcpy(&pixel, from + at, 4);
            pixel = (pixel & 0xFF000000) | ((pixel >> 1) & 0x007F7F7F);
            memcpy(to + at, &pixel, 4);
        }
    }
    return dark;
}

const BBitmap* icon_image(const ImagesLock& images, int32_t ident, bool selected)
{
    IconRecord* icon = find_icon(images, ident);
    if (icon == nullptr || !selected)
        return icon != nullptr ? icon->image : nullptr;
    if (icon->selected_image == nullptr)
        icon->selected_image = darkened(*icon->image);
    return icon->selected_image != nullptr ? icon->selected_image : icon->image;
}

const BBitmap* large_icon_image(const ImagesLock& images, int32_t ident)
{
    const IconRecord* icon = find_icon(images, ident);
    if (icon == nullptr)
        return nullptr;
    return icon->has_own_second ? icon->selected_image : icon->image;
}

// A copy in other colours, with a view that draws into it; null without memory.
static BBitmap* redrawn(const BBitmap& image, color_space space, BView** _canvas = nullptr)
{
    const BRect bounds = image.Bounds();
    std::unique_ptr<BBitmap> copy(
        new_bitmap(bounds.IntegerWidth() + 1, bounds.IntegerHeight() + 1, space, true));
    if (copy == nullptr)
        return nullptr;
    auto* canvas = new (std::nothrow) BView(copy->Bounds(), "", B_FOLLOW_NONE, B_WILL_DRAW);
    if (canvas == nullptr)
        return nullptr;
    copy->Lock();
    copy->AddChild(canvas);
    canvas->SetDrawingMode(B_OP_COPY);
    canvas->DrawBitmap(&image, B_ORIGIN);
    canvas->Sync();
    copy->Unlock();
    if (_canvas != nullptr)
        *_canvas = canvas;
    return copy.release();
}

// Gives an image a view that draws into it, and with that, transparency.
static bool make_canvas(IconRecord* icon)
{
    if (icon->canvas != nullptr)
        return true;
    BView* canvas = nullptr;
    BBitmap* image = redrawn(*icon->image, B_RGBA32, &canvas);
    if (image == nullptr)
        return false;
    image->Lock();
    canvas->SetViewColor(255, 255, 255, 0);
    image->Unlock();
    delete icon->image;
    icon->image = image;
    icon->canvas = canvas;
    return true;
}

bool ImageAccess::Open(int32_t ident)
{
    gImagesLocker.Locker().Lock();
    IconRecord* icon = find_record<IconRecord>(RegistryLock(), ident);
    if (icon == nullptr || !make_canvas(icon)) {
        gImagesLocker.Locker().Unlock();
        return false;
    }
    fIcon = icon;
    icon->image->Lock();
    // What is drawn shows in the second image too, which is made anew when it is asked for.
    if (!icon->has_own_second) {
        delete icon->selected_image;
        icon->selected_image = nullptr;
    }
    return true;
}

void ImageAccess::Close()
{
    if (fIcon == nullptr)
        return;
    fIcon->image->Unlock();
    fIcon = nullptr;
    gImagesLocker.Locker().Unlock();
}

// --- exported calls

// The image in a file as 32 bits a pixel, null if there is none.
static BBitmap* load_bitmap(const char* path)
{
    std::unique_ptr<BBitmap> bitmap(path != nullptr ? BTranslationUtils::GetBitmapFile(path)
                                                    : nullptr);
    if (bitmap == nullptr || bitmap->ColorSpace() == B_RGB32 || bitmap->ColorSpace() == B_RGBA32)
        return bitmap.release();
    return redrawn(*bitmap, B_RGBA32);
}

extern "C" int32_t LoadIcon(const char* path)
try {
    const BEntry entry(path, true);
    BNode node(&entry);
    BNodeInfo info(&node);
    IconRecord* icon =
        entry.InitCheck() == B_OK && info.InitCheck() == B_OK ? new_icon(B_RGBA32) : nullptr;
    if (icon == nullptr)
        return 0;
    if (info.GetTrackerIcon(icon->image, B_MINI_ICON) == B_OK &&
        info.GetTrackerIcon(icon->selected_image, B_LARGE_ICON) == B_OK)
        return enter_icon(icon);
    MyFreeIcon(icon);
    return 0;
} catch (const std::exception&) {
    show_dbg(kNoMemory, 0, __func__);
    return 0;
}

extern "C" int32_t LoadImage(const char* path)
try {
    BBitmap* image = load_bitmap(path);
    return image != nullptr ? enter_image(image, __func__) : 0;
} catch (const std::exception&) {
    show_dbg(kNoMemory, 0, __func__);
    return 0;
}

extern "C" int32_t CreateImage(int32_t width, int32_t height)
try {
    return enter_image(new_bitmap(width, height, B_RGBA32), __func__);
} catch (const std::exception&) {
    show_dbg(kNoMemory, 0, __func__);
    return 0;
}

// The part of a raster from (left, top) to (right, bottom), all inside it.
static BBitmap* copy_part(const BBitmap& raster, int32_t left, int32_t top, int32_t right,
                          int32_t bottom)
{
    BBitmap* part = new_bitmap(right - left + 1, bottom - top + 1, B_RGBA32);
    if (part == nullptr)
        return nullptr;
    const auto* from = static_cast<const uint8*>(raster.Bits());
    auto* to = static_cast<uint8*>(part->Bits());
    for (int32_t y = top; y <= bottom; y++, to += part->BytesPerRow()) {
        const uint8* row =
            from + static_cast<size_t>(y) * static_cast<size_t>(raster.BytesPerRow());
        memcpy(to, row + static_cast<size_t>(left) * 4, static_cast<size_t>(right - left + 1) * 4);
    }
    return part;
}

static void make_opaque(BBitmap* bitmap)
{
    auto* bits = static_cast<uint8*>(bitmap->Bits());
    for (int32 at = 3; at < bitmap->BitsLength(); at += 4)
        bits[at] = 255;
}

extern "C" int32_t ImageFromWindow(int32_t window, int32_t x1, int32_t y1, int32_t x2, int32_t y2)
try {
    BBitmap* part = nullptr;
    {
        RasterPort port(window, __func__);
        if (!port || port.Raster() == nullptr)
            return 0;
        const BRect bounds = port.Raster()->Bounds();
        const int32_t left = std::max(std::min(x1, x2), 0);
        const int32_t top = std::max(std::min(y1, y2), 0);
        const int32_t right = std::min(std::max(x1, x2), bounds.IntegerWidth());
        const int32_t bottom = std::min(std::max(y1, y2), bounds.IntegerHeight());
        if (left <= right && top <= bottom)
            part = copy_part(*port.Raster(), left, top, right, bottom);
        if (part != nullptr && port.Window() != nullptr)
            make_opaque(part);
    }
    return part != nullptr ? enter_image(part, __func__) : 0;
} catch (const std::exception&) {
    show_dbg(kNoMemory, window, __func__);
    return 0;
}

extern "C" bool LoadSecondImage(int32_t ident, const char* path)
try {
    if (find_icon(ImagesLock(), ident) == nullptr)
        return false;
    std::unique_ptr<BBitmap> image(load_bitmap(path));
    ImagesLock images;
    IconRecord* icon = image != nullptr ? find_icon(images, ident) : nullptr;
    if (icon == nullptr)
        return false;
    delete icon->selected_image;
    icon->selected_image = image.release();
    icon->has_own_second = true;
    return true;
} catch (const std::exception&) {
    show_dbg(kNoMemory, ident, __func__);
    return false;
}

extern "C" int32_t GetImageWidth(int32_t ident)
{
    ImagesLock images;
    const IconRecord* icon = find_icon(images, ident);
    return icon != nullptr ? icon->image->Bounds().IntegerWidth() + 1 : 0;
}

extern "C" int32_t GetImageHeight(int32_t ident)
{
    ImagesLock images;
    const IconRecord* icon = find_icon(images, ident);
    return icon != nullptr ? icon->image->Bounds().IntegerHeight() + 1 : 0;
}

extern "C" void CloseIcon(int32_t ident)
{
    ImagesLock images;
    IconRecord* icon = find_icon(images, ident);
    if (icon != nullptr && remove_record(RegistryLock(), icon))
        MyFreeIcon(icon);
}

// The first image of an icon without its transparency, null if there is none.
static BBitmap* flat_copy(int32_t ident)
{
    ImagesLock images;
    const BBitmap* image = icon_image(images, ident, false);
    return image != nullptr ? redrawn(*image, B_RGB32) : nullptr;
}

extern "C" void SaveImageFile(const char* path, int32_t ident, int32_t format)
try {
    const auto count = static_cast<int32_t>(sizeof(kSavedFormats) / sizeof(kSavedFormats[0]));
    if (path == nullptr || format < 0 || format >= count) {
        show_dbg(kBadArgument, format, __func__);
        return;
    }
    if (find_icon(ImagesLock(), ident) == nullptr)
        return;
    BFile file(path, B_WRITE_ONLY | B_CREATE_FILE | B_ERASE_FILE);
    BBitmap* copy = file.InitCheck() == B_OK ? flat_copy(ident) : nullptr;
    if (copy == nullptr)
        return;
    BBitmapStream stream(copy);  // deletes the copy
    BTranslatorRoster::Default()->Translate(&stream, nullptr, nullptr, &file,
                                            kSavedFormats[format]);
} catch (const std::exception&) {
    show_dbg(kNoMemory, ident, __func__);
}
