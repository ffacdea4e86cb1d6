// The end of gadgets: when the views of killed ones are deleted, and the end of all. Any thread.

#include "gadgets/gadget.h"

#include "gadgets/gadget_list.h"
#include "gadgets/kinds.h"
#include "gadgets/tabs.h"
#include "plinth.h"
#include "windows/tool_tips.h"
#include "windows/window.h"

#include <View.h>

#include <algorithm>
#include <atomic>
#include <unordered_set>
#include <utility>
#include <vector>

// --- what holds a gadget

void hold_gadget(MyGadget* gadget)
{
    std::atomic_ref<intptr_t>(gadget->holds).fetch_add(1, std::memory_order_relaxed);
}

// Views lock nothing when they are deleted: the last one to hold it is the only one to know it.
void release_gadget(MyGadget* gadget)
{
    if (std::atomic_ref<intptr_t>(gadget->holds).fetch_sub(1, std::memory_order_acq_rel) > 0)
        return;
    delete gadget->view;
    MyFree(gadget);
}

// How many dispatches a window's thread is in, and so may be in a call of a view.
struct Dispatches {
    const BWindow* window;
    int depth;
};

// Of all windows: room is made as they open, for a message can not wait for memory.
static std::vector<Dispatches>& dispatches()  // registry's lock
{
    static auto* const all = new std::vector<Dispatches>;
    return *all;
}

static Dispatches* find_dispatches(const RegistryLock&, const BWindow* window)
{
    for (Dispatches& each : dispatches()) {
        if (each.window == window)
            return &each;
    }
    return nullptr;
}

// Killed gadgets with the windows that hold them.
static std::vector<std::pair<const BWindow*, MyGadget*>>& held()  // registry's lock
{
    static auto* const all = new std::vector<std::pair<const BWindow*, MyGadget*>>;
    return *all;
}

void expect_dispatches(const BWindow* window)
{
    RegistryLock registry;
    dispatches().push_back({window, 0});
}

void begin_dispatch(const BWindow* window)
{
    const RegistryLock registry;
    if (Dispatches* own = find_dispatches(registry, window))
        own->depth++;
}

// One of the gadgets that the window holds, taken from it; null if it holds none.
static MyGadget* take_held(const BWindow* window)
{
    RegistryLock registry;
    const auto found = std::find_if(held().rbegin(), held().rend(),
                                    [=](const auto& pair) { return pair.first == window; });
    if (found == held().rend())
        return nullptr;
    MyGadget* const gadget = found->second;
    *found = held().back();
    held().pop_back();
    return gadget;
}

static void let_go(const BWindow* window)
{
    while (MyGadget* gadget = take_held(window))
        release_gadget(gadget);
}

void end_dispatch(const BWindow* window)
{
    {
        const RegistryLock registry;
        Dispatches* own = find_dispatches(registry, window);
        if (own == nullptr || --own->depth > 0 || held().empty())
            return;
    }
    let_go(window);
}

void forget_dispatches(const BWindow* window)
{
    {
        RegistryLock registry;
        std::erase_if(dispatches(), [=](const Dispatches& each) { return each.window == window; });
    }
    let_go(window);
}

// A window's own thread may be in a call before the first dispatch, in a filter.
static void hold_for_windows(const RegistryLock&, MyGadget* gadget)
{
    std::vector<const BWindow*> windows;
    for (const Dispatches& each : dispatches()) {
        if (each.depth > 0)
            windows.push_back(each.window);
    }
    if (auto* own = dynamic_cast<MyWinClass*>(BLooper::LooperForThread(find_thread(nullptr))))
        windows.push_back(own);
    std::sort(windows.begin(), windows.end());
    windows.erase(std::unique(windows.begin(), windows.end()), windows.end());
    for (const BWindow* window : windows) {
        hold_gadget(gadget);
        held().emplace_back(window, gadget);
    }
}

// --- gadgets in others

// The views of all gadgets in a list.
static std::unordered_set<const BView*> views_of(const BList& gadgets)
{
    std::unordered_set<const BView*> views;
    for (int32 i = 0; i < gadgets.CountItems(); i++)
        views.insert(static_cast<const MyGadget*>(gadgets.ItemAtFast(i))->view);
    return views;
}

// Takes the gadgets' views out that hang below a view: they are deleted with their own records.
static void take_out(BView* view, const std::unordered_set<const BView*>& views)
{
    for (BView* child = view->ChildAt(0); child != nullptr;) {
        BView* next = child->NextSibling();
        if (views.count(child) != 0)
            child->RemoveSelf();
        else
            take_out(child, views);
        child = next;
    }
}

// Those of them that may be inside the gadget.
static std::unordered_set<const BView*> views_inside(const MyGadget& gadget, const BList* list)
{
    const KindRow* row = kind_row(gadget.kind);
    if (gadget.view == nullptr || list == nullptr || row == nullptr || row->inside == Inside::None)
        return {};
    RegistryLock registry;
    return views_of(*list);
}

// --- the end

// Of one that is in no list any more.
static void end_gadget(MyGadget* gadget, const std::unordered_set<const BView*>& inside)
{
    if (!inside.empty()) {
        take_out(gadget->view, inside);
        for_each_page(gadget->view, [&](BView* page) { take_out(page, inside); });
    }
    if (gadget->view != nullptr) {
        gadget->view->RemoveSelf();
        forget_tip(gadget->view);
    }
    {
        RegistryLock registry;
        gadget->ident = 0;
        hold_for_windows(registry, gadget);
    }
    release_gadget(gadget);
}

void dispose_gadget(MyGadget* gadget)
{
    BList* const others = RegistryLock().List(kGadgets);
    const auto inside = views_inside(*gadget, others);  // while nothing is lost without memory
    if (leave_registry(gadget))
        end_gadget(gadget, inside);
    // else a handler of its own was first
}

void Close_All_Gadget(BList* gadgets)
{
    for (;;) {
        MyGadget* gadget;
        {
            RegistryLock registry;
            gadget = static_cast<MyGadget*>(gadgets->LastItem());
            if (gadget == nullptr)
                return;
            static_cast<GadgetList*>(gadgets)->Remove(gadget);
        }
        const WindowLock lock(gadget->view);
        LooseLock loose;
        if (!lock.Held())
            loose.Take();
        guarded([=] { end_gadget(gadget, views_inside(*gadget, gadgets)); });
    }
}
