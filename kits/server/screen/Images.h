#ifndef SERVER_IMAGES_H
#define SERVER_IMAGES_H

#include <SupportDefs.h>

#include <string>
#include <vector>

namespace server {

// Image files. Any thread; no display is needed.

// Reads an image, or a drawing, at `size` by `size` pixels: smaller ones stand in the middle,
// larger ones are made to fit. The pixels are B_RGBA32. False if that is no regular file with an
// image, or with one that would take more than an icon may.
bool ReadIconFile(const std::string& path, int32 size, std::vector<uint32>* pixels);

// The bytes of a PNG file with these B_RGBA32 pixels.
std::string EncodePng(const std::vector<uint32>& pixels, int32 width, int32 height);

}  // namespace server

#endif  // SERVER_IMAGES_H
