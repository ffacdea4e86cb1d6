// Messages become hooks; and what the window's loop does between them: updates, the screen, pulses.

#include <Window.h>

#include <Autolock.h>
#include <Message.h>
#include <MessageQueue.h>
#include <View.h>

#include <algorithm>
#include <cstring>

#include <interface/view/ViewPrivate.h>
#include <interface/window/WindowPrivate.h>

using BPrivate::kUpdateMessage;
using BPrivate::ViewPrivate;

void BWindow::DispatchMessage(BMessage* message, BHandler* handler)
{
    if (message == nullptr || handler == nullptr)
        return;
    if (message->what != B_PULSE && message->what != B_MOUSE_MOVED)
        fData->TellReaderSoon();
    BView* view = dynamic_cast<BView*>(handler);
    const bool isHandled = view != nullptr   ? _DispatchToView(message, view)
                           : handler == this ? _DispatchToWindow(message)
                                             : false;
    if (!isHandled)
        BLooper::DispatchMessage(message, handler);
}

static const bigtime_t kRests = 4;  // as long as the update took
static const bigtime_t kLongestRest_us = 250 * 1000;

// Draws, and returns when the views may be drawn again: with the next display frame; later if
// drawing takes long and other threads, which change what is drawn, wait for the window meanwhile.
template <class Update>
static bigtime_t update_paced(Update update, const BLooper* window)
{
    const bigtime_t began = system_time();
    update();
    const bigtime_t ended = system_time();
    const bool keeps_others = window->CountLockRequests() > 1;
    const bigtime_t rest = keeps_others ? std::min((ended - began) * kRests, kLongestRest_us) : 0;
    return ended + std::max(rest, server::FrameInterval());
}

// True if a newer message of the kind waits, which says all that this one does.
bool BWindow::_IsOutdated(const BMessage* message) const
{
    return MessageQueue()->FindMessage(message->what, 0) != nullptr;
}

bool BWindow::_DispatchToWindow(BMessage* message)
{
    switch (message->what) {
        case kUpdateMessage:
            fData->updatePosted = false;
            fData->nextUpdate = update_paced([this] { _Update(); }, this);
            return true;
        case BPrivate::kMenusEnded:
            MenusEnded();
            return true;
        case BPrivate::kReaderCame:
            return true;
        case BPrivate::kReaderAsked:
            if (const auto* asked = dynamic_cast<BPrivate::ReaderMessage*>(message))
                fData->ObeyReader(*asked->request);
            return true;
        case B_PULSE:
            return _Pulse();
        case B_KEY_DOWN:
            return _KeyDown(message);
        case B_INPUT_METHOD_EVENT:
            BPrivate::dispatch_composition(this, message);
            return true;
        case B_WINDOW_RESIZED: {
            int32 width, height;
            if (message->FindInt32("width", &width) == B_OK &&
                message->FindInt32("height", &height) == B_OK && !_IsOutdated(message))
                _Resized(width, height);
            return true;
        }
        case B_WINDOW_MOVED: {
            BPoint where;
            if (message->FindPoint("where", &where) != B_OK)
                return true;
            const auto* own = dynamic_cast<BPrivate::OwnMove*>(message);
            _Moved(own != nullptr && own->IsLast() ? Frame().LeftTop() : where);
            return true;
        }
        case B_WINDOW_ACTIVATED: {
            bool active;
            if (message->FindBool("active", &active) == B_OK && !_IsOutdated(message))
                _Activated(active);
            return true;
        }
        default:
            return _DispatchScreenMessage(message);
    }
}

