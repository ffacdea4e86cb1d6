// BMailMessage: collects what a mail consists of.

#include <E-mail.h>

#include <Entry.h>
#include <File.h>
#include <Node.h>
#include <Path.h>
#include <TypeConstants.h>

#include <string.h>
#include <strings.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "mail/MailContent.h"
#include "mail/Outbox.h"
#include "support/ValidUTF8.h"

using mail::Enclosure;
using mail::Field;

// By B_..._CONVERSION, as mails name them; empty where UTF-8 says it better.
static const char* const kCharsets[] = {
    "iso-8859-1",
    "iso-8859-2",
    "iso-8859-3",
    "iso-8859-4",
    "iso-8859-5",
    "iso-8859-6",
    "iso-8859-7",
    "iso-8859-8",
    "iso-8859-9",
    "iso-8859-10",
    "macintosh",
    "shift_jis",
    "euc-jp",
    "iso-2022-jp",
    "windows-1252",
    "",
    "koi8-r",
    "windows-1251",
    "ibm866",
    "ibm437",
    "euc-kr",
    "iso-8859-13",
    "iso-8859-14",
    "iso-8859-15",
    "big5",
    "gb18030",
    "",
    "windows-1250",
};
static_assert(std::size(kCharsets) == B_MS_WINDOWS_1250_CONVERSION + 1, "one name per set");

static const char* charset_of(uint32 encoding)
{
    return encoding < std::size(kCharsets) ? kCharsets[encoding] : "";
}

BMailMessage::BMailMessage() : fContent(new BPrivate::MailContent) {}

BMailMessage::~BMailMessage() = default;

status_t BMailMessage::AddContent(const char* text, int32 length, uint32 encoding, bool clobber)
{
    return _AddContent(text, length, charset_of(encoding), clobber);
}

status_t BMailMessage::AddContent(const char* text, int32 length, const char* encoding,
                                  bool clobber)
{
    return _AddContent(text, length,
                       encoding != nullptr && mail::is_charset(encoding) ? encoding : "", clobber);
}

// Pieces that were to be sent in different character sets make a mail in UTF-8.
status_t BMailMessage::_AddContent(const char* text, int32 length, const char* charset,
                                   bool clobber)
{
    if (text == nullptr || length < 0)
        return B_BAD_VALUE;
    BPrivate::MailContent& content = *fContent;
    if (clobber) {
        content.has_text = false;
        content.text.clear();
    }
    if (!content.has_text)
        content.charset = charset;
    else if (content.charset != charset)
        content.charset.clear();
    content.has_text = true;
    content.text += BPrivate::valid_utf8({text, static_cast<size_t>(length)});
    return B_OK;
}

status_t BMailMessage::AddEnclosure(entry_ref* ref, bool clobber)
{
    if (ref == nullptr)
        return B_BAD_VALUE;
    const BPath path(ref);
    return path.InitCheck() == B_OK ? AddEnclosure(path.Path(), clobber) : path.InitCheck();
}

// What the file says of itself, else what its name and beginning look like.
static std::string type_of_file(const char* path, BFile& file)
{
    char type[B_MIME_TYPE_LENGTH + 1] = {};
    if (file.ReadAttr("BEOS:TYPE", B_MIME_STRING_TYPE, 0, type, sizeof(type) - 1) > 0 &&
        mail::is_mime_type(type))
        return type;
    char start[4096];
    const ssize_t got = std::max<ssize_t>(file.ReadAt(0, start, sizeof(start)), 0);
    return mail::guess_type(path, std::string(start, static_cast<size_t>(got)));
}

status_t BMailMessage::AddEnclosure(const char* path, bool clobber)
{
    if (path == nullptr)
        return B_BAD_VALUE;
    // A relative path means the directory that is current now.
    const BPath full(path);
    if (full.InitCheck() != B_OK)
        return full.InitCheck();
    BFile file(full.Path(), B_READ_ONLY);
    if (file.InitCheck() != B_OK)
        return file.InitCheck();
    if (!file.IsFile())
        return B_BAD_VALUE;
    if (clobber)
        fContent->enclosures.clear();
    fContent->enclosures.push_back({type_of_file(full.Path(), file), full.Path(), ""});
    return B_OK;
}

