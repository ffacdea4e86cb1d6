// Numbered file channels over the C library's buffered streams. Main thread; the registry's lock
// is held to change their list, so that the end of the process finds what is open, and each channel
// says while a call uses it.

#include "plinth.h"
#include "runtime/registry.h"
#include "runtime/strings.h"
#include "runtime/trace.h"

#include <OS.h>

#include <algorithm>
#include <atomic>
#include <errno.h>
#include <iterator>
#include <stdio.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/stat.h>

static const int kLineSize = 256;  // with the terminator
static const bigtime_t kFlushPatience_us = 1'000'000;
static const bigtime_t kLongTime_us = 1'000'000'000;

enum ChannelUse : int32_t { kUnused, kInUse, kClosed };

struct FileRecord {
    static const RegistrySlot kSlot = kFiles;

    FILE* stream;
    int32_t ident;
    int32_t use;  // ChannelUse, by atomic_ref
};

int32_t dos_err = 0;  // main thread

static FileRecord* sRecent[64];  // main thread; records found last, by their idents' low bits
// The thread that flushes all channels at the end of the process: no other uses them from then on.
static std::atomic<thread_id> sFlusher = 0;

// Streams belong to one thread, so their locks are left out where the C library lets us.
template <class Stream>
static size_t write_stream(const void* bytes, size_t size, Stream* stream)
{
    if constexpr (requires { fwrite_unlocked(bytes, 1, size, stream); })
        return fwrite_unlocked(bytes, 1, size, stream);
    else
        return fwrite(bytes, 1, size, stream);
}

// A number's bytes one by one: they come out of the stream's buffer without a call.
template <size_t Size>
static bool read_bytes(char* bytes, FILE* stream)
{
    for (size_t i = 0; i < Size; i++) {
        const int c = getc_unlocked(stream);
        if (c == EOF)
            return false;
        bytes[i] = static_cast<char>(c);
    }
    return true;
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
        show_status(kFileError, ch, call, errno);
    return false;
}

static FileRecord*& recent(int32_t ch)
{
    return sRecent[static_cast<uint32_t>(ch) % std::size(sRecent)];
}

static FileRecord* look_up(int32_t ch, const char* call)
{
    RegistryLock registry;
    auto* record = find_record<FileRecord>(registry, ch);
    if (record != nullptr)
        recent(ch) = record;
    else
        show_dbg(kNoSuchChannel, ch, call);
    return record;
}

// `call` is the exported call that looks.
static inline FileRecord* FindFile(int32_t ch, const char* call)
{
    FileRecord* record = recent(ch);
    return record != nullptr && record->ident == ch ? record : look_up(ch, call);
}

static std::atomic_ref<int32_t> use_of(FileRecord* record)
{
    return std::atomic_ref<int32_t>(record->use);
}

// A thread of the program's that comes too late stays here.
[[gnu::cold]] static void wait_at_gate(FileRecord* record)
{
    if (find_thread(nullptr) == sFlusher.load())
        return;
    use_of(record).store(kUnused);
    for (;;)
        snooze(kLongTime_us);
}

namespace {

// A channel for one call, which the end of the process waits for: streams are used without their
// locks.
class Channel {
public:
    Channel(int32_t ch, const char* call) : Channel(FindFile(ch, call)) {}
    explicit Channel(FileRecord* record) : fRecord(record)
    {
        if (fRecord == nullptr)
            return;
        use_of(fRecord).store(kInUse, std::memory_order_relaxed);
        if (sFlusher.load(std::memory_order_relaxed) != 0)
            wait_at_gate(fRecord);
    }
    ~Channel()
    {
        if (fRecord != nullptr)
            use_of(fRecord).store(kUnused, std::memory_order_release);
    }
    Channel(const Channel&) = delete;

    explicit operator bool() const { return fRecord != nullptr; }
    FILE* Stream() const { return fRecord->stream; }

    // What is still buffered may not fit on the disk; that is all a program learns of it.
    void Close()
    {
        if (fclose(fRecord->stream) != 0)
            keep_error(fRecord->ident, "CloseFile");
        use_of(fRecord).store(kClosed, std::memory_order_release);
        fRecord = nullptr;
    }

private:
    FileRecord* fRecord;
};

}  // namespace

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

// Takes a channel out of its list once it is closed: until then the end of the process waits for
// it.
static void close_record(BList* files, FileRecord* record)
{
    Channel(record).Close();
    {
        RegistryLock registry;
        files->RemoveItem(record);
    }
    MyFree(record);
}

