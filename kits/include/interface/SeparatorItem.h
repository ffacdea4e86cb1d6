#ifndef _SEPARATORITEM_H
#define _SEPARATORITEM_H

#include <MenuItem.h>
#include <SupportDefs.h>

class BArchivable;
class BMessage;

class BSeparatorItem : public BMenuItem {
public:
    BSeparatorItem();
    BSeparatorItem(BMessage* data);
    virtual ~BSeparatorItem();
    static BArchivable* Instantiate(BMessage* data);
    virtual status_t Archive(BMessage* data, bool deep = true) const;
    virtual void SetEnabled(bool enable);
protected:
    virtual void GetContentSize(float* _width, float* _height);
    virtual void Draw();

private:
};

#endif  // _SEPARATORITEM_H
