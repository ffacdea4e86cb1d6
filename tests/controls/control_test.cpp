// Buttons, check boxes and radio buttons as pointer and keys work them, in a window in memory.

#include <Bitmap.h>
#include <Box.h>
#include <Button.h>
#include <CheckBox.h>
#include <ColorControl.h>
#include <Picture.h>
#include <PictureButton.h>
#include <RadioButton.h>
#include <StringView.h>
#include <TextControl.h>
#include <TextView.h>

#include <gtest/gtest.h>

#include <tests/interface/window_harness.h>

using namespace window_test;

static const uint32 kGo = 'GOGO';

namespace {

class ControlTest : public WindowTest {
protected:
    void SetUp() override { Make(200, 150, B_ASYNCHRONOUS_CONTROLS); }

    template <class Control>
    Control* Put(BRect frame, const char* label, uint32 what = kGo)
    {
        auto* control = new Control(frame, label, label, new BMessage(what));
        window->AddChild(control);
        return control;
    }
    int Invocations() { return log.Count("message GOGO"); }
    int32 LastValue()
    {
        int32 value = -1;
        log.Message("message GOGO").FindInt32("be:value", &value);
        return value;
    }
    int32 ValueOf(const BControl* control)
    {
        window->Lock();
        const int32 value = control->Value();
        window->Unlock();
        return value;
    }
    void Focus(BView* view)
    {
        window->Lock();
        view->MakeFocus(true);
        window->Unlock();
    }
    void Down(float x, float y)
    {
        inject_pointer(100 + x, 100 + y);
        inject_button(1, true);
    }
    void Up()
    {
        inject_button(1, false);
        Settle();
    }
    void Move(float x, float y) { inject_pointer(100 + x, 100 + y); }
    void ClickAt(float x, float y)
    {
        Down(x, y);
        Up();
    }
};

}  // namespace

// --- buttons

TEST_F(ControlTest, ButtonSendsItsMessageWhenReleasedInside)
{
    BButton* button = Put<BButton>(BRect(10, 10, 90, 34), "Go");
    Start();
    Down(20, 20);
    Settle();
    EXPECT_EQ(ValueOf(button), B_CONTROL_ON);
    EXPECT_EQ(Invocations(), 0);
    Up();
    EXPECT_EQ(Invocations(), 1);
    EXPECT_EQ(LastValue(), B_CONTROL_ON);
    EXPECT_EQ(ValueOf(button), B_CONTROL_OFF);
    void* source = nullptr;
    EXPECT_EQ(log.Message("message GOGO").FindPointer("source", &source), B_OK);
    EXPECT_EQ(source, button);
    EXPECT_TRUE(log.Message("message GOGO").HasInt64("when"));
    EXPECT_TRUE(log.Message("message GOGO").HasMessenger("be:sender"));
}

TEST_F(ControlTest, ButtonReleasedOutsideSendsNothing)
{
    BButton* button = Put<BButton>(BRect(10, 10, 90, 34), "Go");
    Start();
    Down(20, 20);
    Move(150, 100);
    Settle();
    EXPECT_EQ(ValueOf(button), B_CONTROL_OFF);
    Up();
    EXPECT_EQ(Invocations(), 0);
    EXPECT_EQ(ValueOf(button), B_CONTROL_OFF);
}

TEST_F(ControlTest, ButtonIsPressedAgainWhenThePointerComesBack)
{
    BButton* button = Put<BButton>(BRect(10, 10, 90, 34), "Go");
    Start();
    Down(20, 20);
    Move(150, 100);
    Settle();
    Move(30, 20);
    Settle();
    EXPECT_EQ(ValueOf(button), B_CONTROL_ON);
    Up();
    EXPECT_EQ(Invocations(), 1);
}

TEST_F(ControlTest, ReleaseWithoutAPressIsNoClick)
{
    Put<BButton>(BRect(10, 10, 90, 34), "Go");
    Start();
    Down(150, 100);
    Move(20, 20);
    Up();
    EXPECT_EQ(Invocations(), 0);
}

