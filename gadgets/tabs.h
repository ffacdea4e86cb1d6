#ifndef GADGETS_TABS_H
#define GADGETS_TABS_H

// Tab gadgets: the pages behind the tabs, most of which are in no window at a time. The window's
// thread, or the window locked.

#include <View.h>

#include <functional>

// The view that a view is in: its parent, or for a page the tab view that it belongs to, shown or
// not. Null for one that is in none.
BView* outer_view(const BView* view);
// True for a view and everything that is in it, on pages that are not shown as well.
bool is_inside(const BView* view, const BView* outer);
// Calls `act` for all pages of a tab view, those of removed tabs too; for no view that is none.
void for_each_page(BView* view, const std::function<void(BView*)>& act);
// Takes the tabs out of a tab view and what is on their pages out of these, as closing its window
// does; no handler is called. Nothing for any other view.
void empty_of_tabs(BView* view);

#endif  // GADGETS_TABS_H
