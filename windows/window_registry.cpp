// Finding windows by ident. Any thread: a window's own thread takes its record out of the list
// while others look it up.

#include "windows/window_registry.h"

#include "gadgets/gadget.h"
#include "runtime/trace.h"
#include "windows/window_access.h"
#include "windows/window_lock.h"

#include <atomic>

MyWinClass* DefWin = nullptr;
std::atomic<MyWinClass*> defaultoutput = nullptr;

static const int32 kCacheSize = 256;

// The open window last looked up for each residue of its ident. Idents are consecutive, so that
// windows seldom share a place. Filled and cleared under the registry's lock, read without it;
// records are never freed.
static std::atomic<WindowRecord*> sCache[kCacheSize];

static std::atomic<WindowRecord*>& cache_place(int32_t ident)
{
    return sCache[static_cast<uint32_t>(ident) % kCacheSize];
}

static WindowRecord* record_at(const BList& windows, int32 index)
{
    return static_cast<WindowRecord*>(windows.ItemAtFast(index));
}

static WindowRecord* search(int32_t ident)
{
    RegistryLock registry;
    auto* record = find_record<WindowRecord>(registry, ident);
    if (record != nullptr)
        cache_place(ident).store(record, std::memory_order_release);
    return record;
}

static WindowRecord* find(int32_t ident)
{
    if (ident < 1)
        return nullptr;
    WindowRecord* record = cache_place(ident).load(std::memory_order_acquire);
    if (record != nullptr && record->ident == ident)
        return record;
    return search(ident);
}

bool add_window(WindowRecord* record) { return enter_record(RegistryLock(), record); }

// Records of windows that are not listed any more: whoever looked one up in time may still read it.
static BList& unlisted_records()
{
    static BList* const records = new BList(20);
    return *records;
}

void empty_window_cache(const RegistryLock&)
{
    for (auto& place : sCache)
        place.store(nullptr);
}

WindowRemoval remove_window(MyWinClass* window)
{
    RegistryLock registry;
    WindowRecord* record = window->fRecord;
    if (record == nullptr || !remove_record(registry, record))
        return WindowRemoval::NotListed;
    unlisted_records().AddItem(record);
    if (cache_place(window->fIdent).load() == record)
        cache_place(window->fIdent).store(nullptr);
    const BList& windows = *registry.List(kWindows);
    if (DefWin == window)
        DefWin = windows.IsEmpty() ? nullptr : record_at(windows, 0)->window;
    return windows.IsEmpty() ? WindowRemoval::LastOne : WindowRemoval::Removed;
}

void forget_windows(BList* windows)
{
    RegistryLock registry;
    DefWin = nullptr;
    empty_window_cache(registry);
    unlisted_records().AddList(windows);
    windows->MakeEmpty();
}

void trace_no_window(int32_t ident, const char* call)
{
    show_dbg(gadget_record(ident) != nullptr ? kIsGadget : kNoSuchWindow, ident, call);
}

WindowRecord* LLFindWindow(int32_t ident, const char* call)
{
    WindowRecord* record = find(ident);
    if (record == nullptr && call != nullptr)
        trace_no_window(ident, call);
    return record;
}

// While a record is listed its window lives, and a window leaves the list locked: what was locked
// is the window looked for, not a later looper at its address, if the record is still there then.
WindowAccess::WindowAccess(int32_t ident, const char* call)
{
    WindowRecord* record = LLFindWindow(ident, call);
    if (record == nullptr || !lock_window(record->window))
        return;
    if (find(ident) != record) {
        record->window->Unlock();
        return;
    }
    fWindow = record->window;
    fWindow->LockRaster();
}

WindowRecord* Find_By_Class(const BWindow* window)
{
    RegistryLock registry;
    const BList* windows = registry.List(kWindows);
    for (int32 i = 0; windows != nullptr && i < windows->CountItems(); i++) {
        if (record_at(*windows, i)->window == window)
            return record_at(*windows, i);
    }
    return nullptr;
}

WindowRecord* GetActiveWindow()
{
    RegistryLock registry;
    const BList* windows = registry.List(kWindows);
    return windows != nullptr ? static_cast<WindowRecord*>(windows->FirstItem()) : nullptr;
}

MyWinClass* lock_default_output()
{
    MyWinClass* window = defaultoutput.load(std::memory_order_acquire);
    if (!lock_window(window))
        return nullptr;
    if (defaultoutput.load(std::memory_order_acquire) != window) {  // closed meanwhile
        window->Unlock();
        return nullptr;
    }
    window->LockRaster();
    return window;
}

extern "C" bool is_window_ident(int32_t ident) { return find(ident) != nullptr; }
