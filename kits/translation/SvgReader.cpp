// Drawings in SVG, by librsvg's own command in a process of its own: it needs no display for texts
// and looks at no other file, and whatever a hostile drawing does to it (endless work, gigabytes,
// an abort) ends there.

#include "translation/ImageFormats.h"

#include <DataIO.h>
#include <OS.h>

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/ProgramStart.h"

namespace BPrivate {

static const char* const kCommand = "rsvg-convert";
static const off_t kMostBytes = 32 * 1024 * 1024;            // of a drawing
static const size_t kMostPicture = server::kMostPixels * 4;  // bytes of what it becomes
static const rlim_t kMostMemory = 1 << 30;
static const rlim_t kMostWork = 10;  // seconds of a processor
static const bigtime_t kMostTime = 60 * 1000 * 1000;
static const size_t kPiece = 64 * 1024;

namespace {

class Descriptor {
public:
    explicit Descriptor(int number = -1) : fNumber(number) {}
    Descriptor(Descriptor&& other) noexcept : fNumber(std::exchange(other.fNumber, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(fNumber, other.fNumber);
        return *this;
    }
    ~Descriptor()
    {
        if (fNumber >= 0)
            close(fNumber);
    }
    int Number() const { return fNumber; }
    bool IsOpen() const { return fNumber >= 0; }

private:
    int fNumber;
};

// A program that turns what it reads into what it writes; ended when nobody wants it any more.
class Converter {
public:
    ~Converter()
    {
        if (fProcess < 0)
            return;
        kill(fProcess, SIGKILL);
        while (waitpid(fProcess, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
    status_t Start(const std::string& path, const Descriptor& input,
                   const std::vector<std::string>& options);
    // All that it writes.
    status_t Read(BPositionIO* output);

private:
    pid_t fProcess = -1;
    Descriptor fOutput;
};

}  // namespace

static void limit(pid_t process, __rlimit_resource what, rlim_t most)
{
    const rlimit both = {most, most};
    prlimit(process, what, &both, nullptr);
}

status_t Converter::Start(const std::string& path, const Descriptor& input,
                          const std::vector<std::string>& options)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return B_NO_MORE_FDS;
    fOutput = Descriptor(ends[0]);
    const Descriptor written(ends[1]);
    BPrivate::ProgramStart start;
    start.Give(STDIN_FILENO, input.Number());
    start.Give(STDOUT_FILENO, written.Number());
    start.Open(STDERR_FILENO, "/dev/null", O_WRONLY);
    std::vector<std::string> words = options;
    words.insert(words.begin(), kCommand);
    fProcess = start.Run(path.c_str(), words);
    if (fProcess < 0)
        return B_NOT_SUPPORTED;
    limit(fProcess, RLIMIT_AS, kMostMemory);
    limit(fProcess, RLIMIT_CPU, kMostWork);
    limit(fProcess, RLIMIT_CORE, 0);
    return B_OK;
}

status_t Converter::Read(BPositionIO* output)
{
    const bigtime_t deadline = system_time() + kMostTime;
    const std::unique_ptr<char[]> piece(new (std::nothrow) char[kPiece]);
    if (piece == nullptr)
        return B_NO_MEMORY;
    for (size_t size = 0; size <= kMostPicture;) {
        const bigtime_t left = deadline - system_time();
        pollfd wanted = {fOutput.Number(), POLLIN, 0};
        const int ready = left > 0 ? poll(&wanted, 1, int(left / 1000) + 1) : 0;
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready <= 0)
            return B_TIMED_OUT;
        const ssize_t part = read(fOutput.Number(), piece.get(), kPiece);
        if (part == 0)
            return size > 0 ? B_OK : B_BAD_DATA;
        if (part < 0 || output->Write(piece.get(), size_t(part)) != part)
            return part < 0 ? B_IO_ERROR : B_NO_MEMORY;
        size += size_t(part);
    }
    return B_NO_MEMORY;
}

// The command's path, "" where it is not installed.
static std::string find_command()
{
    const char* variable = getenv("PATH");
    std::string_view left = variable != nullptr ? variable : "/usr/bin";
    while (!left.empty()) {
        const std::string_view folder = left.substr(0, left.find(':'));
        left.remove_prefix(std::min(folder.size() + 1, left.size()));
        const std::string path = std::string(folder) + "/" + kCommand;
        if (!folder.empty() && folder[0] == '/' && access(path.c_str(), X_OK) == 0)
            return path;
    }
    return "";
}

bool ReadsSvg() { return !find_command().empty(); }

// The drawing as a file in memory, at its start.
static status_t copy_drawing(BPositionIO* source, Descriptor* _copy)
{
    off_t size = 0;
    const status_t status = source->GetSize(&size);
    if (status != B_OK)
        return status;
    if (size > kMostBytes)
        return B_NO_MEMORY;
    Descriptor copy(memfd_create("drawing", MFD_CLOEXEC));
    const std::unique_ptr<char[]> piece(new (std::nothrow) char[kPiece]);
    if (!copy.IsOpen() || piece == nullptr)
        return B_NO_MEMORY;
    for (off_t place = 0; place < size;) {
        const auto wanted = size_t(std::min<off_t>(size - place, kPiece));
        const ssize_t part = source->ReadAt(place, piece.get(), wanted);
        if (part <= 0)
            return B_BAD_DATA;
        if (write(copy.Number(), piece.get(), size_t(part)) != part)
            return B_NO_MEMORY;
        place += part;
    }
    lseek(copy.Number(), 0, SEEK_SET);
    *_copy = std::move(copy);
    return B_OK;
}

// As a PNG image.
static status_t convert(BPositionIO* source, const std::vector<std::string>& options,
                        BPositionIO* picture)
{
    Descriptor drawing;
    status_t status = copy_drawing(source, &drawing);
    if (status != B_OK)
        return status;
    Converter converter;
    status = converter.Start(find_command(), drawing, options);
    return status == B_OK ? converter.Read(picture) : status;
}

status_t ReadSvg(BPositionIO* source, const PlaceForImage& place)
{
    BMallocIO picture;
    const status_t status = convert(source, {}, &picture);
    return status == B_OK ? server::ReadImage(&picture, "png", place) : status;
}

bool DrawSvg(const std::string& bytes, int32 width, int32 height, std::vector<uint32>* pixels)
{
    BMemoryIO source(bytes.data(), bytes.size());
    BMallocIO picture;
    if (convert(&source, {"--width=" + std::to_string(width), "--height=" + std::to_string(height)},
                &picture) != B_OK)
        return false;
    const auto place = [&](int32 made_width, int32 made_height, color_space space) {
        Surface target;
        if (made_width != width || made_height != height || space != B_RGBA32)
            return target;
        pixels->assign(size_t(width) * size_t(height), 0);
        target = {reinterpret_cast<uint8*>(pixels->data()), width * 4, width, height, B_RGBA32};
        return target;
    };
    return server::ReadImage(&picture, "png", place) == B_OK;
}

}  // namespace BPrivate
