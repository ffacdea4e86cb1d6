// The channel between applications. One thread takes what comes and queues it; loopers' queues have
// no limit, so that it never waits, and senders seldom do.

#include "app/roster/AppChannel.h"

#include <AppDefs.h>
#include <DataIO.h>
#include <Message.h>
#include <TypeConstants.h>

#include <errno.h>
#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <stddef.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <vector>

#include "app/message/MessageAccess.h"
#include "app/looper/MessengerAccess.h"
#include "app/roster/RunningApps.h"
#include "support/Mutex.h"

namespace BPrivate {

static const size_t kMaxPacket = 160 * 1024;
static const bigtime_t kMaxWait = 1'000'000;
static const bigtime_t kRetry = 1000;

static BPrivate::Mutex sLock;
static int sSocket GUARDED_BY(sLock) = -1;   // the channel's thread reads from it
static pthread_t sThread GUARDED_BY(sLock);  // valid with the socket
static std::string& sPath GUARDED_BY(sLock) = *new std::string;  // outlives the exit handlers
static std::atomic<bool> sEnding{false};

// What stands before the flattened message.
struct Head {
    char magic[4];
    int32 looper;
    int32 handler;
    int32 reply_team;
    int32 reply_looper;
    int32 reply_handler;
    uint32 delivery;
};

static const char kMagic[4] = {'B', 'M', 'S', '1'};

// A socket's address reached through a descriptor of its folder, whatever the folder's length.
class Address {
public:
    Address(const std::string& folder, team_id team)
        : fFolder(open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC))
    {
        fAddress.sun_family = AF_UNIX;
        snprintf(fAddress.sun_path, sizeof(fAddress.sun_path), "/proc/self/fd/%d/%d.port", fFolder,
                 team);
    }
    ~Address()
    {
        if (fFolder >= 0)
            close(fFolder);
    }
    Address(const Address&) = delete;
    bool IsValid() const { return fFolder >= 0; }
    sockaddr* Get() { return reinterpret_cast<sockaddr*>(&fAddress); }
    static socklen_t Size() { return sizeof(sockaddr_un); }

private:
    int fFolder;
    sockaddr_un fAddress = {};
};

// The sender's user, as the host vouches for; -1 if it does not.
static uid_t sender_of(msghdr& packet)
{
    for (cmsghdr* part = CMSG_FIRSTHDR(&packet); part != nullptr;
         part = CMSG_NXTHDR(&packet, part)) {
        if (part->cmsg_level == SOL_SOCKET && part->cmsg_type == SCM_CREDENTIALS &&
            part->cmsg_len == CMSG_LEN(sizeof(ucred))) {
            ucred sender;
            memcpy(&sender, CMSG_DATA(part), sizeof(sender));
            return sender.uid;
        }
    }
    return static_cast<uid_t>(-1);
}

// Addresses of another process lead anywhere in this one: fields that hold some are taken out,
// those of messages in the message too.
static void strip_pointers(BMessage& message)
{
    char* name;
    type_code type;
    int32 count;
    while (message.GetInfo(B_POINTER_TYPE, 0, &name, &type, &count) == B_OK)
        message.RemoveName(std::string(name).c_str());
    for (int32 i = 0; message.GetInfo(B_MESSAGE_TYPE, i, &name, &type, &count) == B_OK; i++) {
        const std::string field = name;
        for (int32 j = 0; j < count; j++) {
            BMessage inner;
            if (message.FindMessage(field.c_str(), j, &inner) != B_OK)
                continue;
            strip_pointers(inner);
            message.ReplaceMessage(field.c_str(), j, &inner);
        }
    }
}

// Queues what came, if it is a message for somebody here.
static void take_packet(const char* bytes, size_t size)
{
    Head head;
    if (size < sizeof(head))
        return;
    memcpy(&head, bytes, sizeof(head));
    BMemoryIO stream(static_cast<const void*>(bytes + sizeof(head)), size - sizeof(head));
    BMessage read;
    if (memcmp(head.magic, kMagic, sizeof(kMagic)) != 0 || read.Unflatten(&stream) != B_OK)
        return;
    strip_pointers(read);
    const BMessenger reply_to =
        MessengerAccess::MakeFor(head.reply_team, head.reply_looper, head.reply_handler);
    const uint32 delivery = head.delivery & (MessageAccess::kReply | MessageAccess::kSourceWaiting);
    BMessage* message = MessageAccess::CopyFor(&read, head.handler, reply_to, delivery);
    const status_t status =
        MessengerAccess::Deliver(MessengerAccess::Make(head.looper, head.handler), message);
    if (status != B_OK && (delivery & MessageAccess::kSourceWaiting) != 0) {
        BMessage none(B_NO_REPLY);
        MessengerAccess::Send(reply_to, &none, BMessenger(), nullptr);
    }
}

