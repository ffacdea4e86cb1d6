#include "server/screen/Accessible.h"

#include "server/screen/ScreenWindow.h"
#include "server/screen/Stage.h"

namespace server {

std::atomic<bool> gReaderListens{false};

void set_reader_listens(bool listens)
{
    if (gReaderListens.exchange(listens) || !listens)
        return;
    Event event;
    event.kind = EventKind::ReaderCame;
    for (ScreenWindow* window : stage().Windows())
        window->Deliver(event);
}

}  // namespace server
