// BTab: one of the tabs of a tab view.

#include <TabView.h>

#include <Message.h>

#include <new>

#include <interface/tabs/TabData.h>

using BPrivate::Look;
using BPrivate::TabData;
using BPrivate::TabViewData;
using BPrivate::ViewRef;

BTab::BTab(BView* contentsView) : fData(std::make_unique<TabData>())
{
    if (contentsView != nullptr)
        fData->view = ViewRef(contentsView);
}

BTab::BTab(BMessage* archive) : BArchivable(archive), fData(std::make_unique<TabData>())
{
    if (archive == nullptr)
        return;
    fData->enabled = !archive->GetBool("_disable", false);
    fData->label = archive->GetString("_label", "");
}

BTab::~BTab()
{
    if (fData->owner != nullptr)
        fData->owner->RemoveTab(fData->owner->IndexOf(this));
    delete View();
}

BArchivable* BTab::Instantiate(BMessage* archive)
{
    return validate_instantiation(archive, "BTab") ? new (std::nothrow) BTab(archive) : nullptr;
}

// The view is archived by the tab view.
status_t BTab::Archive(BMessage* data, bool deep) const
{
    status_t status = BArchivable::Archive(data, deep);
    if (status == B_OK && !fData->enabled)
        status = data->AddBool("_disable", true);
    if (status == B_OK && View() == nullptr && fData->label.Length() > 0)
        status = data->AddString("_label", fData->label.String());
    return status;
}

status_t BTab::Perform(uint32 d, void* arg) { return BArchivable::Perform(d, arg); }

// --- label and state

const char* BTab::Label() const
{
    const BView* view = View();
    return view != nullptr ? view->Name() : fData->label.String();
}

void BTab::SetLabel(const char* label)
{
    if (BView* view = View())
        view->SetName(label);
    else
        fData->label = label;
    if (fData->owner != nullptr)
        fData->owner->_TabsChanged();
}

bool BTab::IsSelected() const { return fData->selected; }

void BTab::Select(BView* owner)
{
    BView* view = View();
    if (owner != nullptr && view != nullptr)
        owner->AddChild(view);
    fData->selected = true;
}

void BTab::Deselect()
{
    if (BView* view = View())
        view->RemoveSelf();
    fData->selected = false;
}

void BTab::SetEnabled(bool enable)
{
    if (enable == fData->enabled)
        return;
    fData->enabled = enable;
    if (fData->owner != nullptr)
        fData->owner->_TabsChanged();
}

bool BTab::IsEnabled() const { return fData->enabled; }
void BTab::MakeFocus(bool focus) { fData->focused = focus; }
bool BTab::IsFocus() const { return fData->focused; }

void BTab::SetView(BView* view)
{
    BView* const before = View();
    if (view == nullptr || view == before)
        return;
    if (before != nullptr)
        before->RemoveSelf();
    fData->view = ViewRef(view);
    if (fData->selected && fData->owner != nullptr)
        fData->owner->ContainerView()->AddChild(view);
    delete before;
    if (fData->owner != nullptr)
        fData->owner->_TabsChanged();
}

BView* BTab::View() const { return fData->view.View(); }

// --- drawing

static Look::Side side_of(const BTabView* owner)
{
    return owner != nullptr ? TabViewData::Of(*owner).Side() : Look::Side::Top;
}

void BTab::DrawFocusMark(BView* owner, BRect frame)
{
    if (owner != nullptr)
        Look(owner).DrawTabFocus(Label(), frame, side_of(fData->owner));
}

void BTab::DrawLabel(BView* owner, BRect frame)
{
    if (owner != nullptr)
        Look(owner).DrawTabLabel(Label(), frame, side_of(fData->owner),
                                 fData->enabled ? 0 : uint32(Look::kDisabled));
}

void BTab::DrawTab(BView* owner, BRect frame, tab_position position, bool full)
{
    if (owner == nullptr)
        return;
    Look(owner).DrawTab(frame, side_of(fData->owner),
                        position == B_TAB_FRONT ? uint32(Look::kOn) : 0, full);
    DrawLabel(owner, frame);
}
