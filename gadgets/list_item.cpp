// Rows of list gadgets, which draw themselves. The window's thread, window locked.

#include "gadgets/list_item.h"

#include "graphics/raster_port.h"
#include "windows/screen_reader.h"

#include <Font.h>
#include <Message.h>
#include <View.h>

#include <ctype.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

#include <new>
#include <utility>

TListItem* TListItem::New(const char* text)
{
    static_assert(sizeof(TListItem) <= RowMemory::kRowBytes);
    std::unique_ptr<TListItem> item(::new (RowMemory::Take()) TListItem);
    item->SetText(text);
    return item.release();
}

TListItem::TListItem() : BListItem(0, true), fText(_Near()), fExtras(nullptr)
{
    memset(fText, 0, RowMemory::kTextBytes);
}

TListItem::~TListItem()
{
    if (fText != _Near())
        free(fText);
    delete fExtras;
}

void TListItem::SetText(const char* text)
{
    char* const near = _Near();
    const size_t size = strlen(text) + 1;
    const bool is_long = size > RowMemory::kTextBytes;
    char* const place = is_long ? static_cast<char*>(malloc(size)) : near;
    if (place == nullptr)
        throw std::bad_alloc();
    memmove(place, text, size);
    near[kIsLong] = is_long ? 1 : '\0';
    char* const before = std::exchange(fText, place);
    if (before != near)
        free(before);
}

TListItem::Extras& TListItem::_Extras()
{
    if (fExtras == nullptr)
        fExtras = new Extras;
    return *fExtras;
}

void TListItem::SetColors(const std::array<uint32_t, 4>& colors)
{
    _Extras().colors = std::make_unique<std::array<uint32_t, 4>>(colors);
}

void TListItem::SetDrawHook(ListDrawHook hook)
{
    if (hook != nullptr || fExtras != nullptr)
        _Extras().drawHook = hook;
}

// --- order

void TListItem::SetKey(SortKey* key)
{
    *key = {fText, fExtras};
    const char* text = Text();
    fStart = 0;
    for (int shift = 56; shift >= 0 && *text != '\0'; shift -= 8)
        fStart |= uint64_t(uint8_t(tolower(static_cast<unsigned char>(*text++)))) << shift;
    fKey = key;
}

void TListItem::TakeBack()
{
    const SortKey key = *fKey;
    fText = key.text;
    fExtras = key.extras;
}

int TListItem::CompareKeys(const void* a, const void* b)
{
    const auto row = [](const void* item) {
        return static_cast<const TListItem*>(*static_cast<BListItem* const*>(item));
    };
    const TListItem* left = row(a);
    const TListItem* right = row(b);
    if (left->fStart != right->fStart)
        return left->fStart < right->fStart ? -1 : 1;
    return strcasecmp(left->fKey->text, right->fKey->text);
}

// --- size and looks

void TListItem::Update(BView* owner, const BFont* font)
{
    font_height height;
    font->GetHeight(&height);
    SetWidth(owner->Bounds().Width());
    SetHeight(height.ascent + height.descent + height.leading);
}

// A colour by the row's state, of the row's own if it may have one.
rgb_color TListItem::_Color(const ListFrame& list, ListColor disabled, ListColor selected,
                            ListColor unselected) const
{
    if (!IsEnabled())
        return GetRgbFromInteger(list.fColors[disabled]);
    const ListColor which = IsSelected() ? selected : unselected;
    const bool is_own = fExtras != nullptr && fExtras->colors != nullptr;
    return GetRgbFromInteger(is_own ? (*fExtras->colors)[which] : list.fColors[which]);
}

rgb_color TListItem::Ground(const ListFrame& list) const
{
    return _Color(list, kDisabledGround, kSelectedGround, kUnselectedGround);
}

rgb_color TListItem::Ink(const ListFrame& list) const
{
    return _Color(list, kDisabledText, kSelectedText, kUnselectedText);
}

status_t TListItem::Perform(perform_code code, void* data)
{
    if (code != kTellReader || data == nullptr)
        return BListItem::Perform(code, data);
    return static_cast<BMessage*>(data)->AddString(kReaderText, Text());
}

void TListItem::DrawItem(BView* owner, BRect frame, bool)
{
    auto* list = dynamic_cast<ListFrame*>(owner);
    if (list == nullptr)
        return;
    if (fExtras != nullptr && fExtras->drawHook != nullptr) {
        const int32_t removals = list->fRemovals;
        {
            const DefaultOutput output(owner);
            fExtras->drawHook(0, 0);
        }
        if (list->fRemovals != removals)  // this row may be gone
            return;
    }
    const rgb_color ground = Ground(*list);
    owner->SetHighColor(ground);
    owner->FillRect(frame, B_SOLID_HIGH);
    font_height height;
    owner->GetFontHeight(&height);
    const float glyphs = height.ascent + height.descent;
    const float spare = frame.bottom - frame.top - (glyphs + height.leading);
    owner->SetLowColor(ground);
    owner->SetHighColor(Ink(*list));
    owner->MovePenTo(kTextStart, glyphs + frame.top + spare * 0.5f - 2);
    if (Text()[0] != '\0')
        owner->DrawString(Text());
}
