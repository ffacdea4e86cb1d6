#ifndef TESTS_MEMORY_SUPPORT_FAILING_MEMORY_H
#define TESTS_MEMORY_SUPPORT_FAILING_MEMORY_H

// Memory that fails when a test wants it: this program's malloc and its like are the test's.

#include "support/program.h"

#include <gtest/gtest.h>

#include <functional>

// Whose allocations fail. The libraries below the kits end the process where theirs do, so that
// calls which reach those leave them out.
enum class Whose { All, OwnCode };

// Has an allocation of the calling thread fail, after `count` that succeed.
void fail_after(int count, Whose whose = Whose::All);
// From here on all succeed.
void stop_failing();
// True if one failed since fail_after.
bool has_failed();
// Has the calling thread start no threads.
void fail_threads(bool fail);
// True where the test can have its way with memory.
bool can_fail();

// Calls with the first allocation failing, then with the second ..., until none is left to fail. Of
// the later ones of a call that makes very many, only some fail.
void with_each_failing(const std::function<void()>& call, Whose whose = Whose::All);

class FailingMemory : public testing::Test {
protected:
    void SetUp() override
    {
        if (!can_fail())
            GTEST_SKIP() << "the sanitizer's own memory does not fail";
    }
};

#endif  // TESTS_MEMORY_SUPPORT_FAILING_MEMORY_H
