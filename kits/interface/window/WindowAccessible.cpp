// When screen readers are told of a window, and how what they ask for comes to its views.

#include <View.h>
#include <Window.h>

#include <interface/accessible/Teller.h>
#include <interface/view/ViewPrivate.h>
#include <interface/window/WindowPrivate.h>

namespace BPrivate {

void ViewData::_TellReader() const
{
    BWindow* const around = window;
    if (around != nullptr && WindowData::Of(around) != nullptr)
        WindowData::Of(around)->TellReaderSoon();
}

void WindowData::_WakeForReader() { window->_SchedulePresent(); }

bigtime_t WindowData::TellReader(bigtime_t now)
{
    if (display == nullptr || !tellReader)
        return B_INFINITE_TIMEOUT;
    if (now < nextTelling)
        return nextTelling;
    tellReader = false;
    display->SetAccessible(Teller(window, &toldTexts).Tell());
    nextTelling = now + server::FrameInterval();
    return B_INFINITE_TIMEOUT;
}

void WindowData::DispatchKey(const server::Event& event, BView* view)
{
    auto* const message = new InputMessage(event, false, nullptr, openMove);
    bool detached = false;
    window->DispatchExternalMessage(message, view, detached);
    if (!detached)
        delete message;
}

void WindowData::Press(BPoint where)
{
    server::Event event;
    event.when = system_time();
    event.where = event.underWhere = where;
    event.screenWhere = window->ConvertToScreen(where);
    event.under = this;
    event.button = B_PRIMARY_MOUSE_BUTTON;
    event.kind = server::EventKind::MouseDown;
    event.buttons = B_PRIMARY_MOUSE_BUTTON;
    event.clicks = 1;
    PostInput(event, false);
    event.kind = server::EventKind::MouseUp;
    event.buttons = 0;
    PostInput(event, false);
}

}  // namespace BPrivate
