#ifndef INTERFACE_CONTROLS_CONTROL_ICON_H
#define INTERFACE_CONTROLS_CONTROL_ICON_H

// The picture beside a control's label, one bitmap for each of its states.

#include <Bitmap.h>
#include <Control.h>
#include <SupportDefs.h>

#include <memory>

namespace BPrivate {

// Window locked, as the control it belongs to.
class [[gnu::visibility("hidden")]] ControlIcon
{
public:
    // BControl's calls: `icon` is made or let go as needed, and `control` drawn anew.
    static status_t Set(ControlIcon * *icon, BView * control, const BBitmap* bitmap, uint32 flags);
    static status_t SetOne(ControlIcon * *icon, BView * control, const BBitmap* bitmap,
                           uint32 which, uint32 flags);

    // As it was set or made; null if it was not.
    const BBitmap* Bitmap(uint32 which) const;
    // The bitmap that fits best, null if there is none at all.
    const BBitmap* BitmapFor(uint32 which) const;

private:
    status_t _Make(const BBitmap* bitmap, uint32 flags);

    std::unique_ptr<BBitmap> fBitmaps[6];  // inactive, active, partially; the same disabled
};

}  // namespace BPrivate

#endif  // INTERFACE_CONTROLS_CONTROL_ICON_H
