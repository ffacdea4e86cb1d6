// BSerialPort: a port is opened without waiting, so that each call decides itself how long it waits
// for the line.

#include <SerialPort.h>

#include <asm/termbits.h>
#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <iterator>

#include "device/DeviceNames.h"
#include "device/DeviceTree.h"
#include "support/HostErrors.h"

using namespace device;
using BPrivate::fail;
using BPrivate::host_failure;

static const bigtime_t kLongestTimeout = 25'000'000;

// What the host calls the rates, by data_rate.
static const unsigned kRates[] = {
    B0,    B50,   B75,   B110,  B134,   B150,   B200,   B300,    B600,    B1200,
    B1800, B2400, B4800, B9600, B19200, B38400, B57600, B115200, B230400, BOTHER,
};
static_assert(std::size(kRates) == B_31250_BPS + 1, "one row per rate");
static const speed_t kOtherRate = 31250;

struct BSerialPort::Data {
    int file = -1;
    bool blocking = true;
    bigtime_t timeout = B_INFINITE_TIMEOUT;
    data_rate rate = B_19200_BPS;
    data_bits bits = B_DATA_BITS_8;
    stop_bits stops = B_STOP_BITS_1;
    parity_mode parity = B_NO_PARITY;
    uint32 flow = B_HARDWARE_CONTROL;
    std::vector<std::string> names;
    bool scanned = false;

    // The host's word for the settings; everything about lines of text goes off.
    unsigned ControlFlags() const
    {
        unsigned flags = CREAD | CLOCAL | HUPCL | kRates[rate];
        flags |= bits == B_DATA_BITS_7 ? CS7 : CS8;
        if (stops == B_STOP_BITS_2)
            flags |= CSTOPB;
        if (parity != B_NO_PARITY)
            flags |= parity == B_ODD_PARITY ? PARENB | PARODD : PARENB;
        if (flow & B_HARDWARE_CONTROL)
            flags |= CRTSCTS;
        return flags;
    }

    status_t Apply() const
    {
        if (file < 0)
            return B_OK;
        struct termios2 line;
        if (ioctl(file, TCGETS2, &line) != 0)
            return host_failure();
        line.c_iflag = flow & B_SOFTWARE_CONTROL ? IXON | IXOFF : 0;
        line.c_oflag = 0;
        line.c_lflag = 0;
        line.c_cflag = ControlFlags();
        line.c_ispeed = line.c_ospeed = kOtherRate;  // which other rates do not look at
        line.c_cc[VMIN] = 1;
        line.c_cc[VTIME] = 0;
        return ioctl(file, TCSETS2, &line) == 0 ? B_OK : host_failure();
    }

    // Waits for what `events` says; above 0, 0 when the time is over, or a status.
    int Wait(short events, bigtime_t limit) const
    {
        const bigtime_t end = limit == B_INFINITE_TIMEOUT ? limit : system_time() + limit;
        for (;;) {
            int wait_ms = -1;
            if (limit != B_INFINITE_TIMEOUT) {
                const bigtime_t left = end - system_time();
                wait_ms = left > 0 ? static_cast<int>((left + 999) / 1000) : 0;
            }
            struct pollfd entry = {file, events, 0};
            const int ready = poll(&entry, 1, wait_ms);
            if (ready >= 0)
                return ready;
            if (errno != EINTR)
                return host_failure();
        }
    }

    status_t SetLine(int line, bool asserted) const
    {
        if (file < 0)
            return BPrivate::not_set();
        return ioctl(file, asserted ? TIOCMBIS : TIOCMBIC, &line) == 0 ? B_OK : host_failure();
    }

    bool IsLine(int line) const
    {
        int lines = 0;
        return file >= 0 && ioctl(file, TIOCMGET, &lines) == 0 && (lines & line) != 0;
    }

    ssize_t Waiting() const
    {
        int count = 0;
        return ioctl(file, FIONREAD, &count) == 0 ? count : host_failure();
    }
};

BSerialPort::BSerialPort() : fData(new Data) {}

BSerialPort::~BSerialPort()
{
    Close();
    delete fData;
}

status_t BSerialPort::Open(const char* portName)
{
    Close();
    const int file = open_device(portName, O_RDWR);
    if (file < 0)
        return file;
    fData->file = file;
    const status_t status = ioctl(file, TIOCEXCL) == 0 ? fData->Apply() : host_failure();
    if (status != B_OK) {
        const int reason = errno;
        Close();
        errno = reason;
        return status;
    }
    return file;
}

void BSerialPort::Close()
{
    if (fData->file < 0)
        return;
    ioctl(fData->file, TIOCNXCL);
    close(fData->file);
    fData->file = -1;
}

