// Any bytes as an image file: an error or a bitmap, whatever they claim, and what is read can be
// written again.

#include <Bitmap.h>
#include <BitmapStream.h>
#include <DataIO.h>
#include <TranslatorRoster.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

static const uint32_t kFormats[] = {B_PNG_FORMAT, B_JPEG_FORMAT, B_GIF_FORMAT,
                                    B_BMP_FORMAT, B_TIFF_FORMAT, B_PPM_FORMAT,
                                    B_TGA_FORMAT, B_WEBP_FORMAT, B_TRANSLATOR_BITMAP};

static void check(bool holds)
{
    if (!holds)
        abort();
}

// Larger images take their time, and are bounded by the same check.
static bool is_small(const BBitmap& bitmap)
{
    return bitmap.Bounds().Width() < 2000 && bitmap.Bounds().Height() < 2000;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    BTranslatorRoster* roster = BTranslatorRoster::Default();
    BMemoryIO source(static_cast<const void*>(data), size);
    BBitmapStream stream;
    if (roster->Translate(&source, nullptr, nullptr, &stream, B_TRANSLATOR_BITMAP) != B_OK)
        return 0;
    BBitmap* bitmap = nullptr;
    check(stream.DetachBitmap(&bitmap) == B_OK && bitmap->IsValid());
    const std::unique_ptr<BBitmap> owned(bitmap);
    check(bitmap->BitsLength() <= 1 << 28);
    uint8_t sum = 0;
    for (int32 at = 0; at < bitmap->BitsLength(); at += 64)
        sum = uint8_t(sum + static_cast<const uint8_t*>(bitmap->Bits())[at]);
    volatile uint8_t kept = sum;
    (void)kept;
    if (!is_small(*bitmap))
        return 0;
    BBitmapStream again(new BBitmap(*bitmap));
    BMallocIO file;
    const uint32_t format = kFormats[size % std::size(kFormats)];
    if (roster->Translate(&again, nullptr, nullptr, &file, format) == B_OK)
        check(file.BufferLength() > 0);
    return 0;
}

std::vector<std::vector<uint8_t>> FuzzSeeds()
{
    std::vector<std::vector<uint8_t>> seeds;
    for (const color_space space : {B_RGB32, B_RGBA32}) {
        for (const uint32_t format : kFormats) {
            auto* bitmap = new BBitmap(BRect(0, 0, 22, 16), 0, space);
            auto* bits = static_cast<uint8_t*>(bitmap->Bits());
            for (int32 at = 0; at < bitmap->BitsLength(); at++)
                bits[at] = uint8_t(at * 7 / 5);
            BBitmapStream source(bitmap);
            BMallocIO file;
            if (BTranslatorRoster::Default()->Translate(&source, nullptr, nullptr, &file, format) !=
                B_OK)
                continue;
            const auto* bytes = static_cast<const uint8_t*>(file.Buffer());
            seeds.emplace_back(bytes, bytes + file.BufferLength());
        }
    }
    for (const std::string_view text :
         {"P3 3 2 9\n1 2 3 4 5 6 7 8 9 1 2 3 4 5 6 7 8 9", "P1 4 2 1 0 1 0 0 1 0 1"})
        seeds.emplace_back(text.begin(), text.end());
    return seeds;
}
