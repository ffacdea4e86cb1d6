#ifndef INTERFACE_SHARP_PICTURE_H
#define INTERFACE_SHARP_PICTURE_H

// What a bitmap was made of, a drawing, from which it can be made again in more pixels: for screens
// that have several for each of the bitmap's. It is kept beside the bitmap, and counts as long as
// the bitmap's bits are what they were. Any thread.

#include <SupportDefs.h>

#include <functional>
#include <memory>
#include <vector>

class BBitmap;

namespace BPrivate {

// Makes the whole picture in so many B_RGBA32 pixels; false if it can not.
using PictureMaker = std::function<bool(int32 width, int32 height, std::vector<uint32>* pixels)>;

// Whether there is any use in a maker: the screen has several pixels a unit.
bool has_fine_screen();

// `bitmap`, of B_RGBA32, is what `maker` makes in the bitmap's own size. Nothing is kept, and no
// memory taken, as long as the screen has one pixel a unit.
void keep_maker(const BBitmap& bitmap, PictureMaker maker);
// The copy of a bitmap has what that has.
void copy_maker(const BBitmap& from, const BBitmap& to);
// The bitmap goes.
void forget_maker(const BBitmap* bitmap);

// The bitmap in so many pixels; null where it is what its own bits say and no more.
std::shared_ptr<const std::vector<uint32>> sharp_pixels(const BBitmap& bitmap, int32 width,
                                                        int32 height);

}  // namespace BPrivate

#endif  // INTERFACE_SHARP_PICTURE_H
