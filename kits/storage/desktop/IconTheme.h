#ifndef STORAGE_ICON_THEME_H
#define STORAGE_ICON_THEME_H

#include <string>
#include <vector>

struct _GKeyFile;

namespace [[gnu::visibility("hidden")]] storage {

// The name of the theme that the user chose, by the settings of the running desktop.
std::string users_icon_theme();

// The files of an icon theme, by the rules of the desktops' icon theme standard.
class IconTheme {
public:
    // The theme of that name, those it inherits from, and those that all fall back to.
    explicit IconTheme(const std::string& name);

    // The file of the icon that fits best at `size` pixels; empty if there is none.
    std::string Find(const std::string& icon, int size) const;

private:
    struct Folder {
        std::string path;  // absolute
        int size, min_size, max_size;
    };

    void _Add(const std::string& name, size_t depth);
    void _AddFolder(struct _GKeyFile* index, const std::string& leaf,
                    const std::vector<std::string>& places);

    std::vector<std::string> fNames;
    std::vector<std::vector<Folder>> fThemes;  // the nearest first
};

}  // namespace storage

#endif  // STORAGE_ICON_THEME_H
