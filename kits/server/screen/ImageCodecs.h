#ifndef SERVER_IMAGE_CODECS_H
#define SERVER_IMAGE_CODECS_H

// The host's readers and writers of image files, for the translation kit. Formats have the host's
// names: "png". Any thread; no display is needed.

#include <DataIO.h>

#include <server/screen/Surface.h>

#include <functional>

namespace server {

// As large an image as is read or written: a quarter of a gigabyte.
const int64 kMostPixels = 1 << 26;

// Gives the memory for an image in B_RGB32 or B_RGBA32; a surface without bits refuses it.
using PlaceForImage = std::function<Surface(int32 width, int32 height, color_space space)>;

[[gnu::visibility("default")]] bool ReadsImages(const char* format);
[[gnu::visibility("default")]] bool WritesImages(const char* format);

// Reads the image that stands at the start of a stream. B_NO_MEMORY for one that is too large or
// refused, B_BAD_DATA for what is damaged or cut off.
[[gnu::visibility("default")]] status_t ReadImage(BPositionIO* source, const char* format,
                                                  const PlaceForImage& place);

// Appends an image in B_RGB32 or B_RGBA32 to a stream. B_NOT_SUPPORTED without such a writer, or
// what the stream said.
[[gnu::visibility("default")]] status_t WriteImage(const Surface& image, const char* format,
                                                   BPositionIO* destination);

}  // namespace server

#endif  // SERVER_IMAGE_CODECS_H
