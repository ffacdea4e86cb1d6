// A label beside a field for one line of text.

#include <TextControl.h>

#include <Message.h>
#include <PropertyInfo.h>
#include <TextView.h>
#include <TypeConstants.h>
#include <Window.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>
#include <string>

#include <app/looper/Scripting.h>
#include <interface/controls/ControlPrivate.h>
#include <support/EnumNumbers.h>

using BPrivate::enum_up_to;
using BPrivate::Look;

static const float kMargin = 2;  // around the field, for its frame
static const float kInset = 2;   // from the field's edges to its text
static const float kLines = 3;   // the field's preferred width, in heights of a line

static const property_info kProperties[] = {
    SCRIPT_VALUE("Value", B_STRING_TYPE),
    SCRIPT_VALUE("Text", B_STRING_TYPE),
    {},
};

// --- the field

class BTextControl::Input : public BTextView {
public:
    explicit Input(BTextControl* control, uint32 flags)
        : BTextView(BRect(0, 0, 10, 10), "_input_", BRect(0, 0, 10, 10), B_FOLLOW_ALL, flags),
          fControl(control)
    {
        SetWordWrap(false);
        SetInsets(kInset, kInset, kInset, kInset);
    }

    void MouseDown(BPoint where) override
    {
        if (fControl->IsEnabled())
            BTextView::MouseDown(where);
    }
    void KeyDown(const char* bytes, int32 numBytes) override
    {
        const char key = numBytes == 1 ? bytes[0] : '\0';
        if (key == B_TAB)
            BView::KeyDown(bytes, numBytes);  // to the next view
        else if (key != B_ENTER)
            BTextView::KeyDown(bytes, numBytes);
        else if (fControl->IsEnabled())
            _Enter();
    }
    void MakeFocus(bool focus) override
    {
        const bool before = IsFocus();
        BTextView::MakeFocus(focus);
        if (IsFocus() == before)
            return;
        fControl->Invalidate();
        if (IsFocus()) {
            KeepText();
            // Who comes with the keyboard types in the place of it all.
            const BMessage* cause = Window()->CurrentMessage();
            if (cause != nullptr && cause->what == B_KEY_DOWN)
                SelectAll();
        } else {
            int32 start, end;
            GetSelection(&start, &end);
            Select(start, start);
            TellChange();
        }
    }
    // What the text is compared with when the user is done with it.
    void KeepText() { fKept = Text(); }
    void TellChange()
    {
        if (fKept == Text())
            return;
        KeepText();
        fControl->Invoke();
    }

protected:
    void InsertText(const char* text, int32 length, int32 offset,
                    const text_run_array* runs) override
    {
        const auto ends_line = [](char c) { return c == '\n' || c == '\r'; };
        if (std::none_of(text, text + length, ends_line)) {
            BTextView::InsertText(text, length, offset, runs);
        } else {
            std::string line(text, static_cast<size_t>(length));
            std::replace_if(line.begin(), line.end(), ends_line, ' ');
            BTextView::InsertText(line.data(), length, offset, runs);
        }
        _Modified();
    }
    void DeleteText(int32 from, int32 to) override
    {
        BTextView::DeleteText(from, to);
        _Modified();
    }

private:
    void _Enter()
    {
        TellChange();
        SelectAll();
    }
    void _Modified()
    {
        fControl->InvokeNotify(fControl->fModificationMessage.get(), B_CONTROL_MODIFIED);
    }

    BTextControl* const fControl;
    std::string fKept;
};

// --- construction

BTextControl::BTextControl(BRect frame, const char* name, const char* label,
                           const char* initialText, BMessage* message, uint32 resizeMask,
                           uint32 flags)
    : BControl(frame, name, label, message, resizeMask,
               (flags & ~B_NAVIGABLE) | B_FRAME_EVENTS | B_FULL_UPDATE_ON_RESIZE)
{
    _Init(initialText, flags);
}