TEST_F(ControlTest, DisabledControlsTakeNoPressAndNoKey)
{
    BButton* button = Put<BButton>(BRect(10, 10, 90, 34), "Go");
    BCheckBox* box = Put<BCheckBox>(BRect(10, 50, 90, 70), "Box");
    BRadioButton* radio = Put<BRadioButton>(BRect(10, 80, 90, 100), "Radio");
    for (BControl* control : {static_cast<BControl*>(button), static_cast<BControl*>(box),
                              static_cast<BControl*>(radio)})
        control->SetEnabled(false);
    Start();
    ClickAt(20, 20);
    ClickAt(20, 60);
    ClickAt(20, 90);
    for (BView* view :
         {static_cast<BView*>(button), static_cast<BView*>(box), static_cast<BView*>(radio)}) {
        Focus(view);
        Press(kKeySpace);
        Press(kKeyEnter);
    }
    Settle();
    EXPECT_EQ(Invocations(), 0);
    EXPECT_EQ(ValueOf(box), B_CONTROL_OFF);
    EXPECT_EQ(ValueOf(radio), B_CONTROL_OFF);
}

TEST_F(ControlTest, ButtonDisabledWhileItIsHeldIsLetGo)
{
    BButton* button = Put<BButton>(BRect(10, 10, 90, 34), "Go");
    Start();
    Down(20, 20);
    Settle();
    window->Lock();
    button->SetEnabled(false);
    window->Unlock();
    EXPECT_EQ(ValueOf(button), B_CONTROL_OFF);
    Up();
    EXPECT_EQ(Invocations(), 0);
}

TEST_F(ControlTest, SpaceAndEnterPressTheButtonThatHasTheFocus)
{
    BButton* button = Put<BButton>(BRect(10, 10, 90, 34), "Go");
    Start();
    Focus(button);
    Press(kKeySpace);
    Settle();
    EXPECT_EQ(Invocations(), 1);
    Press(kKeyEnter);
    Settle();
    EXPECT_EQ(Invocations(), 2);
    Press(kKeyA);
    Settle();
    EXPECT_EQ(Invocations(), 2);
    EXPECT_EQ(ValueOf(button), B_CONTROL_OFF);
}

TEST_F(ControlTest, ToggleButtonsStay)
{
    BButton* button = Put<BButton>(BRect(10, 10, 90, 34), "Go");
    button->SetBehavior(BButton::B_TOGGLE_BEHAVIOR);
    Start();
    ClickAt(20, 20);
    EXPECT_EQ(ValueOf(button), B_CONTROL_ON);
    EXPECT_EQ(LastValue(), B_CONTROL_ON);
    ClickAt(20, 20);
    EXPECT_EQ(ValueOf(button), B_CONTROL_OFF);
    EXPECT_EQ(Invocations(), 2);
}

TEST_F(ControlTest, ArrowOfAPopUpButtonSendsItsOwnMessage)
{
    BButton* button = Put<BButton>(BRect(10, 10, 90, 34), "Go");
    button->SetBehavior(BButton::B_POP_UP_BEHAVIOR);
    button->SetPopUpMessage(new BMessage('POPU'));
    Start();
    ClickAt(87, 20);
    EXPECT_EQ(log.Lines({"message"}), "message POPU");
    ClickAt(20, 20);
    EXPECT_EQ(Invocations(), 1);
}

TEST_F(ControlTest, ButtonInAWindowOfSynchronousControlsStaysInItsPress)
{
    window->Lock();
    window->SetFlags(0);
    window->Unlock();
    BButton* button = Put<BButton>(BRect(10, 10, 90, 34), "Go");
    Start();
    Down(20, 20);
    inject_button(1, false);
    Settle();
    EXPECT_EQ(Invocations(), 1);
    EXPECT_EQ(ValueOf(button), B_CONTROL_OFF);
}

