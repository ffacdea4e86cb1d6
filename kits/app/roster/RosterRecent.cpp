// What was used lately. Any thread.

#include <Roster.h>

#include <Message.h>
#include <Path.h>

#include <string.h>
#include <strings.h>

#include <algorithm>

#include "app/roster/LaunchTargets.h"
#include "app/roster/RecentItems.h"

using BPrivate::recent_items;
using BPrivate::RecentItem;

static const char* const kFolderType = "inode/directory";

// True for the type itself, or for one below a supertype.
static bool is_of_type(const std::string& type, const char* wanted)
{
    const size_t length = strlen(wanted);
    return strncasecmp(type.c_str(), wanted, length) == 0 &&
           (type[length] == '\0' || (type[length] == '/' && strchr(wanted, '/') == nullptr));
}

// Other programs add files under their name, ours under their signature.
static bool was_added_by(const RecentItem& item, const char* signature)
{
    const storage::ApplicationRef application = storage::find_application(signature);
    return std::any_of(
        item.applications.begin(), item.applications.end(), [&](const std::string& name) {
            return strcasecmp(name.c_str(), signature) == 0 ||
                   (application != nullptr &&
                    (name == application->name || application->executable.ends_with("/" + name)));
        });
}

// What is private to others is none of ours to tell.
static bool may_be_told(const RecentItem& item, const char* signature)
{
    return !item.is_application && (!item.is_private || signature != nullptr) &&
           (signature == nullptr || was_added_by(item, signature));
}

static void answer(BMessage* refs, const std::vector<RecentItem>& items)
{
    refs->MakeEmpty();
    for (const RecentItem& item : items) {
        entry_ref ref;
        if (get_ref_for_path(item.path.c_str(), &ref) == B_OK)
            refs->AddRef("refs", &ref);
    }
}

void BRoster::GetRecentDocuments(BMessage* refList, int32 maxCount, const char* fileType,
                                 const char* signature) const
{
    GetRecentDocuments(refList, maxCount, &fileType, fileType != nullptr ? 1 : 0, signature);
}

void BRoster::GetRecentDocuments(BMessage* refList, int32 maxCount, const char* fileTypes[],
                                 int32 fileTypesCount, const char* signature) const
{
    if (refList == nullptr)
        return;
    const int32 types = fileTypes != nullptr ? fileTypesCount : 0;
    answer(refList, recent_items(maxCount, [=](const RecentItem& item) {
               const bool fits =
                   types <= 0 || std::any_of(fileTypes, fileTypes + types, [&](const char* type) {
                       return type != nullptr && is_of_type(item.type, type);
                   });
               return !item.is_folder && fits && may_be_told(item, signature);
           }));
}

void BRoster::GetRecentFolders(BMessage* refList, int32 maxCount, const char* signature) const
{
    if (refList == nullptr)
        return;
    answer(refList, recent_items(maxCount, [=](const RecentItem& item) {
               return item.is_folder && may_be_told(item, signature);
           }));
}

void BRoster::GetRecentApps(BMessage* refList, int32 maxCount) const
{
    if (refList == nullptr)
        return;
    answer(refList, recent_items(maxCount, [](const RecentItem& item) {
               return item.is_application && !item.is_folder;
           }));
}

void BRoster::AddToRecentDocuments(const entry_ref* document, const char* signature) const
{
    const BPath path(document);
    if (path.InitCheck() == B_OK)
        BPrivate::add_recent_file(path.Path(), BPrivate::type_of_file(path.Path()), signature);
}

void BRoster::AddToRecentFolders(const entry_ref* folder, const char* signature) const
{
    const BPath path(folder);
    if (path.InitCheck() != B_OK)
        return;
    const bool is_file = BEntry(folder).IsFile();  // which keeps the type that others see
    BPrivate::add_recent_file(
        path.Path(), is_file ? BPrivate::type_of_file(path.Path()) : kFolderType, signature);
}
