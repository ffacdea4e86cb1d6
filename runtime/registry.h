#ifndef RUNTIME_REGISTRY_H
#define RUNTIME_REGISTRY_H

// The resource registry: one list per kind of object, every object under its ident. Idents only
// rise and are appended as they are handed out, so each list is in ident order.

#include <List.h>
#include <Locker.h>

#include <stdint.h>

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

// Guards the lists of windows and gadgets, which the windows' threads change too. Held for
// look-ups only, never while a window is locked or waited for.
BLocker& registry_lock();

// The list of a kind; null before Open_Sys, after Close_Sys, and while nobody made the list.
BList* registry_list(RegistrySlot slot);

// True once End was called: every window closes without asking.
bool is_ending();
// True inside a host that has an application of its own.
bool is_tracker();
// Tells the application to quit, unless a host owns it.
void quit_application();

// Channels found lately belong to the table in use; another one makes them unknown. Main thread.
void empty_file_cache();

// Each closes what its list of the table in use holds, and empties the list.
void Close_All_Icon();
void Close_All_File();
void Close_All_Font();
void Close_All_Menu();
void Close_All_Gadget();
void Close_All_MediaKit();
void Close_All_Serial();
void Close_All_Midi();
void Close_All_Joystick();

// Puts what the channels hold into their files; leaves out what is no file, and might wait. For
// the end of the process, which keeps the lock: no channel opens or closes any more. Any thread.
void flush_channels();

#endif  // RUNTIME_REGISTRY_H
