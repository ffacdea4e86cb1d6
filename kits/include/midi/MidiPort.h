#ifndef _MIDI_PORT_H
#define _MIDI_PORT_H

#include <Midi.h>

/* A MIDI port of the machine, of hardware or of another program. Messages to the object go out
   through the port, at their time; what comes in goes to the connected objects, between Start() and
   Stop(). Messages of closed ports are dropped. */
class BMidiPort : public BMidi {
public:
    /* Opens a port if there is a name. */
    BMidiPort(const char* name = NULL);
    virtual ~BMidiPort();        // closes
    status_t InitCheck() const;  // what the last Open() answered, B_NO_INIT after none and Close()

    /* Opens a port by its name in the list of devices; another is closed first. B_BAD_VALUE for
       null, B_ENTRY_NOT_FOUND without such a port, or what the host says. */
    status_t Open(const char* name);
    void Close();
    const char* PortName() const;  // null of a closed port; until it is closed

    virtual void NoteOff(uchar channel, uchar note, uchar velocity, uint32 time = B_NOW);
    virtual void NoteOn(uchar channel, uchar note, uchar velocity, uint32 time = B_NOW);
    virtual void KeyPressure(uchar channel, uchar note, uchar pressure, uint32 time = B_NOW);
    virtual void ControlChange(uchar channel, uchar controlNumber, uchar controlValue,
                               uint32 time = B_NOW);
    virtual void ProgramChange(uchar channel, uchar programNumber, uint32 time = B_NOW);
    virtual void ChannelPressure(uchar channel, uchar pressure, uint32 time = B_NOW);
    virtual void PitchBend(uchar channel, uchar lsb, uchar msb, uint32 time = B_NOW);
    virtual void SystemExclusive(void* data, size_t length, uint32 time = B_NOW);
    virtual void SystemCommon(uchar status, uchar data1, uchar data2, uint32 time = B_NOW);
    virtual void SystemRealTime(uchar status, uint32 time = B_NOW);

    virtual status_t Start();  // B_NO_INIT of a closed port
    virtual void Stop();

    /* The machine's ports, "client: port", each name once and at most B_OS_NAME_LENGTH bytes with
       its end. CountDevices() looks anew; the names are from then. GetDeviceName() cuts a name to
       `bufSize` bytes; B_BAD_INDEX without such a port, B_BAD_VALUE without a buffer. */
    int32 CountDevices();
    status_t GetDeviceName(int32 n, char* name, size_t bufSize = B_OS_NAME_LENGTH);

private:
    virtual void Run();
    void _Send(const uchar* bytes, size_t count, uint32 time);
    void _SendChannel(uchar kind, uchar channel, uchar first, uchar second, size_t count,
                      uint32 time);
    void _Take(const uchar* message, size_t count);

    struct Data;
    Data* fData;
};

#endif  // _MIDI_PORT_H
