#ifndef _E_MAIL_H
#define _E_MAIL_H

#include <SupportDefs.h>
#include <UTF8.h>

#include <memory>

struct entry_ref;

namespace BPrivate {
struct MailContent;
}

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
