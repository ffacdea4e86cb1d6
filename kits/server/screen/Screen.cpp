// Chooses the display on first use, and hands the calls of Screen.h to it and to the stage.

#include "server/screen/Screen.h"

#include <OS.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <new>
#include <utility>

#include "app/CursorImage.h"
#include "kernel/threads/ProcessExit.h"
#include "server/screen/Displays.h"
#include "server/screen/Images.h"
#include "server/screen/ScreenPicture.h"
#include "server/screen/ScreenWindow.h"
#include "server/screen/Stage.h"
#include "support/Mutex.h"

namespace server {

namespace {

// Guards the choice alone; taken before the stage, never under it.
BPrivate::Mutex& choice_mutex()
{
    static auto* mutex = new BPrivate::Mutex;
    return *mutex;
}

Display* sDisplay GUARDED_BY(choice_mutex());

bool has_display()
{
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY"}) {
        const char* value = getenv(name);
        if (value != nullptr && value[0] != '\0')
            return true;
    }
    return false;
}

Display* chosen_display() REQUIRES(choice_mutex())
{
    if (sDisplay == nullptr && has_display()) {
        sDisplay = make_qt_display();
        if (sDisplay != nullptr) {
            BPrivate::on_process_exit(Shutdown);
            atexit(Shutdown);  // the second best, for threads that the kits do not know
        } else {
            fputs("cannot reach the display: windows stay in memory\n", stderr);
        }
    }
    if (sDisplay == nullptr)
        sDisplay = make_memory_display();
    return sDisplay;
}

Display* the_display()
{
    BPrivate::MutexLock guard(choice_mutex());
    return chosen_display();
}

}  // namespace

ScreenWindow* ScreenWindow::Create(const WindowSpec& spec, EventSink* sink)
{
    Display* display = the_display();
    StageLock lock;
    ScreenWindow* window = display->Create(spec, sink);
    if (window != nullptr)
        stage().Add(window);
    return window;
}

BRect ScreenFrame()
{
    Display* display = the_display();
    StageLock lock;
    return display->ScreenFrame();
}

color_space ScreenSpace() { return B_RGBA32; }

bigtime_t FrameInterval()
{
    Display* display = the_display();
    StageLock lock;
    return display->FrameInterval();
}

float ScreenScale()
{
    Display* display;
    {
        BPrivate::MutexLock guard(choice_mutex());
        display = sDisplay;
    }
    if (display == nullptr)
        return 1;
    StageLock lock;
    return display->Scale();
}

void SetScreenScale(float scale)
{
    Display* display = the_display();
    StageLock lock;
    display->SetScale(sensible_scale(scale));
}

Monitor ScreenMonitor()
{
    Display* display = the_display();
    StageLock lock;
    return display->ScreenMonitor();
}

// Pictures of the screen in units or in any other scale.
static status_t read_screen(BRect rect, float scale, std::vector<uint32>* pixels, int32* width,
                            int32* height)
{
    BRect screen = ScreenFrame();
    rect = rect & screen;
    if (!rect.IsValid())
        return B_BAD_VALUE;
    *width = first_pixel(rect.IntegerWidth() + 1, scale);
    *height = first_pixel(rect.IntegerHeight() + 1, scale);
    try {
        pixels->resize(static_cast<size_t>(*width) * *height);
    } catch (const std::bad_alloc&) {
        return B_NO_MEMORY;
    }
    Surface target;
    target.bits = reinterpret_cast<uint8*>(pixels->data());
    target.width = *width;
    target.height = *height;
    target.bytesPerRow = *width * 4;
    target.scale = scale;
    StageLock lock;
    draw_screen(target, rect.LeftTop());
    return B_OK;
}

status_t SaveScreen(const char* pngPath)
{
    std::vector<uint32> pixels;
    int32 width, height;
    if (pngPath == nullptr)
        return B_BAD_VALUE;
    Display* display = the_display();
    float scale;
    {
        StageLock lock;
        scale = display->Scale();
    }
    const status_t status = read_screen(ScreenFrame(), scale, &pixels, &width, &height);
    if (status != B_OK)
        return status;
    const std::string bytes = EncodePng(pixels, width, height);
    std::ofstream file(pngPath, std::ios::binary);
    file << bytes << std::flush;
    return file.good() && !bytes.empty() ? B_OK : B_ERROR;
}

status_t ReadScreen(BRect rect, std::vector<uint32>* pixels, int32* width, int32* height)
{
    return read_screen(rect, 1, pixels, width, height);
}

void PointerState(BPoint* screenWhere, uint32* buttons, uint32* presses)
{
    StageLock lock;
    *screenWhere = stage().Pointer();
    *buttons = static_cast<uint32>(stage().Buttons());
    if (presses != nullptr)
        *presses = stage().CountPresses();
}

int32 Modifiers()
{
    StageLock lock;
    return stage().Keys().Modifiers();
}

