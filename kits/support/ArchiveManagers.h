#ifndef SUPPORT_ARCHIVE_MANAGERS_H
#define SUPPORT_ARCHIVE_MANAGERS_H

// What the BArchivers, or the BUnarchivers, of one archive share. A manager lives from the first of
// them to the last one's end, on one thread. Objects are named by tokens: the outermost is 0.

#include <Archivable.h>
#include <Message.h>

#include <memory>
#include <unordered_map>
#include <vector>

namespace BPrivate {

enum : int32 { kNullObjectToken = -42 };

class ArchiveManager {
public:
    // Notes the object that is being written into `archive`.
    static void Register(BMessage* archive, const BArchivable* object);
    // The manager that `archive` belongs to, a new one if it belongs to none.
    static ArchiveManager* Join(BMessage* archive);
    // May delete the manager.
    status_t Leave(status_t status);

    bool Knows(const BArchivable* object) const { return fTokens.count(object) != 0; }
    status_t Token(BArchivable* object, bool deep, int32& token);

private:
    struct Entry {
        const BArchivable* object;
        BMessage* archive;
        std::unique_ptr<BMessage> owned;  // the archive, but for the outermost one's
    };

    Entry* _Find(const BMessage* archive);
    status_t _Complete();

    ArchiveManager* fOuter;
    std::vector<Entry> fEntries;  // by token
    std::unordered_map<const BArchivable*, int32> fTokens;
    int32 fUsers = 0;
    status_t fStatus = B_OK;
};

class UnarchiveManager {
public:
    static void Register(const BMessage* archive, BArchivable* object);
    static UnarchiveManager* Join(const BMessage* archive);
    // Like Join(), for the BUnarchiver that the class's own constructor makes later.
    static void Prepare(const BMessage* archive);
    static bool IsManaged(const BMessage* archive);
    status_t Leave(status_t status);

    status_t Get(int32 token, BArchivable*& object);
    bool IsInstantiated(int32 token) const;
    void SetOwned(const BArchivable* object, bool owned);

    // Ends what a constructor prepared and never joined.
    class Scope {
    public:
        Scope();
        ~Scope();
        Scope(const Scope&) = delete;

    private:
        UnarchiveManager* fBefore;
    };

private:
    struct Entry {
        const BMessage* archive;
        std::unique_ptr<BMessage> owned;
        BArchivable* object = nullptr;
        int32 prepared = 0;
        bool instantiating = false;
        bool has_owner = false;
    };

    static UnarchiveManager* _For(const BMessage* archive);
    explicit UnarchiveManager(const BMessage* root);
    Entry* _Find(const BMessage* archive);

    UnarchiveManager* fOuter;
    std::vector<Entry> fEntries;  // by token
    int32 fUsers = 0;
    status_t fStatus = B_OK;
};

}  // namespace BPrivate

#endif  // SUPPORT_ARCHIVE_MANAGERS_H
