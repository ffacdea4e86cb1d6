// How menus look and behave: the user's settings, which a program may change for itself.

#include <Menu.h>

#include <InterfaceDefs.h>

#include <interface/menu/MenuPrivate.h>

#include "support/Mutex.h"

namespace {

struct Settings {
    BPrivate::Mutex lock;
    menu_info info GUARDED_BY(lock) = {};

    Settings()
    {
        info.font_size = be_plain_font->Size();
        be_plain_font->GetFamilyAndStyle(&info.f_family, &info.f_style);
        info.background_color = ui_color(B_MENU_BACKGROUND_COLOR);
        info.click_to_open = true;
    }
};

// Never destroyed: threads may outlive main().
Settings& settings()
{
    static auto* const settings = new Settings;
    return *settings;
}

}  // namespace

menu_info BPrivate::menu_settings()
{
    BPrivate::MutexLock guard(settings().lock);
    return settings().info;
}

rgb_color BPrivate::menu_ground()
{
    BPrivate::MutexLock guard(settings().lock);
    return settings().info.background_color;
}

status_t get_menu_info(menu_info* info)
{
    if (info == nullptr)
        return B_BAD_VALUE;
    *info = BPrivate::menu_settings();
    return B_OK;
}

status_t set_menu_info(menu_info* info)
{
    if (info == nullptr)
        return B_BAD_VALUE;
    BPrivate::MutexLock guard(settings().lock);
    settings().info = *info;
    return B_OK;
}