bool BWindow::_DispatchScreenMessage(BMessage* message)
{
    switch (message->what) {
        case B_ZOOM:
            Zoom();
            return true;
        case BPrivate::kUncoveredMessage: {
            // The screen has the pixels; a program may want to know.
            BRect rect;
            if (message->FindRect("rect", &rect) == B_OK)
                fData->canvas->Invalidate(BRegion(rect));
            return true;
        }
        case BPrivate::kScaleMessage:
            fData->canvas->FollowScale();
            _Update();
            return true;
        case BPrivate::kZoomedMessage: {
            const BRect frame = Frame();
            Zoom(frame.LeftTop(), frame.Width(), frame.Height());
            return true;
        }
        case B_MINIMIZE: {
            bool minimize;
            if (message->FindBool("minimize", &minimize) == B_OK)
                _MinimizeAsked(minimize);
            return true;
        }
        case B_SCREEN_CHANGED: {
            BRect frame;
            int32 mode;
            if (message->FindRect("frame", &frame) == B_OK &&
                message->FindInt32("mode", &mode) == B_OK) {
                ScreenChanged(frame, static_cast<color_space>(mode));
                ViewPrivate::ForEach(fData->topView,
                                     [=](BView* view) { view->MessageReceived(message); });
            }
            return true;
        }
        case B_WORKSPACE_ACTIVATED: {
            int32 workspace;
            bool active;
            if (message->FindInt32("workspace", &workspace) == B_OK &&
                message->FindBool("active", &active) == B_OK)
                WorkspaceActivated(workspace, active);
            return true;
        }
        case B_WORKSPACES_CHANGED: {
            int32 before, after;
            if (message->FindInt32("old", &before) == B_OK &&
                message->FindInt32("new", &after) == B_OK)
                WorkspacesChanged(static_cast<uint32>(before), static_cast<uint32>(after));
            return true;
        }
        default:
            return false;
    }
}

// The text of a key: its bytes, of which Control with Space has one that is 0.
static const char* key_text(const BMessage* message, int32* length)
{
    const char* bytes = nullptr;
    if (message->FindString("bytes", &bytes) != B_OK)
        return nullptr;
    *length = static_cast<int32>(strlen(bytes));
    if (*length == 0 && message->HasInt8("byte"))
        *length = 1;
    return bytes;
}

bool BWindow::_DispatchToView(BMessage* message, BView* view)
{
    BPoint where;
    int32 transit, length;
    switch (message->what) {
        case B_KEY_DOWN:
            if (!_KeyDown(message)) {
                if (const char* bytes = key_text(message, &length))
                    view->KeyDown(bytes, length);
            }
            return true;
        case B_KEY_UP:
            if (const char* bytes = key_text(message, &length))
                view->KeyUp(bytes, length);
            return true;
        case B_MOUSE_DOWN:
            if (message->FindPoint("be:view_where", &where) == B_OK)
                view->MouseDown(where);
            return true;
        case B_MOUSE_UP:
            if (message->FindPoint("be:view_where", &where) == B_OK)
                view->MouseUp(where);
            return true;
        case B_MOUSE_MOVED:
            if (message->FindPoint("be:view_where", &where) == B_OK &&
                message->FindInt32("be:transit", &transit) == B_OK) {
                BMessage dragged;
                const bool isDrag = message->FindMessage("be:drag_message", &dragged) == B_OK;
                view->MouseMoved(where, static_cast<uint32>(transit), isDrag ? &dragged : nullptr);
            }
            return true;
        case B_VIEW_MOVED:
        case B_VIEW_RESIZED:
            ViewPrivate::FrameChanged(view, message->what);
            return true;
        case B_PULSE:
            view->Pulse();
            return true;
        default:
            return false;
    }
}

void BWindow::MessageReceived(BMessage* message)
{
    BPoint place;
    switch (message->what) {
        case B_WINDOW_MOVE_TO:
            if (message->FindPoint("data", &place) == B_OK)
                MoveTo(place);
            break;
        case B_WINDOW_MOVE_BY:
            if (message->FindPoint("data", &place) == B_OK)
                MoveBy(place.x, place.y);
            break;
        case B_KEY_DOWN:
            _UnwantedKey(message);
            break;
        default:
            if (!message->HasSpecifiers() || !_Script(message))
                BLooper::MessageReceived(message);
            break;
    }
}

// Updates.

bool BWindow::NeedsUpdate() const
{
    BAutolock lock(const_cast<BWindow*>(this));
    return lock.IsLocked() && fData->canvas->Invalid().CountRects() > 0;
}

void BWindow::_ScheduleUpdate()
{
    fData->TellReaderSoon();
    // While updates are off, or nobody can see them, the invalid region just waits.
    if (fData->offscreen || fData->updatesDisabled > 0 || IsHidden())
        return;
    if (fData->updatePosted.exchange(true))
        return;
    if (system_time() >= fData->nextUpdate) {
        fData->Post(kUpdateMessage);
    } else {
        fData->updateDelayed = true;
        _SchedulePresent();
    }
}

