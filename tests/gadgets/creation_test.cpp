// What CreateGadget makes of each kind: the record, and the view as it begins.

#include "gadgets/gadget_window.h"

#include "gadgets/gadget.h"
#include "windows/drawing_view.h"
#include "windows/window.h"

#include <Bitmap.h>
#include <Box.h>
#include <CheckBox.h>
#include <ColorControl.h>
#include <Control.h>
#include <List.h>
#include <Menu.h>
#include <MenuField.h>
#include <ScrollBar.h>
#include <Slider.h>
#include <StringView.h>

#include <vector>

namespace {

const char* const kLabels[] = {"one", "two", nullptr};

const void* text_of(int32_t kind)
{
    return kind == 18 || kind == 19 ? static_cast<const void*>(kLabels) : "label";
}

class Creation : public GadgetTest {
protected:
    // Without handlers.
    int32_t Create(int32_t kind, int32_t value = 70)
    {
        const bool has_icon = kind >= 31 && kind <= 33;
        return CreateGadget(kind, window, 10, 20, 80, 44, text_of(kind), has_icon ? fIcon : value);
    }
    static MyGadget* Newest()
    {
        return static_cast<MyGadget*>(static_cast<BList*>(gRegistry[4])->LastItem());
    }
    // Looks at the first gadget's view as what it is.
    template <class View, class Look>
    void On(Look look)
    {
        WithView(0, [&](BView* view) {
            auto* own = dynamic_cast<View*>(view);
            EXPECT_NE(own, nullptr);
            if (own != nullptr)
                look(*own);
            return 0;
        });
    }

    const int32_t fIcon = CreateImage(16, 16);
};

}  // namespace

TEST_F(Creation, RecordTellsHowTheGadgetWasMade)
{
    const struct {
        int32_t kind, selection, maximum;
    } rows[] = {
        {1, 0, 0},   {2, 0, 0},   {11, 0, 0},   {12, 0, 0}, {13, 0, 15}, {14, 0, 15},
        {15, 0, 70}, {16, 0, 70}, {17, 0, 100}, {18, 0, 0}, {19, -1, 0}, {24, 0, 0},
        {30, 0, 0},  {31, 0, 0},  {32, 0, 0},   {33, 0, 0},
    };
    for (const auto& row : rows) {
        const int32_t ident = Create(row.kind);
        ASSERT_NE(ident, 0) << row.kind;
        const MyGadget& record = *Newest();
        EXPECT_EQ(record.ident, ident) << row.kind;
        EXPECT_EQ(record.kind, row.kind);
        EXPECT_EQ(BRect(record.left, record.top, record.width, record.height),
                  BRect(10, 20, 80, 44))
            << row.kind;
        EXPECT_EQ(record.flags, 0u) << row.kind;
        EXPECT_EQ(record.selection, row.selection) << row.kind;
        EXPECT_EQ(record.minimum, 0) << row.kind;
        EXPECT_EQ(record.maximum, row.maximum) << row.kind;
        EXPECT_EQ(record.value, 0) << row.kind;
        EXPECT_EQ(record.popup, 0) << row.kind;
        for (void* handler :
             {record.action_handler, record.key_handler, record.value_handler, record.color_call,
              record.list_handler, record.drop_handler, record.unused_handler})
            EXPECT_EQ(handler, nullptr) << row.kind;
        WithView(0, [&](BView* view) {
            EXPECT_EQ(record.view, view) << row.kind;
            return 0;
        });
        KillGadget(0, ident);
    }
}

TEST_F(Creation, SlotsKeepWhatTheyAreGiven)
{
    const int32_t button = Create(1);
    void* const handler = reinterpret_cast<void*>(on_action);
    for (int32_t slot : {1, 2, 3, 6, 7, 8})
        SetHandlerForGadget(button, slot, handler);
    const MyGadget& record = *Newest();
    for (void* slot : {record.action_handler, record.key_handler, record.value_handler,
                       record.list_handler, record.drop_handler, record.unused_handler})
        EXPECT_EQ(slot, handler);
    FocusOnClick(button, 1);
    EXPECT_EQ(record.flags & 1, 1u);
    SetHandlerForGadget(button, 1, nullptr);
    EXPECT_EQ(record.action_handler, nullptr);
    Click(20, 30);
    EXPECT_EQ(Calls(), "") << "no handler, no call";
}

TEST_F(Creation, ViewsFollowNoSideAndDrawAndTakeKeysAsTheirKindDoes)
{
    const uint32 draws = B_WILL_DRAW, keys = B_WILL_DRAW | B_NAVIGABLE;
    const struct {
        int32_t kind;
        uint32 flags;
    } rows[] = {
        {1, keys},
        {2, keys},
        {11, draws},
        {12, draws},
        {15, keys | B_FRAME_EVENTS},
        {16, keys | B_FRAME_EVENTS},
        {19, keys},
        {24, draws},
        {31, draws},
        {32, draws},
        {33, draws},
    };
    const uint32 asked = B_WILL_DRAW | B_NAVIGABLE;
    for (const auto& row : rows) {
        const int32_t ident = Create(row.kind);
        On<BView>([&](BView& view) {
            EXPECT_EQ(view.ResizingMode(), uint32(B_FOLLOW_NONE)) << row.kind;
            EXPECT_EQ(view.Flags() & asked, row.flags & asked) << row.kind;
            EXPECT_EQ(view.Flags() & row.flags, row.flags) << row.kind;
        });
        KillGadget(0, ident);
    }
}

