// Handles of replicants. All but the static calls on the window's thread.

#include <Dragger.h>

#include <AppDefs.h>
#include <Bitmap.h>
#include <InterfaceDefs.h>
#include <MenuItem.h>
#include <Message.h>
#include <Messenger.h>
#include <PopUpMenu.h>
#include <Shelf.h>
#include <Window.h>

#include <atomic>
#include <cmath>
#include <mutex>
#include <new>
#include <vector>

#include <interface/controls/ControlPrivate.h>
#include <interface/replicants/ReplicantMessages.h>

static const float kSize = 7;  // pixels across, less one
static const float kSlop = 3;  // that a press may move before it drags
static const uint32 kVisibilityChanged = '_DRV';

static std::atomic<bool> sDrawn{true};

// Handles in windows. Never destroyed.
static std::mutex& draggers_mutex()
{
    static auto* const mutex = new std::mutex;
    return *mutex;
}

static std::vector<std::pair<const BDragger*, BMessenger>>& draggers()  // draggers_mutex()
{
    static auto* const all = new std::vector<std::pair<const BDragger*, BMessenger>>;
    return *all;
}

BDragger::BDragger(BRect frame, BView* target, uint32 resizingMode, uint32 flags)
    : BView(frame, "_dragger_", resizingMode, flags), fTarget(target)
{
}

BDragger::BDragger(BView* target, uint32 flags)
    : BDragger(BRect(0, 0, kSize, kSize), target, B_FOLLOW_NONE, flags)
{
}

BDragger::BDragger(BMessage* data) : BView(data), fTarget(nullptr)
{
    int32 relation;
    if (data->FindInt32("_rel", &relation) == B_OK && relation >= 0 &&
        relation <= static_cast<int32>(Relation::Sibling))
        fRelation = static_cast<Relation>(relation);
    BMessage menu;
    if (data->FindMessage("_popup", &menu) == B_OK)
        fPopUp.reset(dynamic_cast<BPopUpMenu*>(instantiate_object(&menu)));
}

BDragger::~BDragger() = default;

BArchivable* BDragger::Instantiate(BMessage* data)
{
    return validate_instantiation(data, "BDragger") ? new (std::nothrow) BDragger(data) : nullptr;
}

status_t BDragger::Archive(BMessage* data, bool deep) const
{
    status_t status = BView::Archive(data, deep);
    if (status == B_OK)
        status = data->AddInt32("_rel", static_cast<int32>(_Relation()));
    BMessage menu;
    if (status == B_OK && fPopUp != nullptr && fPopUp->Archive(&menu, deep) == B_OK)
        status = data->AddMessage("_popup", &menu);
    return status;
}

// --- hooks

void BDragger::AttachedToWindow()
{
    BPrivate::adopt_ground(this);
    _FindRelation();
    std::lock_guard<std::mutex> lock(draggers_mutex());
    draggers().emplace_back(this, BMessenger(this));
}

void BDragger::DetachedFromWindow()
{
    fIsPressed = false;
    std::lock_guard<std::mutex> lock(draggers_mutex());
    std::erase_if(draggers(), [this](const auto& each) { return each.first == this; });
}

// A handle that was archived knows how its target lies, not which view that is.
void BDragger::_FindRelation()
{
    if (fTarget == nullptr) {
        switch (fRelation) {
            case Relation::Parent:
                fTarget = Parent();
                break;
            case Relation::Child:
                fTarget = ChildAt(0);
                break;
            case Relation::Sibling:
                fTarget = PreviousSibling() != nullptr ? PreviousSibling() : NextSibling();
                break;
            case Relation::Unknown:
                break;
        }
        return;
    }
    fRelation = _Relation();
}

BDragger::Relation BDragger::_Relation() const
{
    if (fTarget == nullptr)
        return fRelation;
    if (fTarget == Parent())
        return Relation::Parent;
    return fTarget->Parent() == this ? Relation::Child : Relation::Sibling;
}

// A sheet with a corner turned over, in the right bottom corner.
void BDragger::Draw(BRect)
{
    if (!AreDraggersDrawn() || (fShelf != nullptr && !fShelf->AllowsDragging()))
        return;
    const BRect b = Bounds();
    const BRect r(b.right - kSize, b.bottom - kSize, b.right, b.bottom);
    const BPrivate::Look look(this);
    look.Fill(r, look.Shade(B_LIGHTEN_1_TINT));
    look.DrawEdges(r, look.Shade(B_LIGHTEN_MAX_TINT), look.Shade(B_DARKEN_3_TINT));
    SetHighColor(look.Shade(B_DARKEN_4_TINT));
    for (float at = 2; at < kSize; at += 2)
        StrokeLine(BPoint(r.left + at, r.bottom - 1), BPoint(r.right - 1, r.top + at));
}

void BDragger::MouseDown(BPoint where)
{
    if (!AreDraggersDrawn() || fTarget == nullptr)
        return;
    int32 buttons = 0;
    if (Window()->CurrentMessage() != nullptr)
        Window()->CurrentMessage()->FindInt32("buttons", &buttons);
    if ((buttons & B_SECONDARY_MOUSE_BUTTON) != 0) {
        _OpenMenu(where);
        return;
    }
    if (fShelf != nullptr && !fShelf->AllowsDragging())
        return;
    SetMouseEventMask(B_POINTER_EVENTS, 0);
    fPressedAt = where;
    fIsPressed = true;
}

