// The signs of alerts: drawn four times as large as they are shown, so that their edges are smooth.

#include "interface/alert/AlertIcon.h"

#include <Bitmap.h>
#include <View.h>

#include <cmath>

namespace BPrivate {

static const int32 kOver = 4;   // pixels drawn across and down for each that is shown
static const float kGrid = 32;  // the signs are laid out on

static const rgb_color kWhite = {255, 255, 255, 255};
static const rgb_color kEdge = {40, 40, 40, 255};
static const rgb_color kInk = {30, 30, 30, 255};
static const rgb_color kBlue = {51, 102, 203, 255};
static const rgb_color kYellow = {255, 203, 0, 255};
static const rgb_color kGlass = {255, 240, 150, 255};
static const rgb_color kMetal = {150, 150, 150, 255};
static const rgb_color kRed = {214, 42, 32, 255};

namespace {

// Draws on a grid of 32 by 32, whatever the size.
class Sign {
public:
    Sign(BView* view, int32 size) : fView(view), fScale(float(size * kOver) / kGrid) {}

    void Disc(float x, float y, float radius, rgb_color color)
    {
        fView->SetHighColor(color);
        fView->FillEllipse(BPoint(x * fScale, y * fScale), radius * fScale, radius * fScale);
    }
    void Box(float left, float top, float right, float bottom, rgb_color color)
    {
        fView->SetHighColor(color);
        fView->FillRect(
            BRect(left * fScale, top * fScale, right * fScale - 1, bottom * fScale - 1));
    }
    // The corners in order, as x and y.
    template <size_t Count>
    void Shape(const float (&corners)[Count], rgb_color color)
    {
        BPoint points[Count / 2];
        for (size_t i = 0; i < Count / 2; i++)
            points[i].Set(corners[2 * i] * fScale, corners[2 * i + 1] * fScale);
        fView->SetHighColor(color);
        fView->FillPolygon(points, int32(Count / 2));
    }

private:
    BView* fView;
    const float fScale;
};

}  // namespace

static void draw_info(Sign& sign)
{
    sign.Disc(16, 16, 14, kEdge);
    sign.Disc(16, 16, 13, kBlue);
    sign.Disc(16, 9, 2.5f, kWhite);
    sign.Box(12.5f, 13.5f, 18, 15.5f, kWhite);
    sign.Box(14, 13.5f, 18, 24, kWhite);
    sign.Box(12, 22.5f, 20, 24.5f, kWhite);
}

static void draw_idea(Sign& sign)
{
    sign.Disc(16, 12.5f, 10.5f, kEdge);
    sign.Box(11, 21, 21, 30, kEdge);
    sign.Disc(16, 12.5f, 9.5f, kYellow);
    sign.Disc(13, 9.5f, 4, kGlass);
    sign.Box(12, 20, 20, 23, kYellow);
    for (float y = 23.5f; y < 29; y += 2)
        sign.Box(12, y, 20, y + 1.25f, kMetal);
}

static void draw_warning(Sign& sign)
{
    sign.Shape({16, 1.5f, 31, 29.5f, 1, 29.5f}, kEdge);
    sign.Shape({16, 4, 29, 28.5f, 3, 28.5f}, kYellow);
    sign.Shape({14, 11, 18, 11, 17, 21, 15, 21}, kInk);
    sign.Disc(16, 24.5f, 2, kInk);
}

static void draw_stop(Sign& sign)
{
    sign.Shape({10.2f, 2, 21.8f, 2, 30, 10.2f, 30, 21.8f, 21.8f, 30, 10.2f, 30, 2, 21.8f, 2, 10.2f},
               kEdge);
    sign.Shape({10.6f, 3, 21.4f, 3, 29, 10.6f, 29, 21.4f, 21.4f, 29, 10.6f, 29, 3, 21.4f, 3, 10.6f},
               kRed);
    sign.Box(7, 13.5f, 25, 18.5f, kWhite);
}

// A bitmap with the sign, larger by kOver.
static std::unique_ptr<BBitmap> draw_large(alert_type type, int32 size)
{
    const float last = float(size * kOver - 1);
    auto large = std::make_unique<BBitmap>(BRect(0, 0, last, last), B_RGBA32, true);
    if (large->InitCheck() != B_OK || !large->Lock())
        return nullptr;
    auto* view = new BView(large->Bounds(), "", B_FOLLOW_NONE, 0);
    large->AddChild(view);
    view->SetHighColor(0, 0, 0, 0);
    view->FillRect(view->Bounds());
    Sign sign(view, size);
    switch (type) {
        case B_INFO_ALERT:
            draw_info(sign);
            break;
        case B_IDEA_ALERT:
            draw_idea(sign);
            break;
        case B_WARNING_ALERT:
            draw_warning(sign);
            break;
        default:
            draw_stop(sign);
            break;
    }
    view->Sync();
    large->Unlock();
    return large;
}

// The mean of a square of pixels, each counting as much as it covers.
static uint32 mean_of(const uint32* pixels, int32 row)
{
    uint32 sums[4] = {};
    for (int32 y = 0; y < kOver; y++) {
        for (int32 x = 0; x < kOver; x++) {
            const uint32 pixel = pixels[y * row + x];
            const uint32 alpha = pixel >> 24;
            for (int32 i = 0; i < 3; i++)
                sums[i] += (pixel >> (8 * i) & 0xff) * alpha;
            sums[3] += alpha;
        }
    }
    if (sums[3] == 0)
        return 0;
    uint32 result = sums[3] / (kOver * kOver) << 24;
    for (int32 i = 0; i < 3; i++)
        result |= sums[i] / sums[3] << (8 * i);
    return result;
}

std::unique_ptr<BBitmap> alert_icon(alert_type type, int32 size)
{
    if (type < B_INFO_ALERT || type > B_STOP_ALERT || size <= 0)
        return nullptr;
    const std::unique_ptr<BBitmap> large = draw_large(type, size);
    auto icon = std::make_unique<BBitmap>(BRect(0, 0, float(size - 1), float(size - 1)), B_RGBA32);
    if (large == nullptr || icon->InitCheck() != B_OK)
        return nullptr;
    const auto* from = static_cast<const uint32*>(large->Bits());
    auto* to = static_cast<uint32*>(icon->Bits());
    const int32 row = large->BytesPerRow() / 4;
    for (int32 y = 0; y < size; y++) {
        for (int32 x = 0; x < size; x++)
            to[y * icon->BytesPerRow() / 4 + x] = mean_of(from + y * kOver * row + x * kOver, row);
    }
    return icon;
}

}  // namespace BPrivate
