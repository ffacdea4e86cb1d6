#ifndef GADGETS_GADGET_LIST_H
#define GADGETS_GADGET_LIST_H

// The registry's list of gadgets. A window may have ten thousand of them, and every call looks one
// up: so beside the list, which is in no order, there is a table that tells where an ident stands.

#include "runtime/registry.h"

#include <List.h>

#include <stdint.h>
#include <vector>

struct MyGadget;

// With the registry's lock held.
class GadgetList : public BList {
public:
    GadgetList();

    // Null if there is none of that ident.
    MyGadget* Find(int32_t ident) const
    {
        const Slot& slot = fSlots[_SlotOf(ident)];
        return slot.ident != 0 ? static_cast<MyGadget*>(ItemAtFast(slot.place)) : nullptr;
    }
    // False, and nothing changed, without memory.
    bool Enter(MyGadget* gadget);
    // False if it is not there.
    bool Remove(MyGadget* gadget);

private:
    struct Slot {
        int32_t ident;  // 0: free
        int32 place;    // in the list
    };

    // Where an ident stands, or would be entered: a free one follows each run of slots in use.
    uint32_t _SlotOf(int32_t ident) const
    {
        uint32_t slot = _FirstSlotOf(ident);
        while (fSlots[slot].ident != ident && fSlots[slot].ident != 0)
            slot = _After(slot);
        return slot;
    }
    // Spreads rising idents evenly.
    uint32_t _FirstSlotOf(int32_t ident) const
    {
        return static_cast<uint32_t>(ident) * 0x9E3779B1u >> fShift;
    }
    uint32_t _After(uint32_t slot) const { return slot + 1 < fSlots.size() ? slot + 1 : 0; }
    void _Grow();
    void _Free(uint32_t slot);

    std::vector<int32_t> fIdents;  // by place
    std::vector<Slot> fSlots;      // a power of two, twice as many as gadgets at least
    int fShift;                    // of the product of 32 bits, down to a slot's number
};

// That of the table in use; null if there is none.
inline GadgetList* gadget_list(const RegistryLock& registry)
{
    return static_cast<GadgetList*>(registry.List(kGadgets));
}

// Put a gadget into that list, and take it out; false if that can not be.
bool enter_registry(MyGadget* gadget);
bool leave_registry(MyGadget* gadget);

#endif  // GADGETS_GADGET_LIST_H
