#ifndef _MIDI_H
#define _MIDI_H

#include <MidiDefs.h>
#include <OS.h>
#include <SupportDefs.h>

class BList;

/* Takes and makes MIDI messages. An object that makes them sends each to all objects that are
   connected to it, by calling the hook of the message's kind there; what it makes comes from Run(),
   on a thread of its own between Start() and Stop(). Channels go from 1 to 16, all other numbers
   from 0 to 127. Times are in milliseconds, see B_NOW. Connecting is safe on any thread; an object
   must be disconnected before it is deleted. */
class BMidi {
public:
    BMidi();
    virtual ~BMidi();  // stops

    /* Hooks for messages. They do nothing here, but for AllNotesOff(), which tells every channel of
       the connected objects to be silent: by a controller and, with `justChannel` false, by the end
       of each note as well. */
    virtual void NoteOff(uchar channel, uchar note, uchar velocity, uint32 time = B_NOW);
    virtual void NoteOn(uchar channel, uchar note, uchar velocity, uint32 time = B_NOW);
    virtual void KeyPressure(uchar channel, uchar note, uchar pressure, uint32 time = B_NOW);
    virtual void ControlChange(uchar channel, uchar controlNumber, uchar controlValue,
                               uint32 time = B_NOW);
    virtual void ProgramChange(uchar channel, uchar programNumber, uint32 time = B_NOW);
    virtual void ChannelPressure(uchar channel, uchar pressure, uint32 time = B_NOW);
    virtual void PitchBend(uchar channel, uchar lsb, uchar msb, uint32 time = B_NOW);
    // The bytes between the first and the last of the message.
    virtual void SystemExclusive(void* data, size_t length, uint32 time = B_NOW);
    virtual void SystemCommon(uchar status, uchar data1, uchar data2, uint32 time = B_NOW);
    virtual void SystemRealTime(uchar status, uint32 time = B_NOW);
    virtual void TempoChange(int32 beatsPerMinute, uint32 time = B_NOW);
    virtual void AllNotesOff(bool justChannel = true, uint32 time = B_NOW);

    /* Begins Run(); B_OK if it runs already. Stop() waits until it has ended, unless Run() itself
       calls it. */
    virtual status_t Start();
    virtual void Stop();
    bool IsRunning() const;

    /* Whom messages go to, each object once. The list belongs to this object. */
    void Connect(BMidi* toObject);
    void Disconnect(BMidi* fromObject);
    bool IsConnected(BMidi* toObject) const;
    BList* Connections() const;

    /* Returns when it is that time. */
    void SnoozeUntil(uint32 time) const;

protected:
    /* Send a message to all connected objects. */
    void SprayNoteOff(uchar channel, uchar note, uchar velocity, uint32 time) const;
    void SprayNoteOn(uchar channel, uchar note, uchar velocity, uint32 time) const;
    void SprayKeyPressure(uchar channel, uchar note, uchar pressure, uint32 time) const;
    void SprayControlChange(uchar channel, uchar controlNumber, uchar controlValue,
                            uint32 time) const;
    void SprayProgramChange(uchar channel, uchar programNumber, uint32 time) const;
    void SprayChannelPressure(uchar channel, uchar pressure, uint32 time) const;
    void SprayPitchBend(uchar channel, uchar lsb, uchar msb, uint32 time) const;
    void SpraySystemExclusive(void* data, size_t length, uint32 time = B_NOW) const;
    void SpraySystemCommon(uchar status, uchar data1, uchar data2, uint32 time) const;
    void SpraySystemRealTime(uchar status, uint32 time) const;
    void SprayTempoChange(int32 beatsPerMinute, uint32 time) const;

    /* False once Run() shall end. */
    bool KeepRunning();

private:
    virtual void Run();  // makes messages until KeepRunning() is false
    static status_t _RunThread(void* object);
    template <class Hook, class... Arguments>
    void _Spray(Hook hook, Arguments... arguments) const;

    BMidi(const BMidi&) = delete;
    BMidi& operator=(const BMidi&) = delete;

    struct Data;
    Data* fData;
};

#endif  // _MIDI_H
