// The image formats that are built in, as rows.

#include "translation/ImageFormats.h"

#include <string.h>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace BPrivate {

static std::string_view text_of(const uint8* head, size_t size)
{
    return {reinterpret_cast<const char*>(head), size};
}

static bool matches_png(const uint8* head, size_t size)
{
    return text_of(head, size).starts_with("\x89PNG\r\n\x1a\n");
}

static bool matches_jpeg(const uint8* head, size_t size)
{
    return text_of(head, size).starts_with("\xff\xd8\xff");
}

static bool matches_gif(const uint8* head, size_t size)
{
    const std::string_view text = text_of(head, size);
    return text.starts_with("GIF87a") || text.starts_with("GIF89a");
}

static bool matches_bmp(const uint8* head, size_t size)
{
    static const uint8 kHeaderSizes[] = {12, 40, 52, 56, 64, 108, 124};
    return size >= 18 && head[0] == 'B' && head[1] == 'M' && head[15] == 0 && head[16] == 0 &&
           head[17] == 0 && std::ranges::find(kHeaderSizes, head[14]) != std::end(kHeaderSizes);
}

static bool matches_tiff(const uint8* head, size_t size)
{
    const std::string_view text = text_of(head, std::min<size_t>(size, 4));
    return text == std::string_view("II*\0", 4) || text == std::string_view("MM\0*", 4) ||
           text == std::string_view("II+\0", 4) || text == std::string_view("MM\0+", 4);
}

static bool matches_ppm(const uint8* head, size_t size)
{
    return size >= 3 && head[0] == 'P' && head[1] >= '1' && head[1] <= '6' &&
           strchr("# \t\r\n", head[2]) != nullptr && head[2] != 0;
}

static bool matches_webp(const uint8* head, size_t size)
{
    const std::string_view text = text_of(head, size);
    return size >= 16 && text.starts_with("RIFF") && text.substr(8).starts_with("WEBPVP8");
}

bool MatchesSvg(const uint8* head, size_t size)
{
    std::string_view text = text_of(head, size);
    if (text.starts_with("\xef\xbb\xbf"))
        text.remove_prefix(3);
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    return text.starts_with('<') && text.find("<svg") != text.npos;
}

// The first that keeps everything is what a bitmap becomes if no format is named.
const ImageFormat kImageFormats[] = {
    {B_PNG_FORMAT, "PNG image", "image/png", "png", matches_png, nullptr, nullptr, true, 0.8f,
     0.9f},
    {B_JPEG_FORMAT, "JPEG image", "image/jpeg", "jpeg", matches_jpeg, nullptr, nullptr, false, 0.7f,
     0.6f},
    {B_GIF_FORMAT, "GIF image", "image/gif", "", matches_gif, ReadGif, WriteGif, true, 0.6f, 0.5f},
    {B_BMP_FORMAT, "BMP image", "image/x-bmp", "bmp", matches_bmp, nullptr, nullptr, false, 0.7f,
     0.6f},
    {B_TIFF_FORMAT, "TIFF image", "image/tiff", "tiff", matches_tiff, nullptr, nullptr, true, 0.7f,
     0.6f},
    {B_PPM_FORMAT, "PPM image", "image/x-portable-pixmap", "ppm", matches_ppm, nullptr, nullptr,
     false, 0.7f, 0.6f},
    {B_WEBP_FORMAT, "WebP image", "image/webp", "webp", matches_webp, nullptr, nullptr, true, 0.7f,
     0.6f},
    {B_TGA_FORMAT, "Targa image", "image/x-targa", "", MatchesTarga, ReadTarga, WriteTarga, true,
     0.7f, 0.3f},
    {'SVG ', "SVG drawing", "image/svg+xml", "", MatchesSvg, ReadSvg, nullptr, true, 0.7f, 0.5f,
     ReadsSvg},
};

const int32 kImageFormatCount = int32(std::size(kImageFormats));

}  // namespace BPrivate
