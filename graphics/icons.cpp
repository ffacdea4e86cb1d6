// Icons of the registry. Main thread.

#include "graphics/icons.h"

#include "plinth.h"
#include "runtime/registry.h"

#include <Bitmap.h>

const BBitmap* icon_image(int32_t ident, bool selected)
{
    BList* icons = registry_list(kIcons);
    for (int32 i = 0; icons != nullptr && i < icons->CountItems(); i++) {
        auto* icon = static_cast<IconRecord*>(icons->ItemAtFast(i));
        if (icon->ident == ident)
            return selected && icon->selected_image != nullptr ? icon->selected_image : icon->image;
    }
    return nullptr;
}

void Close_All_Icon()
{
    BList* icons = registry_list(kIcons);
    if (icons == nullptr)
        return;
    for (int32 i = 0; i < icons->CountItems(); i++) {
        auto* icon = static_cast<IconRecord*>(icons->ItemAtFast(i));
        delete icon->image;
        delete icon->selected_image;
        MyFree(icon);
    }
    icons->MakeEmpty();
}
