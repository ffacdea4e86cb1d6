// BListView: rows, selection and drawing.

#include <ListView.h>

#include <Font.h>
#include <Looper.h>
#include <PropertyInfo.h>
#include <ScrollBar.h>
#include <ScrollView.h>
#include <Window.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>
#include <vector>

#include <app/looper/Scripting.h>
#include <interface/controls/Invocation.h>
#include <interface/controls/ScrollBarPrivate.h>
#include <interface/lists/ListData.h>
#include <interface/view/ViewPrivate.h>
#include <support/EnumNumbers.h>

using BPrivate::ListData;
using BPrivate::Rows;
using BPrivate::ScrollBarPrivate;
using BPrivate::ViewRef;

static const uint32 kListFlags = B_WILL_DRAW | B_FRAME_EVENTS | B_NAVIGABLE;

static property_info kProperties[] = {
    {"Item", {B_COUNT_PROPERTIES}, {B_DIRECT_SPECIFIER}, nullptr, 0, {B_INT32_TYPE}, {}},
    {"Selection", {B_COUNT_PROPERTIES}, {B_DIRECT_SPECIFIER}, nullptr, 0, {B_INT32_TYPE}, {}},
    {"Selection", {B_EXECUTE_PROPERTY}, {B_DIRECT_SPECIFIER}, nullptr, 0, {}, {}},
    {"Selection",
     {B_GET_PROPERTY, B_SET_PROPERTY},
     {B_DIRECT_SPECIFIER},
     nullptr,
     0,
     {B_INT32_TYPE},
     {}},
    {}};

// ---- Construction

BListView::BListView(BRect frame, const char* name, list_view_type type, uint32 resizeMask,
                     uint32 flags)
    : BView(frame, name, resizeMask, flags), fData(std::make_unique<ListData>())
{
    _Init(type);
}

BListView::BListView(const char* name, list_view_type type, uint32 flags)
    : BView(name, flags), fData(std::make_unique<ListData>())
{
    _Init(type);
}

BListView::BListView(list_view_type type)
    : BView(nullptr, kListFlags), fData(std::make_unique<ListData>())
{
    _Init(type);
}

void BListView::_Init(list_view_type type)
{
    fData->type = type;
    SetViewColor(ui_color(B_LIST_BACKGROUND_COLOR));
    SetLowColor(ui_color(B_LIST_BACKGROUND_COLOR));
}

BListView::BListView(BMessage* data) : BView(data), fData(std::make_unique<ListData>())
{
    _Init(B_SINGLE_SELECTION_LIST);
    if (data == nullptr)
        return;
    fData->type = BPrivate::enum_up_to(data->GetInt32("_lv_type", B_SINGLE_SELECTION_LIST),
                                       B_MULTIPLE_SELECTION_LIST, B_SINGLE_SELECTION_LIST);
    BMessage archive;
    for (int32 i = 0; data->FindMessage("_l_items", i, &archive) == B_OK; i++) {
        auto* item = dynamic_cast<BListItem*>(instantiate_object(&archive));
        if (item != nullptr)
            fData->rows.Insert(fData->rows.Count(), item);
    }
    if (data->FindMessage("_msg", &archive) == B_OK)
        SetInvocationMessage(new BMessage(archive));
    if (data->FindMessage("_2nd_msg", &archive) == B_OK)
        SetSelectionMessage(new BMessage(archive));
}

BListView::~BListView() {}

BArchivable* BListView::Instantiate(BMessage* data)
{
    return validate_instantiation(data, "BListView") ? new (std::nothrow) BListView(data) : nullptr;
}

status_t BListView::Archive(BMessage* data, bool deep) const
{
    status_t status = BView::Archive(data, deep);
    if (status == B_OK)
        status = data->AddInt32("_lv_type", fData->type);
    for (const BListItem* item : deep ? fData->rows.All() : std::vector<BListItem*>()) {
        BMessage archive;
        if (status == B_OK && item->Archive(&archive, true) == B_OK)
            status = data->AddMessage("_l_items", &archive);
    }
    if (status == B_OK && InvocationMessage() != nullptr)
        status = data->AddMessage("_msg", InvocationMessage());
    if (status == B_OK && SelectionMessage() != nullptr)
        status = data->AddMessage("_2nd_msg", SelectionMessage());
    return status;
}

