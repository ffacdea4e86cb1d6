#ifndef STORAGE_VOLUME_ICONS_H
#define STORAGE_VOLUME_ICONS_H

#include <string>
#include <vector>

namespace [[gnu::visibility("hidden")]] storage {

struct Mount;

// Names of icons in the theme, the best first.
std::vector<std::string> volume_icons(const Mount& mount);
std::vector<std::string> device_icons(const std::string& device);

}  // namespace storage

#endif  // STORAGE_VOLUME_ICONS_H
