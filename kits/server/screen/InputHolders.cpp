// Input that goes to open menus rather than to windows.

#include "server/screen/InputHolders.h"

#include <OS.h>

#include <iterator>

namespace server {

void InputHolders::Remove(EventSink* sink)
{
    std::erase_if(fHolders, [=](const Holder& holder) { return holder.sink == sink; });
}

void InputHolders::End(EventSink* sink)
{
    for (Holder& holder : fHolders)
        holder.ends = holder.ends || holder.sink == sink;
}

void InputHolders::Tell(const Event& event)
{
    for (const Holder& holder : fHolders)
        holder.sink->Deliver(event);
}

bool InputHolders::TakeKey(const Event& event)
{
    const bool known = event.key >= 0 && event.key < static_cast<int32>(std::size(fTaken));
    const bool down = event.kind == EventKind::KeyDown;
    if (!down && event.kind != EventKind::KeyUp)
        return false;
    const bool taken = down ? !fHolders.empty() : known && fTaken[event.key];
    if (known)
        fTaken[event.key] = down && taken;
    if (taken && !fHolders.empty())
        fHolders.back().sink->Deliver(event);
    return taken;
}

void InputHolders::Deactivated(const ScreenWindow* window)
{
    Event event;
    event.kind = EventKind::Activated;
    event.when = system_time();
    for (const Holder& holder : fHolders) {
        if (holder.owner == window)
            holder.sink->Deliver(event);
    }
    std::erase_if(fHolders,
                  [=](const Holder& holder) { return holder.ends && holder.owner == window; });
}

}  // namespace server
