#ifndef _SEPARATOR_ITEM_H
#define _SEPARATOR_ITEM_H

#include <MenuItem.h>

/* A line between items; never enabled. */
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
};

#endif  // _SEPARATOR_ITEM_H
