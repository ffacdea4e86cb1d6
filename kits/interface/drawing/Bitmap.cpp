// Images in memory, and the lock and window of those that take views.

#include <Bitmap.h>

#include <Message.h>
#include <TypeConstants.h>
#include <View.h>
#include <Window.h>

#include <interface/drawing/BitmapSurface.h>
#include <interface/drawing/FinePicture.h>
#include <interface/drawing/SharpPicture.h>
#include <interface/geometry/Rounding.h>
#include <interface/view/ViewPrivate.h>
#include <server/painter/Painter.h>
#include <server/painter/PainterPaths.h>
#include <server/painter/PixelMemory.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

using BPrivate::FinePicture;
using BPrivate::surface_of;
using BPrivate::ViewPrivate;

// The rows of a space that programs expect: padded to whole words.
static int64 word_row(color_space space, int64 width)
{
    const int32 bytes = width <= INT32_MAX ? server::BytesPerRow(space, int32(width)) : 0;
    return (int64(bytes) + 3) & ~int64(3);
}

// Large 32-bit images start their rows on cache lines, and never a multiple of a page apart.
static int64 default_row(color_space space, int64 width)
{
    const int64 bytes = word_row(space, width);
    if ((space != B_RGB32 && space != B_RGBA32) || bytes < 1024)
        return bytes;
    const int64 padded = (bytes + 63) & ~int64(63);
    return padded % 4096 == 0 ? padded + 64 : padded;
}

// Before somebody writes on the bits past the views.
static inline void go_out(const BBitmap& bitmap)
{
    if (FinePicture* fine = ViewPrivate::Fine(bitmap)) [[unlikely]]
        fine->BitsGoOut(surface_of(bitmap));
}

void BBitmap::_Init(BRect bounds, color_space colorSpace, uint32 flags, int32 bytesPerRow)
{
    fFlags = flags & ~BPrivate::kPixelsUnset;
    fStatus = B_BAD_VALUE;
    if (!bounds.IsValid() || server::BytesPerRow(colorSpace, 1) == 0)
        return;
    // Bounds are whole pixels, as many as the rectangle reaches into.
    const double columns = std::ceil(double(bounds.right) - double(bounds.left)) + 1;
    const double rows = std::ceil(double(bounds.bottom) - double(bounds.top)) + 1;
    if (!(columns <= INT32_MAX) || !(rows <= INT32_MAX)) {
        fStatus = B_NO_MEMORY;
        return;
    }
    const int64 width = int64(columns), height = int64(rows);
    int64 row = default_row(colorSpace, width);
    if (bytesPerRow != B_ANY_BYTES_PER_ROW && row > 0) {
        if (bytesPerRow < server::BytesPerRow(colorSpace, int32(width)))
            return;
        row = bytesPerRow;
    }
    if (row == 0 || row > INT32_MAX / height) {
        fStatus = B_NO_MEMORY;
        return;
    }
    const size_t length = size_t(row * height);
    const bool unset = (flags & BPrivate::kPixelsUnset) != 0;
    fBits = unset ? server::allocate_unset_pixels(length) : server::allocate_pixels(length);
    if (fBits == nullptr) {
        fStatus = B_NO_MEMORY;
        return;
    }
    fBytesPerRow = int32(row);
    fLength = int32(length);
    fBounds = bounds;
    fSpace = colorSpace;
    fStatus = B_OK;
    if ((flags & (B_BITMAP_CLEAR_TO_WHITE | B_BITMAP_ACCEPTS_VIEWS)) != 0) {
        const server::Surface surface = surface_of(*this);
        const clipping_rect all = {0, 0, surface.width - 1, surface.height - 1};
        server::Surface pixels = surface;
        server::Paint white;
        white.high = {255, 255, 255, 255};
        server::FillRect({&pixels, &all, 1, all}, white,
                         BRect(0, 0, float(all.right), float(all.bottom)));
    }
    if ((flags & B_BITMAP_ACCEPTS_VIEWS) != 0)
        fWindow = new BWindow(fBounds, surface_of(*this));
}

