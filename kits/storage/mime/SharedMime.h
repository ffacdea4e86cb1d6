#ifndef STORAGE_SHARED_MIME_H
#define STORAGE_SHARED_MIME_H

#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace [[gnu::visibility("hidden")]] storage {

// The desktop's MIME database, as its text files below "mime" in the data folders tell it. What
// changes in it, by whatever program, is seen with the next Get(), also by GIO. Types are found
// without case and by their aliases.
class SharedMime {
public:
    // The database as it is now; it stays as it is. Any thread.
    static std::shared_ptr<const SharedMime> Get();
    // The database is known to have changed.
    static void Refresh();

    // The type's own name; as it was given if the type is unknown.
    std::string CanonicalName(std::string_view type) const;
    bool Contains(std::string_view type) const;
    // True if the user's own part of the database has it; false if the system brings it too.
    bool IsOwn(std::string_view type) const;
    // What the type is a kind of, as told, nearest first: without what all text and all files
    // are.
    std::vector<std::string> Parents(std::string_view type) const;
    // Without the dot, the most usual first.
    std::vector<std::string> Extensions(std::string_view type) const;
    // Names of icons in the theme: the type's own, and behind these those for its kind.
    std::vector<std::string> OwnIconNames(std::string_view type) const;
    std::vector<std::string> IconNames(std::string_view type) const;
    // All, sorted.
    const std::vector<std::string>& Types() const { return fTypes; }

private:
    void _Read(const std::string& folder, bool users);

    using Names = std::multimap<std::string, std::string, std::less<>>;  // by lower case

    std::vector<std::string> fTypes;
    std::map<std::string, std::string, std::less<>> fNames;  // by lower case: aliases too
    std::map<std::string, int, std::less<>> fOrigins;        // 1 the user's, 2 the system's, 3 both
    Names fParents;
    Names fExtensions;
    std::set<std::string> fSettled;  // their extensions are not taken from further folders
    std::map<std::string, std::string, std::less<>> fIcons;
    std::map<std::string, std::string, std::less<>> fGenericIcons;
};

}  // namespace storage

#endif  // STORAGE_SHARED_MIME_H