extern "C" bool CloseFile(int32_t ch)
{
    FileRecord* record = FindFile(ch, __func__);
    if (record == nullptr)
        return false;
    recent(ch) = nullptr;
    close_record(RegistryLock().List(kFiles), record);
    return true;
}

void empty_file_cache() { std::fill(std::begin(sRecent), std::end(sRecent), nullptr); }

void Close_All_File(BList* files)
{
    empty_file_cache();
    while (auto* record = static_cast<FileRecord*>(files->FirstItem()))
        close_record(files, record);
}

// True once no call uses the channel: those that began before the gate was closed come to their
// end. Then it is flushed, or was closed.
static bool await_unused(FileRecord* record, bigtime_t deadline)
{
    while (use_of(record).load(std::memory_order_acquire) == kInUse) {
        if (system_time() >= deadline)
            return false;
        snooze(kFlushPatience_us / 1000);
    }
    return true;
}

static void flush_file(FILE* stream)
{
    struct stat info;
    if (fstat(fileno(stream), &info) != 0 || !S_ISREG(info.st_mode) || ftrylockfile(stream) != 0)
        return;
    fflush(stream);
    funlockfile(stream);
}

bool flush_channels()
{
    const bigtime_t deadline = system_time() + kFlushPatience_us;
    sFlusher.store(find_thread(nullptr));
    // A call that did not see the gate closed shows by then that it uses its channel.
    snooze(kFlushPatience_us / 1000);
    if (!keep_registry(kFlushPatience_us))
        return false;
    bool all = true;
    BList* list = RegistryLock().List(kFiles);
    for (int32_t i = 0; list != nullptr && i < list->CountItems(); i++) {
        auto* record = static_cast<FileRecord*>(list->ItemAtFast(i));
        if (!await_unused(record, deadline))
            all = false;
        else if (use_of(record).load() == kUnused)
            flush_file(record->stream);
    }
    return all;
}

extern "C" bool ReadFile(int32_t ch, char* buffer)
{
    if (buffer == nullptr)
        return false;
    buffer[0] = '\0';
    const Channel channel(ch, __func__);
    if (!channel)
        return false;
    if (read_line(buffer, kLineSize, channel.Stream()) == nullptr) {
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
    const Channel channel(ch, call);
    return channel && (write_stream(bytes, size, channel.Stream()) == size || keep_error(ch, call));
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
    const Channel channel(ch, call);
    if (!channel || out == nullptr)
        return false;
    char bytes[sizeof(Number)];
    if (!read_bytes<sizeof(bytes)>(bytes, channel.Stream()))
        return keep_error(ch, call);
    memcpy(out, bytes, sizeof(bytes));
    return true;
}

extern "C" bool ReadDouble(int32_t ch, double* out) { return read_number(ch, out, __func__); }
extern "C" bool ReadSingle(int32_t ch, float* out) { return read_number(ch, out, __func__); }
extern "C" bool ReadInteger(int32_t ch, int32_t* out) { return read_number(ch, out, __func__); }
extern "C" bool ReadShort(int32_t ch, int16_t* out) { return read_number(ch, out, __func__); }

extern "C" bool SeekFile(int32_t ch, uint32_t whence, int32_t offset)
{
    static const int kWhence[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    const Channel channel(ch, __func__);
    if (!channel || whence >= std::size(kWhence))
        return false;
    const int moved = fseek(channel.Stream(), offset, kWhence[whence]);
    GetDosErr(errno);  // kept on purpose: also what errno held before
    return moved > 0;  // kept on purpose: never true, programs ask GetLoc
}

extern "C" int32_t GetLof(int32_t ch)
{
    const Channel channel(ch, __func__);
    if (!channel)
        return 0;
    if (fseek(channel.Stream(), 0, SEEK_END) != 0)
        keep_error(ch, __func__);
    const long length = ftell(channel.Stream());
    fseek(channel.Stream(), 0, SEEK_SET);
    return static_cast<int32_t>(length);
}

extern "C" int32_t GetLoc(int32_t ch)
{
    const Channel channel(ch, __func__);
    return channel ? static_cast<int32_t>(ftell(channel.Stream())) : 0;
}

extern "C" bool GetEOF(int32_t ch)
{
    const Channel channel(ch, __func__);
    return channel && feof(channel.Stream()) != 0;
}

extern "C" int32_t GetDosErr(int32_t v)
{
    const int32_t kept = dos_err;
    if (v != 0)
        dos_err = v;
    return kept;
}
