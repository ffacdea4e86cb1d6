#ifndef RUNTIME_REGISTRY_H
#define RUNTIME_REGISTRY_H

// The resource registry: one list per kind of object, every object under its ident. Idents only
// rise and are appended as they are handed out, so each list is in ident order; that of gadgets is
// in none (gadgets/gadget_list.h).
//
// A record type says by a member `kSlot` which list it is in, and has its ident in a field `ident`.
// Whoever looks one up holds a RegistryLock:
//
//     RegistryLock registry;
//     if (auto* record = find_record<IconRecord>(registry, ident))
//         ...
//
// A record stays in its list only while the lock is held. Who needs it longer holds what keeps it
// there: the window's lock for windows and gadgets, or runs on the only thread that frees it.

#include <List.h>

#include <stdint.h>

#include "runtime/lasting_locker.h"

enum RegistrySlot {
    kWindows,
    kIcons,
    kFonts,
    kMenus,
    kGadgets,
    kFiles,
    kMedia,
    kSerialPorts,
    kMidiFiles,
    kJoysticks,
    kRegistrySlots
};

extern BList** PtApp;  // the table that Open_Sys made last; stays as it is after Close_Sys

extern LastingLocker gRegistryLocker;

// Holds the lock of the registry's lists, for look-ups and changes only, never while a window is
// waited for: who has a window locked may want it. Any thread; it may be held twice.
class [[nodiscard]] THREAD_SAFETY(scoped_lockable) RegistryLock {
public:
    RegistryLock() THREAD_SAFETY(acquire_capability(gRegistryLocker)) { gRegistryLocker.Lock(); }
    ~RegistryLock() THREAD_SAFETY(release_capability()) { gRegistryLocker.Unlock(); }
    RegistryLock(const RegistryLock&) = delete;
    RegistryLock& operator=(const RegistryLock&) = delete;

    // The list of a kind in the table in use; null before Open_Sys, after Close_Sys, and while
    // nobody made the list.
    BList* List(RegistrySlot slot) const;

    // Who was handed one holds the lock.
    void IsHeld() const THREAD_SAFETY(assert_capability(gRegistryLocker)) {}
};

// Keeps the registry as it is until the process ends; false if that takes longer.
bool keep_registry(bigtime_t patience_us);

// The place of the first record whose ident is not below `ident`; its end if there is none. Idents
// are counted from the first one, for they may run over.
template <class Record>
int32 place_of(const BList& list, int32_t ident)
{
    const auto ident_at = [&list](int32 index) {
        return static_cast<uint32_t>(static_cast<const Record*>(list.ItemAtFast(index))->ident);
    };
    int32 first = 0;
    int32 count = list.CountItems();
    const uint32_t lowest = count > 0 ? ident_at(0) : 0;
    while (count > 0) {
        const int32 half = count / 2;
        if (ident_at(first + half) - lowest < static_cast<uint32_t>(ident) - lowest) {
            first += half + 1;
            count -= half + 1;
        } else {
            count = half;
        }
    }
    return first;
}

// The record with that ident, null if there is none.
template <class Record>
Record* find_record(const RegistryLock& registry, int32_t ident)
{
    static_assert(Record::kSlot != kGadgets, "in no order: find_gadget()");
    BList* list = registry.List(Record::kSlot);
    if (list == nullptr)
        return nullptr;
    auto* record = static_cast<Record*>(list->ItemAt(place_of<Record>(*list, ident)));
    return record != nullptr && record->ident == ident ? record : nullptr;
}

// True for the address of a record in its list. Messages name gadgets so.
template <class Record>
bool is_listed(const RegistryLock& registry, const void* address)
{
    BList* list = registry.List(Record::kSlot);
    return list != nullptr && list->HasItem(address);
}

// Puts a record into its list, where its ident belongs. False without a list and without memory.
template <class Record>
bool enter_record(const RegistryLock& registry, Record* record)
{
    BList* list = registry.List(Record::kSlot);
    return list != nullptr &&
           list->AddItem(record, place_of<Record>(*list, static_cast<int32_t>(record->ident)));
}

// Takes a record out of its list. False if it was not there.
template <class Record>
bool remove_record(const RegistryLock& registry, Record* record)
{
    BList* list = registry.List(Record::kSlot);
    if (list == nullptr)
        return false;
    const int32 place = place_of<Record>(*list, static_cast<int32_t>(record->ident));
    return list->ItemAt(place) == record && list->RemoveItem(place) != nullptr;
}

// The program is to end: every window closes without asking from here on.
void set_ending();
// True once that was said.
bool is_ending();
// True inside a host that has an application of its own.
bool is_tracker();
// Tells the application to quit, unless a host owns it.
void quit_application();

// Channels found lately belong to the table in use; another one makes them unknown. Main thread.
void empty_file_cache();

// The list of gadgets is one of its own kind. Null without memory.
BList* new_gadget_list();

// Each closes what a list of its kind holds, and empties the list. Main thread.
void Close_All_Icon(BList* icons);
void Close_All_File(BList* files);
void Close_All_Gadget(BList* gadgets);
void Close_All_Font(BList* fonts);
void Close_All_Menu(BList* menus);
void Close_All_MediaKit(BList* media);
void Close_All_Serial(BList* ports);
void Close_All_Midi(BList* files);
void Close_All_Joystick(BList* joysticks);

// Puts what the channels hold into their files; leaves out what is no file, and might wait. No
// channel is used any more afterwards, but by the calling thread: for the end of the process. False
// if some call did not come to its end. Any thread.
bool flush_channels();

#endif  // RUNTIME_REGISTRY_H