// ---- Hooks of the view

void BListView::DrawItem(BListItem* item, BRect itemRect, bool complete)
{
    item->DrawItem(this, itemRect, complete);
}

// What draws may change the list: each row is looked up when it is its turn.
void BListView::Draw(BRect updateRect)
{
    if (fData->drawnHeight != fData->rows.Height())
        _FixScrollBars();
    const auto top = static_cast<int64>(std::max(updateRect.top, 0.0f));
    const ViewRef self(this);
    for (int32 index = fData->rows.IndexAt(top); index >= 0; index++) {
        BListItem* item = ItemAt(index);
        const BRect frame = ItemFrame(index);
        if (item == nullptr || frame.top > updateRect.bottom)
            return;
        DrawItem(item, frame);
        if (self.View() == nullptr)
            return;
    }
}

void BListView::AttachedToWindow()
{
    BView::AttachedToWindow();
    if (!Messenger().IsValid())
        SetTarget(Window());
    _UpdateItems();
}

void BListView::DetachedFromWindow() { BView::DetachedFromWindow(); }
void BListView::AllAttached() { BView::AllAttached(); }
void BListView::AllDetached() { BView::AllDetached(); }
void BListView::FrameResized(float, float) { _FixScrollBars(); }
void BListView::FrameMoved(BPoint newPosition) { BView::FrameMoved(newPosition); }

void BListView::TargetedByScrollView(BScrollView* view)
{
    fData->scroller = view;
    BView::TargetedByScrollView(view);
    _FixScrollBars();
}

void BListView::WindowActivated(bool active)
{
    BView::WindowActivated(active);
    if (fData->scroller != nullptr && IsFocus())
        fData->scroller->Invalidate();
}

void BListView::MakeFocus(bool state)
{
    if (IsFocus() == state)
        return;
    BView::MakeFocus(state);
    if (fData->scroller != nullptr)
        fData->scroller->SetBorderHighlighted(state);
}

void BListView::SetFont(const BFont* font, uint32 mask)
{
    BView::SetFont(font, mask);
    if (Window() != nullptr)
        _UpdateItems();
}

void BListView::ScrollTo(BPoint where) { BView::ScrollTo(where); }

void BListView::ResizeToPreferred()
{
    float width, height;
    GetPreferredSize(&width, &height);
    ResizeTo(width, height);
}

void BListView::GetPreferredSize(float* _width, float* _height)
{
    const bool is_empty = IsEmpty();
    if (_width != nullptr)
        *_width = is_empty ? Bounds().Width() : std::ceil(fData->rows.Width());
    if (_height != nullptr)
        *_height = is_empty ? Bounds().Height() : static_cast<float>(fData->rows.Height() - 1);
}

BSize BListView::MinSize() { return BView::MinSize(); }
BSize BListView::MaxSize() { return BView::MaxSize(); }
BSize BListView::PreferredSize() { return BView::PreferredSize(); }

// ---- Scroll bars and places

static void set_bar(BScrollBar* bar, float size, float shown, float step)
{
    if (bar == nullptr)
        return;
    const float range = size - shown - 1;
    bar->SetProportion(size > 0 ? (shown + 1) / size : 1);
    bar->SetRange(0, std::max(range, 0.0f));
    bar->SetSteps(step, shown);
}

void BListView::_FixScrollBars()
{
    fData->drawnHeight = fData->rows.Height();
    const BRect bounds = Bounds();
    BScrollBar* vertical = ScrollBar(B_VERTICAL);
    BScrollBar* horizontal = ScrollBar(B_HORIZONTAL);
    if (vertical != nullptr) {
        const BListItem* first = FirstItem();
        set_bar(vertical, static_cast<float>(fData->rows.Height()), bounds.Height(),
                first != nullptr ? std::ceil(first->Height()) : 1);
    }
    if (horizontal != nullptr)
        set_bar(horizontal, std::ceil(fData->rows.Width()), bounds.Width(), bounds.Width() / 10);
}

