#ifndef _ARCHIVABLE_H
#define _ARCHIVABLE_H

#include <SupportDefs.h>

class BArchivable;
class BMessage;

namespace BPrivate {
class ArchiveManager;
class UnarchiveManager;
}  // namespace BPrivate

typedef int32 image_id;
typedef BArchivable* (*instantiation_func)(BMessage*);

/* What can be written into a message and made again from it. A class that wants to be made again
   has a static `BArchivable* Instantiate(BMessage*)` of its own; the names of its class and of its
   bases stand in the field "class", its own first. */
class BArchivable {
public:
    BArchivable(BMessage* from);
    BArchivable();
    virtual ~BArchivable();

    /* Hook: adds the object's state to `into`, with `deep` that of the objects it owns as well.
       An override calls its base class first. B_BAD_VALUE for null. */
    virtual status_t Archive(BMessage* into, bool deep = true) const;
    static BArchivable* Instantiate(BMessage* archive);

    virtual status_t Perform(perform_code d, void* arg);

    /* Hooks: called for every object of an archive made with BArchiver, when all of them are there
       and can be looked up. */
    virtual status_t AllUnarchived(const BMessage* archive);
    virtual status_t AllArchived(BMessage* archive) const;
};

/* Writes objects that point at one another: each goes into the archive once, and is named by a
   token. Used within an override of Archive(); the outermost one's Finish() completes the
   archive. */
class BArchiver {
public:
    BArchiver(BMessage* archive);
    ~BArchiver();

    /* Archives the object, unless that was done, and adds its token under `name`. Null is a valid
       object, and comes back as null. */
    status_t AddArchivable(const char* name, BArchivable* archivable, bool deep = true);
    status_t GetTokenForArchivable(BArchivable* archivable, int32& _token);
    status_t GetTokenForArchivable(BArchivable* archivable, bool deep, int32& _token);
    bool IsArchived(BArchivable* archivable);
    /* Returns `err`, or the first failure of all that was archived. */
    status_t Finish(status_t err = B_OK);
    BMessage* ArchiveMessage() const;

private:
    BArchiver(const BArchiver&) = delete;
    BArchiver& operator=(const BArchiver&) = delete;

    BPrivate::ArchiveManager* fManager;
    BMessage* fArchive;
    bool fFinished;
};

/* Reads what BArchiver wrote. Used within the constructor that takes the message; the base class
   is given PrepareArchive(archive). */
class BUnarchiver {
public:
    enum ownership_policy { B_ASSUME_OWNERSHIP = 0, B_DONT_ASSUME_OWNERSHIP = 1 };

    BUnarchiver(const BMessage* archive);
    ~BUnarchiver();

    /* Give the object behind a token or a field, making it if need be. B_BAD_TYPE if it is no T.
       Objects nobody assumed ownership of are deleted by the outermost Finish(). */
    template <class T>
    status_t GetObject(int32 token, T*& object);
    template <class T>
    status_t GetObject(int32 token, ownership_policy owning, T*& object);
    template <class T>
    status_t FindObject(const char* name, T*& object);
    template <class T>
    status_t FindObject(const char* name, ownership_policy owning, T*& object);
    template <class T>
    status_t FindObject(const char* name, int32 index, T*& object);
    template <class T>
    status_t FindObject(const char* name, int32 index, ownership_policy owning, T*& object);

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
    template <class T>
    static status_t InstantiateObject(BMessage* archive, T*& object);

private:
    BUnarchiver(const BUnarchiver&) = delete;
    BUnarchiver& operator=(const BUnarchiver&) = delete;

    status_t _Get(int32 token, BArchivable*& object);
    status_t _Token(const char* name, int32 index, int32& token) const;
    static status_t _Instantiate(BMessage* archive, BArchivable*& object);

    BPrivate::UnarchiveManager* fManager;
    const BMessage* fArchive;
    bool fFinished;
};

/* Makes the object that an archive describes; null, with errno set, if the class is not there. */
BArchivable* instantiate_object(BMessage* from, image_id* id);
BArchivable* instantiate_object(BMessage* from);
/* Whether the archive holds an object of the class or of one derived from it. */
bool validate_instantiation(BMessage* from, const char* className);
/* Looks for the class's Instantiate() in the running program and its libraries: a program that
   wants its own classes found is linked with -rdynamic. `signature` is not needed here. */
instantiation_func find_instantiation_func(const char* className, const char* signature);
instantiation_func find_instantiation_func(const char* className);
instantiation_func find_instantiation_func(BMessage* archive);

template <class T>
status_t BUnarchiver::GetObject(int32 token, ownership_policy owning, T*& object)
{
    BArchivable* found = nullptr;
    object = nullptr;
    const status_t status = _Get(token, found);
    if (status != B_OK || found == nullptr)
        return status;
    object = dynamic_cast<T*>(found);
    if (object == nullptr)
        return B_BAD_TYPE;
    if (owning == B_ASSUME_OWNERSHIP)
        AssumeOwnership(found);
    return B_OK;
}

template <class T>
status_t BUnarchiver::GetObject(int32 token, T*& object)
{
    return GetObject(token, B_ASSUME_OWNERSHIP, object);
}

template <class T>
status_t BUnarchiver::FindObject(const char* name, int32 index, ownership_policy owning, T*& object)
{
    int32 token;
    object = nullptr;
    const status_t status = _Token(name, index, token);
    return status == B_OK ? GetObject(token, owning, object) : status;
}

template <class T>
status_t BUnarchiver::FindObject(const char* name, T*& object)
{
    return FindObject(name, 0, B_ASSUME_OWNERSHIP, object);
}

template <class T>
status_t BUnarchiver::FindObject(const char* name, ownership_policy owning, T*& object)
{
    return FindObject(name, 0, owning, object);
}

template <class T>
status_t BUnarchiver::FindObject(const char* name, int32 index, T*& object)
{
    return FindObject(name, index, B_ASSUME_OWNERSHIP, object);
}

template <class T>
status_t BUnarchiver::InstantiateObject(BMessage* archive, T*& object)
{
    BArchivable* made = nullptr;
    object = nullptr;
    const status_t status = _Instantiate(archive, made);
    if (status != B_OK)
        return status;
    object = dynamic_cast<T*>(made);
    if (object != nullptr)
        return B_OK;
    delete made;
    return B_BAD_TYPE;
}

#endif  // _ARCHIVABLE_H
