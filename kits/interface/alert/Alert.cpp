// Windows with a question. Each runs its own loop; who waits for the answer sleeps.

#include <Alert.h>

#include <Bitmap.h>
#include <Button.h>
#include <Invoker.h>
#include <Message.h>
#include <OS.h>
#include <Screen.h>
#include <ScrollBar.h>
#include <TextView.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <new>
#include <string>
#include <utility>

#include <interface/alert/AlertIcon.h>
#include <interface/controls/Look.h>
#include <support/EnumNumbers.h>

using BPrivate::enum_up_to;

static const uint32 kPressed = 'ALTB';  // "which"
static const bigtime_t kRedraw_us = 50'000;

// Measures at 12 points.
static const float kMargin = 12;
static const float kStripe = 30;
static const float kIconLeft = 16;
static const float kIconSize = 32;
static const float kTextLeft = 60;
static const float kTextWidth = 310;
static const float kUsualButton = 75;
static const float kLabelMargin = 28;  // beside a label, in all
static const float kGap = 6;
static const float kApart = 30;  // a button that stands apart

// What a caller waits for. It outlives the alert.
struct BAlert::Answer {
    const sem_id told = create_sem(0, "alert");
    int32 which = -1;
    ~Answer() { delete_sem(told); }
};

// The window's ground: the stripe, and the sign on its edge.
class BAlert::Ground : public BView {
public:
    explicit Ground(BRect frame) : BView(frame, "_master_", B_FOLLOW_ALL, B_WILL_DRAW)
    {
        SetViewColor(ui_color(B_PANEL_BACKGROUND_COLOR));
        SetLowColor(ViewColor());
    }

    void Draw(BRect) override
    {
        if (fIcon == nullptr)
            return;
        const BPrivate::Look look(this);
        BRect stripe = Bounds();
        stripe.right = stripe.left + look.Scaled(kStripe) - 1;
        look.Fill(stripe, tint_color(ViewColor(), B_DARKEN_1_TINT));
        SetDrawingMode(B_OP_ALPHA);
        SetBlendingMode(B_PIXEL_ALPHA, B_ALPHA_OVERLAY);
        DrawBitmap(fIcon.get(), BPoint(look.Scaled(kIconLeft), look.Scaled(kMargin)));
        SetDrawingMode(B_OP_COPY);
    }
    void SetIcon(std::unique_ptr<BBitmap> icon)
    {
        fIcon = std::move(icon);
        Invalidate();
    }
    const BBitmap* Icon() const { return fIcon.get(); }

private:
    std::unique_ptr<BBitmap> fIcon;
};

static BPrivate::Look plain_look() { return BPrivate::Look(*be_plain_font); }

BAlert::BAlert()
    : BWindow(BRect(0, 0, 100, 100), "", B_MODAL_WINDOW,
              B_NOT_CLOSABLE | B_NOT_RESIZABLE | B_ASYNCHRONOUS_CONTROLS)
{
    _Init("");
}

BAlert::BAlert(const char* title, const char* text, const char* button1, const char* button2,
               const char* button3, button_width width, alert_type type)
    : BAlert(title, text, button1, button2, button3, width, B_EVEN_SPACING, type)
{
}

BAlert::BAlert(const char* title, const char* text, const char* button1, const char* button2,
               const char* button3, button_width width, button_spacing spacing, alert_type type)
    : BWindow(BRect(0, 0, 100, 100), title, B_MODAL_WINDOW,
              B_NOT_CLOSABLE | B_NOT_RESIZABLE | B_ASYNCHRONOUS_CONTROLS),
      fType(type),
      fWidth(width),
      fSpacing(spacing)
{
    _Init(text);
    for (const char* label : {button1, button2, button3}) {
        if (label != nullptr)
            AddButton(label);
    }
}

BAlert::BAlert(BMessage* data) : BWindow(data)
{
    const char* text = "";
    data->FindString("_text", &text);
    fType = enum_up_to(data->GetInt32("_atype", fType), B_STOP_ALERT, fType);
    fWidth = enum_up_to(data->GetInt32("_but_width", fWidth), B_WIDTH_FROM_LABEL, fWidth);
    fSpacing = enum_up_to(data->GetInt32("_but_spacing", fSpacing), B_OFFSET_SPACING, fSpacing);
    _Init(text);
    const char* label;
    for (int32 i = 0; data->FindString("_but_label", i, &label) == B_OK; i++) {
        uint8 key = 0;
        data->FindUInt8("_but_key", i, &key);
        AddButton(label, static_cast<char>(key));
    }
}

