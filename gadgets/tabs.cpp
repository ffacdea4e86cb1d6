// Tab gadgets. Hooks run on the window's thread, or on that of a call that has the window locked.

#include "gadgets/tabs.h"

#include "gadgets/kinds.h"
#include "plinth.h"

#include <TabView.h>
#include <Window.h>

#include <cmath>
#include <memory>
#include <utility>
#include <vector>

static const rgb_color kGround = {216, 216, 216, 255};

class MyTabView;

// What is behind a tab.
class MyBView2 : public BView {
public:
    MyBView2(BRect frame, MyTabView* tabs)
        : BView(frame, nullptr, B_FOLLOW_NONE, B_WILL_DRAW), fTabs(tabs)
    {
        SetViewColor(kGround);
        SetLowColor(kGround);
    }

    MyTabView* const fTabs;
};

class MyTabView : public BTabView {
public:
    explicit MyTabView(const GadgetSpec& spec)
        : BTabView(spec.frame, "", B_WIDTH_AS_USUAL, B_FOLLOW_ALL_SIDES,
                   B_FULL_UPDATE_ON_RESIZE | B_WILL_DRAW | B_NAVIGABLE_JUMP | B_FRAME_EVENTS |
                       B_NAVIGABLE),
          fGadget(spec.record)
    {
    }
    ~MyTabView() override { fGadget = nullptr; }

    void AttachedToWindow() override
    {
        SetViewColor(kGround);
        BTabView::AttachedToWindow();
    }
    // Tells the handler also of the tab that is in front already.
    void Select(int32 index) override
    {
        const BTab* tab = TabAt(index);
        if (tab == nullptr || !tab->IsEnabled())
            return;
        BTabView::Select(index);
        if (fGadget != nullptr && !fIsQuiet)
            call_handler(*fGadget, &MyGadget::value_handler, int32_t{index});
    }
    // The first one is told of only once, by the caller.
    void Add(MyBView2* page, BTab* tab)
    {
        const Quiet quiet(this);
        AddTab(page, tab);
    }
    // A tab that is taken out lives on with its page, for the gadgets on that.
    void TakeOut(int32 index)
    {
        std::erase_if(fRemoved,
                      [](const auto& kept) { return kept->View()->ChildAt(0) == nullptr; });
        fRemoved.reserve(fRemoved.size() + 1);
        if (BTab* tab = RemoveTab(index))
            fRemoved.emplace_back(tab);
    }
    void Empty();
    template <class Act>
    void ForEachPage(Act act)
    {
        for (int32 i = 0; i < CountTabs(); i++)
            act(ViewForTab(i));
        for (const auto& tab : fRemoved)
            act(tab->View());
    }

private:
    // Nobody is told of tabs that come to the front.
    class Quiet {
    public:
        explicit Quiet(MyTabView* tabs) : fTabs(tabs) { fTabs->fIsQuiet = true; }
        ~Quiet() { fTabs->fIsQuiet = false; }
        Quiet(const Quiet&) = delete;

    private:
        MyTabView* const fTabs;
    };

    MyGadget* fGadget;
    bool fIsQuiet = false;
    std::vector<std::unique_ptr<BTab>> fRemoved;
};

static void empty_page(BView* page)
{
    while (BView* child = page->ChildAt(0))
        child->RemoveSelf();
}

// Windows end with it, so it needs no memory.
void MyTabView::Empty()
{
    const Quiet quiet(this);
    ForEachPage(empty_page);
    while (CountTabs() > 0)
        delete RemoveTab(CountTabs() - 1);
    fRemoved.clear();
}

BView* create_tab(const GadgetSpec& spec) { return new MyTabView(spec); }

// --- what hangs where

BView* outer_view(const BView* view)
{
    if (const auto* page = dynamic_cast<const MyBView2*>(view))
        return page->fTabs;
    return view->Parent();
}

bool is_inside(const BView* view, const BView* outer)
{
    while (view != nullptr && view != outer)
        view = outer_view(view);
    return view != nullptr;
}

