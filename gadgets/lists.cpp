// List gadgets, flat and outline. Hooks run on the window's thread, or on that of a call that has
// the window locked; a handler may kill the gadget, whose view then has no window any more.

#include "gadgets/kinds.h"
#include "gadgets/list_item.h"
#include "graphics/raster_port.h"
#include "plinth.h"
#include "runtime/strings.h"
#include "windows/drawing_view.h"

#include <OutlineListView.h>
#include <ScrollBar.h>
#include <ScrollView.h>
#include <Window.h>

#include <algorithm>
#include <string_view>
#include <typeinfo>
#include <vector>

static const uint32_t kRowDragMessage = 'DATA';
static const size_t kTextSize = 1024;

static char sRowText[kTextSize];  // of the row that was asked for last; the program's thread

// --- what both kinds of lists share

// Null for what another program's code may have put into the list.
static TListItem* as_row(BListItem* item)
{
    return item != nullptr && typeid(*item) == typeid(TListItem) ? static_cast<TListItem*>(item)
                                                                 : nullptr;
}

// Selects as a click on a row with these modifiers does.
template <class List>
static void choose(List& list, int32 index, int32_t held)
{
    if (list.ListType() == B_SINGLE_SELECTION_LIST) {
        list.fAnchor = index;
        list.Select(index, false);
    } else if ((held & B_SHIFT_KEY) != 0) {
        const auto [low, high] = std::minmax({int32{list.fAnchor}, index});
        list.fAnchor = low;
        list.DeselectExcept(low, high);
        list.Select(low, high, true);
    } else if ((held & B_CONTROL_KEY) == 0) {
        list.DeselectAll();
        list.fAnchor = index;
        list.Select(index, false);
    } else {
        list.Select(index, true);
    }
}

template <class Base>
class ListOf : public Base, public ListFrame {
public:
    ListOf(MyGadget* gadget, BRect frame)
        : Base(frame, nullptr, B_SINGLE_SELECTION_LIST, B_FOLLOW_ALL_SIDES,
               B_WILL_DRAW | B_NAVIGABLE | B_FRAME_EVENTS)
    {
        fGadget = gadget;
    }
    ~ListOf() override
    {
        fGadget = nullptr;
        MakeEmpty();
    }

    void SelectionChanged() override
    {
        Base::SelectionChanged();
        if (fGadget != nullptr && !fIsSorting)
            call_handler(*fGadget, &MyGadget::value_handler, int32_t{this->CurrentSelection(0)});
    }
    void MessageReceived(BMessage* message) override
    {
        if (fGadget != nullptr)
            fDropped.Pass(message, reinterpret_cast<DroppedFiles::Handler>(
                                       handler_in(*fGadget, &MyGadget::drop_handler)));
        Base::MessageReceived(message);
    }
    // The handler is told of each selected row that goes.
    void MakeEmpty() override
    {
        while (BListItem* item = this->ItemAt(0)) {
            if (this->CurrentSelection(0) >= 0 && fGadget != nullptr)
                Drop(item);
            else
                _DropAll();
        }
    }
    // Deletes a row, and those below it.
    void Drop(BListItem* item)
    {
        if constexpr (kIsOutline) {
            const int32 row = this->FullListIndexOf(item);
            std::vector<BListItem*> gone;
            for (int32 i = this->CountItemsUnder(item, false); i >= 0; i--)
                gone.push_back(this->FullListItemAt(row + i));
            fRemovals++;
            if (this->RemoveItem(item))
                _Delete(gone);
            return;
        }
        const int32_t removals = fRemovals;
        if (item->IsSelected())
            this->Deselect(this->IndexOf(item));
        if (fRemovals != removals)
            return;  // by the handler, perhaps of this one
        fRemovals++;
        if (this->RemoveItem(item))
            delete item;
    }
    // All rows, those that are hidden too.
    std::vector<BListItem*> All()
    {
        std::vector<BListItem*> all;
        if constexpr (kIsOutline) {
            all.reserve(static_cast<size_t>(this->FullListCountItems()));
            for (int32 i = 0; i < this->FullListCountItems(); i++)
                all.push_back(this->FullListItemAt(i));
        } else if (const BListItem** items = this->Items()) {
            for (int32 i = 0; i < this->CountItems(); i++)
                all.push_back(const_cast<BListItem*>(items[i]));
        }
        return all;
    }
    void RefreshBars()
    {
        for (const orientation direction : {B_HORIZONTAL, B_VERTICAL}) {
            if (BScrollBar* bar = this->ScrollBar(direction))
                bar->Invalidate();
        }
    }

