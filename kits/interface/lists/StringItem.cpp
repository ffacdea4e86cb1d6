// BStringItem: a row of text.

#include <StringItem.h>

#include <Font.h>
#include <Message.h>
#include <View.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <new>

#include <interface/controls/Look.h>

using BPrivate::Look;

static const float kMargin = 2;  // above and below the line

BStringItem::BStringItem(const char* text, uint32 outlineLevel, bool expanded)
    : BListItem(outlineLevel, expanded), fText(text != nullptr ? strdup(text) : nullptr)
{
}

BStringItem::BStringItem(BMessage* archive) : BListItem(archive), fText(nullptr)
{
    const char* text;
    if (archive != nullptr && archive->FindString("_label", &text) == B_OK)
        fText = strdup(text);
}

BStringItem::~BStringItem() { free(fText); }

BArchivable* BStringItem::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "BStringItem") ? new (std::nothrow) BStringItem(archive)
                                                          : nullptr;
}

status_t BStringItem::Archive(BMessage* archive, bool deep) const
{
    status_t status = BListItem::Archive(archive, deep);
    if (status == B_OK && fText != nullptr)
        status = archive->AddString("_label", fText);
    return status;
}

void BStringItem::DrawItem(BView* owner, BRect frame, bool complete)
{
    const rgb_color high = owner->HighColor(), low = owner->LowColor();
    const rgb_color ground =
        IsSelected() ? ui_color(B_LIST_SELECTED_BACKGROUND_COLOR) : owner->ViewColor();
    owner->SetLowColor(ground);
    if (IsSelected() || complete)
        owner->FillRect(frame, B_SOLID_LOW);
    if (fText != nullptr) {
        const rgb_color text =
            ui_color(IsSelected() ? B_LIST_SELECTED_ITEM_TEXT_COLOR : B_LIST_ITEM_TEXT_COLOR);
        owner->SetHighColor(IsEnabled() ? text : Look::Mix(text, ground, 0.5f));
        BFont font;
        owner->GetFont(&font);
        owner->DrawString(
            fText, BPoint(frame.left + Look(font).LabelSpacing(), frame.top + fBaselineOffset));
    }
    owner->SetHighColor(high);
    owner->SetLowColor(low);
}

void BStringItem::SetText(const char* text)
{
    char* const copy = text != nullptr ? strdup(text) : nullptr;
    free(fText);
    fText = copy;
}

const char* BStringItem::Text() const { return fText; }

void BStringItem::Update(BView* owner, const BFont* font)
{
    if (owner == nullptr || font == nullptr)
        return;
    font_height height;
    font->GetHeight(&height);
    fBaselineOffset = kMargin + std::ceil(height.ascent + height.leading / 2);
    if (fText != nullptr)
        SetWidth(font->StringWidth(fText) + 2 * Look(*font).LabelSpacing());
    SetHeight(std::ceil(height.ascent) + std::ceil(height.descent) + std::ceil(height.leading) +
              2 * kMargin);
}

status_t BStringItem::Perform(perform_code code, void* arg)
{
    return BListItem::Perform(code, arg);
}

float BStringItem::BaselineOffset() const { return fBaselineOffset; }
