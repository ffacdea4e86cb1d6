// Which applications open which types: the lists "mimeapps.list" of the user, the system and its
// desktops, and what the entries tell themselves. Any thread.

#include "storage/mime/MimeApplications.h"

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <sstream>
#include <utility>

#include "storage/desktop/DataFolders.h"
#include "storage/desktop/DesktopEntries.h"
#include "storage/desktop/FileReplacement.h"
#include "storage/desktop/KeptFiles.h"
#include "storage/mime/SharedMime.h"

namespace storage {

static const char* const kListName = "mimeapps.list";
static const size_t kNoPlace = static_cast<size_t>(-1);

using Choices = std::map<std::string, std::vector<std::string>>;  // ids by lower-case type

// One list; what its entries tell themselves comes behind the last list of a folder.
struct List {
    Choices defaults, added, removed;
    size_t place = kNoPlace;  // of the data folder whose entries follow
    bool users = false;       // the one that the user's choices are written to
};

static List parse_list(const std::string& text)
{
    List list;
    Choices* group = nullptr;
    for (const std::string& line : split_text(text, '\n')) {
        if (line[0] == '[') {
            group = line.starts_with("[Default Applications]")   ? &list.defaults
                    : line.starts_with("[Added Associations]")   ? &list.added
                    : line.starts_with("[Removed Associations]") ? &list.removed
                                                                 : nullptr;
            continue;
        }
        const size_t equals = line.find('=');
        if (group == nullptr || line[0] == '#' || equals == std::string::npos)
            continue;
        std::string type = line.substr(0, equals);
        std::string ids = line.substr(equals + 1);
        type.erase(type.find_last_not_of(" \t") + 1);
        ids.erase(0, ids.find_first_not_of(" \t"));
        ids.erase(ids.find_last_not_of(" \t\r") + 1);
        (*group)[lower_case(type)] = split_text(ids, ';');
    }
    return list;
}

static std::vector<List> read_lists()
{
    std::vector<std::string> names;
    for (const std::string& desktop : desktop_names())
        names.push_back(desktop + "-" + kListName);
    names.push_back(kListName);
    std::vector<List> lists;
    for (const std::string& folder : config_folders()) {
        for (const std::string& name : names)
            lists.push_back(parse_list(read_text_file(folder + "/" + name)));
        lists[names.size() - 1].users = true;
    }
    const std::vector<std::string> data = data_folders();
    for (size_t place = 0; place < data.size(); place++) {
        for (const std::string& name : names)
            lists.push_back(parse_list(read_text_file(data[place] + "/applications/" + name)));
        lists.back().place = place;
    }
    return lists;
}

static std::shared_ptr<const std::vector<List>> current_lists()
{
    auto& [lock, changes, lists] = kept_while_running<std::shared_ptr<const std::vector<List>>>();
    std::lock_guard guard(lock);
    if (lists == nullptr || changes.Changed()) {
        std::vector<FolderChanges::Folder> folders;
        for (const std::string& folder : config_folders())
            folders.push_back({folder, kListName});
        for (const std::string& folder : data_folders())
            folders.push_back({folder + "/applications", kListName});
        changes.Watch(folders);
        lists = std::make_shared<const std::vector<List>>(read_lists());
    }
    return lists;
}

static const std::vector<std::string>& ids_for(const Choices& choices, const std::string& type)
{
    static const auto* none = new std::vector<std::string>;
    const auto found = choices.find(type);
    return found != choices.end() ? found->second : *none;
}

static bool tells_type(const Application& application, const std::string& type)
{
    return std::any_of(application.types.begin(), application.types.end(),
                       [&](const std::string& own) { return lower_case(own) == type; });
}

namespace {

// Applications in the order in which they were found, each once.
class Found {
public:
    void Add(const ApplicationRef& application)
    {
        if (application != nullptr && fIds.insert(application->id).second)
            fList.push_back(application);
    }
    std::vector<ApplicationRef> Take() { return std::move(fList); }

private:
    std::set<std::string> fIds;
    std::vector<ApplicationRef> fList;
};

}  // namespace

static std::vector<ApplicationRef> ranked_applications(const std::string& type)
{
    const auto lists = current_lists();
    const std::vector<ApplicationRef> all = all_applications();
    Found found;
    for (const List& list : *lists) {
        for (const std::string& id : ids_for(list.defaults, type))
            found.Add(find_application_by_id(id));
    }
    std::set<std::string> removed;
    for (const List& list : *lists) {
        for (const std::string& id : ids_for(list.added, type)) {
            if (!removed.contains(id))
                found.Add(find_application_by_id(id));
        }
        const auto& taken = ids_for(list.removed, type);
        removed.insert(taken.begin(), taken.end());
        for (const ApplicationRef& application : all) {
            if (application->place == list.place && !removed.contains(application->id) &&
                tells_type(*application, type))
                found.Add(application);
        }
    }
    return found.Take();
}

// By the type's own name and, if that is an alias, by the one given.
std::vector<ApplicationRef> applications_for(std::string_view type)
{
    const std::string own = lower_case(SharedMime::Get()->CanonicalName(type));
    const std::string given = lower_case(type);
    std::vector<ApplicationRef> list = ranked_applications(own);
    if (given != own) {
        Found found;
        for (const ApplicationRef& application : list)
            found.Add(application);
        for (const ApplicationRef& application : ranked_applications(given))
            found.Add(application);
        list = found.Take();
    }
    return list;
}

// All text is a kind of plain text.
static std::vector<std::string> parents_of(std::string_view type)
{
    std::vector<std::string> parents = SharedMime::Get()->Parents(type);
    const std::string plain = "text/plain";
    const bool is_text = lower_case(type.substr(0, 5)) == "text/" && lower_case(type) != plain;
    if (is_text && std::find(parents.begin(), parents.end(), plain) == parents.end())
        parents.push_back(plain);
    return parents;
}

std::vector<ApplicationRef> applications_for_parents(std::string_view type)
{
    Found found;
    for (const std::string& parent : parents_of(type)) {
        for (const ApplicationRef& application : applications_for(parent))
            found.Add(application);
    }
    return found.Take();
}

ApplicationRef default_application(std::string_view type)
{
    std::vector<ApplicationRef> list = applications_for(type);
    if (list.empty())
        list = applications_for_parents(type);
    return list.empty() ? nullptr : list.front();
}

// ---- The user's choice

static const char* const kDefaults = "[Default Applications]";
static const char* const kAdded = "[Added Associations]";
static const char* const kRemoved = "[Removed Associations]";

static std::string users_list() { return config_folders().front() + "/" + kListName; }

// The key of a line "key=value"; empty for others.
static std::string key_of(const std::string& line)
{
    const size_t equals = line.find('=');
    if (line.empty() || line[0] == '#' || line[0] == '[' || equals == std::string::npos)
        return "";
    std::string key = line.substr(0, equals);
    return key.erase(key.find_last_not_of(" \t") + 1);
}

static std::vector<std::string> all_lines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

// The text with one value set, or without it. All else stays as it is.
static std::string with_value(const std::string& text, const std::string& group,
                              const std::string& type, const std::optional<std::string>& value)
{
    std::vector<std::string> edited;
    size_t group_end = 0;  // behind its last line that is not blank; 0: there is no such group
    bool inside = false;
    bool written = false;
    for (const std::string& line : all_lines(text)) {
        if (line.starts_with('['))
            inside = line.starts_with(group);
        const bool matches = inside && lower_case(key_of(line)) == lower_case(type);
        if (!matches)
            edited.push_back(line);
        else if (value && !written)
            edited.push_back(key_of(line) + "=" + *value);
        written |= matches;
        if (inside && !edited.empty() && !edited.back().empty())
            group_end = edited.size();
    }
    if (value && !written) {
        const std::string added = std::string(type).append("=").append(*value);
        if (group_end > 0) {
            edited.insert(edited.begin() + static_cast<ptrdiff_t>(group_end), added);
        } else {
            if (!edited.empty() && !edited.back().empty())
                edited.emplace_back();
            edited.insert(edited.end(), {group, added});
        }
    }
    std::string whole;
    for (const std::string& line : edited)
        whole.append(line).append("\n");
    return whole;
}

static std::string joined(const std::vector<std::string>& ids)
{
    std::string text;
    for (const std::string& id : ids)
        text.append(id).append(";");
    return text;
}

static std::string with_choice(const std::string& text, const std::string& type,
                               const Application& application)
{
    const List list = parse_list(text);
    const std::string& id = application.id;
    std::string edited = with_value(text, kDefaults, type, id);
    std::vector<std::string> removed = ids_for(list.removed, lower_case(type));
    if (std::erase(removed, id) > 0) {
        edited = with_value(edited, kRemoved, type,
                            removed.empty() ? std::nullopt : std::optional(joined(removed)));
    }
    std::vector<std::string> added = ids_for(list.added, lower_case(type));
    if (!tells_type(application, lower_case(type)) &&
        std::find(added.begin(), added.end(), id) == added.end()) {
        added.insert(added.begin(), id);
        edited = with_value(edited, kAdded, type, joined(added));
    }
    return edited;
}

std::map<std::string, std::vector<std::string>> users_choices()
{
    for (const List& list : *current_lists()) {
        if (list.users)
            return list.defaults;
    }
    return {};
}

ApplicationRef chosen_application(std::string_view type)
{
    const std::string own = lower_case(SharedMime::Get()->CanonicalName(type));
    const Choices choices = users_choices();
    for (const std::string& id : ids_for(choices, own)) {
        if (ApplicationRef application = find_application_by_id(id))
            return application;
    }
    return nullptr;
}

status_t choose_application(std::string_view type, const ApplicationRef& application)
{
    const std::string own = SharedMime::Get()->CanonicalName(type);
    return edit_file(users_list(), [&](const std::string& text) {
        return application != nullptr ? with_choice(text, own, *application)
                                      : with_value(text, kDefaults, own, std::nullopt);
    });
}

}  // namespace storage