    static constexpr bool kIsOutline = std::is_same_v<Base, BOutlineListView>;

private:
    void _DropAll()
    {
        const std::vector<BListItem*> all = All();
        fRemovals++;
        if (this->RemoveItems(0, static_cast<int32>(all.size())))
            _Delete(all);
    }
    static void _Delete(const std::vector<BListItem*>& rows)
    {
        for (BListItem* row : rows)
            delete row;
    }
};

// --- flat lists

class MyListView : public ListOf<BListView> {
public:
    using ListOf::ListOf;

    void Draw(BRect update) override
    {
        SetHighColor(GetRgbFromInteger(fColors[kUnselectedGround]));
        FillRect(update, B_SOLID_HIGH);
        BListView::Draw(update);
        RefreshBars();
    }
    void MouseDown(BPoint where) override;
    void MouseMoved(BPoint where, uint32 transit, const BMessage* dragged) override;
    void MouseUp(BPoint where) override
    {
        fPressed = false;
        BListView::MouseUp(where);
    }
    void KeyDown(const char* bytes, int32 count) override;
    void MyDeselectAll();

private:
    void _StartDrag();

    bool fPressed = false;  // and not moved since
    BPoint fPlace;
};

void MyListView::MyDeselectAll()
{
    while (CurrentSelection(0) >= 0) {
        const int32 index = CurrentSelection(0);
        ItemAt(index)->Deselect();
        InvalidateItem(index);
    }
    if (fGadget != nullptr)
        call_handler(*fGadget, &MyGadget::value_handler, int32_t{-1});
}

void MyListView::MouseDown(BPoint where)
{
    const int32_t held = held_modifiers(this);
    const int32_t buttons = pressed_buttons(this);
    if (fGadget == nullptr)
        return;
    if ((buttons & B_PRIMARY_MOUSE_BUTTON) == 0) {
        if (buttons == B_SECONDARY_MOUSE_BUTTON)
            open_attached_menu(this, *fGadget, where);
        return;
    }
    const int32_t clicks = current_clicks(this);
    if (clicks == 0)
        return;
    if ((fGadget->flags & kTakesFocus) != 0)
        MakeFocus(true);
    const int32 index = IndexOf(where);
    if (index < 0) {
        MyDeselectAll();
        return;
    }
    if (clicks == 2) {
        call_handler(*fGadget, &MyGadget::list_handler, int32_t{index});
        return;
    }
    fPressed = true;
    fPlace = where;
    SetMouseEventMask(B_POINTER_EVENTS, B_NO_POINTER_HISTORY);
    choose(*this, index, held);
}

// The first move with the button down drags the row of the last plain click.
void MyListView::MouseMoved(BPoint where, uint32 transit, const BMessage* dragged)
{
    if (fPressed && where != fPlace) {
        fPressed = false;
        if (fDragEnabled && pressed_buttons(this) != 0)
            _StartDrag();
        return;
    }
    BListView::MouseMoved(where, transit, dragged);
}

void MyListView::_StartDrag()
{
    BListItem* item = ItemAt(fAnchor);
    if (item == nullptr)
        return;
    BFont font;
    GetFont(&font);
    item->Update(this, &font);
    BMessage message(kRowDragMessage);
    message.AddPointer("it", item);
    message.AddPointer("gd", this);
    message.AddInt32("sl", fAnchor);
    DragMessage(&message, BRect(0, fPlace.y, item->Width(), fPlace.y + item->Height() + 1));
}

