// BWindow: how it is made and ends, its views, and what is only kept. Frame, input, focus and
// drags have files of their own.

#include <Window.h>

#include <Application.h>
#include <Autolock.h>
#include <Message.h>
#include <Messenger.h>
#include <View.h>

#include <interface/view/ViewPrivate.h>
#include <interface/window/WindowPrivate.h>

using BPrivate::Canvas;
using BPrivate::ViewPrivate;
using BPrivate::WindowData;

static bool read_archived(const BMessage* archive, const char* name, int32* value)
{
    return archive->FindInt32(name, value) == B_OK;
}

BWindow::BWindow(BRect frame, const char* title, window_type type, uint32 flags, uint32 workspace)
    : BLooper(title, B_DISPLAY_PRIORITY)
{
    const auto style = BPrivate::style_of_type(type);
    _Init(frame, title, style.look, style.feel, flags, workspace);
}

BWindow::BWindow(BRect frame, const char* title, window_look look, window_feel feel, uint32 flags,
                 uint32 workspace)
    : BLooper(title, B_DISPLAY_PRIORITY)
{
    _Init(frame, title, look, feel, flags, workspace);
}

BWindow::BWindow(BRect bounds, const server::Surface& bitmap) : BLooper("offscreen")
{
    _SetKind(Kind::Offscreen);
    fData = new WindowData(this);
    fData->offscreen = true;
    fData->frame = bounds.OffsetToCopy(B_ORIGIN);
    fData->look = B_NO_BORDER_WINDOW_LOOK;
    fData->canvas = std::make_unique<Canvas>(this, bitmap);
    fData->topView =
        ViewPrivate::NewTop(this, fData->canvas.get(), bounds.Width(), bounds.Height());
    Unlock();
}

BWindow::BWindow(BMessage* archive) : BLooper(archive)
{
    BRect frame;
    const char* title = "";
    int32 type = B_TITLED_WINDOW, number, flags = 0;
    int32 workspaces = B_CURRENT_WORKSPACE;
    if (archive->FindRect("_frame", &frame) != B_OK)
        frame.Set(100, 100, 200, 200);
    archive->FindString("_title", &title);
    read_archived(archive, "_type", &type);
    read_archived(archive, "_flags", &flags);
    read_archived(archive, "_wspace", &workspaces);
    const auto style = BPrivate::style_of_type(static_cast<window_type>(type));
    _Init(frame, title, style.look, style.feel, flags, workspaces);
    if (read_archived(archive, "_wlook", &number))
        SetLook(static_cast<window_look>(number));
    if (read_archived(archive, "_wfeel", &number))
        SetFeel(static_cast<window_feel>(number));

    float width, height;
    if (archive->FindFloat("_zoom", 0, &width) == B_OK &&
        archive->FindFloat("_zoom", 1, &height) == B_OK)
        SetZoomLimits(width, height);
    float limits[4];
    int32 found = 0;
    while (found < 4 && archive->FindFloat("_sizel", found, &limits[found]) == B_OK)
        found++;
    if (found == 4)
        SetSizeLimits(limits[0], limits[1], limits[2], limits[3]);
    bigtime_t rate;
    if (archive->FindInt64("_pulse", &rate) == B_OK)
        SetPulseRate(rate);

    BMessage child;
    for (int32 i = 0; archive->FindMessage("_views", i, &child) == B_OK; i++) {
        BArchivable* object = instantiate_object(&child);
        if (auto* view = dynamic_cast<BView*>(object))
            AddChild(view);
        else
            delete object;
    }
}

BWindow::~BWindow()
{
    // Only the window's thread comes here, or the one that made it and never ran it.
    if (!IsLocked())
        Lock();
    ViewPrivate::DeleteTop(fData->topView);
    if (fData->display != nullptr)
        fData->display->Destroy();
    BPrivate::count_active(fData, false);
    BPrivate::tell_application();
    _LeaveFront();
    delete fData->delivering;
    delete fData;
    fData = nullptr;
}

BArchivable* BWindow::Instantiate(BMessage* archive)
{
    if (archive == nullptr || !validate_instantiation(archive, "BWindow"))
        return nullptr;
    return new BWindow(archive);
}

status_t BWindow::Archive(BMessage* archive, bool deep) const
{
    status_t status = BLooper::Archive(archive, deep);
    if (status != B_OK)
        return status;
    archive->AddRect("_frame", Frame());
    archive->AddString("_title", Title());
    archive->AddInt32("_wlook", fData->look);
    archive->AddInt32("_wfeel", fData->feel);
    archive->AddInt32("_flags", fData->flags);
    archive->AddInt32("_wspace", fData->workspaces);
    archive->AddFloat("_zoom", fData->maxZoomWidth);
    archive->AddFloat("_zoom", fData->maxZoomHeight);
    for (float limit : {fData->minWidth, fData->maxWidth, fData->minHeight, fData->maxHeight})
        archive->AddFloat("_sizel", limit);
    archive->AddInt64("_pulse", fData->pulseRate);
    for (int32 i = 0; deep && i < CountChildren(); i++) {
        BMessage child;
        status = ChildAt(i)->Archive(&child, true);
        if (status == B_OK)
            status = archive->AddMessage("_views", &child);
        if (status != B_OK)
            return status;
    }
    return B_OK;
}

