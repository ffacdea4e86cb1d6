#ifndef MAIL_OUTBOX_H
#define MAIL_OUTBOX_H

// The folder of mails that wait to be sent, "beos/mail/outbox" among the user's data, with "sent"
// beside it. A mail is a file for its owner's eyes; who works on it holds a lock on it, which ends
// with the process, so that no mail is sent by two at once and none is forgotten. Any thread.

#include <SupportDefs.h>

#include <string>

namespace [[gnu::visibility("hidden")]] mail {

class QueuedMail {
public:
    QueuedMail() = default;
    // Gives the lock back; what was not enqueued is gone.
    ~QueuedMail();
    QueuedMail(const QueuedMail&) = delete;

    // Makes a file that is in nobody's way yet.
    status_t Create(bool remove_after_sending);
    int File() const { return fFile; }
    // The file is whole: it stays until it is sent.
    status_t Enqueue();

    // Takes a mail from the outbox. B_BUSY while somebody else has it.
    status_t Open(const std::string& folder, const std::string& name);
    // Has it sent, and takes it out of the outbox if that went well.
    status_t Deliver();

private:
    std::string _Path() const { return fFolder + "/" + fName; }

    std::string fFolder, fName;
    int fFile = -1;
    bool fEnqueued = false;
};

// Tries what is in the outbox, the oldest first, until a sendmail hangs.
void deliver_waiting();

}  // namespace mail

#endif  // MAIL_OUTBOX_H
