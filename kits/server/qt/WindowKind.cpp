#include "server/qt/WindowKind.h"

namespace server {

bool WindowKind::IsUnmanaged() const
{
    const bool bare = look == B_NO_BORDER_WINDOW_LOOK || look == B_BORDERED_WINDOW_LOOK;
    return bare && (flags & B_AVOID_FOCUS) != 0;
}

bool WindowKind::IsModal() const
{
    return feel == B_MODAL_APP_WINDOW_FEEL || feel == B_MODAL_SUBSET_WINDOW_FEEL ||
           feel == B_MODAL_ALL_WINDOW_FEEL;
}

bool WindowKind::IsFloating() const
{
    return feel == B_FLOATING_APP_WINDOW_FEEL || feel == B_FLOATING_SUBSET_WINDOW_FEEL ||
           feel == B_FLOATING_ALL_WINDOW_FEEL;
}

bool WindowKind::IsAboveAll() const
{
    return feel == B_FLOATING_ALL_WINDOW_FEEL || feel == B_MODAL_ALL_WINDOW_FEEL;
}

bool WindowKind::HasTitle() const
{
    return look == B_TITLED_WINDOW_LOOK || look == B_DOCUMENT_WINDOW_LOOK ||
           look == B_FLOATING_WINDOW_LOOK;
}

bool WindowKind::IsResizable() const
{
    const uint32 both = B_NOT_H_RESIZABLE | B_NOT_V_RESIZABLE;
    return Allows(B_NOT_RESIZABLE) && (flags & both) != both;
}

bool WindowKind::IsMinimizable() const
{
    return Allows(B_NOT_MINIMIZABLE) && !IsModal() && !IsFloating();
}

Qt::WindowFlags WindowKind::QtFlags() const
{
    if (IsUnmanaged())
        return Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint |
               Qt::WindowDoesNotAcceptFocus;

    Qt::WindowFlags result = Qt::Window;
    if (IsModal() || look == B_MODAL_WINDOW_LOOK)
        result = Qt::Dialog;
    else if (IsFloating() || look == B_FLOATING_WINDOW_LOOK)
        result = Qt::Tool;
    if (IsAboveAll())
        result |= Qt::WindowStaysOnTopHint;
    if ((flags & B_AVOID_FOCUS) != 0)
        result |= Qt::WindowDoesNotAcceptFocus;
    if (!HasTitle())
        return result | Qt::FramelessWindowHint;

    result |= Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint;
    if (Allows(B_NOT_CLOSABLE))
        result |= Qt::WindowCloseButtonHint;
    if (IsMinimizable())
        result |= Qt::WindowMinimizeButtonHint;
    if (IsZoomable())
        result |= Qt::WindowMaximizeButtonHint;
    return result;
}

}  // namespace server
