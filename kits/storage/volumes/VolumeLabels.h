#ifndef STORAGE_VOLUME_LABELS_H
#define STORAGE_VOLUME_LABELS_H

#include <sys/types.h>

#include <string>

#include <SupportDefs.h>

namespace BPrivate {

// Where the host keeps a link from each label to its device. A test puts a folder of its own in.
std::string& volume_label_folder();

}  // namespace BPrivate

namespace [[gnu::visibility("hidden")]] storage {

struct Mount;

// The label of the file system on a block device, "" for none. Any thread.
std::string label_of(const std::string& device);

// Has the host's disk service give the file system a label; the user is asked for nothing.
// Waits until the new label can be seen, for a while. B_NOT_SUPPORTED, with errno, where no
// such service runs, and for what is on no block device. Any thread.
status_t set_label(const Mount& mount, const std::string& label);

}  // namespace storage

#endif  // STORAGE_VOLUME_LABELS_H