void KeyStates(uint8 states[16])
{
    StageLock lock;
    for (int32 i = 0; i < 16; i++)
        states[i] = stage().Keys().States()[i];
}

void SetPointer(BPoint screenWhere)
{
    Display* display = the_display();
    StageLock lock;
    display->SetPointer(screenWhere);
}

bigtime_t ClickSpeed()
{
    StageLock lock;
    return stage().clickSpeed;
}

void SetClickSpeed(bigtime_t speed)
{
    StageLock lock;
    stage().clickSpeed = speed;
}

void BeginDrag(std::shared_ptr<const DragPicture> picture, ClipboardForms forms)
{
    Display* display = the_display();
    StageLock lock;
    stage().BeginDrag(picture,
                      [=](bool dropped) REQUIRES(gStageLock) { display->DragEnded(dropped); });
    display->DragBegan(picture, std::move(forms));
    if (stage().Buttons() == 0)
        stage().EndDrag(true);
}

void EndDrag()
{
    StageLock lock;
    stage().EndDrag(false);
}

EventSink* SinkAt(BPoint screenWhere, BPoint* where)
{
    StageLock lock;
    ScreenWindow* window = stage().ContentAt(screenWhere);
    if (window == nullptr)
        return nullptr;
    if (where != nullptr)
        *where = screenWhere - window->Frame().LeftTop();
    return window->Sink();
}

void HoldInput(EventSink* sink, EventSink* owner, EventSink* from, BPoint* screenWhere,
               uint32* buttons)
{
    Display* display = the_display();
    StageLock lock;
    stage().HoldInput(sink, owner);
    if (from != nullptr)
        stage().HandOver(from->TakeWaiting(), sink);
    *screenWhere = stage().Pointer();
    *buttons = static_cast<uint32>(stage().Buttons());
    display->InputHeld(true);
}

void EndHold(EventSink* sink)
{
    StageLock lock;
    stage().EndHold(sink);
}

void ReleaseInput(EventSink* sink)
{
    Display* display = the_display();
    StageLock lock;
    if (stage().ReleaseInput(sink))
        display->InputHeld(false);
    stage().GiveBack(sink->TakeWaiting());
}

int32 CountWorkspaces()
{
    Display* display = the_display();
    StageLock lock;
    return display->CountWorkspaces();
}

int32 CurrentWorkspace()
{
    Display* display = the_display();
    StageLock lock;
    return display->CurrentWorkspace();
}

void ActivateWorkspace(int32 workspace)
{
    Display* display = the_display();
    StageLock lock;
    display->ActivateWorkspace(workspace);
}

void SetWorkspaceCount(int32 count)
{
    Display* display = the_display();
    StageLock lock;
    display->SetWorkspaceCount(count);
}

rgb_color DesktopColor()
{
    StageLock lock;
    return desktop_color();
}

void SetDesktopColor(rgb_color color)
{
    StageLock lock;
    set_desktop_color(color);
}

void SetLocks(uint32 modifiers)
{
    StageLock lock;
    stage().SyncModifiers(modifiers, B_CAPS_LOCK | B_NUM_LOCK | B_SCROLL_LOCK);
}

bigtime_t IdleTime()
{
    StageLock lock;
    return system_time() - stage().LastInput();
}

bool AcceptsFirstClick()
{
    StageLock lock;
    return stage().acceptsFirstClick;
}

void SetAcceptsFirstClick(bool accept)
{
    StageLock lock;
    stage().acceptsFirstClick = accept;
}

void SetAppCursor(const BCursor* cursor)
{
    BPrivate::MutexLock guard(choice_mutex());
    StageLock lock;
    stage().SetAppCursor(BPrivate::cursor_image(cursor));
    if (sDisplay != nullptr)
        sDisplay->UpdateCursors();
}

void SetCursorHidden(bool hidden)
{
    BPrivate::MutexLock guard(choice_mutex());
    StageLock lock;
    stage().SetCursorHidden(hidden);
    if (sDisplay != nullptr)
        sDisplay->UpdateCursors();
}

void ObscureCursor()
{
    BPrivate::MutexLock guard(choice_mutex());
    StageLock lock;
    stage().ObscureCursor();
    if (sDisplay != nullptr)
        sDisplay->UpdateCursors();
}

std::shared_ptr<Clipboard> SystemClipboard()
{
    BPrivate::MutexLock guard(choice_mutex());
    return chosen_display()->SystemClipboard();
}

std::shared_ptr<Clipboard> PrimarySelection()
{
    BPrivate::MutexLock guard(choice_mutex());
    return chosen_display()->PrimarySelection();
}

void Shutdown()
{
    Display* display;
    {
        BPrivate::MutexLock guard(choice_mutex());
        display = sDisplay;
    }
    if (display != nullptr)
        display->Shutdown();
}

}  // namespace server
