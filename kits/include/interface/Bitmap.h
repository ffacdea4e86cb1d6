#ifndef _BITMAP_H
#define _BITMAP_H

#include <Archivable.h>
#include <GraphicsDefs.h>
#include <InterfaceDefs.h>
#include <OS.h>
#include <Point.h>
#include <Rect.h>
#include <Size.h>
#include <SupportDefs.h>

class BMessage;
class BView;
class BWindow;

#define B_ANY_BYTES_PER_ROW (-1)

// Flags of a bitmap. Only the first two change anything: memory is never shared with hardware.

namespace BPrivate {
struct BitmapBits;
struct ViewPrivate;
}  // namespace BPrivate

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

/* An image in memory. One that accepts views is drawn into by the views added to it, with the
   bitmap locked; its views are deleted with it. Sizes that no memory holds and colour spaces that
   are not supported leave a bitmap without bits: InitCheck() says why. Supported are B_RGB32,
   B_RGBA32, B_RGB24, B_RGB16, B_RGB15, B_RGBA15, B_CMAP8, B_GRAY8 and B_GRAY1. */
class BBitmap : public BArchivable {
public:
    BBitmap(BRect bounds, uint32 flags, color_space colorSpace,
            int32 bytesPerRow = B_ANY_BYTES_PER_ROW, screen_id screenID = B_MAIN_SCREEN_ID);
    BBitmap(BRect bounds, color_space colorSpace, bool acceptsViews = false,
            bool needsContiguous = false);
    /* Copies of the pixels; views are not copied. */
    BBitmap(const BBitmap& source, uint32 flags);
    BBitmap(const BBitmap& source);
    BBitmap(const BBitmap* source, bool acceptsViews = false, bool needsContiguous = false);
    /* Memory of another owner can not be used: never valid. */
    BBitmap(area_id area, ptrdiff_t areaOffset, BRect bounds, uint32 flags, color_space colorSpace,
            int32 bytesPerRow = B_ANY_BYTES_PER_ROW, screen_id screenID = B_MAIN_SCREEN_ID);
    virtual ~BBitmap();

    BBitmap(BMessage* data);
    static BArchivable* Instantiate(BMessage* data);
    virtual status_t Archive(BMessage* data, bool deep = true) const;

    /* B_OK, B_BAD_VALUE or B_NO_MEMORY. */
    status_t InitCheck() const;
    bool IsValid() const;

    /* The bits stay where they are; these only check that there are any. */
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

    /* Copy pixels in, turned into the bitmap's colour space. `bpr` is the length of a row of the
       data, `offset` the byte of the bitmap to start at. Rows and pixels that do not fit are left
       out. */
    status_t ImportBits(const void* data, int32 length, int32 bpr, int32 offset,
                        color_space colorSpace);
    status_t ImportBits(const void* data, int32 length, int32 bpr, color_space colorSpace,
                        BPoint from, BPoint to, BSize size);
    status_t ImportBits(const BBitmap* bitmap);
    status_t ImportBits(const BBitmap* bitmap, BPoint from, BPoint to, BSize size);
    status_t GetOverlayRestrictions(overlay_restrictions* restrictions) const;

    virtual void AddChild(BView* view);
    virtual bool RemoveChild(BView* view);
    int32 CountChildren() const;
    BView* ChildAt(int32 index) const;
    BView* FindView(const char* viewName) const;
    BView* FindView(BPoint point) const;
    /* False for a bitmap that takes no views. */
    bool Lock();
    void Unlock();
    bool IsLocked() const;

    /* Takes over size, colour space and pixels; the views are gone. */
    BBitmap& operator=(const BBitmap& source);

    /* As ImportBits(), with rows padded to whole words as BeOS had them; B_RGB32 data may be
       given without its fourth byte, three bytes a pixel. */
    void SetBits(const void* data, int32 length, int32 offset, color_space colorSpace);

private:
    friend struct BPrivate::BitmapBits;
    friend struct BPrivate::ViewPrivate;

    void _Init(BRect bounds, color_space colorSpace, uint32 flags, int32 bytesPerRow);
    void _CopyFrom(const BBitmap& source, uint32 flags);
    void _Free();
    status_t _Import(const void* data, int64 length, int64 bytesPerRow, color_space space,
                     int32 fromX, int32 fromY, int32 toX, int32 toY, int32 width, int32 height);

    uint8* fBits = nullptr;  // aligned to 64 bytes; malloc'ed
    int32 fBytesPerRow = 0;
    int32 fLength = 0;
    BRect fBounds;
    color_space fSpace = B_NO_COLOR_SPACE;
    uint32 fFlags = 0;
    status_t fStatus = B_NO_INIT;
    BWindow* fWindow = nullptr;  // holds the views; null if none are accepted
};

#endif  // _BITMAP_H
