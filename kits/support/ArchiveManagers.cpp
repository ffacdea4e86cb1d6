// Archives of objects that point at one another: the outermost archive holds those of all others,
// by token, in "_managed_archivable".

#include "support/ArchiveManagers.h"

#include <utility>

namespace BPrivate {

static const char* const kManagedFlag = "_managed_archive";
static const char* const kManagedObjects = "_managed_archivable";

static thread_local ArchiveManager* tArchiving = nullptr;      // innermost
static thread_local UnarchiveManager* tUnarchiving = nullptr;  // innermost

void ArchiveManager::Register(BMessage* archive, const BArchivable* object)
{
    Entry* entry = tArchiving != nullptr ? tArchiving->_Find(archive) : nullptr;
    if (entry == nullptr || entry->object != nullptr)
        return;
    entry->object = object;
    tArchiving->fTokens[object] = static_cast<int32>(entry - tArchiving->fEntries.data());
}

ArchiveManager* ArchiveManager::Join(BMessage* archive)
{
    if (tArchiving == nullptr || tArchiving->_Find(archive) == nullptr) {
        ArchiveManager* manager = new ArchiveManager;
        manager->fOuter = std::exchange(tArchiving, manager);
        manager->fEntries.push_back({nullptr, archive, nullptr});
    }
    ++tArchiving->fUsers;
    return tArchiving;
}

status_t ArchiveManager::Leave(status_t status)
{
    if (fStatus == B_OK)
        fStatus = status;
    if (--fUsers > 0)
        return fStatus;
    if (fStatus == B_OK)
        fStatus = _Complete();
    const status_t result = fStatus;
    tArchiving = fOuter;
    delete this;
    return result;
}

status_t ArchiveManager::Token(BArchivable* object, bool deep, int32& token)
{
    if (object == nullptr) {
        token = kNullObjectToken;
        return B_OK;
    }
    if (auto known = fTokens.find(object); known != fTokens.end()) {
        token = known->second;
        return B_OK;
    }
    token = static_cast<int32>(fEntries.size());
    auto message = std::make_unique<BMessage>();
    BMessage* archive = message.get();
    fTokens[object] = token;
    fEntries.push_back({object, archive, std::move(message)});
    const status_t status = object->Archive(archive, deep);
    if (status != B_OK && fStatus == B_OK)
        fStatus = status;
    return status;
}

ArchiveManager::Entry* ArchiveManager::_Find(const BMessage* archive)
{
    for (Entry& entry : fEntries) {
        if (entry.archive == archive)
            return &entry;
    }
    return nullptr;
}

status_t ArchiveManager::_Complete()
{
    ++fUsers;  // an archiver that a hook makes is not the last one
    for (size_t i = 0; i < fEntries.size(); ++i) {
        if (fEntries[i].object == nullptr)
            continue;
        const status_t status = fEntries[i].object->AllArchived(fEntries[i].archive);
        if (status != B_OK)
            return status;
    }
    BMessage* root = fEntries[0].archive;
    status_t status = root->AddBool(kManagedFlag, true);
    for (size_t i = 1; status == B_OK && i < fEntries.size(); ++i)
        status = root->AddMessage(kManagedObjects, fEntries[i].archive);
    return status;
}

UnarchiveManager::UnarchiveManager(const BMessage* root) : fOuter(std::exchange(tUnarchiving, this))
{
    fEntries.emplace_back();
    fEntries[0].archive = root;
    fEntries[0].has_owner = true;  // whoever makes the outermost object owns it
    if (!root->GetBool(kManagedFlag, false))
        return;
    for (int32 i = 0;; ++i) {
        auto message = std::make_unique<BMessage>();
        if (root->FindMessage(kManagedObjects, i, message.get()) != B_OK)
            break;
        fEntries.emplace_back();
        fEntries.back().archive = message.get();
        fEntries.back().owned = std::move(message);
    }
}

void UnarchiveManager::Register(const BMessage* archive, BArchivable* object)
{
    Entry* entry = tUnarchiving != nullptr ? tUnarchiving->_Find(archive) : nullptr;
    if (entry != nullptr && entry->object == nullptr)
        entry->object = object;
}

UnarchiveManager* UnarchiveManager::_For(const BMessage* archive)
{
    if (tUnarchiving == nullptr || tUnarchiving->_Find(archive) == nullptr)
        new UnarchiveManager(archive);
    return tUnarchiving;
}

UnarchiveManager* UnarchiveManager::Join(const BMessage* archive)
{
    UnarchiveManager* manager = _For(archive);
    Entry* entry = manager->_Find(archive);
    if (entry->prepared > 0)
        --entry->prepared;
    else
        ++manager->fUsers;
    return manager;
}

void UnarchiveManager::Prepare(const BMessage* archive)
{
    UnarchiveManager* manager = _For(archive);
    ++manager->_Find(archive)->prepared;
    ++manager->fUsers;
}

bool UnarchiveManager::IsManaged(const BMessage* archive)
{
    if (archive == nullptr)
        return false;
    return archive->GetBool(kManagedFlag, false) ||
           (tUnarchiving != nullptr && tUnarchiving->_Find(archive) != nullptr);
}

status_t UnarchiveManager::Leave(status_t status)
{
    if (fStatus == B_OK)
        fStatus = status;
    if (fUsers > 1) {
        --fUsers;
        return fStatus;
    }
    // Still in use while the hooks run: an unarchiver that one of them makes is not the last one.
    for (size_t i = 0; fStatus == B_OK && i < fEntries.size(); ++i) {
        if (fEntries[i].object != nullptr)
            fStatus = fEntries[i].object->AllUnarchived(fEntries[i].archive);
    }
    for (Entry& entry : fEntries) {
        if (!entry.has_owner)
            delete entry.object;
    }
    const status_t result = fStatus;
    tUnarchiving = fOuter;
    delete this;
    return result;
}

status_t UnarchiveManager::Get(int32 token, BArchivable*& object)
{
    object = nullptr;
    if (token == kNullObjectToken)
        return B_OK;
    if (token < 0 || token >= static_cast<int32>(fEntries.size()))
        return B_BAD_VALUE;
    Entry& entry = fEntries[token];
    if (entry.object == nullptr && !entry.instantiating) {
        BMessage* archive = const_cast<BMessage*>(entry.archive);
        instantiation_func make = find_instantiation_func(archive);
        entry.instantiating = true;
        entry.object = make != nullptr ? make(archive) : nullptr;
        entry.instantiating = false;
    }
    object = entry.object;
    return object != nullptr ? B_OK : B_ERROR;
}

bool UnarchiveManager::IsInstantiated(int32 token) const
{
    return token >= 0 && token < static_cast<int32>(fEntries.size()) &&
           fEntries[token].object != nullptr;
}

void UnarchiveManager::SetOwned(const BArchivable* object, bool owned)
{
    for (size_t i = 1; i < fEntries.size(); ++i) {
        if (fEntries[i].object == object)
            fEntries[i].has_owner = owned;
    }
}

UnarchiveManager::Entry* UnarchiveManager::_Find(const BMessage* archive)
{
    for (Entry& entry : fEntries) {
        if (entry.archive == archive)
            return &entry;
    }
    return nullptr;
}

UnarchiveManager::Scope::Scope() : fBefore(tUnarchiving) {}

UnarchiveManager::Scope::~Scope()
{
    while (tUnarchiving != fBefore) {
        UnarchiveManager* left = tUnarchiving;
        tUnarchiving = left->fOuter;
        delete left;
    }
}

}  // namespace BPrivate
