#ifndef TESTS_APP_MAILBOX_H
#define TESTS_APP_MAILBOX_H

// What arrives on some looper's thread, for a test that waits for it with a deadline.

#include <Handler.h>
#include <Looper.h>
#include <Message.h>
#include <OS.h>

#include <deque>
#include <mutex>

inline const bigtime_t kDeadline = 20000000;  // for what has to happen: only a fault reaches it

class Mailbox {
public:
    Mailbox() : fArrived(create_sem(0, "mailbox")) {}
    ~Mailbox() { delete_sem(fArrived); }

    void Put(const BMessage& message)
    {
        {
            std::lock_guard<std::mutex> guard(fLock);
            fMessages.push_back(message);
        }
        release_sem(fArrived);
    }

    // The oldest message; one with code 0 if none came in time.
    BMessage Take(bigtime_t timeout = kDeadline)
    {
        if (acquire_sem_etc(fArrived, 1, B_RELATIVE_TIMEOUT, timeout) != B_OK)
            return BMessage(static_cast<uint32>(0));
        std::lock_guard<std::mutex> guard(fLock);
        BMessage message = fMessages.front();
        fMessages.pop_front();
        return message;
    }

    uint32 TakeWhat(bigtime_t timeout = kDeadline) { return Take(timeout).what; }

    bool IsEmpty()
    {
        std::lock_guard<std::mutex> guard(fLock);
        return fMessages.empty();
    }

private:
    sem_id fArrived;
    std::mutex fLock;
    std::deque<BMessage> fMessages;
};

class ListeningHandler : public BHandler {
public:
    explicit ListeningHandler(Mailbox& mail, const char* name = nullptr)
        : BHandler(name), fMail(mail)
    {
    }
    void MessageReceived(BMessage* message) override { fMail.Put(*message); }

private:
    Mailbox& fMail;
};

class ListeningLooper : public BLooper {
public:
    explicit ListeningLooper(Mailbox& mail, const char* name = "listening")
        : BLooper(name), fMail(mail)
    {
    }
    void MessageReceived(BMessage* message) override { fMail.Put(*message); }

private:
    Mailbox& fMail;
};

// Quits a looper at the end of a test, from the test's thread.
class QuitAtEnd {
public:
    explicit QuitAtEnd(BLooper* looper) : fLooper(looper) {}
    ~QuitAtEnd()
    {
        if (fLooper->Lock())
            fLooper->Quit();
    }
    QuitAtEnd(const QuitAtEnd&) = delete;

private:
    BLooper* fLooper;
};

// Runs a function on a thread of its own; the destructor waits for it.
template <class Work>
class Task {
public:
    explicit Task(Work work) : fWork(work)
    {
        fThread = spawn_thread(&Task::_Run, "test task", B_NORMAL_PRIORITY, this);
        resume_thread(fThread);
    }
    ~Task() { Join(); }
    Task(const Task&) = delete;
    void Join()
    {
        status_t result;
        wait_for_thread(fThread, &result);
    }
    thread_id Thread() const { return fThread; }

private:
    static status_t _Run(void* task)
    {
        static_cast<Task*>(task)->fWork();
        return B_OK;
    }

    Work fWork;
    thread_id fThread;
};

#endif  // TESTS_APP_MAILBOX_H
