#ifndef RUNTIME_LASTING_LOCKER_H
#define RUNTIME_LASTING_LOCKER_H

// Locks of the library's own, which say what they guard. Clang's thread-safety analysis checks the
// words below wherever this header is included; for other compilers they are comments.
//
//     static LastingLocker sTipsLock("tool tips");
//     static std::vector<Tip>* sTips GUARDED_BY(sTipsLock);
//     static void remove_tip(Tip* tip) REQUIRES(sTipsLock);

#include <Locker.h>

#include <atomic>

#ifdef __clang__
#define THREAD_SAFETY(word) __attribute__((word))
#else
#define THREAD_SAFETY(word)
#endif

// Read and written by whoever holds the lock.
#define GUARDED_BY(lock) THREAD_SAFETY(guarded_by(lock))
// Called by whoever holds it.
#define REQUIRES(lock) THREAD_SAFETY(exclusive_locks_required(lock))

// Made by its first use, in place, so that it needs no memory then, and there to the end of the
// process: windows' threads outlive main(). Any thread; it may be held twice.
class THREAD_SAFETY(capability("locker")) LastingLocker {
public:
    constexpr explicit LastingLocker(const char* name) : fName(name) {}

    bool Lock() THREAD_SAFETY(acquire_capability()) { return Locker().Lock(); }
    void Unlock() THREAD_SAFETY(release_capability()) { Locker().Unlock(); }
    // What it is made of, for waits with a limit and counts.
    BLocker& Locker()
    {
        BLocker* const locker = fLocker.load(std::memory_order_acquire);
        return locker != nullptr ? *locker : _Make();
    }

private:
    BLocker& _Make();

    const char* const fName;
    std::atomic<BLocker*> fLocker{nullptr};
    alignas(BLocker) char fRoom[sizeof(BLocker)] = {};
};

// Holds one as long as it lives.
class [[nodiscard]] THREAD_SAFETY(scoped_lockable) Autolock {
public:
    explicit Autolock(LastingLocker& locker) THREAD_SAFETY(acquire_capability(locker))
        : fLocker(locker)
    {
        fLocker.Lock();
    }
    ~Autolock() THREAD_SAFETY(release_capability()) { fLocker.Unlock(); }
    Autolock(const Autolock&) = delete;
    Autolock& operator=(const Autolock&) = delete;

private:
    LastingLocker& fLocker;
};

#endif  // RUNTIME_LASTING_LOCKER_H
