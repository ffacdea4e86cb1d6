// The gadget registry: look-ups, and gadgets held for a call. Any thread.

#include "gadgets/gadget.h"

#include "gadgets/gadget_list.h"
#include "gadgets/kinds.h"

#include <ScrollView.h>
#include <View.h>

#include <utility>

static const int32_t kMostHolders = 100;  // gadgets in one another; links may be out of date

static int32_t family_of(int32_t kind)
{
    const KindRow* row = kind_row(kind);
    return row != nullptr ? row->family : kind;
}

MyGadget* find_gadget(const RegistryLock& registry, int32_t ident)
{
    const GadgetList* list = ident < 1 ? nullptr : gadget_list(registry);
    return list != nullptr ? list->Find(ident) : nullptr;
}

MyGadget* gadget_record(int32_t ident) { return find_gadget(RegistryLock(), ident); }

BView* Find_Gadget(int32_t ident, int32_t family)
{
    RegistryLock registry;
    const MyGadget* gadget = find_gadget(registry, ident);
    return gadget != nullptr && family_of(gadget->kind) == family ? gadget->view : nullptr;
}

static const char* const kIdentField = "id";

void name_gadget(BMessage* message, MyGadget* gadget)
{
    message->AddPointer("gd", gadget);
    message->AddInt32(kIdentField, gadget->ident);
}

void* gadget_handler(const BMessage& message, void* MyGadget::*slot)
{
    RegistryLock registry;  // keeps the record
    void* pointer = nullptr;
    int32 ident;
    if (message.FindPointer("gd", &pointer) != B_OK)
        return nullptr;
    // Another gadget may stand where a killed one stood: the ident tells them apart.
    const bool is_meant = message.FindInt32(kIdentField, &ident) == B_OK
                              ? find_gadget(registry, ident) == pointer
                              : is_listed<MyGadget>(registry, pointer);
    return is_meant ? static_cast<MyGadget*>(pointer)->*slot : nullptr;
}

static bool is_meant(const MyGadget* gadget, int32_t family)
{
    return gadget != nullptr &&
           (family == GadgetAccess::kAnyFamily || family_of(gadget->kind) == family);
}

// --- gadgets in no window

static LastingLocker sLooseLock("loose gadgets");

void LooseLock::Take() { fHeld = sLooseLock.Locker().Lock(); }

void LooseLock::Release()
{
    if (fHeld)
        sLooseLock.Locker().Unlock();
    fHeld = false;
}

LooseGivenUp::LooseGivenUp()
    : fLevels(sLooseLock.Locker().IsLocked() ? sLooseLock.Locker().CountLocks() : 0)
{
    for (int32_t i = 0; i < fLevels; i++)
        sLooseLock.Locker().Unlock();
}

LooseGivenUp::~LooseGivenUp()
{
    for (int32_t i = 0; i < fLevels; i++)
        sLooseLock.Locker().Lock();
}

// --- gadgets for a call

// That of the gadgets that it was put into.
[[gnu::cold, gnu::noinline]] static BWindow* window_of_holders(const MyGadget& gadget)
{
    BWindow* window = nullptr;
    RegistryLock registry;
    const MyGadget* holder = &gadget;
    for (int32_t steps = 0; steps < kMostHolders && window == nullptr; steps++) {
        holder = find_gadget(registry, static_cast<int32_t>(holder->holder));
        if (holder == nullptr)
            return nullptr;
        window = holder->view != nullptr ? holder->view->Window() : nullptr;
    }
    return window;
}

// The window that a gadget is in, or would be in if its page were shown.
static BWindow* window_of(const MyGadget& gadget)
{
    BWindow* const window = gadget.view != nullptr ? gadget.view->Window() : nullptr;
    return window != nullptr ? window : window_of_holders(gadget);
}

// False if the gadget is in a window by now.
bool GadgetAccess::_LockLoose()
{
    fLoose.Take();
    if (window_of(*fGadget) == nullptr)
        return true;
    fLoose.Release();
    return false;
}

[[gnu::cold, gnu::noinline]] static WindowLock wait_for(BWindow* window)
{
    const LooseGivenUp given_up;
    return WindowLock(window);
}

// False if the gadget is in another window by now.
bool GadgetAccess::_Lock(BWindow* window)
{
    if (!fLock.Try(window))
        fLock = wait_for(window);
    if (window_of(*fGadget) == window)
        return true;
    fLock = WindowLock();
    return false;
}

GadgetAccess::GadgetAccess(int32_t ident, int32_t family)
{
    {
        RegistryLock registry;
        MyGadget* gadget = find_gadget(registry, ident);
        if (!is_meant(gadget, family))
            return;
        hold_gadget(gadget);
        fGadget = gadget;
    }
    for (bool locked = false; !locked;) {
        BWindow* const window = window_of(*fGadget);
        locked = window != nullptr ? _Lock(window) : _LockLoose();
    }
    if (fGadget->ident == 0)
        release_gadget(std::exchange(fGadget, nullptr));
}

GadgetAccess::~GadgetAccess()
{
    if (fGadget != nullptr)
        release_gadget(fGadget);
}

void GadgetAccess::SetHolder(int32_t ident) const
{
    RegistryLock registry;
    fGadget->holder = ident;
}

BView* shown_view(BView* view)
{
    auto* scroll = dynamic_cast<BScrollView*>(view);
    return scroll != nullptr && scroll->ChildAt(0) != nullptr ? scroll->ChildAt(0) : view;
}

void* handler_in(const MyGadget& gadget, void* MyGadget::*slot)
{
    RegistryLock registry;
    return gadget.ident != 0 ? gadget.*slot : nullptr;
}
