#ifndef INTERFACE_TABS_TAB_DATA_H
#define INTERFACE_TABS_TAB_DATA_H

// What tabs and tab views hold. With the window of the tab view locked.

#include <Size.h>
#include <String.h>
#include <TabView.h>

#include <vector>

#include <interface/controls/Look.h>
#include <interface/view/ViewPrivate.h>

namespace BPrivate {

struct [[gnu::visibility("hidden")]] TabData
{
    BTabView* owner = nullptr;
    ViewRef view;
    BString label;  // while there is no view
    BSize room;     // that the container had when the view was in it last
    bool selected = false;
    bool enabled = true;
    bool focused = false;
};

struct [[gnu::visibility("hidden")]] TabViewData
{
    std::vector<BTab*> tabs;
    BView* container = nullptr;
    int32 selection = -1;
    int32 focus = -1;
    button_width width = B_WIDTH_AS_USUAL;
    float height = 0;
    border_style border = B_FANCY_BORDER;
    BTabView::tab_side side = BTabView::kTopSide;

    static const TabViewData& Of(const BTabView& view) { return *view.fData; }
    Look::Side Side() const
    {
        return side == BTabView::kLeftSide    ? Look::Side::Left
               : side == BTabView::kRightSide ? Look::Side::Right
               : side == BTabView::kTopSide   ? Look::Side::Top
                                              : Look::Side::Bottom;
    }
    bool IsUpright() const { return side == BTabView::kLeftSide || side == BTabView::kRightSide; }
};

}  // namespace BPrivate

#endif  // INTERFACE_TABS_TAB_DATA_H
