#ifndef SUPPORT_HELD_H
#define SUPPORT_HELD_H

// What GLib gives away and its owner has to give back, held as long as the holder lives.

#include <gio/gio.h>

#include <memory>
#include <string>
#include <vector>

namespace [[gnu::visibility("hidden")]] BPrivate {

struct GiveBack {
    void operator()(char* text) const { g_free(text); }
    void operator()(guchar* bytes) const { g_free(bytes); }
    void operator()(char** texts) const { g_strfreev(texts); }
    void operator()(GBookmarkFile* file) const { g_bookmark_file_free(file); }
    void operator()(GDateTime* time) const { g_date_time_unref(time); }
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(GKeyFile* file) const { g_key_file_unref(file); }
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
    void operator()(GSettingsSchema* schema) const { g_settings_schema_unref(schema); }
    void operator()(GSource* source) const { g_source_unref(source); }
    void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
// One of the above: Held<GKeyFile>, Held<char> for a text, Held<char*> for a list of texts.
template <class Thing>
using Held = std::unique_ptr<Thing, GiveBack>;

struct GiveBackObject {
    void operator()(gpointer object) const { g_object_unref(object); }
};
// One of GLib's objects, or of those made from them.
template <class Object>
using HeldObject = std::unique_ptr<Object, GiveBackObject>;

// Takes a text or a list of them, null for none.
inline std::string take_text(char* text)
{
    const Held<char> held(text);
    return text != nullptr ? text : "";
}

inline std::vector<std::string> take_texts(char** texts)
{
    const Held<char*> held(texts);
    std::vector<std::string> copies;
    for (char** text = texts; text != nullptr && *text != nullptr; text++)
        copies.emplace_back(*text);
    return copies;
}

// Takes the bytes that base64 stands for.
inline std::string decode_base64(const std::string& text)
{
    gsize size = 0;
    const Held<guchar> bytes(g_base64_decode(text.c_str(), &size));
    return std::string(reinterpret_cast<const char*>(bytes.get()), size);
}

}  // namespace BPrivate

#endif  // SUPPORT_HELD_H
