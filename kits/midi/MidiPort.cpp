// BMidiPort: a port of the host between bytes and messages.

#include <MidiPort.h>

#include <errno.h>

#include <algorithm>
#include <string>
#include <vector>

#include "midi/Sequencer.h"
#include "device/DeviceNames.h"
#include "support/HostErrors.h"

using BPrivate::midi_host;
using BPrivate::MidiHostPort;
using BPrivate::MidiLine;

struct BMidiPort::Data {
    status_t status = B_NO_INIT;
    std::string name;                // of the open port
    std::unique_ptr<MidiLine> line;  // null while closed
    std::vector<uchar> exclusive;    // what came of a long message; the running thread
    std::vector<std::string> names;
    bool scanned = false;
};

// What each port is called: "client: port", short enough for a buffer of a name, and once.
static std::vector<std::string> name_ports(const std::vector<MidiHostPort>& ports)
{
    std::vector<std::string> names;
    for (const MidiHostPort& port : ports) {
        const std::string whole = port.client + ": " + port.name;
        std::string name = device::fitting(whole, B_OS_NAME_LENGTH - 1);
        for (int count = 2; std::find(names.begin(), names.end(), name) != names.end(); count++) {
            std::string suffix(" ");
            suffix += std::to_string(count);
            name = device::fitting(whole, B_OS_NAME_LENGTH - 1 - suffix.size()) + suffix;
        }
        names.push_back(name);
    }
    return names;
}

BMidiPort::BMidiPort(const char* name) : fData(new Data)
{
    if (name != nullptr)
        Open(name);
}

BMidiPort::~BMidiPort()
{
    Close();
    delete fData;
}

status_t BMidiPort::InitCheck() const { return fData->status; }

status_t BMidiPort::Open(const char* name)
{
    Close();
    if (name == nullptr)
        return fData->status = BPrivate::fail(EINVAL);
    const std::vector<MidiHostPort> ports = midi_host().list();
    const std::vector<std::string> names = name_ports(ports);
    const auto found = std::find(names.begin(), names.end(), name);
    if (found == names.end())
        return fData->status = BPrivate::fail(ENOENT);
    fData->line = midi_host().open(ports[found - names.begin()].address);
    if (fData->line == nullptr)
        return fData->status = BPrivate::host_failure();
    fData->name = name;
    return fData->status = B_OK;
}

void BMidiPort::Close()
{
    BMidiPort::Stop();
    fData->line.reset();
    fData->name.clear();
    fData->status = B_NO_INIT;
}

const char* BMidiPort::PortName() const
{
    return fData->line != nullptr ? fData->name.c_str() : nullptr;
}

void BMidiPort::_Send(const uchar* bytes, size_t count, uint32 time)
{
    if (fData->line == nullptr)
        return;
    SnoozeUntil(time);
    fData->line->Send(bytes, count);
}

// A message of `count` bytes with its first; channels and numbers that there are not are dropped.
void BMidiPort::_SendChannel(uchar kind, uchar channel, uchar first, uchar second, size_t count,
                             uint32 time)
{
    if (channel < 1 || channel > 16 || first > 127 || second > 127)
        return;
    const uchar bytes[] = {uchar(kind | (channel - 1)), first, second};
    _Send(bytes, count, time);
}

void BMidiPort::NoteOff(uchar channel, uchar note, uchar velocity, uint32 time)
{
    _SendChannel(B_NOTE_OFF, channel, note, velocity, 3, time);
}

void BMidiPort::NoteOn(uchar channel, uchar note, uchar velocity, uint32 time)
{
    _SendChannel(B_NOTE_ON, channel, note, velocity, 3, time);
}

void BMidiPort::KeyPressure(uchar channel, uchar note, uchar pressure, uint32 time)
{
    _SendChannel(B_KEY_PRESSURE, channel, note, pressure, 3, time);
}

void BMidiPort::ControlChange(uchar channel, uchar controlNumber, uchar controlValue, uint32 time)
{
    _SendChannel(B_CONTROL_CHANGE, channel, controlNumber, controlValue, 3, time);
}

void BMidiPort::ProgramChange(uchar channel, uchar programNumber, uint32 time)
{
    _SendChannel(B_PROGRAM_CHANGE, channel, programNumber, 0, 2, time);
}

void BMidiPort::ChannelPressure(uchar channel, uchar pressure, uint32 time)
{
    _SendChannel(B_CHANNEL_PRESSURE, channel, pressure, 0, 2, time);
}

