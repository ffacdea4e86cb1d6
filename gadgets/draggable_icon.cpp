// Icons that can be dragged out of their window. Hooks run on the window's thread, window locked.

#include "gadgets/kinds.h"
#include "graphics/icons.h"

#include <Bitmap.h>
#include <Message.h>
#include <Mime.h>
#include <View.h>
#include <Window.h>

#include <algorithm>
#include <memory>
#include <string.h>

static const uint32 kDragMessage = 'ddms';
static const rgb_color kClear = {0, 0, 0, 0};
static const rgb_color kHalf = {0, 0, 0, 128};

class MyDraggableIcon : public BView {
public:
    MyDraggableIcon(MyGadget* gadget, BRect frame, std::unique_ptr<BBitmap> bitmap)
        : BView(frame, "", B_FOLLOW_NONE, B_WILL_DRAW), fBitmap(std::move(bitmap)), fGadget(gadget)
    {
    }

    void MessageReceived(BMessage* message) override { BView::MessageReceived(message); }
    void AttachedToWindow() override
    {
        if (Parent() == nullptr)
            return;
        SetViewColor(Parent()->ViewColor());
        SetLowColor(Parent()->LowColor());
    }
    void Draw(BRect) override
    {
        if (fBitmap == nullptr)
            return;
        SetDrawingMode(B_OP_OVER);
        DrawBitmap(fBitmap.get(), B_ORIGIN);
    }
    void MouseDown(BPoint where) override;

    virtual bool DragStarted(BMessage*) { return true; }
    virtual BRect PreferredRect(BPoint where, icon_size size)
    {
        return BRect(0, 0, size - 1, size - 1).OffsetToCopy(where);
    }

private:
    BBitmap* _DragImage() const;

    const std::unique_ptr<BBitmap> fBitmap;  // null: nothing to be seen
    MyGadget* const fGadget;
};

// The icon, half transparent.
BBitmap* MyDraggableIcon::_DragImage() const
{
    auto* image = new BBitmap(Bounds(), B_RGBA32, true);
    if (!image->Lock())
        return image;
    auto* canvas = new BView(image->Bounds(), "", B_FOLLOW_NONE, 0);
    image->AddChild(canvas);
    canvas->SetHighColor(kClear);
    canvas->SetDrawingMode(B_OP_COPY);
    canvas->FillRect(canvas->Bounds(), B_SOLID_HIGH);
    canvas->SetDrawingMode(B_OP_ALPHA);
    canvas->SetHighColor(kHalf);
    canvas->SetBlendingMode(B_CONSTANT_ALPHA, B_ALPHA_COMPOSITE);
    if (fBitmap != nullptr)
        canvas->DrawBitmap(fBitmap.get(), B_ORIGIN);
    canvas->Sync();
    image->Unlock();
    return image;
}

void MyDraggableIcon::MouseDown(BPoint where)
{
    BMessage message(kDragMessage);
    if (!DragStarted(&message))
        return;
    BBitmap* image = _DragImage();
    message.AddInt32("nb", fGadget->ident);
    DragMessage(&message, image, B_OP_ALPHA, where, Window());
}

// A copy of the icon's image for a size. An image of another size gives its bytes, as they come:
// kept on purpose.
static std::unique_ptr<BBitmap> copy_icon(int32_t icon, icon_size size)
{
    ImagesLock images;
    const BBitmap* image =
        size == B_LARGE_ICON ? large_icon_image(images, icon) : icon_image(images, icon, false);
    if (image == nullptr)
        return nullptr;
    auto copy = std::make_unique<BBitmap>(BRect(0, 0, size - 1, size - 1), image->ColorSpace());
    if (copy->InitCheck() != B_OK)
        return nullptr;
    memcpy(copy->Bits(), image->Bits(),
           static_cast<size_t>(std::min(copy->BitsLength(), image->BitsLength())));
    return copy;
}

// The width and height asked for are of no account.
BView* create_draggableicon(const GadgetSpec& spec)
{
    const icon_size size = spec.kind == kDraggableIcon ? B_MINI_ICON : B_LARGE_ICON;
    const float reach = size == B_MINI_ICON ? 15 : 31;
    BRect frame = spec.frame;
    frame.right = frame.left + reach;
    frame.bottom = frame.top + reach;
    return new MyDraggableIcon(spec.record, frame, copy_icon(spec.value, size));
}