void BWindow::_Update()
{
    if (fData->updatesDisabled == 0 && !IsHidden() && NeedsUpdate())
        fData->canvas->Update(fData->topView);
}

void BWindow::UpdateIfNeeded()
{
    if (fData->offscreen || LockingThread() != find_thread(nullptr) || Thread() != LockingThread())
        return;
    _Update();
    _Present(false);
}

void BWindow::DisableUpdates()
{
    BAutolock lock(this);
    if (lock.IsLocked())
        fData->updatesDisabled++;
}

void BWindow::EnableUpdates()
{
    BAutolock lock(this);
    if (!lock.IsLocked() || fData->updatesDisabled == 0)
        return;
    if (--fData->updatesDisabled == 0 && NeedsUpdate())
        _ScheduleUpdate();
}

void BWindow::BeginViewTransaction()
{
    BAutolock lock(this);
    if (lock.IsLocked())
        fData->transactions++;
}

void BWindow::EndViewTransaction()
{
    BAutolock lock(this);
    if (!lock.IsLocked() || fData->transactions == 0)
        return;
    if (--fData->transactions == 0)
        _SchedulePresent();
}

bool BWindow::InViewTransaction() const
{
    BAutolock lock(const_cast<BWindow*>(this));
    return lock.IsLocked() && fData->transactions > 0;
}

// The screen.

void BWindow::_SchedulePresent()
{
    // The window's own thread looks after every message.
    if (!fData->offscreen && Thread() != find_thread(nullptr))
        _Wake();
}

// Returns when the screen takes the next picture; B_INFINITE_TIMEOUT if it has the newest.
bigtime_t BWindow::_Present(bool force) const
{
    bigtime_t next = B_INFINITE_TIMEOUT;
    if (fData->display != nullptr && fData->transactions == 0 && fData->canvas->NeedsPresent())
        fData->canvas->Present(force, &next);
    return next;
}

void BWindow::Flush() const
{
    BAutolock lock(const_cast<BWindow*>(this));
    if (lock.IsLocked() && _Present(false) != B_INFINITE_TIMEOUT)
        const_cast<BWindow*>(this)->_SchedulePresent();
}

void BWindow::Sync() const
{
    BAutolock lock(const_cast<BWindow*>(this));
    if (lock.IsLocked())
        _Present(true);
}

bigtime_t BWindow::_Idle()
{
    bigtime_t next = _Present(false);
    const bigtime_t now = system_time();
    if (fData->updateDelayed && now >= fData->nextUpdate) {
        fData->updateDelayed = false;
        fData->Post(kUpdateMessage);
    } else if (fData->updateDelayed) {
        next = std::min(next, fData->nextUpdate);
    }
    if (now >= fData->nextPulse) {
        // A pulse that nobody had time for is left out; the others keep their time.
        fData->nextPulse +=
            (now - fData->nextPulse) / fData->pulseRate * fData->pulseRate + fData->pulseRate;
        if (MessageQueue()->FindMessage(B_PULSE, 0) == nullptr)
            fData->Post(B_PULSE);
    }
    if (server::reader_listens())
        next = std::min(next, fData->TellReader(now));
    return std::min(next, fData->nextPulse);
}

// Pulses.

void BWindow::SetPulseRate(bigtime_t rate)
{
    BAutolock lock(this);
    if (!lock.IsLocked() || rate < 0 || fData->offscreen)
        return;
    if (rate == fData->pulseRate && fData->nextPulse != B_INFINITE_TIMEOUT)
        return;
    fData->pulseRate = rate;
    // Centuries are never: the sum must not overflow.
    fData->nextPulse =
        rate > 0 && rate < B_INFINITE_TIMEOUT / 2 ? system_time() + rate : B_INFINITE_TIMEOUT;
    _Wake();
}

bigtime_t BWindow::PulseRate() const { return fData->pulseRate; }

bool BWindow::_Pulse()
{
    ViewPrivate::ForEach(fData->topView, [](BView* view) {
        if ((view->Flags() & B_PULSE_NEEDED) != 0)
            view->Pulse();
    });
    return true;
}