ssize_t BSerialPort::Read(void* buf, size_t count)
{
    if (buf == nullptr)
        return fail(EINVAL);
    if (fData->file < 0)
        return BPrivate::not_set();
    if (count == 0)
        return 0;
    const int ready = fData->Wait(POLLIN, fData->blocking ? fData->timeout : 0);
    if (ready <= 0)
        return ready;
    const ssize_t got = read(fData->file, buf, count);
    if (got < 0 && errno == EAGAIN)
        return 0;
    return got < 0 ? host_failure() : got;
}

ssize_t BSerialPort::Write(const void* buf, size_t count)
{
    if (buf == nullptr)
        return fail(EINVAL);
    if (fData->file < 0)
        return BPrivate::not_set();
    size_t done = 0;
    while (done < count) {
        const ssize_t put = write(fData->file, static_cast<const char*>(buf) + done, count - done);
        if (put > 0) {
            done += put;
        } else if (put < 0 && errno != EAGAIN && errno != EINTR) {
            return done > 0 ? static_cast<ssize_t>(done) : host_failure();
        } else if (!fData->blocking) {
            break;
        } else if (fData->Wait(POLLOUT, B_INFINITE_TIMEOUT) < 0) {
            return done > 0 ? static_cast<ssize_t>(done) : host_failure();
        }
    }
    return done;
}

void BSerialPort::SetBlocking(bool blocking) { fData->blocking = blocking; }

status_t BSerialPort::SetTimeout(bigtime_t microSeconds)
{
    if (microSeconds != B_INFINITE_TIMEOUT && (microSeconds < 0 || microSeconds > kLongestTimeout))
        return B_BAD_VALUE;
    fData->timeout = microSeconds;
    return B_OK;
}

status_t BSerialPort::SetDataRate(data_rate bitsPerSecond)
{
    if (bitsPerSecond < B_0_BPS || bitsPerSecond > B_31250_BPS)
        return B_BAD_VALUE;
    fData->rate = bitsPerSecond;
    return fData->Apply();
}

data_rate BSerialPort::DataRate() { return fData->rate; }

void BSerialPort::SetDataBits(data_bits numBits)
{
    if (numBits != B_DATA_BITS_7 && numBits != B_DATA_BITS_8)
        return;
    fData->bits = numBits;
    fData->Apply();
}

data_bits BSerialPort::DataBits() { return fData->bits; }

void BSerialPort::SetStopBits(stop_bits numBits)
{
    if (numBits != B_STOP_BITS_1 && numBits != B_STOP_BITS_2)
        return;
    fData->stops = numBits;
    fData->Apply();
}

stop_bits BSerialPort::StopBits() { return fData->stops; }

void BSerialPort::SetParityMode(parity_mode which)
{
    if (which != B_NO_PARITY && which != B_ODD_PARITY && which != B_EVEN_PARITY)
        return;
    fData->parity = which;
    fData->Apply();
}

parity_mode BSerialPort::ParityMode() { return fData->parity; }

void BSerialPort::SetFlowControl(uint32 method)
{
    if ((method & ~(B_HARDWARE_CONTROL | B_SOFTWARE_CONTROL)) != 0)
        return;
    fData->flow = method;
    fData->Apply();
}

uint32 BSerialPort::FlowControl() { return fData->flow; }

void BSerialPort::ClearInput()
{
    if (fData->file >= 0)
        ioctl(fData->file, TCFLSH, TCIFLUSH);
}

void BSerialPort::ClearOutput()
{
    if (fData->file >= 0)
        ioctl(fData->file, TCFLSH, TCOFLUSH);
}

status_t BSerialPort::SetDTR(bool asserted) { return fData->SetLine(TIOCM_DTR, asserted); }
status_t BSerialPort::SetRTS(bool asserted) { return fData->SetLine(TIOCM_RTS, asserted); }
bool BSerialPort::IsCTS() { return fData->IsLine(TIOCM_CTS); }
bool BSerialPort::IsDSR() { return fData->IsLine(TIOCM_DSR); }
bool BSerialPort::IsRI() { return fData->IsLine(TIOCM_RI); }
bool BSerialPort::IsDCD() { return fData->IsLine(TIOCM_CD); }

status_t BSerialPort::NumCharsAvailable(int32* waitThisMany)
{
    if (waitThisMany == nullptr)
        return fail(EINVAL);
    if (fData->file < 0)
        return BPrivate::not_set();
    const ssize_t count = fData->Waiting();
    if (count < 0)
        return count;
    *waitThisMany = count;
    return B_OK;
}

ssize_t BSerialPort::WaitForInput()
{
    if (fData->file < 0)
        return BPrivate::not_set();
    const int ready = fData->Wait(POLLIN, B_INFINITE_TIMEOUT);
    return ready < 0 ? ready : fData->Waiting();
}

int32 BSerialPort::CountDevices()
{
    fData->names = serial_ports();
    fData->scanned = true;
    return fData->names.size();
}

status_t BSerialPort::GetDeviceName(int32 index, char* name, size_t bufSize)
{
    if (!fData->scanned)
        CountDevices();
    return copy_name(fData->names, index, name, bufSize);
}
