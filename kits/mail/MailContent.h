#ifndef MAIL_CONTENT_H
#define MAIL_CONTENT_H

// What a mail is made of, and its writing as Internet mail. All texts are valid UTF-8.

#include <E-mail.h>

#include <string>
#include <vector>

namespace [[gnu::visibility("hidden")]] mail {

struct Field {
    std::string name, value;  // without line breaks
    std::string charset;      // preferred; "" for UTF-8
};

struct Enclosure {
    std::string type;
    std::string path;  // of the file; "" for data
    std::string data;
};

}  // namespace mail

struct [[gnu::visibility("hidden")]] BPrivate::MailContent
{
    std::vector<mail::Field> fields;
    bool has_text = false;
    std::string text, charset;
    std::vector<mail::Enclosure> enclosures;
};

namespace mail {

using BPrivate::MailContent;

bool is_charset(const char* name);
bool is_mime_type(const char* type);
std::string guess_type(const std::string& path, const std::string& data);

// Writes the mail to a file that is open. B_ENTRY_NOT_FOUND or so for an enclosure that is gone.
status_t write_mail(const MailContent& content, int file);

}  // namespace mail

#endif  // MAIL_CONTENT_H
