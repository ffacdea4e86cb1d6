// Images as Targa: true colour, grey and with a palette, plain or in runs.

#include "translation/ImageFormats.h"

#include <string.h>

#include <algorithm>
#include <memory>
#include <new>
#include <vector>

namespace BPrivate {

static const size_t kHeaderSize = 18;
static const int32 kMostTargaSide = 65535;

enum {
    kIdLength = 0,
    kMapKind = 1,
    kImageKind = 2,
    kMapFirst = 3,
    kMapLength = 5,
    kMapDepth = 7,
    kWidth = 12,
    kHeight = 14,
    kDepth = 16,
    kDescriptor = 17
};
enum { kWithMap = 1, kTrueColor = 2, kGrey = 3, kRuns = 8 };
enum { kAlphaBits = 0x0F, kFromRight = 0x10, kFromTop = 0x20 };

namespace {

int32 word_at(const uint8* bytes) { return bytes[0] | bytes[1] << 8; }

bool is_color_depth(int32 depth)
{
    return depth == 15 || depth == 16 || depth == 24 || depth == 32;
}

// What a header says.
struct Layout {
    int32 kind, width, height, depth;
    int32 map_first, map_length, map_depth;  // length 0 without a palette
    off_t map_place;
    bool has_runs, from_right, from_top, has_alpha;

    int32 PixelBytes() const { return (depth + 7) / 8; }
    int32 MapBytes() const { return (map_depth + 7) / 8; }
    off_t DataPlace() const { return map_place + off_t(map_length) * MapBytes(); }
};

// Bytes of a stream one after another, through a buffer.
class Bytes {
public:
    Bytes(BPositionIO* source, off_t place) : fSource(source), fPlace(place) {}

    // Null behind the end.
    const uint8* Take(size_t size)
    {
        if (fEnd - fNext < size && !_Fill(size))
            return nullptr;
        const uint8* bytes = fBuffer + fNext;
        fNext += size;
        return bytes;
    }

private:
    bool _Fill(size_t size)
    {
        memmove(fBuffer, fBuffer + fNext, fEnd - fNext);
        fEnd -= fNext;
        fNext = 0;
        while (fEnd < size) {
            const ssize_t got = fSource->ReadAt(fPlace, fBuffer + fEnd, sizeof(fBuffer) - fEnd);
            if (got <= 0)
                return false;
            fEnd += size_t(got);
            fPlace += got;
        }
        return true;
    }

    BPositionIO* fSource;
    off_t fPlace;
    uint8 fBuffer[16384];
    size_t fNext = 0, fEnd = 0;
};

}  // namespace

static bool read_header(const uint8* head, Layout* layout)
{
    const int32 kind = head[kImageKind] & ~kRuns;
    const bool has_map = head[kMapKind] == 1;
    layout->kind = kind;
    layout->has_runs = (head[kImageKind] & kRuns) != 0;
    layout->width = word_at(head + kWidth);
    layout->height = word_at(head + kHeight);
    layout->depth = head[kDepth];
    layout->map_first = word_at(head + kMapFirst);
    layout->map_length = has_map ? word_at(head + kMapLength) : 0;
    layout->map_depth = has_map ? head[kMapDepth] : 0;
    layout->map_place = off_t(kHeaderSize + head[kIdLength]);
    layout->from_right = (head[kDescriptor] & kFromRight) != 0;
    layout->from_top = (head[kDescriptor] & kFromTop) != 0;
    const int32 color_depth = kind == kWithMap ? layout->map_depth : layout->depth;
    layout->has_alpha = color_depth == 32 && (head[kDescriptor] & kAlphaBits) != 0;
    if (head[kMapKind] > 1 || layout->width == 0 || layout->height == 0 ||
        (has_map && !is_color_depth(layout->map_depth)))
        return false;
    switch (kind) {
        case kWithMap:
            return layout->map_length > 0 && (layout->depth == 8 || layout->depth == 16);
        case kTrueColor:
            return is_color_depth(layout->depth);
        case kGrey:
            return layout->depth == 8;
        default:
            return false;
    }
}

bool MatchesTarga(const uint8* head, size_t size)
{
    Layout layout;
    return size >= kHeaderSize && read_header(head, &layout);
}

// A colour of that many bits as blue, green, red and alpha.
static void take_color(const uint8* bytes, int32 depth, bool has_alpha, uint8* pixel)
{
    if (depth >= 24) {
        memcpy(pixel, bytes, 3);
        pixel[3] = has_alpha ? bytes[3] : 255;
        return;
    }
    const int32 word = word_at(bytes);
    for (int i = 0; i < 3; i++) {
        const int32 five = word >> (5 * i) & 31;
        pixel[i] = uint8(five << 3 | five >> 2);
    }
    pixel[3] = 255;
}

namespace {

// Reads the pixels of an image in the order of the file.
class PixelReader {
public:
    PixelReader(BPositionIO* source, const Layout& layout)
        : fLayout(layout), fBytes(source, layout.DataPlace())
    {
    }

    bool ReadMap(BPositionIO* source)
    {
        if (fLayout.kind != kWithMap)
            return true;
        Bytes bytes(source, fLayout.map_place);
        fMap.resize(size_t(fLayout.map_length) * 4);
        for (int32 i = 0; i < fLayout.map_length; i++) {
            const uint8* color = bytes.Take(size_t(fLayout.MapBytes()));
            if (color == nullptr)
                return false;
            take_color(color, fLayout.map_depth, fLayout.has_alpha, &fMap[size_t(i) * 4]);
        }
        return true;
    }