TEST_F(ControlTest, DefaultButtonGetsEnterFromElsewhereAndIsLarger)
{
    BButton* button = Put<BButton>(BRect(10, 10, 90, 34), "Go");
    BButton* other = Put<BButton>(BRect(10, 60, 90, 84), "Other", 'OTHR');
    Start();
    window->Lock();
    const BRect before = button->Frame();
    button->MakeDefault(true);
    EXPECT_EQ(button->Frame(), before.InsetByCopy(-3, -3));
    EXPECT_EQ(window->DefaultButton(), button);
    other->MakeFocus(true);
    window->Unlock();
    Press(kKeyEnter);
    Settle();
    EXPECT_EQ(Invocations(), 1);
    EXPECT_EQ(log.Count("message OTHR"), 0);

    window->Lock();
    window->SetDefaultButton(other);
    EXPECT_FALSE(button->IsDefault());
    EXPECT_TRUE(other->IsDefault());
    EXPECT_EQ(button->Frame(), before);
    window->SetDefaultButton(nullptr);
    EXPECT_FALSE(other->IsDefault());
    window->Unlock();
}

TEST_F(ControlTest, DefaultButtonThatLeavesIsForgotten)
{
    BButton* button = Put<BButton>(BRect(10, 10, 90, 34), "Go");
    Start();
    window->Lock();
    button->MakeDefault(true);
    button->RemoveSelf();
    EXPECT_EQ(window->DefaultButton(), nullptr);
    window->AddChild(button);
    EXPECT_EQ(window->DefaultButton(), button);
    delete button;
    EXPECT_EQ(window->DefaultButton(), nullptr);
    window->Unlock();
    Press(kKeyEnter);
    Settle();
    EXPECT_EQ(Invocations(), 0);
}

// --- check boxes

TEST_F(ControlTest, CheckBoxTurnsOverAtTheRelease)
{
    BCheckBox* box = Put<BCheckBox>(BRect(10, 10, 90, 30), "Box");
    Start();
    Down(60, 20);
    Settle();
    EXPECT_EQ(ValueOf(box), B_CONTROL_OFF);
    Up();
    EXPECT_EQ(ValueOf(box), B_CONTROL_ON);
    EXPECT_EQ(LastValue(), B_CONTROL_ON);
    ClickAt(15, 20);
    EXPECT_EQ(ValueOf(box), B_CONTROL_OFF);
    Down(15, 20);
    Move(150, 100);
    Up();
    EXPECT_EQ(ValueOf(box), B_CONTROL_OFF);
    EXPECT_EQ(Invocations(), 2);
}

TEST_F(ControlTest, PartialStateGoesOnOrOffAsSet)
{
    BCheckBox* box = Put<BCheckBox>(BRect(10, 10, 90, 30), "Box");
    box->SetValue(B_CONTROL_PARTIALLY_ON);
    Start();
    ClickAt(15, 20);
    EXPECT_EQ(ValueOf(box), B_CONTROL_ON);
    window->Lock();
    box->SetPartialStateToOff(true);
    box->SetValue(B_CONTROL_PARTIALLY_ON);
    window->Unlock();
    Focus(box);
    Press(kKeySpace);
    Settle();
    EXPECT_EQ(ValueOf(box), B_CONTROL_OFF);
}

// --- radio buttons

TEST_F(ControlTest, RadioButtonTurnsTheOthersOff)
{
    BRadioButton* a = Put<BRadioButton>(BRect(10, 10, 90, 30), "A");
    BRadioButton* b = Put<BRadioButton>(BRect(10, 40, 90, 60), "B");
    BCheckBox* box = Put<BCheckBox>(BRect(10, 70, 90, 90), "Box");
    box->SetValue(B_CONTROL_ON);
    Start();
    ClickAt(15, 20);
    EXPECT_EQ(ValueOf(a), B_CONTROL_ON);
    ClickAt(15, 50);
    EXPECT_EQ(ValueOf(a), B_CONTROL_OFF);
    EXPECT_EQ(ValueOf(b), B_CONTROL_ON);
    EXPECT_EQ(ValueOf(box), B_CONTROL_ON);
    ClickAt(15, 50);
    EXPECT_EQ(ValueOf(b), B_CONTROL_ON);
    EXPECT_EQ(Invocations(), 3);
}

