#ifndef TESTS_GADGETS_LIST_GADGETS_H
#define TESTS_GADGETS_LIST_GADGETS_H

// List gadgets at the left top of a window, and what their rows and selections are.

#include "gadgets/gadget_window.h"

#include <OutlineListView.h>
#include <ScrollView.h>

#include <initializer_list>
#include <string>

const int32_t kKeyShift = 0x4b, kKeyControl = 0x5c;

class ListGadgets : public GadgetTest {
protected:
    int32_t MakeList(int32_t kind, std::initializer_list<const char*> rows)
    {
        const int32_t ident = Make(kind, 0, 0, 150, 120);
        for (const char* row : rows)
            AddLvEntry(ident, row);
        return ident;
    }
    static std::string Rows(int32_t ident)
    {
        std::string rows;
        for (int32_t i = 0; i < CountEntry(ident); i++)
            rows += (i > 0 ? " " : "") + std::string(GetLvItem(ident, i));
        return rows;
    }
    static std::string Selected(int32_t ident)
    {
        std::string rows;
        for (int32_t i = 0; i < CountEntry(ident); i++)
            rows += IsItemSelected(ident, i) ? std::to_string(i) : "";
        return rows;
    }
    // The list of the first gadget.
    template <class Ask>
    auto WithList(Ask ask)
    {
        return WithView(0, [&](BView* view) {
            if (auto* scroll = dynamic_cast<BScrollView*>(view))
                view = scroll->ChildAt(0);
            return ask(*dynamic_cast<BListView*>(view));
        });
    }
    // The middle of a row, in the window.
    BPoint PlaceOf(int32_t row, float x = 60)
    {
        return WithList([=](BListView& list) {
            const BRect frame = list.ItemFrame(row);
            return list.ConvertToScreen(BPoint(x, (frame.top + frame.bottom) / 2)) -
                   BPoint(100, 100);
        });
    }
    void PressRow(int32_t row, int32_t button = 1)
    {
        const BPoint place = PlaceOf(row);
        Press(static_cast<int32_t>(place.x), static_cast<int32_t>(place.y), button);
    }
    void ClickRow(int32_t row, std::initializer_list<int32_t> held = {})
    {
        for (const int32_t key : held)
            inject_key(key, true);
        PressRow(row);
        Release();
        for (const int32_t key : held)
            inject_key(key, false);
        Settle();
    }
};

#endif  // TESTS_GADGETS_LIST_GADGETS_H
