// Translators of the built-in image formats.

#include "translation/ImageTranslator.h"

#include <Bitmap.h>
#include <ByteOrder.h>

#include <string.h>

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#include "interface/drawing/BitmapSurface.h"
#include "translation/BitmapData.h"
#include "translation/ImageFormats.h"

namespace BPrivate {

static translation_format make_format(uint32 type, float quality, float capability,
                                      const char* MIME, const char* name)
{
    translation_format format = {type, B_TRANSLATOR_BITMAP, quality, capability, {}, {}};
    strncpy(format.MIME, MIME, sizeof(format.MIME) - 1);
    strncpy(format.name, name, sizeof(format.name) - 1);
    return format;
}

// What no pixel covers, and a stream tells all the same.
static void zero_row_ends(const BBitmap& bitmap)
{
    const Surface image = surface_of(bitmap);
    const size_t row = size_t(image.width) * 4;
    for (int32 y = 0; y < image.height; y++)
        memset(image.bits + ptrdiff_t(y) * image.bytesPerRow + row, 0,
               size_t(image.bytesPerRow) - row);
}

bool ImageTranslator::IsThere(const ImageFormat& format)
{
    if (format.is_there != nullptr)
        return format.is_there();
    return format.read != nullptr || server::ReadsImages(format.host_name);
}

ImageTranslator::ImageTranslator(const ImageFormat& format)
    : fFormat(format),
      fFormats{
          make_format(B_TRANSLATOR_BITMAP, format.quality, format.capability, "image/x-be-bitmap",
                      "Be Bitmap Format"),
          make_format(format.type, format.quality, format.capability, format.MIME, format.name)},
      fWrites(format.write != nullptr || server::WritesImages(format.host_name))
{
}

const char* ImageTranslator::TranslatorName() const { return fFormat.name; }

const char* ImageTranslator::TranslatorInfo() const { return fFormat.MIME; }

int32 ImageTranslator::TranslatorVersion() const { return B_TRANSLATION_MAKE_VERSION(1, 0, 0); }

// The formats that can be read, and written: a bitmap only where it can become an image.

const translation_format* ImageTranslator::InputFormats(int32* _count) const
{
    *_count = fWrites ? 2 : 1;
    return fWrites ? fFormats : fFormats + 1;
}

const translation_format* ImageTranslator::OutputFormats(int32* _count) const
{
    *_count = fWrites ? 2 : 1;
    return fFormats;
}

bool ImageTranslator::_Turns(uint32 from, uint32 to) const
{
    if (from == B_TRANSLATOR_BITMAP)
        return fWrites && (to == 0 || to == fFormat.type || to == B_TRANSLATOR_BITMAP);
    return from == fFormat.type && (to == 0 || to == B_TRANSLATOR_BITMAP);
}

// What stands at the start of a stream, 0 for something else.
uint32 ImageTranslator::_TypeOf(BPositionIO* source) const
{
    uint8 head[kHeadSize];
    const ssize_t size = source->ReadAt(0, head, sizeof(head));
    if (size >= ssize_t(sizeof(TranslatorBitmap))) {
        uint32 magic;
        memcpy(&magic, head, sizeof(magic));
        if (B_BENDIAN_TO_HOST_INT32(magic) == B_TRANSLATOR_BITMAP)
            return B_TRANSLATOR_BITMAP;
    }
    return size > 0 && fFormat.matches(head, size_t(size)) ? fFormat.type : 0;
}

status_t ImageTranslator::Identify(BPositionIO* source, const translation_format*, BMessage*,
                                   translator_info* info, uint32 outType)
{
    if (source == nullptr || info == nullptr)
        return B_BAD_VALUE;
    const uint32 type = _TypeOf(source);
    if (type == 0 || !_Turns(type, outType))
        return B_NO_TRANSLATOR;
    const translation_format& format = fFormats[type == B_TRANSLATOR_BITMAP ? 0 : 1];
    info->type = type;
    info->group = format.group;
    info->quality = format.quality;
    info->capability = format.capability;
    memcpy(info->MIME, format.MIME, sizeof(info->MIME));
    memcpy(info->name, format.name, sizeof(info->name));
    return B_OK;
}

status_t ImageTranslator::Translate(BPositionIO* source, const translator_info*,
                                    BMessage* extension, uint32 outType, BPositionIO* destination)
{
    if (source == nullptr || destination == nullptr)
        return B_BAD_VALUE;
    const uint32 type = _TypeOf(source);
    if (type == 0 || !_Turns(type, outType))
        return B_NO_TRANSLATOR;
    if (type == fFormat.type)
        return _Read(source, extension, destination);
    if (outType != B_TRANSLATOR_BITMAP)
        return _Write(source, destination);
    BitmapSource bitmap;
    const status_t status = bitmap.ReadFrom(source);
    if (status != B_OK)
        return status;
    return write_bitmap(std::unique_ptr<BBitmap>(new (std::nothrow) BBitmap(bitmap.Bitmap())),
                        extension, destination);
}

status_t ImageTranslator::_Read(BPositionIO* source, BMessage* extension,
                                BPositionIO* destination) const
{
    // The host's readers write every pixel, our own may rely on zeroes.
    const uint32 flags = fFormat.read != nullptr ? 0 : kPixelsUnset;
    std::unique_ptr<BBitmap> bitmap;
    auto place = [&](int32 width, int32 height, color_space space) {
        bitmap.reset(new (std::nothrow)
                         BBitmap(BRect(0, 0, float(width - 1), float(height - 1)), flags, space));
        if (bitmap != nullptr && bitmap->IsValid() && flags != 0)
            zero_row_ends(*bitmap);
        return bitmap != nullptr && bitmap->IsValid() ? surface_of(*bitmap) : Surface();
    };
    const status_t status = fFormat.read != nullptr
                                ? fFormat.read(source, place)
                                : server::ReadImage(source, fFormat.host_name, place);
    return status == B_OK ? write_bitmap(std::move(bitmap), extension, destination) : status;
}

// Lays the image's transparent parts on white.
static void lay_on_white(const Surface& image)
{
    for (int32 y = 0; y < image.height; y++) {
        uint8* pixel = image.bits + ptrdiff_t(y) * image.bytesPerRow;
        for (int32 x = 0; x < image.width; x++, pixel += 4) {
            const uint32 alpha = pixel[3];
            for (int i = 0; i < 3 && alpha != 255; i++)
                pixel[i] = uint8((pixel[i] * alpha + 255 * (255 - alpha) + 127) / 255);
            pixel[3] = 255;
        }
    }
}

status_t ImageTranslator::_Write(BPositionIO* source, BPositionIO* destination) const
{
    BitmapSource bitmap;
    status_t status = bitmap.ReadFrom(source);
    if (status != B_OK)
        return status;
    const BBitmap& given = bitmap.Bitmap();
    Surface image = surface_of(given);
    if (int64(image.width) * image.height > server::kMostPixels)
        return B_NO_MEMORY;
    const bool flat = image.space == B_RGB32;
    std::unique_ptr<BBitmap> turned;
    if (!flat && (image.space != B_RGBA32 || !fFormat.keeps_alpha)) {
        turned.reset(new (std::nothrow) BBitmap(given.Bounds(), 0, B_RGBA32));
        if (turned == nullptr || !turned->IsValid())
            return B_NO_MEMORY;
        turned->ImportBits(&given);
        image = surface_of(*turned);
        if (!fFormat.keeps_alpha) {
            lay_on_white(image);
            image.space = B_RGB32;
        }
    }
    return fFormat.write != nullptr ? fFormat.write(image, destination)
                                    : server::WriteImage(image, fFormat.host_name, destination);
}

}  // namespace BPrivate
