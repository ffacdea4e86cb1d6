// BArchivable, and the way from a class's name to the function that makes one.

#include <Archivable.h>

#include <Message.h>
#include <TypeConstants.h>

#include <cxxabi.h>
#include <dlfcn.h>
#include <errno.h>
#include <stdlib.h>
#include <string.h>

#include <memory>
#include <string>
#include <typeinfo>

#include "support/ArchiveManagers.h"

static const char* const kClassField = "class";
static const size_t kMaxClassName = 512;

static std::string class_name_of(const BArchivable& object)
{
    int status = 0;
    std::unique_ptr<char, decltype(&free)> name(
        abi::__cxa_demangle(typeid(object).name(), nullptr, nullptr, &status), free);
    return status == 0 && name != nullptr ? name.get() : typeid(object).name();
}

// The symbol of `static BArchivable* Name::Instantiate(BMessage*)`; empty for what is no name.
static std::string instantiate_symbol(const char* className)
{
    if (strlen(className) > kMaxClassName)
        return {};
    std::string symbol = "_ZN";
    for (const char* part = className;;) {
        const size_t length = strcspn(part, ":");
        if (length == 0)
            return {};
        symbol += std::to_string(length);
        symbol.append(part, length);
        part += length;
        if (*part == '\0')
            break;
        if (strncmp(part, "::", 2) != 0)
            return {};
        part += 2;
    }
    return symbol + "11InstantiateEP8BMessage";
}

BArchivable::BArchivable() {}

BArchivable::BArchivable(BMessage* from) { BPrivate::UnarchiveManager::Register(from, this); }

BArchivable::~BArchivable() {}

status_t BArchivable::Archive(BMessage* into, bool) const
{
    if (into == nullptr)
        return B_BAD_VALUE;
    BPrivate::ArchiveManager::Register(into, this);
    return into->AddString(kClassField, class_name_of(*this).c_str());
}

BArchivable* BArchivable::Instantiate(BMessage*) { return nullptr; }

status_t BArchivable::Perform(perform_code, void*) { return B_NAME_NOT_FOUND; }

status_t BArchivable::AllUnarchived(const BMessage*) { return B_OK; }

status_t BArchivable::AllArchived(BMessage*) const { return B_OK; }

BArchivable* instantiate_object(BMessage* from, image_id* id)
{
    if (id != nullptr)
        *id = B_BAD_IMAGE_ID;
    if (from == nullptr) {
        errno = B_BAD_VALUE;
        return nullptr;
    }
    instantiation_func make = find_instantiation_func(from);
    if (make == nullptr) {
        errno = B_BAD_VALUE;
        return nullptr;
    }
    if (id != nullptr)
        *id = B_OK;
    errno = B_OK;
    BPrivate::UnarchiveManager::Scope scope;
    return make(from);
}

BArchivable* instantiate_object(BMessage* from) { return instantiate_object(from, nullptr); }

bool validate_instantiation(BMessage* from, const char* className)
{
    if (from == nullptr) {
        errno = B_BAD_VALUE;
        return false;
    }
    const char* name;
    for (int32 i = 0; className != nullptr && from->FindString(kClassField, i, &name) == B_OK;
         ++i) {
        if (strcmp(name, className) == 0)
            return true;
    }
    errno = B_MISMATCHED_VALUES;
    return false;
}

instantiation_func find_instantiation_func(const char* className, const char*)
{
    if (className == nullptr) {
        errno = B_BAD_VALUE;
        return nullptr;
    }
    const std::string symbol = instantiate_symbol(className);
    void* found = symbol.empty() ? nullptr : dlsym(RTLD_DEFAULT, symbol.c_str());
    if (found == nullptr)
        errno = B_NAME_NOT_FOUND;
    return reinterpret_cast<instantiation_func>(found);
}

instantiation_func find_instantiation_func(const char* className)
{
    return find_instantiation_func(className, nullptr);
}

instantiation_func find_instantiation_func(BMessage* archive)
{
    if (archive == nullptr) {
        errno = B_BAD_VALUE;
        return nullptr;
    }
    // The archive is of the first class that is there: a base class, where its own is missing.
    const char* name;
    for (int32 i = 0; archive->FindString(kClassField, i, &name) == B_OK; ++i) {
        if (instantiation_func make = find_instantiation_func(name))
            return make;
    }
    errno = B_NAME_NOT_FOUND;
    return nullptr;
}
