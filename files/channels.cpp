// Numbered file channels over the C library's buffered streams. Main thread; the registry's lock
// is held to change their list, so that the end of the process finds what is open.

#include "plinth.h"
#include "runtime/registry.h"
#include "runtime/strings.h"
#include "runtime/trace.h"

#include <algorithm>
#include <errno.h>
#include <iterator>
#include <stdio.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/stat.h>

static const int kLineSize = 256;  // with the terminator
static const bigtime_t kFlushPatience_us = 1'000'000;

struct FileRecord {
    static const RegistrySlot kSlot = kFiles;

    FILE* stream;
    int32_t ident;
};

int32_t dos_err = 0;  // main thread

static FileRecord* sRecent[64];  // main thread; records found last, by their idents' low bits

// Streams belong to one thread, so their locks are left out where the C library lets us.
template <class Stream>
static size_t write_stream(const void* bytes, size_t size, Stream* stream)
{
    if constexpr (requires { fwrite_unlocked(bytes, 1, size, stream); })
        return fwrite_unlocked(bytes, 1, size, stream);
    else
        return fwrite(bytes, 1, size, stream);
}

template <class Stream>
static size_t read_stream(void* bytes, size_t size, Stream* stream)
{
    if constexpr (requires { fread_unlocked(bytes, 1, size, stream); })
        return fread_unlocked(bytes, 1, size, stream);
    else
        return fread(bytes, 1, size, stream);
}

template <class Stream>
static char* read_line(char* text, int size, Stream* stream)
{
    if constexpr (requires { fgets_unlocked(text, size, stream); })
        return fgets_unlocked(text, size, stream);
    else
        return fgets(text, size, stream);
}

// Keeps the C library's error number of a call that just failed. Returns false, as most
// operations do then.
static bool keep_error(int32_t ch, const char* call)
{
    GetDosErr(errno);
    if (errno != 0)
        show_dbg(kFileError, ch, call);
    return false;
}

static FileRecord*& recent(int32_t ch)
{
    return sRecent[static_cast<uint32_t>(ch) % std::size(sRecent)];
}

static FileRecord* look_up(int32_t ch)
{
    RegistryLock registry;
    auto* record = find_record<FileRecord>(registry, ch);
    if (record != nullptr)
        recent(ch) = record;
    return record;
}

// `call` is the exported call that looks.
static inline FileRecord* FindFile(int32_t ch, const char* call)
{
    FileRecord* record = recent(ch);
    if (record != nullptr && record->ident == ch)
        return record;
    record = look_up(ch);
    if (record == nullptr)
        show_dbg(kNoSuchChannel, ch, call);
    return record;
}

// Lets the process have twice as many open files, as far as the system allows.
static bool raise_file_limit()
{
    rlimit limit;
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= limit.rlim_max)
        return false;
    limit.rlim_cur = limit.rlim_cur > limit.rlim_max / 2 ? limit.rlim_max : limit.rlim_cur * 2;
    return setrlimit(RLIMIT_NOFILE, &limit) == 0;
}

static FILE* open_stream(const char* path, const char* mode)
{
    const int number = errno;
    FILE* stream = fopen(path, mode);
    while (stream == nullptr && errno == EMFILE && raise_file_limit())
        stream = fopen(path, mode);
    if (stream != nullptr)
        errno = number;  // a success leaves it alone
    return stream;
}

extern "C" int32_t OpenFile(const char* path, int32_t mode)
{
    if (mode < 0 || mode > 1 || RegistryLock().List(kFiles) == nullptr) {
        show_dbg(kBadArgument, mode, __func__);
        return 0;
    }
    auto* record = static_cast<FileRecord*>(MyAlloc(sizeof(FileRecord)));
    if (record == nullptr)
        return 0;
    record->stream = open_stream(text_or_empty(path), mode == 0 ? "r+" : "w+");
    if (record->stream == nullptr) {
        keep_error(0, __func__);
        MyFree(record);
        return 0;
    }
    record->ident = static_cast<int32_t>(GetUniqueID());
    if (!enter_record(RegistryLock(), record)) {
        fclose(record->stream);
        MyFree(record);
        return 0;
    }
    return record->ident;
}

// What is still buffered may not fit on the disk; that is all a program learns of it.
static void close_record(FileRecord* record)
{
    if (fclose(record->stream) != 0)
        keep_error(record->ident, "CloseFile");
    MyFree(record);
}

extern "C" bool CloseFile(int32_t ch)
{
    FileRecord* record = FindFile(ch, __func__);
    if (record == nullptr)
        return false;
    recent(ch) = nullptr;
    remove_record(RegistryLock(), record);
    close_record(record);
    return true;
}

void empty_file_cache() { std::fill(std::begin(sRecent), std::end(sRecent), nullptr); }

void Close_All_File(BList* files)
{
    empty_file_cache();
    while (!files->IsEmpty()) {
        FileRecord* record;
        {
            RegistryLock registry;
            record = static_cast<FileRecord*>(files->RemoveItem(int32{0}));
        }
        close_record(record);
    }
}

