#ifndef _LIST_ITEM_H
#define _LIST_ITEM_H

#include <Archivable.h>
#include <Rect.h>

class BFont;
class BMessage;
class BView;

namespace BPrivate {
struct RowBlock;
class Rows;
}  // namespace BPrivate

/* A row of a list, which draws itself; in one list at a time. Calls want the list's window locked.
   An item that is deleted leaves its list. Lists round heights up to whole pixels. */
class BListItem : public BArchivable {
public:
    // Levels count where the item is in an outline list.
    BListItem(uint32 outlineLevel = 0, bool expanded = true);
    BListItem(BMessage* archive);
    virtual ~BListItem();

    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    float Height() const;
    float Width() const;
    bool IsSelected() const;
    /* Mark the item, no more: the list shows that when it is drawn the next time. */
    void Select();
    void Deselect();
    // Rows that are disabled can not be selected.
    virtual void SetEnabled(bool enabled);
    bool IsEnabled() const;
    void SetHeight(float height);
    void SetWidth(float width);

    /* Draws the item in `frame` of the list. The background is there already unless `complete`
       asks for it or the item is selected. */
    virtual void DrawItem(BView* owner, BRect frame, bool complete = false) = 0;
    /* The item came to a list in a window, or the list has another font: sets width and height,
       here to those of the list and of a line. */
    virtual void Update(BView* owner, const BFont* font);

    bool IsExpanded() const;
    void SetExpanded(bool expanded);
    uint32 OutlineLevel() const;
    void SetOutlineLevel(uint32 level);

    virtual status_t Perform(perform_code code, void* arg);

private:
    friend class BPrivate::Rows;

    BListItem(const BListItem&) = delete;
    BListItem& operator=(const BListItem&) = delete;

    BPrivate::RowBlock* fBlock = nullptr;  // the part of a list that it is in
    BListItem* fSuper = nullptr;           // in an outline list
    float fWidth = 0;
    float fHeight = 0;
    int32 fBelow = 0;  // rows below it in an outline list
    uint32 fLevel : 28;
    uint32 fSelected : 1;
    uint32 fDisabled : 1;
    uint32 fExpanded : 1;
};

#endif  // _LIST_ITEM_H