void BBitmap::_Free()
{
    if (BWindow* window = std::exchange(fWindow, nullptr)) {
        if (window->Lock())
            window->Quit();
    }
    BPrivate::forget_maker(this);
    server::free_pixels(std::exchange(fBits, nullptr), size_t(fLength));
    fBytesPerRow = fLength = 0;
    fBounds = BRect();
    fSpace = B_NO_COLOR_SPACE;
    fStatus = B_NO_INIT;
}

void BBitmap::_CopyFrom(const BBitmap& source, uint32 flags)
{
    if (!source.IsValid()) {
        fFlags = flags;
        fStatus = source.fStatus;
        return;
    }
    _Init(source.fBounds, source.fSpace, flags | BPrivate::kPixelsUnset, source.fBytesPerRow);
    if (fStatus == B_OK)
        memcpy(Bits(), source.fBits, size_t(fLength));
    BPrivate::copy_maker(source, *this);
}

BBitmap::BBitmap(BRect bounds, uint32 flags, color_space colorSpace, int32 bytesPerRow, screen_id)
{
    _Init(bounds, colorSpace, flags, bytesPerRow);
}

BBitmap::BBitmap(BRect bounds, color_space colorSpace, bool acceptsViews, bool needsContiguous)
{
    _Init(bounds, colorSpace,
          (acceptsViews ? B_BITMAP_ACCEPTS_VIEWS : 0) |
              (needsContiguous ? B_BITMAP_IS_CONTIGUOUS : 0),
          B_ANY_BYTES_PER_ROW);
}

BBitmap::BBitmap(const BBitmap& source, uint32 flags) { _CopyFrom(source, flags); }

BBitmap::BBitmap(const BBitmap& source) : BArchivable() { _CopyFrom(source, source.fFlags); }

BBitmap::BBitmap(const BBitmap* source, bool acceptsViews, bool needsContiguous)
{
    const uint32 flags = (acceptsViews ? B_BITMAP_ACCEPTS_VIEWS : 0) |
                         (needsContiguous ? B_BITMAP_IS_CONTIGUOUS : 0);
    if (source != nullptr)
        _CopyFrom(*source, flags);
    else
        fStatus = B_BAD_VALUE;
}

BBitmap::BBitmap(area_id, ptrdiff_t, BRect, uint32 flags, color_space, int32, screen_id)
{
    fFlags = flags;
    fStatus = B_NOT_SUPPORTED;
}

BBitmap::~BBitmap() { _Free(); }

BBitmap& BBitmap::operator=(const BBitmap& source)
{
    if (this != &source) {
        _Free();
        _CopyFrom(source, source.fFlags);
    }
    return *this;
}

// Archive.

BBitmap::BBitmap(BMessage* data) : BArchivable(data)
{
    fStatus = B_BAD_VALUE;
    BRect frame;
    int32 space, flags, row;
    if (data == nullptr || data->FindRect("_frame", &frame) != B_OK ||
        data->FindInt32("_cspace", &space) != B_OK || data->FindInt32("_bmflags", &flags) != B_OK ||
        data->FindInt32("_rowbytes", &row) != B_OK)
        return;
    _Init(frame, BPrivate::space_of(space), uint32(flags) & ~BPrivate::kPixelsUnset, row);
    const void* bits;
    ssize_t length;
    if (fStatus == B_OK && data->FindData("_data", B_RAW_TYPE, &bits, &length) == B_OK)
        memcpy(Bits(), bits, size_t(std::min<ssize_t>(length, fLength)));
    BMessage archive;
    for (int32 i = 0; fWindow != nullptr && data->FindMessage("_views", i, &archive) == B_OK; i++) {
        BArchivable* object = instantiate_object(&archive);
        if (BView* view = dynamic_cast<BView*>(object))
            AddChild(view);
        else
            delete object;
    }
}

BArchivable* BBitmap::Instantiate(BMessage* data)
{
    return validate_instantiation(data, "BBitmap") ? new (std::nothrow) BBitmap(data) : nullptr;
}

