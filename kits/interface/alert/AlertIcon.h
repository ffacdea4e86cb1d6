#ifndef INTERFACE_ALERT_ICON_H
#define INTERFACE_ALERT_ICON_H

#include <Alert.h>

#include <memory>

class BBitmap;

namespace [[gnu::visibility("hidden")]] BPrivate {

// The sign of a type of alert, `size` pixels square; null for those without one.
std::unique_ptr<BBitmap> alert_icon(alert_type type, int32 size);

}  // namespace BPrivate

#endif  // INTERFACE_ALERT_ICON_H
