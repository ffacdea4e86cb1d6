#ifndef SUPPORT_MUTEX_H
#define SUPPORT_MUTEX_H

// A lock that says what it guards. Clang's thread-safety analysis checks the words below wherever
// this header is included; for other compilers they are comments.
//
//     Mutex fLock;
//     std::vector<Entry> fEntries GUARDED_BY(fLock);
//     Entry* _Find(int32 id) REQUIRES(fLock);

#include <mutex>

#ifdef __clang__
#define THREAD_SAFETY(word) __attribute__((word))
#else
#define THREAD_SAFETY(word)
#endif

// Read and written by whoever holds the lock.
#define GUARDED_BY(lock) THREAD_SAFETY(guarded_by(lock))
// Called by whoever holds it.
#define REQUIRES(lock) THREAD_SAFETY(exclusive_locks_required(lock))

namespace BPrivate {

class THREAD_SAFETY(capability("mutex")) Mutex {
public:
    void lock() THREAD_SAFETY(acquire_capability()) { fMutex.lock(); }
    void unlock() THREAD_SAFETY(release_capability()) { fMutex.unlock(); }

private:
    std::mutex fMutex;
};

// Holds a lock as long as it lives.
class [[nodiscard]] THREAD_SAFETY(scoped_lockable) MutexLock {
public:
    explicit MutexLock(Mutex& mutex) THREAD_SAFETY(acquire_capability(mutex)) : fMutex(mutex)
    {
        mutex.lock();
    }
    ~MutexLock() THREAD_SAFETY(release_capability())
    {
        if (fHeld)
            fMutex.unlock();
    }
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

    // Gives it back for a while.
    void Unlock() THREAD_SAFETY(release_capability())
    {
        fHeld = false;
        fMutex.unlock();
    }
    void Lock() THREAD_SAFETY(acquire_capability())
    {
        fMutex.lock();
        fHeld = true;
    }

private:
    Mutex& fMutex;
    bool fHeld = true;
};

}  // namespace BPrivate

#endif  // SUPPORT_MUTEX_H
