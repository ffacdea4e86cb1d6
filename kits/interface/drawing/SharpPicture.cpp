// The makers of bitmaps, by the bitmap's address. Each knows a sum of the bits that it goes with.

#include <interface/drawing/SharpPicture.h>

#include <Bitmap.h>

#include <interface/drawing/BitmapSurface.h>
#include <server/screen/Screen.h>

#include <atomic>
#include <cstring>
#include <mutex>
#include <unordered_map>

namespace BPrivate {

namespace {

const int64 kMostPixels = 1 << 24;  // as many as a large screen has
const size_t kMostSizes = 4;        // that one drawing is kept in

struct Made {
    int32 width, height;
    std::shared_ptr<const std::vector<uint32>> pixels;  // null: it can not be made
};

struct Kept {
    PictureMaker maker;
    uint64 sum;
    std::mutex lock;         // guards what follows; the maker runs under it
    std::vector<Made> made;  // those asked for last, the oldest first
};

using KeptRef = std::shared_ptr<Kept>;

// Never destroyed: bitmaps may outlive main().
std::mutex& table_lock()
{
    static auto* lock = new std::mutex;
    return *lock;
}

std::unordered_map<const BBitmap*, KeptRef>& table()
{
    static auto* table = new std::unordered_map<const BBitmap*, KeptRef>;
    return *table;
}

std::atomic<int32> sCount{0};  // of the table's rows

uint64 sum_of(const BBitmap& bitmap)
{
    const server::Surface surface = surface_of(bitmap);
    uint64 sum = 0;
    for (int32 y = 0; y < surface.height; y++) {
        const auto* row =
            reinterpret_cast<const uint32*>(surface.bits + ptrdiff_t(y) * surface.bytesPerRow);
        for (int32 x = 0; x < surface.width; x++)
            sum = (sum ^ row[x]) * 0x9E3779B97F4A7C15u;
    }
    return sum;
}

KeptRef kept_of(const BBitmap& bitmap)
{
    if (sCount == 0)
        return nullptr;
    std::lock_guard<std::mutex> guard(table_lock());
    const auto row = table().find(&bitmap);
    return row != table().end() ? row->second : nullptr;
}

void enter(const BBitmap& bitmap, KeptRef kept)
{
    std::lock_guard<std::mutex> guard(table_lock());
    table()[&bitmap] = std::move(kept);
    sCount = int32(table().size());
}

}  // namespace

bool has_fine_screen() { return server::ScreenScale() != 1; }

void keep_maker(const BBitmap& bitmap, PictureMaker maker)
{
    if (!has_fine_screen() || !bitmap.IsValid() || bitmap.ColorSpace() != B_RGBA32)
        return;
    auto kept = std::make_shared<Kept>();
    kept->maker = std::move(maker);
    kept->sum = sum_of(bitmap);
    enter(bitmap, std::move(kept));
}

void copy_maker(const BBitmap& from, const BBitmap& to)
{
    if (KeptRef kept = kept_of(from))
        enter(to, std::move(kept));
}

void forget_maker(const BBitmap* bitmap)
{
    if (sCount == 0)
        return;
    KeptRef last;  // goes after the lock
    std::lock_guard<std::mutex> guard(table_lock());
    const auto row = table().find(bitmap);
    if (row == table().end())
        return;
    last = std::move(row->second);
    table().erase(row);
    sCount = int32(table().size());
}

std::shared_ptr<const std::vector<uint32>> sharp_pixels(const BBitmap& bitmap, int32 width,
                                                        int32 height)
{
    const KeptRef kept = kept_of(bitmap);
    if (kept == nullptr || width < 1 || height < 1 || int64(width) * height > kMostPixels ||
        sum_of(bitmap) != kept->sum)
        return nullptr;
    std::lock_guard<std::mutex> guard(kept->lock);
    for (const Made& made : kept->made) {
        if (made.width == width && made.height == height)
            return made.pixels;
    }
    auto pixels = std::make_shared<std::vector<uint32>>();
    if (!kept->maker(width, height, pixels.get()) || int64(pixels->size()) != int64(width) * height)
        pixels = nullptr;
    if (kept->made.size() == kMostSizes)
        kept->made.erase(kept->made.begin());
    kept->made.push_back({width, height, pixels});
    return pixels;
}

}  // namespace BPrivate
