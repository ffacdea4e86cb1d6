// Shelves: views that take replicants. All with the window of the view locked, if it is in one.

#include <Shelf.h>

#include <AppDefs.h>
#include <DataIO.h>
#include <File.h>
#include <Message.h>
#include <MessageFilter.h>
#include <View.h>
#include <Window.h>

#include <algorithm>
#include <new>
#include <utility>

#include <interface/controls/ControlPrivate.h>
#include <interface/replicants/ReplicantMessages.h>

static const char* const kTypeField = "shelf_type";
static const char* const kPlaceField = "_pjp_loc";
static const char* const kSavedField = "replicant";
static const uint32 kSavedShelf = 'shlf';

using BPrivate::ReplicantIds;

// Hands the shelf what is dropped on its view.
class BShelf::DropFilter : public BMessageFilter {
public:
    explicit DropFilter(BShelf* shelf)
        : BMessageFilter(B_ANY_DELIVERY, B_ANY_SOURCE, B_ARCHIVED_OBJECT), fShelf(shelf)
    {
    }

    filter_result Filter(BMessage* message, BHandler**) override
    {
        return fShelf->_TakeDrop(message) ? B_SKIP_MESSAGE : B_DISPATCH_MESSAGE;
    }

private:
    BShelf* fShelf;
};

// What stands for an archive of which no view can be made.
class Zombie : public BView {
public:
    explicit Zombie(BRect frame) : BView(frame, "zombie", B_FOLLOW_NONE, B_WILL_DRAW)
    {
        SetViewColor(150, 150, 150);
    }
};

BShelf::BShelf(BView* view, bool allowDrags, const char* shelfType) : BHandler("Shelf")
{
    _Init(view, allowDrags, shelfType);
}

BShelf::BShelf(const entry_ref* ref, BView* view, bool allowDrags, const char* shelfType)
    : BHandler("Shelf")
{
    _Init(view, allowDrags, shelfType);
    SetSaveLocation(ref);
    BFile file(ref, B_READ_ONLY);
    if (file.InitCheck() == B_OK)
        _Load(&file);
}

BShelf::BShelf(BDataIO* stream, BView* view, bool allowDrags, const char* shelfType)
    : BHandler("Shelf")
{
    _Init(view, allowDrags, shelfType);
    SetSaveLocation(stream);
    if (stream != nullptr)
        _Load(stream);
}

BShelf::BShelf(BMessage* archive) : BHandler(archive) {}

BShelf::~BShelf()
{
    for (const Replicant& replicant : fReplicants) {
        auto* handle = replicant.view != nullptr
                           ? dynamic_cast<BDragger*>(replicant.view->FindView("_dragger_"))
                           : nullptr;
        if (handle != nullptr)
            handle->fShelf = nullptr;
    }
    if (fView != nullptr && fView->RemoveFilter(fFilter))
        delete fFilter;
}

BArchivable* BShelf::Instantiate(BMessage*) { return nullptr; }

status_t BShelf::Archive(BMessage*, bool) const { return B_ERROR; }

void BShelf::_Init(BView* view, bool allowDrags, const char* shelfType)
{
    fView = view;
    fAllowsDragging = allowDrags;
    fType = shelfType != nullptr ? shelfType : "";
    if (fView == nullptr)
        return;
    fFilter = new DropFilter(this);
    fView->AddFilter(fFilter);
}

void BShelf::MessageReceived(BMessage* message) { BHandler::MessageReceived(message); }

// --- keeping

void BShelf::_Load(BDataIO* stream)
{
    BMessage saved;
    if (saved.Unflatten(stream) != B_OK || saved.what != kSavedShelf)
        return;
    BMessage archive;
    for (int32 i = 0; saved.FindMessage(kSavedField, i, &archive) == B_OK; i++) {
        BPoint place;
        archive.FindPoint(kPlaceField, &place);
        AddReplicant(new BMessage(archive), place);
    }
    fDirty = false;
}

status_t BShelf::_Write(BDataIO* stream)
{
    BMessage saved(kSavedShelf);
    for (const Replicant& replicant : fReplicants) {
        BMessage archive(*replicant.archive);
        if (replicant.view != nullptr && replicant.error == B_OK) {
            BMessage now;
            if (replicant.view->Archive(&now) == B_OK)
                archive = now;
        }
        archive.RemoveName(kPlaceField);
        if (replicant.view != nullptr)
            archive.AddPoint(kPlaceField, replicant.view->Frame().LeftTop());
        saved.AddMessage(kSavedField, &archive);
    }
    return saved.Flatten(stream);
}

