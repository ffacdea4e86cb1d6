// Ports: bounded message queues between the threads of this process.

#include <algorithm>
#include <deque>
#include <vector>

#include "kernel/threads/IdTable.h"
#include "kernel/threads/ObjectWatch.h"
#include "kernel/threads/Threads.h"
#include "kernel/threads/WaitableObjects.h"

#include <string.h>
#include <unistd.h>

using namespace BPrivate;

static const int32 kMaxCapacity = 4096;
static const size_t kMaxMessageSize = 256 * 1024;

struct PortMessage {
    int32 code;
    std::vector<char> bytes;
};

struct Port {
    Mutex lock;
    int32 id = 0;
    char name[B_OS_NAME_LENGTH];
    int32 capacity;
    int32 total;
    bool closed;
    std::deque<PortMessage> queue;
    WaitList readers;
    WaitList lookers;  // at the size of the next message
    WaitList writers;
};

static IdTable<Port>& ports()
{
    static auto* const table = new IdTable<Port>;
    return *table;
}

static void fill_info(const Port* port, port_info* info)
{
    info->port = port->id;
    info->team = getpid();
    memcpy(info->name, port->name, sizeof(info->name));
    info->capacity = port->capacity;
    info->queue_count = static_cast<int32>(port->queue.size());
    info->total_count = port->total;
}

static void wake_everybody(Port* port)
{
    port->readers.WakeAll(B_BAD_PORT_ID);
    port->lookers.WakeAll(B_BAD_PORT_ID);
    port->writers.WakeAll(B_BAD_PORT_ID);
}

// Locks the port as soon as `ready` holds. `list` is that of the threads that wait for the same.
template <class Ready>
static status_t lock_when(port_id id, std::unique_lock<Mutex>& hold, Port*& port,
                          WaitList Port::*list, Ready ready, uint32 flags, bigtime_t timeout)
{
    bigtime_t deadline;
    status_t status = deadline_from(flags, timeout, &deadline);
    if (status != B_OK)
        return status;
    for (;;) {
        port = ports().Find(id, hold);
        if (port == nullptr)
            return B_BAD_PORT_ID;
        if (ready(port))
            return B_OK;
        if (port->closed)
            return B_BAD_PORT_ID;
        if ((flags & B_RELATIVE_TIMEOUT) != 0 && timeout <= 0)
            return B_WOULD_BLOCK;
        WaitList::Waiter waiter;
        status = (port->*list).Wait(hold, waiter, deadline, flags, B_THREAD_WAITING);
        if (status != B_OK)
            return status;
    }
}

static bool has_message(Port* port) { return !port->queue.empty(); }

static bool has_room(Port* port)
{
    return !port->closed && static_cast<int32>(port->queue.size()) < port->capacity;
}

uint16 BPrivate::port_events(port_id id)
{
    std::unique_lock<Mutex> hold;
    Port* port = ports().Find(id, hold);
    if (port == nullptr)
        return B_EVENT_INVALID;
    uint16 events = 0;
    if (has_message(port))
        events |= B_EVENT_READ;
    if (has_room(port))
        events |= B_EVENT_WRITE;
    if (port->closed)
        events |= B_EVENT_DISCONNECTED;
    return events;
}

int32 BPrivate::count_ports() { return ports().Count(); }

port_id create_port(int32 capacity, const char* name)
{
    if (capacity < 1 || capacity > kMaxCapacity)
        return B_BAD_VALUE;
    std::unique_lock<Mutex> hold;
    Port* port = ports().Take(hold);
    if (port == nullptr)
        return B_NO_MORE_PORTS;
    copy_name(port->name, name, "unnamed port");
    port->capacity = capacity;
    port->total = 0;
    port->closed = false;
    return port->id;
}

port_id find_port(const char* name)
{
    if (name == nullptr)
        return B_BAD_VALUE;
    std::unique_lock<Mutex> hold;
    int32 cookie = 0;
    while (Port* port = ports().Next(&cookie, hold)) {
        if (strcmp(port->name, name) == 0)
            return port->id;
        hold.unlock();
    }
    return B_NAME_NOT_FOUND;
}

ssize_t read_port(port_id port, int32* code, void* buffer, size_t bufferSize)
{
    return read_port_etc(port, code, buffer, bufferSize, 0, 0);
}

