#ifndef GADGETS_LIST_ITEM_H
#define GADGETS_LIST_ITEM_H

// A row of a list gadget: a line of text in the list's colours or in its own.

#include "gadgets/gadget.h"
#include "gadgets/row_memory.h"
#include "windows/drawing_view.h"

#include <ListItem.h>

#include <array>
#include <memory>

#include <stdlib.h>
#include <string.h>

static const float kTextStart = 10;  // of texts, whatever the level: kept on purpose

// In the order of the calls that set them.
enum ListColor {
    kUnselectedGround,
    kUnselectedText,
    kSelectedText,
    kSelectedGround,
    kDisabledGround,
    kDisabledText,
    kListColors
};

// What flat and outline lists have beside their views. The window's lock.
class ListFrame {
public:
    virtual ~ListFrame() = default;

    MyGadget* fGadget = nullptr;  // null once the list is being deleted
    std::array<uint32_t, kListColors> fColors = {0xe2e2e2ff, 0x000000ff, 0x000000ff,
                                                 0xffffffff, 0x960a28ff, 0xde110aff};
    int32_t fAnchor = 0;    // the fixed end of a Shift range
    int32_t fRemovals = 0;  // rises whenever rows are deleted
    bool fDragEnabled = false;
    bool fIsSorting = false;  // rows have keys instead of texts, and no handler is called
    DroppedFiles fDropped;
};

using ListDrawHook = int32_t (*)(int32_t, int32_t);

struct SortKey;

// Small, for there may be very many of them.
class TListItem : public BListItem {
public:
    static TListItem* New(const char* text);
    ~TListItem() override;
    void operator delete(void* item) { RowMemory::Give(item); }

    void DrawItem(BView* owner, BRect frame, bool complete) override;
    void Update(BView* owner, const BFont* font) override;
    status_t Perform(perform_code code, void* data) override;

    // Copies the text of a row to a place for RowMemory::kTextBytes without a look at the row
    // itself, which may be far away. False, and nothing copied, if the text is longer or the row
    // none of these.
    static bool CopyShortText(const BListItem* row, char* text)
    {
        if (!RowMemory::Knows(row))
            return false;
        const char* const near = RowMemory::TextOf(row);
        if (near[kIsLong] != '\0')
            return false;
        memcpy(text, near, RowMemory::kTextBytes);
        return true;
    }
    const char* Text() const { return fText; }
    // Throws std::bad_alloc, and keeps the text that was there.
    void SetText(const char* text);
    // The list's first four are these instead.
    void SetColors(const std::array<uint32_t, 4>& colors);
    void SetDrawHook(ListDrawHook hook);
    // In a list, as the row is at present.
    rgb_color Ground(const ListFrame& list) const;
    rgb_color Ink(const ListFrame& list) const;

    // Between the two the item has what CompareKeys() looks at instead of what is kept there.
    void SetKey(SortKey* key);
    void TakeBack();
    // For SortItems(), without regard to case.
    static int CompareKeys(const void* a, const void* b);

private:
    friend struct SortKey;

    struct Extras {
        std::unique_ptr<std::array<uint32_t, 4>> colors;
        ListDrawHook drawHook = nullptr;
    };
    TListItem();
    Extras& _Extras();
    rgb_color _Color(const ListFrame& list, ListColor disabled, ListColor selected,
                     ListColor unselected) const;
    char* _Near() { return RowMemory::TextOf(this); }

    // In the memory near the item: the terminator of the longest text there, not 0 for a longer one
    // elsewhere.
    static constexpr size_t kIsLong = RowMemory::kTextBytes - 1;

    union {
        char* fText;      // near the item if it is short, else from the C library
        uint64_t fStart;  // its first bytes in lower case, the order of most rows
    };
    union {
        Extras* fExtras;  // owned; few rows have any
        SortKey* fKey;
    };
};

// What a row has otherwise, while it is sorted.
struct SortKey {
    char* text;
    TListItem::Extras* extras;
};

#endif  // GADGETS_LIST_ITEM_H
