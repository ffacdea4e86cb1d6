#ifndef STORAGE_THEME_ICONS_H
#define STORAGE_THEME_ICONS_H

#include <string>
#include <vector>

#include <Mime.h>
#include <SupportDefs.h>

class BBitmap;

namespace [[gnu::visibility("hidden")]] storage {

// Icons of the user's icon theme. Any thread. A theme that changes is seen after a few seconds,
// what this process changes at once.

// Draws the first of these that has an image: names in the theme, or absolute paths. `icon`
// must be `size` pixels square (B_BAD_VALUE); B_ENTRY_NOT_FOUND if there is none.
status_t load_theme_icon(const std::vector<std::string>& names, BBitmap* icon, icon_size size);
bool has_theme_icon(const std::string& name, icon_size size);

// Icons of the user's own, in the theme that all others fall back to. Null removes one.
status_t write_users_icon(const std::string& name, const BBitmap* icon, icon_size size);
void remove_users_icons(const std::string& name);

// B_BAD_VALUE unless the bitmap is `size` pixels square.
status_t check_icon(const BBitmap* icon, icon_size size);

// Copies the pixels of one icon into another of the same size. Where that has no alpha, a pixel
// is either opaque or transparent.
status_t copy_icon(const BBitmap& from, BBitmap* to);

}  // namespace storage

#endif  // STORAGE_THEME_ICONS_H
