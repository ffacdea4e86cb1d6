#ifndef _JOYSTICK_H
#define _JOYSTICK_H

#include <sys/types.h>

#include <OS.h>
#include <SupportDefs.h>

class BString;
struct entry_ref;

/* A joystick or game pad. Positions and buttons are those of the last Update(). The host calibrates
   its joysticks itself, and tells each by a device of its own, so an object has one stick. One
   thread at a time. */
class BJoystick {
public:
    BJoystick();
    virtual ~BJoystick();  // closes

    /* Opens a joystick by its name in the list of devices, "js0", or by its path. Answers a number
       above 0, or a status: B_ENTRY_NOT_FOUND, B_PERMISSION_DENIED, B_BAD_VALUE for null and empty
       names. All of a joystick can be read, enhanced or not. */
    status_t Open(const char* portName);
    status_t Open(const char* portName, bool enhanced);
    void Close();

    /* Brings positions and buttons up to date. B_NO_INIT of a closed joystick, B_DEVICE_NOT_FOUND
       of one that was unplugged. */
    status_t Update();
    /* Updates are never late; B_BAD_VALUE for less than 0. */
    status_t SetMaxLatency(bigtime_t maxLatency);

    bigtime_t timestamp;  // of the last update, on the clock of system_time()
    int16 horizontal;     // -32768, left, to 32767
    int16 vertical;       // -32768, forward, to 32767
    bool button1;         // false while it is pressed
    bool button2;

    /* The joysticks of the machine. They are looked up with the first call, and by RescanDevices().
       GetDeviceName() cuts a name to `bufSize` bytes with its end; B_BAD_INDEX without such a
       joystick, B_BAD_VALUE without a buffer. */
    int32 CountDevices();
    status_t GetDeviceName(int32 index, char* name, size_t bufSize = B_OS_NAME_LENGTH);
    status_t RescanDevices();

    /* True for an open joystick; the host knows it without a description in a file. */
    bool EnterEnhancedMode(const entry_ref* ref = NULL);
    int32 CountSticks();
    /* Axes from -32768 to 32767 each; the place must have room for CountAxes(). Hats: 0 in the
       middle, 1 forward, and clockwise to 8. Buttons: true, or a bit set, while pressed.
       B_BAD_VALUE for null, B_BAD_INDEX for another stick than 0, or no such axis, hat or button.
     */
    int32 CountAxes();
    status_t GetAxisValues(int16* outValues, int32 forStick = 0);
    status_t GetAxisNameAt(int32 index, BString* outName);
    int32 CountHats();
    status_t GetHatValues(uint8* outHats, int32 forStick = 0);
    status_t GetHatNameAt(int32 index, BString* outName);
    int32 CountButtons();
    uint32 ButtonValues(int32 forStick = 0);  // of the first 32
    status_t GetButtonValues(bool* outButtons, int32 forStick = 0);
    status_t GetButtonNameAt(int32 index, BString* outName);

    /* The host's driver, and what the maker calls the joystick. */
    status_t GetControllerModule(BString* outName);
    status_t GetControllerName(BString* outName);

    /* Always on; B_NOT_SUPPORTED when it is to go off. */
    bool IsCalibrationEnabled();
    status_t EnableCalibration(bool calibrates = true);

private:
    BJoystick(const BJoystick&) = delete;
    BJoystick& operator=(const BJoystick&) = delete;

    struct Data;
    Data* fData;
};

#endif  // _JOYSTICK_H
