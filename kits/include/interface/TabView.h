#ifndef _TAB_VIEW_H
#define _TAB_VIEW_H

#include <Archivable.h>
#include <InterfaceDefs.h>
#include <View.h>

#include <memory>

class BTabView;

namespace BPrivate {
struct TabData;
struct TabViewData;
}  // namespace BPrivate

// How a tab stands among the others.
enum tab_position { B_TAB_FIRST = 999, B_TAB_FRONT, B_TAB_ANY };

/* A tab of a BTabView with the view that it shows, which belongs to it: deleted with the tab. A tab
   that is deleted leaves its tab view. With the window of the tab view locked. */
class BTab : public BArchivable {
public:
    BTab(BView* contentsView = nullptr);
    BTab(BMessage* archive);
    virtual ~BTab();

    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* data, bool deep = true) const;
    virtual status_t Perform(uint32 d, void* arg);

    // The name of the view; of a tab without a view its own.
    const char* Label() const;
    virtual void SetLabel(const char* label);

    bool IsSelected() const;
    // The tab comes to the front: its view becomes a child of `owner`; or leaves it again.
    virtual void Select(BView* owner);
    virtual void Deselect();
    // The user can not bring a disabled tab to the front.
    virtual void SetEnabled(bool enable);
    bool IsEnabled() const;
    void MakeFocus(bool focus = true);
    bool IsFocus() const;
    // The view before it is deleted. Null changes nothing.
    virtual void SetView(BView* view);
    BView* View() const;

    // Draw in `owner`: `frame` is all of the tab. Without `full` the end is left to the next tab.
    virtual void DrawFocusMark(BView* owner, BRect frame);
    virtual void DrawLabel(BView* owner, BRect frame);
    virtual void DrawTab(BView* owner, BRect frame, tab_position position, bool full = true);

private:
    friend class BTabView;

    BTab(const BTab&) = delete;
    BTab& operator=(const BTab&) = delete;

    std::unique_ptr<BPrivate::TabData> fData;
};

/* Views of which one is shown, chosen by tabs along a side. The view of the tab in front is a child
   of the container view; the others are in no window, and follow the size of the container when
   they come to the front. Arrow keys lead from tab to tab, Enter and Space bring one to the front.
   Tabs that do not fit beside one another share the room evenly. */
class BTabView : public BView {
public:
    enum tab_side { kLeftSide = 1, kRightSide = 2, kTopSide = 4, kBottomSide = 8 };

    BTabView(const char* name, button_width width = B_WIDTH_FROM_WIDEST,
             uint32 flags = B_FULL_UPDATE_ON_RESIZE | B_WILL_DRAW | B_NAVIGABLE_JUMP |
                            B_FRAME_EVENTS | B_NAVIGABLE);
    BTabView(BRect frame, const char* name, button_width width = B_WIDTH_AS_USUAL,
             uint32 resizeMask = B_FOLLOW_ALL,
             uint32 flags = B_FULL_UPDATE_ON_RESIZE | B_WILL_DRAW | B_NAVIGABLE_JUMP |
                            B_FRAME_EVENTS | B_NAVIGABLE);
    BTabView(BMessage* archive);
    virtual ~BTabView();

    static BArchivable* Instantiate(BMessage* archive);
    // The tabs and their views instead of the children, if `deep`.
    virtual status_t Archive(BMessage* into, bool deep = true) const;
    virtual status_t AllUnarchived(const BMessage* from);
    virtual status_t Perform(perform_code d, void* arg);

    virtual void AttachedToWindow();
    virtual void DetachedFromWindow();
    virtual void AllAttached();
    virtual void AllDetached();
    virtual void MessageReceived(BMessage* message);
    virtual void KeyDown(const char* bytes, int32 numBytes);
    virtual void MouseDown(BPoint where);
    virtual void MouseUp(BPoint where);
    virtual void MouseMoved(BPoint where, uint32 transit, const BMessage* dragMessage);
    virtual void Pulse();

    // Hook: brings a tab to the front. A bad index changes nothing.
    virtual void Select(int32 index);
    int32 Selection() const;  // -1 for none

    virtual void WindowActivated(bool active);
    virtual void MakeFocus(bool focused = true);
    // The tab that Enter brings to the front while the view has the keyboard, -1 for none: a tab
    // gets that, or, without `focused`, none has it.
    virtual void SetFocusTab(int32 tab, bool focused);
    int32 FocusTab() const;

    virtual void Draw(BRect updateRect);
    // Draws all tabs, the one in front last, and returns its frame; not valid if there is none.
    virtual BRect DrawTabs();
    virtual void DrawBox(BRect selectedTabRect);
    // Neighbours share a line of pixels, as tabs and the box do. Not valid for a bad index.
    virtual BRect TabFrame(int32 index) const;

    virtual void SetFlags(uint32 flags);
    virtual void SetResizingMode(uint32 mode);
    virtual void ResizeToPreferred();
    virtual void GetPreferredSize(float* _width, float* _height);
    virtual BSize MinSize();
    virtual BSize MaxSize();
    virtual BSize PreferredSize();
    virtual void FrameMoved(BPoint newPosition);
    virtual void FrameResized(float newWidth, float newHeight);

    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 what, const char* property);
    virtual status_t GetSupportedSuites(BMessage* message);

    /* The tab view owns its tabs. Without `tab` it makes one; a tab that is in a tab view is not
       added. In a window the first tab comes to the front at once, else when it gets into one. */
    virtual void AddTab(BView* target, BTab* tab = nullptr);
    // The tab passes to the caller. One beside it comes to the front instead.
    virtual BTab* RemoveTab(int32 tabIndex);
    virtual BTab* TabAt(int32 index) const;

    virtual void SetTabWidth(button_width width);
    button_width TabWidth() const;
    virtual void SetTabHeight(float height);
    float TabHeight() const;
    virtual void SetBorder(border_style borderStyle);
    border_style Border() const;
    virtual void SetTabSide(BTabView::tab_side tabSide);
    BTabView::tab_side TabSide() const;

    BView* ContainerView() const;
    int32 CountTabs() const;
    BView* ViewForTab(int32 tabIndex) const;
    int32 IndexOf(BTab* tab) const;

private:
    friend class BTab;
    friend struct BPrivate::TabViewData;

    BTabView(const BTabView&) = delete;
    BTabView& operator=(const BTabView&) = delete;

    void _Init(button_width width);
    BRect _Box() const;
    void _PlaceContainer();
    void _TabsChanged();
    BTab* _Take(int32 index);
    void _SelectBeside(int32 index);
    void _MoveFocus(int32 step);

    std::unique_ptr<BPrivate::TabViewData> fData;
};

#endif  // _TAB_VIEW_H
