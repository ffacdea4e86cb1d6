// The notes of types: read once and again when they have changed, written whole.

#include "storage/mime/MimeNotes.h"

#include <mutex>

#include <glib.h>

#include "storage/desktop/DataFolders.h"
#include "storage/desktop/FileReplacement.h"
#include "storage/desktop/KeptFiles.h"
#include "support/Held.h"

namespace storage {

using BPrivate::Held;
using BPrivate::take_text;
using BPrivate::take_texts;

static const char* const kName = "types.ini";

static std::string notes_path() { return own_data_folder() + "/" + kName; }

struct NotesFile {
    static std::shared_ptr<const MimeNotes> Parse(const std::string& text)
    {
        auto notes = std::make_shared<MimeNotes>();
        const Held<GKeyFile> file(g_key_file_new());
        if (g_key_file_load_from_data(file.get(), text.data(), text.size(), G_KEY_FILE_NONE,
                                      nullptr)) {
            for (const std::string& group : take_texts(g_key_file_get_groups(file.get(), nullptr)))
                ReadGroup(file.get(), group, &notes->fGroups[lower_case(group)]);
        }
        return notes;
    }
    static void ReadGroup(GKeyFile* file, const std::string& name, MimeNotes::Group* group)
    {
        group->type = name;
        for (const std::string& key :
             take_texts(g_key_file_get_keys(file, name.c_str(), nullptr, nullptr))) {
            const Held<char> value(g_key_file_get_string(file, name.c_str(), key.c_str(), nullptr));
            if (value != nullptr)
                group->values[key] = value.get();
        }
    }
    static status_t Write(const MimeNotes& notes)
    {
        const Held<GKeyFile> file(g_key_file_new());
        for (const auto& [lower, group] : notes.fGroups) {
            for (const auto& [key, value] : group.values)
                g_key_file_set_string(file.get(), group.type.c_str(), key.c_str(), value.c_str());
        }
        gsize size = 0;
        const Held<char> text(g_key_file_to_data(file.get(), &size, nullptr));
        return replace_file(notes_path(), std::string(text.get(), size));
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
    return take_text(g_base64_encode(static_cast<const guchar*>(bytes), size));
}

std::string decode_bytes(const std::string& text) { return BPrivate::decode_base64(text); }

}  // namespace storage
