#ifndef _ARCHIVABLE_H
#define _ARCHIVABLE_H

#include <SupportDefs.h>

class BMessage;

typedef int32 image_id;

class BArchivable;

typedef BArchivable *(*instantiation_func)(BMessage *);

class BArchivable {
public:
    BArchivable(BMessage* from);
    BArchivable();
    virtual ~BArchivable();
    virtual status_t Archive(BMessage* into, bool deep = true) const;
    static BArchivable* Instantiate(BMessage* archive);
    virtual status_t Perform(perform_code d, void* arg);
    virtual status_t AllUnarchived(const BMessage* archive);
    virtual status_t AllArchived(BMessage* archive) const;

private:
};

class BArchiver {
public:
    BArchiver(BMessage* archive);
    ~BArchiver();
    status_t AddArchivable(const char* name, BArchivable* archivable, bool deep = true);
    status_t GetTokenForArchivable(BArchivable* archivable, int32& _token);
    status_t GetTokenForArchivable(BArchivable* archivable, bool deep, int32& _token);
    bool IsArchived(BArchivable* archivable);
    status_t Finish(status_t err = B_OK);
    BMessage* ArchiveMessage() const;

private:
};

class BUnarchiver {
public:
    enum ownership_policy { B_ASSUME_OWNERSHIP = 0, B_DONT_ASSUME_OWNERSHIP = 1 };
    BUnarchiver(const BMessage* archive);
    ~BUnarchiver();
    template < class T > inline status_t GetObject(int32 token, T * & object);
    template < class T > status_t GetObject(int32 token, ownership_policy owning, T * & object);
    template < class T > inline status_t FindObject(const char * name, T * & object);
    template < class T > inline status_t FindObject(const char * name, ownership_policy owning, T * & object);
    template < class T > inline status_t FindObject(const char * name, int32 index, T * & object);
    template < class T > status_t FindObject(const char * name, int32 index, ownership_policy owning, T * & object);
    status_t EnsureUnarchived(const char* name, int32 index = 0);
    status_t EnsureUnarchived(int32 token);
    bool IsInstantiated(int32 token);
    bool IsInstantiated(const char* name, int32 index = 0);
    status_t Finish(status_t err = B_OK);
    const BMessage* ArchiveMessage() const;
    void AssumeOwnership(BArchivable* archivable);
    void RelinquishOwnership(BArchivable* archivable);
    static bool IsArchiveManaged(const BMessage* archive);
    static BMessage* PrepareArchive(BMessage*& archive);
    template < class T > static status_t InstantiateObject(BMessage * archive, T * & object);

private:
};

BArchivable* instantiate_object(BMessage* from, image_id* id);
BArchivable* instantiate_object(BMessage* from);
bool validate_instantiation(BMessage* from, const char* className);
instantiation_func find_instantiation_func(const char* className, const char* signature);
instantiation_func find_instantiation_func(const char* className);
instantiation_func find_instantiation_func(BMessage* archive);

#endif  // _ARCHIVABLE_H
