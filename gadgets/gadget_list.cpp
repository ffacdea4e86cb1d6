// The registry's list of gadgets, and the table of their places in it.

#include "gadgets/gadget_list.h"

#include "gadgets/gadget.h"

#include <new>

static const int kFirstBits = 6;
static const int32 kBlock = 20;

bool enter_registry(MyGadget* gadget)
{
    const RegistryLock registry;
    GadgetList* list = gadget_list(registry);
    return list != nullptr && list->Enter(gadget);
}

bool leave_registry(MyGadget* gadget)
{
    const RegistryLock registry;
    GadgetList* list = gadget_list(registry);
    return list != nullptr && list->Remove(gadget);
}

BList* new_gadget_list()
{
    return guarded<BList*>(nullptr, [] { return new GadgetList; });
}

GadgetList::GadgetList() : BList(kBlock), fSlots(1u << kFirstBits), fShift(32 - kFirstBits) {}

bool GadgetList::Enter(MyGadget* gadget)
{
    return guarded(false, [=, this] {
        const int32 place = CountItems();
        if (static_cast<size_t>(place) + 1 > fSlots.size() / 2)
            _Grow();
        fIdents.push_back(gadget->ident);
        if (!AddItem(gadget)) {
            fIdents.pop_back();
            return false;
        }
        fSlots[_SlotOf(gadget->ident)] = {gadget->ident, place};
        return true;
    });
}

bool GadgetList::Remove(MyGadget* gadget)
{
    const uint32_t slot = _SlotOf(gadget->ident);
    const int32 place = fSlots[slot].place;
    if (fSlots[slot].ident == 0 || ItemAtFast(place) != gadget)
        return false;
    _Free(slot);
    const int32 last = CountItems() - 1;
    if (place != last) {
        ReplaceItem(place, ItemAtFast(last));
        fIdents[static_cast<size_t>(place)] = fIdents.back();
        fSlots[_SlotOf(fIdents.back())].place = place;
    }
    fIdents.pop_back();
    RemoveItem(last);
    return true;
}

void GadgetList::_Grow()
{
    std::vector<Slot> slots(fSlots.size() * 2);
    slots.swap(fSlots);
    fShift--;
    for (const Slot& slot : slots) {
        if (slot.ident != 0)
            fSlots[_SlotOf(slot.ident)] = slot;
    }
}

// Those behind that would not be found any more across the gap move up.
void GadgetList::_Free(uint32_t slot)
{
    const uint32_t mask = static_cast<uint32_t>(fSlots.size()) - 1;
    for (uint32_t next = _After(slot); fSlots[next].ident != 0; next = _After(next)) {
        const uint32_t first = _FirstSlotOf(fSlots[next].ident);
        if (((next - first) & mask) >= ((next - slot) & mask)) {
            fSlots[slot] = fSlots[next];
            slot = next;
        }
    }
    fSlots[slot] = {0, 0};
}
