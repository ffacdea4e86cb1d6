// Status bars.

#include <StatusBar.h>

#include <AppDefs.h>
#include <Message.h>

#include <algorithm>
#include <cmath>

#include <interface/controls/ControlPrivate.h>

using BPrivate::Look;

static float at_least_none(float number)
{
    return std::isfinite(number) ? std::max(number, 0.0f) : 0;
}

static const float kMaximum = 100;
static const float kGap = 2;  // between the frame and the edge of the view

BStatusBar::BStatusBar(BRect frame, const char* name, const char* label, const char* trailingLabel)
    : BView(frame, name, B_FOLLOW_LEFT_TOP, B_WILL_DRAW | B_FULL_UPDATE_ON_RESIZE),
      fLabel(label),
      fTrailingLabel(trailingLabel),
      fBarColor(ui_color(B_STATUS_BAR_COLOR))
{
}

BStatusBar::BStatusBar(const char* name, const char* label, const char* trailingLabel)
    : BStatusBar(BRect(), name, label, trailingLabel)
{
    BStatusBar::ResizeToPreferred();
}

BStatusBar::BStatusBar(BMessage* archive) : BView(archive), fBarColor(ui_color(B_STATUS_BAR_COLOR))
{
    if (archive == nullptr)
        return;
    float number;
    if (archive->FindFloat("_high", &number) == B_OK)
        fBarHeight = at_least_none(number);
    if (archive->FindFloat("_max", &number) == B_OK)
        fMax = at_least_none(number);
    if (archive->FindFloat("_val", &number) == B_OK)
        fValue = std::min(at_least_none(number), fMax);
    rgb_color color;
    if (archive->FindColor("_bcolor", &color) == B_OK)
        SetBarColor(color);
    archive->FindString("_label", &fLabel);
    archive->FindString("_tlabel", &fTrailingLabel);
    archive->FindString("_text", &fText);
    archive->FindString("_ttext", &fTrailingText);
}

BStatusBar::~BStatusBar() = default;

BArchivable* BStatusBar::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "BStatusBar") ? new (std::nothrow) BStatusBar(archive)
                                                         : nullptr;
}

status_t BStatusBar::Archive(BMessage* archive, bool deep) const
{
    const status_t status = BView::Archive(archive, deep);
    if (status != B_OK)
        return status;
    if (fBarHeight >= 0)
        archive->AddFloat("_high", fBarHeight);
    if (fOwnColor)
        archive->AddColor("_bcolor", fBarColor);
    archive->AddFloat("_max", fMax);
    archive->AddFloat("_val", fValue);
    archive->AddString("_label", fLabel);
    archive->AddString("_tlabel", fTrailingLabel);
    archive->AddString("_text", fText);
    return archive->AddString("_ttext", fTrailingText);
}

// --- size

float BStatusBar::BarHeight() const
{
    if (fBarHeight >= 0)
        return fBarHeight;
    font_height height;
    GetFontHeight(&height);
    return std::ceil(height.ascent + height.descent + 5);
}

BRect BStatusBar::_BarFrame() const
{
    const Look look(const_cast<BStatusBar*>(this));
    const BRect bounds = Bounds();
    const float top = look.TextHeight() + 6;
    return BRect(bounds.left + kGap, bounds.top + top, bounds.right - kGap,
                 bounds.top + top + BarHeight() - 4);
}

void BStatusBar::GetPreferredSize(float* _width, float* _height)
{
    const Look look(this);
    if (_width != nullptr) {
        *_width = 5;
        for (const BString* text : {&fLabel, &fTrailingLabel, &fText, &fTrailingText})
            *_width += look.TextWidth(text->String());
    }
    if (_height != nullptr)
        *_height = look.TextHeight() + 6 + BarHeight();
}

void BStatusBar::AttachedToWindow()
{
    BPrivate::adopt_ground(this);
    float height;
    GetPreferredSize(nullptr, &height);
    ResizeTo(Bounds().Width(), height);
}

void BStatusBar::SetBarHeight(float height)
{
    fBarHeight = at_least_none(height);
    GetPreferredSize(nullptr, &height);
    ResizeTo(Bounds().Width(), height);
    Invalidate();
}

// --- what it shows

void BStatusBar::_InvalidateText()
{
    BRect rect = Bounds();
    rect.bottom = _BarFrame().top - 1;
    Invalidate(rect);
}

