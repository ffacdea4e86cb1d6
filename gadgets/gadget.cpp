// The gadget registry: look-ups and the end of all gadgets. Main thread, but for the look-ups of
// the windows' threads, for which the registry's lock is held.

#include "gadgets/gadget.h"

#include "plinth.h"
#include "runtime/registry.h"

#include <View.h>

#include <Autolock.h>

// The kind that stands for a family.
static int32_t representative_of(int32_t kind)
{
    switch (kind) {
        case 4:
        case 5:
        case 6:
        case 36:
        case 37:
        case 45:
        case 46:
            return 3;
        case 8:
        case 9:
        case 10:
        case 20:
        case 21:
        case 22:
        case 23:
            return 7;
        case 14:
            return 13;
        case 16:
            return 15;
        case 27:
        case 28:
        case 29:
            return 26;
        default:
            return kind;
    }
}

static MyGadget* record_of(int32_t ident)
{
    BAutolock lock(registry_lock());
    BList* gadgets = registry_list(kGadgets);
    if (ident < 1 || gadgets == nullptr)
        return nullptr;
    for (int32 i = 0; i < gadgets->CountItems(); i++) {
        auto* gadget = static_cast<MyGadget*>(gadgets->ItemAtFast(i));
        if (gadget->ident == ident)
            return gadget;
    }
    return nullptr;
}

void* Find_Gadget(int32_t ident, int32_t kind)
{
    MyGadget* gadget = record_of(ident);
    if (gadget == nullptr)
        return nullptr;
    if (kind == kRecord)
        return gadget;
    if (kind == kAnyKind || representative_of(gadget->kind) == kind)
        return gadget->view;
    return nullptr;
}

bool is_listed_gadget(const MyGadget* gadget)
{
    BAutolock lock(registry_lock());
    BList* gadgets = registry_list(kGadgets);
    return gadgets != nullptr && gadgets->HasItem(gadget);
}

void Close_All_Gadget()
{
    BList* gadgets = registry_list(kGadgets);
    if (gadgets == nullptr)
        return;
    for (int32 i = 0; i < gadgets->CountItems(); i++) {
        auto* gadget = static_cast<MyGadget*>(gadgets->ItemAtFast(i));
        delete gadget->view;
        MyFree(gadget);
    }
    gadgets->MakeEmpty();
}
