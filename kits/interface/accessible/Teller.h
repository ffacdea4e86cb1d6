#ifndef INTERFACE_TELLER_H
#define INTERFACE_TELLER_H

// Writes down what screen readers are told of a window: an item for each view that a user knows as
// a thing of its own, and for the rows, tabs and menu items in them. With the window locked.

#include <Message.h>
#include <View.h>
#include <Window.h>

#include <memory>
#include <string>
#include <typeindex>
#include <unordered_map>

#include <interface/view/ViewPrivate.h>
#include <interface/window/WindowPrivate.h>
#include <server/screen/Accessible.h>

class BMenu;
class BMenuItem;
class BTextView;

namespace [[gnu::visibility("hidden")]] BPrivate {

/* What a program's own views, rows and windows are asked by Perform() with a BMessage, and may add
   to it: "text" (string), what is shown, or, of a view that the window finds as "view" (pointer),
   its tool tip; "password" (bool), for a control whose text nobody is to hear. */
const uint32 kTellReader = '_RDT';

class Teller;

// Tells what a kind of view is. Returns the item that the views in it belong to.
using TellView = int32 (*)(Teller& teller, BView& view, int32 parent);

class Teller {
public:
    static const int32 kNothing = -1;  // the views in it are left out

    Teller(BWindow* window, std::map<uint32, ToldText>* texts);
    std::shared_ptr<const server::AccessibleTree> Tell();

    using Item = server::AccessibleItem;
    // Adds an item with the view's name and place, or one for a part of it.
    Item& Add(BView& view, int32 parent, server::AccessibleRole role, const char* label);
    Item& AddPart(const Item& whole, uint32 part, server::AccessibleRole role, const char* name);
    int32 Last() const { return static_cast<int32>(fTree->items.size()) - 1; }
    Item& At(int32 index) { return fTree->items[static_cast<size_t>(index)]; }
    void SetFocus(server::AccessibleId id) { fTree->focus = id; }
    // Goes through the views inside of one.
    void TellChildren(const BView& view, int32 parent);

    void SetRange(Item* item, double value, double least, double most, double step);
    void AddText(Item* item, BTextView& view);
    void AddMenu(BMenu& menu, int32 parent, bool open);
    std::string ToolTip(BView& view) const;
    // Where a rectangle of a view is in the window, and whether it can be seen.
    BRect Place(const BView& view, BRect rect, uint32* states) const;

private:
    void _TellWindow();
    void _Tell(BView& view, int32 parent);
    TellView _TellFor(const BView& view);
    std::string _OwnToolTip(BView& view) const;
    void _AddMenuItem(BMenu& menu, BMenuItem& item, uint32 part, int32 parent, bool open);

    BWindow* const fWindow;
    const BView* const fFocus;
    std::map<uint32, ToldText>* const fTexts;
    const std::shared_ptr<server::AccessibleTree> fTree;
};

// The kinds, each in the file of its family; null for views of other kinds.
TellView control_teller(const BView& view);
TellView list_teller(const BView& view);
TellView menu_teller(const BView& view);
TellView text_teller(const BView& view);

uint32 reader_id(const BView& view);
// The view with that name below `top`, or the menu that belongs to one; null if it is gone.
BView* view_for_reader(BView* top, uint32 id);
bool is_password(const BTextView& view);

}  // namespace BPrivate

#endif  // INTERFACE_TELLER_H
