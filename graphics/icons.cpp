// Icons of the registry. Main thread.

#include "graphics/icons.h"

#include "plinth.h"

#include <Bitmap.h>

#include <new>

static const int32_t kSmallSide = 16;  // pixels
static const int32_t kLargeSide = 32;

static BBitmap* new_image(int32_t side)
{
    const float last = static_cast<float>(side - 1);
    auto* image = new (std::nothrow) BBitmap(BRect(0, 0, last, last), B_CMAP8);
    if (image != nullptr && image->InitCheck() != B_OK) {
        delete image;
        image = nullptr;
    }
    return image;
}

IconRecord* MyAllocIcon()
{
    auto* icon = static_cast<IconRecord*>(MyAlloc(sizeof(IconRecord)));
    if (icon == nullptr)
        return nullptr;
    icon->image = new_image(kSmallSide);
    icon->selected_image = new_image(kLargeSide);
    if (icon->image != nullptr && icon->selected_image != nullptr)
        return icon;
    MyFreeIcon(icon);
    return nullptr;
}

void MyFreeIcon(IconRecord* icon)
{
    delete icon->image;
    delete icon->selected_image;
    MyFree(icon);
}

const BBitmap* icon_image(int32_t ident, bool selected)
{
    RegistryLock registry;
    const auto* icon = find_record<IconRecord>(registry, ident);
    if (icon == nullptr)
        return nullptr;
    return selected && icon->selected_image != nullptr ? icon->selected_image : icon->image;
}

void Close_All_Icon(BList* icons)
{
    for (int32 i = 0; i < icons->CountItems(); i++)
        MyFreeIcon(static_cast<IconRecord*>(icons->ItemAtFast(i)));
    icons->MakeEmpty();
}
