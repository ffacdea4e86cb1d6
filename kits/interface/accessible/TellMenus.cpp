// What screen readers are told of menus: the bar with all that can be chosen below it, a field with
// its choices, and an open menu, which has a window of its own.

#include <interface/accessible/Teller.h>

#include <MenuBar.h>
#include <MenuField.h>
#include <MenuItem.h>
#include <SeparatorItem.h>

#include <interface/menu/MenuPrivate.h>

namespace BPrivate {

using server::AccessibleRole;
using Item = Teller::Item;

void Teller::_AddMenuItem(BMenu& menu, BMenuItem& choice, uint32 part, int32 parent, bool open)
{
    const bool separator = dynamic_cast<const BSeparatorItem*>(&choice) != nullptr;
    Item item;
    item.id = server::accessible_id(reader_id(menu), part);
    item.parent = parent;
    item.role = separator ? AccessibleRole::Separator : AccessibleRole::MenuItem;
    if (open)
        item.frame = Place(menu, choice.Frame(), &item.states);
    else
        item.states |= server::kIsOutOfSight;
    item.name = choice.Label() != nullptr ? choice.Label() : "";
    if (choice.Shortcut() != 0)
        item.shortcut = MenuPrivate::ShortcutText(&choice);
    if (choice.IsMarked())
        item.states |= server::kIsCheckable | server::kIsChecked;
    if (!choice.IsEnabled())
        item.states |= server::kIsDisabled;
    else if (!separator && MenuPrivate::IsChoice(&choice))
        item.states |= server::kIsSelectable | server::kCanBePressed;
    if (choice.Submenu() != nullptr)
        item.states |= server::kHasMenu;
    if (open && MenuPrivate::Selected(&menu) == &choice) {
        item.states |= server::kIsSelected;
        SetFocus(item.id);
    }
    fTree->items.push_back(std::move(item));
}

void Teller::AddMenu(BMenu& menu, int32 parent, bool open)
{
    const bool row = dynamic_cast<const BMenuBar*>(&menu) != nullptr;
    for (int32 i = 0; i < menu.CountItems(); i++) {
        _AddMenuItem(menu, *menu.ItemAt(i), static_cast<uint32>(i) + 1, parent, open);
        // What an open menu leads to is told by the bar, or by its own window.
        BMenu* const below = menu.SubmenuAt(i);
        if (below != nullptr && (row || !open))
            AddMenu(*below, Last(), false);
    }
}

static int32 tell_menu(Teller& teller, BView& view, int32 parent)
{
    auto& menu = dynamic_cast<BMenu&>(view);
    int32 whole = parent;
    if (dynamic_cast<const BMenuBar*>(&view) != nullptr) {
        teller.Add(view, parent, AccessibleRole::MenuBar, nullptr);
        whole = teller.Last();
    }
    teller.AddMenu(menu, whole, true);
    return Teller::kNothing;
}

static int32 tell_menu_field(Teller& teller, BView& view, int32 parent)
{
    const auto& field = dynamic_cast<const BMenuField&>(view);
    Item& item = teller.Add(view, parent, AccessibleRole::ChoiceField, field.Label());
    item.states |= server::kHasMenu;
    item.states |= field.IsEnabled() ? server::kCanBePressed : server::kIsDisabled;
    const int32 whole = teller.Last();
    const BMenuItem* const title = field.MenuItem();
    if (title != nullptr && title->Label() != nullptr)
        item.value = title->Label();
    if (field.Menu() != nullptr)
        teller.AddMenu(*field.Menu(), whole, false);
    return Teller::kNothing;
}

TellView menu_teller(const BView& view)
{
    if (dynamic_cast<const BMenuField*>(&view) != nullptr)
        return tell_menu_field;
    return dynamic_cast<const BMenu*>(&view) != nullptr ? tell_menu : nullptr;
}

}  // namespace BPrivate