void BStatusBar::_SetTexts(const char* text, const char* trailingText)
{
    const bool changed = (text != nullptr && fText != text) ||
                         (trailingText != nullptr && fTrailingText != trailingText);
    if (text != nullptr)
        fText = text;
    if (trailingText != nullptr)
        fTrailingText = trailingText;
    if (changed)
        _InvalidateText();
}

void BStatusBar::SetText(const char* string)
{
    _SetTexts(string != nullptr ? string : "", nullptr);
}

void BStatusBar::SetTrailingText(const char* string)
{
    _SetTexts(nullptr, string != nullptr ? string : "");
}

void BStatusBar::SetMaxValue(float max)
{
    max = at_least_none(max);
    if (max == fMax)
        return;
    fMax = max;
    fValue = std::min(fValue, fMax);
    Invalidate();
}

void BStatusBar::Update(float delta, const char* text, const char* trailingText)
{
    BStatusBar::SetTo(fValue + delta, text, trailingText);
}

void BStatusBar::SetTo(float value, const char* text, const char* trailingText)
{
    _SetTexts(text, trailingText);
    value = value > 0 ? std::min(value, fMax) : 0;
    if (value == fValue)
        return;
    const float before = _FillWidth();
    fValue = value;
    const float now = _FillWidth();
    BRect changed = _BarFrame();
    const float left = changed.left;
    changed.left = left + std::min(before, now);
    changed.right = left + std::max(before, now) + 2;
    if (now != before)
        Invalidate(changed);
}

void BStatusBar::Reset(const char* label, const char* trailingLabel)
{
    fLabel = label;
    fTrailingLabel = trailingLabel;
    fText = fTrailingText = "";
    fValue = 0;
    fMax = kMaximum;
    Invalidate();
}

void BStatusBar::SetBarColor(rgb_color color)
{
    fOwnColor = true;
    fBarColor = color;
    Invalidate();
}

float BStatusBar::CurrentValue() const { return fValue; }
float BStatusBar::MaxValue() const { return fMax; }
rgb_color BStatusBar::BarColor() const { return fBarColor; }
const char* BStatusBar::Text() const { return fText.String(); }
const char* BStatusBar::TrailingText() const { return fTrailingText.String(); }
const char* BStatusBar::Label() const { return fLabel.String(); }
const char* BStatusBar::TrailingLabel() const { return fTrailingLabel.String(); }

// --- drawing and messages

// Pixels of the bar that are filled.
float BStatusBar::_FillWidth() const
{
    const float room = _BarFrame().Width() - 3;
    if (!(fMax > 0 && room > 0))
        return 0;
    return float(std::ceil(double(fValue) * room / fMax));
}

void BStatusBar::Draw(BRect updateRect)
{
    const Look look(this);
    const BRect bar = _BarFrame();
    if (updateRect.top < bar.top) {
        const float top = Bounds().top + 3;
        const float bottom = top + look.Ascent() + look.Descent() - 1;
        BString left = fLabel;
        left << fText;
        BString right = fTrailingText;
        right << fTrailingLabel;
        const float right_width = std::min(look.TextWidth(right.String()), bar.Width());
        const BRect trailing(bar.right - right_width + 1, top, bar.right, bottom);
        const float gap = right_width > 0 ? look.LabelSpacing() : 0;
        look.DrawLabel(left.String(), BRect(bar.left, top, trailing.left - 1 - gap, bottom),
                       B_ALIGN_LEFT, 0);
        look.DrawLabel(right.String(), trailing, B_ALIGN_RIGHT, 0);
    }
    look.DrawStatusBar(bar, _FillWidth(), fBarColor);
}

void BStatusBar::MessageReceived(BMessage* message)
{
    const char* first = nullptr;
    const char* second = nullptr;
    float delta = 0;
    switch (message->what) {
        case B_UPDATE_STATUS_BAR:
            message->FindFloat("delta", &delta);
            message->FindString("text", &first);
            message->FindString("trailing_text", &second);
            Update(delta, first, second);
            break;
        case B_RESET_STATUS_BAR:
            message->FindString("label", &first);
            message->FindString("trailing_label", &second);
            Reset(first, second);
            break;
        default:
            BView::MessageReceived(message);
    }
}
