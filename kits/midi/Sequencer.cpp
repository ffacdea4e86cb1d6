// MIDI ports through ALSA's sequencer.

#include "midi/Sequencer.h"

extern "C" {  // which its header of errors leaves out
#include <alsa/asoundlib.h>
}
#include <errno.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <mutex>

using BPrivate::MidiAddress;
using BPrivate::MidiHostPort;
using BPrivate::MidiLine;

static const char* const kDevice = "/dev/snd/seq";
static const size_t kEncoderSize = 256;  // longer messages become several events

// ALSA tells of failures on the standard error unless one listens; on this thread one does.
class Silence {
public:
    Silence() : fFormer(snd_lib_error_set_local(ignore)) {}
    ~Silence() { snd_lib_error_set_local(fFormer); }
    Silence(const Silence&) = delete;

private:
    static void ignore(const char*, int, const char*, int, const char*, va_list) {}

    snd_local_error_handler_t fFormer;
};

struct CloseSequencer {
    void operator()(snd_seq_t* sequencer) const { snd_seq_close(sequencer); }
};
using Sequencer = std::unique_ptr<snd_seq_t, CloseSequencer>;

// Null on failure, with errno. A machine without the device is spared ALSA's configuration.
static Sequencer open_sequencer()
{
    if (access(kDevice, R_OK | W_OK) != 0)
        return nullptr;
    snd_seq_t* sequencer = nullptr;
    const int result = snd_seq_open(&sequencer, "hw", SND_SEQ_OPEN_DUPLEX, SND_SEQ_NONBLOCK);
    if (result < 0) {
        errno = -result;
        return nullptr;
    }
    return Sequencer(sequencer);
}

// Others may read from it, or write to it.
static bool is_offered(unsigned capabilities)
{
    const unsigned reads = SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ;
    const unsigned writes = SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE;
    return (capabilities & SND_SEQ_PORT_CAP_NO_EXPORT) == 0 &&
           ((capabilities & reads) == reads || (capabilities & writes) == writes);
}

static std::vector<MidiHostPort> list_ports()
{
    std::vector<MidiHostPort> ports;
    const Silence silence;
    const Sequencer sequencer = open_sequencer();
    if (sequencer == nullptr)
        return ports;
    snd_seq_client_info_t* client;
    snd_seq_client_info_alloca(&client);
    snd_seq_port_info_t* port;
    snd_seq_port_info_alloca(&port);
    snd_seq_client_info_set_client(client, SND_SEQ_CLIENT_SYSTEM);  // itself offers clocks only
    while (snd_seq_query_next_client(sequencer.get(), client) >= 0) {
        const int number = snd_seq_client_info_get_client(client);
        snd_seq_port_info_set_client(port, number);
        snd_seq_port_info_set_port(port, -1);
        while (snd_seq_query_next_port(sequencer.get(), port) >= 0) {
            if (is_offered(snd_seq_port_info_get_capability(port))) {
                ports.push_back({{number, snd_seq_port_info_get_port(port)},
                                 snd_seq_client_info_get_name(client),
                                 snd_seq_port_info_get_name(port)});
            }
        }
    }
    return ports;
}

namespace {

class SequencerLine : public MidiLine {
public:
    SequencerLine(Sequencer sequencer)
        : fSequencer(std::move(sequencer)), fInterrupt(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    {
        snd_midi_event_new(kEncoderSize, &fEncoder);
        snd_midi_event_new(kEncoderSize, &fDecoder);
        snd_midi_event_no_status(fDecoder, 1);  // each message with its first byte
    }
    ~SequencerLine() override
    {
        snd_midi_event_free(fEncoder);
        snd_midi_event_free(fDecoder);
        close(fInterrupt);
    }

    // Both directions, as far as the port has them.
    bool Connect(const MidiAddress& address)
    {
        const Silence silence;
        snd_seq_t* sequencer = fSequencer.get();
        snd_seq_set_client_name(sequencer, program_invocation_short_name);
        fPort = snd_seq_create_simple_port(
            sequencer, "MIDI",
            SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_NO_EXPORT,
            SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_APPLICATION);
        if (fPort < 0) {
            errno = -fPort;
            return false;
        }
        const int to = snd_seq_connect_to(sequencer, fPort, address.client, address.port);
        const int from = snd_seq_connect_from(sequencer, fPort, address.client, address.port);
        errno = -to;
        return to >= 0 || from >= 0;
    }

    void Send(const uchar* bytes, size_t count) override
    {
        std::lock_guard guard(fSendLock);
        const Silence silence;
        snd_midi_event_reset_encode(fEncoder);
        while (count > 0) {
            snd_seq_event_t event;
            snd_seq_ev_clear(&event);
            const long taken = snd_midi_event_encode(fEncoder, bytes, count, &event);
            if (taken <= 0)
                return;
            bytes += taken;
            count -= taken;
            if (event.type == SND_SEQ_EVENT_NONE)
                continue;
            snd_seq_ev_set_source(&event, fPort);
            snd_seq_ev_set_subs(&event);
            snd_seq_ev_set_direct(&event);
            while (snd_seq_event_output_direct(fSequencer.get(), &event) == -EAGAIN)
                WaitFor(POLLOUT);
        }
    }

    ssize_t Receive(uchar* bytes, size_t size) override
    {
        const Silence silence;
        for (;;) {
            snd_seq_event_t* event = nullptr;
            const int result = snd_seq_event_input(fSequencer.get(), &event);
            if (result == -EAGAIN) {
                if (!WaitFor(POLLIN))
                    return -1;
            } else if (result == -ENOSPC) {
                continue;  // the host has lost some
            } else if (result < 0) {
                return -1;
            } else {
                const long count = snd_midi_event_decode(fDecoder, bytes, size, event);
                if (count > 0)
                    return count;
            }
        }
    }

    void Interrupt(bool on) override
    {
        if (on)
            eventfd_write(fInterrupt, 1);
        else
            eventfd_read(fInterrupt, &fIgnored);
    }

private:
    // False once interrupted.
    bool WaitFor(short events)
    {
        struct pollfd entries[2] = {{fInterrupt, POLLIN, 0}, {-1, events, 0}};
        snd_seq_poll_descriptors(fSequencer.get(), &entries[1], 1, events);
        int ready;
        do
            ready = poll(entries, 2, -1);
        while (ready < 0 && errno == EINTR);
        return ready > 0 && entries[0].revents == 0 && (entries[1].revents & POLLERR) == 0;
    }

    const Sequencer fSequencer;
    const int fInterrupt;
    eventfd_t fIgnored;
    int fPort = -1;
    std::mutex fSendLock;
    snd_midi_event_t* fEncoder = nullptr;  // fSendLock
    snd_midi_event_t* fDecoder = nullptr;  // the thread that receives
};

}  // namespace

static std::unique_ptr<MidiLine> open_port(const MidiAddress& address)
{
    const Silence silence;
    Sequencer sequencer = open_sequencer();
    if (sequencer == nullptr)
        return nullptr;
    auto line = std::make_unique<SequencerLine>(std::move(sequencer));
    return line->Connect(address) ? std::move(line) : nullptr;
}

BPrivate::MidiHost& BPrivate::midi_host()
{
    static MidiHost host{list_ports, open_port};
    return host;
}