BTextControl::BTextControl(const char* name, const char* label, const char* initialText,
                           BMessage* message, uint32 flags)
    : BTextControl(BRect(), name, label, initialText, message, B_FOLLOW_NONE, flags)
{
    ResizeToPreferred();
}

BTextControl::BTextControl(const char* label, const char* initialText, BMessage* message)
    : BTextControl(nullptr, label, initialText, message)
{
}

void BTextControl::_Init(const char* initialText, uint32 flags)
{
    fInput = new Input(this, B_WILL_DRAW | B_PULSE_NEEDED | (flags & B_NAVIGABLE));
    AddChild(fInput);
    fDivider = Label() != nullptr ? std::floor(Bounds().Width() / 2) : 0;
    float height;
    BTextControl::GetPreferredSize(nullptr, &height);
    ResizeTo(Bounds().Width(), height);
    _PlaceInput();
    fInput->SetText(initialText);
    fInput->KeepText();
    _ShowEnabled();
}

BTextControl::~BTextControl() { SetModificationMessage(nullptr); }

BTextControl::BTextControl(BMessage* archive) : BControl(archive)
{
    while (BView* child = ChildAt(0)) {
        child->RemoveSelf();
        delete child;
    }
    const BRect frame = Frame();
    bool navigable = true;
    const char* text = nullptr;
    if (archive != nullptr) {
        archive->FindString("_text", &text);
        archive->FindBool("be:wants_nav", &navigable);
    }
    _Init(text, navigable ? B_NAVIGABLE : 0);
    ResizeTo(frame.Width(), frame.Height());
    if (archive == nullptr)
        return;
    BTextControl::SetAlignment(
        enum_up_to(archive->GetInt32("_a_label", B_ALIGN_LEFT), B_ALIGN_CENTER, B_ALIGN_LEFT),
        enum_up_to(archive->GetInt32("_a_text", B_ALIGN_LEFT), B_ALIGN_CENTER, B_ALIGN_LEFT));
    float divider;
    if (archive->FindFloat("_divide", &divider) == B_OK)
        BTextControl::SetDivider(divider);
    BMessage message;
    if (archive->FindMessage("_mod_msg", &message) == B_OK)
        BTextControl::SetModificationMessage(new BMessage(message));
    if (!IsEnabled()) {
        fNavigable = navigable;
        fInput->SetFlags(fInput->Flags() & ~B_NAVIGABLE);
        fInput->_SetDisabled(true);
    }
}

BArchivable* BTextControl::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "BTextControl") ? new (std::nothrow)
                                                                 BTextControl(archive)
                                                           : nullptr;
}

// The field is made anew, and not archived as a child.
status_t BTextControl::Archive(BMessage* archive, bool) const
{
    status_t status = BControl::Archive(archive, false);
    if (status == B_OK)
        status = archive->AddString("_text", Text());
    if (status == B_OK)
        status = archive->AddInt32("_a_label", fLabelAlign);
    if (status == B_OK)
        status = archive->AddInt32("_a_text", fInput->Alignment());
    if (status == B_OK)
        status = archive->AddFloat("_divide", fDivider);
    if (status == B_OK && fModificationMessage != nullptr)
        status = archive->AddMessage("_mod_msg", fModificationMessage.get());
    const bool navigable = fNavigable || (fInput->Flags() & B_NAVIGABLE) != 0;
    if (status == B_OK) {
        archive->RemoveName("be:wants_nav");
        status = archive->AddBool("be:wants_nav", navigable);
    }
    return status;
}

status_t BTextControl::AllArchived(BMessage* into) const { return BControl::AllArchived(into); }
status_t BTextControl::AllUnarchived(const BMessage* from) { return BControl::AllUnarchived(from); }

// --- the text

void BTextControl::SetText(const char* text)
{
    if (InvokeKind() != B_CONTROL_INVOKED)
        return;
    fInput->SetText(text);
    fInput->KeepText();
    if (fInput->IsFocus())
        fInput->SelectAll();
}

const char* BTextControl::Text() const { return fInput->Text(); }
int32 BTextControl::TextLength() const { return fInput->TextLength(); }
BTextView* BTextControl::TextView() const { return fInput; }

