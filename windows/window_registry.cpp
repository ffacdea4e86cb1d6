// Finding windows by ident. Any thread: a window's own thread takes its record out of the list
// while others look it up.

#include "windows/window_registry.h"

#include "gadgets/gadget.h"
#include "plinth.h"
#include "runtime/registry.h"
#include "runtime/trace.h"

#include <Autolock.h>

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

static WindowRecord* record_at(BList* windows, int32 index)
{
    return static_cast<WindowRecord*>(windows->ItemAtFast(index));
}

// The first place in the list, which is in ident order, whose ident is not below `ident`.
static int32 lower_bound(BList* windows, int32_t ident)
{
    int32 first = 0;
    int32 count = windows->CountItems();
    while (count > 0) {
        const int32 half = count / 2;
        if (record_at(windows, first + half)->ident < ident) {
            first += half + 1;
            count -= half + 1;
        } else {
            count = half;
        }
    }
    return first;
}

static WindowRecord* search(int32_t ident)
{
    BAutolock lock(registry_lock());
    BList* windows = registry_list(kWindows);
    if (windows == nullptr)
        return nullptr;
    const int32 index = lower_bound(windows, ident);
    if (index >= windows->CountItems() || record_at(windows, index)->ident != ident)
        return nullptr;
    WindowRecord* record = record_at(windows, index);
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

bool add_window(WindowRecord* record)
{
    BAutolock lock(registry_lock());
    BList* windows = registry_list(kWindows);
    if (windows == nullptr)
        return false;
    return windows->AddItem(record, lower_bound(windows, record->ident));
}

// Records of windows that are not listed any more: whoever looked one up in time may still read it.
static BList& unlisted_records()
{
    static BList* const records = new BList(20);
    return *records;
}

void empty_window_cache()
{
    for (auto& place : sCache)
        place.store(nullptr);
}

WindowRemoval remove_window(MyWinClass* window)
{
    BAutolock lock(registry_lock());
    BList* windows = registry_list(kWindows);
    if (windows == nullptr)
        return WindowRemoval::NotListed;
    const int32 index = lower_bound(windows, window->fIdent);
    if (index >= windows->CountItems() || record_at(windows, index)->window != window)
        return WindowRemoval::NotListed;
    WindowRecord* record = record_at(windows, index);
    windows->RemoveItem(index);
    unlisted_records().AddItem(record);
    if (cache_place(window->fIdent).load() == record)
        cache_place(window->fIdent).store(nullptr);
    if (DefWin == window)
        DefWin = windows->IsEmpty() ? nullptr : record_at(windows, 0)->window;
    return windows->IsEmpty() ? WindowRemoval::LastOne : WindowRemoval::Removed;
}

void forget_windows(BList* windows)
{
    BAutolock lock(registry_lock());
    empty_window_cache();
    unlisted_records().AddList(windows);
    windows->MakeEmpty();
}

WindowRecord* LLFindWindow(int32_t ident, const char* call)
{
    WindowRecord* record = find(ident);
    if (record == nullptr)
        show_dbg(Find_Gadget(ident, kRecord) != nullptr ? kIsGadget : kNoSuchWindow, ident, call);
    return record;
}

MyWinClass* LLFindWindowLocked(int32_t ident, const char* call)
{
    WindowRecord* record = LLFindWindow(ident, call);
    if (record == nullptr)
        return nullptr;
    MyWinClass* window = record->window;
    if (!window->Lock())
        return nullptr;
    // While a record is listed its window lives, and a window leaves the list locked: what was
    // locked is the window looked for, not a later looper at its address.
    if (find(ident) != record) {
        window->Unlock();
        return nullptr;
    }
    window->LockRaster();
    return window;
}

WindowRecord* Find_By_Class(const BWindow* window)
{
    BAutolock lock(registry_lock());
    BList* windows = registry_list(kWindows);
    if (windows == nullptr)
        return nullptr;
    for (int32 i = 0; i < windows->CountItems(); i++) {
        if (record_at(windows, i)->window == window)
            return record_at(windows, i);
    }
    return nullptr;
}

WindowRecord* GetActiveWindow()
{
    BAutolock lock(registry_lock());
    BList* windows = registry_list(kWindows);
    return windows != nullptr ? static_cast<WindowRecord*>(windows->FirstItem()) : nullptr;
}

MyWinClass* lock_default_output()
{
    MyWinClass* window = defaultoutput.load(std::memory_order_acquire);
    if (window == nullptr || !window->Lock())
        return nullptr;
    if (defaultoutput.load(std::memory_order_acquire) != window) {  // closed meanwhile
        window->Unlock();
        return nullptr;
    }
    window->LockRaster();
    return window;
}

extern "C" bool is_window_ident(int32_t ident) { return find(ident) != nullptr; }
