// The class of a program's windows, and opening and closing them. Hooks run on the window's thread
// with the window locked; its bitmap is not locked while a handler runs.

#include "windows/window.h"

#include "gadgets/gadget.h"
#include "gadgets/tabs.h"
#include "gadgets/text_entry.h"
#include "runtime/ending.h"
#include "runtime/guarded.h"
#include "runtime/trace.h"
#include "runtime/whole.h"
#include "windows/drawing_view.h"
#include "windows/menus.h"
#include "windows/screen_reader.h"
#include "windows/tool_tips.h"
#include "windows/window_access.h"
#include "windows/window_lock.h"
#include "windows/window_registry.h"

#include <Application.h>
#include <Bitmap.h>
#include <Message.h>

#include <math.h>
#include <new>
#include <utility>

static const rgb_color kPanelGrey = {216, 216, 216, 255};
static const rgb_color kBlack = {0, 0, 0, 255};

static const uint32 kWindowFlags = B_ASYNCHRONOUS_CONTROLS | B_OUTLINE_RESIZE | B_AVOID_FRONT;

// Printed, and nothing more: the message of a drag between windows of one program.
static const uint32 kDragMessage = 'ddms';

MyWinClass::MyWinClass(int32_t ident, BRect frame, window_type type, uint32 flags,
                       const char* title)
    : BWindow(frame, title, type, flags | kWindowFlags, B_ALL_WORKSPACES),
      fIdent(ident),
      fLastWidth(static_cast<int32>(frame.Width())),
      fLastHeight(static_cast<int32>(frame.Height())),
      fOriginX(rounded(frame.left)),
      fOriginY(rounded(frame.top))
{
    Lock();
    guarded([&] {
        expect_dispatches(this);
        fTopView = new MyView(Bounds(), this);
        _MakeRaster(frame);
        AddChild(fTopView);
        fIsReady = fRaster != nullptr;
    });
    Unlock();
}

static void set_colors(BView* view, rgb_color high)
{
    view->SetHighColor(high);
    view->SetViewColor(kPanelGrey);
    view->SetLowColor(kPanelGrey);
}

void MyWinClass::_MakeRaster(BRect frame)
{
    const BRect bounds(0, 0, ceilf(frame.right - frame.left), ceilf(frame.bottom - frame.top));
    auto* raster = new (std::nothrow) BBitmap(bounds, B_RGBA32, true);
    if (raster == nullptr || raster->InitCheck() != B_OK) {
        delete raster;
        return;
    }
    fRaster = raster;
    fOffscreenView = new BView(bounds, "", B_FOLLOW_NONE, B_WILL_DRAW);
    fRaster->Lock();
    fRaster->AddChild(fOffscreenView);
    set_colors(fTopView, kBlack);
    set_colors(fOffscreenView, kPanelGrey);
    fOffscreenView->SetDrawingMode(B_OP_COPY);
    fOffscreenView->FillRect(bounds);
    fOffscreenView->SetHighColor(kBlack);
    fOffscreenView->Sync();
    fRaster->Unlock();
}

// What a window leaves when the program has ended: the process frees it.
static void leave_behind(void* object)
{
    static BList* const left = new BList(20);
    RegistryLock registry;
    left->AddItem(object);
}

MyWinClass::~MyWinClass()
{
    release_menus(this);
    release_tool_tips(this);
    while (BView* child = fTopView != nullptr ? fTopView->ChildAt(0) : nullptr) {
        empty_of_tabs(child);
        fTopView->RemoveChild(child);
    }
    RemoveChild(fTopView);
    forget_dispatches(this);
    if (fRaster != nullptr && fRaster->Lock()) {
        if (fOffscreenView != nullptr)
            fRaster->RemoveChild(fOffscreenView);
        fRaster->Unlock();
    }
    MyWinClass* self = this;
    defaultoutput.compare_exchange_strong(self, nullptr);
    if (is_ending()) {
        leave_behind(fTopView);
        leave_behind(fOffscreenView);
        leave_behind(fRaster);
        return;
    }
    _Unlist();
    if (fWasLast)
        quit_application();
    delete fTopView;
    delete fOffscreenView;
    delete fRaster;
}