BAlert::~BAlert()
{
    if (fAnswer != nullptr)
        release_sem(fAnswer->told);
}

BArchivable* BAlert::Instantiate(BMessage* data)
{
    return validate_instantiation(data, "BAlert") ? new (std::nothrow) BAlert(data) : nullptr;
}

// The views inside are made anew of what the alert says.
status_t BAlert::Archive(BMessage* data, bool) const
{
    status_t status = BWindow::Archive(data, false);
    if (status == B_OK)
        status = data->AddString("_text", fText->Text());
    if (status == B_OK)
        status = data->AddInt32("_atype", fType);
    if (status == B_OK)
        status = data->AddInt32("_but_width", fWidth);
    if (status == B_OK)
        status = data->AddInt32("_but_spacing", fSpacing);
    for (const Button& button : fButtons) {
        if (status == B_OK)
            status = data->AddString("_but_label", button.view->Label());
        if (status == B_OK)
            status = data->AddUInt8("_but_key", static_cast<uint8>(button.key));
    }
    return status;
}

void BAlert::_Init(const char* text)
{
    fGround = new Ground(Bounds());
    AddChild(fGround);
    const BRect nowhere(0, 0, 10, 10);
    fText = new BTextView(nowhere, "_tv_", nowhere, B_FOLLOW_NONE, B_WILL_DRAW);
    fGround->AddChild(fText);
    fText->SetViewColor(fGround->ViewColor());
    fText->SetLowColor(fGround->ViewColor());
    fText->MakeEditable(false);
    fText->MakeSelectable(false);
    fText->SetWordWrap(true);
    fText->SetText(text != nullptr ? text : "");
    SetType(fType);
}

// --- what it shows

alert_type BAlert::Type() const { return fType; }

void BAlert::SetType(alert_type type)
{
    fType = type;
    const float size = plain_look().Scaled(kIconSize);
    fGround->SetIcon(fIcon != nullptr ? std::make_unique<BBitmap>(*fIcon)
                                      : BPrivate::alert_icon(type, static_cast<int32>(size)));
    _Layout();
}

void BAlert::SetIcon(BBitmap* bitmap)
{
    fIcon.reset(bitmap);
    SetType(fType);
}

void BAlert::SetText(const char* text)
{
    fText->SetText(text != nullptr ? text : "");
    _Layout();
}

void BAlert::SetButtonSpacing(button_spacing spacing)
{
    fSpacing = spacing;
    _Layout();
}

void BAlert::SetButtonWidth(button_width width)
{
    fWidth = width;
    _Layout();
}

void BAlert::SetShortcut(int32 buttonIndex, char key)
{
    if (buttonIndex >= 0 && buttonIndex < CountButtons())
        fButtons[size_t(buttonIndex)].key = key;
}

char BAlert::Shortcut(int32 buttonIndex) const
{
    const bool is_one = buttonIndex >= 0 && buttonIndex < CountButtons();
    return is_one ? fButtons[size_t(buttonIndex)].key : '\0';
}

void BAlert::AddButton(const char* label, char key)
{
    if (label == nullptr)
        return;
    auto* message = new BMessage(kPressed);
    message->AddInt32("which", CountButtons());
    const std::string name = "_b" + std::to_string(CountButtons()) + "_";
    auto* button = new BButton(BRect(0, 0, 10, 10), name.c_str(), label, message, B_FOLLOW_NONE,
                               B_WILL_DRAW | B_NAVIGABLE);
    fButtons.push_back({button, key});
    fGround->AddChild(button);
    SetDefaultButton(button);
    _Layout();
}

int32 BAlert::CountButtons() const { return static_cast<int32>(fButtons.size()); }

BButton* BAlert::ButtonAt(int32 index) const
{
    return index >= 0 && index < CountButtons() ? fButtons[size_t(index)].view : nullptr;
}

BTextView* BAlert::TextView() const { return fText; }

// --- places