status_t BShelf::Save()
{
    status_t status = B_ERROR;
    if (fStream != nullptr) {
        if (auto* positioned = dynamic_cast<BPositionIO*>(fStream)) {
            positioned->Seek(0, SEEK_SET);
            positioned->SetSize(0);
        }
        status = _Write(fStream);
    } else if (fHasRef) {
        BFile file(&fRef, B_WRITE_ONLY | B_CREATE_FILE | B_ERASE_FILE);
        status = file.InitCheck() == B_OK ? _Write(&file) : file.InitCheck();
    }
    if (status == B_OK)
        fDirty = false;
    return status;
}

void BShelf::SetDirty(bool state) { fDirty = state; }

bool BShelf::IsDirty() const { return fDirty; }

status_t BShelf::SetSaveLocation(BDataIO* stream)
{
    fDirty = true;
    fHasRef = false;
    fStream = stream;
    return B_OK;
}

status_t BShelf::SetSaveLocation(const entry_ref* ref)
{
    fDirty = true;
    fStream = nullptr;
    fHasRef = ref != nullptr;
    if (fHasRef)
        fRef = *ref;
    return B_OK;
}

BDataIO* BShelf::SaveLocation(entry_ref* ref) const
{
    if (ref != nullptr)
        *ref = fHasRef ? fRef : entry_ref();
    return fStream;
}

// ---

BHandler* BShelf::ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier, int32 form,
                                   const char* property)
{
    return BHandler::ResolveSpecifier(message, index, specifier, form, property);
}

status_t BShelf::GetSupportedSuites(BMessage* data) { return BHandler::GetSupportedSuites(data); }

status_t BShelf::Perform(perform_code code, void* data) { return BHandler::Perform(code, data); }

bool BShelf::AllowsDragging() const { return fAllowsDragging; }

void BShelf::SetAllowsDragging(bool state) { fAllowsDragging = state; }

bool BShelf::AllowsZombies() const { return fAllowsZombies; }

void BShelf::SetAllowsZombies(bool state) { fAllowsZombies = state; }

bool BShelf::DisplaysZombies() const { return fDisplaysZombies; }

void BShelf::SetDisplaysZombies(bool state) { fDisplaysZombies = state; }

bool BShelf::IsTypeEnforced() const { return fIsTypeEnforced; }

void BShelf::SetTypeEnforced(bool state) { fIsTypeEnforced = state; }

// --- replicants

// A replicant of this shelf that is dropped on it is moved; another one comes in.
bool BShelf::_TakeDrop(BMessage* message)
{
    if (!message->WasDropped() || message->what != B_ARCHIVED_OBJECT)
        return false;
    BPoint offset;
    BPoint place = message->DropPoint(&offset);
    if (fView->Window() != nullptr)
        fView->ConvertFromScreen(&place);
    place -= offset;
    if (_Move(message, place))
        return true;
    auto archive = std::make_unique<BMessage>(*message);
    for (const char* field :
         {"_drop_point_", "_drop_offset_", "buttons", BPrivate::kReplicantField})
        archive->RemoveName(field);
    return AddReplicant(archive.release(), place) == B_OK;
}

bool BShelf::_Move(BMessage* message, BPoint place)
{
    int32 id;
    const auto* handle = dynamic_cast<BDragger*>(message->ReturnAddress().Target(nullptr));
    if (handle == nullptr || handle->fShelf != this ||
        message->FindInt32(BPrivate::kReplicantField, &id) != B_OK)
        return false;
    const int32 at = IndexOf(static_cast<uint32>(id));
    if (at < 0 || !fAllowsDragging)
        return at >= 0;
    fReplicants[size_t(at)].view->MoveTo(place);
    fDirty = true;
    return true;
}

// Brings the view to its place, and a handle that is on its way beside it.
void BShelf::_PlaceView(BView* view, BMessage* archive, BPoint location)
{
    BRect frame = view->Frame().OffsetToCopy(location);
    frame.OffsetBy(AdjustReplicantBy(frame, archive));
    view->MoveTo(frame.LeftTop());
    fView->AddChild(view);
    BMessage widget;
    if (archive->FindMessage(BPrivate::kDraggerField, &widget) == B_OK) {
        if (auto* handle = dynamic_cast<BDragger*>(instantiate_object(&widget))) {
            handle->fTarget = view;
            fView->AddChild(handle, view->NextSibling());
        }
    }
}

// The handle of a replicant: itself, inside it or beside it.
static BDragger* handle_of(BView* view)
{
    if (auto* own = dynamic_cast<BDragger*>(view))
        return own;
    for (BView* child = view->ChildAt(0); child != nullptr; child = child->NextSibling()) {
        if (auto* handle = dynamic_cast<BDragger*>(child))
            return handle;
    }
    auto* beside = dynamic_cast<BDragger*>(view->NextSibling());
    return beside != nullptr && beside->Target() == view ? beside : nullptr;
}

