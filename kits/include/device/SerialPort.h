#ifndef _SERIAL_PORT_H
#define _SERIAL_PORT_H

#include <sys/types.h>

#include <OS.h>
#include <SupportDefs.h>

// Bits a second.
enum data_rate {
    B_0_BPS = 0,  // hangs up
    B_50_BPS = 1,
    B_75_BPS = 2,
    B_110_BPS = 3,
    B_134_BPS = 4,
    B_150_BPS = 5,
    B_200_BPS = 6,
    B_300_BPS = 7,
    B_600_BPS = 8,
    B_1200_BPS = 9,
    B_1800_BPS = 10,
    B_2400_BPS = 11,
    B_4800_BPS = 12,
    B_9600_BPS = 13,
    B_19200_BPS = 14,
    B_38400_BPS = 15,
    B_57600_BPS = 16,
    B_115200_BPS = 17,
    B_230400_BPS = 18,
    B_31250_BPS = 19  // of MIDI
};

enum data_bits { B_DATA_BITS_7 = 0, B_DATA_BITS_8 = 1 };

enum stop_bits { B_STOP_BITS_1 = 0, B_STOP_BITS_2 = 1 };
#define B_STOP_BIT_1 B_STOP_BITS_1

enum parity_mode { B_NO_PARITY = 0, B_ODD_PARITY = 1, B_EVEN_PARITY = 2 };

// Who may stop the sender; may be combined.
enum {
    B_NOFLOW_CONTROL = 0,
    B_HARDWARE_CONTROL = 1,  // the lines RTS and CTS
    B_SOFTWARE_CONTROL = 2   // the characters XON and XOFF
};

/* A serial port. Settings may be made before it is open and last beyond Close(); at first they are
   19200 bits a second, 8 data bits, one stop bit, no parity, hardware flow control, and reading
   that waits without limit. What fails without a status leaves the reason in errno only. One
   thread may read while another writes; all else is for one thread at a time. */
class BSerialPort {
public:
    BSerialPort();
    virtual ~BSerialPort();  // closes

    /* Opens a port by its name in the list of devices, "ttyUSB0", or by its path, for this object
       alone. Answers a number above 0, or a status: B_ENTRY_NOT_FOUND, B_PERMISSION_DENIED, B_BUSY
       for one that somebody else keeps for himself, B_BAD_VALUE for null and empty names. Of an
       object that has a port open, that one is closed first. */
    status_t Open(const char* portName);
    void Close();

    /* Takes up to `count` bytes. Waits for the first of them: as long as SetTimeout() says, or not
       at all with blocking off. Answers how many came, 0 if none in time; or a status. */
    ssize_t Read(void* buf, size_t count);
    /* Answers how many bytes were taken, or a status. All of them when blocking is on, however
       long that takes; else what the host has room for. */
    ssize_t Write(const void* buf, size_t count);
    void SetBlocking(bool blocking);
    /* The longest that Read() waits, from 0 to 25 seconds, or B_INFINITE_TIMEOUT; else B_BAD_VALUE.
     */
    status_t SetTimeout(bigtime_t microSeconds);

    /* Settings. Where they return a status: B_BAD_VALUE for no such rate, and what the host says;
       the others keep what they have when they are given nonsense. */
    status_t SetDataRate(data_rate bitsPerSecond);
    data_rate DataRate();
    void SetDataBits(data_bits numBits);
    data_bits DataBits();
    void SetStopBits(stop_bits numBits);
    stop_bits StopBits();
    void SetParityMode(parity_mode which);
    parity_mode ParityMode();
    void SetFlowControl(uint32 method);
    uint32 FlowControl();

    /* Forget what has come and was not read, what was written and has not left. */
    void ClearInput();
    void ClearOutput();

    /* Lines. Of a closed port B_NO_INIT, and false. */
    status_t SetDTR(bool asserted);
    status_t SetRTS(bool asserted);
    bool IsCTS();
    bool IsDSR();
    bool IsRI();
    bool IsDCD();

    /* How many bytes wait. */
    status_t NumCharsAvailable(int32* waitThisMany);
    /* Waits for input without limit and answers how many bytes there are, or a status. */
    ssize_t WaitForInput();

    /* The ports whose hardware is there. CountDevices() looks anew; the names are from then, and
       Open() takes them. GetDeviceName() cuts a name to `bufSize` bytes with its end; B_BAD_INDEX
       without such a port, B_BAD_VALUE without a buffer. */
    int32 CountDevices();
    status_t GetDeviceName(int32 index, char* name, size_t bufSize = B_OS_NAME_LENGTH);

private:
    BSerialPort(const BSerialPort&) = delete;
    BSerialPort& operator=(const BSerialPort&) = delete;

    struct Data;
    Data* fData;
};

#endif  // _SERIAL_PORT_H
