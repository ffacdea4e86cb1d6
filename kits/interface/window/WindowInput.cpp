// Finds the targets of pointer and keys when it is their turn: the view under the pointer, the one
// that holds it by an event mask, the focus; and the views that listen in.

#include <Window.h>

#include <Message.h>
#include <MessageQueue.h>
#include <View.h>

#include <algorithm>

#include <app/message/MessageAccess.h>
#include <interface/view/ViewPrivate.h>
#include <interface/window/WindowDrag.h>
#include <interface/window/WindowPrivate.h>

using BPrivate::EventListener;
using BPrivate::InputMessage;
using BPrivate::MessageAccess;
using BPrivate::ViewPrivate;
using BPrivate::WindowData;
using server::EventKind;

namespace BPrivate {

bool WindowData::Holds(const BView* view) const { return ViewPrivate::Holds(topView, view); }

BView* WindowData::MouseHolder() const
{
    for (const EventListener& listener : listeners) {
        if ((listener.mouseMask & B_POINTER_EVENTS) != 0)
            return listener.view;
    }
    return nullptr;
}

EventListener& WindowData::Listener(BView* view)
{
    for (EventListener& listener : listeners) {
        if (listener.view == view)
            return listener;
    }
    listeners.emplace_back();
    listeners.back().view = view;
    return listeners.back();
}

void WindowData::ListenersChanged()
{
    std::erase_if(listeners, [](const EventListener& listener) {
        return listener.mask == 0 && listener.mouseMask == 0;
    });
    wantsHistory =
        std::any_of(listeners.begin(), listeners.end(), [](const EventListener& listener) {
            return ((listener.options | listener.mouseOptions) & B_FULL_POINTER_HISTORY) != 0;
        });
}

void WindowData::EndMouseMasks()
{
    for (EventListener& listener : listeners)
        listener.mouseMask = listener.mouseOptions = 0;
    ListenersChanged();
}

}  // namespace BPrivate

void BWindow::_SetEventMask(BView* view, uint32 mask, uint32 options)
{
    EventListener& listener = fData->Listener(view);
    listener.mask = mask;
    listener.options = options;
    fData->ListenersChanged();
}

status_t BWindow::_SetMouseEventMask(BView* view, uint32 mask, uint32 options)
{
    const BMessage* current = CurrentMessage();
    if (current == nullptr || current->what != B_MOUSE_DOWN)
        return B_BAD_VALUE;
    if (fData->buttons == 0)
        return B_OK;  // GetMouse() took the release: there is nothing to be held
    EventListener& listener = fData->Listener(view);
    listener.mouseMask = mask;
    listener.mouseOptions = options;
    fData->ListenersChanged();
    return B_OK;
}

void BWindow::_Deliver(BMessage* message)
{
    auto* input = dynamic_cast<InputMessage*>(message);
    auto* drop = dynamic_cast<BPrivate::DropMessage*>(message);
    if (input == nullptr && drop == nullptr) {
        BLooper::_Deliver(message);
        return;
    }
    if (input != nullptr) {
        _DeliverInput(input);
    } else {
        BView* view = _ViewAt(drop->Where());
        _DispatchTo(message, view != nullptr ? view : static_cast<BHandler*>(this));
    }
}

// Runs the message through filters and dispatch, or a copy of it if more targets follow. Nobody
// touches the message after its last target, who may have kept it. A hook that quits does not come
// back: the looper deletes then what is its present message.
void BWindow::_DispatchCopy(BMessage* message, BHandler* target)
{
    if (fData->delivering == nullptr) {
        _DispatchTo(message, target);
        return;
    }
    BMessage* copy =
        MessageAccess::CopyFor(message, BPrivate::kNoToken, MessageAccess::ReturnAddress(message),
                               MessageAccess::kDelivered);
    bool detached = false;
    DispatchExternalMessage(copy, target, detached);
    if (!detached)
        delete copy;
}

void BWindow::_DeliverInput(InputMessage* message)
{
    const server::Event& event = message->Close();
    switch (event.kind) {
        case EventKind::MouseMoved:
            _DeliverMove(message, event);
            break;
        case EventKind::MouseExited:
            fData->pointer = event.where;
            _DeliverTransit(message, event, nullptr);
            break;
        case EventKind::MouseDown:
        case EventKind::MouseUp:
            _DeliverButton(message, event);
            break;
        case EventKind::MouseWheel:
            _DeliverToViews(message, event, _ViewAt(event.where), B_POINTER_EVENTS);
            break;
        default:
            _DeliverKey(message);
            break;
    }
}

BView* BWindow::_ViewAt(BPoint where) const { return ViewPrivate::Under(fData->topView, where); }

void BWindow::_DeliverMove(InputMessage* message, const server::Event& event)
{
    fData->pointer = event.where;
    _SetButtons(event.buttons);
    BView* holder = fData->MouseHolder();
    BView* under = message->IsOutside() ? nullptr : _ViewAt(event.where);
    BView* target = holder != nullptr ? holder : under;
    if (fData->wantsHistory && !_WantsHistory(target)) {
        // The queue kept the older moves for another view.
        const int32 first = 0;
        auto* next = dynamic_cast<InputMessage*>(MessageQueue()->FindMessage(first));
        if (next != nullptr && next->what == B_MOUSE_MOVED)
            return;
    }
    _UpdateCursor();
    _DeliverTransit(message, event, under);
}

bool BWindow::_WantsHistory(BView* view) const
{
    for (const EventListener& listener : fData->listeners) {
        if (listener.view == view)
            return ((listener.options | listener.mouseOptions) & B_FULL_POINTER_HISTORY) != 0;
    }
    return false;
}

