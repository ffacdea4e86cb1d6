#ifndef TESTS_KERNEL_THREADS_H
#define TESTS_KERNEL_THREADS_H

// Threads that help a test.

#include <OS.h>

inline thread_id run(thread_func entry, void* data = nullptr)
{
    const thread_id thread = spawn_thread(entry, "helper", B_NORMAL_PRIORITY, data);
    resume_thread(thread);
    return thread;
}

inline status_t result_of(thread_id thread)
{
    status_t result = B_ERROR;
    wait_for_thread(thread, &result);
    return result;
}

#endif  // TESTS_KERNEL_THREADS_H