// Where the list is scrolled to stays what it is while rows are added, perhaps very many.
void BListView::_FixScrollBarsLater()
{
    for (const orientation direction : {B_VERTICAL, B_HORIZONTAL}) {
        if (BScrollBar* bar = ScrollBar(direction))
            ScrollBarPrivate::AskLater(
                bar, [](BView* list) { static_cast<BListView*>(list)->_FixScrollBars(); });
    }
}

void BListView::_UpdateItem(BListItem* item)
{
    BFont font;
    GetFont(&font);
    item->Update(this, &font);
}

void BListView::_UpdateItems()
{
    BFont font;
    GetFont(&font);
    const ViewRef self(this);
    for (BListItem* item : fData->rows.All()) {
        if (self.View() == nullptr)
            return;
        if (fData->rows.Holds(item))
            item->Update(this, &font);
    }
    _FixScrollBars();
    Invalidate();
}

void BListView::_InvalidateFrom(int32 index)
{
    BRect rest = Bounds();
    if (fData->rows.IsBelow(index, static_cast<int64>(rest.bottom) + 1))
        return;
    const auto top = static_cast<float>(fData->rows.TopOf(index));
    rest.top = std::max(rest.top, top);
    if (rest.top <= rest.bottom)
        Invalidate(rest);
}

// Rows came, went or moved, from an index on.
void BListView::_RowsChanged(int32 from)
{
    if (Window() == nullptr)
        return;
    if (fData->rows.Height() < fData->drawnHeight)
        _FixScrollBars();
    else
        _FixScrollBarsLater();
    _InvalidateFrom(from);
}

BRect BListView::ItemFrame(int32 index)
{
    if (index < 0 || index >= CountItems())
        return BRect();
    const auto top = static_cast<float>(fData->rows.TopOf(index));
    return BRect(0, top, std::max(Bounds().right, 0.0f),
                 top + static_cast<float>(fData->rows.HeightOf(index) - 1));
}

int32 BListView::IndexOf(BPoint point) const
{
    return point.y >= 0 && point.y < 1e9f ? fData->rows.IndexAt(static_cast<int64>(point.y)) : -1;
}

void BListView::InvalidateItem(int32 index)
{
    if (index >= 0 && index < CountItems())
        Invalidate(ItemFrame(index));
}

void BListView::ScrollTo(int32 index)
{
    const BRect bounds = Bounds();
    const BRect frame = ItemFrame(index);
    if (index < 0 || index >= CountItems() ||
        (frame.top >= bounds.top && frame.bottom <= bounds.bottom))
        return;
    const bool to_top = frame.top < bounds.top || frame.Height() > bounds.Height();
    ScrollTo(BPoint(bounds.left, to_top ? frame.top : frame.bottom - bounds.Height()));
}

void BListView::ScrollToSelection() { ScrollTo(CurrentSelection(0)); }

// ---- Rows

bool BListView::AddItem(BListItem* item) { return AddItem(item, CountItems()); }

bool BListView::AddItem(BListItem* item, int32 atIndex)
{
    // It has its size before the rows reckon with it.
    if (Window() != nullptr && fData->rows.Takes(atIndex, item))
        _UpdateItem(item);
    if (!fData->rows.Insert(atIndex, item))
        return false;
    if (fData->anchor >= atIndex)
        fData->anchor++;
    if (fData->lead >= atIndex)
        fData->lead++;
    _RowsChanged(atIndex);
    return true;
}

bool BListView::AddList(BList* newItems)
{
    return newItems != nullptr && AddList(newItems, CountItems());
}