void BMidiPort::PitchBend(uchar channel, uchar lsb, uchar msb, uint32 time)
{
    _SendChannel(B_PITCH_BEND, channel, lsb, msb, 3, time);
}

void BMidiPort::SystemExclusive(void* data, size_t length, uint32 time)
{
    const uchar* from = static_cast<const uchar*>(data);
    if (from == nullptr || std::any_of(from, from + length, [](uchar byte) { return byte > 127; }))
        return;
    std::vector<uchar> bytes{B_SYS_EX_START};
    bytes.insert(bytes.end(), from, from + length);
    bytes.push_back(B_SYS_EX_END);
    _Send(bytes.data(), bytes.size(), time);
}

// Bytes of a system message with its first, 0 for none of the common ones.
static size_t common_length(uchar status)
{
    switch (status) {
        case B_SONG_POSITION:
            return 3;
        case B_MIDI_TIME_CODE:
        case B_SONG_SELECT:
        case B_CABLE_MESSAGE:
            return 2;
        case B_TUNE_REQUEST:
            return 1;
        default:
            return 0;
    }
}

void BMidiPort::SystemCommon(uchar status, uchar data0, uchar data2, uint32 time)
{
    const size_t count = common_length(status);
    if (count == 0 || data0 > 127 || data2 > 127)
        return;
    const uchar bytes[] = {status, data0, data2};
    _Send(bytes, count, time);
}

void BMidiPort::SystemRealTime(uchar status, uint32 time)
{
    if (status >= B_TIMING_CLOCK)
        _Send(&status, 1, time);
}

status_t BMidiPort::Start()
{
    if (fData->line == nullptr)
        return B_NO_INIT;
    fData->line->Interrupt(false);
    return BMidi::Start();
}

void BMidiPort::Stop()
{
    if (fData->line != nullptr)
        fData->line->Interrupt(true);
    BMidi::Stop();
}

void BMidiPort::Run()
{
    uchar bytes[512];
    fData->exclusive.clear();
    while (KeepRunning()) {
        const ssize_t count = fData->line->Receive(bytes, sizeof(bytes));
        if (count < 0)
            return;
        if (count > 0)
            _Take(bytes, count);
    }
}

// Hands on a message, or keeps a piece of a long one until its last byte has come. Messages of one
// byte may come between the pieces.
void BMidiPort::_Take(const uchar* message, size_t count)
{
    const uint32 now = B_NOW;
    const uchar status = message[0];
    const uchar channel = (status & 0x0F) + 1;
    const uchar first = count > 1 ? message[1] : 0;
    const uchar second = count > 2 ? message[2] : 0;
    std::vector<uchar>& exclusive = fData->exclusive;
    if (status >= B_TIMING_CLOCK)
        return SpraySystemRealTime(status, now);
    if (status == B_SYS_EX_START || status < 0x80 || status == B_SYS_EX_END) {
        if (status == B_SYS_EX_START)
            exclusive.clear();
        exclusive.insert(exclusive.end(), message, message + count);
        if (exclusive.back() == B_SYS_EX_END && exclusive.front() == B_SYS_EX_START)
            SpraySystemExclusive(exclusive.data() + 1, exclusive.size() - 2, now);
        if (exclusive.back() == B_SYS_EX_END)
            exclusive.clear();
        return;
    }
    switch (status & 0xF0) {
        case B_NOTE_OFF:
            return SprayNoteOff(channel, first, second, now);
        case B_NOTE_ON:
            return SprayNoteOn(channel, first, second, now);
        case B_KEY_PRESSURE:
            return SprayKeyPressure(channel, first, second, now);
        case B_CONTROL_CHANGE:
            return SprayControlChange(channel, first, second, now);
        case B_PROGRAM_CHANGE:
            return SprayProgramChange(channel, first, now);
        case B_CHANNEL_PRESSURE:
            return SprayChannelPressure(channel, first, now);
        case B_PITCH_BEND:
            return SprayPitchBend(channel, first, second, now);
        default:
            return SpraySystemCommon(status, first, second, now);
    }
}

int32 BMidiPort::CountDevices()
{
    fData->names = name_ports(midi_host().list());
    fData->scanned = true;
    return fData->names.size();
}

status_t BMidiPort::GetDeviceName(int32 n, char* name, size_t bufSize)
{
    if (!fData->scanned)
        CountDevices();
    return device::copy_name(fData->names, n, name, bufSize);
}