TEST_F(ControlTest, RadioButtonThatLabelsABoxBelongsToThoseBesideTheBox)
{
    BRadioButton* beside = Put<BRadioButton>(BRect(10, 10, 90, 30), "A");
    auto* box = new BBox(BRect(10, 40, 190, 140), "box");
    auto* label = new BRadioButton(BRect(0, 0, 60, 20), "label", "B", nullptr);
    auto* inside = new BRadioButton(BRect(10, 30, 90, 50), "inside", "C", nullptr);
    box->SetLabel(label);
    box->AddChild(inside);
    window->AddChild(box);
    Start();
    window->Lock();
    inside->SetValue(B_CONTROL_ON);
    beside->SetValue(B_CONTROL_ON);
    EXPECT_EQ(inside->Value(), B_CONTROL_ON);
    label->SetValue(B_CONTROL_ON);
    EXPECT_EQ(beside->Value(), B_CONTROL_OFF);
    EXPECT_EQ(inside->Value(), B_CONTROL_ON);
    beside->SetValue(B_CONTROL_ON);
    EXPECT_EQ(label->Value(), B_CONTROL_OFF);
    window->Unlock();
}

// --- the keyboard's way

TEST_F(ControlTest, TabGoesRoundAndPassesDisabledControlsBy)
{
    BButton* a = Put<BButton>(BRect(10, 10, 90, 34), "A");
    BButton* b = Put<BButton>(BRect(10, 40, 90, 64), "B");
    BCheckBox* c = Put<BCheckBox>(BRect(10, 80, 90, 100), "C");
    b->SetEnabled(false);
    Start();
    Focus(a);
    const auto focus = [&] {
        Settle();
        window->Lock();
        BView* view = window->CurrentFocus();
        window->Unlock();
        return view;
    };
    Press(kKeyTab);
    EXPECT_EQ(focus(), c);
    Press(kKeyTab);
    EXPECT_EQ(focus(), a);
    window->Lock();
    b->SetEnabled(true);
    window->Unlock();
    Press(kKeyTab);
    EXPECT_EQ(focus(), b);
    Press(kKeyTab, {kKeyShift});
    EXPECT_EQ(focus(), a);
}

TEST_F(ControlTest, ViewsThatWereNeverNavigableStaySo)
{
    auto* button =
        new BButton(BRect(10, 10, 90, 34), "A", "A", nullptr, B_FOLLOW_NONE, B_WILL_DRAW);
    window->AddChild(button);
    button->SetEnabled(false);
    button->SetEnabled(true);
    EXPECT_EQ(button->Flags() & B_NAVIGABLE, 0u);
}

// --- what all have

TEST_F(ControlTest, OwnTargetIsKept)
{
    BButton* button = Put<BButton>(BRect(10, 10, 90, 34), "A");
    EXPECT_EQ(button->Target(), window);
    auto* other = new BButton(BRect(10, 40, 90, 64), "B", "B", nullptr);
    other->SetTarget(button);
    window->AddChild(other);
    EXPECT_EQ(other->Target(), button);
    EXPECT_EQ(other->Invoke(), B_BAD_VALUE);
}

TEST_F(ControlTest, ObserversHearOfAnInvocation)
{
    BButton* button = Put<BButton>(BRect(10, 10, 90, 34), "A");
    button->SetMessage(nullptr);
    ASSERT_EQ(button->StartWatching(BMessenger(window), B_CONTROL_INVOKED), B_OK);
    Start();
    ClickAt(20, 20);
    EXPECT_TRUE(log.Wait("message "));
    EXPECT_EQ(log.Message("message ").what, uint32(B_OBSERVER_NOTICE_CHANGE));
}

