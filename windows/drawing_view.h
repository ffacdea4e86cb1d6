#ifndef WINDOWS_DRAWING_VIEW_H
#define WINDOWS_DRAWING_VIEW_H

// The view that covers a program's window: shows the bitmap and hears mouse, keys and drops.

#include <View.h>

#include <stdint.h>

class MyWinClass;

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
    void _CheckWasDropped(BMessage* message);
    void _FreeDropped();

    MyWinClass* fWindow = nullptr;  // null in a replicant
    int32 fLastButtons = 0;
    int32 fClickCount = 0;
    int64 fLastClick_us = 0;
    // The paths of a drop while its handler runs, from MyAlloc, and after one that closed its
    // window.
    char** fDropped = nullptr;
    int32 fDroppedMost = 0;
};

#endif  // WINDOWS_DRAWING_VIEW_H
