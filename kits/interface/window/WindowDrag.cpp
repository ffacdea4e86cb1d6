// Drag and drop: a view's drag goes from window to window of this program, and ends as a message
// to the view under the pointer, like files and text that fall in from other programs.

#include "interface/window/WindowDrag.h"

#include <Bitmap.h>
#include <Entry.h>
#include <View.h>

#include <algorithm>
#include <mutex>
#include <vector>

#include <app/message/MessageAccess.h>
#include <interface/view/ViewPrivate.h>
#include <interface/window/DragContent.h>
#include <interface/window/WindowPrivate.h>

namespace [[gnu::visibility("hidden")]] BPrivate {

struct Drag {
    std::shared_ptr<const BMessage> message;
    BPoint offset;
    WindowData* source;
    WindowData* over;  // the window that got the last move, null for none
};

static std::mutex sLock;  // a window is posted to under it only; before the locks of queues
// Windows may close while the process is already leaving, so neither is ever destroyed.
static std::vector<WindowData*>& sSites = *new std::vector<WindowData*>;
static std::unique_ptr<Drag>& sDrag = *new std::unique_ptr<Drag>;

DropMessage::DropMessage(const BMessage& dropped, BPoint where, BPoint screenWhere, BPoint offset)
    : BMessage(dropped), fWhere(where)
{
    RemoveName("_drop_point_");
    RemoveName("_drop_offset_");
    AddPoint("_drop_point_", screenWhere);
    AddPoint("_drop_offset_", offset);
    MessageAccess::Delivery(this) |= MessageAccess::kDropped;
    MessageAccess::ReturnAddress(this) =
        MessageAccess::ReturnAddress(const_cast<BMessage*>(&dropped));
}

void add_drop_site(WindowData* window)
{
    std::lock_guard<std::mutex> lock(sLock);
    sSites.push_back(window);
}

void remove_drop_site(WindowData* window)
{
    std::unique_ptr<Drag> ended;
    {
        std::lock_guard<std::mutex> lock(sLock);
        sSites.erase(std::remove(sSites.begin(), sSites.end(), window), sSites.end());
        if (sDrag != nullptr && sDrag->over == window)
            sDrag->over = nullptr;
        if (sDrag != nullptr && sDrag->source == window)
            ended = std::move(sDrag);
    }
    if (ended != nullptr)
        server::EndDrag();
}

// Under the lock: the window that an event names, null if it is gone.
static WindowData* site_of(const server::EventSink* sink)
{
    for (WindowData* site : sSites) {
        if (static_cast<server::EventSink*>(site) == sink)
            return site;
    }
    return nullptr;
}

static void drop(const Drag& drag, WindowData* over, BPoint where, BPoint screenWhere)
{
    if (over == nullptr)
        return;
    over->Post(std::make_unique<DropMessage>(*drag.message, where, screenWhere, drag.offset));
}

void start_drag(WindowData* source, std::unique_ptr<BMessage> message,
                std::shared_ptr<const server::DragPicture> picture)
{
    const BPoint offset = picture->offset;
    server::BeginDrag(std::move(picture), drag_forms(*message));
    {
        std::lock_guard<std::mutex> lock(sLock);
        sDrag.reset(new Drag{std::move(message), offset, source, source});
    }
    // The stage before our lock, as events have it.
    BPoint screenWhere, where;
    uint32 buttons;
    server::PointerState(&screenWhere, &buttons);
    if (buttons != 0)
        return;
    // A flick, over before it was seen.
    const server::EventSink* under = server::SinkAt(screenWhere, &where);
    std::lock_guard<std::mutex> lock(sLock);
    if (sDrag == nullptr)
        return;
    drop(*sDrag, site_of(under), where, screenWhere);
    sDrag = nullptr;
}

// Tells a window, which sees no more of the drag, that the pointer has left it.
static void leave(WindowData* window, const server::Event& event)
{
    server::Event left = event;
    left.kind = server::EventKind::MouseExited;
    {
        BPrivate::MutexLock state(window->stateLock);
        left.where = event.screenWhere - window->frame.LeftTop();
    }
    window->PostInput(left, true);
}

bool drag_event(WindowData* grabbed, const server::Event& event)
{
    std::lock_guard<std::mutex> lock(sLock);
    if (sDrag == nullptr || event.kind == server::EventKind::MouseDown)
        return false;
    server::Event below = event;
    below.where = event.underWhere;
    WindowData* over = site_of(event.under);
    if (sDrag->over != nullptr && sDrag->over != over && sDrag->over != grabbed)
        leave(sDrag->over, event);
    sDrag->over = over;
    server::Event own = event;
    own.under = nullptr;  // the window below gets its share here
    grabbed->PostInput(own, over != grabbed, sDrag->message);
    if (over != nullptr && over != grabbed)
        over->PostInput(below, false, sDrag->message);
    if (event.kind == server::EventKind::MouseUp && event.buttons == 0) {
        drop(*sDrag, over, event.underWhere, event.screenWhere);
        sDrag = nullptr;
    }
    return true;
}

void cancel_drag(WindowData* grabbed, const server::Event& event)
{
    std::lock_guard<std::mutex> lock(sLock);
    if (sDrag == nullptr)
        return;
    if (sDrag->over != nullptr && sDrag->over != grabbed)
        leave(sDrag->over, event);
    sDrag = nullptr;
}

void pass_to_window_below(const server::Event& event)
{
    std::lock_guard<std::mutex> lock(sLock);
    server::Event below = event;
    below.where = event.underWhere;
    if (WindowData* site = site_of(event.under))
        site->PostInput(below, false);
}

void post_file_drop(WindowData* window, const server::Event& event)
{
    // The fields of the desktop's own drops, and no more: programs count them to know how many
    // files they may take.
    BMessage drop(B_SIMPLE_DATA);
    for (const std::string& path : event.paths) {
        entry_ref ref;
        if (get_ref_for_path(path.c_str(), &ref) == B_OK)
            drop.AddRef("refs", &ref);
    }
    if (!drop.HasRef("refs"))
        return;
    drop.AddPointer("src_window", nullptr);
    drop.AddPoint("click_pt", event.screenWhere);
    drop.AddMessenger("TrackerViewToken", BMessenger());
    drop.AddInt32("buttons", event.buttons);
    window->Post(std::make_unique<DropMessage>(drop, event.where, event.screenWhere, BPoint()));
}

void post_data_drop(WindowData* window, const server::Event& event)
{
    BMessage drop;
    if (message_of_forms(event.forms, &drop))
        window->Post(std::make_unique<DropMessage>(drop, event.where, event.screenWhere, BPoint()));
}

}  // namespace BPrivate

using BPrivate::MessageAccess;
using BPrivate::ViewPrivate;

void BWindow::_StartDrag(BView* source, BMessage* message, BBitmap* bitmap, drawing_mode mode,
                         BPoint offset, BRect dragRect, BHandler* replyTo)
{
    std::unique_ptr<BMessage> dragged(message);
    const std::unique_ptr<BBitmap> image(bitmap);
    // A button that is up again ends a drag before it began.
    if (dragged == nullptr || fData->buttons == 0 || fData->offscreen)
        return;
    if (!dragged->HasInt32("buttons"))
        dragged->AddInt32("buttons", fData->buttons);
    if (image == nullptr)
        offset = ViewPrivate::ToView(source, fData->pointer) - dragRect.LeftTop();
    MessageAccess::ReturnAddress(dragged.get()) =
        BMessenger(replyTo != nullptr ? replyTo : source, replyTo == nullptr ? this : nullptr);
    BPrivate::start_drag(fData, std::move(dragged),
                         image != nullptr ? BPrivate::drag_picture(*image, mode, offset)
                                          : BPrivate::drag_outline(dragRect, offset));
}
