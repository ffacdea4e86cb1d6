// Images as GIF, by giflib. The first frame is read. One frame is written, with the image's own
// colours while these are few enough, else with those that giflib finds for it.

#include "translation/ImageFormats.h"

#include <gif_lib.h>
#include <string.h>

#include <algorithm>
#include <memory>
#include <new>
#include <unordered_map>
#include <vector>

namespace BPrivate {

static const int32 kMostSide = 65535;
static const int kOpaqueFrom = 128;     // alpha; what is less is left out
static const int kClearIndex = 255;     // the last entry of a full palette
static const size_t kMostColors = 255;  // besides that one

// --- reading

namespace {

struct Source {
    BPositionIO* stream;
    off_t place = 0;
};

struct CloseReader {
    void operator()(GifFileType* file) const { DGifCloseFile(file, nullptr); }
};

}  // namespace

static int read_bytes(GifFileType* file, GifByteType* bytes, int size)
{
    auto* from = static_cast<Source*>(file->UserData);
    const ssize_t got = from->stream->ReadAt(from->place, bytes, size_t(size));
    from->place += std::max<ssize_t>(got, 0);
    return int(std::max<ssize_t>(got, 0));
}

// Takes the blocks before the first frame; false if there is none. `clear` becomes the number of
// the transparent colour, if one is named.
static bool find_frame(GifFileType* file, int* clear)
{
    GifRecordType kind;
    while (DGifGetRecordType(file, &kind) == GIF_OK && kind != TERMINATE_RECORD_TYPE) {
        if (kind == IMAGE_DESC_RECORD_TYPE)
            return DGifGetImageDesc(file) == GIF_OK;
        int code = 0;
        GifByteType* block = nullptr;
        if (kind != EXTENSION_RECORD_TYPE || DGifGetExtension(file, &code, &block) != GIF_OK)
            return false;
        GraphicsControlBlock control;
        if (code == GRAPHICS_EXT_FUNC_CODE && block != nullptr &&
            DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK)
            *clear = control.TransparentColor;
        while (block != nullptr) {
            if (DGifGetExtensionNext(file, &block) != GIF_OK)
                return false;
        }
    }
    return false;
}

static void put_row(const GifByteType* numbers, const GifImageDesc& frame,
                    const ColorMapObject& map, int clear, const Surface& image, int y)
{
    uint8* row = image.bits + ptrdiff_t(y) * image.bytesPerRow;
    const int end = std::min(frame.Width, image.width - frame.Left);
    for (int i = 0; i < end; i++) {
        const int number = numbers[i];
        if (number == clear || number >= map.ColorCount)
            continue;
        const GifColorType& color = map.Colors[number];
        uint8* pixel = row + (frame.Left + i) * 4;
        pixel[0] = color.Blue;
        pixel[1] = color.Green;
        pixel[2] = color.Red;
        pixel[3] = 255;
    }
}

static status_t read_frame(GifFileType* file, int clear, const Surface& image)
{
    const GifImageDesc& frame = file->Image;
    const ColorMapObject* map = frame.ColorMap != nullptr ? frame.ColorMap : file->SColorMap;
    if (map == nullptr || frame.Width < 1)
        return B_BAD_DATA;
    // An interlaced frame comes in four passes: every so many rows, from that one on.
    static const int kFirst[] = {0, 4, 2, 1}, kStep[] = {8, 8, 4, 2};
    std::vector<GifByteType> numbers(size_t(frame.Width));
    for (int pass = 0; pass < (frame.Interlace ? 4 : 1); pass++) {
        const int step = frame.Interlace ? kStep[pass] : 1;
        for (int i = frame.Interlace ? kFirst[pass] : 0; i < frame.Height; i += step) {
            if (DGifGetLine(file, numbers.data(), frame.Width) != GIF_OK)
                return B_BAD_DATA;
            if (frame.Top + i < image.height)
                put_row(numbers.data(), frame, *map, clear, image, frame.Top + i);
        }
    }
    return B_OK;
}

status_t ReadGif(BPositionIO* source, const PlaceForImage& place)
try {
    Source from = {source};
    const std::unique_ptr<GifFileType, CloseReader> file(DGifOpen(&from, read_bytes, nullptr));
    int clear = NO_TRANSPARENT_COLOR;
    if (file == nullptr || file->SWidth < 1 || file->SHeight < 1 || !find_frame(file.get(), &clear))
        return B_BAD_DATA;
    if (int64(file->SWidth) * file->SHeight > server::kMostPixels)
        return B_NO_MEMORY;
    const GifImageDesc& frame = file->Image;
    const bool covered = frame.Left == 0 && frame.Top == 0 && frame.Width >= file->SWidth &&
                         frame.Height >= file->SHeight;
    const Surface image = place(file->SWidth, file->SHeight,
                                covered && clear == NO_TRANSPARENT_COLOR ? B_RGB32 : B_RGBA32);
    return image.bits != nullptr ? read_frame(file.get(), clear, image) : B_NO_MEMORY;
} catch (const std::bad_alloc&) {
    return B_NO_MEMORY;
}

// --- writing

namespace {

// An image by the numbers of its palette.
struct Indexed {
    std::vector<GifByteType> pixels;
    std::vector<GifColorType> colors;
    bool has_clear = false;
};

struct Destination {
    BPositionIO* stream;
    status_t status = B_OK;
};

}  // namespace

static int write_bytes(GifFileType* file, const GifByteType* bytes, int size)
{
    auto* to = static_cast<Destination*>(file->UserData);
    const ssize_t written = to->stream->Write(bytes, size_t(size));
    if (written != size && to->status == B_OK)
        to->status = written < 0 ? status_t(written) : B_DEVICE_FULL;
    return int(std::max<ssize_t>(written, 0));
}

static const uint8* pixel_of(const Surface& image, size_t index)
{
    const size_t width = size_t(image.width);
    return image.bits + index / width * size_t(image.bytesPerRow) + index % width * 4;
}

static bool is_clear(const Surface& image, const uint8* pixel)
{
    return image.space == B_RGBA32 && pixel[3] < kOpaqueFrom;
}

// False if the image has too many colours.
static bool take_own_colors(const Surface& image, Indexed* indexed)
{
    std::unordered_map<uint32, GifByteType> known;
    for (size_t i = 0; i < indexed->pixels.size(); i++) {
        const uint8* pixel = pixel_of(image, i);
        if (is_clear(image, pixel)) {
            indexed->pixels[i] = kClearIndex;
            indexed->has_clear = true;
            continue;
        }
        const uint32 color = uint32(pixel[0] | pixel[1] << 8 | pixel[2] << 16);
        const auto [place, is_new] = known.try_emplace(color, GifByteType(known.size()));
        if (is_new) {
            if (known.size() > kMostColors)
                return false;
            indexed->colors.push_back({pixel[2], pixel[1], pixel[0]});
        }
        indexed->pixels[i] = place->second;
    }
    return true;
}

static bool find_colors(const Surface& image, Indexed* indexed)
{
    const size_t size = indexed->pixels.size();
    std::vector<GifByteType> planes[3];
    for (std::vector<GifByteType>& plane : planes)
        plane.resize(size);
    for (size_t i = 0; i < size; i++) {
        const uint8* pixel = pixel_of(image, i);
        for (int k = 0; k < 3; k++)
            planes[k][i] = pixel[2 - k];
    }
    int count = int(kMostColors);
    indexed->colors.resize(256);
    if (GifQuantizeBuffer(unsigned(image.width), unsigned(image.height), &count, planes[0].data(),
                          planes[1].data(), planes[2].data(), indexed->pixels.data(),
                          indexed->colors.data()) != GIF_OK)
        return false;
    indexed->has_clear = false;
    for (size_t i = 0; i < size; i++) {
        if (is_clear(image, pixel_of(image, i))) {
            indexed->pixels[i] = kClearIndex;
            indexed->has_clear = true;
        }
    }
    return true;
}

static bool put_frame(GifFileType* file, const Surface& image, Indexed& indexed)
{
    EGifSetGifVersion(file, indexed.has_clear);
    indexed.colors.resize(256);
    const std::unique_ptr<ColorMapObject, void (*)(ColorMapObject*)> map(
        GifMakeMapObject(256, indexed.colors.data()), GifFreeMapObject);
    if (map == nullptr ||
        EGifPutScreenDesc(file, image.width, image.height, 8, 0, map.get()) != GIF_OK)
        return false;
    if (indexed.has_clear) {
        const GraphicsControlBlock control = {DISPOSAL_UNSPECIFIED, false, 0, kClearIndex};
        GifByteType bytes[4];
        const size_t size = EGifGCBToExtension(&control, bytes);
        if (EGifPutExtension(file, GRAPHICS_EXT_FUNC_CODE, int(size), bytes) != GIF_OK)
            return false;
    }
    if (EGifPutImageDesc(file, 0, 0, image.width, image.height, false, nullptr) != GIF_OK)
        return false;
    for (int32 y = 0; y < image.height; y++) {
        GifByteType* row = indexed.pixels.data() + size_t(y) * size_t(image.width);
        if (EGifPutLine(file, row, image.width) != GIF_OK)
            return false;
    }
    return true;
}

status_t WriteGif(const Surface& image, BPositionIO* destination)
try {
    if (image.width > kMostSide || image.height > kMostSide)
        return B_NOT_SUPPORTED;
    Indexed indexed;
    indexed.pixels.resize(size_t(image.width) * size_t(image.height));
    if (!take_own_colors(image, &indexed) && !find_colors(image, &indexed))
        return B_NO_MEMORY;
    Destination to = {destination};
    GifFileType* file = EGifOpen(&to, write_bytes, nullptr);
    if (file == nullptr)
        return B_NO_MEMORY;
    const bool written = put_frame(file, image, indexed);
    const bool closed = EGifCloseFile(file, nullptr) == GIF_OK;
    if (to.status != B_OK)
        return to.status;
    return written && closed ? B_OK : B_ERROR;
} catch (const std::bad_alloc&) {
    return B_NO_MEMORY;
}

}  // namespace BPrivate
