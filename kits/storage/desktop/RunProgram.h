#ifndef STORAGE_RUN_PROGRAM_H
#define STORAGE_RUN_PROGRAM_H

#include <string>
#include <vector>

#include <SupportDefs.h>

namespace [[gnu::visibility("hidden")]] storage {

// Runs one of the desktop's own tools, silently, and waits for it. B_IO_ERROR if it fails,
// B_ENTRY_NOT_FOUND if it is not installed. Any thread.
status_t run_program(std::vector<std::string> command);

}  // namespace storage

#endif  // STORAGE_RUN_PROGRAM_H