status_t BBitmap::Archive(BMessage* data, bool deep) const
{
    status_t status = BArchivable::Archive(data, deep);
    if (status != B_OK)
        return status;
    data->AddRect("_frame", fBounds);
    data->AddInt32("_cspace", fSpace);
    data->AddInt32("_bmflags", int32(fFlags));
    status = data->AddInt32("_rowbytes", fBytesPerRow);
    if (status == B_OK && fLength > 0)
        status = data->AddData("_data", B_RAW_TYPE, fBits, fLength);
    for (int32 i = 0; deep && status == B_OK && ChildAt(i) != nullptr; i++) {
        BMessage archive;
        status = ChildAt(i)->Archive(&archive, true);
        if (status == B_OK)
            status = data->AddMessage("_views", &archive);
    }
    return status;
}

// What it is.

status_t BBitmap::InitCheck() const { return fStatus; }

bool BBitmap::IsValid() const { return fStatus == B_OK; }

status_t BBitmap::LockBits(uint32* state)
{
    if (state != nullptr)
        *state = 0;
    return fStatus;
}

void BBitmap::UnlockBits() {}

area_id BBitmap::Area() const { return B_ERROR; }

void* BBitmap::Bits() const
{
    go_out(*this);
    return fBits;
}

int32 BBitmap::BitsLength() const { return fLength; }

int32 BBitmap::BytesPerRow() const { return fBytesPerRow; }

color_space BBitmap::ColorSpace() const { return fSpace; }

BRect BBitmap::Bounds() const { return fBounds; }

status_t BBitmap::SetDrawingFlags(uint32) { return B_NOT_SUPPORTED; }

uint32 BBitmap::Flags() const { return fFlags; }

status_t BBitmap::GetOverlayRestrictions(overlay_restrictions*) const { return B_UNSUPPORTED; }

// Pixels in.

status_t BBitmap::_Import(const void* data, int64 length, int64 bytesPerRow, color_space space,
                          int32 fromX, int32 fromY, int32 toX, int32 toY, int32 width, int32 height)
{
    if (!IsValid())
        return B_NO_INIT;
    if (data == nullptr || length < 0 || bytesPerRow < 0 || fromX < 0 || fromY < 0 || toX < 0 ||
        toY < 0 || server::BytesPerRow(space, 1) == 0)
        return B_BAD_VALUE;
    go_out(*this);
    const server::Surface to = surface_of(*this);
    width = std::min(width, to.width - std::min(toX, to.width));
    height = std::min(height, to.height - std::min(toY, to.height));
    if (bytesPerRow > INT32_MAX)
        return B_BAD_VALUE;

    server::Surface from;
    from.bytesPerRow = int32(bytesPerRow);
    from.space = space;
    uint32 pixels[256];
    const int64 bitsPerPixel =
        int64(server::BytesPerRow(space, 8));  // eight pixels in bytes are one in bits
    for (int32 y = 0; y < height; y++) {
        const int64 start = (int64(fromY) + y) * bytesPerRow;
        if (start >= length)
            break;
        // A row may reach neither into the next one nor beyond the data.
        const int64 bytes = std::min(length - start, bytesPerRow);
        const int64 held = bytes * 8 / bitsPerPixel - fromX;
        const int32 count = int32(std::min<int64>(width, held));
        if (count <= 0)
            continue;
        const uint8* row = static_cast<const uint8*>(data) + start;
        uint8* target = to.bits + size_t(toY + y) * size_t(fBytesPerRow);
        if (space == fSpace && bitsPerPixel % 8 == 0) {
            const size_t size = size_t(bitsPerPixel / 8);
            memmove(target + size_t(toX) * size, row + size_t(fromX) * size, size_t(count) * size);
            continue;
        }
        from.bits = const_cast<uint8*>(row);
        for (int32 x = 0; x < count; x += 256) {
            const int32 part = std::min(count - x, 256);
            server::read_pixels(from, fromX + x, 0, part, pixels);
            server::write_pixels(to, toX + x, toY + y, part, pixels);
        }
    }
    return B_OK;
}

