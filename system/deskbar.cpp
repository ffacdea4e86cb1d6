// Where the Deskbar is and whether it is expanded. Any thread.

#include "plinth.h"

#include <Deskbar.h>

#include "runtime/guarded.h"
#include "runtime/trace.h"

// Places of the Deskbar are the platform's own numbers.
static_assert(int{PLINTH_DESKBAR_TOP} == B_DESKBAR_TOP);
static_assert(int{PLINTH_DESKBAR_BOTTOM} == B_DESKBAR_BOTTOM);
static_assert(int{PLINTH_DESKBAR_LEFT_TOP} == B_DESKBAR_LEFT_TOP);
static_assert(int{PLINTH_DESKBAR_RIGHT_TOP} == B_DESKBAR_RIGHT_TOP);
static_assert(int{PLINTH_DESKBAR_LEFT_BOTTOM} == B_DESKBAR_LEFT_BOTTOM);
static_assert(int{PLINTH_DESKBAR_RIGHT_BOTTOM} == B_DESKBAR_RIGHT_BOTTOM);

extern "C" {

void SetExpandDeskBar(uint8_t flag)
{
    const status_t status = guarded(B_NO_MEMORY, [=] { return BDeskbar().Expand(flag != 0); });
    if (status != B_OK)
        show_status(kNoService, 0, "SetExpandDeskBar", status);
}

uint8_t IsExpandedDeskBar(void)
{
    return guarded(uint8_t{0}, [] { return uint8_t{BDeskbar().IsExpanded()}; });
}

int32_t GetPosDeskBar(void)
{
    return guarded(0, [] { return int32_t{BDeskbar().Location(nullptr)}; });
}

void SetPosDeskBar(int32_t location)
{
    if (location < B_DESKBAR_TOP || location > B_DESKBAR_RIGHT_BOTTOM)
        return show_dbg(kBadArgument, 0, "SetPosDeskBar");
    const status_t status = guarded(B_NO_MEMORY, [=] {
        BDeskbar deskbar;
        return deskbar.SetLocation(static_cast<deskbar_location>(location), deskbar.IsExpanded());
    });
    if (status != B_OK)
        show_status(kNoService, 0, "SetPosDeskBar", status);
}

}  // extern "C"
