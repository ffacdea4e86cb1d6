// Lists of names that the system tells: devices, fonts, volumes, what was used lately. All share
// one list, which the program reads by index. Main thread.

#include "plinth.h"

#include <Entry.h>
#include <Font.h>
#include <Joystick.h>
#include <List.h>
#include <Message.h>
#include <MidiPort.h>
#include <Path.h>
#include <Roster.h>
#include <SerialPort.h>
#include <StorageDefs.h>
#include <Volume.h>
#include <VolumeRoster.h>

#include <exception>
#include <iterator>
#include <new>

#include "runtime/lasting_locker.h"
#include "runtime/strings.h"
#include "runtime/trace.h"

static const int32 kMaxRecent = 64;
static const size_t kDeviceName = 32;

struct NameList {
    LastingLocker lock{"names"};  // several handlers may end the program at once
    // Heap strings, null where a name is empty or could not be copied.
    BList names GUARDED_BY(lock){20};
};

// Built on first use, in place, and there to the end of the process.
static NameList& system_list()
{
    alignas(NameList) static char room[sizeof(NameList)];
    static auto* const list = new (room) NameList;
    return *list;
}

static void append(const char* name)
{
    Autolock guard(system_list().lock);
    system_list().names.AddItem(MyStringStr(name));
}

template <class Device>
static void append_devices()
{
    Device device;
    char name[kDeviceName];
    const int32 count = device.CountDevices();
    for (int32 i = 0; i < count; i++) {
        if (device.GetDeviceName(i, name, sizeof(name)) == B_OK)
            append(name);
    }
}

static void append_fonts()
{
    font_family name;
    const int32 count = count_font_families();
    for (int32 i = 0; i < count; i++) {
        if (get_font_family(i, &name) == B_OK)
            append(name);
    }
}

static void append_volumes()
{
    BVolumeRoster volumes;
    BVolume volume;
    char name[B_FILE_NAME_LENGTH];
    while (volumes.GetNextVolume(&volume) != B_BAD_VALUE) {
        if (volume.IsPersistent() && volume.GetName(name) == B_OK && name[0] != '\0')
            append(name);
    }
}

static void append_refs(const BMessage& answer)
{
    entry_ref ref;
    int32 count = 0;
    answer.GetInfo("refs", nullptr, &count);
    for (int32 i = 0; i < count; i++) {
        if (answer.FindRef("refs", i, &ref) != B_OK)
            continue;
        const BEntry entry(&ref, true);
        BPath path;
        append(entry.GetPath(&path) == B_OK ? path.Path() : nullptr);
    }
}

extern "C" void GetRecentApp(void)
try {
    BMessage answer;
    be_roster->GetRecentApps(&answer, kMaxRecent);
    append_refs(answer);
} catch (const std::exception&) {
    show_dbg(kNoMemory, 0, __func__);
}

extern "C" void GetRecentDocument(void)
try {
    BMessage answer;
    be_roster->GetRecentDocuments(&answer, kMaxRecent);
    append_refs(answer);
} catch (const std::exception&) {
    show_dbg(kNoMemory, 0, __func__);
}

extern "C" void GetRecentFolder(void)
try {
    BMessage answer;
    be_roster->GetRecentFolders(&answer, kMaxRecent);
    append_refs(answer);
} catch (const std::exception&) {
    show_dbg(kNoMemory, 0, __func__);
}

// By kind, as PLINTH_LIST_... numbers them.
static void (*const kFillers[])() = {
    append_devices<BJoystick>,
    append_devices<BSerialPort>,
    append_fonts,
    append_devices<BMidiPort>,
    append_volumes,
    GetRecentApp,
    GetRecentDocument,
    GetRecentFolder,
};
static_assert(std::size(kFillers) == PLINTH_LIST_RECENT_FOLDERS + 1, "one filler per kind");

extern "C" void GetList(uint32_t kind)
try {
    FreeList();
    if (kind < std::size(kFillers))
        kFillers[kind]();
} catch (const std::exception&) {
    show_dbg(kNoMemory, 0, __func__);
}

extern "C" int32_t CountList(void)
{
    Autolock guard(system_list().lock);
    return system_list().names.CountItems();
}

extern "C" const char* GetInfoList(int32_t index)
{
    Autolock guard(system_list().lock);
    return text_or_empty(static_cast<const char*>(system_list().names.ItemAt(index)));
}

extern "C" void FreeList(void)
{
    Autolock guard(system_list().lock);
    BList& list = system_list().names;
    for (int32 i = 0; i < list.CountItems(); i++)
        MyFree(list.ItemAtFast(i));
    list.MakeEmpty();
}