// A move goes to the view that the pointer left, to the one it is in or that holds it, and to
// those that listen; in this order.
void BWindow::_DeliverTransit(BMessage* message, const server::Event& event, BView* under)
{
    std::vector<std::pair<BView*, int32>> targets;
    BView* const last = fData->mouseView;
    BView* const holder = fData->MouseHolder();
    BView* const target = holder != nullptr ? holder : under;
    if (last != nullptr && last != target)
        targets.emplace_back(last, B_EXITED_VIEW);
    if (target != nullptr) {
        const bool wasIn = last == target, isIn = under == target;
        targets.emplace_back(target, wasIn ? (isIn ? B_INSIDE_VIEW : B_EXITED_VIEW)
                                           : (isIn ? B_ENTERED_VIEW : B_OUTSIDE_VIEW));
    }
    fData->mouseView = under == target ? target : nullptr;
    for (const EventListener& listener : fData->listeners) {
        const bool isNew = std::none_of(targets.begin(), targets.end(), [&](const auto& known) {
            return known.first == listener.view;
        });
        if (((listener.mask | listener.mouseMask) & B_POINTER_EVENTS) != 0 && isNew)
            targets.emplace_back(listener.view, B_OUTSIDE_VIEW);
    }
    message->what = B_MOUSE_MOVED;
    fData->ForTargets(message, targets, [&](const auto& target) {
        const auto& [view, transit] = target;
        if (!fData->Holds(view))
            return;  // an earlier hook took it away
        message->RemoveName("be:transit");
        message->AddInt32("be:transit", transit);
        _DispatchPointer(message, event, view);
    });
}

void BWindow::_DeliverButton(InputMessage* message, const server::Event& event)
{
    BView* const holder = fData->MouseHolder();
    BView* const under = message->IsOutside() ? nullptr : _ViewAt(event.where);
    fData->pointer = event.where;
    _SetButtons(event.buttons);
    if (holder == nullptr && under == nullptr) {
        // A release that belongs to whoever is under the pointer.
        BPrivate::pass_to_window_below(event);
        return;
    }
    BView* const target = holder != nullptr ? holder : under;
    if (event.kind == EventKind::MouseDown) {
        // The screen counts for the window; a run of clicks starts anew at another view.
        if (event.clicks <= 1)
            fData->clicksBefore = 0;
        else if (target != fData->clickView)
            fData->clicksBefore = event.clicks - 1;
        fData->clickView = target;
        message->ReplaceInt32("clicks", event.clicks - fData->clicksBefore);
    }
    _DeliverToViews(message, event, target, B_POINTER_EVENTS);
}

// What is known of the buttons; masks that hold the pointer end with the last one.
void BWindow::_SetButtons(int32 buttons)
{
    fData->buttons = buttons;
    if (buttons == 0)
        fData->EndMouseMasks();
}

// To the target, and to the views that listen to such events.
void BWindow::_DeliverToViews(BMessage* message, const server::Event& event, BView* target,
                              uint32 mask)
{
    std::vector<BView*> views;
    if (target != nullptr)
        views.push_back(target);
    for (const EventListener& listener : fData->listeners) {
        if (((listener.mask | listener.mouseMask) & mask) != 0 && listener.view != target)
            views.push_back(listener.view);
    }
    fData->ForTargets(message, views, [&](BView* view) {
        if (!fData->Holds(view))
            return;
        if (mask == B_POINTER_EVENTS && message->what != B_MOUSE_WHEEL_CHANGED)
            _DispatchPointer(message, event, view);
        else
            _DispatchCopy(message, view);
    });
}

// Fills in the places as the view sees them.
void BWindow::_DispatchPointer(BMessage* message, const server::Event& event, BView* view)
{
    const BPoint where = ViewPrivate::ToView(view, event.where);
    message->RemoveName("be:view_where");
    message->AddPoint("be:view_where", where);
    if (message->what != B_MOUSE_MOVED)
        message->ReplacePoint("where", where);  // a move keeps the place in the window
    ViewPrivate::TrackPointer(view, event.where, static_cast<uint32>(event.buttons));
    _DispatchCopy(message, view);
}

// The oldest pointer message that waits, taken by BView::GetMouse().
bool BWindow::_TakePointerMessage(BPoint* where, uint32* buttons)
{
    BMessageQueue* queue = MessageQueue();
    std::unique_ptr<InputMessage> taken;
    queue->Lock();
    for (int32 i = 0; taken == nullptr; i++) {
        BMessage* message = queue->FindMessage(i);
        if (message == nullptr)
            break;
        if (message->what == B_MOUSE_DOWN || message->what == B_MOUSE_UP ||
            message->what == B_MOUSE_MOVED)
            taken.reset(dynamic_cast<InputMessage*>(message));
    }
    if (taken != nullptr)
        queue->RemoveMessage(taken.get());
    queue->Unlock();
    if (taken == nullptr)
        return false;
    const server::Event& event = taken->Close();
    fData->pointer = event.where;
    _SetButtons(event.buttons);
    *where = event.where;
    *buttons = static_cast<uint32>(event.buttons);
    return true;
}

void BWindow::_UpdateCursor()
{
    if (fData->display == nullptr)
        return;
    const BView* view = fData->MouseHolder();
    if (view == nullptr)
        view = _ViewAt(fData->pointer);
    const BCursor* cursor = view != nullptr ? ViewPrivate::Cursor(view) : nullptr;
    if (cursor == nullptr && !fData->hasCursor)
        return;
    fData->hasCursor = cursor != nullptr;
    fData->display->SetCursor(cursor);
}
