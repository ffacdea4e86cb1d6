#ifndef STORAGE_CHANGE_SUBJECT_H
#define STORAGE_CHANGE_SUBJECT_H

#include "storage/watch/ChangeWatcher.h"

#include <algorithm>

#include <NodeMonitor.h>
#include <OS.h>

// What the watcher keeps of the nodes it watches.
namespace [[gnu::visibility("hidden")]] storage {

constexpr uint32 kStatFlags = B_WATCH_STAT | B_WATCH_INTERIM_STAT;

struct Interest {
    BMessenger target;
    uint32 flags;
};

struct ChangeWatcher::Event {
    int watch;
    uint32 mask;
    uint32 cookie;
    std::string name;
    bigtime_t read_at;
};

struct ChangeWatcher::Subject {
    Key key;
    std::string path;
    bool is_directory;
    int watch = -1;
    uint32 mask = 0;
    std::vector<Interest> interests;
    Subject* directory = nullptr;  // the one watched for this node's name
    int named_entries = 0;         // subjects whose `directory` this is
    bool removal_told = false;
    struct stat last;
    std::map<std::string, ino_t> entries;      // while entries are watched
    std::map<std::string, size_t> attributes;  // while watched: a hash of type and value

    uint32 Flags() const
    {
        uint32 flags = 0;
        for (const Interest& interest : interests)
            flags |= interest.flags;
        return flags;
    }
    void AddTargets(uint32 flags, Targets* targets) const
    {
        for (const Interest& interest : interests) {
            const bool is_new =
                std::find(targets->begin(), targets->end(), interest.target) == targets->end();
            if ((interest.flags & flags) != 0 && is_new)
                targets->push_back(interest.target);
        }
    }
};

// The entries of a directory with their numbers.
std::map<std::string, ino_t> read_entries(const std::string& path);

// A hash of type and value for each attribute of a node.
std::map<std::string, size_t> read_attributes(const std::string& path);

}  // namespace storage

#endif  // STORAGE_CHANGE_SUBJECT_H
