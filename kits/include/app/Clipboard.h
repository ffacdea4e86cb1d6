#ifndef _CLIPBOARD_H
#define _CLIPBOARD_H

#include <Message.h>
#include <Messenger.h>
#include <SupportDefs.h>

#include <memory>

enum {
    B_CLIPBOARD_CHANGED = 0x434C4348  // 'CLCH'
};

/* A clipboard, known by its name. "system" is the desktop's: text goes both ways between this and
   other programs, as the field "text/plain" (B_MIME_TYPE, UTF-8, no terminator); a picture of
   another program comes as the field of its MIME type; everything that a message holds passes
   between programs of this kind. Clipboards of any other name belong to this process.

   Work on it between Lock() and Unlock(). Any thread. */
class BClipboard {
public:
    /* Null is "system". The object is a view on the clipboard: several may have the same name. */
    BClipboard(const char* name, bool transient = false);
    virtual ~BClipboard();

    const char* Name() const;

    /* How many changes there were at the last Lock(), Revert() or Commit(), and how many there
       are: equal as long as Data() is what is on the clipboard. */
    uint32 LocalCount() const;
    uint32 SystemCount() const;

    /* Have B_CLIPBOARD_CHANGED sent to a target after every change, this program's own too.
       B_BAD_VALUE for a target that is gone, or was not watching. */
    status_t StartWatching(BMessenger target);
    status_t StopWatching(BMessenger target);

    /* False when there is no application. Another thread's lock is waited for. */
    bool Lock();
    void Unlock();
    bool IsLocked() const;  // by the calling thread

    /* Empties Data(), and Commit() puts it on the clipboard. What was done to Data() without a
       Commit() stays until the clipboard changes. With `failIfChanged`, B_ERROR if that happened
       since Lock(). B_NOT_ALLOWED without the lock. */
    status_t Clear();
    status_t Commit();
    status_t Commit(bool failIfChanged);
    /* Fetches the clipboard's data again. B_TIMED_OUT if the program that has them does not
       answer; Data() is then empty. */
    status_t Revert();

    /* The application that filled the clipboard; invalid if it is not this one. */
    BMessenger DataSource() const;
    /* Null without the lock. Fetched by the first call after a change; an owner that does not
       answer within a second is taken for empty. The message and what it holds stay, unlocked too,
       until the next call after a change of the clipboard. */
    BMessage* Data() const;

private:
    struct State;

    BClipboard(const BClipboard&) = delete;
    BClipboard& operator=(const BClipboard&) = delete;

    status_t _Fetch() const;
    status_t _Commit(const uint32* expected);

    std::unique_ptr<State> fState;
};

/* The clipboard "system", from the making of the application object on. */
extern BClipboard* be_clipboard;

#endif  // _CLIPBOARD_H