bool BListView::AddList(BList* newItems, int32 atIndex)
{
    if (newItems == nullptr)
        return false;
    auto* const first = static_cast<BListItem**>(newItems->Items());
    const std::vector<BListItem*> items(first, first + newItems->CountItems());
    if (!fData->rows.InsertAll(atIndex, items))
        return false;
    if (Window() != nullptr) {
        BFont font;
        GetFont(&font);
        for (BListItem* item : items)
            item->Update(this, &font);
        _RowsChanged(atIndex);
    }
    return true;
}

bool BListView::RemoveItem(BListItem* item)
{
    return BListView::RemoveItem(IndexOf(item)) != nullptr;
}

BListItem* BListView::RemoveItem(int32 index)
{
    BListItem* item = ItemAt(index);
    if (item == nullptr)
        return nullptr;
    if (item->IsSelected()) {
        const ViewRef self(this);
        Deselect(index);
        if (self.View() == nullptr || ItemAt(index) != item)
            return nullptr;
    }
    const int64 top = fData->rows.TopOf(index);
    fData->rows.Remove(index);
    for (int32* kept : {&fData->anchor, &fData->lead})
        *kept = *kept > index ? *kept - 1 : *kept == index ? -1 : *kept;
    if (top <= static_cast<int64>(Bounds().bottom) || Window() == nullptr)
        _RowsChanged(index);
    else
        _FixScrollBars();
    return item;
}

bool BListView::RemoveItems(int32 index, int32 count)
{
    if (index < 0 || index >= CountItems() || count < 0)
        return false;
    count = std::min(count, CountItems() - index);
    const bool deselected = fData->rows.Deselect(index, index + count - 1);
    fData->rows.RemoveRange(index, count);
    for (int32* kept : {&fData->anchor, &fData->lead})
        *kept = *kept >= index + count ? *kept - count : *kept >= index ? -1 : *kept;
    _RowsChanged(index);
    if (deselected)
        _SelectionHasChanged();
    return true;
}

void BListView::MakeEmpty()
{
    fData->rows.DeselectExcept(-1, -1);
    fData->rows.RemoveRange(0, fData->rows.Count());
    fData->anchor = fData->lead = -1;
    _RowsChanged(0);
}

BListItem* BListView::ItemAt(int32 index) const { return fData->rows.ShownAt(index); }
int32 BListView::IndexOf(BListItem* item) const { return fData->rows.IndexOf(item); }
BListItem* BListView::FirstItem() const { return ItemAt(0); }
BListItem* BListView::LastItem() const { return ItemAt(CountItems() - 1); }
bool BListView::HasItem(BListItem* item) const { return IndexOf(item) >= 0; }
int32 BListView::CountItems() const { return fData->rows.CountShown(); }
bool BListView::IsEmpty() const { return CountItems() == 0; }
const BListItem** BListView::Items() const { return fData->rows.Array(); }

void BListView::DoForEach(bool (*func)(BListItem*))
{
    for (int32 i = 0; func != nullptr && i < CountItems(); i++) {
        if (func(ItemAt(i)))
            return;
    }
}

void BListView::DoForEach(bool (*func)(BListItem*, void*), void* arg)
{
    for (int32 i = 0; func != nullptr && i < CountItems(); i++) {
        if (func(ItemAt(i), arg))
            return;
    }
}

// ---- Order

void BListView::_Sort(int (*cmp)(const void*, const void*))
{
    std::vector<BListItem*> items = fData->rows.All();
    if (!items.empty())
        qsort(items.data(), items.size(), sizeof(BListItem*), cmp);
    fData->rows.Reorder(items);
}

void BListView::SortItems(int (*cmp)(const void*, const void*))
{
    if (cmp == nullptr)
        return;
    const ViewRef self(this);
    DeselectAll();
    if (self.View() == nullptr)
        return;
    _Sort(cmp);
    fData->anchor = fData->lead = -1;
    _RowsChanged(0);
}