ssize_t read_port_etc(port_id id, int32* code, void* buffer, size_t bufferSize, uint32 flags,
                      bigtime_t timeout)
{
    if (buffer == nullptr && bufferSize > 0)
        return B_BAD_VALUE;
    std::unique_lock<Mutex> hold;
    Port* port;
    const status_t status = lock_when(id, hold, port, &Port::readers, has_message, flags, timeout);
    if (status != B_OK)
        return status;
    const PortMessage message = std::move(port->queue.front());
    port->queue.pop_front();
    ++port->total;
    port->writers.WakeFirst(B_OK);
    hold.unlock();
    objects_changed();
    if (code != nullptr)
        *code = message.code;
    const size_t size = std::min(bufferSize, message.bytes.size());
    if (size > 0)
        memcpy(buffer, message.bytes.data(), size);
    return size;
}

status_t write_port(port_id port, int32 code, const void* buffer, size_t bufferSize)
{
    return write_port_etc(port, code, buffer, bufferSize, 0, 0);
}

status_t write_port_etc(port_id id, int32 code, const void* buffer, size_t bufferSize, uint32 flags,
                        bigtime_t timeout)
{
    if (bufferSize > kMaxMessageSize || (buffer == nullptr && bufferSize > 0))
        return B_BAD_VALUE;
    const char* bytes = static_cast<const char*>(buffer);
    PortMessage message{code, std::vector<char>(bytes, bytes + bufferSize)};
    std::unique_lock<Mutex> hold;
    Port* port;
    const status_t status = lock_when(id, hold, port, &Port::writers, has_room, flags, timeout);
    if (status != B_OK)
        return status;
    port->queue.push_back(std::move(message));
    port->readers.WakeFirst(B_OK);
    port->lookers.WakeAll(B_OK);
    hold.unlock();
    objects_changed();
    return B_OK;
}

status_t close_port(port_id id)
{
    std::unique_lock<Mutex> hold;
    Port* port = ports().Find(id, hold);
    if (port == nullptr)
        return B_BAD_PORT_ID;
    port->closed = true;
    wake_everybody(port);
    hold.unlock();
    objects_changed();
    return B_OK;
}

status_t delete_port(port_id id)
{
    std::deque<PortMessage> unread;
    std::unique_lock<Mutex> hold;
    Port* port = ports().Find(id, hold);
    if (port == nullptr)
        return B_BAD_PORT_ID;
    unread.swap(port->queue);
    wake_everybody(port);
    ports().Release(port);
    hold.unlock();
    objects_changed();
    return B_OK;
}

ssize_t port_buffer_size(port_id port) { return port_buffer_size_etc(port, 0, 0); }

ssize_t port_buffer_size_etc(port_id id, uint32 flags, bigtime_t timeout)
{
    port_message_info info;
    const status_t status = _get_port_message_info_etc(id, &info, sizeof(info), flags, timeout);
    return status == B_OK ? static_cast<ssize_t>(info.size) : status;
}

ssize_t port_count(port_id id)
{
    port_info info;
    const status_t status = _get_port_info(id, &info, sizeof(info));
    return status == B_OK ? info.queue_count : status;
}

status_t set_port_owner(port_id id, team_id team)
{
    std::unique_lock<Mutex> hold;
    if (ports().Find(id, hold) == nullptr)
        return B_BAD_PORT_ID;
    return team == B_CURRENT_TEAM || team == getpid() ? B_OK : B_BAD_TEAM_ID;
}

status_t _get_port_info(port_id id, port_info* portInfo, size_t portInfoSize)
{
    if (portInfo == nullptr || portInfoSize != sizeof(port_info))
        return B_BAD_VALUE;
    std::unique_lock<Mutex> hold;
    Port* port = ports().Find(id, hold);
    if (port == nullptr)
        return B_BAD_PORT_ID;
    fill_info(port, portInfo);
    return B_OK;
}

status_t _get_next_port_info(team_id team, int32* cookie, port_info* portInfo, size_t portInfoSize)
{
    if (cookie == nullptr || portInfo == nullptr || portInfoSize != sizeof(port_info))
        return B_BAD_VALUE;
    if (team != B_CURRENT_TEAM && team != getpid())
        return B_BAD_TEAM_ID;
    std::unique_lock<Mutex> hold;
    Port* port = ports().Next(cookie, hold);
    if (port == nullptr)
        return B_BAD_PORT_ID;
    fill_info(port, portInfo);
    return B_OK;
}

status_t _get_port_message_info_etc(port_id id, port_message_info* info, size_t infoSize,
                                    uint32 flags, bigtime_t timeout)
{
    if (info == nullptr || infoSize != sizeof(port_message_info))
        return B_BAD_VALUE;
    std::unique_lock<Mutex> hold;
    Port* port;
    const status_t status = lock_when(id, hold, port, &Port::lookers, has_message, flags, timeout);
    if (status != B_OK)
        return status;
    info->size = port->queue.front().bytes.size();
    info->sender = getuid();
    info->sender_group = getgid();
    info->sender_team = getpid();
    return B_OK;
}
