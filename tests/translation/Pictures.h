#ifndef TESTS_TRANSLATION_PICTURES_H
#define TESTS_TRANSLATION_PICTURES_H

// Images made here and now, in files and streams of the tests' own.

#include <Bitmap.h>
#include <BitmapStream.h>
#include <DataIO.h>
#include <TranslatorRoster.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

using Bytes = std::vector<uint8_t>;

inline uint32_t pixel_at(const BBitmap& bitmap, int32_t x, int32_t y)
{
    uint32_t pixel;
    memcpy(&pixel, static_cast<const char*>(bitmap.Bits()) + y * bitmap.BytesPerRow() + x * 4, 4);
    return pixel;
}

inline void set_pixel(BBitmap& bitmap, int32_t x, int32_t y, uint32_t pixel)
{
    memcpy(static_cast<char*>(bitmap.Bits()) + y * bitmap.BytesPerRow() + x * 4, &pixel, 4);
}

// Four fields of colour, 0xAARRGGBB, the last one without any where there is alpha.
inline BBitmap* make_fields(int32_t width, int32_t height, color_space space)
{
    auto* bitmap = new BBitmap(BRect(0, 0, float(width - 1), float(height - 1)), 0, space);
    static const uint32_t kFields[] = {0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0x00FFFFFF};
    for (int32_t y = 0; y < height; y++) {
        for (int32_t x = 0; x < width; x++) {
            const uint32_t field = kFields[(x >= width / 2) + 2 * (y >= height / 2)];
            set_pixel(*bitmap, x, y, space == B_RGB32 ? field | 0xFF000000 : field);
        }
    }
    return bitmap;
}

// The file of that format with the bitmap, which it deletes; empty if it can not be made.
inline Bytes encode(BBitmap* bitmap, uint32_t format)
{
    BBitmapStream source(bitmap);
    BMallocIO file;
    if (BTranslatorRoster::Default()->Translate(&source, nullptr, nullptr, &file, format) != B_OK)
        return {};
    const auto* bytes = static_cast<const uint8_t*>(file.Buffer());
    return Bytes(bytes, bytes + file.BufferLength());
}

inline status_t decode(const Bytes& file, std::unique_ptr<BBitmap>* bitmap,
                       BMessage* extension = nullptr)
{
    BMemoryIO source(static_cast<const void*>(file.data()), file.size());
    BBitmapStream stream;
    const status_t status = BTranslatorRoster::Default()->Translate(&source, nullptr, extension,
                                                                    &stream, B_TRANSLATOR_BITMAP);
    BBitmap* found = nullptr;
    if (status == B_OK)
        stream.DetachBitmap(&found);
    bitmap->reset(found);
    return status;
}

inline Bytes bytes_of(const std::string& text) { return Bytes(text.begin(), text.end()); }

#endif  // TESTS_TRANSLATION_PICTURES_H