// Each as wide as the label wants, and as the setting says. The default one has a ring outside.
void BAlert::_FitButtons()
{
    const BPrivate::Look look = plain_look();
    const float usual = look.Scaled(kUsualButton);
    float widest = 0;
    for (const Button& button : fButtons) {
        float width, height;
        button.view->GetPreferredSize(&width, &height);
        if (fWidth == B_WIDTH_AS_USUAL)
            width = std::max(width, usual);
        else
            width = look.TextWidth(button.view->Label()) + look.Scaled(kLabelMargin);
        widest = std::max(widest, width);
        button.view->ResizeTo(width, height);
    }
    if (fWidth != B_WIDTH_FROM_WIDEST)
        return;
    for (const Button& button : fButtons)
        button.view->ResizeTo(widest, button.view->Bounds().Height());
}

// Left of a button.
float BAlert::_ButtonGap(size_t index) const
{
    if (index == 0)
        return 0;
    const bool is_apart = index == 1 && fSpacing == B_OFFSET_SPACING && fButtons.size() >= 3;
    return plain_look().Scaled(is_apart ? kApart : kGap);
}

float BAlert::_ButtonsWidth() const
{
    float width = 0;
    for (size_t i = 0; i < fButtons.size(); i++)
        width += _ButtonGap(i) + fButtons[i].view->Bounds().Width() + 1;
    return width;
}

// As a row if that is not wider, else as a column.
float BAlert::_ButtonsHeight(float width) const
{
    float highest = 0, all = 0;
    for (const Button& button : fButtons) {
        const float height = button.view->Bounds().Height() + 1;
        highest = std::max(highest, height);
        all += height + (all > 0 ? plain_look().Scaled(kGap) : 0);
    }
    return _ButtonsWidth() > width ? all : highest;
}

// Up to the right; those of a row in its middle, those of a column no wider than there is room.
void BAlert::_LayoutButtons(float left, float top, float right)
{
    const bool is_row = _ButtonsWidth() <= right - left;
    const float height = _ButtonsHeight(right - left);
    float x = right - _ButtonsWidth();
    for (size_t i = 0; i < fButtons.size(); i++) {
        BButton* button = fButtons[i].view;
        const BRect size = button->Bounds();
        if (is_row) {
            x += _ButtonGap(i);
            button->MoveTo(x, top + std::floor((height - size.Height() - 1) / 2));
            x += size.Width() + 1;
            continue;
        }
        const float width = std::min(size.Width(), right - left - 1);
        button->ResizeTo(width, size.Height());
        button->MoveTo(right - width - 1, top);
        top += size.Height() + 1 + plain_look().Scaled(kGap);
    }
}

// With a bar to scroll it if it is too high. Returns its height.
float BAlert::_LayoutText(BPoint place, float width, float mostHeight)
{
    const float line = plain_look().LineHeight();
    const auto fit = [&](float wide) {
        fText->ResizeTo(wide - 1, line);
        fText->SetTextRect(BRect(0, 0, wide - 1, line));
        return std::ceil(fText->TextHeight(0, fText->CountLines() - 1));
    };
    if (fBar != nullptr) {
        fText->ScrollTo(B_ORIGIN);
        fBar->RemoveSelf();
        delete std::exchange(fBar, nullptr);
    }
    fText->MoveTo(place);
    float height = fit(width);
    if (height <= mostHeight) {
        fText->ResizeTo(width - 1, height);
        return height;
    }
    const float bar = plain_look().Scaled(B_V_SCROLL_BAR_WIDTH) + 1;
    const float gap = plain_look().Scaled(kGap);
    const float whole = fit(width - bar - gap);
    height = line * std::max(1.0f, std::floor(mostHeight / line));
    fText->ResizeTo(width - bar - gap - 1, height);
    const BRect frame(place.x + width - bar, place.y, place.x + width - 1, place.y + height);
    fBar = new BScrollBar(frame, "_bar_", fText, 0, 0, B_VERTICAL);
    fBar->SetResizingMode(B_FOLLOW_NONE);
    fGround->AddChild(fBar);
    fBar->SetRange(0, std::max(0.0f, whole - height));
    fBar->SetProportion(height / whole);
    fBar->SetSteps(line, height - line);
    return height;
}

