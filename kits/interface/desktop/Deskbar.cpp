// BDeskbar: what the user's configuration keeps of it, and what a running panel makes of that.

#include <Deskbar.h>

#include <Screen.h>

#include <algorithm>

#include "interface/desktop/DeskbarPatience.h"
#include "interface/desktop/DeskbarSettings.h"
#include "interface/desktop/DesktopPanel.h"

using namespace BPrivate;

static const float kBarHeight = 22;
static const float kCornerWidth = 128;

DeskbarPatience& BPrivate::deskbar_patience()
{
    static DeskbarPatience patience = {1'000'000, 5'000'000};
    return patience;
}

// What is kept, and what the panel says where somebody changed it since it was told.
static DeskbarSettings present_settings()
{
    DeskbarSettings settings = read_deskbar_settings();
    const std::optional<PanelState> state = read_panel();
    if (state && state->text != settings.panel) {
        settings.location = state->location.value_or(settings.location);
        settings.auto_hide = state->auto_hide;
    }
    return settings;
}

// Makes present what is kept, changes it, and tells a panel.
static status_t set(const std::function<void(DeskbarSettings&)>& change, const PanelChange& told)
{
    const std::optional<PanelState> before = read_panel();
    const status_t status = change_deskbar_settings([&](DeskbarSettings& settings) {
        if (before && before->text != settings.panel) {
            settings.location = before->location.value_or(settings.location);
            settings.auto_hide = before->auto_hide;
            settings.panel = before->text;
        }
        change(settings);
    });
    if (status != B_OK || !(told.location || told.auto_hide) || !before)
        return status;
    const std::optional<PanelState> after = change_panel(told);
    if (!after)
        return B_OK;
    return change_deskbar_settings(
        [&](DeskbarSettings& settings) { settings.panel = after->text; });
}

BDeskbar::BDeskbar() {}

BDeskbar::~BDeskbar() {}

bool BDeskbar::IsRunning() const { return is_panel_running(); }

BRect BDeskbar::Frame() const
{
    const DeskbarSettings settings = present_settings();
    BRect frame = BScreen().Frame();
    const deskbar_location location = settings.location;
    const bool in_corner = location != B_DESKBAR_TOP && location != B_DESKBAR_BOTTOM;
    if (location == B_DESKBAR_LEFT_TOP || location == B_DESKBAR_LEFT_BOTTOM)
        frame.right = std::min(frame.right, frame.left + kCornerWidth - 1);
    else if (in_corner)
        frame.left = std::max(frame.left, frame.right - kCornerWidth + 1);
    if (in_corner && settings.expanded)
        return frame;
    const bool above = location == B_DESKBAR_TOP || location == B_DESKBAR_LEFT_TOP ||
                       location == B_DESKBAR_RIGHT_TOP;
    if (above)
        frame.bottom = std::min(frame.bottom, frame.top + kBarHeight - 1);
    else
        frame.top = std::max(frame.top, frame.bottom - kBarHeight + 1);
    return frame;
}

deskbar_location BDeskbar::Location(bool* _isExpanded) const
{
    const DeskbarSettings settings = present_settings();
    if (_isExpanded != nullptr)
        *_isExpanded = settings.expanded;
    return settings.location;
}

status_t BDeskbar::SetLocation(deskbar_location location, bool expanded)
{
    if (location < B_DESKBAR_TOP || location > B_DESKBAR_RIGHT_BOTTOM)
        return B_BAD_VALUE;
    return set(
        [&](DeskbarSettings& settings) {
            settings.location = location;
            settings.expanded = expanded;
        },
        {location, {}});
}

// What no panel is told.
static bool kept(bool DeskbarSettings::*flag) { return read_deskbar_settings().*flag; }

static status_t keep(bool DeskbarSettings::*flag, bool value)
{
    return change_deskbar_settings([&](DeskbarSettings& settings) { settings.*flag = value; });
}

bool BDeskbar::IsExpanded() const { return kept(&DeskbarSettings::expanded); }
status_t BDeskbar::Expand(bool expand) { return keep(&DeskbarSettings::expanded, expand); }
bool BDeskbar::IsAlwaysOnTop() const { return kept(&DeskbarSettings::always_on_top); }

status_t BDeskbar::SetAlwaysOnTop(bool alwaysOnTop)
{
    return keep(&DeskbarSettings::always_on_top, alwaysOnTop);
}

bool BDeskbar::IsAutoRaise() const { return kept(&DeskbarSettings::auto_raise); }

status_t BDeskbar::SetAutoRaise(bool autoRaise)
{
    return keep(&DeskbarSettings::auto_raise, autoRaise);
}

bool BDeskbar::IsAutoHide() const { return present_settings().auto_hide; }

status_t BDeskbar::SetAutoHide(bool autoHide)
{
    return set([&](DeskbarSettings& settings) { settings.auto_hide = autoHide; }, {{}, autoHide});
}

status_t BDeskbar::GetItemInfo(int32, const char** _name) const
{
    return _name == nullptr ? B_BAD_VALUE : B_NAME_NOT_FOUND;
}

status_t BDeskbar::GetItemInfo(const char* name, int32* _id) const
{
    return name == nullptr || _id == nullptr ? B_BAD_VALUE : B_NAME_NOT_FOUND;
}

bool BDeskbar::HasItem(int32) const { return false; }
bool BDeskbar::HasItem(const char*) const { return false; }
uint32 BDeskbar::CountItems() const { return 0; }
float BDeskbar::MaxItemWidth() const { return 0; }
float BDeskbar::MaxItemHeight() const { return 0; }

status_t BDeskbar::AddItem(BView* archivableView, int32*)
{
    return archivableView == nullptr ? B_BAD_VALUE : B_NOT_SUPPORTED;
}

status_t BDeskbar::AddItem(entry_ref* addOn, int32*)
{
    return addOn == nullptr ? B_BAD_VALUE : B_NOT_SUPPORTED;
}

status_t BDeskbar::RemoveItem(int32) { return B_NAME_NOT_FOUND; }

status_t BDeskbar::RemoveItem(const char* name)
{
    return name == nullptr ? B_BAD_VALUE : B_NAME_NOT_FOUND;
}
