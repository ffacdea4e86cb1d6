// The tree of views: children, parents, and the way to and from a window.

#include <View.h>

#include <Window.h>

#include <interface/view/ViewPrivate.h>

#include <cstring>
#include <new>

namespace BPrivate {

void ViewPrivate::Collect(BView* top, std::vector<ViewRef>* views)
{
    views->emplace_back(top);
    for (BView* child = top->fData->first; child != nullptr; child = child->fData->next)
        Collect(child, views);
}

void ViewPrivate::CollectUpwards(BView* top, std::vector<ViewRef>* views)
{
    for (BView* child = top->fData->first; child != nullptr; child = child->fData->next)
        CollectUpwards(child, views);
    views->emplace_back(top);
}

bool ViewPrivate::Holds(const BView* top, const BView* branch)
{
    if (top == branch)
        return true;
    for (BView* child = top->fData->first; child != nullptr; child = child->fData->next) {
        if (Holds(child, branch))
            return true;
    }
    return false;
}

// Makes the branch known to the window; views that a hook adds meanwhile come attached already.
void ViewPrivate::Attach(BView* branch, BWindow* window, Canvas* canvas)
{
    std::vector<ViewRef> views;
    Collect(branch, &views);
    for (const ViewRef& ref : views) {
        BView* view = ref.View();
        ViewData& data = *ref.Data();
        window->AddHandler(view);
        const bool hangsInWindow = data.isTop || data.parent->fData->isTop;
        view->SetNextHandler(hangsInWindow ? static_cast<BHandler*>(window) : data.parent);
        data.SetCanvas(canvas);
        data.window = window;
        if (data.eventMask != 0)
            window->_SetEventMask(view, data.eventMask, data.eventOptions);
    }
    canvas->NextGeneration();

    auto still_here = [&](const ViewRef& ref) {
        return ref.View() != nullptr && ref.Data()->window == window;
    };
    for (const ViewRef& ref : views) {
        if (still_here(ref) && !ref.Data()->attached) {
            ref.Data()->attached = true;
            ref.View()->AttachedToWindow();
        }
    }
    views.clear();
    CollectUpwards(branch, &views);
    for (const ViewRef& ref : views) {
        if (still_here(ref) && !ref.Data()->allAttached) {
            ref.Data()->allAttached = true;
            ref.View()->AllAttached();
        }
    }
}

// Calls the hooks of a branch that leaves its window; a hook may change the branch.
static void tell_detached(BView* branch, const BWindow* window)
{
    auto still_here = [&](const ViewRef& ref) { return ref.Data()->window == window; };
    std::vector<ViewRef> views;
    ViewPrivate::Collect(branch, &views);
    for (const ViewRef& ref : views) {
        if (still_here(ref) && std::exchange(ref.Data()->attached, false))
            ref.Data()->self->DetachedFromWindow();
    }
    views.clear();
    ViewPrivate::CollectUpwards(branch, &views);
    for (const ViewRef& ref : views) {
        if (still_here(ref) && std::exchange(ref.Data()->allAttached, false))
            ref.Data()->self->AllDetached();
    }
}

// The window forgets the views of a branch. Nothing here needs memory: who deletes a view can not
// do without.
void ViewPrivate::Forget(BView* branch, BWindow* window)
{
    ViewData& data = *branch->fData;
    for (BView* child = data.first; child != nullptr; child = child->fData->next)
        Forget(child, window);
    if (data.window != window)
        return;
    window->_ForgetView(branch);
    data.attached = data.allAttached = false;
    if (data.extras != nullptr)
        data.extras->tracking = nullptr;
    data.window = nullptr;
    data.SetCanvas(nullptr);
    branch->SetNextHandler(nullptr);
    window->RemoveHandler(branch);
}

void ViewPrivate::Detach(BView* branch)
{
    BWindow* window = branch->fData->window;
    if (window == nullptr)
        return;
    try {
        tell_detached(branch, window);
    } catch (const std::bad_alloc&) {  // the hooks are left out
    }
    Canvas* canvas = branch->fData->canvas;
    Forget(branch, window);
    if (canvas != nullptr)
        canvas->NextGeneration();
}

BView* ViewPrivate::NewTop(BWindow* window, Canvas* canvas, float width, float height)
{
    BView* top = new BView(BRect(0, 0, width, height), "top", B_FOLLOW_ALL, B_WILL_DRAW);
    top->fData->isTop = true;
    Attach(top, window, canvas);
    return top;
}

void ViewPrivate::DeleteTop(BView* top)
{
    if (top == nullptr)
        return;
    Detach(top);
    delete top;
}

}  // namespace BPrivate

