// Image files of every format, written and read back, whole and cut off.

#include "Pictures.h"

#include <Message.h>
#include <TranslationUtils.h>

#include <Injection.h>
#include <gtest/gtest.h>

#include <interface/drawing/SharpPicture.h>

#include <cmath>

struct FormatRow {
    uint32_t type;
    const char* MIME;
    bool keeps_alpha;
    int tolerance;  // of a colour's parts
};

static const FormatRow kWritten[] = {
    {B_PNG_FORMAT, "image/png", true, 0},     {B_JPEG_FORMAT, "image/jpeg", false, 6},
    {B_GIF_FORMAT, "image/gif", true, 0},     {B_BMP_FORMAT, "image/x-bmp", false, 0},
    {B_TIFF_FORMAT, "image/tiff", true, 0},   {B_PPM_FORMAT, "image/x-portable-pixmap", false, 0},
    {B_TGA_FORMAT, "image/x-targa", true, 0},
};

static const Bytes kSvg = bytes_of(
    "<?xml version='1.0'?><svg xmlns='http://www.w3.org/2000/svg' width='40' height='20'>"
    "<rect width='20' height='20' fill='#f00'/><text x='25' y='15'>i</text></svg>");

static std::string name_of(uint32_t type)
{
    return {char(type >> 24), char(type >> 16), char(type >> 8), char(type)};
}

static ::testing::AssertionResult is_near(uint32_t found, uint32_t wanted, int tolerance)
{
    for (int shift = 0; shift < 32; shift += 8) {
        const int a = int(found >> shift & 0xFF), b = int(wanted >> shift & 0xFF);
        if (std::abs(a - b) > tolerance)
            return ::testing::AssertionFailure() << std::hex << found << " for " << wanted;
    }
    return ::testing::AssertionSuccess();
}

static void expect_fields(const BBitmap& bitmap, const FormatRow& row, bool alpha)
{
    EXPECT_EQ(bitmap.Bounds(), BRect(0, 0, 61, 33));
    EXPECT_TRUE(is_near(pixel_at(bitmap, 5, 5), 0xFFFF0000, row.tolerance));
    EXPECT_TRUE(is_near(pixel_at(bitmap, 55, 5), 0xFF00FF00, row.tolerance));
    EXPECT_TRUE(is_near(pixel_at(bitmap, 5, 30), 0xFF0000FF, row.tolerance));
    const uint32_t last = pixel_at(bitmap, 55, 30);
    if (alpha && row.keeps_alpha)
        EXPECT_EQ(last >> 24, 0u);
    else
        EXPECT_TRUE(is_near(last, 0xFFFFFFFF, row.tolerance));
}

TEST(ImageFormats, WhatIsWrittenReadsBack)
{
    for (const FormatRow& row : kWritten) {
        for (const color_space space : {B_RGB32, B_RGBA32}) {
            SCOPED_TRACE(name_of(row.type) + (space == B_RGBA32 ? " with alpha" : ""));
            const Bytes file = encode(make_fields(62, 34, space), row.type);
            ASSERT_FALSE(file.empty());
            std::unique_ptr<BBitmap> bitmap;
            ASSERT_EQ(decode(file, &bitmap), B_OK);
            expect_fields(*bitmap, row, space == B_RGBA32);
        }
    }
}

TEST(ImageFormats, AStreamIsKnownByItsContent)
{
    for (const FormatRow& row : kWritten) {
        SCOPED_TRACE(name_of(row.type));
        const Bytes file = encode(make_fields(8, 8, B_RGB32), row.type);
        BMemoryIO stream(static_cast<const void*>(file.data()), file.size());
        stream.Seek(3, SEEK_SET);
        translator_info info;
        ASSERT_EQ(BTranslatorRoster::Default()->Identify(&stream, nullptr, &info), B_OK);
        EXPECT_EQ(info.type, row.type);
        EXPECT_EQ(info.group, uint32_t(B_TRANSLATOR_BITMAP));
        EXPECT_STREQ(info.MIME, row.MIME);
        EXPECT_EQ(stream.Position(), 3);
    }
}

