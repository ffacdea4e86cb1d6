// Mails by way of GMime, which knows how to encode, quote and fold.

#include "mail/MailContent.h"

#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <strings.h>

#include <gio/gio.h>
#include <gmime/gmime.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <mutex>

#include "support/ValidUTF8.h"
#include "support/Held.h"

namespace mail {

namespace {

using BPrivate::Held;
using BPrivate::HeldObject;

const size_t kLongestLine = 76;

void start_gmime()
{
    static std::once_flag once;
    std::call_once(once, g_mime_init);
}

bool is_ascii(const std::string& text)
{
    return std::none_of(text.begin(), text.end(), [](char c) { return (c & 0x80) != 0; });
}

const char* charset_or_default(const std::string& charset)
{
    return charset.empty() ? "utf-8" : charset.c_str();
}

bool holds_addresses(const std::string& name)
{
    static const char* const kNames[] = {"To", "Cc", "Bcc", "From", "Reply-To", "Sender"};
    return std::any_of(std::begin(kNames), std::end(kNames),
                       [&](const char* one) { return strcasecmp(one, name.c_str()) == 0; });
}

// Addresses keep their form, only the names beside them are encoded. "" if they are none, or not
// all can be encoded.
std::string encode_addresses(const Field& field)
{
    HeldObject<InternetAddressList> list(internet_address_list_parse(nullptr, field.value.c_str()));
    if (list == nullptr)
        return "";
    for (int i = 0; i < internet_address_list_length(list.get()); i++)
        internet_address_set_charset(internet_address_list_get_address(list.get(), i),
                                     charset_or_default(field.charset));
    Held<char> text(internet_address_list_to_string(list.get(), nullptr, TRUE));
    std::string result = text != nullptr ? text.get() : "";
    std::erase(result, '\n');
    return is_ascii(result) ? result : "";
}

std::string encode_words(const Field& field)
{
    Held<char> text(g_mime_utils_header_encode_text(nullptr, field.value.c_str(),
                                                    charset_or_default(field.charset)));
    return text.get();
}

// A header line holds 998 bytes at most: a longer word goes as encoded ones, but in addresses.
bool has_long_word(const std::string& value)
{
    size_t length = 0;
    for (char c : value) {
        length = c == ' ' || c == '\t' ? 0 : length + 1;
        if (length > 900)
            return true;
    }
    return false;
}

std::string encode_field(const Field& field)
{
    const bool addresses = holds_addresses(field.name);
    if (is_ascii(field.value) && (addresses || !has_long_word(field.value)))
        return field.value;
    const std::string encoded = addresses ? encode_addresses(field) : "";
    return !encoded.empty() ? encoded : encode_words(field);
}

// Breaks lines before spaces that a word follows. An encoded word has the first line for itself if
// it is long.
std::string fold_field(const std::string& name, const std::string& value)
{
    const size_t first_word = std::min(value.find(' '), value.size());
    const bool alone =
        value.compare(0, 2, "=?") == 0 && name.size() + 2 + first_word > kLongestLine;
    std::string folded = alone ? "\n " : " ";
    size_t column = alone ? 1 : name.size() + 2;
    for (size_t start = 0; start < value.size();) {
        size_t end = value.find_first_not_of(" \t", start);
        end = value.find_first_of(" \t", std::min(end, value.size()));
        end = std::min(end, value.size());
        const bool is_word = value.find_first_not_of(" \t", start) < end;
        if (start > 0 && is_word && column + end - start > kLongestLine) {
            folded += '\n';
            column = 0;
        }
        folded.append(value, start, end - start);
        column += end - start;
        start = end;
    }
    return folded + '\n';
}

void set_content(GMimePart* part, GMimeStream* stream)
{
    HeldObject<GMimeStream> owned(stream);
    HeldObject<GMimeDataWrapper> wrapper(
        g_mime_data_wrapper_new_with_stream(stream, GMIME_CONTENT_ENCODING_DEFAULT));
    g_mime_part_set_content(part, wrapper.get());
}

GMimeStream* stream_of(const std::string& bytes)
{
    return g_mime_stream_mem_new_with_buffer(bytes.data(), bytes.size());
}

HeldObject<GMimeObject> make_text_part(const MailContent& content)
{
    std::string text = content.text;
    const char* charset = is_ascii(text) ? "us-ascii" : charset_or_default(content.charset);
    if (!is_ascii(text)) {
        gsize length = 0;
        Held<char> converted(g_convert(text.data(), gssize(text.size()), charset, "UTF-8", nullptr,
                                       &length, nullptr));
        if (converted != nullptr)
            text.assign(converted.get(), length);
        else
            charset = "utf-8";
    }
    GMimePart* part = GMIME_PART(g_mime_text_part_new());
    g_mime_object_set_content_type_parameter(GMIME_OBJECT(part), "charset", charset);
    set_content(part, stream_of(text));
    g_mime_part_set_content_encoding(
        part, g_mime_part_get_best_content_encoding(part, GMIME_ENCODING_CONSTRAINT_7BIT));
    return HeldObject<GMimeObject>(GMIME_OBJECT(part));
}

// The leaf. A line break in it would end its line in the mail.
std::string sent_name(const std::string& path)
{
    std::string name = BPrivate::valid_utf8(path.substr(path.rfind('/') + 1));
    const auto is_control = [](char c) { return uint8(c) < ' ' || c == 127; };
    std::replace_if(name.begin(), name.end(), is_control, '_');
    return name;
}

status_t make_enclosure(const Enclosure& enclosure, HeldObject<GMimeObject>* made)
{
    const size_t slash = enclosure.type.find('/');
    GMimePart* part = g_mime_part_new_with_type(enclosure.type.substr(0, slash).c_str(),
                                                enclosure.type.substr(slash + 1).c_str());
    made->reset(GMIME_OBJECT(part));
    GMimeStream* stream;
    if (enclosure.path.empty()) {
        stream = stream_of(enclosure.data);
        g_mime_object_set_disposition(GMIME_OBJECT(part), GMIME_DISPOSITION_ATTACHMENT);
    } else {
        stream = g_mime_stream_fs_open(enclosure.path.c_str(), O_RDONLY | O_CLOEXEC, 0, nullptr);
        if (stream == nullptr)
            return errno == ENOENT ? B_ENTRY_NOT_FOUND : B_PERMISSION_DENIED;
        g_mime_part_set_filename(part, sent_name(enclosure.path).c_str());
    }
    set_content(part, stream);
    g_mime_part_set_content_encoding(part, GMIME_CONTENT_ENCODING_BASE64);
    return B_OK;
}

status_t make_body(const MailContent& content, GMimeMessage* message)
{
    if (content.enclosures.empty()) {
        if (content.has_text)
            g_mime_message_set_mime_part(message, make_text_part(content).get());
        return B_OK;
    }
    HeldObject<GMimeMultipart> parts(g_mime_multipart_new_with_subtype("mixed"));
    if (content.has_text)
        g_mime_multipart_add(parts.get(), make_text_part(content).get());
    for (const Enclosure& enclosure : content.enclosures) {
        HeldObject<GMimeObject> part;
        const status_t status = make_enclosure(enclosure, &part);
        if (status != B_OK)
            return status;
        g_mime_multipart_add(parts.get(), part.get());
    }
    g_mime_message_set_mime_part(message, GMIME_OBJECT(parts.get()));
    return B_OK;
}

}  // namespace

bool is_charset(const char* name)
{
    const GIConv converter = g_iconv_open(name, "UTF-8");
    if (converter == reinterpret_cast<GIConv>(-1))
        return false;
    g_iconv_close(converter);
    return true;
}

bool is_mime_type(const char* type)
{
    const auto is_token = [](const char* from, const char* to) {
        return from != to && std::all_of(from, to, [](char c) {
                   return c > ' ' && c < 127 && strchr("()<>@,;:\\\"/[]?=", c) == nullptr;
               });
    };
    const char* slash = strchr(type, '/');
    return slash != nullptr && is_token(type, slash) && is_token(slash + 1, slash + strlen(slash));
}

std::string guess_type(const std::string& path, const std::string& data)
{
    Held<char> content_type(g_content_type_guess(path.empty() ? nullptr : path.c_str(),
                                                 reinterpret_cast<const guchar*>(data.data()),
                                                 data.size(), nullptr));
    Held<char> type(g_content_type_get_mime_type(content_type.get()));
    return type != nullptr && is_mime_type(type.get()) ? type.get() : "application/octet-stream";
}

status_t write_mail(const MailContent& content, int file)
{
    start_gmime();
    HeldObject<GMimeMessage> message(g_mime_message_new(FALSE));
    GMimeHeaderList* headers = g_mime_object_get_header_list(GMIME_OBJECT(message.get()));
    for (const Field& field : content.fields) {
        g_mime_header_list_append(headers, field.name.c_str(), "", nullptr);
        g_mime_header_set_raw_value(
            g_mime_header_list_get_header_at(headers, g_mime_header_list_get_count(headers) - 1),
            fold_field(field.name, encode_field(field)).c_str());
    }
    status_t status = make_body(content, message.get());
    if (status != B_OK)
        return status;
    HeldObject<GMimeStream> stream(g_mime_stream_fs_new(file));
    g_mime_stream_fs_set_owner(GMIME_STREAM_FS(stream.get()), FALSE);
    if (g_mime_object_write_to_stream(GMIME_OBJECT(message.get()), nullptr, stream.get()) < 0)
        status = errno == ENOSPC ? B_DEVICE_FULL : B_IO_ERROR;
    return status;
}

}  // namespace mail
