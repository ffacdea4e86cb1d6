#ifndef INTERFACE_SCROLL_BAR_PRIVATE_H
#define INTERFACE_SCROLL_BAR_PRIVATE_H

class BScrollBar;
class BView;

namespace BPrivate {

struct [[gnu::visibility("hidden")]] ScrollBarPrivate
{
    // For targets that grow in many small steps: `ask` is called once somebody wants to know range,
    // proportion or steps, which is when the bar is drawn at the latest. The value must stay.
    static void AskLater(BScrollBar * bar, void (*ask)(BView * target));
};

}  // namespace BPrivate

#endif  // INTERFACE_SCROLL_BAR_PRIVATE_H
