// The gadget registry: look-ups, and the end of all gadgets. Any thread.

#include "gadgets/gadget.h"

#include "plinth.h"

#include <View.h>

// Kinds that another one stands for; each other kind stands for itself.
static const struct {
    int32_t first, last, family;
} kFamilies[] = {
    {4, 6, kStringField}, {36, 37, kStringField}, {45, 46, kStringField}, {8, 10, kListView},
    {20, 23, kListView},  {14, 14, kScrollBar},   {16, 16, kSlider},      {27, 29, kTextEditor},
};

static int32_t family_of(int32_t kind)
{
    for (const auto& row : kFamilies) {
        if (kind >= row.first && kind <= row.last)
            return row.family;
    }
    return kind;
}

static MyGadget* find_gadget(const RegistryLock& registry, int32_t ident)
{
    return ident < 1 ? nullptr : find_record<MyGadget>(registry, ident);
}

MyGadget* gadget_record(int32_t ident) { return find_gadget(RegistryLock(), ident); }

BView* gadget_view(int32_t ident)
{
    RegistryLock registry;
    const MyGadget* gadget = find_gadget(registry, ident);
    return gadget != nullptr ? gadget->view : nullptr;
}

BView* Find_Gadget(int32_t ident, int32_t family)
{
    RegistryLock registry;
    const MyGadget* gadget = find_gadget(registry, ident);
    return gadget != nullptr && family_of(gadget->kind) == family ? gadget->view : nullptr;
}

void* gadget_handler(const BMessage& message, void* MyGadget::*slot)
{
    RegistryLock registry;  // keeps the record
    void* pointer = nullptr;
    if (message.FindPointer("gd", &pointer) != B_OK || !is_listed<MyGadget>(registry, pointer))
        return nullptr;
    return static_cast<MyGadget*>(pointer)->*slot;
}

static bool is_meant(const MyGadget* gadget, int32_t family)
{
    return gadget != nullptr &&
           (family == GadgetAccess::kAnyFamily || family_of(gadget->kind) == family);
}

static BWindow* window_of(int32_t ident, int32_t family)
{
    RegistryLock registry;
    const MyGadget* gadget = find_gadget(registry, ident);
    const bool has_view = is_meant(gadget, family) && gadget->view != nullptr;
    return has_view ? gadget->view->Window() : nullptr;
}

// The registry is not kept while the window is waited for: what was found is looked up again.
GadgetAccess::GadgetAccess(int32_t ident, int32_t family) : fLock(window_of(ident, family))
{
    RegistryLock registry;
    MyGadget* gadget = find_gadget(registry, ident);
    if (is_meant(gadget, family))
        fGadget = gadget;
}

// A record's view is deleted, and the record freed, as the handlers in its window expect it: none
// of them runs meanwhile.
static void free_gadget(MyGadget* gadget)
{
    WindowLock lock(gadget->view);
    if (gadget->view != nullptr)
        gadget->view->RemoveSelf();
    delete gadget->view;
    MyFree(gadget);
}

void Close_All_Gadget(BList* gadgets)
{
    for (;;) {
        MyGadget* gadget;
        {
            RegistryLock registry;
            gadget = static_cast<MyGadget*>(gadgets->RemoveItem(int32{0}));
        }
        if (gadget == nullptr)
            return;
        free_gadget(gadget);
    }
}
