#ifndef WINDOWS_DRAWING_VIEW_H
#define WINDOWS_DRAWING_VIEW_H

// The view that covers a program's window: shows the bitmap and hears mouse, keys and drops.

#include <View.h>

#include <stdint.h>

class MyWinClass;

class BMessage;

// The paths of a drop, while a program's handler looks at them; a member of the view that hears it,
// so that they go also after a handler that closed its window and never came back.
class DroppedFiles {
public:
    using Handler = int32_t (*)(int32_t, char**);
    DroppedFiles() = default;
    ~DroppedFiles();
    DroppedFiles(const DroppedFiles&) = delete;
    DroppedFiles& operator=(const DroppedFiles&) = delete;

    // Calls the handler with the number and the paths of the files that a message has dropped;
    // nothing if it was not dropped, has none, or there is no handler. On the window's thread.
    void Pass(BMessage* message, Handler handler);

private:
    void _Free();

    char** fPaths = nullptr;  // from MyAlloc
    int32 fMost = 0;
};

// All fields belong to the window's lock.
class MyView : public BView {
public:
    MyView(BRect frame, MyWinClass* window);
    explicit MyView(BMessage* archive);
    ~MyView() override;

    static BArchivable* Instantiate(BMessage* archive);
    status_t Archive(BMessage* archive, bool deep = true) const override;

    void MessageReceived(BMessage* message) override;
    void Draw(BRect update) override;
    void MouseDown(BPoint where) override;
    void MouseMoved(BPoint where, uint32 transit, const BMessage* dragged) override;
    void KeyDown(const char* bytes, int32 count) override;
    void KeyUp(const char* bytes, int32 count) override;
    void MakeFocus(bool focused = true) override;
    void Pulse() override;

    bool fRefresh = true;  // drawing reaches the screen at once

private:
    void _CountClick(int32 buttons, int32 clicks, int64 when);
    bool _OpenPopUp(BPoint where);

    MyWinClass* fWindow = nullptr;  // null in a replicant
    int32 fLastButtons = 0;
    int32 fClickCount = 0;
    int64 fLastClick_us = 0;
    DroppedFiles fDropped;
};

#endif  // WINDOWS_DRAWING_VIEW_H
