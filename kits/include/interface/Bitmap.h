#ifndef _BITMAP_H
#define _BITMAP_H

#include <GraphicsDefs.h>
#include <Point.h>
#include <Rect.h>
#include <Size.h>
#include <OS.h>
#include <Archivable.h>
#include <SupportDefs.h>

class BMessage;
class BView;

#define B_ANY_BYTES_PER_ROW                  (-1)

enum {
    B_BITMAP_CLEAR_TO_WHITE = 1,
    B_BITMAP_ACCEPTS_VIEWS = 2,
    B_BITMAP_IS_AREA = 4,
    B_BITMAP_IS_LOCKED = 12,
    B_BITMAP_IS_CONTIGUOUS = 28,
    B_BITMAP_IS_OFFSCREEN = 32,
    B_BITMAP_WILL_OVERLAY = 96,
    B_BITMAP_RESERVE_OVERLAY_CHANNEL = 128,
    B_BITMAP_NO_SERVER_LINK = 0x100
};

class BBitmap : public BArchivable {
public:
    BBitmap(BRect bounds, uint32 flags, color_space colorSpace, int32 bytesPerRow = B_ANY_BYTES_PER_ROW, screen_id screenID = B_MAIN_SCREEN_ID);
    BBitmap(BRect bounds, color_space colorSpace, bool acceptsViews = false, bool needsContiguous = false);
    BBitmap(const BBitmap& source, uint32 flags);
    BBitmap(const BBitmap& source);
    BBitmap(const BBitmap* source, bool acceptsViews = false, bool needsContiguous = false);
    BBitmap(area_id area, ptrdiff_t areaOffset, BRect bounds, uint32 flags, color_space colorSpace, int32 bytesPerRow = B_ANY_BYTES_PER_ROW, screen_id screenID = B_MAIN_SCREEN_ID);
    virtual ~BBitmap();
    BBitmap(BMessage* data);
    static BArchivable* Instantiate(BMessage* data);
    virtual status_t Archive(BMessage* data, bool deep = true) const;
    status_t InitCheck() const;
    bool IsValid() const;
    status_t LockBits(uint32* state = nullptr);
    void UnlockBits();
    area_id Area() const;
    void* Bits() const;
    int32 BitsLength() const;
    int32 BytesPerRow() const;
    color_space ColorSpace() const;
    BRect Bounds() const;
    status_t SetDrawingFlags(uint32 flags);
    uint32 Flags() const;
    status_t ImportBits(const void* data, int32 length, int32 bpr, int32 offset, color_space colorSpace);
    status_t ImportBits(const void* data, int32 length, int32 bpr, color_space colorSpace, BPoint from, BPoint to, BSize size);
    status_t ImportBits(const BBitmap* bitmap);
    status_t ImportBits(const BBitmap* bitmap, BPoint from, BPoint to, BSize size);
    status_t GetOverlayRestrictions(overlay_restrictions* restrictions) const;
    virtual void AddChild(BView* view);
    virtual bool RemoveChild(BView* view);
    int32 CountChildren() const;
    BView* ChildAt(int32 index) const;
    BView* FindView(const char* viewName) const;
    BView* FindView(BPoint point) const;
    bool Lock();
    void Unlock();
    bool IsLocked() const;
    BBitmap& operator=(const BBitmap& source);
    void SetBits(const void* data, int32 length, int32 offset, color_space colorSpace);

private:
};

#endif  // _BITMAP_H
