#ifndef _DESKBAR_H
#define _DESKBAR_H

#include <List.h>
#include <Rect.h>
#include <SupportDefs.h>

class BView;
struct entry_ref;

enum deskbar_location {
    B_DESKBAR_TOP = 0,
    B_DESKBAR_BOTTOM = 1,
    B_DESKBAR_LEFT_TOP = 2,
    B_DESKBAR_RIGHT_TOP = 3,
    B_DESKBAR_LEFT_BOTTOM = 4,
    B_DESKBAR_RIGHT_BOTTOM = 5
};

/* The panel of the desktop. Its settings are kept for the user; where and whether it hides is told
   to a running panel of Xfce or Plasma, and what was changed there since is read back. A panel that
   does not answer, and other desktops, leave it at what is kept. Any thread; settings that several
   programs make at once all count. */
class BDeskbar {
public:
    BDeskbar();
    ~BDeskbar();

    /* True if a panel runs that can be told. */
    bool IsRunning() const;

    /* Where it is, from its location and the screen: a bar along the top or bottom edge, or in a
       corner, there as high as the screen while expanded. */
    BRect Frame() const;

    /* At first, expanded in the right top corner. Settings answer B_BAD_VALUE for no such location,
       else whether they could be kept: B_OK, B_BUSY while another program holds them too long, or
       the host's reason. */
    deskbar_location Location(bool* _isExpanded = nullptr) const;
    status_t SetLocation(deskbar_location location, bool expanded = false);
    bool IsExpanded() const;
    status_t Expand(bool expand);

    /* Panels are always in front of other windows by themselves; these are kept only. */
    bool IsAlwaysOnTop() const;
    status_t SetAlwaysOnTop(bool alwaysOnTop);
    bool IsAutoRaise() const;
    status_t SetAutoRaise(bool autoRaise);

    bool IsAutoHide() const;
    status_t SetAutoHide(bool autoHide);

    /* Items: panels have no room for another program's views, so there are none. B_BAD_VALUE for
       null, B_NOT_SUPPORTED for adding one, B_NAME_NOT_FOUND for one that is named. */
    status_t GetItemInfo(int32 id, const char** _name) const;
    status_t GetItemInfo(const char* name, int32* _id) const;
    bool HasItem(int32 id) const;
    bool HasItem(const char* name) const;
    uint32 CountItems() const;
    float MaxItemWidth() const;
    float MaxItemHeight() const;
    status_t AddItem(BView* archivableView, int32* _id = nullptr);
    status_t AddItem(entry_ref* addOn, int32* _id = nullptr);
    status_t RemoveItem(int32 id);
    status_t RemoveItem(const char* name);
};

#endif  // _DESKBAR_H
