// BMimeType: the type as a name.

#include <MimeType.h>

#include <errno.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

#include <string>

#include <Entry.h>

#include "storage/Directories.h"
#include "support/HostErrors.h"
#include "storage/mime/MimeGuess.h"
#include "storage/mime/MimeNames.h"

using namespace storage;
using BPrivate::fail;
using BPrivate::not_set;

const char* B_PEF_APP_MIME_TYPE = "application/x-be-executable";
const char* B_PE_APP_MIME_TYPE = "application/x-vnd.Be-peexecutable";
const char* B_ELF_APP_MIME_TYPE = "application/x-vnd.Be-elfexecutable";
const char* B_RESOURCE_MIME_TYPE = "application/x-be-resource";
const char* B_FILE_MIME_TYPE = "application/octet-stream";
const char* B_APP_MIME_TYPE = "application/x-vnd.Be-elfexecutable";

BMimeType::BMimeType() : fType(nullptr), fStatus(B_NO_INIT) {}

BMimeType::BMimeType(const char* mimeType) : BMimeType() { SetTo(mimeType); }

BMimeType::~BMimeType() { free(fType); }

status_t BMimeType::SetTo(const char* mimeType)
{
    char* copy = nullptr;
    status_t status = IsValid(mimeType) ? B_OK : fail(EINVAL);
    if (status == B_OK) {
        copy = strdup(mimeType);  // `mimeType` may be Type()
        status = copy != nullptr ? B_OK : fail(ENOMEM);
    }
    free(fType);
    fType = copy;
    return fStatus = status;
}

status_t BMimeType::SetType(const char* mimeType) { return SetTo(mimeType); }

void BMimeType::Unset()
{
    free(fType);
    fType = nullptr;
    fStatus = B_NO_INIT;
}

status_t BMimeType::InitCheck() const { return fStatus; }

const char* BMimeType::Type() const { return fType; }

bool BMimeType::IsValid() const { return fStatus == B_OK; }

bool BMimeType::IsValid(const char* mimeType) { return is_mime_name(mimeType); }

bool BMimeType::IsSupertypeOnly() const
{
    return fType != nullptr && strchr(fType, '/') == nullptr;
}

status_t BMimeType::GetSupertype(BMimeType* supertype) const
{
    if (supertype == nullptr)
        return fail(EINVAL);
    if (fStatus != B_OK)
        return not_set();
    const char* slash = strchr(fType, '/');
    if (slash == nullptr)
        return fail(EINVAL);
    return supertype->SetTo(std::string(fType, static_cast<size_t>(slash - fType)).c_str());
}

bool BMimeType::operator==(const BMimeType& type) const
{
    if (fType == nullptr || type.fType == nullptr)
        return fType == type.fType;
    return strcasecmp(fType, type.fType) == 0;
}

bool BMimeType::operator==(const char* type) const
{
    return fType != nullptr && type != nullptr && strcasecmp(fType, type) == 0;
}

bool BMimeType::Contains(const BMimeType* type) const
{
    if (type == nullptr || fType == nullptr || type->fType == nullptr)
        return false;
    if (*this == *type)
        return true;
    BMimeType supertype;
    return IsSupertypeOnly() && !type->IsSupertypeOnly() &&
           type->GetSupertype(&supertype) == B_OK && *this == supertype;
}

status_t BMimeType::GuessMimeType(const entry_ref* file, BMimeType* type)
{
    std::string path;
    if (type == nullptr)
        return fail(EINVAL);
    status_t status = path_of(file, &path);
    if (status != B_OK)
        return status;
    if (!BEntry(file).Exists())
        return fail(ENOENT);
    return type->SetTo(guess_type_of_file(path, leaf_of(path.c_str())).c_str());
}

status_t BMimeType::GuessMimeType(const void* buffer, int32 length, BMimeType* type)
{
    if (buffer == nullptr || length < 0 || type == nullptr)
        return fail(EINVAL);
    return type->SetTo(guess_type_of_bytes(buffer, static_cast<size_t>(length)).c_str());
}

status_t BMimeType::GuessMimeType(const char* filename, BMimeType* type)
{
    if (filename == nullptr || type == nullptr)
        return fail(EINVAL);
    return type->SetTo(guess_type_of_name(filename).c_str());
}
