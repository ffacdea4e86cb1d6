#ifndef GADGETS_LIST_ITEM_H
#define GADGETS_LIST_ITEM_H

// A row of a list gadget: a line of text in the list's colours or in its own.

#include "gadgets/gadget.h"
#include "windows/drawing_view.h"

#include <ListItem.h>

#include <array>
#include <memory>

#include <stdlib.h>

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
    // The text lies behind the item, so that both come from memory at once.
    static TListItem* New(const char* text);
    ~TListItem() override;
    void operator delete(void* item) { free(item); }

    void DrawItem(BView* owner, BRect frame, bool complete) override;
    void Update(BView* owner, const BFont* font) override;
    status_t Perform(perform_code code, void* data) override;

    // The text of a row comes from memory beside the row, if both are far away.
    static void Prefetch(const BListItem* row)
    {
        if (row != nullptr)
            __builtin_prefetch(static_cast<const TListItem*>(row) + 1);
    }
    const char* Text() const { return fText != nullptr ? fText : ""; }
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
    explicit TListItem(char* text) : BListItem(0, true), fText(text), fExtras(nullptr) {}
    Extras& _Extras();
    rgb_color _Color(const ListFrame& list, ListColor disabled, ListColor selected,
                     ListColor unselected) const;
    char* _First() { return reinterpret_cast<char*>(this + 1); }

    union {
        char* fText;      // the first, behind the item, or a later one from the C library
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