TEST_F(ControlTest, ScriptsGetAndSetItsProperties)
{
    BCheckBox* box = Put<BCheckBox>(BRect(10, 10, 90, 30), "Box");
    Start();
    const auto ask = [&](uint32 what, const char* property, auto add) {
        BMessage request(what), reply;
        add(request);
        request.AddSpecifier(property);
        EXPECT_EQ(BMessenger(box).SendMessage(&request, &reply, 60000000, 60000000), B_OK);
        return reply;
    };
    ask(B_SET_PROPERTY, "Label", [](BMessage& m) { m.AddString("data", "new"); });
    ask(B_SET_PROPERTY, "Value", [](BMessage& m) { m.AddInt32("data", 1); });
    ask(B_SET_PROPERTY, "Enabled", [](BMessage& m) { m.AddBool("data", false); });
    EXPECT_STREQ(ask(B_GET_PROPERTY, "Label", [](BMessage&) {}).FindString("result"), "new");
    EXPECT_EQ(ask(B_GET_PROPERTY, "Value", [](BMessage&) {}).FindInt32("result"), 1);
    EXPECT_FALSE(ask(B_GET_PROPERTY, "Enabled", [](BMessage&) {}).FindBool("result"));
    const BMessage wrong =
        ask(B_SET_PROPERTY, "Value", [](BMessage& m) { m.AddBool("data", true); });
    EXPECT_EQ(wrong.FindInt32("error"), B_BAD_VALUE);
}

TEST(ControlArchives, BringBackWhatWasSet)
{
    BCheckBox box(BRect(1, 2, 90, 40), "name", "label", new BMessage(kGo));
    box.SetValue(B_CONTROL_PARTIALLY_ON);
    box.SetEnabled(false);
    box.SetPartialStateToOff(true);
    BMessage archive;
    ASSERT_EQ(box.Archive(&archive), B_OK);
    std::unique_ptr<BArchivable> object(BCheckBox::Instantiate(&archive));
    auto* copy = dynamic_cast<BCheckBox*>(object.get());
    ASSERT_NE(copy, nullptr);
    EXPECT_STREQ(copy->Name(), "name");
    EXPECT_STREQ(copy->Label(), "label");
    EXPECT_EQ(copy->Value(), B_CONTROL_PARTIALLY_ON);
    EXPECT_FALSE(copy->IsEnabled());
    EXPECT_TRUE(copy->IsPartialStateToOff());
    EXPECT_EQ(copy->Message()->what, kGo);
    EXPECT_EQ(copy->Frame(), box.Frame());
    copy->SetEnabled(true);
    EXPECT_NE(copy->Flags() & B_NAVIGABLE, 0u);
}

TEST(ControlLabels, NullIsNotEmpty)
{
    BCheckBox box(BRect(1, 2, 90, 40), nullptr, nullptr, nullptr);
    EXPECT_EQ(box.Label(), nullptr);
    box.SetLabel("");
    EXPECT_STREQ(box.Label(), "");
    box.SetLabel(nullptr);
    EXPECT_EQ(box.Label(), nullptr);
}

TEST(ControlSizes, GrowToWhatTheFontNeedsAndNoFurther)
{
    font_height height;
    be_plain_font->GetHeight(&height);
    const float line = ceilf(height.ascent + height.descent);
    BButton button(BRect(0, 0, 50, 5), nullptr, "Go", nullptr);
    EXPECT_EQ(button.Bounds(), BRect(0, 0, 50, be_plain_font->Size() + line));
    BButton large(BRect(0, 0, 50, 90), nullptr, "Go", nullptr);
    EXPECT_EQ(large.Bounds(), BRect(0, 0, 50, 90));
    BCheckBox box(BRect(0, 0, 50, 0), nullptr, "Go", nullptr);
    EXPECT_EQ(box.Bounds().Height(), ceilf(6 + height.ascent + height.descent));
    float width, box_height;
    box.GetPreferredSize(&width, &box_height);
    EXPECT_EQ(width, ceilf(3 + height.ascent) + 6 + ceilf(be_plain_font->StringWidth("Go")));
    button.GetPreferredSize(&width, nullptr);
    EXPECT_EQ(width, 75);
}

