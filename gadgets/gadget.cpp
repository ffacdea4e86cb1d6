// The gadget registry: look-ups, and the end of all gadgets. Any thread.

#include "gadgets/gadget.h"

#include "gadgets/kinds.h"
#include "plinth.h"

#include <Messenger.h>
#include <ScrollView.h>
#include <View.h>
#include <Window.h>

#include <unordered_set>
#include <vector>

static int32_t family_of(int32_t kind)
{
    const KindRow* row = kind_row(kind);
    return row != nullptr ? row->family : kind;
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

BView* shown_view(BView* view)
{
    auto* scroll = dynamic_cast<BScrollView*>(view);
    return scroll != nullptr && scroll->ChildAt(0) != nullptr ? scroll->ChildAt(0) : view;
}

void* handler_in(const MyGadget& gadget, void* MyGadget::*slot)
{
    RegistryLock registry;
    return gadget.*slot;
}

// --- the end of gadgets

namespace {

// A gadget that was killed on its window's own thread, where its view may be in the middle of a
// call that goes on when the handler has returned.
struct Grave {
    const BWindow* window;
    MyGadget* gadget;
};

}  // namespace

static std::vector<Grave>& graves()  // registry's lock
{
    static auto* const all = new std::vector<Grave>;
    return *all;
}

// The views of all gadgets in a list.
static std::unordered_set<const BView*> views_of(const BList& gadgets)
{
    std::unordered_set<const BView*> views;
    for (int32 i = 0; i < gadgets.CountItems(); i++)
        views.insert(static_cast<const MyGadget*>(gadgets.ItemAtFast(i))->view);
    return views;
}

// Takes the gadgets' views out that hang below a view: they are deleted with their own records.
static void let_go(BView* view, const std::unordered_set<const BView*>& views)
{
    for (BView* child = view->ChildAt(0); child != nullptr;) {
        BView* next = child->NextSibling();
        if (views.count(child) != 0)
            child->RemoveSelf();
        else
            let_go(child, views);
        child = next;
    }
}

static void empty_of_gadgets(const MyGadget& gadget, BList* list)
{
    const KindRow* row = kind_row(gadget.kind);
    if (gadget.view == nullptr || list == nullptr || row == nullptr || row->inside == Inside::None)
        return;
    std::unordered_set<const BView*> views;
    {
        RegistryLock registry;
        views = views_of(*list);
    }
    let_go(gadget.view, views);
}

static void free_gadget(MyGadget* gadget)
{
    delete gadget->view;
    MyFree(gadget);
}

static BList* listed_gadgets()
{
    RegistryLock registry;
    return registry.List(kGadgets);
}

void dispose_gadget(MyGadget* gadget)
{
    {
        RegistryLock registry;
        if (!remove_record(registry, gadget))
            return;  // another thread was first
    }
    empty_of_gadgets(*gadget, listed_gadgets());
    BWindow* window = gadget->view != nullptr ? gadget->view->Window() : nullptr;
    if (gadget->view != nullptr)
        gadget->view->RemoveSelf();
    if (window == nullptr || window->Thread() != find_thread(nullptr)) {
        free_gadget(gadget);
        return;
    }
    {
        RegistryLock registry;
        graves().push_back({window, gadget});
    }
    window->PostMessage(kBuryMessage);
}

void bury_gadgets(const BWindow* window)
{
    std::vector<MyGadget*> dead;
    {
        RegistryLock registry;
        std::erase_if(graves(), [&](const Grave& grave) {
            if (grave.window == window)
                dead.push_back(grave.gadget);
            return grave.window == window;
        });
    }
    for (MyGadget* gadget : dead)
        free_gadget(gadget);
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
        // None of the handlers in its window runs meanwhile.
        WindowLock lock(gadget->view);
        empty_of_gadgets(*gadget, gadgets);
        if (gadget->view != nullptr)
            gadget->view->RemoveSelf();
        free_gadget(gadget);
    }
}
