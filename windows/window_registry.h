#ifndef WINDOWS_WINDOW_REGISTRY_H
#define WINDOWS_WINDOW_REGISTRY_H

// Entering windows in the registry and taking them out; only the window's own code does that.

#include "windows/window.h"

enum class WindowRemoval { NotListed, Removed, LastOne };

// False when there is no registry or no memory.
bool add_window(WindowRecord* record);
// Takes the window's record out of the list, and hands DefWin on. Window locked.
WindowRemoval remove_window(MyWinClass* window);

#endif  // WINDOWS_WINDOW_REGISTRY_H
