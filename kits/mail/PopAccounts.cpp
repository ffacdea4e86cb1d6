// The accounts that the user fetches mail from: "beos/mail/accounts" among the settings, a group
// for each. Any thread.

#include <E-mail.h>

#include <Directory.h>
#include <FindDirectory.h>
#include <Path.h>

#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include <glib.h>
#include "support/Held.h"

namespace {

using BPrivate::Held;
using BPrivate::take_text;

std::mutex sLock;

// What this program set without saving it; sLock. Never destroyed: any thread may still ask.
std::map<int32, mail_pop_account>& unsaved()
{
    static auto* sUnsaved = new std::map<int32, mail_pop_account>;
    return *sUnsaved;
}

status_t accounts_file(std::string* path)
{
    BPath folder;
    status_t status = find_directory(B_USER_SETTINGS_DIRECTORY, &folder, true);
    if (status == B_OK)
        status = folder.Append("beos/mail");
    if (status == B_OK)
        status = create_directory(folder.Path(), 0700);
    if (status == B_OK)
        *path = std::string(folder.Path()) + "/accounts";
    return status;
}

Held<GKeyFile> read_accounts(const std::string& path)
{
    Held<GKeyFile> file(g_key_file_new());
    g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_KEEP_COMMENTS, nullptr);
    return file;
}

std::string group_of(int32 index) { return "account " + std::to_string(index + 1); }

int32 saved_count(GKeyFile* file)
{
    int32 count = 0;
    while (g_key_file_has_group(file, group_of(count).c_str()))
        count++;
    return count;
}

// Takes a text out of plain sight, or back: whoever may read the file can undo it.
void blur(std::string* text)
{
    uint32 state = 0x9E3779B9;
    for (char& c : *text) {
        state = state * 1664525 + 1013904223;
        c = static_cast<char>(c ^ static_cast<char>(state >> 24));
    }
}

std::string as_text(const char* bytes, size_t size)
{
    return std::string(bytes, strnlen(bytes, size));
}

void copy_text(char* to, size_t size, const std::string& text)
{
    memset(to, 0, size);
    memcpy(to, text.data(), std::min(text.size(), size - 1));
}

std::string read_text(GKeyFile* file, const std::string& group, const char* key)
{
    return take_text(g_key_file_get_string(file, group.c_str(), key, nullptr));
}

std::string read_password(GKeyFile* file, const std::string& group)
{
    std::string password = BPrivate::decode_base64(read_text(file, group, "password"));
    blur(&password);
    return password;
}

struct TextRow {
    const char* key;
    size_t offset, size;
};

const TextRow kTexts[] = {
    {"name", offsetof(mail_pop_account, pop_name), sizeof(mail_pop_account::pop_name)},
    {"host", offsetof(mail_pop_account, pop_host), sizeof(mail_pop_account::pop_host)},
    {"real-name", offsetof(mail_pop_account, real_name), sizeof(mail_pop_account::real_name)},
    {"reply-to", offsetof(mail_pop_account, reply_to), sizeof(mail_pop_account::reply_to)},
};

struct NumberRow {
    const char* key;
    int32 mail_pop_account::*field;
};

const NumberRow kNumbers[] = {
    {"days", &mail_pop_account::days},
    {"interval", &mail_pop_account::interval},
    {"begin-time", &mail_pop_account::begin_time},
    {"end-time", &mail_pop_account::end_time},
};

mail_pop_account read_account(GKeyFile* file, int32 index)
{
    const std::string group = group_of(index);
    mail_pop_account account = {};
    for (const TextRow& row : kTexts)
        copy_text(reinterpret_cast<char*>(&account) + row.offset, row.size,
                  read_text(file, group, row.key));
    for (const NumberRow& row : kNumbers)
        account.*row.field = g_key_file_get_integer(file, group.c_str(), row.key, nullptr);
    copy_text(account.pop_password, sizeof(account.pop_password), read_password(file, group));
    return account;
}

void write_account(GKeyFile* file, int32 index, const mail_pop_account& account)
{
    const std::string group = group_of(index);
    for (const TextRow& row : kTexts) {
        const std::string text =
            as_text(reinterpret_cast<const char*>(&account) + row.offset, row.size);
        const Held<char> valid(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
        g_key_file_set_string(file, group.c_str(), row.key, valid.get());
    }
    for (const NumberRow& row : kNumbers)
        g_key_file_set_integer(file, group.c_str(), row.key, account.*row.field);
    std::string password = as_text(account.pop_password, sizeof(account.pop_password));
    blur(&password);
    const Held<char> encoded(
        g_base64_encode(reinterpret_cast<const guchar*>(password.data()), password.size()));
    g_key_file_set_string(file, group.c_str(), "password", encoded.get());
}

// As a whole, and for its owner's eyes only, whatever the file was before.
status_t save(GKeyFile* file, const std::string& path)
{
    gsize size = 0;
    const Held<char> text(g_key_file_to_data(file, &size, nullptr));
    const std::string unfinished = path + "." + std::to_string(getpid());
    unlink(unfinished.c_str());
    const int fd = open(unfinished.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    const bool written = fd >= 0 && write(fd, text.get(), size) == static_cast<ssize_t>(size);
    if (fd >= 0)
        close(fd);
    if (written && rename(unfinished.c_str(), path.c_str()) == 0)
        return B_OK;
    const int number = errno;
    unlink(unfinished.c_str());
    return number == ENOSPC ? B_DEVICE_FULL : number == EACCES ? B_PERMISSION_DENIED : B_IO_ERROR;
}

// sLock is held.
int32 count_accounts(GKeyFile* file)
{
    int32 count = saved_count(file);
    while (unsaved().count(count) != 0)
        count++;
    return count;
}

}  // namespace

int32 count_pop_accounts()
{
    std::string path;
    if (accounts_file(&path) != B_OK)
        path.clear();
    std::lock_guard<std::mutex> hold(sLock);
    return count_accounts(read_accounts(path).get());
}

status_t get_pop_account(mail_pop_account* account, int32 index)
{
    if (account == nullptr)
        return B_BAD_VALUE;
    std::string path;
    accounts_file(&path);
    std::lock_guard<std::mutex> hold(sLock);
    const Held<GKeyFile> file = read_accounts(path);
    if (index < 0 || index >= count_accounts(file.get()))
        return B_BAD_INDEX;
    const auto own = unsaved().find(index);
    *account = own != unsaved().end() ? own->second : read_account(file.get(), index);
    return B_OK;
}

status_t set_pop_account(mail_pop_account* account, int32 index, bool should_save)
{
    if (account == nullptr)
        return B_BAD_VALUE;
    std::string path;
    const status_t status = accounts_file(&path);
    std::lock_guard<std::mutex> hold(sLock);
    const Held<GKeyFile> file = read_accounts(path);
    if (index < 0 || index > count_accounts(file.get()))
        return B_BAD_INDEX;
    if (!should_save) {
        unsaved()[index] = *account;
        return B_OK;
    }
    if (status != B_OK)
        return status;
    // What stands before it in this program only has to be saved, too: groups have no gaps.
    for (int32 before = saved_count(file.get()); before < index; before++)
        write_account(file.get(), before, unsaved()[before]);
    write_account(file.get(), index, *account);
    const status_t saved = save(file.get(), path);
    if (saved == B_OK)
        unsaved().erase(index);
    return saved;
}
