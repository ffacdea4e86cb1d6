// The line between menu items.

#include <SeparatorItem.h>

#include <Menu.h>
#include <Message.h>

#include <algorithm>
#include <math.h>

#include <interface/controls/Look.h>
#include <interface/menu/MenuPrivate.h>

BSeparatorItem::BSeparatorItem() : BMenuItem("", nullptr) { BMenuItem::SetEnabled(false); }

BSeparatorItem::BSeparatorItem(BMessage* data) : BMenuItem(data) { BMenuItem::SetEnabled(false); }

BSeparatorItem::~BSeparatorItem() {}

BArchivable* BSeparatorItem::Instantiate(BMessage* data)
{
    return validate_instantiation(data, "BSeparatorItem") ? new BSeparatorItem(data) : nullptr;
}

status_t BSeparatorItem::Archive(BMessage* data, bool deep) const
{
    return BMenuItem::Archive(data, deep);
}

void BSeparatorItem::SetEnabled(bool) {}

void BSeparatorItem::GetContentSize(float* _width, float* _height)
{
    BFont font;
    if (Menu() != nullptr)
        Menu()->GetFont(&font);
    const bool row = Menu() != nullptr && Menu()->Layout() == B_ITEMS_IN_ROW;
    if (_width != nullptr)
        *_width = 2;
    if (_height != nullptr)
        *_height = row ? 2 : std::max(4.0f, 2 * floorf(font.Size() * 0.8f / 2));
}

void BSeparatorItem::Draw()
{
    BMenu* menu = Menu();
    if (menu == nullptr)
        return;
    BPrivate::Look(menu).DrawMenuLine(Frame(), BPrivate::menu_ground(),
                                      menu->Layout() == B_ITEMS_IN_ROW);
}
