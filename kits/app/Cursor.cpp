// Cursors: pictures made from data, bitmaps or the number of a system cursor. Any thread.

#include <Cursor.h>

#include <AppDefs.h>
#include <Bitmap.h>
#include <Message.h>
#include <Point.h>
#include <TypeConstants.h>

#include <algorithm>
#include <cstring>

#include "app/CursorImage.h"
#include "server/painter/Painter.h"

using BPrivate::CursorImage;

// Format: size, depth, hot spot (row, column), 16 rows of image bits, 16 rows of mask bits.
const unsigned char B_HAND_CURSOR[68] = {
    16,   1,    2,    2,    0x00, 0x00, 0x60, 0x00, 0x48, 0x00, 0x24, 0x00, 0x26, 0x00,
    0x13, 0x80, 0x12, 0x60, 0x09, 0x28, 0x68, 0x02, 0x98, 0x01, 0x82, 0x01, 0x40, 0x01,
    0x20, 0x03, 0x10, 0x06, 0x0c, 0x08, 0x03, 0xf0, 0x00, 0x00, 0x60, 0x00, 0x78, 0x00,
    0x3c, 0x00, 0x3e, 0x00, 0x1f, 0x80, 0x1f, 0xe0, 0x0f, 0xf8, 0x6f, 0xfe, 0xff, 0xff,
    0xff, 0xff, 0x7f, 0xff, 0x3f, 0xff, 0x1f, 0xfe, 0x0f, 0xf8, 0x03, 0xf0,
};

const unsigned char B_I_BEAM_CURSOR[68] = {
    16,   1,    5,    8,    0x00, 0x00, 0x00, 0x00, 0x11, 0x00, 0x0a, 0x00, 0x04, 0x00,
    0x04, 0x00, 0x04, 0x00, 0x04, 0x00, 0x04, 0x00, 0x04, 0x00, 0x04, 0x00, 0x04, 0x00,
    0x04, 0x00, 0x0a, 0x00, 0x11, 0x00, 0x00, 0x00, 0x00, 0x00, 0x31, 0x80, 0x3b, 0x80,
    0x1f, 0x00, 0x0e, 0x00, 0x0e, 0x00, 0x0e, 0x00, 0x0e, 0x00, 0x0e, 0x00, 0x0e, 0x00,
    0x0e, 0x00, 0x0e, 0x00, 0x0e, 0x00, 0x1f, 0x00, 0x3b, 0x80, 0x31, 0x80,
};

const BCursor* B_CURSOR_SYSTEM_DEFAULT = new BCursor(B_CURSOR_ID_SYSTEM_DEFAULT);
const BCursor* B_CURSOR_I_BEAM = new BCursor(B_CURSOR_ID_I_BEAM);

static const int32 kDataSide = 16;
static const int32 kMaxSide = 256;  // larger than any host shows

// A hot spot outside would leave the pointer where nothing is seen of it.
static int32 hot_spot(float place, int32 size)
{
    return place > 0 ? int32(std::min(place, float(size - 1))) : 0;
}

static std::shared_ptr<const CursorImage> image_of_data(const uint8* data)
{
    if (data == nullptr || data[0] != kDataSide || data[1] != 1 || data[2] >= kDataSide ||
        data[3] >= kDataSide)
        return nullptr;
    auto image = std::make_shared<CursorImage>();
    image->width = image->height = kDataSide;
    image->hotY = data[2];
    image->hotX = data[3];
    const uint8* bits = data + 4;
    const uint8* mask = bits + 2 * kDataSide;
    for (int32 pixel = 0; pixel < kDataSide * kDataSide; pixel++) {
        int bit = 0x80 >> (pixel & 7);
        bool black = (bits[pixel >> 3] & bit) != 0;
        bool white = (mask[pixel >> 3] & bit) != 0;
        image->pixels.push_back(black ? 0xff000000 : white ? 0xffffffff : 0);
    }
    return image;
}