static void* run_channel(void* data)
{
    const int fd = static_cast<int>(reinterpret_cast<intptr_t>(data));
    std::vector<char> bytes(kMaxPacket);
    for (;;) {
        alignas(cmsghdr) char control[CMSG_SPACE(sizeof(ucred))];
        iovec part = {bytes.data(), bytes.size()};
        msghdr packet = {};
        packet.msg_iov = &part;
        packet.msg_iovlen = 1;
        packet.msg_control = control;
        packet.msg_controllen = sizeof(control);
        const ssize_t size = recvmsg(fd, &packet, MSG_CMSG_CLOEXEC);
        if (size < 0 && errno == EINTR)
            continue;
        if (size < 0 || sEnding)
            return nullptr;
        if ((packet.msg_flags & (MSG_TRUNC | MSG_CTRUNC)) == 0 && sender_of(packet) == geteuid())
            take_packet(bytes.data(), static_cast<size_t>(size));
    }
}

static bool start_thread(int fd, pthread_t* thread)
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, 256 * 1024);
    sigset_t all, former;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &former);
    const int failed = pthread_create(thread, &attributes, run_channel,
                                      reinterpret_cast<void*>(static_cast<intptr_t>(fd)));
    pthread_sigmask(SIG_SETMASK, &former, nullptr);
    pthread_attr_destroy(&attributes);
    return failed == 0;
}

void open_channel(const std::string& folder)
{
    BPrivate::MutexLock hold(sLock);
    Address address(folder, getpid());
    if (!address.IsValid() || sSocket >= 0)
        return;
    sPath = folder + "/" + std::to_string(getpid()) + ".port";
    unlink(sPath.c_str());  // of a former program with that number
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    if (fd >= 0 && setsockopt(fd, SOL_SOCKET, SO_PASSCRED, &on, sizeof(on)) == 0 &&
        bind(fd, address.Get(), Address::Size()) == 0 && start_thread(fd, &sThread))
        sSocket = fd;
    else if (fd >= 0)
        close(fd);
}

void close_channel()
{
    BPrivate::MutexLock hold(sLock);
    if (sSocket < 0)
        return;
    unlink(sPath.c_str());
    sEnding = true;
    shutdown(sSocket, SHUT_RDWR);
    pthread_join(sThread, nullptr);
    close(sSocket);
    sSocket = -1;
    sEnding = false;
}

bool is_channel_open(team_id team)
{
    const std::string folder = roster_folder();
    return !folder.empty() && kill(team, 0) == 0 &&
           access((folder + "/" + std::to_string(team) + ".port").c_str(), F_OK) == 0;
}

// The packet that carries a message; empty if it is too large.
static std::vector<char> packet_for(const BMessenger& target, const BMessage& message,
                                    const BMessenger& reply_to, uint32 delivery)
{
    const MessengerAccess::Parts to = MessengerAccess::PartsOf(target);
    const MessengerAccess::Parts reply = MessengerAccess::PartsOf(reply_to);
    Head head = {{}, to.looper, to.handler, reply.team, reply.looper, reply.handler, delivery};
    memcpy(head.magic, kMagic, sizeof(kMagic));
    const ssize_t size = message.FlattenedSize();
    if (size < 0 || sizeof(head) + size > kMaxPacket)
        return {};
    std::vector<char> bytes(sizeof(head) + size);
    memcpy(bytes.data(), &head, sizeof(head));
    if (message.Flatten(bytes.data() + sizeof(head), size) != B_OK)
        return {};
    return bytes;
}

status_t send_to_team(const BMessenger& target, const BMessage& message, const BMessenger& reply_to,
                      uint32 delivery, bigtime_t timeout_us)
{
    const std::vector<char> bytes = packet_for(target, message, reply_to, delivery);
    if (bytes.empty())
        return B_BUFFER_OVERFLOW;
    const std::string folder = roster_folder();
    Address address(folder, target.Team());
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (folder.empty() || !address.IsValid() || fd < 0) {
        if (fd >= 0)
            close(fd);
        return B_BAD_PORT_ID;
    }
    const bigtime_t deadline = system_time() + std::clamp<bigtime_t>(timeout_us, 0, kMaxWait);
    status_t status = B_OK;
    while (sendto(fd, bytes.data(), bytes.size(), MSG_NOSIGNAL, address.Get(), Address::Size()) <
               0 &&
           status == B_OK) {
        if (errno == EMSGSIZE)
            status = B_BUFFER_OVERFLOW;
        else if (errno != EAGAIN && errno != ENOBUFS && errno != EINTR)
            status = B_BAD_PORT_ID;
        else if (system_time() >= deadline)
            status = timeout_us > 0 ? B_TIMED_OUT : B_WOULD_BLOCK;
        else
            snooze(kRetry);
    }
    close(fd);
    return status;
}

}  // namespace BPrivate
