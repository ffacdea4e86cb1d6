// Choice fields: a title that opens a menu, of which one item is marked. Any thread, with the
// gadget's window locked. The field owns its menu.

#include "gadgets/kinds.h"
#include "plinth.h"

#include <Menu.h>
#include <MenuField.h>
#include <MenuItem.h>
#include <Message.h>
#include <PopUpMenu.h>

static const int32_t kNothing = -1;

// An item that tells its window which one of the gadget's choices it is.
static BMenuItem* new_choice(MyGadget* gadget, int32_t index, const char* label)
{
    BMessage message(kChoiceMessage + static_cast<uint32_t>(index));
    name_gadget(&message, gadget);
    return new BMenuItem(label, new BMessage(message));  // a copy takes no room to spare
}

BView* create_mx(const GadgetSpec& spec)
{
    spec.record->selection = kNothing;
    auto* menu = new BPopUpMenu("", true, true, B_ITEMS_IN_COLUMN);
    auto* field =
        new BMenuField(spec.frame, "", "", menu, B_FOLLOW_LEFT_TOP, B_WILL_DRAW | B_NAVIGABLE);
    const char* const* labels = spec.Texts();
    const int32_t count = count_labels(labels);
    for (int32_t i = 0; i < count; i++)
        menu->AddItem(new_choice(spec.record, i, labels[i]));
    return field;
}

template <class Action>
static void on_choices(int32_t ident, Action act)
{
    on_gadget<BMenuField>(ident, kChoiceField, Unlocked::Act,
                          [&](BMenuField& field, MyGadget& gadget) {
                              if (field.Menu() != nullptr)
                                  act(*field.Menu(), gadget);
                          });
}

extern "C" void MxSelected(int32_t ident, int32_t index)
{
    on_choices(ident, [=](BMenu& menu, MyGadget& gadget) {
        if (BMenuItem* marked = menu.FindMarked())
            marked->SetMarked(false);
        BMenuItem* item = menu.ItemAt(index);
        if (item == nullptr)
            return;  // the index of the last choice stays in the record: kept on purpose
        item->SetMarked(true);
        gadget.selection = index;
    });
}

extern "C" void ChangeMxData(int32_t ident, const char* const* labels)
{
    on_choices(ident, [=](BMenu& menu, MyGadget& gadget) {
        menu.RemoveItems(0, menu.CountItems(), true);
        // An empty label takes a number and shows no item, which it does not end: kept on purpose.
        for (int32_t i = 0; labels != nullptr && labels[i] != nullptr; i++) {
            if (labels[i][0] != '\0')
                menu.AddItem(new_choice(&gadget, i, labels[i]));
        }
    });
}
