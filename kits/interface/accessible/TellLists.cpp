// What screen readers are told of lists and of tabs. Of a long list the rows about those that show
// are told, and all are counted.

#include <interface/accessible/Teller.h>

#include <OutlineListView.h>
#include <StringItem.h>
#include <TabView.h>

#include <algorithm>

namespace BPrivate {

using server::AccessibleRole;
using Item = Teller::Item;

static const int32 kRowsAround = 100;  // told above and below those that show

static bool ask_for_text(BListItem* row, std::string* text)
{
    const char* found = nullptr;
    BMessage message(kTellReader);
    if (const auto* string = dynamic_cast<const BStringItem*>(row))
        found = string->Text();
    else if (row->Perform(kTellReader, &message) == B_OK)
        message.FindString("text", &found);
    if (found != nullptr)
        *text = found;
    return found != nullptr;
}

static void tell_level(BOutlineListView& list, BListItem* row, Item* item)
{
    if (row->OutlineLevel() > 0) {
        item->description = "level ";
        item->description += std::to_string(row->OutlineLevel() + 1);
    }
    if (list.CountItemsUnder(row, true) > 0)
        item->states |= server::kIsExpandable | (row->IsExpanded() ? server::kIsExpanded : 0u);
}

static void tell_row(Teller& teller, BListView& list, int32 index, int32 whole)
{
    BListItem* const row = list.ItemAt(index);
    auto* const outline = dynamic_cast<BOutlineListView*>(&list);
    Item& item = teller.AddPart(
        teller.At(whole), static_cast<uint32>(index) + 1,
        outline != nullptr ? AccessibleRole::OutlineRow : AccessibleRole::Row, nullptr);
    ask_for_text(row, &item.name);
    item.frame = teller.Place(list, list.ItemFrame(index), &item.states);
    if (row->IsEnabled())
        item.states |= server::kIsSelectable | server::kCanBePressed;
    else
        item.states |= server::kIsDisabled;
    if (row->IsSelected())
        item.states |= server::kIsSelected;
    if (outline != nullptr)
        tell_level(*outline, row, &item);
}

// While the list has the keyboard, its row has.
static void tell_focus(Teller& teller, const BListView& list, int32 whole)
{
    const int32 selected = list.CurrentSelection(0);
    if (list.IsFocus() && selected >= 0)
        teller.SetFocus(server::accessible_id(server::view_of(teller.At(whole).id),
                                              static_cast<uint32>(selected) + 1));
}

static int32 tell_list(Teller& teller, BView& view, int32 parent)
{
    auto& list = dynamic_cast<BListView&>(view);
    const bool outline = dynamic_cast<BOutlineListView*>(&list) != nullptr;
    Item& item =
        teller.Add(view, parent, outline ? AccessibleRole::Outline : AccessibleRole::List, nullptr);
    item.states |= server::kTakesFocus;
    if (list.ListType() == B_MULTIPLE_SELECTION_LIST)
        item.states |= server::kSelectsMany;
    const int32 whole = teller.Last();
    const int32 count = item.rows = list.CountItems();
    const BRect bounds = view.Bounds();
    const int32 top = list.IndexOf(BPoint(bounds.left, std::max(bounds.top, 0.0f)));
    const int32 bottom = list.IndexOf(bounds.LeftBottom());
    const int32 first = top < 0 ? 0 : top;
    const int32 last = bottom < 0 ? std::min(count - 1, first + kRowsAround) : bottom;
    for (int32 i = std::max(0, first - kRowsAround); i < std::min(count, last + kRowsAround); i++)
        tell_row(teller, list, i, whole);
    tell_focus(teller, list, whole);
    return Teller::kNothing;
}

static int32 tell_tabs(Teller& teller, BView& view, int32 parent)
{
    auto& tabs = dynamic_cast<BTabView&>(view);
    teller.Add(view, parent, AccessibleRole::TabList, nullptr);
    const int32 whole = teller.Last();
    int32 shown = whole;
    for (int32 i = 0; i < tabs.CountTabs(); i++) {
        const BTab* const tab = tabs.TabAt(i);
        Item& item = teller.AddPart(teller.At(whole), static_cast<uint32>(i) + 1,
                                    AccessibleRole::Tab, tab->Label());
        item.frame = teller.Place(tabs, tabs.TabFrame(i), &item.states);
        item.states |= server::kIsSelectable;
        item.states |= tab->IsEnabled() ? server::kCanBePressed : server::kIsDisabled;
        if (tab->IsSelected()) {
            item.states |= server::kIsSelected;
            shown = teller.Last();
        }
        if (tabs.IsFocus() && tabs.FocusTab() == i)
            teller.SetFocus(item.id);
    }
    return shown;
}

TellView list_teller(const BView& view)
{
    if (dynamic_cast<const BListView*>(&view) != nullptr)
        return tell_list;
    return dynamic_cast<const BTabView*>(&view) != nullptr ? tell_tabs : nullptr;
}

}  // namespace BPrivate