status_t BShelf::AddReplicant(BMessage* archive, BPoint location)
{
    std::unique_ptr<BMessage> owned(archive);
    if (archive == nullptr || fView == nullptr)
        return B_BAD_VALUE;
    const char* type = nullptr;
    archive->FindString(kTypeField, &type);
    if (!CanAcceptReplicantMessage(archive) ||
        (fIsTypeEnforced && (type == nullptr || fType != type)))
        return B_ERROR;

    std::unique_ptr<BArchivable> object(instantiate_object(archive));
    auto* view = dynamic_cast<BView*>(object.get());
    const bool is_zombie = view == nullptr;
    if (is_zombie) {
        if (!fAllowsZombies)
            return B_ERROR;
        BRect frame;
        if (fDisplaysZombies && archive->FindRect("_frame", &frame) == B_OK)
            object.reset(view = new Zombie(frame));
    } else if (!CanAcceptReplicantView(view->Frame().OffsetToCopy(location), view, archive)) {
        return B_ERROR;
    }
    if (view != nullptr) {
        object.release();
        _PlaceView(view, archive, location);
        if (BDragger* handle = handle_of(view))
            handle->fShelf = this;
    }
    fReplicants.push_back(
        {std::move(owned), view, fNextId++, is_zombie ? status_t(B_ERROR) : status_t(B_OK)});
    fDirty = true;
    return B_OK;
}

status_t BShelf::DeleteReplicant(BView* replicant) { return _Delete(IndexOf(replicant)); }

status_t BShelf::DeleteReplicant(BMessage* archive) { return _Delete(IndexOf(archive)); }

status_t BShelf::DeleteReplicant(int32 index) { return _Delete(index); }

status_t BShelf::_Delete(int32 index)
{
    if (index < 0 || index >= CountReplicants())
        return B_BAD_VALUE;
    const Replicant gone = std::move(fReplicants[size_t(index)]);
    fReplicants.erase(fReplicants.begin() + index);
    fDirty = true;
    ReplicantDeleted(index, gone.archive.get(), gone.view);
    if (gone.view == nullptr)
        return B_OK;
    BDragger* handle = handle_of(gone.view);
    if (handle != nullptr && handle->Parent() == fView && handle != gone.view) {
        handle->RemoveSelf();
        delete handle;
    }
    gone.view->RemoveSelf();
    delete gone.view;
    return B_OK;
}

int32 BShelf::CountReplicants() const { return static_cast<int32>(fReplicants.size()); }

BMessage* BShelf::ReplicantAt(int32 index, BView** view, uint32* uid, status_t* perr) const
{
    const bool is_one = index >= 0 && index < CountReplicants();
    const Replicant* found = is_one ? &fReplicants[size_t(index)] : nullptr;
    if (view != nullptr)
        *view = is_one ? found->view : nullptr;
    if (uid != nullptr)
        *uid = is_one ? found->id : ~uint32(0);
    if (perr != nullptr)
        *perr = is_one ? found->error : status_t(B_BAD_INDEX);
    return is_one ? found->archive.get() : nullptr;
}

template <class Replicants, class IsMeant>
static int32 index_of(const Replicants& replicants, IsMeant is_meant)
{
    const auto found = std::find_if(replicants.begin(), replicants.end(), is_meant);
    return found != replicants.end() ? static_cast<int32>(found - replicants.begin()) : -1;
}

int32 BShelf::IndexOf(const BView* replicantView) const
{
    return replicantView == nullptr
               ? -1
               : index_of(fReplicants, [=](const auto& r) { return r.view == replicantView; });
}

int32 BShelf::IndexOf(const BMessage* archive) const
{
    return index_of(fReplicants, [=](const auto& r) { return r.archive.get() == archive; });
}

int32 BShelf::IndexOf(uint32 id) const
{
    return index_of(fReplicants, [=](const auto& r) { return r.id == id; });
}

bool BShelf::CanAcceptReplicantMessage(BMessage*) const { return true; }

bool BShelf::CanAcceptReplicantView(BRect, BView*, BMessage*) const { return true; }

BPoint BShelf::AdjustReplicantBy(BRect, BMessage*) const { return B_ORIGIN; }

void BShelf::ReplicantDeleted(int32, const BMessage*, const BView*) {}

int32 ReplicantIds::IndexOf(const BShelf& shelf, const BView* target, const BDragger* handle)
{
    const int32 at = shelf.IndexOf(target);
    return at >= 0 ? at : shelf.IndexOf(static_cast<const BView*>(handle));
}

int32 ReplicantIds::Of(const BShelf& shelf, const BView* target, const BDragger* handle)
{
    uint32 id = 0;
    shelf.ReplicantAt(IndexOf(shelf, target, handle), nullptr, &id);
    return static_cast<int32>(id);
}
