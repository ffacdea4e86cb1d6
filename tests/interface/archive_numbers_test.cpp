// Archives whose numbers stand for one of a few things: of a number that stands for none, nothing
// is taken over.

#include <Alert.h>
#include <Box.h>
#include <Button.h>
#include <ChannelSlider.h>
#include <ColorControl.h>
#include <ListView.h>
#include <MenuBar.h>
#include <MenuField.h>
#include <Message.h>
#include <Picture.h>
#include <PictureButton.h>
#include <PopUpMenu.h>
#include <ScrollBar.h>
#include <ScrollView.h>
#include <Slider.h>
#include <StringView.h>
#include <TabView.h>
#include <TextControl.h>
#include <TextView.h>
#include <Window.h>

#include <functional>
#include <string>

#include <gtest/gtest.h>

namespace {

const BRect kFrame(0, 0, 99, 49);

// A number in the archive of a class: what it is of a new object, and another that it may be.
struct Row {
    std::function<BArchivable*()> make;
    std::function<BArchivable*(BMessage*)> instantiate;
    std::function<int32(BArchivable*)> read;
    const char* field;
    int32 index, usual, other;
};

template <class Class>
Row row(Class* (*make)(), const char* field, int32 index, int32 usual, int32 other,
        int32 (*read)(Class&))
{
    return {[=]() -> BArchivable* { return make(); },
            Class::Instantiate,
            [=](BArchivable* object) { return read(dynamic_cast<Class&>(*object)); },
            field,
            index,
            usual,
            other};
}

void drop(BArchivable* object)
{
    if (auto* window = dynamic_cast<BWindow*>(object))
        window->Quit();
    else
        delete object;
}

// In place of what is there, and as wide.
void put(BMessage* archive, const Row& row, int32 number)
{
    int16 narrow;
    if (archive->FindInt16(row.field, &narrow) == B_OK)
        archive->ReplaceInt16(row.field, static_cast<int16>(number));
    else if (archive->ReplaceInt32(row.field, row.index, number) != B_OK)
        archive->AddInt32(row.field, number);
}

int32 read_back(const Row& row, int32 number)
{
    BArchivable* object = row.make();
    BMessage archive;
    EXPECT_EQ(object->Archive(&archive), B_OK);
    drop(object);
    put(&archive, row, number);
    BArchivable* copy = row.instantiate(&archive);
    EXPECT_NE(copy, nullptr);
    const int32 value = row.read(copy);
    drop(copy);
    return value;
}

BWindow* a_window()
{
    return new BWindow(kFrame, "", B_TITLED_WINDOW_LOOK, B_NORMAL_WINDOW_FEEL, 0);
}
BView* a_view() { return new BView(kFrame, "", B_FOLLOW_NONE, 0); }
BAlert* an_alert() { return new BAlert("", "text", "one"); }
BButton* a_button() { return new BButton(kFrame, "", "label", nullptr); }
BSlider* a_slider() { return new BSlider(kFrame, "", "label", nullptr, 0, 9); }
BTabView* tabs() { return new BTabView(kFrame, "", B_WIDTH_AS_USUAL); }
BStringView* a_string() { return new BStringView(kFrame, "", "text"); }
BScrollBar* a_bar() { return new BScrollBar(kFrame, "", nullptr, 0, 9, B_HORIZONTAL); }
BTextControl* a_field() { return new BTextControl(kFrame, "", "label", "text", nullptr); }

// Of what tells it nowhere else.
int32 archived(const BArchivable& object, const char* field)
{
    BMessage archive;
    object.Archive(&archive);
    return archive.GetInt32(field, INT32_MIN);
}

int32 blending(BView& view, int part)
{
    source_alpha source;
    alpha_function function;
    view.GetBlendingMode(&source, &function);
    return part == 0 ? int32(source) : int32(function);
}

int32 alignment_of(BTextControl& field, int part)
{
    alignment label, text;
    field.GetAlignment(&label, &text);
    return part == 0 ? int32(label) : int32(text);
}

const Row kRows[] = {
    row<BWindow>(a_window, "_wlook", 0, B_TITLED_WINDOW_LOOK, B_MODAL_WINDOW_LOOK,
                 [](BWindow& window) { return int32(window.Look()); }),
    row<BWindow>(a_window, "_wfeel", 0, B_NORMAL_WINDOW_FEEL, B_FLOATING_APP_WINDOW_FEEL,
                 [](BWindow& window) { return int32(window.Feel()); }),
    row<BAlert>(an_alert, "_atype", 0, B_INFO_ALERT, B_STOP_ALERT,
                [](BAlert& alert) { return int32(alert.Type()); }),
    row<BAlert>(an_alert, "_but_width", 0, B_WIDTH_AS_USUAL, B_WIDTH_FROM_LABEL,
                [](BAlert& alert) { return archived(alert, "_but_width"); }),
    row<BAlert>(an_alert, "_but_spacing", 0, B_EVEN_SPACING, B_OFFSET_SPACING,
                [](BAlert& alert) { return archived(alert, "_but_spacing"); }),
    row<BView>(a_view, "_dmod", 0, B_OP_COPY, B_OP_ALPHA,
               [](BView& view) { return int32(view.DrawingMode()); }),
    row<BView>(a_view, "_lines", 0, B_BUTT_CAP, B_ROUND_CAP,
               [](BView& view) { return int32(view.LineCapMode()); }),
    row<BView>(a_view, "_lines", 1, B_MITER_JOIN, B_SQUARE_JOIN,
               [](BView& view) { return int32(view.LineJoinMode()); }),
    row<BView>(a_view, "_blend", 0, B_PIXEL_ALPHA, B_CONSTANT_ALPHA,
               [](BView& view) { return blending(view, 0); }),
    row<BView>(a_view, "_blend", 1, B_ALPHA_OVERLAY, B_ALPHA_COMPOSITE_DARKEN,
               [](BView& view) { return blending(view, 1); }),
    row<BView>(a_view, "_fillrule", 0, B_NONZERO, B_EVEN_ODD,
               [](BView& view) { return view.FillRule(); }),
    row<BBox>([] { return new BBox(kFrame); }, "_style", 0, B_FANCY_BORDER, B_NO_BORDER,
              [](BBox& box) { return int32(box.Border()); }),
    row<BButton>(a_button, "be:behavior", 0, BButton::B_BUTTON_BEHAVIOR, BButton::B_POP_UP_BEHAVIOR,
                 [](BButton& button) { return int32(button.Behavior()); }),
    row<BPictureButton>(
        [] {
            BPicture none;
            return new BPictureButton(kFrame, "", &none, &none, nullptr);
        },
        "_behave", 0, B_ONE_STATE_BUTTON, B_TWO_STATE_BUTTON,
        [](BPictureButton& button) { return int32(button.Behavior()); }),
    row<BColorControl>([] { return new BColorControl(B_ORIGIN, B_CELLS_16x16, 8, ""); }, "_layout",
                       0, B_CELLS_16x16, B_CELLS_64x4,
                       [](BColorControl& control) { return int32(control.Layout()); }),
    row<BSlider>(a_slider, "_hashloc", 0, B_HASH_MARKS_NONE, B_HASH_MARKS_BOTH,
                 [](BSlider& slider) { return int32(slider.HashMarks()); }),
    row<BSlider>(a_slider, "_sstyle", 0, B_BLOCK_THUMB, B_TRIANGLE_THUMB,
                 [](BSlider& slider) { return int32(slider.Style()); }),
    row<BSlider>(a_slider, "_orient", 0, B_HORIZONTAL, B_VERTICAL,
                 [](BSlider& slider) { return int32(slider.Orientation()); }),
    row<BChannelSlider>([] { return new BChannelSlider(kFrame, "", "label", nullptr); }, "_orient",
                        0, B_VERTICAL, B_HORIZONTAL,
                        [](BChannelSlider& slider) { return int32(slider.Orientation()); }),
    row<BScrollBar>(a_bar, "_orient", 0, B_HORIZONTAL, B_VERTICAL,
                    [](BScrollBar& bar) { return int32(bar.Orientation()); }),
    row<BScrollView>([] { return new BScrollView("", nullptr); }, "_style", 0, B_FANCY_BORDER,
                     B_PLAIN_BORDER, [](BScrollView& view) { return int32(view.Border()); }),
    row<BStringView>(a_string, "_align", 0, B_ALIGN_LEFT, B_ALIGN_CENTER,
                     [](BStringView& view) { return int32(view.Alignment()); }),
    row<BStringView>(a_string, "_truncation", 0, int32(B_NO_TRUNCATION), B_TRUNCATE_SMART,
                     [](BStringView& view) { return int32(view.Truncation()); }),
    row<BTextControl>(a_field, "_a_label", 0, B_ALIGN_LEFT, B_ALIGN_RIGHT,
                      [](BTextControl& field) { return alignment_of(field, 0); }),
    row<BTextControl>(a_field, "_a_text", 0, B_ALIGN_LEFT, B_ALIGN_CENTER,
                      [](BTextControl& field) { return alignment_of(field, 1); }),
    row<BTextView>([] { return new BTextView(kFrame, "", kFrame, 0, 0); }, "_align", 0,
                   B_ALIGN_LEFT, B_ALIGN_CENTER,
                   [](BTextView& view) { return int32(view.Alignment()); }),
    row<BListView>([] { return new BListView(kFrame, ""); }, "_lv_type", 0, B_SINGLE_SELECTION_LIST,
                   B_MULTIPLE_SELECTION_LIST,
                   [](BListView& list) { return int32(list.ListType()); }),
    row<BMenu>([] { return new BMenu("menu"); }, "_layout", 0, B_ITEMS_IN_COLUMN, B_ITEMS_IN_ROW,
               [](BMenu& menu) { return archived(menu, "_layout"); }),
    row<BMenuBar>([] { return new BMenuBar(kFrame, ""); }, "_border", 0, B_BORDER_FRAME,
                  B_BORDER_EACH_ITEM, [](BMenuBar& bar) { return int32(bar.Border()); }),
    row<BMenuField>([] { return new BMenuField(kFrame, "", "label", new BPopUpMenu("menu")); },
                    "_align", 0, B_ALIGN_LEFT, B_ALIGN_RIGHT,
                    [](BMenuField& field) { return int32(field.Alignment()); }),
    row<BTabView>(tabs, "_but_width", 0, B_WIDTH_AS_USUAL, B_WIDTH_FROM_LABEL,
                  [](BTabView& view) { return int32(view.TabWidth()); }),
    row<BTabView>(tabs, "_border_style", 0, B_FANCY_BORDER, B_NO_BORDER,
                  [](BTabView& view) { return int32(view.Border()); }),
    row<BTabView>(tabs, "_tab_side", 0, BTabView::kTopSide, BTabView::kLeftSide,
                  [](BTabView& view) { return int32(view.TabSide()); }),
};

}  // namespace

TEST(ArchiveNumbers, ThoseThatStandForSomethingAreTakenOver)
{
    for (const Row& row : kRows)
        EXPECT_EQ(read_back(row, row.other), row.other) << row.field << " " << row.index;
}

TEST(ArchiveNumbers, ThoseThatStandForNothingAreNot)
{
    for (const Row& row : kRows) {
        for (const int32 number : {-3, 60, 255, INT32_MAX, INT32_MIN})
            EXPECT_EQ(read_back(row, number), row.usual)
                << row.field << " " << row.index << ": " << number;
    }
}
