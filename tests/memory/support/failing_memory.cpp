#include "memory/support/failing_memory.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>

#include <dlfcn.h>
#include <link.h>
#include <pthread.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define HAS_OWN_MEMORY 1
#else
#define HAS_OWN_MEMORY 0
#endif

// Of the calling thread: how many allocations succeed before one fails, -1 for all; whose they are;
// and whether one failed.
static thread_local int tBeforeFailure = -1;
static thread_local Whose tWhose = Whose::All;
static thread_local bool tHasFailed = false;
static thread_local bool tThreadsFail = false;

#if !HAS_OWN_MEMORY

// The code of the library and the kits.
static struct {
    uintptr_t first, last;
} sOwnCode[16];
static size_t sOwnCodes = 0;

static int note_library(dl_phdr_info* info, size_t, void*)
{
    static const char* const kOwn[] = {"/libplinth.", "/libbe.",   "/libtranslation.",
                                       "/libdevice.", "/libmidi.", "/libmail."};
    for (const char* own : kOwn) {
        for (int i = 0; strstr(info->dlpi_name, own) != nullptr && i < info->dlpi_phnum; i++) {
            const ElfW(Phdr)& part = info->dlpi_phdr[i];
            const uintptr_t start = info->dlpi_addr + part.p_vaddr;
            if (part.p_type == PT_LOAD && (part.p_flags & PF_X) != 0)
                sOwnCode[sOwnCodes++] = {start, start + part.p_memsz};
        }
    }
    return 0;
}

static bool is_own(const void* caller)
{
    const auto place = reinterpret_cast<uintptr_t>(caller);
    for (size_t i = 0; i < sOwnCodes; i++) {
        if (place >= sOwnCode[i].first && place < sOwnCode[i].last)
            return true;
    }
    return false;
}

static bool fails(const void* caller)
{
    if (tBeforeFailure < 0 || (tWhose == Whose::OwnCode && !is_own(caller)) || tBeforeFailure-- > 0)
        return false;
    tHasFailed = true;
    errno = ENOMEM;
    return true;
}

extern "C" {
void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);

void* malloc(size_t size)
{
    return fails(__builtin_return_address(0)) ? nullptr : __libc_malloc(size);
}
void* calloc(size_t count, size_t size)
{
    return fails(__builtin_return_address(0)) ? nullptr : __libc_calloc(count, size);
}
void* realloc(void* block, size_t size)
{
    return fails(__builtin_return_address(0)) ? nullptr : __libc_realloc(block, size);
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*entry)(void*),
                   void* argument)
{
    using Create = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
    static const auto create = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "pthread_create"));
    return tThreadsFail ? EAGAIN : create(thread, attributes, entry, argument);
}
}

void* operator new(size_t size)
{
    void* block = fails(__builtin_return_address(0)) ? nullptr : __libc_malloc(size);
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}
void* operator new(size_t size, const std::nothrow_t&) noexcept
{
    return fails(__builtin_return_address(0)) ? nullptr : __libc_malloc(size);
}
void operator delete(void* block) noexcept { free(block); }
void operator delete(void* block, size_t) noexcept { free(block); }

#endif

void fail_after(int count, Whose whose)
{
#if !HAS_OWN_MEMORY
    if (sOwnCodes == 0)
        dl_iterate_phdr(note_library, nullptr);
#endif
    tWhose = whose;
    tHasFailed = false;
    tBeforeFailure = count;
}

void stop_failing() { tBeforeFailure = -1; }

bool has_failed() { return tHasFailed; }

void fail_threads(bool fail) { tThreadsFail = fail; }

bool can_fail() { return !HAS_OWN_MEMORY; }

void with_each_failing(const std::function<void()>& call, Whose whose)
{
    for (int before = 0; before < 1000000; before += 1 + before / 32) {
        fail_after(before, whose);
        call();
        stop_failing();
        if (!has_failed())
            return;
    }
    FAIL() << "there is always one more";
}