// --- boxes and texts

TEST(BoxLabels, NullViewGivesTheOldOneBack)
{
    auto* label = new BView(BRect(0, 0, 30, 15), "label", 0, 0);
    BBox box(BRect(0, 0, 100, 100));
    EXPECT_EQ(box.SetLabel(label), B_OK);
    EXPECT_EQ(label->Frame().LeftTop(), BPoint(10, 0));
    EXPECT_EQ(box.ChildAt(0), label);
    EXPECT_EQ(box.LabelView(), label);
    EXPECT_EQ(box.SetLabel(static_cast<BView*>(nullptr)), B_OK);
    EXPECT_EQ(label->Parent(), nullptr);
    EXPECT_EQ(box.LabelView(), nullptr);
    delete label;
}

TEST(BoxLabels, ViewOfAnotherViewIsRefused)
{
    BView other(BRect(0, 0, 100, 100), "other", 0, 0);
    auto* label = new BView(BRect(0, 0, 30, 15), "label", 0, 0);
    other.AddChild(label);
    BBox box(BRect(0, 0, 100, 100));
    box.SetLabel("text");
    EXPECT_EQ(box.SetLabel(label), B_BAD_VALUE);
    EXPECT_STREQ(box.Label(), "text");
    EXPECT_EQ(label->Parent(), &other);
}

TEST(BoxLabels, ViewThatIsDeletedIsNoLabelAnyMore)
{
    auto* label = new BView(BRect(0, 0, 30, 15), "label", 0, 0);
    BBox box(BRect(0, 0, 100, 100));
    box.SetLabel(label);
    delete label;
    EXPECT_EQ(box.LabelView(), nullptr);
    EXPECT_EQ(box.SetLabel(new BView(BRect(0, 0, 30, 15), "label", 0, 0)), B_OK);
    box.SetLabel("text");
    EXPECT_EQ(box.CountChildren(), 0);
}

TEST(BoxMeasures, FollowBorderAndLabel)
{
    BBox box(BRect(0, 0, 100, 80));
    EXPECT_EQ(box.InnerFrame(), BRect(3, 3, 97, 77));
    EXPECT_EQ(box.TopBorderOffset(), 0);
    box.SetBorder(B_PLAIN_BORDER);
    EXPECT_EQ(box.InnerFrame(), BRect(1, 1, 99, 79));
    box.SetBorder(B_NO_BORDER);
    EXPECT_EQ(box.InnerFrame(), box.Bounds());
    box.SetLabel("label");
    font_height height;
    be_bold_font->GetHeight(&height);
    EXPECT_EQ(box.InnerFrame().top, ceilf(height.ascent + height.descent) + 1);
}

TEST(StringViews, WantTheRoomOfTheirWidestLine)
{
    BStringView view(BRect(0, 0, 10, 10), "text", "a\nlonger line\n");
    float width, height;
    view.GetPreferredSize(&width, &height);
    font_height font;
    be_plain_font->GetHeight(&font);
    EXPECT_EQ(width, ceilf(be_plain_font->StringWidth("longer line")));
    EXPECT_EQ(height, 3 * ceilf(font.ascent + font.descent + font.leading));
    view.SetText(nullptr);
    EXPECT_EQ(view.Text(), nullptr);
}

// --- colours and pictures

