// The walk through a window's views, and what all items have in common.

#include <interface/accessible/Teller.h>

#include <Alert.h>
#include <Menu.h>
#include <MenuItem.h>
#include <ScrollView.h>
#include <TextControl.h>
#include <TextView.h>

#include <atomic>

#include <interface/menu/MenuWindow.h>
#include <interface/window/WindowPrivate.h>

namespace BPrivate {

using server::AccessibleRole;

uint32 reader_id(const BView& view)
{
    static std::atomic<uint32> sLast{0};
    ViewData& data = ViewPrivate::Data(&view);
    if (data.readerId == 0)
        data.readerId = ++sLast;
    return data.readerId;
}

// Menus that are closed belong to their items.
static BView* menu_for_reader(BMenu* menu, uint32 id)
{
    for (int32 i = 0; menu != nullptr && i < menu->CountItems(); i++) {
        BMenu* const below = menu->SubmenuAt(i);
        if (below == nullptr)
            continue;
        if (ViewPrivate::Data(below).readerId == id)
            return below;
        if (BView* found = menu_for_reader(below, id))
            return found;
    }
    return nullptr;
}

BView* view_for_reader(BView* top, uint32 id)
{
    BView* found = nullptr;
    ViewPrivate::ForEach(top, [&](BView* view) {
        if (found != nullptr)
            return;
        if (ViewPrivate::Data(view).readerId == id)
            found = view;
        else if (auto* menu = dynamic_cast<BMenu*>(view))
            found = menu_for_reader(menu, id);
    });
    return found;
}

Teller::Teller(BWindow* window, std::map<uint32, ToldText>* texts)
    : fWindow(window),
      fFocus(window->CurrentFocus()),
      fTexts(texts),
      fTree(std::make_shared<server::AccessibleTree>())
{
}

std::shared_ptr<const server::AccessibleTree> Teller::Tell()
{
    _TellWindow();
    TellChildren(*WindowData::Of(fWindow)->topView, 0);
    std::map<uint32, ToldText> told;
    for (const Item& item : fTree->items) {
        const auto known = fTexts->find(server::view_of(item.id));
        if (item.text != nullptr && known != fTexts->end())
            told.insert(*known);
    }
    fTexts->swap(told);
    return fTree;
}

static AccessibleRole role_of(const BWindow& window)
{
    if (dynamic_cast<const BAlert*>(&window) != nullptr)
        return AccessibleRole::Alert;
    if (dynamic_cast<const MenuWindow*>(&window) != nullptr)
        return AccessibleRole::MenuWindow;
    if ((window.Flags() & B_AVOID_FOCUS) != 0)
        return AccessibleRole::ToolTip;
    return window.IsModal() ? AccessibleRole::Dialog : AccessibleRole::Window;
}

void Teller::_TellWindow()
{
    Item item;
    item.role = role_of(*fWindow);
    item.name = fWindow->Title();
    item.frame = fWindow->Bounds();
    if (fWindow->IsModal())
        item.states |= server::kIsModal;
    if (fWindow->IsHidden())
        item.states |= server::kIsHidden;
    fTree->items.push_back(item);
}

void Teller::TellChildren(const BView& view, int32 parent)
{
    for (BView* child = ViewPrivate::Data(&view).first; child != nullptr;
         child = ViewPrivate::Data(child).next) {
        if (ViewPrivate::Data(child).hidden <= 0)
            _Tell(*child, parent);
    }
}

// A view that nobody knows: if it has a tool tip or takes the keyboard it means something.
static int32 tell_other(Teller& teller, BView& view, int32 parent)
{
    const bool takes_keys = (view.Flags() & B_NAVIGABLE) != 0;
    if (!takes_keys && teller.ToolTip(view).empty())
        return parent;
    const AccessibleRole role =
        view.CountChildren() > 0 ? AccessibleRole::Group : AccessibleRole::Graphic;
    Teller::Item& item = teller.Add(view, parent, role, nullptr);
    if (role == AccessibleRole::Graphic)
        item.states |= server::kCanBePressed;
    return teller.Last();
}

void Teller::_Tell(BView& view, int32 parent)
{
    const int32 inside = _TellFor(view)(*this, view, parent);
    if (inside != kNothing)
        TellChildren(view, inside);
}

TellView Teller::_TellFor(const BView& view)
{
    // Of each class only once.
    static auto* const known = new std::unordered_map<std::type_index, TellView>;
    static auto* const lock = new std::mutex;
    const std::lock_guard<std::mutex> guard(*lock);
    TellView& tell = (*known)[typeid(view)];
    for (TellView (*family)(const BView&) :
         {text_teller, list_teller, menu_teller, control_teller}) {
        if (tell == nullptr)
            tell = family(view);
    }
    if (tell == nullptr)
        tell = tell_other;
    return tell;
}

BRect Teller::Place(const BView& view, BRect rect, uint32* states) const
{
    const BRect place = ViewPrivate::FromView(&view, rect);
    clipping_rect seen;
    const bool shows = ViewPrivate::Data(&view).ClippedFrame(&seen) &&
                       place.Intersects(BRect(float(seen.left), float(seen.top), float(seen.right),
                                              float(seen.bottom)));
    if (!shows)
        *states |= server::kIsOutOfSight;
    return place;
}

// That of a view with scroll bars may be set for all three.
std::string Teller::ToolTip(BView& view) const
{
    auto* const around = dynamic_cast<BScrollView*>(view.Parent());
    std::string tip = _OwnToolTip(view);
    if (tip.empty() && around != nullptr && around->Target() == &view)
        tip = _OwnToolTip(*around);
    return tip;
}

std::string Teller::_OwnToolTip(BView& view) const
{
    if (ViewPrivate::Data(&view).Extras().toolTipText.Length() > 0)
        return ViewPrivate::Data(&view).Extras().toolTipText.String();
    BMessage message(kTellReader);
    message.AddPointer("view", &view);
    const char* text;
    if (fWindow->Perform(kTellReader, &message) == B_OK &&
        message.FindString("text", &text) == B_OK)
        return text;
    return "";
}

Teller::Item& Teller::Add(BView& view, int32 parent, AccessibleRole role, const char* label)
{
    Item item;
    item.id = server::accessible_id(reader_id(view));
    item.parent = parent;
    item.role = role;
    item.frame = Place(view, view.Bounds(), &item.states);
    if (label != nullptr)
        item.name = label;
    std::string tip = ToolTip(view);
    if (item.name.empty())
        item.name = std::move(tip);
    else if (tip != item.name)
        item.description = std::move(tip);
    if ((view.Flags() & B_NAVIGABLE) != 0)
        item.states |= server::kTakesFocus;
    if (&view == fFocus)
        SetFocus(item.id);
    fTree->items.push_back(std::move(item));
    return fTree->items.back();
}

Teller::Item& Teller::AddPart(const Item& whole, uint32 part, AccessibleRole role, const char* name)
{
    Item item;
    item.id = server::accessible_id(server::view_of(whole.id), part);
    item.parent = static_cast<int32>(&whole - fTree->items.data());
    item.role = role;
    item.frame = whole.frame;
    item.states = whole.states & server::kIsDisabled;
    if (name != nullptr)
        item.name = name;
    fTree->items.push_back(std::move(item));
    return fTree->items.back();
}

void Teller::SetRange(Item* item, double value, double least, double most, double step)
{
    item->range = std::make_shared<server::AccessibleRange>(
        server::AccessibleRange{value, least, most, step});
}

}  // namespace BPrivate
