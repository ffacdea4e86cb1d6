// Where the Deskbar is and whether it is expanded. Any thread.

#include "plinth.h"

#include <Deskbar.h>

#include "runtime/trace.h"

extern "C" {

void SetExpandDeskBar(uint8_t flag)
{
    const status_t status = BDeskbar().Expand(flag != 0);
    if (status != B_OK)
        show_status(kNoService, 0, "SetExpandDeskBar", status);
}

uint8_t IsExpandedDeskBar(void) { return BDeskbar().IsExpanded() ? 1 : 0; }

int32_t GetPosDeskBar(void) { return BDeskbar().Location(nullptr); }

void SetPosDeskBar(int32_t location)
{
    if (location < B_DESKBAR_TOP || location > B_DESKBAR_RIGHT_BOTTOM)
        return show_dbg(kBadArgument, 0, "SetPosDeskBar");
    BDeskbar deskbar;
    const auto place = static_cast<deskbar_location>(location);
    const status_t status = deskbar.SetLocation(place, deskbar.IsExpanded());
    if (status != B_OK)
        show_status(kNoService, 0, "SetPosDeskBar", status);
}

}  // extern "C"