static std::shared_ptr<const CursorImage> image_of_bitmap(const BBitmap& bitmap, BPoint hotspot)
{
    int32 width = bitmap.Bounds().IntegerWidth() + 1;
    int32 height = bitmap.Bounds().IntegerHeight() + 1;
    if (bitmap.InitCheck() != B_OK || width > kMaxSide || height > kMaxSide)
        return nullptr;
    auto image = std::make_shared<CursorImage>();
    image->width = width;
    image->height = height;
    image->hotX = hot_spot(hotspot.x, width);
    image->hotY = hot_spot(hotspot.y, height);
    image->pixels.resize(size_t(width) * height);
    for (int32 y = 0; y < height; y++) {
        auto* row = static_cast<const uint8*>(bitmap.Bits()) + ptrdiff_t(y) * bitmap.BytesPerRow();
        if (server::ConvertPixels(row, bitmap.ColorSpace(), &image->pixels[size_t(y) * width],
                                  B_RGBA32, width) != B_OK)
            return nullptr;
    }
    return image;
}

static std::shared_ptr<const CursorImage> image_of_id(int32 id)
{
    if (id < B_CURSOR_ID_SYSTEM_DEFAULT || id > B_CURSOR_ID_CREATE_LINK)
        return nullptr;
    auto image = std::make_shared<CursorImage>();
    image->id = id;
    return image;
}

BCursor::BCursor(const void* cursorData)
    : fImage(image_of_data(static_cast<const uint8*>(cursorData)))
{
}

BCursor::BCursor(const BCursor& other) : BArchivable(other), fImage(other.fImage) {}

BCursor::BCursor(BCursorID id) : fImage(image_of_id(id)) {}

BCursor::BCursor(BMessage* data) : BArchivable(data)
{
    int32 id;
    BPoint hotspot;
    const void* pixels;
    ssize_t size;
    int32 width;
    if (data == nullptr)
        return;
    if (data->FindInt32("_id", &id) == B_OK) {
        fImage = image_of_id(id);
        return;
    }
    if (data->FindData("_pixels", B_RAW_TYPE, &pixels, &size) != B_OK ||
        data->FindInt32("_width", &width) != B_OK || data->FindPoint("_hot", &hotspot) != B_OK ||
        width < 1 || width > kMaxSide || size < 4 || size % (4 * width) != 0 ||
        size / (4 * width) > kMaxSide)
        return;
    auto image = std::make_shared<CursorImage>();
    image->width = width;
    image->height = int32(size / (4 * width));
    image->hotX = hot_spot(hotspot.x, image->width);
    image->hotY = hot_spot(hotspot.y, image->height);
    image->pixels.resize(size_t(size) / 4);
    memcpy(image->pixels.data(), pixels, size_t(size));
    fImage = std::move(image);
}

BCursor::BCursor(const BBitmap* bitmap, const BPoint& hotspot)
    : fImage(bitmap != nullptr ? image_of_bitmap(*bitmap, hotspot) : nullptr)
{
}

BCursor::~BCursor() = default;

status_t BCursor::InitCheck() const { return fImage != nullptr ? B_OK : B_BAD_VALUE; }

status_t BCursor::Archive(BMessage* archive, bool deep) const
{
    if (fImage == nullptr)
        return B_NO_INIT;
    status_t status = BArchivable::Archive(archive, deep);
    if (status != B_OK)
        return status;
    if (fImage->id != 0)
        return archive->AddInt32("_id", fImage->id);
    status = archive->AddData("_pixels", B_RAW_TYPE, fImage->pixels.data(),
                              ssize_t(fImage->pixels.size() * sizeof(uint32)));
    if (status == B_OK)
        status = archive->AddInt32("_width", fImage->width);
    if (status == B_OK)
        status = archive->AddPoint("_hot", BPoint(float(fImage->hotX), float(fImage->hotY)));
    return status;
}

BArchivable* BCursor::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "BCursor") ? new BCursor(archive) : nullptr;
}

BCursor& BCursor::operator=(const BCursor& other)
{
    fImage = other.fImage;
    return *this;
}

bool BCursor::operator==(const BCursor& other) const
{
    if (fImage == nullptr || other.fImage == nullptr)
        return fImage == other.fImage;
    return *fImage == *other.fImage;
}

bool BCursor::operator!=(const BCursor& other) const { return !(*this == other); }

std::shared_ptr<const CursorImage> BPrivate::cursor_image(const BCursor* cursor)
{
    return cursor != nullptr ? cursor->fImage : nullptr;
}
