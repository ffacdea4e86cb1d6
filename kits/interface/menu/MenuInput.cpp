// A queue of input events. The server fills it, who follows the user empties it.

#include <interface/menu/MenuInput.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace BPrivate {

using server::EventKind;

void MenuInput::Deliver(const server::Event& event)
{
    std::lock_guard guard(fLock);
    const bool follows = event.kind == EventKind::MouseMoved && !fEvents.empty() &&
                         fEvents.back().kind == EventKind::MouseMoved;
    if (follows)
        fEvents.back() = event;
    else
        fEvents.push_back(event);
    fChanged.notify_one();
}

std::vector<server::Event> MenuInput::TakeWaiting()
{
    std::lock_guard guard(fLock);
    std::vector<server::Event> waiting(fEvents.begin(), fEvents.end());
    fEvents.clear();
    return waiting;
}

void MenuInput::Cancel()
{
    std::lock_guard guard(fLock);
    fCancelled = true;
    fChanged.notify_one();
}

bool MenuInput::IsCancelled() const
{
    std::lock_guard guard(fLock);
    return fCancelled;
}

void MenuInput::Wake()
{
    std::lock_guard guard(fLock);
    fWoken = true;
    fChanged.notify_one();
}

bool MenuInput::Next(bigtime_t deadline, server::Event* event)
{
    std::unique_lock guard(fLock);
    const auto is_ready = [this] { return fCancelled || fWoken || !fEvents.empty(); };
    if (deadline == B_INFINITE_TIMEOUT)
        fChanged.wait(guard, is_ready);
    else
        fChanged.wait_for(guard, std::chrono::microseconds(deadline - system_time()), is_ready);
    if (fCancelled || std::exchange(fWoken, false) || fEvents.empty())
        return false;
    *event = fEvents.front();
    fEvents.pop_front();
    return true;
}

bool MenuInput::HasLeft(BRect area) const
{
    std::lock_guard guard(fLock);
    return fCancelled ||
           std::any_of(fEvents.begin(), fEvents.end(), [=](const server::Event& event) {
               if (event.kind == EventKind::KeyUp)
                   return false;
               const bool goes_on =
                   event.kind == EventKind::MouseMoved || event.kind == EventKind::MouseUp;
               return !goes_on || !area.Contains(event.screenWhere);
           });
}

}  // namespace BPrivate