status_t BMailMessage::AddEnclosure(const char* MIME_type, void* data, int32 len, bool clobber)
{
    if (data == nullptr || len < 0 || (MIME_type != nullptr && !mail::is_mime_type(MIME_type)))
        return B_BAD_VALUE;
    if (clobber)
        fContent->enclosures.clear();
    std::string bytes(static_cast<const char*>(data), static_cast<size_t>(len));
    std::string type = MIME_type != nullptr ? MIME_type : mail::guess_type("", bytes);
    fContent->enclosures.push_back({std::move(type), "", std::move(bytes)});
    return B_OK;
}

status_t BMailMessage::AddHeaderField(uint32 encoding, const char* field_name, const char* str,
                                      bool clobber)
{
    return _AddHeaderField(charset_of(encoding), field_name, str, clobber);
}

status_t BMailMessage::AddHeaderField(const char* field_name, const char* str, bool clobber)
{
    return _AddHeaderField("", field_name, str, clobber);
}

// Without the colon and the space that the constants end with. "" if no field can have that name.
static std::string bare_name(std::string_view name)
{
    while (!name.empty() && name.back() == ' ')
        name.remove_suffix(1);
    if (!name.empty() && name.back() == ':')
        name.remove_suffix(1);
    const auto may_stand = [](char c) { return c > ' ' && c < 127 && c != ':'; };
    return std::all_of(name.begin(), name.end(), may_stand) ? std::string(name) : std::string();
}

// One line: a break, and any other control character, becomes a space.
static std::string one_line(std::string_view value)
{
    std::string line = BPrivate::valid_utf8(value);
    for (char& c : line) {
        if (static_cast<uint8>(c) < ' ' || c == 127)
            c = ' ';
    }
    line.erase(0, line.find_first_not_of(' '));
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

static bool is_same_name(const std::string& one, const char* other)
{
    return strcasecmp(one.c_str(), other) == 0;
}

static bool holds_recipients(const std::string& name)
{
    return is_same_name(name, "To") || is_same_name(name, "Cc") || is_same_name(name, "Bcc");
}

status_t BMailMessage::_AddHeaderField(const char* charset, const char* name, const char* value,
                                       bool clobber)
{
    if (name == nullptr || value == nullptr)
        return B_BAD_VALUE;
    const std::string bare = bare_name(name);
    if (bare.empty() || strncasecmp(bare.c_str(), "Content-", 8) == 0 ||
        is_same_name(bare, "MIME-Version"))
        return B_BAD_VALUE;
    std::vector<Field>& fields = fContent->fields;
    const auto has_that_name = [&](const Field& field) {
        return is_same_name(field.name, bare.c_str());
    };
    if (clobber)
        std::erase_if(fields, has_that_name);
    const auto same = std::find_if(fields.begin(), fields.end(), has_that_name);
    std::string line = one_line(value);
    if (same == fields.end() || !holds_recipients(bare)) {
        fields.push_back({bare, std::move(line), charset});
    } else if (!line.empty()) {
        same->value += same->value.empty() ? line : ", " + line;
        same->charset = same->charset == charset ? charset : "";
    }
    return B_OK;
}

status_t BMailMessage::Send(bool sendNow, bool removeAfterSending)
{
    mail::QueuedMail queued;
    status_t status = queued.Create(removeAfterSending);
    if (status == B_OK)
        status = mail::write_mail(*fContent, queued.File());
    if (status == B_OK)
        status = queued.Enqueue();
    if (status != B_OK || !sendNow)
        return status;
    status = queued.Deliver();
    if (status == B_OK)
        mail::deliver_waiting();
    return status;
}
