// Memory for records and for the program's strings, idents, the command line, concatenation.
// Main thread, but for MyAlloc, MyFree and GetUniqueID, which the windows' threads call too.

#include "plinth.h"

#include <List.h>

#include <atomic>
#include <stdarg.h>
#include <stdlib.h>
#include <string.h>

static const uint32_t kFirstIdent = 0x14041968;
static const int32_t kStringBytes = 257;

// Every string handed out below; never walked nor freed. It outlives the exit handlers, which may
// run on a window's thread while the program's takes strings.
static BList& mem = *new BList(20);
static uint32_t count_mem_alloc;
static std::atomic<uint32_t> sNextIdent = kFirstIdent;

int32_t __argc = 0;
char** __argv = nullptr;
char __kcb[1025];

extern "C" void* MyAlloc(int32_t size)
{
    return size < 0 ? nullptr : calloc(1, size > 0 ? size : 1);
}

extern "C" void MyFree(void* block) { free(block); }

extern "C" uint32_t GetUniqueID(void) { return sNextIdent.fetch_add(1, std::memory_order_relaxed); }

extern "C" const char* __GetCommand(int32_t index)
{
    if (index < 0 || index >= __argc || __argv == nullptr || __argv[index] == nullptr)
        return "";
    return __argv[index];
}

extern "C" char* alloc_string(int32_t length)
{
    if (length < 0)
        return nullptr;
    auto* text = static_cast<char*>(calloc(1, static_cast<size_t>(length) + 1));
    if (text != nullptr) {
        count_mem_alloc++;
        mem.AddItem(text);
    }
    return text;
}

extern "C" int32_t init_tab_string(char** table, int32_t count)
{
    if (table == nullptr || count < 0)
        return count;
    for (int32_t i = 0; i < count; i++)
        table[i] = alloc_string(kStringBytes - 1);
    table[count] = nullptr;
    return count;
}

extern "C" char* __MultiStr(int32_t count, ...)
{
    size_t used = 0;
    __kcb[0] = '\0';
    va_list texts;
    va_start(texts, count);
    while (const char* text = va_arg(texts, const char*)) {
        const size_t taken = strnlen(text, sizeof(__kcb) - 1 - used);
        memmove(__kcb + used, text, taken);
        used += taken;
        __kcb[used] = '\0';
    }
    va_end(texts);
    return __kcb;
}