void MyWinClass::_Unlist()
{
    if (remove_window(this) == WindowRemoval::LastOne)
        fWasLast = true;
}

void MyWinClass::CloseUnasked()
{
    const BLooper* caller = LooperForThread(find_thread(nullptr));
    if (caller == nullptr || caller == this) {
        Quit();
        return;
    }
    _Unlist();
    fIsClosing = true;
    PostMessage(B_QUIT_REQUESTED);
    Unlock();
}

void MyWinClass::LockRaster()
{
    if (fRaster != nullptr && !fRaster->IsLocked())
        fRaster->Lock();
}

void MyWinClass::MyUpdate(BRect rect, bool refresh)
{
    if (refresh && fTopView->fRefresh) {
        guarded([&] {
            fOffscreenView->Invalidate(rect);
            fTopView->Invalidate(rect);
        });
    }
    if (fRaster != nullptr && fRaster->IsLocked())
        fRaster->Unlock();
    Unlock();
}

// --- messages

static void print_drag(BMessage* message, BWindow* window)
{
    message->PrintToStream();
    int32 number;
    BPoint drop;
    if (message->FindInt32("nb", &number) == B_OK &&
        message->FindPoint("_drop_point_", &drop) == B_OK)
        window->ConvertFromScreen(&drop);
}

static void call_input_handler(BMessage* message)
{
    const TextEntry* entry = TextEntry::NamedIn(*message);
    if (entry == nullptr)
        return;
    if (auto* handler = reinterpret_cast<int32_t (*)(const char*)>(entry->fInputHandler))
        handler(entry->EntryText());
}

void MyWinClass::_ChooseMenuItem(BMessage* message)
{
    if (mark_chosen_item(*message))
        CallHandler(kMenuItem, static_cast<int32_t>(message->what));
}

static void call_gadget(const BMessage& message)
{
    if (message.what == kClickMessage) {
        void* handler = gadget_handler(message, &MyGadget::action_handler);
        if (handler != nullptr)
            reinterpret_cast<int32_t (*)()>(handler)();
    } else if (void* handler = gadget_handler(message, &MyGadget::value_handler)) {
        const auto choice = static_cast<int32_t>(message.what - kChoiceMessage);
        reinterpret_cast<int32_t (*)(int32_t)>(handler)(choice);
    }
}

// Gadgets that are killed meanwhile stay in memory: the message may be in a call of theirs. The
// window may be gone behind it, with its thread.
void MyWinClass::DispatchMessage(BMessage* message, BHandler* handler)
{
    begin_dispatch(this);
    BWindow::DispatchMessage(message, handler);
    end_dispatch(this);
}

void MyWinClass::MessageReceived(BMessage* message)
{
    if (message->what == kDragMessage)
        print_drag(message, this);
    call_input_handler(message);
    _ChooseMenuItem(message);
    call_gadget(*message);
    BWindow::MessageReceived(message);
}

// --- hooks

static bool holds(BView* branch, const BView* view)
{
    if (branch == view)
        return true;
    for (BView* child = branch->ChildAt(0); child != nullptr; child = child->NextSibling()) {
        if (holds(child, view))
            return true;
    }
    return false;
}

// True while the view is in the window: one that was noted earlier may have been deleted.
bool MyWinClass::_Holds(const BView* view) const
{
    for (BView* child = ChildAt(0); child != nullptr; child = child->NextSibling()) {
        if (holds(child, view))
            return true;
    }
    return false;
}

