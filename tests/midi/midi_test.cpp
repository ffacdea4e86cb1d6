// MIDI objects among themselves, and a port whose host is the test.

#include <List.h>
#include <MidiPort.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include "midi/Sequencer.h"
#include "support/temp_folder.h"

using BPrivate::MidiAddress;
using BPrivate::MidiHostPort;
using BPrivate::MidiLine;

// Writes down what it is told.
class Listener : public BMidi {
public:
    void NoteOff(uchar channel, uchar note, uchar velocity, uint32) override
    {
        Note("off", channel, note, velocity);
    }
    void NoteOn(uchar channel, uchar note, uchar velocity, uint32) override
    {
        Note("on", channel, note, velocity);
    }
    void ControlChange(uchar channel, uchar number, uchar value, uint32) override
    {
        Note("control", channel, number, value);
    }
    void ProgramChange(uchar channel, uchar number, uint32) override
    {
        Note("program", channel, number, 0);
    }
    void PitchBend(uchar channel, uchar lsb, uchar msb, uint32) override
    {
        Note("bend", channel, lsb, msb);
    }
    void SystemExclusive(void* data, size_t length, uint32) override
    {
        Add("exclusive " + std::string(static_cast<char*>(data), length));
    }
    void SystemCommon(uchar status, uchar data1, uchar data2, uint32) override
    {
        Note("common", status, data1, data2);
    }
    void SystemRealTime(uchar status, uint32) override { Note("real time", status, 0, 0); }

    std::string WaitFor(size_t count)
    {
        std::unique_lock guard(fLock);
        fAdded.wait_for(guard, std::chrono::seconds(20), [&] { return fCount >= count; });
        return fText;
    }
    size_t Count()
    {
        std::lock_guard guard(fLock);
        return fCount;
    }

private:
    void Note(const char* kind, int a, int b, int c)
    {
        Add(std::string(kind) + " " + std::to_string(a) + " " + std::to_string(b) + " " +
            std::to_string(c));
    }
    void Add(const std::string& line)
    {
        std::lock_guard guard(fLock);
        fText += line + "\n";
        fCount++;
        fAdded.notify_all();
    }

    std::mutex fLock;
    std::condition_variable fAdded;
    std::string fText;  // fLock
    size_t fCount = 0;  // fLock
};

// The test's host: two keyboards of one name, and one with a long name that can not be opened.
static struct FakeHost {
    std::mutex lock;
    std::condition_variable changed;
    std::deque<std::string> incoming;  // lock
    std::string sent;                  // lock
    bool interrupted = false;          // lock
    int opened = -1;
} sHost;

static void feed(const std::string& bytes)
{
    std::lock_guard guard(sHost.lock);
    sHost.incoming.push_back(bytes);
    sHost.changed.notify_all();
}

class FakeLine : public MidiLine {
public:
    void Send(const uchar* bytes, size_t count) override
    {
        std::lock_guard guard(sHost.lock);
        sHost.sent.append(reinterpret_cast<const char*>(bytes), count);
    }
    ssize_t Receive(uchar* bytes, size_t) override
    {
        std::unique_lock guard(sHost.lock);
        sHost.changed.wait(guard, [] { return sHost.interrupted || !sHost.incoming.empty(); });
        if (sHost.interrupted)
            return -1;
        const std::string next = sHost.incoming.front();
        sHost.incoming.pop_front();
        next.copy(reinterpret_cast<char*>(bytes), next.size());
        return next.size();
    }
    void Interrupt(bool on) override
    {
        std::lock_guard guard(sHost.lock);
        sHost.interrupted = on;
        sHost.changed.notify_all();
    }
};

static std::vector<MidiHostPort> fake_ports()
{
    return {{{20, 0}, "Keys", "Port 1"},
            {{24, 0}, "Keys", "Port 1"},
            {{28, 3},
             "My synthesizer in \xC3\xB6"
             "ster",
             "Gr\xC3\xB6\xC3\x9F"
             "e"},
            {{32, 0},
             "My synthesizer in \xC3\xB6"
             "ster",
             "Gr\xC3\xB6\xC3\x9F"
             "er"}};
}

