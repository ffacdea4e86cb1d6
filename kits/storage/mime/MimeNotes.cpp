// The notes of types: read once and again when they have changed, written whole.

#include "storage/mime/MimeNotes.h"

#include <mutex>

#include <glib.h>

#include "storage/desktop/DataFolders.h"
#include "storage/desktop/FileReplacement.h"
#include "storage/desktop/KeptFiles.h"

namespace storage {

static const char* const kName = "types.ini";

static std::string notes_path() { return own_data_folder() + "/" + kName; }

struct NotesFile {
    static std::shared_ptr<const MimeNotes> Parse(const std::string& text)
    {
        auto notes = std::make_shared<MimeNotes>();
        GKeyFile* file = g_key_file_new();
        if (g_key_file_load_from_data(file, text.data(), text.size(), G_KEY_FILE_NONE, nullptr)) {
            char** groups = g_key_file_get_groups(file, nullptr);
            for (char** group = groups; *group != nullptr; group++)
                ReadGroup(file, *group, &notes->fGroups[lower_case(*group)]);
            g_strfreev(groups);
        }
        g_key_file_unref(file);
        return notes;
    }
    static void ReadGroup(GKeyFile* file, const char* name, MimeNotes::Group* group)
    {
        group->type = name;
        char** keys = g_key_file_get_keys(file, name, nullptr, nullptr);
        for (char** key = keys; key != nullptr && *key != nullptr; key++) {
            char* value = g_key_file_get_string(file, name, *key, nullptr);
            if (value != nullptr)
                group->values[*key] = value;
            g_free(value);
        }
        g_strfreev(keys);
    }
    static status_t Write(const MimeNotes& notes)
    {
        GKeyFile* file = g_key_file_new();
        for (const auto& [lower, group] : notes.fGroups) {
            for (const auto& [key, value] : group.values)
                g_key_file_set_string(file, group.type.c_str(), key.c_str(), value.c_str());
        }
        gsize size = 0;
        char* text = g_key_file_to_data(file, &size, nullptr);
        const status_t status = replace_file(notes_path(), std::string(text, size));
        g_free(text);
        g_key_file_unref(file);
        return status;
    }
};

std::shared_ptr<const MimeNotes> MimeNotes::Get()
{
    auto& [lock, changes, notes] = kept_while_running<std::shared_ptr<const MimeNotes>>();
    std::lock_guard guard(lock);
    if (notes == nullptr || changes.Changed()) {
        changes.Watch({{own_data_folder(), kName}});
        notes = NotesFile::Parse(read_text_file(notes_path()));
    }
    return notes;
}

status_t MimeNotes::Set(const std::string& type, const std::string& key,
                        const std::optional<std::string>& value)
{
    MimeNotes notes(*Get());
    const std::string lower = lower_case(type);
    if (!value && !notes.fGroups.contains(lower))
        return B_OK;
    Group& group = notes.fGroups[lower];
    if (group.type.empty())
        group.type = type;
    if (value)
        group.values[key] = *value;
    else
        group.values.erase(key);
    return NotesFile::Write(notes);
}

status_t MimeNotes::Remove(const std::string& type)
{
    MimeNotes notes(*Get());
    return notes.fGroups.erase(lower_case(type)) > 0 ? NotesFile::Write(notes) : B_OK;
}

bool MimeNotes::Contains(std::string_view type) const { return fGroups.contains(lower_case(type)); }

std::optional<std::string> MimeNotes::Find(std::string_view type, const std::string& key) const
{
    const auto group = fGroups.find(lower_case(type));
    if (group == fGroups.end())
        return std::nullopt;
    const auto value = group->second.values.find(key);
    return value != group->second.values.end() ? std::optional(value->second) : std::nullopt;
}

std::vector<std::string> MimeNotes::Types() const
{
    std::vector<std::string> types;
    for (const auto& [lower, group] : fGroups)
        types.push_back(group.type);
    return types;
}

std::map<std::string, std::string> MimeNotes::Values(std::string_view type) const
{
    const auto group = fGroups.find(lower_case(type));
    return group != fGroups.end() ? group->second.values : std::map<std::string, std::string>();
}

std::string encode_bytes(const void* bytes, size_t size)
{
    char* text = g_base64_encode(static_cast<const guchar*>(bytes), size);
    std::string copy = text;
    g_free(text);
    return copy;
}

std::string decode_bytes(const std::string& text)
{
    gsize size = 0;
    guchar* bytes = g_base64_decode(text.c_str(), &size);
    std::string copy(reinterpret_cast<char*>(bytes), size);
    g_free(bytes);
    return copy;
}

}  // namespace storage
