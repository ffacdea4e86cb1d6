#ifndef _PICTURE_H
#define _PICTURE_H

#include <Archivable.h>
#include <InterfaceDefs.h>
#include <Rect.h>
#include <SupportDefs.h>

#include <memory>

class BDataIO;
class BMessage;
class BView;

namespace BPrivate {
struct PictureData;
}

/* Drawing calls of a view, recorded between BeginPicture() and EndPicture(), for DrawPicture(). */
class BPicture : public BArchivable {
public:
    BPicture();
    BPicture(const BPicture& other);
    BPicture(BMessage* data);
    virtual ~BPicture();
    static BArchivable* Instantiate(BMessage* data);
    virtual status_t Archive(BMessage* data, bool deep = true) const;
    virtual status_t Perform(perform_code code, void* arg);
    /* Calls the table's functions for the recorded calls, in BeOS' order of functions; those the
       table has no entry for are left out. */
    status_t Play(void** callBackTable, int32 tableEntries, void* userData);
    status_t Flatten(BDataIO* stream);
    status_t Unflatten(BDataIO* stream);

private:
    friend class BView;

    std::shared_ptr<BPrivate::PictureData> fData;
};

#endif  // _PICTURE_H
