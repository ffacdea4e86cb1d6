// A file of flattened messages for each program that was launched with some.

#include "app/roster/LaunchMessages.h"

#include <DataIO.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "app/roster/RunningApps.h"

namespace BPrivate {

static const off_t kMaxSize = 16 << 20;

static std::string path_in(const std::string& folder, team_id team)
{
    return folder.empty() ? "" : folder + "/" + std::to_string(team) + ".messages";
}

void leave_messages(team_id team, const std::vector<BMessage>& messages)
{
    const std::string path = path_in(make_roster_folder(), team);
    if (messages.empty() || path.empty())
        return;
    BMallocIO bytes;
    for (const BMessage& message : messages)
        message.Flatten(&bytes);
    unlink(path.c_str());  // of a former program with that number
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (fd < 0)
        return;
    const ssize_t size = static_cast<ssize_t>(bytes.BufferLength());
    if (write(fd, bytes.Buffer(), size) != size)
        unlink(path.c_str());
    close(fd);
}

std::vector<BMessage> take_messages()
{
    std::vector<BMessage> messages;
    const std::string path = path_in(registered_folder(), getpid());
    const int fd =
        path.empty() ? -1 : open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (fd < 0)
        return messages;
    unlink(path.c_str());
    struct stat info;
    if (fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && info.st_uid == geteuid() &&
        info.st_size <= kMaxSize) {
        std::string bytes(info.st_size, '\0');
        bytes.resize(std::max<ssize_t>(read(fd, bytes.data(), bytes.size()), 0));
        BMemoryIO stream(static_cast<const void*>(bytes.data()), bytes.size());
        for (BMessage message; message.Unflatten(&stream) == B_OK;)
            messages.push_back(message);
    }
    close(fd);
    return messages;
}

}  // namespace BPrivate