status_t BBitmap::ImportBits(const void* data, int32 length, int32 bpr, int32 offset,
                             color_space colorSpace)
{
    if (!IsValid())
        return B_NO_INIT;
    if (offset < 0 || offset >= fLength || data == nullptr || length < 0)
        return B_BAD_VALUE;
    const server::Surface surface = surface_of(*this);
    if (bpr <= 0)
        bpr = int32(word_row(colorSpace, surface.width));
    if (colorSpace == fSpace && bpr == fBytesPerRow) {
        go_out(*this);
        memmove(fBits + offset, data, size_t(std::min(length, fLength - offset)));
        return B_OK;
    }
    const int32 x = int32(int64(offset % fBytesPerRow) * 8 / server::BytesPerRow(fSpace, 8));
    return _Import(data, length, bpr, colorSpace, 0, 0, x, offset / fBytesPerRow, surface.width,
                   surface.height);
}

status_t BBitmap::ImportBits(const void* data, int32 length, int32 bpr, color_space colorSpace,
                             BPoint from, BPoint to, BSize size)
{
    auto number = [](float value) {
        return BPrivate::clamped_int(std::floor(double(value)), 1 << 30);
    };
    const int32 width = number(size.width) + 1, height = number(size.height) + 1;
    if (width < 1 || height < 1)
        return B_BAD_VALUE;
    if (bpr <= 0)
        bpr = int32(word_row(colorSpace, int64(number(from.x)) + width));
    return _Import(data, length, bpr, colorSpace, number(from.x), number(from.y), number(to.x),
                   number(to.y), width, height);
}

status_t BBitmap::ImportBits(const BBitmap* bitmap)
{
    if (bitmap == nullptr || !bitmap->IsValid())
        return B_BAD_VALUE;
    const server::Surface surface = surface_of(*bitmap);
    return _Import(bitmap->fBits, bitmap->fLength, bitmap->fBytesPerRow, bitmap->fSpace, 0, 0, 0, 0,
                   surface.width, surface.height);
}

status_t BBitmap::ImportBits(const BBitmap* bitmap, BPoint from, BPoint to, BSize size)
{
    if (bitmap == nullptr || !bitmap->IsValid())
        return B_BAD_VALUE;
    return ImportBits(bitmap->fBits, bitmap->fLength, bitmap->fBytesPerRow, bitmap->fSpace, from,
                      to, size);
}

void BBitmap::SetBits(const void* data, int32 length, int32 offset, color_space colorSpace)
{
    if (!IsValid())
        return;
    const server::Surface surface = surface_of(*this);
    int64 row = word_row(colorSpace, surface.width);
    const int64 packed = int64(surface.width) * 3;
    if (colorSpace == fSpace && length == fLength) {
        row = fBytesPerRow;  // the bits of a bitmap like this one
    } else if (colorSpace == B_RGB32 && length <= packed * surface.height) {
        colorSpace = B_RGB24_BIG;  // kept on purpose: R, G, B without a fourth byte
        row = packed;
    }
    ImportBits(data, length, int32(row), offset, colorSpace);
}

// Views.

void BBitmap::AddChild(BView* view)
{
    if (fWindow != nullptr)
        fWindow->AddChild(view);
}

bool BBitmap::RemoveChild(BView* view) { return fWindow != nullptr && fWindow->RemoveChild(view); }

int32 BBitmap::CountChildren() const { return fWindow != nullptr ? fWindow->CountChildren() : 0; }

BView* BBitmap::ChildAt(int32 index) const
{
    return fWindow != nullptr ? fWindow->ChildAt(index) : nullptr;
}

BView* BBitmap::FindView(const char* viewName) const
{
    return fWindow != nullptr ? fWindow->FindView(viewName) : nullptr;
}

BView* BBitmap::FindView(BPoint point) const
{
    return fWindow != nullptr ? fWindow->FindView(point) : nullptr;
}

bool BBitmap::Lock() { return fWindow != nullptr && fWindow->Lock(); }

void BBitmap::Unlock()
{
    if (fWindow != nullptr)
        fWindow->Unlock();
}

bool BBitmap::IsLocked() const { return fWindow != nullptr && fWindow->IsLocked(); }