TEST_F(ControlTest, ColourIsDraggedOnItsRampAndMovedByKeys)
{
    auto* color = new BColorControl(BPoint(10, 10), B_CELLS_16x16, 8, "color", new BMessage(kGo));
    window->AddChild(color);
    Start();
    // Ramps of 128 by 32 pixels: grey, red, green, blue.
    Down(10 + 2 + 127, 10 + 2 + 70);
    Settle();
    EXPECT_EQ(ValueOf(color), 0x00FF0000);
    Move(0, 200);
    Up();
    EXPECT_EQ(ValueOf(color), 0);
    ClickAt(10 + 2 + 127, 15);
    EXPECT_EQ(uint32(ValueOf(color)), 0xFFFFFF00);
    EXPECT_EQ(Invocations(), 3);
    Focus(color);
    const int32_t home = 0x20, end = 0x35, down = 0x62, left = 0x61;
    Press(home);
    Press(down);
    Press(left);
    Press(down);
    Press(home);
    Press(end);
    Press(left);
    Settle();
    EXPECT_EQ(ValueOf(color), 0x00FEFE00);
    window->Lock();
    color->SetEnabled(false);
    window->Unlock();
    ClickAt(20, 15);
    Press(home);
    Settle();
    EXPECT_EQ(ValueOf(color), 0x00FEFE00);
}

TEST_F(ControlTest, NumbersOfAColourAreTyped)
{
    auto* color = new BColorControl(BPoint(10, 10), B_CELLS_16x16, 8, "color", new BMessage(kGo));
    color->SetValue(make_color(1, 2, 3));
    window->AddChild(color);
    Start();
    const auto field = [=](const char* name) {
        return dynamic_cast<BTextControl*>(color->FindView(name));
    };
    const auto type = [&](const char* name, const char* text, int32_t last) {
        window->Lock();
        field(name)->MakeFocus(true);
        window->Unlock();
        inject_text(text);
        Press(last);
        Settle();
        Settle();
    };
    window->Lock();
    EXPECT_STREQ(field("_red")->Text(), "1");
    EXPECT_STREQ(field("_blue")->Text(), "3");
    EXPECT_GT(field("_green")->Frame().top, field("_red")->Frame().bottom);
    EXPECT_GE(color->Bounds().right, field("_red")->Frame().right);
    window->Unlock();
    type("_red", "1x2", kKeyEnter);
    EXPECT_EQ(ValueOf(color), 0x0C020300) << "letters are no numbers";
    EXPECT_EQ(Invocations(), 1);
    type("_green", "999", kKeyTab);
    EXPECT_EQ(ValueOf(color), 0x0CFF0300) << "taken as the field is left";
    window->Lock();
    EXPECT_STREQ(field("_green")->Text(), "255");
    field("_blue")->SetText("");
    window->Unlock();
    type("_blue", "", kKeyEnter);
    EXPECT_EQ(ValueOf(color), 0x0CFF0300);
    window->Lock();
    color->SetEnabled(false);
    EXPECT_FALSE(field("_blue")->IsEnabled());
    window->Unlock();
}

// The ground of the palette is in pixels of one byte, where ramps would be all the same.
TEST(ColorControlPalette, ShowsTheColoursOfItsPixels)
{
    BBitmap bitmap(BRect(0, 0, 299, 199), B_CMAP8, true);
    auto* color = new BColorControl(BPoint(10, 10), B_CELLS_16x16, 8, "color");
    bitmap.AddChild(color);
    bitmap.Lock();
    color->SetValue(system_colors()->color_list[37]);
    color->Draw(color->Bounds());
    color->Sync();
    bitmap.Unlock();
    const auto* bits = static_cast<const uint8*>(bitmap.Bits());
    for (const int32 cell : {0, 15, 16, 100, 200}) {
        const int32 x = 10 + 2 + cell % 16 * 8 + 4, y = 10 + 2 + cell / 16 * 8 + 4;
        const rgb_color shown = system_colors()->color_list[bits[y * bitmap.BytesPerRow() + x]];
        EXPECT_EQ(shown, system_colors()->color_list[cell]) << cell;
    }
    bitmap.Lock();
    const char right = B_RIGHT_ARROW, down = B_DOWN_ARROW, home = B_HOME;
    color->KeyDown(&right, 1);
    EXPECT_EQ(color->ValueAsColor(), system_colors()->color_list[38]);
    color->KeyDown(&down, 1);
    EXPECT_EQ(color->ValueAsColor(), system_colors()->color_list[54]);
    color->KeyDown(&home, 1);
    EXPECT_EQ(color->ValueAsColor(), system_colors()->color_list[0]);
    bitmap.Unlock();
}

