#ifndef _STRING_ITEM_H
#define _STRING_ITEM_H

#include <ListItem.h>

/* A row of text. */
class BStringItem : public BListItem {
public:
    BStringItem(const char* text, uint32 outlineLevel = 0, bool expanded = true);
    BStringItem(BMessage* archive);
    virtual ~BStringItem();

    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    virtual void DrawItem(BView* owner, BRect frame, bool complete = false);
    // Copied; null for none.
    virtual void SetText(const char* text);
    const char* Text() const;
    virtual void Update(BView* owner, const BFont* font);
    virtual status_t Perform(perform_code code, void* arg);

protected:
    // From the frame's top to the base line.
    float BaselineOffset() const;

private:
    char* fText;
    float fBaselineOffset = 0;
};

#endif  // _STRING_ITEM_H
