// Status bars.

#include "gadgets/kinds.h"
#include "graphics/raster_port.h"
#include "plinth.h"
#include "windows/window.h"

#include <StatusBar.h>
#include <String.h>

class MyBStatusBar : public BStatusBar {
public:
    explicit MyBStatusBar(BRect frame) : BStatusBar(frame, nullptr, nullptr, nullptr) {}
    void AttachedToWindow() override
    {
        BStatusBar::AttachedToWindow();
        const auto* window = dynamic_cast<MyWinClass*>(Window());
        if (window != nullptr && window->fOffscreenView != nullptr)
            SetViewColor(window->fOffscreenView->ViewColor());
    }
};

BView* create_statusbar(const GadgetSpec& spec)
{
    spec.record->minimum = 0;
    spec.record->maximum = 100;
    spec.record->value = 0;
    return new MyBStatusBar(spec.frame);
}

template <class Action>
static void on_status_bar(int32_t ident, Action act)
{
    on_gadget<BStatusBar>(ident, kStatusBar, Unlocked::Skip,
                          [&](BStatusBar& bar, MyGadget&) { act(bar); });
}

extern "C" void SetStatusLabel(int32_t ident, const char* text)
{
    on_status_bar(ident, [=](BStatusBar& bar) { bar.SetText(text); });
}

extern "C" void SetStatusTrail(int32_t ident, const char* text)
{
    on_status_bar(ident, [=](BStatusBar& bar) { bar.SetTrailingText(text); });
}

extern "C" void SetStatusMaxValue(int32_t ident, int32_t maximum)
{
    on_status_bar(ident, [=](BStatusBar& bar) { bar.SetMaxValue(static_cast<float>(maximum)); });
}

// Goes on by the number rather than to it, and longer texts lose their ends: kept on purpose.
extern "C" void SetStatusValue(int32_t ident, int32_t delta)
{
    const int32 kKeptBytes = 299;
    on_status_bar(ident, [=](BStatusBar& bar) {
        const BString text(bar.Text(), kKeptBytes), trailing(bar.TrailingText(), kKeptBytes);
        bar.Update(static_cast<float>(delta), text.String(), trailing.String());
    });
}

extern "C" void SetStatusBarColor(int32_t ident, int32_t color)
{
    on_status_bar(ident, [=](BStatusBar& bar) {
        bar.SetBarColor(GetRgbFromInteger(static_cast<uint32_t>(color)));
    });
}

extern "C" void SetStatusBarHeight(int32_t ident, int32_t height)
{
    on_status_bar(ident, [=](BStatusBar& bar) { bar.SetBarHeight(static_cast<float>(height)); });
}
