// Calls whose memory fails: each gives its failure value, or does its work without, and the program
// goes on. Every allocation of a call fails once, the first to the last.

#include "support/program.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <functional>
#include <new>
#include <string>

#include <dlfcn.h>
#include <pthread.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define HAS_OWN_MEMORY 1
#else
#define HAS_OWN_MEMORY 0
#endif

// Of the calling thread: how many allocations succeed before one fails, -1 for all; and whether one
// did.
static thread_local int tBeforeFailure = -1;
static thread_local bool tHasFailed = false;
static thread_local bool tThreadsFail = false;

static bool fails()
{
    if (tBeforeFailure < 0 || tBeforeFailure-- > 0)
        return false;
    tHasFailed = true;
    errno = ENOMEM;
    return true;
}

#if !HAS_OWN_MEMORY
extern "C" {
void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);

void* malloc(size_t size) { return fails() ? nullptr : __libc_malloc(size); }
void* calloc(size_t count, size_t size) { return fails() ? nullptr : __libc_calloc(count, size); }
void* realloc(void* block, size_t size) { return fails() ? nullptr : __libc_realloc(block, size); }

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*entry)(void*),
                   void* argument)
{
    using Create = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
    static const auto create = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "pthread_create"));
    return tThreadsFail ? EAGAIN : create(thread, attributes, entry, argument);
}
}
#endif

namespace {

// Calls with the first allocation failing, then with the second ..., until none is left to fail.
void with_each_failing(const std::function<void()>& call)
{
    for (int before = 0; before < 100000; before++) {
        tHasFailed = false;
        tBeforeFailure = before;
        call();
        tBeforeFailure = -1;
        if (!tHasFailed)
            return;
    }
    FAIL() << "there is always one more";
}

class FailingMemory : public testing::Test {
protected:
    void SetUp() override
    {
        if (HAS_OWN_MEMORY)
            GTEST_SKIP() << "the sanitizer's own memory does not fail";
    }
};

TEST_F(FailingMemory, RegistryIsNullThen)
{
    void** table = nullptr;
    int failures = -1;
    with_each_failing([&] {
        failures++;
        table = Open_Sys(1);
        EXPECT_EQ(table == nullptr, tHasFailed);
    });
    EXPECT_GT(failures, 9);
    Close_Sys(table);
    gRegistry = Open_Sys(1);
}

TEST_F(FailingMemory, WindowIsNotOpenThen)
{
    CloseWindow(OpenWindow(10, 10, 50, 50));  // what is made once
    int opened = 0;
    with_each_failing([&] {
        const int32_t window = OpenWindow(100, 100, 200, 100);
        tBeforeFailure = -1;
        EXPECT_TRUE(window != 0 || tHasFailed);
        if (window != 0) {
            opened++;
            EXPECT_TRUE(is_window_ident(window));
            FRectangle(window, 0, 0, 20, 20);
            EXPECT_NE(GetPixel(window, 5, 5), GetPixel(window, 50, 50));
        }
        CloseWindow(window);
    });
    EXPECT_GT(opened, 0);
}

TEST_F(FailingMemory, WindowWithoutAThreadIsNotOpen)
{
    tThreadsFail = true;
    const int32_t window = OpenWindow(100, 100, 200, 100);
    tThreadsFail = false;
    EXPECT_EQ(window, 0);
    TestWindow next;
    EXPECT_TRUE(is_window_ident(next));
}

}  // namespace
