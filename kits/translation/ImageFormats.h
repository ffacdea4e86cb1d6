#ifndef TRANSLATION_IMAGE_FORMATS_H
#define TRANSLATION_IMAGE_FORMATS_H

// The image formats that are built in, as rows.

#include <DataIO.h>
#include <TranslationDefs.h>

#include <string>
#include <vector>

#include <server/screen/ImageCodecs.h>

namespace [[gnu::visibility("hidden")]] BPrivate {

using server::PlaceForImage;
using server::Surface;

// The rules of server::ReadImage and WriteImage hold for these too.
using ReadPicture = status_t (*)(BPositionIO* source, const PlaceForImage& place);
using WritePicture = status_t (*)(const Surface& image, BPositionIO* destination);

struct ImageFormat {
    uint32 type;
    const char* name;
    const char* MIME;
    const char* host_name;  // of the host's codec
    // What the first bytes of a stream say.
    bool (*matches)(const uint8* head, size_t size);
    ReadPicture read;    // null: the host's
    WritePicture write;  // null: the host's, if it has one
    bool keeps_alpha;    // what does not is written on white
    float quality;
    float capability;
    bool (*is_there)() = nullptr;  // of our own that need something installed
};

const size_t kHeadSize = 1024;  // bytes that `matches` looks at, at most

extern const ImageFormat kImageFormats[];
extern const int32 kImageFormatCount;

// Those that the host has no reader or writer for, or none that is good for hostile files.
bool ReadsSvg();
status_t ReadSvg(BPositionIO* source, const PlaceForImage& place);
// The same drawing in so many B_RGBA32 pixels.
bool DrawSvg(const std::string& bytes, int32 width, int32 height, std::vector<uint32>* pixels);
bool MatchesSvg(const uint8* head, size_t size);
status_t ReadGif(BPositionIO* source, const PlaceForImage& place);
status_t WriteGif(const Surface& image, BPositionIO* destination);
bool MatchesTarga(const uint8* head, size_t size);
status_t ReadTarga(BPositionIO* source, const PlaceForImage& place);
status_t WriteTarga(const Surface& image, BPositionIO* destination);

}  // namespace BPrivate

#endif  // TRANSLATION_IMAGE_FORMATS_H
