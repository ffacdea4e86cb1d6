// The registry of all objects, and the first and last calls of a program. Main thread, but for
// what the windows' threads read: the lists of windows and gadgets, and the two flags.

#include "runtime/registry.h"

#include "files/filesystem.h"
#include "plinth.h"
#include "runtime/ending.h"
#include "windows/window.h"

#include <Application.h>
#include <AppDefs.h>

#include <atomic>

BList** PtApp = nullptr;

static const int32 kListBlockSize = 20;

LastingLocker gRegistryLocker("registry");

static BList* sOpenTables GUARDED_BY(gRegistryLocker);   // the tables that Close_Sys has not freed
static BList** sTableInUse GUARDED_BY(gRegistryLocker);  // PtApp, until Close_Sys frees it
static std::atomic<bool> sEndApp = false;                // endapp
static std::atomic<bool> sTracker = false;               // tracker

bool keep_registry(bigtime_t patience_us)
{
    return gRegistryLocker.Locker().LockWithTimeout(patience_us) == B_OK;
}

static bool is_open_table(const RegistryLock& registry, BList** table)
{
    registry.IsHeld();
    return table != nullptr && sOpenTables != nullptr && sOpenTables->HasItem(table);
}

BList* RegistryLock::List(RegistrySlot slot) const
{
    IsHeld();
    return sTableInUse != nullptr ? sTableInUse[slot] : nullptr;
}

void set_ending() { sEndApp = true; }

bool is_ending() { return sEndApp.load(std::memory_order_relaxed); }

bool is_tracker() { return sTracker.load(std::memory_order_relaxed); }

void quit_application()
{
    if (!is_tracker() && be_app != nullptr)
        be_app->PostMessage(B_QUIT_REQUESTED);
}

// Records of these kinds own nothing but their memory.
static void free_records(BList* list)
{
    for (int32 i = 0; i < list->CountItems(); i++)
        MyFree(list->ItemAtFast(i));
    list->MakeEmpty();
}

void Close_All_MediaKit(BList* media) { free_records(media); }
void Close_All_Serial(BList* ports) { free_records(ports); }
void Close_All_Midi(BList* files) { free_records(files); }
void Close_All_Joystick(BList* joysticks) { free_records(joysticks); }

// Has Close_Sys know it; false if there is no memory for that.
static bool enter_table(const RegistryLock& registry, BList** table)
{
    registry.IsHeld();
    if (sOpenTables == nullptr)
        sOpenTables = new (std::nothrow) BList(kListBlockSize);
    return sOpenTables != nullptr && sOpenTables->AddItem(table);
}

extern "C" void** Open_Sys(uint8_t tracker)
{
    sTracker = tracker != 0;
    auto** table = static_cast<BList**>(MyAlloc(kRegistrySlots * sizeof(BList*)));
    if (table == nullptr)
        return nullptr;
    for (int32 slot = kWindows; slot <= kMidiFiles; slot++) {
        table[slot] =
            slot == kGadgets ? new_gadget_list() : new (std::nothrow) BList(kListBlockSize);
        if (table[slot] == nullptr) {
            MyFree(table);  // kept on purpose: the lists made so far are lost
            return nullptr;
        }
    }
    RegistryLock registry;
    if (!enter_table(registry, table)) {
        MyFree(table);  // its lists are lost as well
        return nullptr;
    }
    PtApp = table;
    sTableInUse = table;
    empty_window_cache(registry);
    empty_file_cache();
    return reinterpret_cast<void**>(table);
}

// The order in which the kinds are closed: what a later one needs is still there. Windows stay
// open.
static const struct {
    RegistrySlot slot;
    void (*close_all)(BList* list);
} kCloseOrder[] = {
    {kWindows, forget_windows},   {kIcons, Close_All_Icon},
    {kFiles, Close_All_File},     {kFonts, Close_All_Font},
    {kGadgets, Close_All_Gadget}, {kMenus, Close_All_Menu},
    {kMedia, Close_All_MediaKit}, {kSerialPorts, Close_All_Serial},
    {kMidiFiles, Close_All_Midi}, {kJoysticks, Close_All_Joystick},
};
static_assert(sizeof(kCloseOrder) / sizeof(kCloseOrder[0]) == kRegistrySlots, "one row per kind");

static void close_table(BList** table)
{
    for (const auto& row : kCloseOrder) {
        if (table[row.slot] == nullptr)
            continue;
        row.close_all(table[row.slot]);
        RegistryLock registry;
        delete table[row.slot];
        table[row.slot] = nullptr;
    }
    RegistryLock registry;
    sOpenTables->RemoveItem(table);
    if (sTableInUse == table)
        sTableInUse = nullptr;
    MyFree(table);
}

extern "C" void Close_Sys(void** table)
{
    auto** lists = reinterpret_cast<BList**>(table);
    if (is_open_table(RegistryLock(), lists))
        close_table(lists);
    quit_application();
}

extern "C" void End(void)
{
    CloseDebug();
    FreeList();
    close_scan();
    set_ending();
    if (!is_tracker())
        limit_quitting();
    quit_application();
}
