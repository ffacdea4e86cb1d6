// Labels and boxes: views that only show, or hold others.

#include "gadgets/kinds.h"
#include "gadgets/tabs.h"
#include "plinth.h"

#include <Box.h>
#include <StringView.h>
#include <Window.h>

class MyBStringView : public BStringView {
public:
    explicit MyBStringView(BRect frame)
        : BStringView(frame, nullptr, nullptr, B_FOLLOW_LEFT_TOP, B_WILL_DRAW)
    {
    }
    void AttachedToWindow() override
    {
        BStringView::AttachedToWindow();
        take_ground(this);
    }
};

BView* create_text(const GadgetSpec& spec) { return new MyBStringView(spec.frame); }

BView* create_number(const GadgetSpec& spec)
{
    auto* view = new MyBStringView(spec.frame);
    view->SetText("0");
    return view;
}

class MyBBox : public BBox {
public:
    explicit MyBBox(BRect frame) : BBox(frame, "", B_FOLLOW_NONE, B_WILL_DRAW, B_FANCY_BORDER) {}
    void AttachedToWindow() override
    {
        BBox::AttachedToWindow();
        take_ground(this);
    }
};

BView* create_bbox(const GadgetSpec& spec)
{
    auto* box = new MyBBox(spec.frame);
    if (spec.text != nullptr)
        box->SetLabel(spec.Text());
    return box;
}

extern "C" void SetBorder(int32_t ident, int32_t style)
{
    const bool is_none = style != B_PLAIN_BORDER && style != B_FANCY_BORDER;
    const auto border = is_none ? B_NO_BORDER : static_cast<border_style>(style);
    on_gadget<BBox>(ident, kBox, Unlocked::Act,
                    [=](BBox& box, MyGadget&) { box.SetBorder(border); });
}

// Takes the gadget out that is the label, which the box would delete.
static void clear_label(BBox& box)
{
    if (box.LabelView() != nullptr)
        box.SetLabel(static_cast<BView*>(nullptr));
}

extern "C" void SetLabelBBox(int32_t ident, const char* text)
{
    on_gadget<BBox>(ident, kBox, Unlocked::Act, [=](BBox& box, MyGadget&) {
        clear_label(box);
        box.SetLabel(text);
    });
}

// --- gadgets in boxes

enum class Place { Content, Label };

static void put_into(BBox& box, int32_t box_ident, int32_t ident, Place place)
{
    const GadgetAccess inner(ident);  // its window as well, after the box's
    BView* view = inner ? inner.View() : nullptr;
    if (view == nullptr || is_inside(&box, view))
        return;
    if (place == Place::Label && view == box.LabelView())
        return;
    view->RemoveSelf();
    if (place == Place::Label) {
        clear_label(box);
        box.SetLabel(view);
    } else {
        box.AddChild(view);
    }
    inner.SetHolder(box_ident);
}

static void put_into_box(int32_t box_ident, int32_t ident, Place place)
{
    on_gadget<BBox>(box_ident, kBox, Unlocked::Act,
                    [=](BBox& box, MyGadget&) { put_into(box, box_ident, ident, place); });
}

extern "C" void BBoxAddGadget(int32_t box_ident, int32_t ident)
{
    put_into_box(box_ident, ident, Place::Content);
}

extern "C" void BBoxAddGadgetTitle(int32_t box_ident, int32_t ident)
{
    put_into_box(box_ident, ident, Place::Label);
}