void flush_channels()
{
    if (!keep_registry(kFlushPatience_us))
        return;
    BList* list = RegistryLock().List(kFiles);
    for (int32_t i = 0; list != nullptr && i < list->CountItems(); i++) {
        FILE* stream = static_cast<FileRecord*>(list->ItemAtFast(i))->stream;
        struct stat info;
        if (fstat(fileno(stream), &info) != 0 || !S_ISREG(info.st_mode) ||
            ftrylockfile(stream) != 0)
            continue;
        fflush(stream);
        funlockfile(stream);
    }
}

extern "C" bool ReadFile(int32_t ch, char* buffer)
{
    if (buffer == nullptr)
        return false;
    buffer[0] = '\0';
    FileRecord* record = FindFile(ch, __func__);
    if (record == nullptr)
        return false;
    if (read_line(buffer, kLineSize, record->stream) == nullptr) {
        buffer[0] = '\0';  // an error may leave half a line
        return keep_error(ch, __func__);
    }
    const size_t length = strlen(buffer);
    if (length > 0 && buffer[length - 1] == '\n')
        buffer[length - 1] = '\0';
    return true;
}

static bool write_bytes(int32_t ch, const void* bytes, size_t size, const char* call)
{
    FileRecord* record = FindFile(ch, call);
    if (record == nullptr)
        return false;
    return write_stream(bytes, size, record->stream) == size || keep_error(ch, call);
}

extern "C" bool WriteFile(int32_t ch, const char* s)
{
    const size_t length = strlen(text_or_empty(s));
    return length > 0 && write_bytes(ch, s, length, __func__);
}

// Kept on purpose: the text is followed by its terminator and two more bytes, not by quotes and a
// line feed. What lies behind the text is not ours to read, so those bytes are zero.
extern "C" bool PrintFile(int32_t ch, const char* s)
{
    static const char tail[2] = {};
    const size_t length = strlen(text_or_empty(s));
    return length > 0 && write_bytes(ch, s, length + 1, __func__) &&
           write_bytes(ch, tail, sizeof(tail), __func__);
}

template <class Number>
static bool write_number(int32_t ch, Number number, const char* call)
{
    return write_bytes(ch, &number, sizeof(number), call);
}

extern "C" bool WriteDouble(int32_t ch, double x) { return write_number(ch, x, __func__); }
extern "C" bool WriteSingle(int32_t ch, float x) { return write_number(ch, x, __func__); }
extern "C" bool WriteInteger(int32_t ch, int32_t n) { return write_number(ch, n, __func__); }
extern "C" bool WriteShort(int32_t ch, int16_t n) { return write_number(ch, n, __func__); }

// Stores the number only if all of its bytes were read.
template <class Number>
static bool read_number(int32_t ch, Number* out, const char* call)
{
    FileRecord* record = FindFile(ch, call);
    if (record == nullptr || out == nullptr)
        return false;
    Number number;
    if (read_stream(&number, sizeof(number), record->stream) != sizeof(number))
        return keep_error(ch, call);
    *out = number;
    return true;
}

extern "C" bool ReadDouble(int32_t ch, double* out) { return read_number(ch, out, __func__); }
extern "C" bool ReadSingle(int32_t ch, float* out) { return read_number(ch, out, __func__); }
extern "C" bool ReadInteger(int32_t ch, int32_t* out) { return read_number(ch, out, __func__); }
extern "C" bool ReadShort(int32_t ch, int16_t* out) { return read_number(ch, out, __func__); }

extern "C" bool SeekFile(int32_t ch, uint32_t whence, int32_t offset)
{
    static const int kWhence[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    FileRecord* record = FindFile(ch, __func__);
    if (record == nullptr || whence >= std::size(kWhence))
        return false;
    const int moved = fseek(record->stream, offset, kWhence[whence]);
    GetDosErr(errno);  // kept on purpose: also what errno held before
    return moved > 0;  // kept on purpose: never true, programs ask GetLoc
}

extern "C" int32_t GetLof(int32_t ch)
{
    FileRecord* record = FindFile(ch, __func__);
    if (record == nullptr)
        return 0;
    if (fseek(record->stream, 0, SEEK_END) != 0)
        keep_error(ch, __func__);
    const long length = ftell(record->stream);
    fseek(record->stream, 0, SEEK_SET);
    return static_cast<int32_t>(length);
}

extern "C" int32_t GetLoc(int32_t ch)
{
    FileRecord* record = FindFile(ch, __func__);
    return record == nullptr ? 0 : static_cast<int32_t>(ftell(record->stream));
}

extern "C" bool GetEOF(int32_t ch)
{
    FileRecord* record = FindFile(ch, __func__);
    return record != nullptr && feof(record->stream) != 0;
}

extern "C" int32_t GetDosErr(int32_t v)
{
    const int32_t kept = dos_err;
    if (v != 0)
        dos_err = v;
    return kept;
}
