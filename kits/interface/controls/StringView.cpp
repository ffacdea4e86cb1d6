// Text that is only shown.

#include <StringView.h>

#include <Message.h>
#include <PropertyInfo.h>
#include <TypeConstants.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include <app/looper/Scripting.h>
#include <interface/controls/ControlPrivate.h>
#include <support/EnumNumbers.h>

using BPrivate::Look;

static const property_info kStringViewProperties[] = {
    SCRIPT_VALUE("Text", B_STRING_TYPE),
    SCRIPT_VALUE("Alignment", B_INT32_TYPE),
    {},
};

BStringView::BStringView(BRect frame, const char* name, const char* text, uint32 resizingMode,
                         uint32 flags)
    : BView(frame, name, resizingMode, flags | B_FULL_UPDATE_ON_RESIZE),
      fText(text),
      fHasText(text != nullptr),
      fTruncation(B_NO_TRUNCATION)
{
}

BStringView::BStringView(const char* name, const char* text, uint32 flags)
    : BStringView(BRect(), name, text, B_FOLLOW_LEFT_TOP, flags)
{
    BStringView::ResizeToPreferred();
}

BStringView::BStringView(BMessage* archive) : BView(archive), fTruncation(B_NO_TRUNCATION)
{
    if (archive == nullptr)
        return;
    const char* text;
    if (archive->FindString("_text", &text) == B_OK)
        SetText(text);
    fAlign = BPrivate::enum_up_to(archive->GetInt32("_align", fAlign), B_ALIGN_CENTER, fAlign);
    const int32 truncation = archive->GetInt32("_truncation", -1);
    if (truncation >= 0 && truncation <= int32(B_TRUNCATE_SMART))
        fTruncation = static_cast<uint32>(truncation);
}

BStringView::~BStringView() = default;

BArchivable* BStringView::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "BStringView") ? new (std::nothrow) BStringView(archive)
                                                          : nullptr;
}

status_t BStringView::Archive(BMessage* archive, bool deep) const
{
    status_t status = BView::Archive(archive, deep);
    if (status == B_OK && fHasText)
        status = archive->AddString("_text", fText.String());
    if (status == B_OK)
        status = archive->AddInt32("_align", fAlign);
    if (status == B_OK && fTruncation != B_NO_TRUNCATION)
        status = archive->AddInt32("_truncation", static_cast<int32>(fTruncation));
    return status;
}

void BStringView::SetText(const char* text)
{
    if (fHasText == (text != nullptr) && fText == (text != nullptr ? text : ""))
        return;
    fText = text;
    fHasText = text != nullptr;
    Invalidate();
}

const char* BStringView::Text() const { return fHasText ? fText.String() : nullptr; }

void BStringView::SetAlignment(alignment flag)
{
    fAlign = flag;
    Invalidate();
}

alignment BStringView::Alignment() const { return fAlign; }

void BStringView::SetTruncation(uint32 truncationMode)
{
    fTruncation = truncationMode;
    Invalidate();
}

uint32 BStringView::Truncation() const { return fTruncation; }

void BStringView::SetFont(const BFont* font, uint32 mask)
{
    BView::SetFont(font, mask);
    Invalidate();
}

void BStringView::AttachedToWindow() { BPrivate::adopt_ground(this); }

// Calls `act` for each line of a text.
template <class Act>
static int32 each_line(const BString& text, Act act)
{
    int32 count = 0;
    int32 start = 0;
    for (;;) {
        const int32 end = text.FindFirst('\n', start);
        BString line;
        text.CopyInto(line, start, (end < 0 ? text.Length() : end) - start);
        act(line, count++);
        if (end < 0)
            return count;
        start = end + 1;
    }
}

void BStringView::GetPreferredSize(float* _width, float* _height)
{
    const Look look(this);
    float width = 0;
    const int32 lines = each_line(fText, [&](const BString& line, int32) {
        width = std::max(width, look.TextWidth(line.String()));
    });
    if (_width != nullptr)
        *_width = width;
    if (_height != nullptr)
        *_height = float(lines) * look.LineHeight();
}

void BStringView::Draw(BRect)
{
    if (fText.Length() == 0)
        return;
    const Look look(this);
    const BRect bounds = Bounds();
    const int32 lines = each_line(fText, [](const BString&, int32) {});
    const float last = bounds.bottom - look.Descent();
    each_line(fText, [&](BString& line, int32 number) {
        if (fTruncation != B_NO_TRUNCATION)
            TruncateString(&line, fTruncation, bounds.Width() + 1);
        float left = bounds.left;
        if (fAlign == B_ALIGN_RIGHT)
            left = bounds.right - StringWidth(line.String());
        else if (fAlign == B_ALIGN_CENTER)
            left += (bounds.Width() - StringWidth(line.String())) / 2;
        look.DrawText(
            line.String(),
            BPoint(std::floor(left), last - float(lines - 1 - number) * look.LineHeight()), 0);
    });
}

BHandler* BStringView::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                        int32 form, const char* property)
{
    if (BPrivate::knows_property(kStringViewProperties, message, index, specifier, form, property))
        return this;
    return BView::ResolveSpecifier(message, index, specifier, form, property);
}

status_t BStringView::GetSupportedSuites(BMessage* data)
{
    const status_t status =
        BPrivate::add_suite(data, "suite/vnd.Be-string-view", kStringViewProperties);
    return status == B_OK ? BView::GetSupportedSuites(data) : status;
}

void BStringView::MessageReceived(BMessage* message)
{
    const auto get = [this](const char* name, BMessage* reply) {
        return strcmp(name, "Text") == 0 ? reply->AddString("result", fText.String())
                                         : reply->AddInt32("result", fAlign);
    };
    const auto set = [this](const char* name, const BMessage& data) -> status_t {
        const char* text;
        int32 align;
        if (strcmp(name, "Text") == 0 && data.FindString("data", &text) == B_OK)
            SetText(text);
        else if (strcmp(name, "Alignment") == 0 && data.FindInt32("data", &align) == B_OK)
            SetAlignment(BPrivate::enum_up_to(align, B_ALIGN_CENTER, fAlign));
        else
            return B_BAD_VALUE;
        return B_OK;
    };
    if (!BPrivate::answer_property(kStringViewProperties, message, get, set))
        BView::MessageReceived(message);
}