// No larger than the screen, whatever it says: it has to be answered.
void BAlert::_Layout()
{
    const BPrivate::Look look = plain_look();
    const float margin = look.Scaled(kMargin);
    const BRect screen = BScreen().Frame();
    const BBitmap* icon = fGround->Icon();
    float text_left = margin;
    if (icon != nullptr)
        text_left = std::max(look.Scaled(kTextLeft),
                             look.Scaled(kIconLeft) + icon->Bounds().Width() + margin);
    _FitButtons();
    const float most_content = screen.Width() - text_left - 2 * margin;
    float wanted = _ButtonsWidth() + margin;
    if (wanted > most_content) {  // a column
        wanted = 0;
        for (const Button& button : fButtons)
            wanted = std::max(wanted, button.view->Bounds().Width() + 1);
    }
    const float content = std::min(std::max(look.Scaled(kTextWidth), wanted), most_content);
    const float right = text_left + content;
    const float buttons = _ButtonsHeight(right - text_left);

    const float most_text = screen.Height() - buttons - 4 * margin;
    const float text_height = _LayoutText(BPoint(text_left, margin), content, most_text);
    float bottom = margin + text_height;
    if (icon != nullptr)
        bottom = std::max(bottom, margin + icon->Bounds().Height() + 1);
    bottom += margin;
    _LayoutButtons(text_left, bottom, right);
    bottom += buttons;
    ResizeTo(right + margin, bottom + margin);
    BPoint place = AlertPosition(right + margin, bottom + margin);
    place.y = std::max(place.y, screen.top + std::floor(margin / 2));
    MoveTo(place);
}

// A little above the middle, as dialogues are looked for.
BPoint BAlert::AlertPosition(float width, float height)
{
    const BRect screen = BScreen().Frame();
    const float x = screen.left + std::floor((screen.Width() - width) / 2);
    const float y = screen.top + std::floor(screen.Height() / 4 - height / 3);
    return BPoint(std::max(screen.left, x), std::max(screen.top, y));
}

// --- the answer

int32 BAlert::Go()
{
    if (fButtons.empty())
        AddButton("OK");
    const auto answer = std::make_shared<Answer>();
    fAnswer = answer;
    auto* waiting = dynamic_cast<BWindow*>(BLooper::LooperForThread(find_thread(nullptr)));
    Show();
    // The alert is gone from here on.
    status_t status;
    do {
        status = waiting != nullptr
                     ? acquire_sem_etc(answer->told, 1, B_RELATIVE_TIMEOUT, kRedraw_us)
                     : acquire_sem(answer->told);
        if (waiting != nullptr && status == B_TIMED_OUT)
            waiting->UpdateIfNeeded();
    } while (status == B_INTERRUPTED || status == B_TIMED_OUT || status == B_WOULD_BLOCK);
    return answer->which;
}

status_t BAlert::Go(BInvoker* invoker)
{
    if (fButtons.empty())
        AddButton("OK");
    fInvoker = invoker;
    Show();
    return B_OK;
}

void BAlert::_Answer(int32 which)
{
    if (fIsAnswered)
        return;
    fIsAnswered = true;
    if (fAnswer != nullptr)
        fAnswer->which = which;
    if (fInvoker != nullptr && fInvoker->Message() != nullptr) {
        BMessage answer(*fInvoker->Message());
        answer.RemoveName("which");
        answer.AddInt32("which", which);
        fInvoker->Invoke(&answer);
    }
    PostMessage(B_QUIT_REQUESTED);
}

void BAlert::MessageReceived(BMessage* message)
{
    int32 which;
    if (message->what == kPressed && message->FindInt32("which", &which) == B_OK)
        _Answer(which);
    else
        BWindow::MessageReceived(message);
}

void BAlert::FrameResized(float newWidth, float newHeight)
{
    BWindow::FrameResized(newWidth, newHeight);
}

BHandler* BAlert::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier, int32 form,
                                   const char* property)
{
    return BWindow::ResolveSpecifier(message, index, specifier, form, property);
}

status_t BAlert::GetSupportedSuites(BMessage* data) { return BWindow::GetSupportedSuites(data); }

static char lower(char key) { return static_cast<char>(tolower(static_cast<uint8>(key))); }

void BAlert::DispatchMessage(BMessage* message, BHandler* handler)
{
    const char* bytes;
    if (message->what == B_KEY_DOWN && message->FindString("bytes", &bytes) == B_OK &&
        bytes[0] != '\0' && bytes[1] == '\0') {
        for (const Button& button : fButtons) {
            if (button.key != '\0' && lower(button.key) == lower(bytes[0])) {
                button.view->Invoke();
                return;
            }
        }
    }
    BWindow::DispatchMessage(message, handler);
}

void BAlert::Quit() { BWindow::Quit(); }

bool BAlert::QuitRequested() { return BWindow::QuitRequested(); }

status_t BAlert::Perform(perform_code d, void* arg) { return BWindow::Perform(d, arg); }
