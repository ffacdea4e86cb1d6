#ifndef _PICTURE_H
#define _PICTURE_H

#include <Archivable.h>
#include <SupportDefs.h>

class BDataIO;
class BMessage;

class BPicture : public BArchivable {
public:
    BPicture();
    BPicture(const BPicture& other);
    BPicture(BMessage* data);
    virtual ~BPicture();
    static BArchivable* Instantiate(BMessage* data);
    virtual status_t Archive(BMessage* data, bool deep = true) const;
    virtual status_t Perform(perform_code code, void* arg);
    status_t Play(void** callBackTable, int32 tableEntries, void* userData);
    status_t Flatten(BDataIO* stream);
    status_t Unflatten(BDataIO* stream);

private:
};

#endif  // _PICTURE_H