TEST_F(Creation, EachControlBeginsInItsUsualState)
{
    for (const int32_t kind : {15, 16}) {
        const int32_t slider = Create(kind);
        On<BSlider>([=](BSlider& view) {
            EXPECT_EQ(view.Style(), B_BLOCK_THUMB);
            EXPECT_EQ(view.Orientation(), kind == 15 ? B_HORIZONTAL : B_VERTICAL);
            EXPECT_EQ(view.Value(), 0);
            int32 low, high;
            view.GetLimits(&low, &high);
            EXPECT_EQ(low, 0);
            EXPECT_EQ(high, 70);
        });
        KillGadget(0, slider);
    }
    for (const int32_t kind : {13, 14}) {
        const int32_t bar = Create(kind);
        On<BScrollBar>([=](BScrollBar& view) {
            EXPECT_EQ(view.Orientation(), kind == 13 ? B_HORIZONTAL : B_VERTICAL);
            float low, high;
            view.GetRange(&low, &high);
            EXPECT_EQ(low, 0);
            EXPECT_EQ(high, 15);
            EXPECT_EQ(view.Value(), 0);
            EXPECT_EQ(view.Target(), nullptr);
        });
        KillGadget(0, bar);
    }
    const int32_t box = Create(24);
    On<BBox>([](BBox& view) {
        EXPECT_EQ(view.Border(), B_FANCY_BORDER);
        EXPECT_STREQ(view.Label(), "label");
    });
    KillGadget(0, box);
    const int32_t color = Create(30);
    On<BColorControl>([](BColorControl& view) {
        EXPECT_EQ(view.Layout(), B_CELLS_16x16);
        EXPECT_EQ(view.CellSize(), 8);
        EXPECT_EQ(view.Frame().LeftTop(), BPoint(10, 20));
    });
    KillGadget(0, color);
    Create(19);
    On<BMenuField>([](BMenuField& view) {
        EXPECT_TRUE(view.Menu()->IsRadioMode());
        EXPECT_TRUE(view.Menu()->IsLabelFromMarked());
        EXPECT_EQ(view.Frame().LeftTop(), BPoint(10, 20));
        EXPECT_EQ(view.Frame().Width(), 80) << "as high as its label, the platform's habit";
    });
}

TEST_F(Creation, OnlyControlsTakeTheLabelAndNullIsNone)
{
    for (const int32_t kind : {1, 2, 15, 16, 30, 33}) {
        const int32_t ident = Create(kind);
        EXPECT_STREQ(GetLabel(ident), "label") << kind;
        KillGadget(0, ident);
        const int32_t bare = CreateGadget(kind, window, 0, 0, 50, 50, nullptr, fIcon);
        EXPECT_STREQ(GetLabel(bare), "") << kind;
        KillGadget(0, bare);
    }
    for (const int32_t kind : {11, 12, 13, 14, 17, 18, 19, 24, 31, 32}) {
        const int32_t ident = Create(kind);
        EXPECT_STREQ(GetLabel(ident), "") << kind;
        KillGadget(0, ident);
    }
    Create(11);
    On<BStringView>(
        [](BStringView& view) { EXPECT_TRUE(view.Text() == nullptr || view.Text()[0] == '\0'); });
    CreateGadget(24, window, 10, 20, 80, 44, nullptr, 0);
    WithView(1, [](BView* view) {
        EXPECT_EQ(dynamic_cast<BBox*>(view)->Label(), nullptr);
        return 0;
    });
}

TEST_F(Creation, NewGadgetsLieInFrontOfTheOthers)
{
    Create(1);
    Create(2);
    WithView(1, [](BView* view) {
        EXPECT_NE(dynamic_cast<BCheckBox*>(view), nullptr);
        return 0;
    });
}

// Of the view around them, but for the status bar, whose ground is the raster's.
TEST_F(Creation, GroundsAreThoseAroundThem)
{
    auto* object = static_cast<MyWinClass*>(Object());
    object->Lock();
    object->fTopView->SetViewColor(1, 2, 3);
    object->fRaster->Lock();
    object->fOffscreenView->SetViewColor(4, 5, 6);
    object->fRaster->Unlock();
    object->Unlock();
    for (const int32_t kind : {1, 2, 11, 12, 15, 17, 18, 24, 30, 31, 33}) {
        const int32_t ident = Create(kind);
        const rgb_color ground = kind == 17 ? make_color(4, 5, 6) : make_color(1, 2, 3);
        On<BView>([=](BView& view) {
            EXPECT_EQ(view.ViewColor(), ground) << kind;
            if (kind == 18) {
                EXPECT_EQ(view.ChildAt(1)->ViewColor(), ground);
            }
        });
        KillGadget(0, ident);
    }
}
