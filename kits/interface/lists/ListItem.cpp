// BListItem: what all rows have in common.

#include <ListItem.h>

#include <Font.h>
#include <Message.h>
#include <View.h>

#include <algorithm>
#include <cmath>

#include "interface/lists/Rows.h"

using BPrivate::Rows;

static const uint32 kMostLevel = (1u << 28) - 1;

BListItem::BListItem(uint32 outlineLevel, bool expanded)
    : fLevel(std::min(outlineLevel, kMostLevel)),
      fSelected(false),
      fDisabled(false),
      fExpanded(expanded)
{
}

BListItem::BListItem(BMessage* archive) : BListItem()
{
    if (archive == nullptr)
        return;
    fSelected = archive->GetBool("_sel", false);
    fDisabled = archive->GetBool("_disable", false);
    fExpanded = archive->GetBool("_li_expanded", true);
    const int32 level = archive->GetInt32("_li_outline_level", 0);
    fLevel = level > 0 ? std::min(static_cast<uint32>(level), kMostLevel) : 0;
}

BListItem::~BListItem() { Rows::Left(this); }

status_t BListItem::Archive(BMessage* archive, bool deep) const
{
    status_t status = BArchivable::Archive(archive, deep);
    if (status == B_OK && IsSelected())
        status = archive->AddBool("_sel", true);
    if (status == B_OK && fDisabled)
        status = archive->AddBool("_disable", true);
    if (status == B_OK && !fExpanded)
        status = archive->AddBool("_li_expanded", false);
    if (status == B_OK && fLevel != 0)
        status = archive->AddInt32("_li_outline_level", static_cast<int32>(fLevel));
    return status;
}

float BListItem::Height() const { return fHeight; }
float BListItem::Width() const { return fWidth; }

bool BListItem::IsSelected() const
{
    Rows::Settle(fBlock);
    return fSelected;
}

void BListItem::Select()
{
    fSelected = true;
    Rows::Selected(this, true);
}

void BListItem::Deselect()
{
    fSelected = false;
    Rows::Selected(this, false);
}

void BListItem::SetEnabled(bool enabled)
{
    fDisabled = !enabled;
    Rows::Enabled(this, enabled);
}

bool BListItem::IsEnabled() const { return !fDisabled; }

void BListItem::SetHeight(float height)
{
    fHeight = height;
    Rows::Resized(this);
}

void BListItem::SetWidth(float width)
{
    fWidth = width;
    Rows::Resized(this);
}

void BListItem::Update(BView* owner, const BFont* font)
{
    if (owner == nullptr || font == nullptr)
        return;
    font_height height;
    font->GetHeight(&height);
    fWidth = owner->Bounds().Width();
    SetHeight(std::ceil(height.ascent + height.descent + height.leading));
}

bool BListItem::IsExpanded() const { return fExpanded; }
void BListItem::SetExpanded(bool expanded) { fExpanded = expanded; }
uint32 BListItem::OutlineLevel() const { return fLevel; }

void BListItem::SetOutlineLevel(uint32 level)
{
    fLevel = std::min(level, kMostLevel);
    Rows::LevelChanged(this);
}

status_t BListItem::Perform(perform_code code, void* arg)
{
    return BArchivable::Perform(code, arg);
}
