// Making gadgets. The program's thread: a view is built before it belongs to any window.

#include "gadgets/gadget_list.h"
#include "gadgets/kinds.h"
#include "plinth.h"
#include "runtime/trace.h"
#include "windows/drawing_view.h"
#include "windows/window_access.h"

#include <Control.h>
#include <StatusBar.h>

#include <memory>

static const int32_t kFirstKind = 1;
static const int32_t kLastCreated = 34;

static BRect frame_of(int32_t x, int32_t y, int32_t width, int32_t height)
{
    const auto left = static_cast<float>(x);
    const auto top = static_cast<float>(y);
    return BRect(left, top, left + static_cast<float>(width), top + static_cast<float>(height));
}

static BView* create_view(const GadgetSpec& spec)
{
    const KindRow* row = kind_row(spec.kind);
    if (row == nullptr || row->create == nullptr)
        return nullptr;
    return guarded<BView*>(nullptr, [&] {
        std::unique_ptr<BView> view(row->create(spec));
        if (view == nullptr)
            return view.release();
        view->SetResizingMode(B_FOLLOW_NONE);
        if (auto* control = dynamic_cast<BControl*>(view.get()))
            control->SetLabel(spec.Text());
        return view.release();
    });
}

static bool add_to(MyWinClass& window, const MyGadget& gadget)
{
    window.fTopView->AddChild(gadget.view);
    if (gadget.kind == kStatusBar) {
        if (auto* bar = dynamic_cast<BStatusBar*>(gadget.view))
            bar->Update(static_cast<float>(gadget.value), bar->Label(), bar->TrailingText());
    }
    return true;
}

// Puts the gadget into the registry and its view into a window's top view, or none. False, and it
// is in neither, if that can not be.
static bool attach(MyGadget* gadget, int32_t window_ident, const char* call)
{
    if (window_ident == -1)
        return enter_registry(gadget);
    WindowAccess window(window_ident, call);
    if (!window)
        return false;
    LooseLock loose;  // who finds it sees it in the window
    loose.Take();
    if (!enter_registry(gadget))
        return false;
    if (guarded(false, [&] { return add_to(*window.Window(), *gadget); }))
        return true;
    leave_registry(gadget);
    gadget->view->RemoveSelf();
    return false;
}

extern "C" int32_t CreateGadget(int32_t kind, int32_t window_ident, int32_t x, int32_t y,
                                int32_t width, int32_t height, const void* text, int32_t value)
{
    if (kind < kFirstKind || kind > kLastCreated) {
        show_dbg(kBadArgument, kind, __func__);
        return 0;
    }
    auto* gadget = static_cast<MyGadget*>(MyAlloc(sizeof(MyGadget)));
    if (gadget == nullptr)
        return 0;
    const auto ident = static_cast<int32_t>(GetUniqueID());
    gadget->ident = ident;
    const GadgetSpec spec = {gadget, kind, window_ident, frame_of(x, y, width, height),
                             text,   value};
    BView* view = create_view(spec);
    if (view == nullptr) {
        MyFree(gadget);
        return 0;
    }
    gadget->kind = kind;
    gadget->left = x;
    gadget->top = y;
    gadget->width = width;
    gadget->height = height;
    gadget->view = view;
    const char* const call = __func__;
    if (!guarded(false, [=] { return attach(gadget, window_ident, call); })) {
        delete view;
        MyFree(gadget);
        return 0;
    }
    return ident;  // the gadget may be gone already
}
