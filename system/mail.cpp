// E-mail by way of the system's mail service. Any thread.

#include "plinth.h"

#include <E-mail.h>

#include <exception>
#include <string.h>

#include <memory>
#include <new>

#include "runtime/trace.h"

static const int kLastEntry = 256;
static const size_t kPrefixLength = 2;

struct FieldRow {
    char prefix[kPrefixLength + 1];
    const char* field;
    bool replaces;
};

static const FieldRow kFields[] = {
    {"to", B_MAIL_TO, true},      {"cc", B_MAIL_CC, false},      {"bc", B_MAIL_BCC, false},
    {"fr", B_MAIL_FROM, true},    {"da", B_MAIL_DATE, true},     {"re", B_MAIL_REPLY, true},
    {"su", B_MAIL_SUBJECT, true}, {"pr", B_MAIL_PRIORITY, true},
};

static bool has_prefix(const char* entry, const char* prefix)
{
    return memcmp(entry, prefix, kPrefixLength) == 0;
}

// An entry whose prefix says nothing adds nothing.
static void add_entry(BMailMessage& mail, const char* entry)
{
    const char* value = entry + kPrefixLength;
    for (const FieldRow& row : kFields) {
        if (has_prefix(entry, row.prefix))
            mail.AddHeaderField(row.field, value, row.replaces);
    }
    if (has_prefix(entry, "ms"))
        mail.AddContent(value, static_cast<int32>(strlen(value)));
    else if (has_prefix(entry, "fi"))
        mail.AddEnclosure(value);
}

extern "C" bool SendEmail(const char* const* entries, bool send_now)
try {
    if (entries == nullptr) {
        show_dbg(kBadArgument, 0, __func__);
        return false;
    }
    const std::unique_ptr<BMailMessage> mail(new (std::nothrow) BMailMessage);
    if (mail == nullptr) {
        show_dbg(kNoMemory, 0, __func__);
        return false;
    }
    for (int i = 0; i <= kLastEntry && entries[i] != nullptr; i++) {
        if (strlen(entries[i]) <= kPrefixLength)
            continue;
        add_entry(*mail, entries[i]);
        break;  // kept on purpose: a mail has what its first entry says, and no more
    }
    const status_t status = mail->Send(send_now, true);
    if (status != B_OK)
        show_status(kNoService, 0, __func__, status);
    return status == B_OK;
} catch (const std::exception&) {
    show_dbg(kNoMemory, 0, __func__);
    return false;
}