TEST(ImageFormats, EveryCutOffFileIsAnError)
{
    for (const FormatRow& row : kWritten) {
        SCOPED_TRACE(name_of(row.type));
        const Bytes whole = encode(make_fields(62, 34, B_RGBA32), row.type);
        // Of some, the last bytes only say that the file ends.
        const size_t last = whole.size() - std::min<size_t>(whole.size() / 4, 16);
        for (size_t size = 0; size < last; size += std::max<size_t>(whole.size() / 61, 1)) {
            std::unique_ptr<BBitmap> bitmap;
            EXPECT_NE(decode(Bytes(whole.begin(), whole.begin() + long(size)), &bitmap), B_OK)
                << size << " of " << whole.size();
            EXPECT_EQ(bitmap, nullptr);
        }
    }
}

// What a file is read to behind an image of its size that is gone, all of whose bytes were `left`.
static Bytes read_behind(uint8_t left, const Bytes& file)
{
    {
        const BBitmap before(BRect(0, 0, 1199, 999), 0, B_RGBA32);
        memset(before.Bits(), left, size_t(before.BitsLength()));
    }
    std::unique_ptr<BBitmap> bitmap;
    if (decode(file, &bitmap) != B_OK)
        return {};
    const auto* bits = static_cast<const uint8_t*>(bitmap->Bits());
    return Bytes(bits, bits + bitmap->BitsLength());
}

TEST(ImageFormats, LargeOnesShowNothingOfTheImageBefore)
{
    for (const uint32_t type : {B_PNG_FORMAT, B_JPEG_FORMAT, B_BMP_FORMAT, B_TIFF_FORMAT,
                                B_PPM_FORMAT, B_TGA_FORMAT, B_WEBP_FORMAT}) {
        SCOPED_TRACE(name_of(type));
        const Bytes whole = encode(make_fields(1100, 1000, B_RGBA32), type);
        for (size_t part = 0; part < 6 && !whole.empty(); part++) {
            Bytes file = whole;
            if (part == 1)
                file.resize(file.size() - 3);
            else if (part > 1)
                file[file.size() / 8 * part] ^= 0x5A;
            const Bytes found = read_behind(0x11, file);
            EXPECT_FALSE(part == 0 && found.empty());
            EXPECT_TRUE(found == read_behind(0xEE, file)) << "damage " << part;
        }
    }
}

TEST(ImageFormats, OtherColourSpacesAreWrittenToo)
{
    for (const color_space space : {B_CMAP8, B_GRAY8, B_RGB16, B_RGB24, B_GRAY1}) {
        for (const FormatRow& row : kWritten) {
            SCOPED_TRACE(name_of(row.type) + " " + std::to_string(space));
            auto* bitmap = new BBitmap(BRect(0, 0, 15, 15), 0, space);
            memset(bitmap->Bits(), space == B_CMAP8 ? 63 : 255, size_t(bitmap->BitsLength()));
            std::unique_ptr<BBitmap> read;
            ASSERT_EQ(decode(encode(bitmap, row.type), &read), B_OK);
            EXPECT_TRUE(is_near(pixel_at(*read, 7, 7), 0xFFFFFFFF, row.tolerance));
        }
    }
}

TEST(ImageFormats, GifFindsColoursForAnImageOfMany)
{
    auto* bitmap = new BBitmap(BRect(0, 0, 255, 255), 0, B_RGB32);
    for (int32_t y = 0; y < 256; y++) {
        for (int32_t x = 0; x < 256; x++)
            set_pixel(*bitmap, x, y, 0xFF000080u | uint32_t(x << 16 | y << 8));
    }
    std::unique_ptr<BBitmap> read;
    ASSERT_EQ(decode(encode(bitmap, B_GIF_FORMAT), &read), B_OK);
    EXPECT_TRUE(is_near(pixel_at(*read, 40, 200), 0xFF28C880, 24));
    EXPECT_TRUE(is_near(pixel_at(*read, 200, 40), 0xFFC82880, 24));
}

TEST(ImageFormats, DrawingsKeepTheirSizeAndClearParts)
{
    std::unique_ptr<BBitmap> bitmap;
    ASSERT_EQ(decode(kSvg, &bitmap), B_OK);
    EXPECT_EQ(bitmap->Bounds(), BRect(0, 0, 39, 19));
    EXPECT_EQ(bitmap->ColorSpace(), B_RGBA32);
    EXPECT_EQ(pixel_at(*bitmap, 3, 3), 0xFFFF0000);
    EXPECT_EQ(pixel_at(*bitmap, 38, 1) >> 24, 0u);
    EXPECT_TRUE(encode(make_fields(8, 8, B_RGB32), 'SVG ').empty());
}

