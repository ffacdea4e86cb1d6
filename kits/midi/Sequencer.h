#ifndef MIDI_SEQUENCER_H
#define MIDI_SEQUENCER_H

// The host's MIDI ports. A test puts ports of its own in.

#include <sys/types.h>

#include <memory>
#include <string>
#include <vector>

#include <SupportDefs.h>

namespace BPrivate {

struct MidiAddress {
    int client;
    int port;
};

struct MidiHostPort {
    MidiAddress address;
    std::string client;
    std::string name;
};

// An open port.
class MidiLine {
public:
    virtual ~MidiLine() = default;
    // One whole message. Any thread.
    virtual void Send(const uchar* bytes, size_t count) = 0;
    // Waits for bytes of the next message and answers how many: a whole one, or a piece of one that
    // begins with B_SYS_EX_START. Below 0 once interrupted. One thread at a time.
    virtual ssize_t Receive(uchar* bytes, size_t size) = 0;
    // Ends all Receive() until it is taken back. Any thread.
    virtual void Interrupt(bool on) = 0;
};

struct MidiHost {
    std::vector<MidiHostPort> (*list)();
    // Null on failure, with errno.
    std::unique_ptr<MidiLine> (*open)(const MidiAddress& address);
};

MidiHost& midi_host();

}  // namespace BPrivate

#endif  // MIDI_SEQUENCER_H
