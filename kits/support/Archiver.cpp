// BArchiver and BUnarchiver: what a class sees of the archive's manager.

#include <Archivable.h>
#include <Message.h>

#include "support/ArchiveManagers.h"

using BPrivate::ArchiveManager;
using BPrivate::UnarchiveManager;

BArchiver::BArchiver(BMessage* archive)
    : fManager(archive != nullptr ? ArchiveManager::Join(archive) : nullptr),
      fArchive(archive),
      fFinished(archive == nullptr)
{
}

BArchiver::~BArchiver()
{
    if (!fFinished)
        fManager->Leave(B_OK);
}

status_t BArchiver::AddArchivable(const char* name, BArchivable* archivable, bool deep)
{
    int32 token;
    const status_t status = GetTokenForArchivable(archivable, deep, token);
    return status == B_OK ? fArchive->AddInt32(name, token) : status;
}

status_t BArchiver::GetTokenForArchivable(BArchivable* archivable, int32& _token)
{
    return GetTokenForArchivable(archivable, true, _token);
}

status_t BArchiver::GetTokenForArchivable(BArchivable* archivable, bool deep, int32& _token)
{
    return fFinished ? B_NO_INIT : fManager->Token(archivable, deep, _token);
}

bool BArchiver::IsArchived(BArchivable* archivable)
{
    return archivable == nullptr || (!fFinished && fManager->Knows(archivable));
}

status_t BArchiver::Finish(status_t err)
{
    if (fFinished)
        return fArchive != nullptr ? B_OK : B_BAD_VALUE;
    fFinished = true;
    return fManager->Leave(err);
}

BMessage* BArchiver::ArchiveMessage() const { return fArchive; }

BUnarchiver::BUnarchiver(const BMessage* archive)
    : fManager(archive != nullptr ? UnarchiveManager::Join(archive) : nullptr),
      fArchive(archive),
      fFinished(archive == nullptr)
{
}

BUnarchiver::~BUnarchiver()
{
    if (!fFinished)
        fManager->Leave(B_OK);
}

status_t BUnarchiver::EnsureUnarchived(const char* name, int32 index)
{
    int32 token;
    const status_t status = _Token(name, index, token);
    return status == B_OK ? EnsureUnarchived(token) : status;
}

status_t BUnarchiver::EnsureUnarchived(int32 token)
{
    BArchivable* object;
    return _Get(token, object);
}

bool BUnarchiver::IsInstantiated(int32 token)
{
    return !fFinished && fManager->IsInstantiated(token);
}

bool BUnarchiver::IsInstantiated(const char* name, int32 index)
{
    int32 token;
    return _Token(name, index, token) == B_OK && IsInstantiated(token);
}

status_t BUnarchiver::Finish(status_t err)
{
    if (fFinished)
        return fArchive != nullptr ? B_OK : B_BAD_VALUE;
    fFinished = true;
    return fManager->Leave(err);
}

const BMessage* BUnarchiver::ArchiveMessage() const { return fArchive; }

void BUnarchiver::AssumeOwnership(BArchivable* archivable)
{
    if (!fFinished)
        fManager->SetOwned(archivable, true);
}

void BUnarchiver::RelinquishOwnership(BArchivable* archivable)
{
    if (!fFinished)
        fManager->SetOwned(archivable, false);
}

bool BUnarchiver::IsArchiveManaged(const BMessage* archive)
{
    return UnarchiveManager::IsManaged(archive);
}

BMessage* BUnarchiver::PrepareArchive(BMessage*& archive)
{
    if (IsArchiveManaged(archive))
        UnarchiveManager::Prepare(archive);
    return archive;
}

status_t BUnarchiver::_Get(int32 token, BArchivable*& object)
{
    return fFinished ? B_NO_INIT : fManager->Get(token, object);
}

status_t BUnarchiver::_Token(const char* name, int32 index, int32& token) const
{
    return fArchive != nullptr ? fArchive->FindInt32(name, index, &token) : B_BAD_VALUE;
}

status_t BUnarchiver::_Instantiate(BMessage* archive, BArchivable*& object)
{
    if (archive == nullptr)
        return B_BAD_VALUE;
    object = instantiate_object(archive);
    return object != nullptr ? B_OK : B_ERROR;
}