TEST(ImageFormats, DrawingsHaveThePixelsOfAFinerScreen)
{
    inject_display_scale(2);
    BMemoryIO file(kSvg.data(), kSvg.size());
    const std::unique_ptr<BBitmap> bitmap(BTranslationUtils::GetBitmap(&file));
    inject_display_scale(1);
    ASSERT_NE(bitmap, nullptr);
    EXPECT_EQ(bitmap->Bounds(), BRect(0, 0, 39, 19));
    const auto pixels = BPrivate::sharp_pixels(*bitmap, 82, 41);
    ASSERT_NE(pixels, nullptr);
    EXPECT_EQ((*pixels)[40], 0xFFFF0000u);
    EXPECT_EQ((*pixels)[41] >> 24, 0u);
}

// --- Targa, whose reader is ours

static Bytes targa(int kind, int width, int height, int depth, int descriptor, const Bytes& data,
                   const Bytes& map = {}, int map_depth = 0)
{
    Bytes bytes(18);
    bytes[1] = !map.empty();
    bytes[2] = uint8_t(kind);
    bytes[5] = map.empty() ? 0 : uint8_t(int(map.size()) / (map_depth / 8));
    bytes[7] = uint8_t(map_depth);
    bytes[12] = uint8_t(width);
    bytes[14] = uint8_t(height);
    bytes[16] = uint8_t(depth);
    bytes[17] = uint8_t(descriptor);
    bytes.insert(bytes.end(), map.begin(), map.end());
    bytes.insert(bytes.end(), data.begin(), data.end());
    return bytes;
}

TEST(Targa, ReadsEveryKind)
{
    const Bytes map = {1, 2, 3, 4, 5, 6};  // blue, green, red
    struct Row {
        Bytes file;
        uint32_t left, right;  // pixels of the upper row
    };
    const Row rows[] = {
        {targa(2, 2, 1, 24, 0, {1, 2, 3, 4, 5, 6}), 0xFF030201, 0xFF060504},
        {targa(2, 2, 1, 32, 8, {1, 2, 3, 9, 4, 5, 6, 8}), 0x09030201, 0x08060504},
        {targa(2, 2, 1, 32, 0, {1, 2, 3, 9, 4, 5, 6, 8}), 0xFF030201, 0xFF060504},
        {targa(2, 2, 1, 16, 0, {0x1F, 0x00, 0x00, 0x7C}), 0xFF0000FF, 0xFFFF0000},
        {targa(2, 2, 1, 24, 0x10, {1, 2, 3, 4, 5, 6}), 0xFF060504, 0xFF030201},
        {targa(2, 1, 2, 24, 0, {1, 2, 3, 4, 5, 6}), 0xFF060504, 0xFF060504},
        {targa(2, 1, 2, 24, 0x20, {1, 2, 3, 4, 5, 6}), 0xFF030201, 0xFF030201},
        {targa(3, 2, 1, 8, 0, {7, 200}), 0xFF070707, 0xFFC8C8C8},
        {targa(1, 2, 1, 8, 0, {1, 0}, map, 24), 0xFF060504, 0xFF030201},
        {targa(10, 2, 1, 24, 0, {0x81, 1, 2, 3}), 0xFF030201, 0xFF030201},
        {targa(10, 2, 1, 24, 0, {0x01, 1, 2, 3, 4, 5, 6}), 0xFF030201, 0xFF060504},
        {targa(9, 2, 1, 8, 0, {0x00, 1, 0x80, 0}, map, 24), 0xFF060504, 0xFF030201},
        {targa(11, 2, 1, 8, 0, {0x81, 50}), 0xFF323232, 0xFF323232},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(&row - rows);
        std::unique_ptr<BBitmap> bitmap;
        ASSERT_EQ(decode(row.file, &bitmap), B_OK);
        EXPECT_EQ(pixel_at(*bitmap, 0, 0), row.left);
        EXPECT_EQ(pixel_at(*bitmap, int32_t(bitmap->Bounds().right), 0), row.right);
    }
}