    bool Row(uint8* row)
    {
        for (int32 i = 0; i < fLayout.width; i++) {
            const int32 x = fLayout.from_right ? fLayout.width - 1 - i : i;
            if (!_Next())
                return false;
            memcpy(row + x * 4, fPixel, 4);
        }
        return true;
    }

private:
    // A packet of runs has a byte before it: the pixels less one, and whether there is one for all.
    bool _Next()
    {
        if (!fLayout.has_runs)
            return _Take();
        if (fLeft == 0) {
            const uint8* packet = fBytes.Take(1);
            if (packet == nullptr)
                return false;
            fLeft = (*packet & 0x7F) + 1;
            fRepeats = (*packet & 0x80) != 0;
            fLeft--;
            return _Take();
        }
        fLeft--;
        return fRepeats || _Take();
    }
    bool _Take()
    {
        const uint8* bytes = fBytes.Take(size_t(fLayout.PixelBytes()));
        if (bytes == nullptr)
            return false;
        if (fLayout.kind == kTrueColor) {
            take_color(bytes, fLayout.depth, fLayout.has_alpha, fPixel);
        } else if (fLayout.kind == kGrey) {
            memset(fPixel, bytes[0], 3);
            fPixel[3] = 255;
        } else {
            const int32 index =
                (fLayout.depth == 8 ? bytes[0] : word_at(bytes)) - fLayout.map_first;
            if (index < 0 || index >= fLayout.map_length)
                return false;
            memcpy(fPixel, &fMap[size_t(index) * 4], 4);
        }
        return true;
    }

    const Layout& fLayout;
    Bytes fBytes;
    std::vector<uint8> fMap;
    uint8 fPixel[4] = {};
    int32 fLeft = 0;
    bool fRepeats = false;
};

}  // namespace

// What an image of that size takes at least, told before memory is taken for it.
static bool is_cut_off(BPositionIO* source, const Layout& layout)
{
    const off_t pixels = off_t(layout.width) * layout.height;
    const off_t least = layout.has_runs ? (pixels + 127) / 128 * (1 + layout.PixelBytes())
                                        : pixels * layout.PixelBytes();
    off_t size;
    return source->GetSize(&size) == B_OK && size < layout.DataPlace() + least;
}

status_t ReadTarga(BPositionIO* source, const PlaceForImage& place)
try {
    uint8 head[kHeaderSize];
    Layout layout;
    if (source->ReadAtExactly(0, head, sizeof(head)) != B_OK || !read_header(head, &layout) ||
        is_cut_off(source, layout))
        return B_BAD_DATA;
    if (int64(layout.width) * layout.height > server::kMostPixels)
        return B_NO_MEMORY;
    const auto reader = std::make_unique<PixelReader>(source, layout);
    if (!reader->ReadMap(source))
        return B_BAD_DATA;
    const Surface image = place(layout.width, layout.height, layout.has_alpha ? B_RGBA32 : B_RGB32);
    if (image.bits == nullptr)
        return B_NO_MEMORY;
    for (int32 i = 0; i < image.height; i++) {
        const int32 y = layout.from_top ? i : image.height - 1 - i;
        if (!reader->Row(image.bits + ptrdiff_t(y) * image.bytesPerRow))
            return B_BAD_DATA;
    }
    return B_OK;
} catch (const std::bad_alloc&) {
    return B_NO_MEMORY;
}

static bool has_alpha(const Surface& image)
{
    if (image.space != B_RGBA32)
        return false;
    for (int32 y = 0; y < image.height; y++) {
        const uint8* row = image.bits + ptrdiff_t(y) * image.bytesPerRow;
        for (int32 x = 0; x < image.width; x++) {
            if (row[x * 4 + 3] != 255)
                return true;
        }
    }
    return false;
}

status_t WriteTarga(const Surface& image, BPositionIO* destination)
try {
    if (image.width > kMostTargaSide || image.height > kMostTargaSide)
        return B_NOT_SUPPORTED;
    const bool alpha = has_alpha(image);
    const size_t size = alpha ? 4 : 3;
    std::vector<uint8> bytes(kHeaderSize + size_t(image.width) * size_t(image.height) * size);
    bytes[kImageKind] = kTrueColor;
    for (int i = 0; i < 2; i++) {
        bytes[size_t(kWidth + i)] = uint8(image.width >> (8 * i));
        bytes[size_t(kHeight + i)] = uint8(image.height >> (8 * i));
    }
    bytes[kDepth] = uint8(size * 8);
    bytes[kDescriptor] = alpha ? kFromTop | 8 : kFromTop;
    uint8* to = &bytes[kHeaderSize];
    for (int32 y = 0; y < image.height; y++) {
        const uint8* row = image.bits + ptrdiff_t(y) * image.bytesPerRow;
        for (int32 x = 0; x < image.width; x++, to += size)
            memcpy(to, row + x * 4, size);
    }
    const ssize_t written = destination->Write(bytes.data(), bytes.size());
    if (written < 0)
        return status_t(written);
    return size_t(written) == bytes.size() ? B_OK : B_DEVICE_FULL;
} catch (const std::bad_alloc&) {
    return B_NO_MEMORY;
}

}  // namespace BPrivate
