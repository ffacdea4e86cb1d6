// Icons as bitmaps, from the user's icon theme and into the user's own part of it. Any thread.

#include "storage/desktop/ThemeIcons.h"

#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include <Bitmap.h>
#include <OS.h>

#include <interface/drawing/SharpPicture.h>
#include <server/screen/Images.h>

#include "storage/desktop/DataFolders.h"
#include "storage/desktop/FileReplacement.h"
#include "support/HostErrors.h"
#include "storage/desktop/IconTheme.h"

namespace storage {

using BPrivate::fail;
using BPrivate::host_failure;

static const bigtime_t kKeptFor_us = 5'000'000;

namespace {

struct FoundIcons {
    std::mutex lock;
    std::unique_ptr<IconTheme> theme;                          // lock, as what follows
    std::map<std::pair<std::string, int>, std::string> paths;  // by name and size
    bigtime_t read_at = 0;
};

}  // namespace

static FoundIcons& found_icons()
{
    static auto* found = new FoundIcons;
    return *found;
}

static void forget_icons()
{
    FoundIcons& found = found_icons();
    std::lock_guard guard(found.lock);
    found.theme = nullptr;
}

static std::string find_icon(const std::string& name, int size)
{
    if (name.empty() || name[0] == '/')
        return name;
    if (name.find('/') != std::string::npos)
        return "";
    FoundIcons& found = found_icons();
    std::lock_guard guard(found.lock);
    const bigtime_t now = system_time();
    if (found.theme == nullptr || now - found.read_at > kKeptFor_us) {
        found.theme = std::make_unique<IconTheme>(users_icon_theme());
        found.paths.clear();
        found.read_at = now;
    }
    const auto [row, is_new] = found.paths.try_emplace({name, size});
    if (is_new)
        row->second = found.theme->Find(name, size);
    return row->second;
}

status_t check_icon(const BBitmap* icon, icon_size size)
{
    if (icon == nullptr || (size != B_MINI_ICON && size != B_LARGE_ICON) || !icon->IsValid())
        return fail(EINVAL);
    const BRect bounds = icon->Bounds();
    return bounds.IntegerWidth() == size - 1 && bounds.IntegerHeight() == size - 1 ? B_OK
                                                                                   : fail(EINVAL);
}

bool has_theme_icon(const std::string& name, icon_size size)
{
    return !find_icon(name, size).empty();
}

status_t copy_icon(const BBitmap& from, BBitmap* to)
{
    if (to->ColorSpace() == B_RGBA32 || from.ColorSpace() != B_RGBA32)
        return to->ImportBits(&from);
    BBitmap copy(from.Bounds(), B_RGBA32);
    status_t status = copy.ImportBits(&from);
    auto* pixels = static_cast<uint32*>(copy.Bits());
    for (int32 i = 0; status == B_OK && i < copy.BitsLength() / 4; i++) {
        const bool shows = pixels[i] >> 24 >= 128;
        pixels[i] = shows ? pixels[i] | 0xFF000000 : B_TRANSPARENT_MAGIC_RGBA32;
    }
    return status == B_OK ? to->ImportBits(&copy) : status;
}

static BBitmap bitmap_of(const std::vector<uint32>& pixels, icon_size size)
{
    const float last = static_cast<float>(size - 1);
    BBitmap bitmap(BRect(0, 0, last, last), 0, B_RGBA32, size * 4);
    bitmap.ImportBits(pixels.data(), static_cast<int32>(pixels.size() * 4), size * 4, 0, B_RGBA32);
    return bitmap;
}

status_t load_theme_icon(const std::vector<std::string>& names, BBitmap* icon, icon_size size)
{
    status_t status = check_icon(icon, size);
    if (status != B_OK)
        return status;
    const int before = errno;
    for (const std::string& name : names) {
        const std::string path = find_icon(name, size);
        std::vector<uint32> pixels;
        if (path.empty() || !server::ReadIconFile(path, size, &pixels))
            continue;
        errno = before;
        status = copy_icon(bitmap_of(pixels, size), icon);
        if (status == B_OK && path.ends_with(".svg"))
            BPrivate::keep_maker(*icon, [path](int32 width, int32 height, auto* larger) {
                return width == height && server::ReadIconFile(path, width, larger);
            });
        return status;
    }
    return fail(ENOENT);
}

// ---- The user's own

static std::string users_theme() { return data_folders().front() + "/icons/hicolor"; }

static std::string users_icon(const std::string& name, icon_size size)
{
    const std::string side = std::to_string(size);
    return users_theme() + "/" + side + "x" + side + "/mimetypes/" + name + ".png";
}

// Other programs look again when the theme's folder has changed.
static void touch_theme()
{
    utimensat(AT_FDCWD, users_theme().c_str(), nullptr, 0);
    forget_icons();
}

status_t write_users_icon(const std::string& name, const BBitmap* icon, icon_size size)
{
    const std::string path = users_icon(name, size);
    if (icon == nullptr) {
        if (unlink(path.c_str()) != 0 && errno != ENOENT)
            return host_failure();
        touch_theme();
        return B_OK;
    }
    status_t status = check_icon(icon, size);
    if (status != B_OK)
        return status;
    BBitmap copy(icon->Bounds(), B_RGBA32);
    status = copy.ImportBits(icon);
    if (status != B_OK)
        return status;
    std::vector<uint32> pixels(static_cast<size_t>(size) * size);
    const auto* bits = static_cast<const uint8*>(copy.Bits());
    for (int y = 0; y < size; y++) {
        memcpy(&pixels[static_cast<size_t>(y) * size], bits + ptrdiff_t(y) * copy.BytesPerRow(),
               size * 4u);
    }
    status = replace_file(path, server::EncodePng(pixels, size, size));
    if (status == B_OK)
        touch_theme();
    return status;
}

void remove_users_icons(const std::string& name)
{
    const int before = errno;
    if (!name.empty() && name.find('/') == std::string::npos) {
        for (const icon_size size : {B_MINI_ICON, B_LARGE_ICON})
            write_users_icon(name, nullptr, size);
    }
    errno = before;
}

}  // namespace storage
