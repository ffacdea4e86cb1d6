#ifndef _SHELF_H
#define _SHELF_H

#include <Dragger.h>
#include <Entry.h>
#include <Handler.h>
#include <Point.h>
#include <Rect.h>

#include <memory>
#include <string>
#include <vector>

class BDataIO;
class BView;

/* Has a view take replicants: archived views that are dropped on it are made anew inside it, and
   kept in a file or stream. Made for a view in a window, or before it is in one; it belongs to
   whoever made it, and goes before the view does. */
class BShelf : public BHandler {
public:
    BShelf(BView* view, bool allowDrags = true, const char* shelfType = nullptr);
    /* What is in the file, or stream, is put into the view, and Save() writes there. */
    BShelf(const entry_ref* ref, BView* view, bool allowDrags = true,
           const char* shelfType = nullptr);
    BShelf(BDataIO* stream, BView* view, bool allowDrags = true, const char* shelfType = nullptr);
    BShelf(BMessage* archive);
    virtual ~BShelf();

    static BArchivable* Instantiate(BMessage* archive);
    /* B_ERROR: shelves are saved, not archived. */
    virtual status_t Archive(BMessage* archive, bool deep = true) const;

    virtual void MessageReceived(BMessage* message);
    status_t Save();
    virtual void SetDirty(bool state);
    bool IsDirty() const;

    virtual BHandler* ResolveSpecifier(BMessage* message, int32 index, BMessage* specifier,
                                       int32 form, const char* property);
    virtual status_t GetSupportedSuites(BMessage* data);
    virtual status_t Perform(perform_code code, void* data);

    /* Whether replicants may be dragged about in it and out of it. */
    bool AllowsDragging() const;
    void SetAllowsDragging(bool state);
    /* Whether archives of which no view can be made are kept, and are to be seen as grey boxes. */
    bool AllowsZombies() const;
    void SetAllowsZombies(bool state);
    bool DisplaysZombies() const;
    void SetDisplaysZombies(bool state);
    /* Whether only replicants are taken whose "shelf_type" is the shelf's. */
    bool IsTypeEnforced() const;
    void SetTypeEnforced(bool state);

    /* Null for nowhere. The stream stays the caller's. */
    status_t SetSaveLocation(BDataIO* stream);
    status_t SetSaveLocation(const entry_ref* ref);
    BDataIO* SaveLocation(entry_ref* ref) const;

    /* Takes the archive over, in any case. The view's left top corner comes to `location`. */
    status_t AddReplicant(BMessage* archive, BPoint location);
    /* B_BAD_VALUE for what is not in the shelf. */
    status_t DeleteReplicant(BView* replicant);
    status_t DeleteReplicant(BMessage* archive);
    status_t DeleteReplicant(int32 index);
    int32 CountReplicants() const;
    BMessage* ReplicantAt(int32 index, BView** view = nullptr, uint32* uid = nullptr,
                          status_t* perr = nullptr) const;
    /* -1 for what is not in the shelf. */
    int32 IndexOf(const BView* replicantView) const;
    int32 IndexOf(const BMessage* archive) const;
    int32 IndexOf(uint32 id) const;

protected:
    virtual bool CanAcceptReplicantMessage(BMessage* archive) const;
    virtual bool CanAcceptReplicantView(BRect, BView*, BMessage*) const;
    /* How far a replicant that would come to a place is moved from there. */
    virtual BPoint AdjustReplicantBy(BRect, BMessage*) const;
    virtual void ReplicantDeleted(int32 index, const BMessage* archive, const BView* replicant);

private:
    class DropFilter;
    friend class BDragger;
    struct Replicant {
        std::unique_ptr<BMessage> archive;
        BView* view;  // null for a zombie that is not to be seen
        uint32 id;
        status_t error;
    };

    void _Init(BView* view, bool allowDrags, const char* shelfType);
    bool _TakeDrop(BMessage* message);
    bool _Move(BMessage* message, BPoint place);
    void _Load(BDataIO* stream);
    status_t _Write(BDataIO* stream);
    void _PlaceView(BView* view, BMessage* archive, BPoint location);
    status_t _Delete(int32 index);

    BView* fView = nullptr;
    DropFilter* fFilter = nullptr;  // the view's
    std::vector<Replicant> fReplicants;
    std::string fType;
    uint32 fNextId = 1;
    BDataIO* fStream = nullptr;  // the caller's
    entry_ref fRef;
    bool fHasRef = false;
    bool fDirty = false;
    bool fAllowsDragging = true;
    bool fAllowsZombies = false;
    bool fDisplaysZombies = false;
    bool fIsTypeEnforced = false;
};

#endif  // _SHELF_H
