// Bitmaps in streams: a TranslatorBitmap and the rows.

#include "translation/BitmapData.h"

#include <Bitmap.h>
#include <ByteOrder.h>
#include <Message.h>

#include <server/screen/ImageCodecs.h>

#include <cstring>
#include <new>
#include <typeinfo>
#include <utility>

namespace BPrivate {

const BBitmap* BitmapStreamAccess::Bitmap(const BBitmapStream& stream) { return stream.fBitmap; }

void BitmapStreamAccess::SetTo(BBitmapStream& stream, std::unique_ptr<BBitmap> bitmap)
{
    if (!stream.fDetached)
        delete stream.fBitmap;
    stream.fDetached = false;
    stream.fBitmap = bitmap.release();
    stream.fHeader = header_of(*stream.fBitmap);
    stream.SwapHeader(&stream.fHeader, &stream.fBigEndianHeader);
    stream.fSize = sizeof(TranslatorBitmap) + size_t(stream.fBitmap->BitsLength());
    stream.fPosition = stream.fSize;
}

uint32 raw_space(const TranslatorBitmap& header)
{
    uint32 space;
    memcpy(&space, &header.colors, sizeof(space));
    return space;
}

void swap_header(const TranslatorBitmap& source, TranslatorBitmap* destination)
{
    destination->magic = B_HOST_TO_BENDIAN_INT32(source.magic);
    destination->bounds.left = B_HOST_TO_BENDIAN_FLOAT(source.bounds.left);
    destination->bounds.top = B_HOST_TO_BENDIAN_FLOAT(source.bounds.top);
    destination->bounds.right = B_HOST_TO_BENDIAN_FLOAT(source.bounds.right);
    destination->bounds.bottom = B_HOST_TO_BENDIAN_FLOAT(source.bounds.bottom);
    destination->rowBytes = B_HOST_TO_BENDIAN_INT32(source.rowBytes);
    const uint32 space = B_HOST_TO_BENDIAN_INT32(raw_space(source));
    memcpy(&destination->colors, &space, sizeof(space));
    destination->dataSize = B_HOST_TO_BENDIAN_INT32(source.dataSize);
}

TranslatorBitmap header_of(const BBitmap& bitmap)
{
    return {B_TRANSLATOR_BITMAP, bitmap.Bounds(), uint32(bitmap.BytesPerRow()), bitmap.ColorSpace(),
            uint32(bitmap.BitsLength())};
}

status_t make_bitmap(const TranslatorBitmap& header, std::unique_ptr<BBitmap>* bitmap)
{
    const double width = double(header.bounds.right) - double(header.bounds.left) + 1;
    const double height = double(header.bounds.bottom) - double(header.bounds.top) + 1;
    // Both comparisons are also false for what is no number.
    if (header.magic != B_TRANSLATOR_BITMAP || raw_space(header) > 0xFFFF || !(width >= 1) ||
        !(height >= 1) || header.rowBytes > INT32_MAX ||
        uint64(header.rowBytes) * uint64(height) != header.dataSize)
        return B_BAD_DATA;
    if (!(width * height <= double(server::kMostPixels)) ||
        header.dataSize > uint64(server::kMostPixels) * 4)
        return B_NO_MEMORY;
    bitmap->reset(new (std::nothrow)
                      BBitmap(header.bounds, 0, header.colors, int32(header.rowBytes)));
    if (*bitmap == nullptr)
        return B_NO_MEMORY;
    const status_t status = (*bitmap)->InitCheck();
    return status == B_BAD_VALUE ? B_BAD_DATA : status;
}

status_t BitmapSource::ReadFrom(BPositionIO* source)
{
    if (typeid(*source) == typeid(BBitmapStream)) {
        fBitmap = BitmapStreamAccess::Bitmap(static_cast<BBitmapStream&>(*source));
        return fBitmap != nullptr && fBitmap->IsValid() ? B_OK : B_BAD_DATA;
    }
    TranslatorBitmap header;
    if (source->ReadAtExactly(0, &header, sizeof(header)) != B_OK)
        return B_BAD_DATA;
    swap_header(header, &header);
    // A short stream is told before memory is taken for a long one.
    off_t size;
    if (source->GetSize(&size) == B_OK && size - off_t(sizeof(header)) < off_t(header.dataSize))
        return B_BAD_DATA;
    status_t status = make_bitmap(header, &fOwned);
    if (status != B_OK)
        return status;
    fBitmap = fOwned.get();
    status = source->ReadAtExactly(sizeof(header), fOwned->Bits(), header.dataSize);
    return status == B_OK ? B_OK : B_BAD_DATA;
}

// True where the bitmap has to be turned into the space that the extension names.
static bool wants_other_space(const BBitmap& bitmap, const BMessage* extension, color_space* space)
{
    int32 wanted;
    if (extension == nullptr ||
        extension->FindInt32(B_TRANSLATOR_EXT_BITMAP_COLOR_SPACE, &wanted) != B_OK)
        return false;
    *space = color_space(wanted);
    // Those who ask for 32 bits get the transparency that there is.
    return *space != bitmap.ColorSpace() && *space != B_NO_COLOR_SPACE &&
           !(*space == B_RGB32 && bitmap.ColorSpace() == B_RGBA32);
}

static bool is_set(const BMessage* extension, const char* name)
{
    bool set = false;
    return extension != nullptr && extension->FindBool(name, &set) == B_OK && set;
}

static status_t write_all(BPositionIO* destination, const void* bytes, size_t size)
{
    size_t written = 0;
    while (written < size) {
        const ssize_t part =
            destination->Write(static_cast<const char*>(bytes) + written, size - written);
        if (part < 0)
            return status_t(part);
        if (part == 0)
            return B_DEVICE_FULL;
        written += size_t(part);
    }
    return B_OK;
}

status_t write_bitmap(std::unique_ptr<BBitmap> bitmap, const BMessage* extension,
                      BPositionIO* destination)
{
    color_space space;
    if (wants_other_space(*bitmap, extension, &space)) {
        std::unique_ptr<BBitmap> turned(new (std::nothrow) BBitmap(bitmap->Bounds(), 0, space));
        if (turned == nullptr)
            return B_NO_MEMORY;
        if (!turned->IsValid())
            return turned->InitCheck();
        turned->ImportBits(bitmap.get());
        bitmap = std::move(turned);
    }
    const bool header_only = is_set(extension, B_TRANSLATOR_EXT_HEADER_ONLY);
    const bool data_only = is_set(extension, B_TRANSLATOR_EXT_DATA_ONLY);
    if (!header_only && !data_only && typeid(*destination) == typeid(BBitmapStream)) {
        BitmapStreamAccess::SetTo(static_cast<BBitmapStream&>(*destination), std::move(bitmap));
        return B_OK;
    }
    TranslatorBitmap header;
    swap_header(header_of(*bitmap), &header);
    status_t status = B_OK;
    if (!data_only)
        status = write_all(destination, &header, sizeof(header));
    if (status == B_OK && !header_only)
        status = write_all(destination, bitmap->Bits(), size_t(bitmap->BitsLength()));
    return status;
}

}  // namespace BPrivate
