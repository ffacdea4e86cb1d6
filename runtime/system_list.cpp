// The list behind the system queries. Main thread.

#include "runtime/system_list.h"

#include "plinth.h"

#include <stdlib.h>

BList& system_list()
{
    static BList* const list = new BList(20);
    return *list;
}

extern "C" void FreeList(void)
{
    BList& list = system_list();
    for (int32 i = 0; i < list.CountItems(); i++)
        free(list.ItemAtFast(i));
    list.MakeEmpty();
}
