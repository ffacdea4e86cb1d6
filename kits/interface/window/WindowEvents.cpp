// The server's events become messages in the window's queue. Runs on the server's thread or on one
// that injects input; takes no window's lock.

#include <AppDefs.h>
#include <Message.h>
#include <MessageQueue.h>
#include <TypeConstants.h>

#include <algorithm>
#include <string>
#include <utility>

#include <interface/window/WindowDrag.h>
#include <interface/window/WindowPrivate.h>

namespace BPrivate {

static uint32 input_code(const server::Event& event)
{
    switch (event.kind) {
        case server::EventKind::MouseDown:
            return B_MOUSE_DOWN;
        case server::EventKind::MouseUp:
            return B_MOUSE_UP;
        case server::EventKind::MouseMoved:
            return B_MOUSE_MOVED;
        case server::EventKind::MouseExited:
            return B_MOUSE_ENTER_EXIT;
        case server::EventKind::MouseWheel:
            return B_MOUSE_WHEEL_CHANGED;
        case server::EventKind::KeyDown:
            return event.byteCount > 0 ? B_KEY_DOWN : B_UNMAPPED_KEY_DOWN;
        case server::EventKind::KeyUp:
            return event.byteCount > 0 ? B_KEY_UP : B_UNMAPPED_KEY_UP;
        case server::EventKind::ModifiersChanged:
            return B_MODIFIERS_CHANGED;
        default:
            return 0;
    }
}

static bool is_pointer(server::EventKind kind)
{
    return kind == server::EventKind::MouseDown || kind == server::EventKind::MouseUp ||
           kind == server::EventKind::MouseMoved;
}

static void add_key_fields(BMessage* message, const server::Event& event)
{
    message->AddInt32("key", event.key);
    message->AddInt32("modifiers", event.modifiers);
    message->AddData("states", B_UINT8_TYPE, event.states, sizeof(event.states));
    const int32 length = std::min<int32>(event.byteCount, sizeof(event.bytes));
    if (length <= 0)
        return;
    for (int32 i = 0; i < length; i++)
        message->AddInt8("byte", event.bytes[i]);
    message->AddString("bytes", std::string(event.bytes, length).c_str());
    message->AddInt32("raw_char", event.rawChar);
    if (event.kind == server::EventKind::KeyDown && event.repeat > 1)
        message->AddInt32("be:key_repeat", event.repeat);
}

InputMessage::InputMessage(const server::Event& event, bool isOutside, const Dragged& dragged,
                           const std::shared_ptr<OpenMove>& open)
    : BMessage(input_code(event)),
      fEvent(event),
      fDragged(dragged),
      fOpen(open),
      fIsOutside(isOutside)
{
    _Fill();
}

InputMessage::~InputMessage() { Close(); }

const server::Event& InputMessage::Close()
{
    std::lock_guard<std::mutex> lock(fOpen->lock);
    if (fOpen->message == this)
        fOpen->message = nullptr;
    if (fIsStale) {
        fIsStale = false;
        MakeEmpty();
        _Fill();
    }
    return fEvent;
}

bool InputMessage::CanBecome(const server::Event& event, bool isOutside,
                             const Dragged& dragged) const
{
    return fIsOutside == isOutside && fDragged == dragged && fEvent.buttons == event.buttons &&
           fEvent.modifiers == event.modifiers;
}

void InputMessage::Replace(const server::Event& event)
{
    fEvent = event;
    fIsStale = true;
}

void InputMessage::_Fill()
{
    AddInt64("when", fEvent.when);
    switch (what) {
        case B_MOUSE_DOWN:
        case B_MOUSE_UP:
        case B_MOUSE_MOVED:
        case B_MOUSE_ENTER_EXIT:
            AddPoint("where", fEvent.where);
            AddPoint("screen_where", fEvent.screenWhere);
            AddInt32("buttons", fEvent.buttons);
            AddInt32("modifiers", fEvent.modifiers);
            if (what == B_MOUSE_DOWN)
                AddInt32("clicks", fEvent.clicks);
            if (what == B_MOUSE_MOVED && fDragged != nullptr)
                AddMessage("be:drag_message", fDragged.get());
            break;
        case B_MOUSE_WHEEL_CHANGED:
            AddFloat("be:wheel_delta_x", fEvent.wheelX);
            AddFloat("be:wheel_delta_y", fEvent.wheelY);
            break;
        case B_MODIFIERS_CHANGED:
            AddInt32("modifiers", fEvent.modifiers);
            AddInt32("be:old_modifiers", fEvent.oldModifiers);
            AddData("states", B_UINT8_TYPE, fEvent.states, sizeof(fEvent.states));
            break;
        default:
            add_key_fields(this, fEvent);
            break;
    }
}

WindowData::WindowData(BWindow* owner) : window(owner), openMove(std::make_shared<OpenMove>())
{
    add_drop_site(this);
}

WindowData::~WindowData() { remove_drop_site(this); }

void WindowData::Post(std::unique_ptr<BMessage> message) { window->_Adopt(message.release()); }

static std::unique_ptr<BMessage> message_at(uint32 what, bigtime_t when)
{
    auto message = std::make_unique<BMessage>(what);
    message->AddInt64("when", when);
    return message;
}

void WindowData::PostMoved(BPoint place, bigtime_t when)
{
    auto message = message_at(B_WINDOW_MOVED, when);
    message->AddPoint("where", place);
    Post(std::move(message));
}

void WindowData::PostOwnMove(BPoint place)
{
    if (*ownMoves >= OwnMove::kMost)
        return;
    auto message = std::make_unique<OwnMove>(ownMoves);
    message->AddInt64("when", system_time());
    message->AddPoint("where", place);
    Post(std::move(message));
}

void WindowData::PostResized(float width, float height, bigtime_t when)
{
    auto message = message_at(B_WINDOW_RESIZED, when);
    message->AddInt32("width", static_cast<int32>(width));
    message->AddInt32("height", static_cast<int32>(height));
    Post(std::move(message));
}

// Queues an event of keyboard or pointer. A move takes the place of one that waits at the end of
// the input, unless a view wants them all.
void WindowData::PostInput(const server::Event& event, bool isOutside,
                           const InputMessage::Dragged& dragged)
{
    const bool isMove = event.kind == server::EventKind::MouseMoved;
    {
        std::lock_guard<std::mutex> lock(openMove->lock);
        InputMessage* last = openMove->message;
        if (isMove && last != nullptr && !wantsHistory &&
            last->CanBecome(event, isOutside, dragged)) {
            last->Replace(event);
            return;
        }
        openMove->message = nullptr;
    }
    auto message = std::make_unique<InputMessage>(event, isOutside, dragged, openMove);
    if (isMove) {
        std::lock_guard<std::mutex> lock(openMove->lock);
        openMove->message = message.get();
    }
    Post(std::move(message));
}

void WindowData::Deliver(const server::Event& event)
{
    if (input_code(event) == 0)
        _DeliverWindowEvent(event);
    else if (!is_pointer(event.kind))
        PostInput(event, false);
    else if (!drag_event(this, event))
        PostInput(event, event.under != this);
}

// True for an event that goes with its beginning: the window keeps what ends what it has had.
static bool takes(const server::Event& event, int32* buttons, std::vector<int32>* keys)
{
    switch (event.kind) {
        case server::EventKind::KeyDown:
            keys->push_back(event.key);
            return true;
        case server::EventKind::KeyUp:
            return std::find(keys->begin(), keys->end(), event.key) != keys->end();
        case server::EventKind::MouseUp:
            return (std::exchange(*buttons, *buttons & ~event.button) & event.button) == 0;
        default:
            return true;
    }
}

static bool is_for_holders(server::EventKind kind)
{
    return is_pointer(kind) || kind == server::EventKind::MouseWheel ||
           kind == server::EventKind::KeyDown || kind == server::EventKind::KeyUp;
}

std::vector<server::Event> WindowData::TakeWaiting()
{
    std::vector<server::Event> waiting;
    std::vector<std::unique_ptr<InputMessage>> taken;
    int32 pressed = buttons;
    std::vector<int32> keys;
    BMessageQueue* const queue = window->MessageQueue();
    queue->Lock();
    for (int32 i = 0; BMessage* message = queue->FindMessage(i); i++) {
        auto* const input = dynamic_cast<InputMessage*>(message);
        if (input == nullptr || !is_for_holders(input->Kind()))
            continue;
        const server::Event& event = input->Close();
        const bool is_taken = takes(event, &pressed, &keys);
        if (!is_taken && event.kind == server::EventKind::KeyUp)
            continue;
        waiting.push_back(event);
        waiting.back().where = event.screenWhere;
        if (is_taken) {
            queue->RemoveMessage(input);
            taken.emplace_back(input);
            i--;
        }
    }
    queue->Unlock();
    return waiting;
}

void WindowData::_ScreenMoved(const server::Event& event)
{
    const BPoint place = event.frame.LeftTop();
    {
        MutexLock state(stateLock);
        if (moves.IsEcho(place))
            return;
    }
    PostMoved(place, event.when);
}

void WindowData::_ScreenResized(const server::Event& event)
{
    const float width = event.frame.Width(), height = event.frame.Height();
    {
        MutexLock state(stateLock);
        if (sizes.IsEcho({width, height}))
            return;
    }
    PostResized(width, height, event.when);
}

void WindowData::_DeliverWindowEvent(const server::Event& event)
{
    switch (event.kind) {
        case server::EventKind::CloseRequested:
            Post(B_QUIT_REQUESTED);
            break;
        case server::EventKind::ZoomRequested:
            Post(B_ZOOM);
            break;
        case server::EventKind::Uncovered: {
            auto message = message_at(kUncoveredMessage, event.when);
            message->AddRect("rect", event.frame);
            Post(std::move(message));
            break;
        }
        case server::EventKind::ScaleChanged:
            Post(kScaleMessage);
            break;
        case server::EventKind::Zoomed:
            Post(kZoomedMessage);
            break;
        case server::EventKind::Moved:
            _ScreenMoved(event);
            break;
        case server::EventKind::Resized:
            _ScreenResized(event);
            break;
        case server::EventKind::Activated: {
            count_active(this, event.active);
            auto message = std::make_unique<BMessage>(B_WINDOW_ACTIVATED);
            message->AddBool("active", event.active);
            Post(std::move(message));
            break;
        }
        case server::EventKind::Minimized: {
            {
                MutexLock state(stateLock);
                if (icons.IsEcho(event.active))
                    break;
            }
            auto message = message_at(B_MINIMIZE, real_time_clock_usecs());
            message->AddBool("minimize", event.active);
            Post(std::move(message));
            break;
        }
        case server::EventKind::ScreenChanged: {
            auto message = message_at(B_SCREEN_CHANGED, real_time_clock_usecs());
            message->AddRect("frame", event.frame);
            message->AddInt32("mode", server::ScreenSpace());
            Post(std::move(message));
            break;
        }
        case server::EventKind::WorkspaceActivated: {
            auto message = message_at(B_WORKSPACE_ACTIVATED, event.when);
            message->AddInt32("workspace", event.workspace);
            message->AddBool("active", event.active);
            Post(std::move(message));
            break;
        }
        case server::EventKind::WorkspacesChanged: {
            workspaces = event.workspaces;
            auto message = message_at(B_WORKSPACES_CHANGED, event.when);
            message->AddInt32("old", static_cast<int32>(event.oldWorkspaces));
            message->AddInt32("new", static_cast<int32>(event.workspaces));
            Post(std::move(message));
            break;
        }
        case server::EventKind::FilesDropped:
            post_file_drop(this, event);
            break;
        case server::EventKind::DataDropped:
            post_data_drop(this, event);
            break;
        case server::EventKind::DragCancelled:
            cancel_drag(this, event);
            break;
        case server::EventKind::ReaderCame:
            Post(kReaderCame);
            break;
        case server::EventKind::ReaderAsked:
            Post(std::make_unique<ReaderMessage>(event.request));
            break;
        case server::EventKind::Composed:
            Post(std::make_unique<ComposedMessage>(*event.composition));
            break;
        default:
            break;
    }
}

}  // namespace BPrivate
