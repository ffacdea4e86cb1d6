#ifndef RUNTIME_SYSTEM_LIST_H
#define RUNTIME_SYSTEM_LIST_H

#include <List.h>

// The list of names that the system queries fill: heap strings it owns, null where a name could
// not be copied. Main thread.
BList& system_list();

#endif  // RUNTIME_SYSTEM_LIST_H