static std::unique_ptr<MidiLine> fake_open(const MidiAddress& address)
{
    if (address.client == 28) {
        errno = EBUSY;
        return nullptr;
    }
    sHost.opened = address.client;
    return std::make_unique<FakeLine>();
}

class MidiPorts : public testing::Test {
protected:
    void SetUp() override { BPrivate::midi_host() = {fake_ports, fake_open}; }
};

TEST(MidiHost, WithoutASequencerThereAreNoPortsAndNoNoise)
{
    if (access("/dev/snd/seq", F_OK) == 0)
        GTEST_SKIP() << "this machine has a sequencer";
    TempFolder folder;
    const int error = dup(STDERR_FILENO);
    const int file = open(folder.Put("/noise").c_str(), O_RDWR);
    dup2(file, STDERR_FILENO);
    BMidiPort port;
    const int32 count = port.CountDevices();
    char name[B_OS_NAME_LENGTH] = "?";
    const status_t status = port.GetDeviceName(0, name);
    dup2(error, STDERR_FILENO);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(status, B_BAD_INDEX);
    EXPECT_EQ(lseek(file, 0, SEEK_END), 0);
    EXPECT_EQ(BPrivate::midi_host().open({20, 0}), nullptr);
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(MidiPorts, NamesFitTheirBufferAndOpenTheirPort)
{
    BMidiPort port;
    ASSERT_EQ(port.CountDevices(), 4);
    const char* const expected[] = {"Keys: Port 1", "Keys: Port 1 2",
                                    "My synthesizer in \xC3\xB6"
                                    "ster: Gr\xC3\xB6",
                                    "My synthesizer in \xC3\xB6"
                                    "ster: Gr 2"};
    const int clients[] = {20, 24, -1, 32};
    for (int i = 0; i < 4; i++) {
        char name[B_OS_NAME_LENGTH];
        ASSERT_EQ(port.GetDeviceName(i, name), B_OK);
        EXPECT_STREQ(name, expected[i]);
        sHost.opened = -1;
        const status_t status = port.Open(name);
        EXPECT_EQ(status, clients[i] < 0 ? B_BUSY : B_OK);
        EXPECT_EQ(sHost.opened, clients[i]);
        EXPECT_EQ(port.InitCheck(), status);
    }
    EXPECT_STREQ(port.PortName(), expected[3]);
    char cut[20];
    EXPECT_EQ(port.GetDeviceName(2, cut, sizeof(cut)), B_OK);
    EXPECT_STREQ(cut, "My synthesizer in ");  // not in the middle of a character
    EXPECT_EQ(port.GetDeviceName(4, cut), B_BAD_INDEX);
    EXPECT_EQ(port.GetDeviceName(0, nullptr), B_BAD_VALUE);
    EXPECT_EQ(port.Open("Keys"), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(port.PortName(), nullptr);
    EXPECT_EQ(port.Open(nullptr), B_BAD_VALUE);
    EXPECT_EQ(port.Start(), B_NO_INIT);
}

TEST_F(MidiPorts, MessagesLeaveAsBytesAndNonsenseDoesNot)
{
    BMidiPort port("Keys: Port 1");
    ASSERT_EQ(port.InitCheck(), B_OK);
    BMidi& midi = port;
    char exclusive[] = "abc";
    midi.NoteOn(1, 60, 100);
    midi.NoteOff(16, 60, 0);
    midi.KeyPressure(2, 1, 2);
    midi.ControlChange(1, B_MAIN_VOLUME, 127);
    midi.ProgramChange(3, B_HARPSICHORD);
    midi.ChannelPressure(1, 5);
    midi.PitchBend(1, 0, 64);
    midi.SystemExclusive(exclusive, 3);
    midi.SystemCommon(B_SONG_POSITION, 1, 2);
    midi.SystemCommon(B_TUNE_REQUEST, 0, 0);
    midi.SystemRealTime(B_START);
    const std::string expected(
        "\x90\x3C\x64"
        "\x8F\x3C\x00"
        "\xA1\x01\x02"
        "\xB0\x07\x7F"
        "\xC2\x06"
        "\xD0\x05"
        "\xE0\x00\x40"
        "\xF0"
        "abc"
        "\xF7"
        "\xF2\x01\x02"
        "\xF6"
        "\xFA",
        29);
    EXPECT_EQ(sHost.sent, expected);
    char no_data[] = "\x80";
    midi.NoteOn(0, 60, 100);
    midi.NoteOn(17, 60, 100);
    midi.NoteOn(1, 128, 100);
    midi.SystemExclusive(no_data, 1);
    midi.SystemExclusive(nullptr, 1);
    midi.SystemCommon(B_NOTE_ON, 1, 1);
    midi.SystemRealTime(B_NOTE_ON);
    port.Close();
    midi.NoteOn(1, 60, 100);
    EXPECT_EQ(sHost.sent, expected);
}

TEST_F(MidiPorts, BytesComeInAsMessagesUntilStopped)
{
    BMidiPort port("Keys: Port 1");
    Listener listener;
    port.Connect(&listener);
    feed("\x91\x3C\x64");
    feed(
        "\xF0"
        "ab");
    feed("\xF8");  // between the pieces of the long one
    feed("cd\xF7");
    feed("\xC0\x05");
    feed(std::string("\xE0\x00\x40", 3));
    feed("ef\xF7");  // the end of something that never began
    feed("\xF3\x07");
    EXPECT_FALSE(port.IsRunning());
    ASSERT_EQ(port.Start(), B_OK);
    EXPECT_EQ(port.Start(), B_OK);
    EXPECT_TRUE(port.IsRunning());
    EXPECT_EQ(listener.WaitFor(6),
              "on 2 60 100\nreal time 248 0 0\nexclusive abcd\nprogram 1 5 0\nbend 1 0 64\n"
              "common 243 7 0\n");
    port.Stop();
    EXPECT_FALSE(port.IsRunning());
    feed("\x91\x3C\x00");
    EXPECT_EQ(listener.Count(), 6u);
    ASSERT_EQ(port.Start(), B_OK);
    listener.WaitFor(7);
    EXPECT_EQ(listener.Count(), 7u);
    port.Disconnect(&listener);
}

// Makes notes until it is stopped, and stops itself at the tenth if told so.
class Maker : public BMidi {
public:
    explicit Maker(bool stops_itself) : fStopsItself(stops_itself) {}
    ~Maker() override { Stop(); }

private:
    void Run() override
    {
        for (int count = 1; KeepRunning(); count++) {
            SprayNoteOn(1, 60, 1, B_NOW);
            if (fStopsItself && count == 10)
                Stop();
            SnoozeUntil(B_NOW + 1);
        }
    }

    const bool fStopsItself;
};

TEST(Midi, EachConnectedObjectHearsEachMessageOnce)
{
    Listener one, two;
    Maker maker(true);
    maker.Connect(&one);
    maker.Connect(&one);
    maker.Connect(&two);
    maker.Connect(nullptr);
    EXPECT_EQ(maker.Connections()->CountItems(), 2);
    maker.Disconnect(&two);
    EXPECT_FALSE(maker.IsConnected(&two));
    ASSERT_EQ(maker.Start(), B_OK);
    one.WaitFor(10);
    maker.Stop();
    EXPECT_EQ(one.Count(), 10u);
    EXPECT_EQ(two.Count(), 0u);
    ASSERT_EQ(maker.Start(), B_OK);  // after a run that ended itself
    one.WaitFor(20);
    maker.Stop();
    EXPECT_EQ(one.Count(), 20u);
}

TEST(Midi, AllNotesOffReachesEveryChannel)
{
    Listener listener;
    BMidi midi;
    midi.Connect(&listener);
    midi.AllNotesOff();
    EXPECT_EQ(listener.Count(), 16u);
    EXPECT_EQ(listener.WaitFor(16).substr(0, 16), "control 1 123 0\n");
    midi.AllNotesOff(false);
    EXPECT_EQ(listener.Count(), 16u + 16 * 129);
}

TEST(Midi, SnoozeUntilReturnsAtItsTime)
{
    BMidi midi;
    const uint32 time = B_NOW + 20;
    midi.SnoozeUntil(time);
    EXPECT_GE(int32(B_NOW - time), 0);
    midi.SnoozeUntil(B_NOW - 1000);  // long ago
}