void for_each_page(BView* view, const std::function<void(BView*)>& act)
{
    if (auto* tabs = dynamic_cast<MyTabView*>(view))
        tabs->ForEachPage(act);
}

void empty_of_tabs(BView* view)
{
    if (auto* tabs = dynamic_cast<MyTabView*>(view))
        tabs->Empty();
}

// --- calls

template <class Action>
static void on_tabs(int32_t ident, Action act)
{
    on_gadget<MyTabView>(ident, kTabView, Unlocked::Act,
                         [&](MyTabView& tabs, MyGadget&) { act(tabs); });
}

extern "C" void AddTab(int32_t ident, const char* label)
{
    on_tabs(ident, [=](MyTabView& tabs) {
        const BRect bounds = tabs.Bounds();
        auto page =
            std::make_unique<MyBView2>(BRect(0, 0, std::ceil(bounds.Width()) - 1,
                                             std::ceil(bounds.Height()) - tabs.TabHeight() - 1),
                                       &tabs);
        auto* tab = new BTab;
        tabs.Add(page.release(), tab);
        tab->SetLabel(label != nullptr ? label : "");
        tabs.Select(0);
    });
}

extern "C" void RemoveTab(int32_t ident, int32_t index)
{
    on_tabs(ident, [=](MyTabView& tabs) { tabs.TakeOut(index); });
}

extern "C" void AddGadgetInTab(int32_t ident, int32_t tab_ident, int32_t index)
{
    on_tabs(tab_ident, [=](MyTabView& tabs) {
        const GadgetAccess inner(ident);  // its window as well, after that of the tabs
        BView* view = inner ? inner.View() : nullptr;
        BView* page = tabs.ViewForTab(index);
        if (view == nullptr || page == nullptr || is_inside(&tabs, view))
            return;
        view->RemoveSelf();
        page->AddChild(view);
        inner.SetHolder(tab_ident);
    });
}

extern "C" void TabSelect(int32_t ident, int32_t index)
{
    on_tabs(ident, [=](MyTabView& tabs) { tabs.Select(index); });
}

extern "C" int32_t TabSelection(int32_t ident)
{
    int32_t selection = 0;
    on_gadget<MyTabView>(ident, kTabView, Unlocked::Skip,
                         [&](MyTabView& tabs, MyGadget&) { selection = tabs.Selection(); });
    return selection;
}

extern "C" void TabSetFocus(int32_t ident, int32_t index, int32_t focused)
{
    on_tabs(ident, [=](MyTabView& tabs) { tabs.SetFocusTab(index, focused != 0); });
}

extern "C" void TabSetFocus2(int32_t ident, int32_t focused)
{
    on_tabs(ident, [=](MyTabView& tabs) { tabs.SetFocusTab(tabs.Selection(), focused != 0); });
}

extern "C" void SetTabHeight(int32_t ident, int32_t height)
{
    on_tabs(ident, [=](MyTabView& tabs) { tabs.SetTabHeight(static_cast<float>(height)); });
}

extern "C" void SetTabWidth(int32_t ident, int32_t width)
{
    if (width != 0 && width != 1)
        return;
    on_tabs(ident, [=](MyTabView& tabs) {
        tabs.SetTabWidth(width == 0 ? B_WIDTH_FROM_WIDEST : B_WIDTH_AS_USUAL);
    });
}

extern "C" void TabSystem(int32_t ident, int32_t value, int32_t what)
{
    if (what == 0)
        SetTabHeight(ident, value);
    else if (what == 1)
        SetTabWidth(ident, value);
}

extern "C" void TabEnable(int32_t ident, int32_t index, int32_t flag)
{
    on_tabs(ident, [=](MyTabView& tabs) {
        if (BTab* tab = tabs.TabAt(index)) {
            tab->SetEnabled(flag != 0);
            tabs.Draw(tabs.Bounds());
        }
    });
}
