#ifndef _E_MAIL_H
#define _E_MAIL_H

#include <Entry.h>
#include <StorageDefs.h>
#include <SupportDefs.h>
#include <UTF8.h>

#include <memory>

namespace BPrivate {
struct MailContent;
}

// Attributes of mails.
#define B_MAIL_ATTR_NAME "MAIL:name"
#define B_MAIL_ATTR_LABEL "MAIL:label"
#define B_MAIL_ATTR_STATUS "MAIL:status"
#define B_MAIL_ATTR_PRIORITY "MAIL:priority"
#define B_MAIL_ATTR_TO "MAIL:to"
#define B_MAIL_ATTR_CC "MAIL:cc"
#define B_MAIL_ATTR_BCC "MAIL:bcc"
#define B_MAIL_ATTR_FROM "MAIL:from"
#define B_MAIL_ATTR_SUBJECT "MAIL:subject"
#define B_MAIL_ATTR_REPLY "MAIL:reply"
#define B_MAIL_ATTR_WHEN "MAIL:when"
#define B_MAIL_ATTR_FLAGS "MAIL:flags"
#define B_MAIL_ATTR_RECIPIENTS "MAIL:recipients"
#define B_MAIL_ATTR_MIME "MAIL:mime"
#define B_MAIL_ATTR_HEADER "MAIL:header_length"
#define B_MAIL_ATTR_CONTENT "MAIL:content_length"
#define B_MAIL_ATTR_READ "MAIL:read"
#define B_MAIL_ATTR_ACCOUNT_ID "MAIL:account_id"

enum read_flags { B_UNREAD = 0, B_SEEN = 1, B_READ = 2 };
// Of B_MAIL_ATTR_FLAGS: a set.
enum mail_flags { B_MAIL_PENDING = 1, B_MAIL_SENT = 2, B_MAIL_SAVE = 4 };

// Names of header fields, as AddHeaderField() takes them.
#define B_MAIL_TO "To: "
#define B_MAIL_CC "Cc: "
#define B_MAIL_BCC "Bcc: "
#define B_MAIL_FROM "From: "
#define B_MAIL_DATE "Date: "
#define B_MAIL_REPLY "Reply-To: "
#define B_MAIL_SUBJECT "Subject: "
#define B_MAIL_PRIORITY "Priority: "

#define B_MAIL_TYPE "text/x-email"
#define B_PARTIAL_MAIL_TYPE "text/x-partial-email"

// On which days an account is to be asked for mail.
#define B_CHECK_NEVER 0
#define B_CHECK_WEEKDAYS 1
#define B_CHECK_DAILY 2
#define B_CHECK_CONTINUOUSLY 3
#define B_CHECK_CONTINUOSLY 3

#define B_MAX_USER_NAME_LENGTH 32
#define B_MAX_HOST_NAME_LENGTH 64

// Where and how the user fetches mail. Texts end with a zero byte, or are cut off.
struct mail_pop_account {
    char pop_name[B_MAX_USER_NAME_LENGTH];
    char pop_password[B_MAX_USER_NAME_LENGTH];
    char pop_host[B_MAX_HOST_NAME_LENGTH];
    char real_name[128];
    char reply_to[128];
    int32 days;        // B_CHECK_...
    int32 interval;    // seconds between two looks
    int32 begin_time;  // seconds of the day
    int32 end_time;
};

struct mail_notification {
    bool alert;
    bool beep;
};

/* The user's accounts, shared by all programs: a file of the user's configuration that nobody else
   can read, where passwords do not stand in clear text. Any thread.
   There is no account behind the last: B_BAD_INDEX; B_BAD_VALUE for null. Setting the account
   behind the last adds one; without `save` only this program knows of it. B_IO_ERROR, or another
   status of the storage kit, if it could not be written. */
int32 count_pop_accounts();
status_t get_pop_account(mail_pop_account* account, int32 index = 0);
status_t set_pop_account(mail_pop_account* account, int32 index = 0, bool save = true);

/* A mail on its way out. Texts are UTF-8 (bytes that are not count as Latin-1); an encoding, one of
   the B_..._CONVERSION numbers, is the character set that they are sent in, where that holds all of
   their characters: else UTF-8 is. Adding with `clobber` replaces what was there. One thread at a
   time. */
class BMailMessage {
public:
    BMailMessage();
    ~BMailMessage();

    /* Add to the body, or replace it. The second form names the character set as mails do. */
    status_t AddContent(const char* text, int32 length, uint32 encoding = B_ISO1_CONVERSION,
                        bool clobber = false);
    status_t AddContent(const char* text, int32 length, const char* encoding, bool clobber = false);

    /* Add a file, which is read by Send(), or data, which are copied; a null type is guessed.
       B_ENTRY_NOT_FOUND, or another status of the storage kit, if the file can not be read;
       B_BAD_VALUE for what is no file. Clobbering replaces all enclosures so far. */
    status_t AddEnclosure(entry_ref* ref, bool clobber = false);
    status_t AddEnclosure(const char* path, bool clobber = false);
    status_t AddEnclosure(const char* MIME_type, void* data, int32 len, bool clobber = false);

    /* Add a field to the head, or replace all fields of that name. Recipients join those of the
       same field; of other fields there may be several. Line breaks become spaces. B_BAD_VALUE for
       a name that no field can have, or that belongs to the parts of the mail ("Content-...",
       "MIME-Version"). */
    status_t AddHeaderField(uint32 encoding, const char* field_name, const char* str,
                            bool clobber = false);
    status_t AddHeaderField(const char* field_name, const char* str, bool clobber = false);

    /* Puts the mail into the outbox, and with `sendNow` hands it to the host's "sendmail -t" and
       waits until that has taken it; once it has, mails that wait in the outbox are tried as well.
       What can not be sent stays in the outbox. `removeAfterSending` deletes the mail then, else it
       goes to the folder of sent mails. B_MAIL_NO_DAEMON: there is no sendmail; B_TIMED_OUT: it did
       not end within a minute; B_MAIL_UNKNOWN_USER, B_MAIL_UNKNOWN_HOST, B_MAIL_ACCESS_ERROR,
       B_MAIL_INVALID_MAIL or B_ERROR: it refused. */
    status_t Send(bool sendNow = false, bool removeAfterSending = false);

private:
    BMailMessage(const BMailMessage&) = delete;
    BMailMessage& operator=(const BMailMessage&) = delete;

    status_t _AddContent(const char* text, int32 length, const char* charset, bool clobber);
    status_t _AddHeaderField(const char* charset, const char* name, const char* value,
                             bool clobber);

    std::unique_ptr<BPrivate::MailContent> fContent;
};

#endif  // _E_MAIL_H
