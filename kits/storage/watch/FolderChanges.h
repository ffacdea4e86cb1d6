#ifndef STORAGE_FOLDER_CHANGES_H
#define STORAGE_FOLDER_CHANGES_H

#include <map>
#include <string>
#include <vector>

#include <SupportDefs.h>

struct inotify_event;

namespace [[gnu::visibility("hidden")]] storage {

// Tells whether files in some folders changed, exactly and without reading them: what was read
// stays good as long as the answer is no. The caller's lock guards the object.
class FolderChanges {
public:
    struct Folder {
        std::string path;    // absolute; need not exist
        std::string suffix;  // of the names that count; empty: all
    };

    FolderChanges() = default;
    ~FolderChanges();
    FolderChanges(const FolderChanges&) = delete;

    // Watches these from now on, and none of those before. To be called before they are read.
    void Watch(const std::vector<Folder>& folders);
    // True if something changed since Watch(), or since the last call; true too before Watch().
    bool Changed();
    // Readable when there may be changes; -1 where the host does not tell, and before Watch().
    int Descriptor() const { return fBlind ? -1 : fFd; }

private:
    struct Rule {
        std::string name;  // of the whole, else of its end
        bool whole;
    };

    void _WatchOne(const Folder& folder);
    bool _Add(const std::string& path, const Rule& rule);
    bool _Counts(const inotify_event& event) const;

    int fFd = -1;
    bool fBlind = true;        // the host does not tell
    bigtime_t fLastGuess = 0;  // of the blind
    std::map<int, std::vector<Rule>> fRules;
};

}  // namespace storage

#endif  // STORAGE_FOLDER_CHANGES_H
