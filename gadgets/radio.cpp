// Radio groups: a view that holds one button for each label. Hooks run on the window's thread, or
// on that of a call that has the window locked.

#include "gadgets/kinds.h"
#include "plinth.h"

#include <InterfaceDefs.h>
#include <RadioButton.h>
#include <Window.h>

#include <algorithm>

static const float kSpacing = 0;  // between two buttons

class MyRadio : public BRadioButton {
public:
    MyRadio(MyGadget* gadget, int32_t index, BRect frame, const char* label)
        : BRadioButton(frame, nullptr, label, nullptr), fGadget(gadget), fIndex(index)
    {
    }

    void AttachedToWindow() override
    {
        BRadioButton::AttachedToWindow();
        take_ground(this);
    }
    void MouseDown(BPoint where) override
    {
        if (!IsEnabled() || !is_primary_press(this))
            return;
        BRadioButton::MouseDown(where);
        tell_press(this, *fGadget);
    }
    void KeyDown(const char* bytes, int32 count) override;
    void SetValue(int32 value) override;

private:
    bool _FocusIsInGroup() const;
    void _Leave(bool backwards);

    MyGadget* const fGadget;
    const int32 fIndex;
};

bool MyRadio::_FocusIsInGroup() const
{
    const BView* focus = Window() != nullptr ? Window()->CurrentFocus() : nullptr;
    return focus != nullptr && focus->Parent() == Parent();
}

void MyRadio::SetValue(int32 value)
{
    if (value != B_CONTROL_OFF) {
        fGadget->selection = fIndex;
        call_handler(*fGadget, &MyGadget::value_handler, int32_t{fIndex});
        if ((fGadget->flags & kTakesFocus) != 0 || _FocusIsInGroup())
            MakeFocus(true);
    }
    BRadioButton::SetValue(value);
}

static void choose(BView* view)
{
    auto* radio = dynamic_cast<BRadioButton*>(view);
    if (radio == nullptr)
        return;
    radio->SetValue(B_CONTROL_ON);
    radio->MakeFocus(true);
}

static BView* last_child(const BView* view) { return view->ChildAt(view->CountChildren() - 1); }

// Tab goes on behind the group, Shift and Tab to the last control beside it that is enabled.
void MyRadio::_Leave(bool backwards)
{
    BView* group = Parent();
    if (!backwards) {
        if (BView* next = group->NextSibling())
            next->MakeFocus(true);
        return;
    }
    BView* around = group->Parent();
    for (BView* view = around != nullptr ? last_child(around) : nullptr; view != nullptr;
         view = view->PreviousSibling()) {
        auto* control = dynamic_cast<BControl*>(view);
        if (control != nullptr && control->IsEnabled()) {
            control->MakeFocus(true);
            return;
        }
    }
}

// The base is not asked: Space and Enter choose nothing, which Tab's way and the arrows do.
void MyRadio::KeyDown(const char* bytes, int32 count)
{
    if (count != 1 || Parent() == nullptr)
        return;
    switch (bytes[0]) {
        case B_UP_ARROW:
            choose(PreviousSibling() != nullptr ? PreviousSibling() : last_child(Parent()));
            break;
        case B_DOWN_ARROW:
            choose(NextSibling() != nullptr ? NextSibling() : Parent()->ChildAt(0));
            break;
        case B_TAB:
            _Leave((held_modifiers(this) & B_SHIFT_KEY) != 0);
            break;
        default:
            call_key_handler(this, *fGadget, bytes);
    }
}

// Holds the buttons of a group.
class MyBView : public BView {
public:
    explicit MyBView(BRect frame) : BView(frame, nullptr, B_FOLLOW_LEFT_TOP, B_WILL_DRAW) {}
    void AttachedToWindow() override { take_ground(this); }
};

// The size that the buttons take: each as wide as the widest and as high as the first.
static BSize button_size(const BView* group)
{
    BSize size(0, 0);
    for (BView* radio = group->ChildAt(0); radio != nullptr; radio = radio->NextSibling()) {
        float width, height;
        radio->GetPreferredSize(&width, &height);
        size.width = std::max(size.width, width);
        if (radio == group->ChildAt(0))
            size.height = height;
    }
    return size;
}

// One row short, so that the last button shows as far as the frame lets it: kept on purpose.
static BSize group_size(const BView* group, BSize button)
{
    return BSize(button.width, button.height * static_cast<float>(group->CountChildren() - 1));
}

static void place_buttons(const BView* group, BSize size)
{
    float top = 0;
    for (BView* radio = group->ChildAt(0); radio != nullptr; radio = radio->NextSibling()) {
        radio->MoveTo(0, top);
        radio->ResizeTo(size.width, size.height);
        top += size.height + kSpacing;
    }
}

BView* create_radio(const GadgetSpec& spec)
{
    const char* const* labels = spec.Texts();
    const int32_t count = count_labels(labels);
    if (count < 1)
        return nullptr;
    auto* group = new MyBView(spec.frame);
    for (int32_t i = 0; i < count; i++)
        group->AddChild(new MyRadio(spec.record, i, BRect(0, 0, 0, 0), labels[i]));
    const BSize button = button_size(group), size = group_size(group, button);
    group->ResizeTo(size.width, size.height);
    place_buttons(group, button);
    return group;
}

// A group that the program made larger or smaller stays so by as much.
void fit_radio(BView* group)
{
    const BView* first = group->ChildAt(0);
    const BSize before = group_size(group, BSize(first->Frame().Width(), first->Frame().Height()));
    const BSize button = button_size(group), size = group_size(group, button);
    group->ResizeBy(size.width - before.width, size.height - before.height);
    place_buttons(group, button);
}

extern "C" void RadSelected(int32_t ident, int32_t index)
{
    on_gadget<BView>(ident, kRadioGroup, Unlocked::Skip, [=](BView& group, MyGadget& gadget) {
        int32_t i = 0;
        for (BView* view = group.ChildAt(0); view != nullptr; view = view->NextSibling(), i++) {
            if (auto* radio = dynamic_cast<BRadioButton*>(view))
                radio->SetValue(i == index ? B_CONTROL_ON : B_CONTROL_OFF);
        }
        gadget.selection = index;
    });
}