bool BListView::DoMiscellaneous(MiscCode code, MiscData* data)
{
    Rows& rows = fData->rows;
    const auto is_index = [&](int32 index) { return index >= 0 && index < rows.Count(); };
    if (data == nullptr)
        return false;
    int32 first = 0;
    if (code == B_SWAP_OP && is_index(data->swap.a) && is_index(data->swap.b)) {
        const auto [low, high] = std::minmax({data->swap.a, data->swap.b});
        first = low;
        if (low != high) {
            BListItem* const upper = rows.Remove(high);
            BListItem* const lower = rows.Remove(low);
            rows.Insert(low, upper);
            rows.Insert(high, lower);
        }
    } else if (code == B_MOVE_OP && is_index(data->move.from) && is_index(data->move.to)) {
        first = std::min(data->move.from, data->move.to);
        rows.Insert(data->move.to, rows.Remove(data->move.from));
    } else if (code == B_REPLACE_OP && is_index(data->replace.index)) {
        first = data->replace.index;
        if (!rows.Replace(first, data->replace.item))
            return false;
        if (Window() != nullptr)
            _UpdateItem(data->replace.item);
    } else {
        return false;
    }
    _RowsChanged(first);
    return true;
}

bool BListView::SwapItems(int32 a, int32 b)
{
    MiscData data;
    data.swap = {a, b};
    return DoMiscellaneous(B_SWAP_OP, &data);
}

bool BListView::MoveItem(int32 from, int32 to)
{
    MiscData data;
    data.move = {from, to};
    return DoMiscellaneous(B_MOVE_OP, &data);
}

bool BListView::ReplaceItem(int32 index, BListItem* item)
{
    MiscData data;
    data.replace = {index, item};
    return DoMiscellaneous(B_REPLACE_OP, &data);
}

// ---- Messages

void BListView::SetSelectionMessage(BMessage* message)
{
    if (message != fData->selectionMessage.get())
        fData->selectionMessage.reset(message);
}

void BListView::SetInvocationMessage(BMessage* message) { BInvoker::SetMessage(message); }
BMessage* BListView::SelectionMessage() const { return fData->selectionMessage.get(); }
BMessage* BListView::InvocationMessage() const { return BInvoker::Message(); }
uint32 BListView::InvocationCommand() const { return BInvoker::Command(); }

uint32 BListView::SelectionCommand() const
{
    return SelectionMessage() != nullptr ? SelectionMessage()->what : 0;
}

status_t BListView::Invoke(BMessage* message)
{
    bool is_notice = false;
    const uint32 kind = InvokeKind(&is_notice);
    if (message == nullptr && !is_notice)
        message = Message();
    return BPrivate::send_invocation(this, kind, message, [this](BMessage* event) {
        for (int32 i = 0; i < fData->rows.CountSelected(); i++)
            event->AddInt32("index", CurrentSelection(i));
    });
}

void BListView::SelectionChanged() {}

void BListView::_SelectionHasChanged()
{
    const ViewRef self(this);
    self.Data()->TellReader();
    SelectionChanged();
    if (self.View() != nullptr)
        InvokeNotify(SelectionMessage(), B_CONTROL_MODIFIED);
}

// ---- Selection

void BListView::SetListType(list_view_type type)
{
    if (fData->type == B_MULTIPLE_SELECTION_LIST && type == B_SINGLE_SELECTION_LIST &&
        fData->rows.CountSelected() > 1)
        DeselectExcept(CurrentSelection(0), CurrentSelection(0));
    fData->type = type;
}

list_view_type BListView::ListType() const { return fData->type; }

// Redraws what changes. True if anything did.
bool BListView::_Reselect(int32 from, int32 to, bool extend)
{
    Rows& rows = fData->rows;
    const int32 last = CountItems() - 1;
    if (fData->type == B_SINGLE_SELECTION_LIST) {
        to = std::min(from, to);
        extend = false;
    }
    const bool is_any = from >= 0 && from <= last && to >= from && ItemAt(from) != nullptr;
    if (!is_any || (from == to && !ItemAt(from)->IsEnabled()))
        return false;
    bool changed = false;
    if (!extend) {
        const int32 first = CurrentSelection(0);
        changed = rows.DeselectExcept(from, to);
        if (changed)
            _InvalidateFrom(first);
    }
    if (rows.SelectRange(from, std::min(to, last))) {
        changed = true;
        Invalidate(ItemFrame(from) | ItemFrame(std::min(to, last)));
    }
    return changed;
}

