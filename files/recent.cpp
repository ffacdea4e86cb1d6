// The desktop's lists of recent documents and folders. Main thread.

#include "files/filesystem.h"

#include "plinth.h"

#include <Entry.h>
#include <Roster.h>

#include <exception>
#include <errno.h>

using Add = void (BRoster::*)(const entry_ref* ref, const char* signature) const;

static void add_recent(const char* path, Add add, const char* call)
try {
    entry_ref ref;
    if (path == nullptr)
        errno = EINVAL;
    if (path == nullptr || get_ref_for_path(path, &ref) != B_OK) {
        keep_file_error(call);
        return;
    }
    (be_roster->*add)(&ref, nullptr);
} catch (const std::exception&) {
    no_memory(call);
}

extern "C" void AddRecentDocument(const char* path)
{
    add_recent(path, &BRoster::AddToRecentDocuments, "AddRecentDocument");
}

extern "C" void AddRecentFolder(const char* path)
{
    add_recent(path, &BRoster::AddToRecentFolders, "AddRecentFolder");
}
