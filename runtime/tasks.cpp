// Programs, teams and priorities; arrays of strings. Main thread, but for the priorities, which are
// the calling thread's.

#include "plinth.h"

#include <List.h>
#include <OS.h>
#include <Roster.h>
#include <exception>
#include <image.h>

#include <unistd.h>

#include "runtime/trace.h"

static const int kMaxArguments = 33;  // behind the path

// How many arguments count: up to the first null or empty one.
static int count_arguments(const char* const* arguments)
{
    int count = 0;
    while (arguments != nullptr && count < kMaxArguments && arguments[count] != nullptr &&
           arguments[count][0] != '\0')
        count++;
    return count;
}

extern "C" int32_t RunProg(const char* path, const char* const* arguments)
try {
    if (path == nullptr)
        return 0;
    const int count = count_arguments(arguments);
    const char* argv[kMaxArguments + 2] = {path};
    for (int i = 0; i < count; i++)
        argv[i + 1] = arguments[i];
    const thread_id thread = load_image(count + 1, argv, const_cast<const char**>(environ));
    if (thread >= 1) {
        resume_thread(thread);
        return thread;
    }
    team_id team = 0;
    const status_t status = be_roster->Launch(path, count, argv + 1, &team);
    if (status == B_OK)
        return team;
    // Of a path that is no signature either the first answer says more.
    show_status(kNoSuchProgram, 0, "RunProg", status == B_BAD_VALUE ? thread : status);
    return 0;
} catch (const std::exception&) {
    show_dbg(kNoMemory, 0, __func__);
    return 0;
}

extern "C" int32_t KillTask(int32_t thread)
{
    thread_info info;
    const status_t status = get_thread_info(thread, &info);
    if (status != B_OK) {
        show_status(kNoSuchProgram, thread, "KillTask", status);
        return status;
    }
    if (thread != find_thread(nullptr))  // who suspends itself kills nobody
        suspend_thread(thread);
    return kill_team(info.team);
}

extern "C" void SetPriTask(int32_t priority)
{
    set_thread_priority(find_thread(nullptr), priority);
}

extern "C" int32_t GetPriTask(void)
{
    thread_info info;
    return get_thread_info(find_thread(nullptr), &info) == B_OK ? info.priority : B_NORMAL_PRIORITY;
}

extern "C" void FreeData(char** table)
{
    for (char** text = table; text != nullptr && *text != nullptr; text++)
        MyFree(*text);
    MyFree(table);
}

extern "C" char** GetListe_List(void* list)
{
    auto* items = static_cast<BList*>(list);
    if (items == nullptr || items->IsEmpty())
        return nullptr;
    const int32 count = items->CountItems();
    const size_t bytes = sizeof(char*) * (static_cast<size_t>(count) + 1);
    auto** table =
        bytes <= INT32_MAX ? static_cast<char**>(MyAlloc(static_cast<int32_t>(bytes))) : nullptr;
    for (int32 i = 0; table != nullptr && i < count; i++)
        table[i] = static_cast<char*>(items->ItemAtFast(i));
    return table;
}