void MyListView::KeyDown(const char* bytes, int32 count)
{
    BListView::KeyDown(bytes, count);
    const bool is_tab = count == 1 && bytes[0] == B_TAB;
    if (!is_tab && Window() != nullptr && fGadget != nullptr)
        call_key_handler(this, *fGadget, bytes);
}

// --- outline lists

class MyOutListView : public ListOf<BOutlineListView> {
public:
    using ListOf::ListOf;

    void Draw(BRect update) override
    {
        RefreshBars();
        BOutlineListView::Draw(update);
    }
    void DrawItem(BListItem* item, BRect row, bool complete) override;
    bool InitiateDrag(BPoint, int32, bool was_selected) override { return was_selected; }
    void MouseDown(BPoint where) override;
    void KeyDown(const char* bytes, int32 count) override;
    // A press on a latch leaves the keyboard where the gadget's flag leaves it.
    void MakeFocus(bool focused) override
    {
        if (!fIsPressing)
            BOutlineListView::MakeFocus(focused);
    }
    // Not over the texts, however large the font.
    BRect LatchRect(BRect row, int32 level) const override
    {
        BRect latch = BOutlineListView::LatchRect(row, level);
        latch.right = std::min(latch.right, latch.left + kTextStart);
        return latch;
    }

private:
    bool _IsOnLatch(BPoint where);

    int32_t fLastButtons = 0, fClickCount = 0;
    bool fIsPressing = false;
};

// The row's ground goes on below its latch, which has the colour of its text.
void MyOutListView::DrawItem(BListItem* item, BRect row, bool complete)
{
    if (const TListItem* own = as_row(item)) {
        const BRect latch = LatchRect(row, static_cast<int32>(item->OutlineLevel()));
        SetHighColor(own->Ground(*this));
        FillRect(BRect(row.left, row.top, latch.right, row.bottom), B_SOLID_HIGH);
        SetHighColor(own->Ink(*this));
    }
    BOutlineListView::DrawItem(item, row, complete);
}

bool MyOutListView::_IsOnLatch(BPoint where)
{
    const int32 index = IndexOf(where);
    BListItem* item = ItemAt(index);
    return item != nullptr && CountItemsUnder(item, false) > 0 &&
           LatchRect(ItemFrame(index), static_cast<int32>(item->OutlineLevel())).Contains(where);
}

void MyOutListView::MouseDown(BPoint where)
{
    const int32_t held = held_modifiers(this);
    // What else the platform does with a press would select a second time.
    if (_IsOnLatch(where)) {
        fIsPressing = true;
        BOutlineListView::MouseDown(where);
        fIsPressing = false;
    }
    const int32_t buttons = pressed_buttons(this);
    const int32_t clicks = current_clicks(this);
    if (fGadget == nullptr || (buttons & B_PRIMARY_MOUSE_BUTTON) == 0 || clicks == 0)
        return;
    // The platform's own count may go on with other buttons: kept on purpose.
    fClickCount = buttons != fLastButtons || clicks < 2 ? 1 : fClickCount + 1;
    fLastButtons = buttons;
    if ((fGadget->flags & kTakesFocus) != 0)
        MakeFocus(true);
    const int32 index = IndexOf(where);
    if (index < 0)
        return;
    if (fClickCount > 1 && handler_in(*fGadget, &MyGadget::list_handler) != nullptr) {
        call_handler(*fGadget, &MyGadget::list_handler, int32_t{index});
        return;
    }
    choose(*this, index, held);
}

