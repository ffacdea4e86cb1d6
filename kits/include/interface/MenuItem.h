#ifndef _MENUITEM_H
#define _MENUITEM_H

#include <Invoker.h>
#include <Point.h>
#include <Rect.h>
#include <Archivable.h>
#include <SupportDefs.h>

class BMenu;
class BMessage;

class BMenuItem : public BArchivable, public BInvoker {
public:
    BMenuItem(const char* label, BMessage* message, char shortcut = 0, uint32 modifiers = 0);
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
    bool IsEnabled() const;
    bool IsMarked() const;
    char Trigger() const;
    char Shortcut(uint32* _modifiers = nullptr) const;
    BMenu* Submenu() const;
    BMenu* Menu() const;
    BRect Frame() const;
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
};

#endif  // _MENUITEM_H