void BWindow::Quit()
{
    if (!IsLocked() && !Lock())
        return;
    while (!IsOffscreenWindow() && !IsHidden())
        Hide();
    if ((fData->flags & B_QUIT_ON_WINDOW_CLOSE) != 0 && be_app != nullptr)
        be_app->PostMessage(B_QUIT_REQUESTED);
    BLooper::Quit();
}

void BWindow::Close() { Quit(); }

void BWindow::AddChild(BView* child, BView* before)
{
    BAutolock lock(this);
    if (lock.IsLocked() && child != nullptr)
        fData->topView->AddChild(child, before);
}

void BWindow::AddChild(BLayoutItem*)
{
    // Without a layout there is no place for an item.
}

bool BWindow::RemoveChild(BView* child)
{
    BAutolock lock(this);
    return lock.IsLocked() && child != nullptr && child != fData->topView &&
           child->Window() == this && child->RemoveSelf();
}

int32 BWindow::CountChildren() const
{
    BAutolock lock(const_cast<BWindow*>(this));
    return lock.IsLocked() ? fData->topView->CountChildren() : 0;
}

BView* BWindow::ChildAt(int32 index) const
{
    BAutolock lock(const_cast<BWindow*>(this));
    return lock.IsLocked() ? fData->topView->ChildAt(index) : nullptr;
}

BView* BWindow::FindView(const char* viewName) const
{
    BAutolock lock(const_cast<BWindow*>(this));
    if (!lock.IsLocked() || viewName == nullptr)
        return nullptr;
    for (BView* child = fData->topView->ChildAt(0); child != nullptr;
         child = child->NextSibling()) {
        if (BView* found = child->FindView(viewName))
            return found;
    }
    return nullptr;
}

BView* BWindow::FindView(BPoint where) const
{
    BAutolock lock(const_cast<BWindow*>(this));
    if (!lock.IsLocked())
        return nullptr;
    BView* view = _ViewAt(where);
    return view == fData->topView ? nullptr : view;
}

void BWindow::SetTitle(const char* title)
{
    BAutolock lock(this);
    if (!lock.IsLocked())
        return;
    {
        BPrivate::MutexLock state(fData->stateLock);
        fData->title = title != nullptr ? title : "";
    }
    SetName(Title());
    if (fData->display != nullptr)
        fData->display->SetTitle(Title());
    fData->TellReaderSoon();
}

const char* BWindow::Title() const
{
    BPrivate::MutexLock state(fData->stateLock);
    return fData->title.String();
}

void BWindow::SetKeyMenuBar(BMenuBar* bar)
{
    BAutolock lock(this);
    if (lock.IsLocked())
        fData->keyMenuBar = bar;
}

BMenuBar* BWindow::KeyMenuBar() const { return fData->keyMenuBar; }

BView* BWindow::LastMouseMovedView() const
{
    return fData->mouseView == fData->topView ? nullptr : fData->mouseView;
}

status_t BWindow::SetDecoratorSettings(const BMessage& settings)
{
    BAutolock lock(this);
    if (!lock.IsLocked())
        return B_ERROR;
    fData->decorator = settings;
    return B_OK;
}

status_t BWindow::GetDecoratorSettings(BMessage* settings) const
{
    BAutolock lock(const_cast<BWindow*>(this));
    if (!lock.IsLocked() || settings == nullptr)
        return B_BAD_VALUE;
    *settings = fData->decorator;
    return B_OK;
}

status_t BWindow::Perform(perform_code code, void* data) { return BLooper::Perform(code, data); }

bool BWindow::QuitRequested() { return BLooper::QuitRequested(); }

thread_id BWindow::Run() { return BLooper::Run(); }

// The layout classes belong to no kit here; a layout given to a window is only remembered.
void BWindow::SetLayout(BLayout* layout) { fData->layout = layout; }

BLayout* BWindow::GetLayout() const { return fData->layout; }

void BWindow::InvalidateLayout(bool) {}

void BWindow::Layout(bool) {}

bool BWindow::IsOffscreenWindow() const { return fData->offscreen; }

void BWindow::_Init(BRect frame, const char* title, window_look look, window_feel feel,
                    uint32 flags, uint32 workspace)
{
    _SetKind(Kind::Window);
    fData = new WindowData(this);
    fData->look = look;
    fData->feel = feel;
    fData->flags = flags;
    fData->workspaces = BPrivate::real_workspaces(workspace);
    frame = BPrivate::window_frame(frame);
    {
        BPrivate::MutexLock state(fData->stateLock);
        fData->title = title != nullptr ? title : "";
        fData->frame = frame;
        fData->moves.Start(frame.LeftTop());
        fData->sizes.Start({frame.Width(), frame.Height()});
    }

    server::WindowSpec spec;
    spec.frame = frame;
    spec.title = title != nullptr ? title : "";
    spec.look = look;
    spec.feel = feel;
    spec.flags = flags;
    spec.workspaces = workspace;
    fData->display = server::ScreenWindow::Create(spec, fData);
    fData->canvas = std::make_unique<Canvas>(this, fData->display);
    fData->canvas->Resize(frame.IntegerWidth() + 1, frame.IntegerHeight() + 1);
    fData->topView = ViewPrivate::NewTop(this, fData->canvas.get(), frame.Width(), frame.Height());
    _AddDefaultShortcuts();
}

BPrivate::Canvas& BWindow::_Canvas() const { return *fData->canvas; }

BView* BWindow::_TopView() const { return fData->topView; }