void MyOutListView::KeyDown(const char* bytes, int32 count)
{
    const char key = count == 1 ? bytes[0] : '\0';
    if (key != B_ENTER && key != B_LEFT_ARROW && key != B_RIGHT_ARROW) {
        BOutlineListView::KeyDown(bytes, count);
        if (count == 1 && Window() != nullptr && fGadget != nullptr)
            call_key_handler(this, *fGadget, bytes);
        return;
    }
    BListItem* item = ItemAt(CurrentSelection(0));
    if (item == nullptr || item->OutlineLevel() != 0)
        return;
    const bool expanded = item->IsExpanded();
    if (expanded && key != B_RIGHT_ARROW) {
        Collapse(item);
    } else if (!expanded && key != B_LEFT_ARROW) {
        Expand(item);
        if (key == B_ENTER && CountItemsUnder(item, false) > 0)
            Select(IndexOf(item) + 1);
    }
}

// --- creation

template <class List>
static BView* create_list(const GadgetSpec& spec, bool vertical, bool horizontal)
{
    BRect frame = spec.frame;
    if (vertical)
        frame.right -= B_V_SCROLL_BAR_WIDTH;
    if (horizontal)
        frame.bottom -= B_H_SCROLL_BAR_HEIGHT;
    return with_bars(new List(spec.record, frame), vertical, horizontal);
}

BView* create_listview(const GadgetSpec& spec)
{
    const int32_t bars = spec.kind - kListView;
    return create_list<MyListView>(spec, (bars & 1) != 0, (bars & 2) != 0);
}

BView* create_outlistview(const GadgetSpec& spec)
{
    const int32_t bars = spec.kind - kOutlineListView;
    return create_list<MyOutListView>(spec, (bars & 1) != 0, (bars & 2) != 0);
}

// --- calls

// The list of a gadget, which is the first child of its scroll view if it has bars.
template <class List>
static List& list_in(const MyGadget& gadget)
{
    const bool bare = gadget.kind == kListView || gadget.kind == kOutlineListView;
    return *static_cast<List*>(bare ? gadget.view : gadget.view->ChildAt(0));
}

// Acts on the list of a gadget, a MyListView or a MyOutListView.
template <class Action>
static void on_list(int32_t ident, Action act)
{
    with_gadget(ident, kListView, [&](const GadgetAccess& gadget) {
        if (gadget.Record().kind >= kOutlineListView)
            act(list_in<MyOutListView>(gadget.Record()));
        else
            act(list_in<MyListView>(gadget.Record()));
    });
}

template <class Action>
static void on_item(int32_t ident, int32_t index, Action act)
{
    on_list(ident, [&](auto& list) {
        if (TListItem* item = as_row(list.ItemAt(index)))
            act(list, *item);
    });
}

template <class Action>
static void on_outline(int32_t ident, Action act)
{
    on_list(ident, [&](auto& list) {
        if constexpr (std::decay_t<decltype(list)>::kIsOutline)
            act(list);
    });
}

extern "C" void AddLvEntry(int32_t ident, const char* text)
{
    if (text == nullptr || text[0] == '\0')
        return;
    on_list(ident, [=](auto& list) { list.AddItem(TListItem::New(text)); });
}

extern "C" void AddEntryInSub(int32_t ident, int32_t n, const char* text)
{
    if (text == nullptr || text[0] == '\0')
        return;
    on_outline(ident, [=](auto& list) {
        if (BListItem* top = list.ItemUnderAt(nullptr, true, n))
            list.AddUnder(TListItem::New(text), top);
    });
}

extern "C" void RemoveItem(int32_t ident, int32_t index)
{
    on_item(ident, index, [](auto& list, TListItem& item) { list.Drop(&item); });
}

extern "C" void ClearListView(int32_t ident)
{
    on_list(ident, [](auto& list) { list.MakeEmpty(); });
}

extern "C" void ChangeEntryStr(int32_t ident, int32_t index, const char* text)
{
    on_item(ident, index, [=](auto& list, TListItem& item) {
        item.SetText(text_or_empty(text));
        list.InvalidateItem(index);
    });
}

