// The text files of the desktop's MIME database, which its update program writes beside the cache.

#include "storage/mime/SharedMime.h"

#include <stdlib.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <set>

#include <gio/gio.h>

#include "storage/desktop/DataFolders.h"
#include "storage/desktop/KeptFiles.h"

namespace storage {

static std::atomic<bool> sStale = true;

// Of a type whose patterns in the folders behind do not count.
static const std::string_view kNoMoreGlobs = ":__NOGLOBS__";

// The two parts of "first<separator>second"; false for other lines.
static bool split_line(const std::string& line, char separator, std::string* first,
                       std::string* second)
{
    const size_t at = line.find(separator);
    if (line.empty() || line[0] == '#' || at == std::string::npos)
        return false;
    *first = line.substr(0, at);
    *second = line.substr(at + 1);
    return true;
}

static std::vector<std::string> lines_of(const std::string& path)
{
    return split_text(read_text_file(path), '\n');
}

struct Glob {
    int weight;
    std::string type;
    std::string extension;
};

// weight:type:pattern[:flags]; only patterns "*.extension" tell extensions.
static bool parse_glob(const std::string& line, Glob* glob)
{
    std::string weight, rest, pattern;
    if (!split_line(line, ':', &weight, &rest) || !split_line(rest, ':', &glob->type, &pattern))
        return false;
    pattern = pattern.substr(0, pattern.find(':'));
    if (!pattern.starts_with("*.") || pattern.find_first_of("*?[", 2) != std::string::npos)
        return false;
    glob->weight = atoi(weight.c_str());
    glob->extension = pattern.substr(2);
    return true;
}

void SharedMime::_Read(const std::string& folder, bool users)
{
    std::string first, second;
    for (const std::string& type : lines_of(folder + "/types")) {
        fNames[lower_case(type)] = type;
        fOrigins[lower_case(type)] |= users ? 1 : 2;
    }
    for (const std::string& line : lines_of(folder + "/aliases")) {
        if (split_line(line, ' ', &first, &second))
            fNames.try_emplace(lower_case(first), second);
    }
    for (const std::string& line : lines_of(folder + "/subclasses")) {
        if (split_line(line, ' ', &first, &second))
            fParents.emplace(lower_case(first), second);
    }
    for (const std::string& line : lines_of(folder + "/icons")) {
        if (split_line(line, ':', &first, &second))
            fIcons.try_emplace(lower_case(first), second);
    }
    for (const std::string& line : lines_of(folder + "/generic-icons")) {
        if (split_line(line, ':', &first, &second))
            fGenericIcons.try_emplace(lower_case(first), second);
    }
    std::vector<Glob> globs;
    std::vector<std::string> settled;
    Glob glob;
    for (const std::string& line : lines_of(folder + "/globs2")) {
        if (parse_glob(line, &glob) && !fSettled.contains(lower_case(glob.type)))
            globs.push_back(glob);
        else if (line.ends_with(kNoMoreGlobs))
            settled.push_back(lower_case(glob.type));
    }
    std::stable_sort(globs.begin(), globs.end(),
                     [](const Glob& a, const Glob& b) { return a.weight > b.weight; });
    for (const Glob& row : globs)
        fExtensions.emplace(lower_case(row.type), row.extension);
    fSettled.insert(settled.begin(), settled.end());
}

static std::vector<FolderChanges::Folder> mime_folders()
{
    std::vector<FolderChanges::Folder> folders;
    for (const std::string& data : data_folders())
        folders.push_back({data + "/mime", ""});
    return folders;
}

std::shared_ptr<const SharedMime> SharedMime::Get()
{
    auto& [lock, changes, known] = kept_while_running<std::shared_ptr<const SharedMime>>();
    std::lock_guard guard(lock);
    const bool changed = known == nullptr || changes.Changed();
    if (!sStale.exchange(false) && !changed)
        return known;
    const auto folders = mime_folders();
    changes.Watch(folders);
    auto database = std::make_shared<SharedMime>();
    for (size_t i = 0; i < folders.size(); i++)
        database->_Read(folders[i].path, i == 0);
    for (const auto& [lower, origin] : database->fOrigins)
        database->fTypes.push_back(database->fNames[lower]);
    std::sort(database->fTypes.begin(), database->fTypes.end());
    // GIO looks for changes every few seconds only; told its folders, it does so at once.
    g_content_type_set_mime_dirs(nullptr);
    known = database;
    return known;
}

void SharedMime::Refresh() { sStale = true; }

std::string SharedMime::CanonicalName(std::string_view type) const
{
    const auto found = fNames.find(lower_case(type));
    return found != fNames.end() ? found->second : std::string(type);
}

bool SharedMime::Contains(std::string_view type) const { return fNames.contains(lower_case(type)); }

bool SharedMime::IsOwn(std::string_view type) const
{
    const auto found = fOrigins.find(lower_case(type));
    return found != fOrigins.end() && found->second == 1;
}

static std::vector<std::string> all_of(
    const std::multimap<std::string, std::string, std::less<>>& names, const std::string& key)
{
    std::vector<std::string> list;
    const auto [first, last] = names.equal_range(key);
    for (auto row = first; row != last; ++row) {
        if (std::find(list.begin(), list.end(), row->second) == list.end())
            list.push_back(row->second);
    }
    return list;
}

std::vector<std::string> SharedMime::Parents(std::string_view type) const
{
    std::vector<std::string> parents = all_of(fParents, lower_case(CanonicalName(type)));
    for (size_t i = 0; i < parents.size(); i++) {  // grows meanwhile
        for (const std::string& parent : all_of(fParents, lower_case(parents[i]))) {
            if (std::find(parents.begin(), parents.end(), parent) == parents.end())
                parents.push_back(parent);
        }
    }
    return parents;
}

std::vector<std::string> SharedMime::Extensions(std::string_view type) const
{
    return all_of(fExtensions, lower_case(CanonicalName(type)));
}

std::vector<std::string> SharedMime::OwnIconNames(std::string_view type) const
{
    std::vector<std::string> icons;
    const auto own = fIcons.find(lower_case(CanonicalName(type)));
    if (own != fIcons.end())
        icons.push_back(own->second);
    std::string plain = CanonicalName(type);
    std::replace(plain.begin(), plain.end(), '/', '-');
    icons.push_back(plain);
    return icons;
}

std::vector<std::string> SharedMime::IconNames(std::string_view type) const
{
    const std::string name = lower_case(CanonicalName(type));
    std::vector<std::string> icons = OwnIconNames(type);
    const auto generic = fGenericIcons.find(name);
    if (generic != fGenericIcons.end())
        icons.push_back(generic->second);
    icons.push_back(name.substr(0, name.find('/')) + "-x-generic");
    return icons;
}

}  // namespace storage
