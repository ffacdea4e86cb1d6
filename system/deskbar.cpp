// Where the Deskbar is and whether it is expanded. Any thread.

#include "plinth.h"

#include <Deskbar.h>

#include "runtime/trace.h"

extern "C" {

void SetExpandDeskBar(uint8_t flag)
{
    if (BDeskbar().Expand(flag != 0) != B_OK)
        show_dbg(kNoService, 0, "SetExpandDeskBar");
}

uint8_t IsExpandedDeskBar(void) { return BDeskbar().IsExpanded() ? 1 : 0; }

int32_t GetPosDeskBar(void) { return BDeskbar().Location(nullptr); }

void SetPosDeskBar(int32_t location)
{
    if (location < B_DESKBAR_TOP || location > B_DESKBAR_RIGHT_BOTTOM)
        return show_dbg(kBadArgument, 0, "SetPosDeskBar");
    BDeskbar deskbar;
    const auto place = static_cast<deskbar_location>(location);
    if (deskbar.SetLocation(place, deskbar.IsExpanded()) != B_OK)
        show_dbg(kNoService, 0, "SetPosDeskBar");
}

}  // extern "C"
