// BMidi: messages to connected objects, and the thread that makes them.

#include <Midi.h>

#include <List.h>

#include <atomic>
#include <mutex>
#include <vector>

static const uchar kChannels = 16;
static const uchar kNotes = 128;

struct BMidi::Data {
    mutable std::mutex lock;
    BList connections;                 // lock
    std::atomic<bool> running{false};  // Run() has not ended
    std::atomic<bool> keep_running{false};
    thread_id thread = -1;  // who starts and stops
};

BMidi::BMidi() : fData(new Data) {}

BMidi::~BMidi()
{
    BMidi::Stop();
    delete fData;
}

void BMidi::NoteOff(uchar, uchar, uchar, uint32) {}
void BMidi::NoteOn(uchar, uchar, uchar, uint32) {}
void BMidi::KeyPressure(uchar, uchar, uchar, uint32) {}
void BMidi::ControlChange(uchar, uchar, uchar, uint32) {}
void BMidi::ProgramChange(uchar, uchar, uint32) {}
void BMidi::ChannelPressure(uchar, uchar, uint32) {}
void BMidi::PitchBend(uchar, uchar, uchar, uint32) {}
void BMidi::SystemExclusive(void*, size_t, uint32) {}
void BMidi::SystemCommon(uchar, uchar, uchar, uint32) {}
void BMidi::SystemRealTime(uchar, uint32) {}
void BMidi::TempoChange(int32, uint32) {}

void BMidi::AllNotesOff(bool justChannel, uint32 time)
{
    for (uchar channel = 1; channel <= kChannels; channel++) {
        SprayControlChange(channel, B_ALL_NOTES_OFF, 0, time);
        for (uchar note = 0; !justChannel && note < kNotes; note++)
            SprayNoteOff(channel, note, 0, time);
    }
}

status_t BMidi::Start()
{
    if (fData->running)
        return B_OK;
    BMidi::Stop();  // of a run that ended by itself
    const thread_id thread = spawn_thread(_RunThread, "MIDI", B_URGENT_PRIORITY, this);
    if (thread < 0)
        return thread;
    fData->thread = thread;
    fData->keep_running = true;
    fData->running = true;
    return resume_thread(thread);
}

void BMidi::Stop()
{
    fData->keep_running = false;
    if (fData->thread < 0 || fData->thread == find_thread(nullptr))
        return;
    status_t ignored;
    wait_for_thread(fData->thread, &ignored);
    fData->thread = -1;
}

bool BMidi::IsRunning() const { return fData->running; }

void BMidi::Connect(BMidi* toObject)
{
    if (toObject == nullptr)
        return;
    std::lock_guard guard(fData->lock);
    if (!fData->connections.HasItem(toObject))
        fData->connections.AddItem(toObject);
}

void BMidi::Disconnect(BMidi* fromObject)
{
    std::lock_guard guard(fData->lock);
    fData->connections.RemoveItem(fromObject);
}

bool BMidi::IsConnected(BMidi* toObject) const
{
    std::lock_guard guard(fData->lock);
    return fData->connections.HasItem(toObject);
}

BList* BMidi::Connections() const { return &fData->connections; }

void BMidi::SnoozeUntil(uint32 time) const
{
    const int32 left_ms = static_cast<int32>(time - B_NOW);  // the clock runs over
    if (left_ms > 0)
        snooze(bigtime_t(left_ms) * 1000);
}

// A hook may connect and disconnect objects: these changes count from the next message on.
template <class Hook, class... Arguments>
void BMidi::_Spray(Hook hook, Arguments... arguments) const
{
    std::vector<BMidi*> targets;
    {
        std::lock_guard guard(fData->lock);
        for (int32 i = 0; i < fData->connections.CountItems(); i++)
            targets.push_back(static_cast<BMidi*>(fData->connections.ItemAt(i)));
    }
    for (BMidi* target : targets)
        (target->*hook)(arguments...);
}

void BMidi::SprayNoteOff(uchar channel, uchar note, uchar velocity, uint32 time) const
{
    _Spray(&BMidi::NoteOff, channel, note, velocity, time);
}

void BMidi::SprayNoteOn(uchar channel, uchar note, uchar velocity, uint32 time) const
{
    _Spray(&BMidi::NoteOn, channel, note, velocity, time);
}

void BMidi::SprayKeyPressure(uchar channel, uchar note, uchar pressure, uint32 time) const
{
    _Spray(&BMidi::KeyPressure, channel, note, pressure, time);
}

void BMidi::SprayControlChange(uchar channel, uchar controlNumber, uchar controlValue,
                               uint32 time) const
{
    _Spray(&BMidi::ControlChange, channel, controlNumber, controlValue, time);
}

void BMidi::SprayProgramChange(uchar channel, uchar programNumber, uint32 time) const
{
    _Spray(&BMidi::ProgramChange, channel, programNumber, time);
}

void BMidi::SprayChannelPressure(uchar channel, uchar pressure, uint32 time) const
{
    _Spray(&BMidi::ChannelPressure, channel, pressure, time);
}

void BMidi::SprayPitchBend(uchar channel, uchar lsb, uchar msb, uint32 time) const
{
    _Spray(&BMidi::PitchBend, channel, lsb, msb, time);
}

void BMidi::SpraySystemExclusive(void* data, size_t length, uint32 time) const
{
    _Spray(&BMidi::SystemExclusive, data, length, time);
}

void BMidi::SpraySystemCommon(uchar status, uchar data1, uchar data2, uint32 time) const
{
    _Spray(&BMidi::SystemCommon, status, data1, data2, time);
}

void BMidi::SpraySystemRealTime(uchar status, uint32 time) const
{
    _Spray(&BMidi::SystemRealTime, status, time);
}

void BMidi::SprayTempoChange(int32 beatsPerMinute, uint32 time) const
{
    _Spray(&BMidi::TempoChange, beatsPerMinute, time);
}

bool BMidi::KeepRunning() { return fData->keep_running; }

void BMidi::Run() {}

status_t BMidi::_RunThread(void* object)
{
    BMidi* midi = static_cast<BMidi*>(object);
    midi->Run();
    midi->fData->running = false;
    return B_OK;
}
