#ifndef _ALERT_H
#define _ALERT_H

#include <Window.h>

#include <memory>
#include <vector>

class BBitmap;
class BButton;
class BInvoker;
class BScrollBar;
class BTextView;

enum alert_type {
    B_EMPTY_ALERT = 0,
    B_INFO_ALERT = 1,
    B_IDEA_ALERT = 2,
    B_WARNING_ALERT = 3,
    B_STOP_ALERT = 4
};

enum button_spacing { B_EVEN_SPACING = 0, B_OFFSET_SPACING = 1 };

/* A window with a text and up to any number of buttons that the user has to answer; Enter presses
   the last one. Made with new: it deletes itself when it is answered. */
class BAlert : public BWindow {
public:
    BAlert();
    BAlert(const char* title, const char* text, const char* button1, const char* button2 = nullptr,
           const char* button3 = nullptr, button_width width = B_WIDTH_AS_USUAL,
           alert_type type = B_INFO_ALERT);
    BAlert(const char* title, const char* text, const char* button1, const char* button2,
           const char* button3, button_width width, button_spacing spacing,
           alert_type type = B_INFO_ALERT);
    BAlert(BMessage* data);
    virtual ~BAlert();

    static BArchivable* Instantiate(BMessage* data);
    virtual status_t Archive(BMessage* data, bool deep = true) const;

    alert_type Type() const;
    void SetType(alert_type type);
    /* An icon of the program's own, which belongs to the alert; null: that of its type. */
    void SetIcon(BBitmap* bitmap);
    void SetText(const char* text);
    /* With B_OFFSET_SPACING the first of three or more buttons stands apart. */
    void SetButtonSpacing(button_spacing spacing);
    void SetButtonWidth(button_width width);
    /* A key that presses a button, in upper or lower case; 0 for none. */
    void SetShortcut(int32 buttonIndex, char key);
    char Shortcut(int32 buttonIndex) const;

    /* Shows it and returns the number of the button pressed, -1 if it was closed otherwise. A
       window whose thread waits here goes on drawing. */
    int32 Go();
    /* Shows it and returns. The answer goes to the invoker, which stays the caller's, as "which" in
       its message; null for nobody. */
    status_t Go(BInvoker* invoker);

    virtual void MessageReceived(BMessage* message);
    virtual void FrameResized(float newWidth, float newHeight);

    void AddButton(const char* label, char key = 0);
    int32 CountButtons() const;
    BButton* ButtonAt(int32 index) const;
    BTextView* TextView() const;

    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 form, const char* property);
    virtual status_t GetSupportedSuites(BMessage* data);
    virtual void DispatchMessage(BMessage* message, BHandler* handler);
    virtual void Quit();
    virtual bool QuitRequested();
    virtual status_t Perform(perform_code d, void* arg);

    /* Where an alert of a size has its left top corner. */
    static BPoint AlertPosition(float width, float height);

private:
    class Ground;
    struct Answer;
    struct Button {
        BButton* view;
        char key;
    };

    void _Init(const char* text);
    void _Layout();
    float _LayoutText(BPoint place, float width, float mostHeight);
    void _LayoutButtons(float left, float top, float right);
    float _ButtonsHeight(float width) const;
    float _ButtonsWidth() const;
    float _ButtonGap(size_t index) const;
    void _FitButtons();
    void _Answer(int32 which);

    Ground* fGround = nullptr;
    BTextView* fText = nullptr;
    BScrollBar* fBar = nullptr;  // of a text that is higher than the screen
    std::vector<Button> fButtons;
    alert_type fType = B_INFO_ALERT;
    button_width fWidth = B_WIDTH_AS_USUAL;
    button_spacing fSpacing = B_EVEN_SPACING;
    std::unique_ptr<BBitmap> fIcon;   // the program's
    std::shared_ptr<Answer> fAnswer;  // of a caller that waits
    BInvoker* fInvoker = nullptr;
    bool fIsAnswered = false;
};

#endif  // _ALERT_H