void BTextControl::MarkAsInvalid(bool invalid)
{
    if (invalid == fInvalid)
        return;
    fInvalid = invalid;
    Invalidate();
}

void BTextControl::SetValue(int32 value) { BControl::SetValue(value); }
status_t BTextControl::Invoke(BMessage* message) { return BControl::Invoke(message); }

void BTextControl::SetModificationMessage(BMessage* message)
{
    fModificationMessage.reset(message);
}

BMessage* BTextControl::ModificationMessage() const { return fModificationMessage.get(); }

// --- layout

void BTextControl::_PlaceInput()
{
    BRect frame = Bounds();
    frame.left = fDivider;
    frame.InsetBy(kMargin, kMargin);
    fInput->MoveTo(frame.LeftTop());
    fInput->ResizeTo(frame.Width(), frame.Height());
    Invalidate();
}

void BTextControl::SetAlignment(alignment label, alignment text)
{
    fLabelAlign = label;
    fInput->SetAlignment(text);
    Invalidate();
}

void BTextControl::GetAlignment(alignment* _label, alignment* _text) const
{
    if (_label != nullptr)
        *_label = fLabelAlign;
    if (_text != nullptr)
        *_text = fInput->Alignment();
}

void BTextControl::SetDivider(float position)
{
    fDivider = std::floor(position + 0.5f);
    _PlaceInput();
}

float BTextControl::Divider() const { return fDivider; }

void BTextControl::GetPreferredSize(float* _width, float* _height)
{
    const Look look(this);
    BFont font;
    fInput->GetFontAndColor(0, &font);
    const Look field(font);
    const float label =
        Label() != nullptr ? std::ceil(look.TextWidth(Label())) + look.LabelSpacing() : 0;
    if (_width != nullptr)
        *_width = std::max(label, fDivider) + kLines * field.LineHeight() + 2 * (kMargin + kInset);
    if (_height != nullptr)
        *_height = std::max(field.TextHeight() + 1 + 2 * (kMargin + kInset),
                            look.Ascent() + look.Descent());
}

void BTextControl::ResizeToPreferred()
{
    BControl::ResizeToPreferred();
    _PlaceInput();
}

BSize BTextControl::MinSize() { return PreferredSize(); }
BSize BTextControl::MaxSize() { return BSize(B_SIZE_UNLIMITED, PreferredSize().height); }

BSize BTextControl::PreferredSize()
{
    BSize size;
    GetPreferredSize(&size.width, &size.height);
    return size;
}

BAlignment BTextControl::LayoutAlignment() { return BControl::LayoutAlignment(); }
BLayoutItem* BTextControl::CreateLabelLayoutItem() { return nullptr; }
BLayoutItem* BTextControl::CreateTextViewLayoutItem() { return nullptr; }

void BTextControl::FrameMoved(BPoint where) { BControl::FrameMoved(where); }

void BTextControl::FrameResized(float width, float height)
{
    BControl::FrameResized(width, height);
    Invalidate();
}

void BTextControl::LayoutInvalidated(bool descendants) { BControl::LayoutInvalidated(descendants); }
void BTextControl::DoLayout() { BControl::DoLayout(); }

// --- what it shows

uint32 BTextControl::_State() const
{
    if (!IsEnabled())
        return Look::kDisabled;
    return BPrivate::shows_focus(fInput) ? Look::kFocused : Look::kPlain;
}

void BTextControl::Draw(BRect)
{
    const Look look(this);
    const BRect frame = fInput->Frame().InsetByCopy(-kMargin, -kMargin);
    const rgb_color failure = ui_color(B_FAILURE_COLOR);
    if (fInvalid)
        look.DrawEdges(look.DrawEdges(frame, failure), failure);
    else
        look.DrawBorder(frame, B_FANCY_BORDER, _State());
    const float room = fDivider - look.LabelSpacing();
    if (Label() != nullptr && room > 0)
        look.DrawLabel(Label(), BRect(0, 0, room, Bounds().bottom), fLabelAlign,
                       IsEnabled() ? Look::kPlain : Look::kDisabled);
}

