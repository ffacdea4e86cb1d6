// The view inside a program's window. Every hook runs on the window's thread, window locked.

#include "windows/drawing_view.h"

#include "plinth.h"
#include "runtime/registry.h"
#include "windows/menus.h"
#include "windows/window.h"

#include <Bitmap.h>
#include <Entry.h>
#include <InterfaceDefs.h>
#include <Message.h>
#include <Path.h>
#include <TypeConstants.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

// Named so that a replicant of it can be made again.
static const char* const kClassName = "DeskbarView";
static const char* const kAddOn = "application/x-vnd.kzv.Qnt";

static const int32 kFunctionKeyOffset = 200;

MyView::MyView(BRect frame, MyWinClass* window)
    : BView(frame, kClassName, B_FOLLOW_ALL,
            B_FULL_UPDATE_ON_RESIZE | B_WILL_DRAW | B_PULSE_NEEDED | B_FRAME_EVENTS),
      fWindow(window)
{
}

MyView::MyView(BMessage* archive) : BView(archive) {}

BArchivable* MyView::Instantiate(BMessage* archive)
{
    puts("le");
    if (!validate_instantiation(archive, kClassName))
        return nullptr;
    puts("la");
    return new MyView(archive);
}

status_t MyView::Archive(BMessage* archive, bool deep) const
{
    BView::Archive(archive, deep);
    archive->AddString("add_on", kAddOn);
    archive->AddString("class", kClassName);
    puts("bas");
    return B_OK;
}

void MyView::Draw(BRect update)
{
    if (fWindow != nullptr) {
        if (fWindow->fRaster != nullptr)
            DrawBitmap(fWindow->fRaster, update, update);
        if (Find_By_Class(fWindow) != nullptr)
            fWindow->CallHandler(kRedrawn, kRedrawnBit, fWindow->fLastWidth);
    }
    BView::Draw(update);
}

// A run goes on while the same buttons are pressed again within the click speed. The
// platform's own count may go on from another view, and with other buttons: kept on purpose.
void MyView::_CountClick(int32 buttons, int32 clicks, int64 when)
{
    bigtime_t interval = 0;
    get_click_speed(&interval);
    const bool goes_on = buttons == fLastButtons && clicks >= 2 && when - fLastClick_us <= interval;
    fClickCount = goes_on ? fClickCount + 1 : 1;
    fLastButtons = buttons;
    fLastClick_us = when;
}

// True if the window has a pop-up menu, which then was open until an item was chosen or not.
bool MyView::_OpenPopUp(BPoint where)
{
    const bool enabled = (fWindow->fEventMask & (1u << kPopUpMenuBit)) != 0;
    if (!enabled || fWindow->fPopUp == nullptr)
        return false;
    open_pop_up(fWindow->fPopUp, fWindow, ConvertToScreen(where));
    return true;
}

void MyView::MouseDown(BPoint where)
{
    BMessage* message = Window() != nullptr ? Window()->CurrentMessage() : nullptr;
    if (fWindow != nullptr && message != nullptr) {
        int32 clicks = 0;
        int32 buttons = 0;
        int64 when = 0;
        message->FindInt32("clicks", &clicks);
        message->FindInt32("buttons", &buttons);
        message->FindInt64("when", &when);
        _CountClick(buttons, clicks, when);
        const bool single = buttons == B_PRIMARY_MOUSE_BUTTON ||
                            buttons == B_SECONDARY_MOUSE_BUTTON ||
                            buttons == B_TERTIARY_MOUSE_BUTTON;
        if (buttons == B_SECONDARY_MOUSE_BUTTON && _OpenPopUp(where)) {
            // the menu took the click
        } else if (single) {
            fWindow->CallHandler(kMouseDown, kMouseDownBit, static_cast<int32_t>(where.x),
                                 static_cast<int32_t>(where.y), buttons, fClickCount);
        }
    }
    BView::MouseDown(where);
}

void MyView::MouseMoved(BPoint where, uint32 transit, const BMessage* dragged)
{
    if (fWindow != nullptr)
        fWindow->CallHandler(kMouseMoved, kMouseMovedBit, static_cast<int32_t>(where.x),
                             static_cast<int32_t>(where.y));
    BView::MouseMoved(where, transit, dragged);
}

void MyView::KeyDown(const char* bytes, int32 count)
{
    BView::KeyDown(bytes, count);
    if (fWindow == nullptr || count != 1)
        return;
    int32 code = static_cast<signed char>(bytes[0]);
    if (code == B_FUNCTION_KEY) {
        BMessage* message = Window()->CurrentMessage();
        int32 key = 0;
        if (message == nullptr || message->FindInt32("key", &key) != B_OK)
            return;
        code = key + kFunctionKeyOffset;
    }
    fWindow->CallHandler(kKey, code, static_cast<int32_t>(modifiers()));
}

void MyView::KeyUp(const char* bytes, int32 count) { BView::KeyUp(bytes, count); }

void MyView::MakeFocus(bool focused) { BView::MakeFocus(focused); }

void MyView::Pulse()
{
    if (fWindow != nullptr && (fWindow->fEventMask & (1u << kTimerBit)) != 0) {
        WindowRecord* record = Find_By_Class(fWindow);
        if (record != nullptr && record->timer_running != 0) {
            if (record->pulse_count++ == record->period - 1) {
                fWindow->CallHandler(kTimer);
                record->pulse_count = 0;
            }
        }
    }
    BView::Pulse();
}

MyView::~MyView() = default;

DroppedFiles::~DroppedFiles() { _Free(); }

void DroppedFiles::_Free()
{
    for (int32 i = 0; fPaths != nullptr && i < fMost; i++)
        free(fPaths[i]);
    MyFree(fPaths);
    fPaths = nullptr;
}

// The number of the message's fields, not of its refs, bounds how many files are passed on: kept
// on purpose.
void DroppedFiles::Pass(BMessage* message, Handler handler)
{
    if (!message->WasDropped() || handler == nullptr || !message->HasRef("refs"))
        return;
    const int32 most = message->CountNames(B_ANY_TYPE);
    if (most < 1 || fPaths != nullptr)
        return;
    fPaths = static_cast<char**>(MyAlloc((most + 1) * static_cast<int32_t>(sizeof(char*))));
    if (fPaths == nullptr)
        return;
    fMost = most;
    int32 count = 0;
    entry_ref ref;
    for (int32 i = 0; i < most && message->FindRef("refs", i, &ref) == B_OK; i++) {
        BPath path;
        if (BEntry(&ref).GetPath(&path) == B_OK && (fPaths[count] = strdup(path.Path())) != nullptr)
            count++;
    }
    handler(count, fPaths);
    _Free();
}

void MyView::MessageReceived(BMessage* message)
{
    if (fWindow != nullptr)
        fDropped.Pass(message, fWindow->HandlerFor<DroppedFiles::Handler>(kFilesDropped, 0));
    BView::MessageReceived(message);
}
