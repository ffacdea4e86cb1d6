// Rows of list gadgets, which draw themselves. The window's thread, window locked.

#include "gadgets/list_item.h"

#include "graphics/raster_port.h"

#include <Font.h>
#include <View.h>

static const float kTextStart = 10;  // whatever the level: kept on purpose

void TListItem::Update(BView* owner, const BFont* font)
{
    BListItem::Update(owner, font);
    font_height height;
    font->GetHeight(&height);
    SetHeight(height.ascent + height.descent + height.leading);
}

void TListItem::DrawItem(BView* owner, BRect frame, bool)
{
    auto* list = dynamic_cast<ListFrame*>(owner);
    if (list == nullptr)
        return;
    if (fDrawHook != nullptr) {
        const int32_t removals = list->fRemovals;
        {
            const DefaultOutput output(owner);
            fDrawHook(0, 0);
        }
        if (list->fRemovals != removals)  // this row may be gone
            return;
    }
    const auto own = [&](ListColor which) {
        return fOwnColors != nullptr ? (*fOwnColors)[which] : list->fColors[which];
    };
    const uint32_t ground = !IsEnabled()   ? list->fColors[kDisabledGround]
                            : IsSelected() ? own(kSelectedGround)
                                           : own(kUnselectedGround);
    const uint32_t text = !IsEnabled()   ? list->fColors[kDisabledText]
                          : IsSelected() ? own(kSelectedText)
                                         : own(kUnselectedText);
    owner->SetHighColor(GetRgbFromInteger(ground));
    owner->FillRect(frame, B_SOLID_HIGH);
    font_height height;
    owner->GetFontHeight(&height);
    const float glyphs = height.ascent + height.descent;
    const float spare = frame.bottom - frame.top - (glyphs + height.leading);
    owner->SetLowColor(GetRgbFromInteger(ground));
    owner->SetHighColor(GetRgbFromInteger(text));
    owner->MovePenTo(kTextStart, glyphs + frame.top + spare * 0.5f - 2);
    if (!fText.empty())
        owner->DrawString(fText.c_str());
}