void BDragger::MouseUp(BPoint where)
{
    fIsPressed = false;
    BView::MouseUp(where);
}

void BDragger::MouseMoved(BPoint where, uint32 transit, const BMessage* dragMessage)
{
    const BPoint way = where - fPressedAt;
    if (fIsPressed && std::max(std::abs(way.x), std::abs(way.y)) >= kSlop) {
        fIsPressed = false;
        _StartDrag(way);
    }
    BView::MouseMoved(where, transit, dragMessage);
}

// What is dragged is the view that holds the other one; of two side by side, the target with the
// handle beside it. The pointer keeps hold of where it pressed, and has gone some way from there.
void BDragger::_StartDrag(BPoint way)
{
    BMessage archive(B_ARCHIVED_OBJECT);
    const BView* whole = fRelation == Relation::Child ? this : fTarget;
    if (whole->Archive(&archive) != B_OK)
        return;
    BMessage own;
    if (fRelation == Relation::Sibling && Archive(&own) == B_OK)
        archive.AddMessage(BPrivate::kDraggerField, &own);
    archive.what = B_ARCHIVED_OBJECT;
    if (fShelf != nullptr)
        archive.AddInt32(BPrivate::kReplicantField,
                         BPrivate::ReplicantIds::Of(*fShelf, fTarget, this));
    BPoint offset;
    drawing_mode mode = B_OP_COPY;
    if (BBitmap* image = DragBitmap(&offset, &mode))
        DragMessage(&archive, image, mode, offset, this);
    else
        DragMessage(&archive,
                    ConvertFromScreen(whole->ConvertToScreen(whole->Bounds())).OffsetBySelf(way),
                    this);
}

void BDragger::_OpenMenu(BPoint where)
{
    if (fPopUp != nullptr) {
        fPopUp->Go(ConvertToScreen(where), true, true);
        return;
    }
    if (fShelf == nullptr)
        return;
    BPopUpMenu menu("shelf", false, false);
    menu.AddItem(new BMenuItem("Remove replicant", nullptr));
    if (menu.Go(ConvertToScreen(where), false, true) != nullptr)
        BMessenger(this).SendMessage(BPrivate::kRemoveReplicant);
}

// The shelf deletes this with the replicant.
void BDragger::MessageReceived(BMessage* message)
{
    if (message->what == BPrivate::kRemoveReplicant && fShelf != nullptr) {
        BShelf* shelf = fShelf;
        const int32 at = BPrivate::ReplicantIds::IndexOf(*shelf, fTarget, this);
        shelf->DeleteReplicant(at);
    } else if (message->what == kVisibilityChanged) {
        fIsChanging = true;
        Invalidate();
        fIsChanging = false;
    } else {
        BView::MessageReceived(message);
    }
}

void BDragger::FrameMoved(BPoint newPosition) { BView::FrameMoved(newPosition); }

void BDragger::FrameResized(float newWidth, float newHeight)
{
    BView::FrameResized(newWidth, newHeight);
}

// --- all of them

void BDragger::_SetAllDrawn(bool drawn)
{
    if (sDrawn.exchange(drawn) == drawn)
        return;
    std::lock_guard<std::mutex> lock(draggers_mutex());
    for (const auto& each : draggers())
        each.second.SendMessage(kVisibilityChanged);
}

status_t BDragger::ShowAllDraggers()
{
    _SetAllDrawn(true);
    return B_OK;
}

status_t BDragger::HideAllDraggers()
{
    _SetAllDrawn(false);
    return B_OK;
}

bool BDragger::AreDraggersDrawn() { return sDrawn; }

// ---

BHandler* BDragger::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                     int32 form, const char* property)
{
    return BView::ResolveSpecifier(message, index, specifier, form, property);
}

status_t BDragger::GetSupportedSuites(BMessage* data) { return BView::GetSupportedSuites(data); }

status_t BDragger::Perform(perform_code code, void* data) { return BView::Perform(code, data); }

void BDragger::ResizeToPreferred()
{
    float width, height;
    GetPreferredSize(&width, &height);
    ResizeTo(width, height);
}

void BDragger::GetPreferredSize(float* _width, float* _height)
{
    if (_width != nullptr)
        *_width = kSize;
    if (_height != nullptr)
        *_height = kSize;
}

void BDragger::MakeFocus(bool focus) { BView::MakeFocus(focus); }

void BDragger::AllAttached() { BView::AllAttached(); }

void BDragger::AllDetached() { BView::AllDetached(); }

status_t BDragger::SetPopUp(BPopUpMenu* contextMenu)
{
    if (contextMenu != nullptr && contextMenu == fPopUp.get())
        return B_BAD_VALUE;
    fPopUp.reset(contextMenu);
    return B_OK;
}

BPopUpMenu* BDragger::PopUp() const { return fPopUp.get(); }

bool BDragger::InShelf() const { return fShelf != nullptr; }

BView* BDragger::Target() const { return fTarget; }

BBitmap* BDragger::DragBitmap(BPoint*, drawing_mode*) { return nullptr; }

bool BDragger::IsVisibilityChanging() const { return fIsChanging; }