void BListView::Select(int32 index, bool extend)
{
    if (_Reselect(index, index, extend)) {
        if (!extend || fData->anchor < 0)
            fData->anchor = index;
        fData->lead = index;
        _SelectionHasChanged();
    }
}

void BListView::Select(int32 from, int32 to, bool extend)
{
    if (_Reselect(from, to, extend)) {
        if (fData->anchor < 0)
            fData->anchor = from;
        fData->lead = to;
        _SelectionHasChanged();
    }
}

bool BListView::IsItemSelected(int32 index) const
{
    const BListItem* item = ItemAt(index);
    return item != nullptr && item->IsSelected();
}

int32 BListView::CurrentSelection(int32 index) const { return fData->rows.SelectedAt(index); }

void BListView::DeselectAll() { DeselectExcept(-1, -1); }

void BListView::DeselectExcept(int32 exceptFrom, int32 exceptTo)
{
    const int32 first = CurrentSelection(0);
    if (!fData->rows.DeselectExcept(exceptFrom, exceptTo))
        return;
    _InvalidateFrom(first);
    _SelectionHasChanged();
}

void BListView::Deselect(int32 index)
{
    BListItem* item = ItemAt(index);
    if (item == nullptr || !item->IsSelected())
        return;
    item->Deselect();
    InvalidateItem(index);
    _SelectionHasChanged();
}

bool BListView::InitiateDrag(BPoint, int32, bool) { return false; }

// ---- Scripting

BHandler* BListView::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                      int32 what, const char* property)
{
    if (BPrivate::knows_property(kProperties, message, index, specifier, what, property))
        return this;
    return BView::ResolveSpecifier(message, index, specifier, what, property);
}

status_t BListView::GetSupportedSuites(BMessage* data)
{
    const status_t status = BPrivate::add_suite(data, "suite/vnd.Be-list-view", kProperties);
    return status == B_OK ? BView::GetSupportedSuites(data) : status;
}

// Counts and invokes; false for other messages.
static bool answer_more(BListView* list, Rows& rows, BMessage* message)
{
    int32 index, form;
    BMessage specifier;
    const char* property = nullptr;
    if (!message->HasSpecifiers() ||
        (message->what != B_COUNT_PROPERTIES && message->what != B_EXECUTE_PROPERTY) ||
        message->GetCurrentSpecifier(&index, &specifier, &form, &property) != B_OK ||
        !BPrivate::knows_property(kProperties, message, index, &specifier, form, property))
        return false;
    BMessage reply(B_REPLY);
    status_t status = B_OK;
    if (message->what == B_EXECUTE_PROPERTY)
        status = list->Invoke();
    else
        reply.AddInt32("result",
                       strcmp(property, "Item") == 0 ? rows.CountShown() : rows.CountSelected());
    reply.AddInt32("error", status);
    message->SendReply(&reply);
    return true;
}

void BListView::MessageReceived(BMessage* message)
{
    if (answer_more(this, fData->rows, message))
        return;
    const bool answered = BPrivate::answer_property(
        kProperties, message,
        [this](const char*, BMessage* reply) {
            for (int32 i = 0; i < fData->rows.CountSelected(); i++)
                reply->AddInt32("result", CurrentSelection(i));
            return B_OK;
        },
        [this](const char*, const BMessage& data) {
            const int32 index = data.GetInt32("data", -1);
            if (ItemAt(index) == nullptr)
                return B_BAD_INDEX;
            Select(index);
            return B_OK;
        });
    if (!answered)
        BView::MessageReceived(message);
}

status_t BListView::Perform(perform_code code, void* arg) { return BView::Perform(code, arg); }
