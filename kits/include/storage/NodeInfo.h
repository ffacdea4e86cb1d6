#ifndef _NODE_INFO_H
#define _NODE_INFO_H

#include <Entry.h>
#include <Message.h>
#include <Mime.h>
#include <MimeType.h>
#include <SupportDefs.h>

class BBitmap;
class BNode;

// What a file says of itself: its type, who opens it, its icon. Kept as attributes with the
// platform's names; the type is the desktop's own attribute "user.mime_type". The node belongs to
// the caller and must outlive the object. Failures also leave the host's number in errno; where the
// file system keeps no attributes, setting is B_NOT_SUPPORTED. One thread at a time.
class BNodeInfo {
public:
    BNodeInfo();
    BNodeInfo(BNode* node);
    virtual ~BNodeInfo();
    BNodeInfo(const BNodeInfo&) = delete;
    BNodeInfo& operator=(const BNodeInfo&) = delete;

    // B_BAD_VALUE for null, and for a node that is not set.
    status_t SetTo(BNode* node);
    status_t InitCheck() const;

    // The type that was set; without one, what the desktop takes the node for by kind, name and
    // content. `type` holds B_MIME_TYPE_LENGTH bytes. Null, or empty, removes the type set.
    virtual status_t GetType(char* type) const;
    virtual status_t SetType(const char* type);

    // The node's own icon, kept in 256 colours; `icon` is `which` pixels square. Null removes it.
    virtual status_t GetIcon(BBitmap* icon, icon_size which = B_LARGE_ICON) const;
    virtual status_t SetIcon(const BBitmap* icon, icon_size which = B_LARGE_ICON);
    // Its vector icon, in memory for the caller to delete[].
    status_t GetIcon(uint8** data, size_t* size, type_code* type) const;
    status_t SetIcon(const uint8* data, size_t size);

    // The application that is to open this very file. `signature` holds B_MIME_TYPE_LENGTH bytes.
    status_t GetPreferredApp(char* signature, app_verb verb = B_OPEN) const;
    status_t SetPreferredApp(const char* signature, app_verb verb = B_OPEN);

    // Where an application is that can open it.
    status_t GetAppHint(entry_ref* ref) const;
    status_t SetAppHint(const entry_ref* ref);

    // The icon that a file browser shows: the node's own, the application's for an executable, the
    // volume's for a root, that of the type.
    status_t GetTrackerIcon(BBitmap* icon, icon_size which = B_LARGE_ICON) const;
    static status_t GetTrackerIcon(const entry_ref* ref, BBitmap* icon,
                                   icon_size which = B_LARGE_ICON);

private:
    friend class BAppFileInfo;

    BNode* fNode;
    status_t fStatus;
};

#endif  // _NODE_INFO_H