TEST_F(ControlTest, ColourDroppedIsTaken)
{
    auto* color = new BColorControl(BPoint(10, 10), B_CELLS_16x16, 8, "color", new BMessage(kGo));
    window->AddChild(color);
    TestView* source = Add(BRect(10, 145, 30, 149), "source");
    source->onDown = [=] {
        BMessage drag(B_PASTE);
        const rgb_color red = {200, 1, 2, 255};
        drag.AddData("RGBColor", B_RGB_COLOR_TYPE, &red, sizeof(red));
        source->DragMessage(&drag, BRect(0, 0, 5, 5));
    };
    Start();
    Down(20, 147);
    Settle();
    Move(40, 40);
    Up();
    EXPECT_TRUE(log.Wait("message GOGO"));
    EXPECT_EQ(uint32(ValueOf(color)), 0xC8010200);
}

TEST(ColorControlSizes, FollowCellsAndLayout)
{
    BColorControl color(BPoint(10, 10), B_CELLS_16x16, 8, "color");
    EXPECT_GE(color.Bounds().Height(), 131);
    color.SetCellSize(1);  // counts as 6
    color.SetLayout(B_CELLS_64x4);
    EXPECT_GT(color.Bounds().Width(), 64 * 6);
    BMessage archive;
    color.SetValue(0x10203000);
    ASSERT_EQ(color.Archive(&archive), B_OK);
    BColorControl copy(&archive);
    EXPECT_EQ(copy.Layout(), B_CELLS_64x4);
    EXPECT_EQ(copy.CellSize(), 1);
    EXPECT_EQ(copy.ValueAsColor(), make_color(0x10, 0x20, 0x30));
}

TEST_F(ControlTest, PictureButtonsOfOneAndTwoStates)
{
    auto* button =
        new BPictureButton(BRect(10, 10, 50, 50), "picture", nullptr, nullptr, new BMessage(kGo));
    window->AddChild(button);
    Start();
    Down(20, 20);
    Settle();
    EXPECT_EQ(ValueOf(button), B_CONTROL_ON);
    Move(100, 100);
    Settle();
    EXPECT_EQ(ValueOf(button), B_CONTROL_OFF);
    Up();
    EXPECT_EQ(Invocations(), 0);
    ClickAt(20, 20);
    EXPECT_EQ(LastValue(), B_CONTROL_ON);
    EXPECT_EQ(ValueOf(button), B_CONTROL_OFF);
    window->Lock();
    button->SetBehavior(B_TWO_STATE_BUTTON);
    window->Unlock();
    ClickAt(20, 20);
    EXPECT_EQ(ValueOf(button), B_CONTROL_ON);
    ClickAt(20, 20);
    EXPECT_EQ(LastValue(), B_CONTROL_OFF);
}

TEST(PictureButtons, KeepCopies)
{
    BPictureButton button(BRect(0, 0, 20, 20), "picture", nullptr, nullptr, nullptr);
    {
        BPicture picture;
        button.SetEnabledOn(&picture);
        EXPECT_NE(button.EnabledOn(), &picture);
    }
    EXPECT_NE(button.EnabledOn(), nullptr);
    EXPECT_EQ(button.EnabledOff(), nullptr);
    button.SetEnabledOn(button.EnabledOn());
    EXPECT_NE(button.EnabledOn(), nullptr);
    button.SetEnabledOn(nullptr);
    EXPECT_EQ(button.EnabledOn(), nullptr);
}