extern "C" void ChangeItemColor(int32_t ident, int32_t index, int32_t c0, int32_t c1, int32_t c2,
                                int32_t c3)
{
    on_item(ident, index, [=](auto& list, TListItem& item) {
        item.SetColors({static_cast<uint32_t>(c0), static_cast<uint32_t>(c1),
                        static_cast<uint32_t>(c2), static_cast<uint32_t>(c3)});
        BFont font;
        list.GetFont(&font);
        item.Update(&list, &font);
        list.InvalidateItem(index);
    });
}

extern "C" void EnableItemLv(int32_t ident, int32_t index, int32_t flag)
{
    on_item(ident, index, [=](auto& list, TListItem& item) {
        item.SetEnabled(flag != 0);
        list.InvalidateItem(index);
    });
}

extern "C" void ChangeLvColor(int32_t ident, int32_t c0, int32_t c1, int32_t c2, int32_t c3,
                              int32_t c4, int32_t c5)
{
    on_list(ident, [=](auto& list) {
        const int32_t colors[kListColors] = {c0, c1, c2, c3, c4, c5};
        for (int32_t i = 0; i < kListColors; i++) {
            if (colors[i] != -1)
                list.fColors[i] = static_cast<uint32_t>(colors[i]);
        }
        list.Invalidate();
    });
}

extern "C" void SetMultiSelect(int32_t ident, int32_t flag)
{
    on_list(ident, [=](auto& list) {
        list.SetListType(flag != 0 ? B_MULTIPLE_SELECTION_LIST : B_SINGLE_SELECTION_LIST);
    });
}

extern "C" void SetSelectEntry(int32_t ident, int32_t index)
{
    on_list(ident, [=](auto& list) { list.Select(index, false); });
}

extern "C" void SetDeSelectEntry(int32_t ident, int32_t index)
{
    on_list(ident, [=](auto& list) { list.Deselect(index); });
}

extern "C" void SetLvSelectEntry(int32_t ident, int32_t index, int32_t select)
{
    (select != 0 ? SetSelectEntry : SetDeSelectEntry)(ident, index);
}

extern "C" void LvSelectAll(int32_t ident)
{
    on_list(ident, [](auto& list) { list.Select(0, list.CountItems() - 1, false); });
}

extern "C" void LvSelectNone(int32_t ident)
{
    on_list(ident, [](auto& list) { list.DeselectAll(); });
}

extern "C" bool IsItemSelected(int32_t ident, int32_t index)
{
    bool selected = false;
    on_list(ident, [&](auto& list) { selected = list.IsItemSelected(index); });
    return selected;
}

extern "C" int32_t CountEntry(int32_t ident)
{
    int32_t count = 0;
    on_list(ident, [&](auto& list) { count = list.CountItems(); });
    return count;
}

extern "C" int32_t GetLvSelected(int32_t ident)
{
    int32_t index = 0;  // of what is no list: kept on purpose
    on_list(ident, [&](auto& list) { index = list.CurrentSelection(0); });
    return index;
}

extern "C" int32_t CountEntry_system(int32_t ident, int32_t rows)
{
    return (rows != 0 ? CountEntry : GetLvSelected)(ident);
}

extern "C" void SwapItem(int32_t ident, int32_t a, int32_t b)
{
    on_list(ident, [=](auto& list) { list.SwapItems(a, b); });
}

extern "C" void MoveItem(int32_t ident, int32_t from, int32_t to)
{
    on_list(ident, [=](auto& list) { list.MoveItem(from, to); });
}

extern "C" void SwapPosition(int32_t ident, int32_t a, int32_t b, int32_t swap)
{
    (swap != 0 ? SwapItem : MoveItem)(ident, a, b);
}