TEST(Targa, DamageIsAnError)
{
    const Bytes map = {1, 2, 3};
    const Bytes files[] = {
        targa(1, 2, 1, 8, 0, {0, 1}, map, 24),      // behind the palette
        targa(10, 2, 2, 24, 0, {0x81, 1, 2, 3}),    // runs for one row of two
        targa(10, 2, 1, 24, 0, {0x81, 1}),          // half a pixel
        targa(2, 2, 1, 12, 0, {1, 2, 3, 4, 5, 6}),  // no such depth
        targa(2, 0, 1, 24, 0, {1, 2, 3, 4, 5, 6}),  // no width
        targa(4, 2, 1, 24, 0, {1, 2, 3, 4, 5, 6}),  // no such kind
    };
    for (const Bytes& file : files) {
        std::unique_ptr<BBitmap> bitmap;
        EXPECT_NE(decode(file, &bitmap), B_OK) << &file - files;
    }
}

// --- what a file may claim

static Bytes huge_png()
{
    Bytes file = encode(make_fields(8, 8, B_RGB32), B_PNG_FORMAT);
    file[16] = file[20] = 0x20;  // half a thousand million pixels on each side
    return file;
}

TEST(ImageFormats, GiganticImagesAreRefused)
{
    const Bytes files[] = {
        huge_png(),
        bytes_of("P6 60000 60000 255\nabc"),
        bytes_of("<svg xmlns='http://www.w3.org/2000/svg' width='1e9' height='1e9'/>"),
        bytes_of("<svg xmlns='http://www.w3.org/2000/svg' width='30000' height='30000'/>"),
        targa(10, 255, 255, 24, 0, {0x81, 1, 2, 3}),
    };
    for (const Bytes& file : files) {
        std::unique_ptr<BBitmap> bitmap;
        EXPECT_NE(decode(file, &bitmap), B_OK) << &file - files;
    }
}

static std::string times(int count, const std::string& text)
{
    std::string all;
    for (int i = 0; i < count; i++)
        all += text;
    return all;
}

TEST(ImageFormats, DrawingsThatAskForTooMuchAreErrors)
{
    const std::string root = "<svg xmlns='http://www.w3.org/2000/svg' ";
    std::string entities = "<!ENTITY a0 'ha'>";
    for (int i = 0; i < 12; i++) {
        const std::string deeper = "&a" + std::to_string(i) + ";";
        entities += "<!ENTITY a" + std::to_string(i + 1) + " '" + times(10, deeper) + "'>";
    }
    const std::string drawings[] = {
        "<!DOCTYPE svg [" + entities + "]>" + root +
            "width='9' height='9'><text>&a12;</text></svg>",
        root + "width='9' height='9'>" + times(100000, "<g>") + times(100000, "</g>") + "</svg>",
        root + "width='9' height='9'><text font-size='1e30'>x</text></svg>",
        root + "width='9' height='9'><filter id='f'><feConvolveMatrix order='1000' kernelMatrix='" +
            times(1000000, "1 ") +
            "'/></filter><rect width='9' height='9' filter='url(#f)'/></svg>",
        root + "viewBox='0 0 8000 8000'>" + times(30, "<g opacity='.5'>") +
            "<rect width='9' height='9'/>" + times(30, "</g>") + "</svg>",
        root + "viewBox='0 0 1e20 1e20'/>",
    };
    for (const std::string& drawing : drawings) {
        std::unique_ptr<BBitmap> bitmap;
        EXPECT_NE(decode(bytes_of(drawing), &bitmap), B_OK) << &drawing - drawings;
        EXPECT_EQ(bitmap, nullptr);
    }
    std::unique_ptr<BBitmap> bitmap;
    EXPECT_EQ(decode(kSvg, &bitmap), B_OK) << "the next one is read";
}

TEST(ImageFormats, DrawingsReachNoOtherFile)
{
    std::unique_ptr<BBitmap> bitmap;
    const Bytes file = bytes_of(
        "<!DOCTYPE svg [<!ENTITY other SYSTEM 'file:///etc/hostname'>]>"
        "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
        "width='20' height='20'><image width='20' height='20' "
        "xlink:href='file:///usr/share/pixmaps/debian-logo.png'/></svg>");
    if (decode(file, &bitmap) == B_OK) {
        for (int32_t y = 0; y < 20; y++)
            EXPECT_EQ(pixel_at(*bitmap, y, y) >> 24, 0u);
    }
}