void MyWinClass::WindowActivated(bool active)
{
    if (active) {
        WindowRecord* record = Find_By_Class(this);
        if (record != nullptr && record->cursor != nullptr && be_app != nullptr)
            be_app->SetCursor(record->cursor);
        CallHandler(kActivated, kActivatedBit);
    } else {
        fSavedFocus = CurrentFocus();
        CallHandler(kDeactivated, kDeactivatedBit);
    }
    BWindow::WindowActivated(active);
    if (active)
        (_Holds(fSavedFocus) ? fSavedFocus : fTopView)->MakeFocus(true);
}

void MyWinClass::FrameResized(float width, float height)
{
    BView* focus = CurrentFocus();
    CallHandler(kResized, kResizedBit, static_cast<int32_t>(width), static_cast<int32_t>(height));
    fLastWidth = static_cast<int32>(width);
    fLastHeight = static_cast<int32>(height);
    if (fTopView->LockLooper()) {
        fTopView->ResizeTo(width, height);
        fTopView->Invalidate();
        fTopView->UnlockLooper();
    }
    BWindow::FrameResized(width, height);
    if (_Holds(focus))
        focus->MakeFocus(true);
}

void MyWinClass::FrameMoved(BPoint leftTop)
{
    BWindow::FrameMoved(leftTop);
    CallHandler(kMoved, kMovedBit, static_cast<int32_t>(leftTop.x),
                static_cast<int32_t>(leftTop.y));
}

// The program may minimise, show and hide a window from a thread that is not the window's. If the
// handler closes the window there, nothing of it is left when the handler returns: then the lock
// is not held any more.

void MyWinClass::Minimize(bool minimize)
{
    const WindowLock lock(this);
    CallHandler(kMinimized, minimize ? kMinimizedBit : kRestoredBit, minimize ? 1 : 0);
    if (IsLocked())
        BWindow::Minimize(minimize);
}

void MyWinClass::Zoom(BPoint leftTop, float width, float height)
{
    CallHandler(kZoomed, kZoomedBit);
    BWindow::Zoom(leftTop, width, height);
}

void MyWinClass::Hide()
{
    const WindowLock lock(this);
    const bool nested = std::exchange(fIsHiding, true);
    if (!nested)
        CallHandler(kHidden);
    if (!IsLocked())
        return;
    guarded([this] { BWindow::Hide(); });
    fIsHiding = nested;
}

// Closing hides first, and the handler of that may close its window once more.
void MyWinClass::Quit()
{
    if (fIsHiding && fIsQuitting) {
        Unlock();
        return;
    }
    fIsQuitting = true;
    BWindow::Quit();
}

void MyWinClass::Show()
{
    const WindowLock lock(this);
    CallHandler(kShown, kShownBit);
    if (IsLocked())
        BWindow::Show();
}

void MyWinClass::ScreenChanged(BRect frame, color_space space)
{
    CallHandler(kScreenChanged, kScreenChangedBit, static_cast<int32_t>(space));
    BWindow::ScreenChanged(frame, space);
}

void MyWinClass::WorkspaceActivated(int32 workspace, bool active)
{
    CallHandler(kWorkspaceActivated, kWorkspaceActivatedBit, static_cast<int32_t>(workspace),
                active ? 1 : 0);
    BWindow::WorkspaceActivated(workspace, active);
}

void MyWinClass::WorkspacesChanged(uint32 before, uint32 after)
{
    CallHandler(kWorkspacesChanged, kWorkspacesChangedBit, static_cast<int32_t>(before),
                static_cast<int32_t>(after));
    BWindow::WorkspacesChanged(before, after);
}

void MyWinClass::MenusBeginning()
{
    if (KeyMenuBar() != nullptr)
        CallHandler(kMenusBeginning);
    BWindow::MenusBeginning();
}

bool MyWinClass::QuitRequested()
{
    using Handler = int32_t (*)();
    Handler handler =
        is_ending() || fIsClosing ? nullptr : HandlerFor<Handler>(kCloseRequested, 1u << kCloseBit);
    if (handler != nullptr && static_cast<uint8_t>(handler()) == 0)
        return false;
    MyWinClass* self = this;
    defaultoutput.compare_exchange_strong(self, nullptr);
    return true;
}