// Rows with what is compared instead of their texts, as long as it lives.
class KeyedRows {
public:
    KeyedRows(const std::vector<BListItem*>& rows, ListFrame& list)
        : fRows(rows), fKeys(rows.size()), fList(list)
    {
        for (size_t i = 0; i < rows.size(); i++)
            as_row(rows[i])->SetKey(&fKeys[i]);
        fList.fIsSorting = true;
    }
    ~KeyedRows()
    {
        for (BListItem* row : fRows)
            as_row(row)->TakeBack();
        fList.fIsSorting = false;
    }
    KeyedRows(const KeyedRows&) = delete;

private:
    const std::vector<BListItem*>& fRows;
    std::vector<SortKey> fKeys;
    ListFrame& fList;
};

extern "C" void SortLv(int32_t ident)
{
    on_list(ident, [](auto& list) {
        list.DeselectAll();
        const std::vector<BListItem*> rows = list.All();
        if (!std::all_of(rows.begin(), rows.end(), as_row))
            return;
        const bool selects_again = list.CurrentSelection(0) >= 0;  // the handler, just told
        {
            const KeyedRows keyed(rows, list);
            list.SortItems(TListItem::CompareKeys);
        }
        if (selects_again)
            list.SelectionChanged();
    });
}

// The text of the row that `find` answers; longer ones are cut.
template <class Find>
static char* text_of_row(int32_t ident, Find find)
{
    sRowText[0] = '\0';
    on_list(ident, [&](auto& list) {
        BListItem* const row = find(list);
        if (TListItem::CopyShortText(row, sRowText))
            return;
        if (const TListItem* item = as_row(row))
            sRowText[std::string_view(item->Text()).copy(sRowText, kTextSize - 1)] = '\0';
    });
    return sRowText;
}

extern "C" char* GetLvItem(int32_t ident, int32_t index)
{
    return text_of_row(ident, [=](auto& list) { return list.ItemAt(index); });
}

extern "C" char* GetLvFirstItem(int32_t ident)
{
    return text_of_row(ident, [](auto& list) { return list.FirstItem(); });
}

extern "C" char* GetLvLastItem(int32_t ident)
{
    return text_of_row(ident, [](auto& list) { return list.LastItem(); });
}

extern "C" char* GetTextLv(int32_t ident, int32_t index, int32_t which)
{
    return which == 0   ? GetLvFirstItem(ident)
           : which == 1 ? GetLvLastItem(ident)
                        : GetLvItem(ident, which == 2 ? index : -1);
}

extern "C" void LvExpand(int32_t ident, int32_t index)
{
    on_outline(ident, [=](auto& list) { list.Expand(list.ItemAt(index)); });
}

extern "C" void LvCollapse(int32_t ident, int32_t index)
{
    on_outline(ident, [=](auto& list) { list.Collapse(list.ItemAt(index)); });
}

extern "C" void LvExpandAll(int32_t ident)
{
    on_outline(ident, [](auto& list) {
        // What appears is opened as well: in the end all rows are.
        list.FullListDoForEach(
            [](BListItem* item, void* outline) {
                static_cast<MyOutListView*>(outline)->Expand(item);
                return false;
            },
            &list);
    });
}

extern "C" void LvCollapseAll(int32_t ident)
{
    on_outline(ident, [](auto& list) {
        for (int32 i = 0; i < list.CountItems(); i++)
            list.Collapse(list.ItemAt(i));
    });
}

extern "C" void LvExpandSystem(int32_t ident, int32_t index, int32_t expand, int32_t all)
{
    if (all != 0)
        (expand != 0 ? LvExpandAll : LvCollapseAll)(ident);
    else
        (expand != 0 ? LvExpand : LvCollapse)(ident, index);
}

extern "C" void SetDragLv(int32_t ident, int32_t flag)
{
    on_list(ident, [=](auto& list) { list.fDragEnabled = flag != 0; });
}

extern "C" void SetDrawHookLv(int32_t ident, int32_t index, void* function)
{
    on_item(ident, index, [=](auto& list, TListItem& item) {
        item.SetDrawHook(reinterpret_cast<ListDrawHook>(function));
        list.InvalidateItem(index);
    });
}
