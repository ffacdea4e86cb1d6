// Controls that have create functions and no kind, put into a window by the program itself.

#include "gadgets/gadget_window.h"

#include "gadgets/kindless.h"

#include <ChannelControl.h>
#include <MenuField.h>
#include <MenuItem.h>
#include <OptionPopUp.h>
#include <PopUpMenu.h>

namespace {

const BRect kFrame(10, 20, 159, 79);

class Kindless : public GadgetTest {
protected:
    Kindless()
    {
        fRecord.ident = 1;
        fRecord.action_handler = reinterpret_cast<void*>(on_action);
        fRecord.key_handler = reinterpret_cast<void*>(on_key);
    }

    // Into the window's top view, which is of a colour of its own, with the keyboard.
    void Show(BView* view)
    {
        BWindow* object = Object();
        object->Lock();
        object->ChildAt(0)->SetViewColor(1, 2, 3);
        object->ChildAt(0)->AddChild(view);
        view->MakeFocus(true);
        object->Unlock();
    }
    void Drop(BView* view)
    {
        BWindow* object = Object();
        object->Lock();
        view->RemoveSelf();
        delete view;
        object->Unlock();
    }

    MyGadget fRecord = {};
};

bool is_on_the_ground(BView* view)
{
    const rgb_color color = view->ViewColor();
    return color.red == 1 && color.green == 2 && color.blue == 3;
}

const int32_t kKeyA = 0x3c, kKeyUp = 0x57;

}  // namespace

TEST_F(Kindless, EachTakesTheGroundAndTellsKeys)
{
    BView* (*const makers[])(MyGadget*, BRect) = {create_myoptionup, create_channelcontrol,
                                                  create_multichannelcontrol};
    for (auto* make : makers) {
        BView* view = make(&fRecord, kFrame);
        ASSERT_NE(view, nullptr);
        EXPECT_EQ(view->Frame().LeftTop(), kFrame.LeftTop());
        Show(view);
        Object()->Lock();
        EXPECT_TRUE(is_on_the_ground(view));
        Object()->Unlock();
        Key(kKeyA);
        EXPECT_EQ(Calls(), "key 97");
        Drop(view);
    }
}

TEST_F(Kindless, KeysOfAChannelReachTheBaseFirst)
{
    BView* view = create_channelcontrol(&fRecord, kFrame);
    auto* control = dynamic_cast<BChannelControl*>(view);
    ASSERT_NE(control, nullptr);
    EXPECT_EQ(control->CountChannels(), 1);
    control->SetLimits(0, 100);
    Show(view);
    Key(kKeyUp);
    EXPECT_EQ(Calls(), "key 30");
    Object()->Lock();
    EXPECT_EQ(control->ValueFor(0), 1);
    Object()->Unlock();
    Drop(view);
}

TEST_F(Kindless, OptionsAreChosenFromTheMenu)
{
    BView* view = create_myoptionup(&fRecord, kFrame);
    auto* options = dynamic_cast<BOptionPopUp*>(view);
    ASSERT_NE(options, nullptr);
    options->AddOption("one", 10);
    options->AddOption("two", 20);
    Show(view);
    Object()->Lock();
    EXPECT_EQ(options->Value(), 10);
    BInvoker* item = options->MenuField()->Menu()->ItemAt(1);
    item->Invoke();
    Object()->Unlock();
    Settle();
    Object()->Lock();
    EXPECT_EQ(options->Value(), 20);
    Object()->Unlock();
    Drop(view);
}

TEST_F(Kindless, MenuFieldTellsPressesAndKeys)
{
    auto* menu = new BPopUpMenu("menu");
    menu->AddItem(new BMenuItem("item", nullptr));
    BView* view = create_mymenufield(&fRecord, kFrame, menu);
    ASSERT_NE(view, nullptr);
    Show(view);
    Key(kKeyA);
    EXPECT_EQ(Calls(), "key 97");
    Click(15, 30, 2);
    EXPECT_EQ(Calls(), "");
    Object()->Lock();
    dynamic_cast<BMenuField*>(view)->SetEnabled(false);
    Object()->Unlock();
    Click(15, 30);
    EXPECT_EQ(Calls(), "");
    Drop(view);
}

TEST_F(Kindless, NothingComesOfNothing)
{
    EXPECT_EQ(create_myoptionup(nullptr, kFrame), nullptr);
    EXPECT_EQ(create_channelcontrol(nullptr, kFrame), nullptr);
    EXPECT_EQ(create_multichannelcontrol(nullptr, kFrame), nullptr);
    EXPECT_EQ(create_mymenufield(&fRecord, kFrame, nullptr), nullptr);
    for (BRect frame : {BRect(), BRect(0, 0, 1e9f, 1e9f)}) {
        for (auto* make : {create_myoptionup, create_channelcontrol, create_multichannelcontrol})
            delete make(&fRecord, frame);
    }
}