// The tool tips of its gadgets name what has no label.
status_t MyWinClass::Perform(perform_code code, void* data)
{
    if (code != kTellReader || data == nullptr)
        return BWindow::Perform(code, data);
    auto* message = static_cast<BMessage*>(data);
    void* view = nullptr;
    std::string text;
    if (message->FindPointer(kReaderView, &view) != B_OK ||
        !tip_of(static_cast<BView*>(view), &text))
        return B_NAME_NOT_FOUND;
    return message->AddString(kReaderText, text.c_str());
}

// --- exported

// The display, too, that the first window brought up, is taken down after our own exit handler.
static void watch_exit_once()
{
    static const bool watched = (watch_exit(), true);
    static_cast<void>(watched);
}

// A window that is in the registry, and locked; null if there is no memory for all of it.
static MyWinClass* make_window(int32_t ident, BRect frame)
{
    auto* record = static_cast<WindowRecord*>(MyAlloc(sizeof(WindowRecord)));
    auto* window = guarded<MyWinClass*>(nullptr, [=] {
        return record != nullptr ? new (std::nothrow)
                                       MyWinClass(ident, frame, B_TITLED_WINDOW, 0, "")
                                 : nullptr;
    });
    if (window == nullptr) {
        MyFree(record);
        return nullptr;
    }
    record->window = window;
    record->ident = ident;
    window->fRecord = record;
    if (window->IsReady() && add_window(record))
        return window;
    window->Quit();
    MyFree(record);
    return nullptr;
}

// Shows a new window, whose own thread has it from then on; false if there is none for it.
static bool run_window(MyWinClass* window)
{
    guarded([=] { window->Show(); });
    if (!window->IsLocked())
        return true;
    remove_window(window);  // not as the last one that closes
    window->Quit();
    return false;
}

extern "C" int32_t OpenWindow(int32_t x, int32_t y, int32_t width, int32_t height)
{
    if (width < 0 || height < 0 || RegistryLock().List(kWindows) == nullptr) {
        show_dbg(kBadArgument, 0, __func__);
        return 0;
    }
    const auto left = static_cast<float>(x);
    const auto top = static_cast<float>(y);
    const BRect frame(left, top, left + static_cast<float>(width),
                      top + static_cast<float>(height));
    const auto ident = static_cast<int32_t>(GetUniqueID());
    MyWinClass* window = make_window(ident, frame);
    if (window != nullptr) {
        if (x < 0 || y < 0)
            guarded(
                [=] { window->ResizeTo(static_cast<float>(width), static_cast<float>(height)); });
        watch_exit_once();
        if (run_window(window))
            return ident;
    }
    show_dbg(kNoMemory, ident, __func__);
    return 0;
}

static bool lock_to_close(MyWinClass* window)
{
    NoPopUp none(window);
    return lock_window(window);
}

extern "C" void CloseWindow(int32_t ident)
{
    WindowRecord* record = LLFindWindow(ident, __func__);
    if (record == nullptr || !guarded(false, [=] { return lock_to_close(record->window); }))
        return;
    const auto close = [=] {
        record->window->CloseUnasked();
        return true;
    };
    if (is_window_ident(ident) && guarded(false, close))
        return;
    if (record->window->IsLocked())
        record->window->Unlock();
}

extern "C" void SetHandlerForWindow(int32_t ident, int32_t slot, void* handler)
{
    const char* const call = __func__;
    on_window(ident, call, [=](WindowAccess& window) {
        if (static_cast<uint32_t>(slot) < kWindowSlots)
            window->fHandlers[slot].store(handler, std::memory_order_release);
        else
            show_dbg(kBadArgument, ident, call);
    });
}
