#ifndef _CONTROL_H
#define _CONTROL_H

#include <Invoker.h>
#include <String.h>
#include <View.h>

class BBitmap;

namespace BPrivate {
class ControlIcon;
struct ControlPrivate;
}  // namespace BPrivate

// Values of controls that are on or off.
enum { B_CONTROL_OFF = 0, B_CONTROL_ON = 1, B_CONTROL_PARTIALLY_ON = 2 };

/* A view that the user sets or presses, and that sends its message then; to its window, unless a
   target was set. As it comes to a window it takes the colour of its parent as its own. Enter and
   Space turn it on or off; Tab goes on to the next view that is navigable. */
class BControl : public BView, public BInvoker {
public:
    // The control adopts the message.
    BControl(BRect frame, const char* name, const char* label, BMessage* message,
             uint32 resizingMode, uint32 flags);
    BControl(const char* name, const char* label, BMessage* message, uint32 flags);
    virtual ~BControl();

    BControl(BMessage* data);
    static BArchivable* Instantiate(BMessage* data);
    virtual status_t Archive(BMessage* data, bool deep = true) const;

    virtual void WindowActivated(bool active);
    virtual void AttachedToWindow();
    virtual void DetachedFromWindow();
    virtual void MessageReceived(BMessage* message);
    virtual void MakeFocus(bool focus = true);
    virtual void KeyDown(const char* bytes, int32 numBytes);

    virtual void SetLabel(const char* string);
    const char* Label() const;
    virtual void SetValue(int32 value);
    int32 Value() const;
    // A disabled control is grey, cannot be pressed, and Tab passes it by.
    virtual void SetEnabled(bool enabled);
    bool IsEnabled() const;

    /* Sends a copy of `message`, or of the own one if null, with "when", "source", "be:value" and
       "be:sender", and tells the observers. B_BAD_VALUE if there is no message and nobody
       watches. */
    virtual status_t Invoke(BMessage* message = nullptr);
    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 what, const char* property);
    virtual status_t GetSupportedSuites(BMessage* message);
    virtual status_t Perform(perform_code d, void* arg);

    /* Pictures beside the label, copied. SetIcon() makes those of the other states from the one
       given, as the flags say; null takes all away. */
    virtual status_t SetIcon(const BBitmap* bitmap, uint32 flags = 0);
    status_t SetIconBitmap(const BBitmap* bitmap, uint32 which, uint32 flags = 0);
    const BBitmap* IconBitmap(uint32 which) const;

protected:
    // True while MakeFocus() is under way.
    bool IsFocusChanging() const;
    // Whether the pointer holds the control down, from the press to the release.
    bool IsTracking() const;
    void SetTracking(bool state);
    void SetValueNoUpdate(int32 value);

private:
    friend struct BPrivate::ControlPrivate;

    BString fLabel;
    int32 fValue = B_CONTROL_OFF;
    bool fHasLabel = false;
    bool fEnabled = true;
    bool fWantsNavigation = false;  // was navigable when it was disabled
    bool fFocusChanging = false;
    bool fTracking = false;
    bool fPressed = false;                   // tracking, and the pointer is inside
    BPrivate::ControlIcon* fIcon = nullptr;  // owned
};

#endif  // _CONTROL_H