using BPrivate::ViewData;
using BPrivate::ViewPrivate;

void BView::AddChild(BView* child, BView* before)
{
    if (child == nullptr || child == this || child->fData->parent != nullptr || child->fData->isTop)
        return;
    for (BView* above = fData->parent; above != nullptr; above = above->fData->parent) {
        if (above == child)
            return;
    }
    BPrivate::ViewLock lock(this);
    ViewData& data = *child->fData;
    if (before != nullptr && before->fData->parent != this)
        before = nullptr;
    BView* after = before != nullptr ? before->fData->previous : fData->last;
    data.parent = this;
    data.previous = after;
    data.next = before;
    (after != nullptr ? after->fData->next : fData->first) = child;
    (before != nullptr ? before->fData->previous : fData->last) = child;
    fData->children++;

    if (BWindow* window = fData->window) {
        BPrivate::ViewRef held(child);
        ViewPrivate::Attach(child, window, fData->canvas);
        if (held.View() != nullptr && data.window == window)
            data.InvalidateVisible(true);
    }
}

bool BView::AddChild(BLayoutItem*) { return false; }

// Most of a view is read when it leaves its parent and is deleted; memory may be far.
static void expect_use(const ViewData& data)
{
    const size_t line = 64;
    const auto* bytes = reinterpret_cast<const char*>(&data);
    for (size_t at = 0; at < sizeof data; at += line)
        __builtin_prefetch(bytes + at);
}

bool BView::RemoveSelf()
{
    expect_use(*fData);
    BPrivate::ViewLock lock(this);
    if (fData->parent == nullptr)
        return false;
    try {
        fData->InvalidateVisible(true);
    } catch (const std::bad_alloc&) {  // the place is drawn with the next change
    }
    ViewPrivate::Detach(this);
    BView* parent = fData->parent;
    if (parent == nullptr)
        return true;  // a hook was faster
    BView* previous = std::exchange(fData->previous, nullptr);
    BView* next = std::exchange(fData->next, nullptr);
    (previous != nullptr ? previous->fData->next : parent->fData->first) = next;
    (next != nullptr ? next->fData->previous : parent->fData->last) = previous;
    fData->parent = nullptr;
    parent->fData->children--;
    parent->fData->TreeChanged();
    return true;
}

bool BView::RemoveChild(BView* child)
{
    if (child == nullptr)
        return false;
    for (BView* own = fData->first; own != nullptr; own = own->fData->next) {
        if (own == child)
            return child->RemoveSelf();
    }
    return false;
}

int32 BView::CountChildren() const { return fData->children; }

BView* BView::ChildAt(int32 index) const
{
    BView* child = index >= 0 ? fData->first : nullptr;
    while (child != nullptr && index-- > 0)
        child = child->fData->next;
    return child;
}

BView* BView::NextSibling() const { return fData->next; }

BView* BView::PreviousSibling() const { return fData->previous; }

BView* BView::Parent() const
{
    BView* parent = fData->parent;
    return parent != nullptr && parent->fData->isTop ? nullptr : parent;
}

BWindow* BView::Window() const { return fData->window.load(std::memory_order_relaxed); }

BView* BView::FindView(const char* name) const
{
    if (name == nullptr)
        return nullptr;
    if (Name() != nullptr && strcmp(Name(), name) == 0)
        return const_cast<BView*>(this);
    for (BView* child = fData->first; child != nullptr; child = child->fData->next) {
        if (BView* found = child->FindView(name))
            return found;
    }
    return nullptr;
}