void BTextControl::AttachedToWindow()
{
    BControl::AttachedToWindow();
    _ShowEnabled();
}

// Ground and text of the field, by whether it is enabled.
void BTextControl::_ShowEnabled()
{
    const Look look(this);
    const uint32 state = IsEnabled() ? Look::kPlain : Look::kDisabled;
    const rgb_color ground = look.Well(state);
    const rgb_color ink = ui_color(B_DOCUMENT_TEXT_COLOR);
    const rgb_color text = IsEnabled() ? ink : Look::Mix(ground, ink, B_DISABLED_LABEL_TINT - 1);
    fInput->SetViewColor(ground);
    fInput->SetLowColor(ground);
    fInput->SetFontAndColor(0, fInput->TextLength(), nullptr, 0, &text);
    fInput->Invalidate();
}

void BTextControl::SetEnabled(bool enable)
{
    if (enable == IsEnabled())
        return;
    const uint32 flags = fInput->Flags();
    if (enable) {
        fInput->SetFlags(fNavigable ? flags | B_NAVIGABLE : flags);
    } else {
        fNavigable = (flags & B_NAVIGABLE) != 0;
        fInput->SetFlags(flags & ~B_NAVIGABLE);
    }
    fInput->_SetDisabled(!enable);
    BControl::SetEnabled(enable);
    if (enable)
        fNavigable = false;
    _ShowEnabled();
}

void BTextControl::WindowActivated(bool active)
{
    BControl::WindowActivated(active);
    if (fInput->IsFocus())
        Invalidate();
}

status_t BTextControl::SetIcon(const BBitmap* icon, uint32 flags)
{
    return BControl::SetIcon(icon, flags);
}

// --- input

void BTextControl::MouseDown(BPoint)
{
    if (IsEnabled() && !fInput->IsFocus())
        MakeFocus(true);
}

void BTextControl::MakeFocus(bool focus)
{
    if (focus == fInput->IsFocus())
        return;
    fInput->MakeFocus(focus);
    if (focus)
        fInput->SelectAll();
}

// The field is what can be navigated to.
void BTextControl::SetFlags(uint32 flags)
{
    const uint32 own = fInput->Flags() & ~B_NAVIGABLE;
    fInput->SetFlags(own | (flags & B_NAVIGABLE));
    BControl::SetFlags(flags & ~B_NAVIGABLE);
}

void BTextControl::MouseUp(BPoint where) { BControl::MouseUp(where); }
void BTextControl::DetachedFromWindow() { BControl::DetachedFromWindow(); }
void BTextControl::AllAttached() { BControl::AllAttached(); }
void BTextControl::AllDetached() { BControl::AllDetached(); }
status_t BTextControl::Perform(perform_code d, void* arg) { return BControl::Perform(d, arg); }

void BTextControl::MouseMoved(BPoint where, uint32 transit, const BMessage* dragMessage)
{
    BControl::MouseMoved(where, transit, dragMessage);
}

// --- scripting

BHandler* BTextControl::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                         int32 what, const char* property)
{
    if (BPrivate::knows_property(kProperties, message, index, specifier, what, property))
        return this;
    return BControl::ResolveSpecifier(message, index, specifier, what, property);
}

status_t BTextControl::GetSupportedSuites(BMessage* data)
{
    const status_t status = BPrivate::add_suite(data, "suite/vnd.Be-text-control", kProperties);
    return status == B_OK ? BControl::GetSupportedSuites(data) : status;
}

void BTextControl::MessageReceived(BMessage* message)
{
    const auto get = [this](const char*, BMessage* reply) {
        return reply->AddString("result", Text());
    };
    const auto set = [this](const char*, const BMessage& data) -> status_t {
        const char* text;
        if (data.FindString("data", &text) != B_OK)
            return B_BAD_VALUE;
        SetText(text);
        return B_OK;
    };
    if (!BPrivate::answer_property(kProperties, message, get, set))
        BControl::MessageReceived(message);
}
