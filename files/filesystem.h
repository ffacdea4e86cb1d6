#ifndef FILES_FILESYSTEM_H
#define FILES_FILESYSTEM_H

// What the families of the file system share with the rest of the library.

// Ends the directory scan, if one is open. Main thread.
void close_scan();

// The error rule: keeps errno's number, unless it is 0, as dos_err, and traces the failure of
// `call`. Returns false.
bool keep_file_error(const char* call);
// The same, where its memory failed.
bool no_memory(const char* call);

#endif  // FILES_FILESYSTEM_H
