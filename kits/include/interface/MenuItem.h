#ifndef _MENU_ITEM_H
#define _MENU_ITEM_H

#include <Archivable.h>
#include <InterfaceDefs.h>
#include <Invoker.h>
#include <Menu.h>
#include <Rect.h>

#include <atomic>
#include <string>

class BMessage;

namespace BPrivate {
class Look;
struct MenuPrivate;
}

/* One line of a menu: a label with a message, or the way to a submenu. Belongs to the menu it was
   added to. All calls want the lock of the menu's window, if it has one. */
class BMenuItem : public BArchivable, public BInvoker {
public:
    /* Adopts the message, which is sent when the item is chosen: by default to the window of the
       menu. `shortcut` works with Command and `modifiers`. */
    BMenuItem(const char* label, BMessage* message, char shortcut = 0, uint32 modifiers = 0);
    /* Adopts the submenu, whose name is the label. */
    BMenuItem(BMenu* menu, BMessage* message = nullptr);
    BMenuItem(BMessage* data);
    virtual ~BMenuItem();

    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    virtual void SetLabel(const char* name);
    virtual void SetEnabled(bool enable);
    virtual void SetMarked(bool mark);
    virtual void SetTrigger(char trigger);
    virtual void SetShortcut(char shortcut, uint32 modifiers);

    const char* Label() const;
    bool IsEnabled() const;  // false also while the menu is disabled
    bool IsMarked() const;
    char Trigger() const;
    char Shortcut(uint32* _modifiers = nullptr) const;
    BMenu* Submenu() const;
    BMenu* Menu() const;
    BRect Frame() const;  // in the menu

protected:
    virtual void GetContentSize(float* _width, float* _height);
    virtual void TruncateLabel(float maxWidth, char* newLabel);
    virtual void DrawContent();
    virtual void Draw();
    virtual void Highlight(bool highlight);
    bool IsSelected() const;
    BPoint ContentLocation() const;
    virtual status_t Invoke(BMessage* message = nullptr);

private:
    friend class BMenu;
    friend class BMenuBar;
    friend class BPopUpMenu;
    friend class BSeparatorItem;
    friend struct BPrivate::MenuPrivate;

    void _Changed();
    void _Redraw();
    float _LabelRoom(const BPrivate::Look& look) const;
    void _DrawTrigger(const BPrivate::Look& look, BPoint baseline, const char* label) const;

    std::string fLabel;
    BMenu* fSubmenu = nullptr;
    BMenu* fSuper = nullptr;
    BRect fBounds;
    float fContentHeight = 0;  // as laid out last
    int32 fTriggerAt = -1;     // the character of the label that is the trigger; -1 for none
    uint32 fModifiers = 0;
    char fShortcut = 0;
    char fTrigger = 0;
    // Read while an open menu draws.
    std::atomic<bool> fMarked{false};
    std::atomic<bool> fEnabled{true};
    bool fSelected = false;
};

#endif  // _MENU_ITEM_H
