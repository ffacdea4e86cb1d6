// Serial ports: which there are in a device tree of the test's own, and a pseudo terminal in the
// place of one.

#include <SerialPort.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include "device_folder.h"

// The far end of a line whose near end is /dev/ttyS0.
class LineFolder : public DeviceFolder {
public:
    LineFolder() : fFar(posix_openpt(O_RDWR | O_NOCTTY))
    {
        grantpt(fFar);
        unlockpt(fFar);
        Link("/dev/ttyS0", ptsname(fFar));
    }
    ~LineFolder() { close(fFar); }
    void Send(const std::string& bytes) const
    {
        ASSERT_EQ(write(fFar, bytes.data(), bytes.size()), ssize_t(bytes.size()));
    }
    std::string Receive(size_t count) const
    {
        std::string bytes(count, 0);
        size_t got = 0;
        while (got < count) {
            const ssize_t more = read(fFar, &bytes[got], count - got);
            if (more <= 0)
                break;
            got += more;
        }
        bytes.resize(got);
        return bytes;
    }
    // True once `last` came; what comes before it counts for nothing.
    bool ReceiveUpTo(char last) const
    {
        pollfd far = {fFar, POLLIN, 0};
        char bytes[4096];
        while (poll(&far, 1, 60'000) > 0) {
            const ssize_t more = read(fFar, bytes, sizeof(bytes));
            if (more <= 0)
                break;
            if (memchr(bytes, last, more) != nullptr)
                return true;
        }
        return false;
    }
    struct termios Settings() const
    {
        struct termios line = {};
        EXPECT_EQ(tcgetattr(fFar, &line), 0);
        return line;
    }

private:
    int fFar;
};

TEST(SerialPorts, OnlyPortsWithHardwareCount)
{
    DeviceFolder folder;
    BSerialPort port;
    EXPECT_EQ(port.CountDevices(), 0);
    const auto add = [&](const std::string& leaf, const char* type) {
        folder.Folder("/sys/class/tty/" + leaf + "/device/driver");
        if (type != nullptr)
            folder.Device("/sys/class/tty/" + leaf + "/type", type);
    };
    add("ttyS10", "4\n");
    add("ttyS1", "0\n");  // a driver waits for hardware there
    add("ttyS2", "16\n");
    add("ttyUSB0", nullptr);
    folder.Folder("/sys/class/tty/tty1");         // a console
    folder.Folder("/sys/class/tty/ptmx/device");  // no driver
    EXPECT_EQ(port.CountDevices(), 3);
    std::string names;
    char name[B_OS_NAME_LENGTH];
    for (int32 i = 0; port.GetDeviceName(i, name) == B_OK; i++)
        names += std::string(name) + " ";
    EXPECT_EQ(names, "ttyS2 ttyS10 ttyUSB0 ");
    EXPECT_EQ(port.GetDeviceName(-1, name), B_BAD_INDEX);
    EXPECT_EQ(port.GetDeviceName(0, nullptr), B_BAD_VALUE);
    BSerialPort uncounted;
    EXPECT_EQ(uncounted.GetDeviceName(2, name, 4), B_OK);
    EXPECT_STREQ(name, "tty");
    EXPECT_EQ(uncounted.GetDeviceName(2, name, 1), B_OK);
    EXPECT_STREQ(name, "");
}

TEST(SerialPorts, BytesPassUnchangedBothWays)
{
    LineFolder folder;
    BSerialPort port;
    ASSERT_GT(port.Open("ttyS0"), 0);
    std::string all;
    for (int byte = 0; byte < 256; byte++)
        all += char(byte);
    EXPECT_EQ(port.Write(all.data(), all.size()), 256);
    EXPECT_EQ(folder.Receive(256), all);
    folder.Send(all);
    std::string got;
    char buffer[100];
    while (got.size() < 256) {
        const ssize_t count = port.Read(buffer, sizeof(buffer));
        ASSERT_GT(count, 0);
        got.append(buffer, count);
    }
    EXPECT_EQ(got, all);
    EXPECT_EQ(port.Read(buffer, 0), 0);
}

TEST(SerialPorts, ReadingWaitsAsLongAsItWasTold)
{
    LineFolder folder;
    BSerialPort port;
    ASSERT_GT(port.Open("/dev/ttyS0"), 0);
    char buffer[16];
    EXPECT_EQ(port.SetTimeout(-1), B_BAD_VALUE);
    EXPECT_EQ(port.SetTimeout(25'000'001), B_BAD_VALUE);
    EXPECT_EQ(port.SetTimeout(30'000), B_OK);
    const bigtime_t before = system_time();
    EXPECT_EQ(port.Read(buffer, sizeof(buffer)), 0);
    EXPECT_GE(system_time() - before, 30'000);
    port.SetBlocking(false);
    EXPECT_EQ(port.SetTimeout(B_INFINITE_TIMEOUT), B_OK);
    EXPECT_EQ(port.Read(buffer, sizeof(buffer)), 0);
    port.SetBlocking(true);
    std::thread sender([&] { folder.Send("late"); });
    EXPECT_GT(port.WaitForInput(), 0);
    sender.join();
    EXPECT_EQ(port.Read(buffer, sizeof(buffer)), 4);
    folder.Send("rest");
    EXPECT_EQ(port.WaitForInput(), 4);
    int32 waiting = 0;
    EXPECT_EQ(port.NumCharsAvailable(&waiting), B_OK);
    EXPECT_EQ(waiting, 4);
    EXPECT_EQ(port.NumCharsAvailable(nullptr), B_BAD_VALUE);
    port.ClearInput();
    EXPECT_EQ(port.NumCharsAvailable(&waiting), B_OK);
    EXPECT_EQ(waiting, 0);
}

TEST(SerialPorts, WritingWithoutWaitingTakesWhatThereIsRoomFor)
{
    LineFolder folder;
    BSerialPort port;
    port.SetBlocking(false);
    ASSERT_GT(port.Open("ttyS0"), 0);
    const std::string much(1 << 20, 'x');
    const ssize_t taken = port.Write(much.data(), much.size());
    EXPECT_GT(taken, 0);
    EXPECT_LT(taken, 1 << 20);
    port.ClearOutput();
    port.SetBlocking(true);
    // How many of those are at the far end already, nobody knows.
    bool came = false;
    std::thread reader([&] { came = folder.ReceiveUpTo('!'); });
    EXPECT_EQ(port.Write(much.data(), much.size()), 1 << 20);
    EXPECT_EQ(port.Write("!", 1), 1);
    reader.join();
    EXPECT_TRUE(came);
}

TEST(SerialPorts, SettingsReachTheLineAndOutliveIt)
{
    LineFolder folder;
    BSerialPort port;
    EXPECT_EQ(port.DataRate(), B_19200_BPS);
    EXPECT_EQ(port.FlowControl(), uint32(B_HARDWARE_CONTROL));
    EXPECT_EQ(port.SetDataRate(B_9600_BPS), B_OK);
    port.SetStopBits(B_STOP_BITS_2);
    ASSERT_GT(port.Open("ttyS0"), 0);
    struct termios line = folder.Settings();
    EXPECT_EQ(cfgetospeed(&line), speed_t(B9600));
    EXPECT_TRUE(line.c_cflag & CSTOPB);
    EXPECT_TRUE(line.c_cflag & CRTSCTS);
    EXPECT_EQ(line.c_lflag & (ICANON | ECHO | ISIG), 0u);
    EXPECT_EQ(line.c_iflag & (IXON | IXOFF), 0u);
    EXPECT_EQ(port.SetDataRate(B_31250_BPS), B_OK);
    EXPECT_EQ(port.SetDataRate(data_rate(20)), B_BAD_VALUE);
    EXPECT_EQ(port.DataRate(), B_31250_BPS);
    line = folder.Settings();
    EXPECT_EQ(line.c_cflag & CBAUD, tcflag_t(0010000));  // a number of its own
    port.SetStopBits(B_STOP_BIT_1);
    port.SetStopBits(stop_bits(7));
    port.SetFlowControl(B_SOFTWARE_CONTROL);
    port.SetFlowControl(4);
    line = folder.Settings();
    EXPECT_FALSE(line.c_cflag & CSTOPB);
    EXPECT_FALSE(line.c_cflag & CRTSCTS);
    EXPECT_EQ(line.c_iflag & (IXON | IXOFF), unsigned(IXON | IXOFF));
    port.SetParityMode(B_ODD_PARITY);
    port.SetDataBits(B_DATA_BITS_7);
    port.Close();
    EXPECT_EQ(port.ParityMode(), B_ODD_PARITY);
    EXPECT_EQ(port.DataBits(), B_DATA_BITS_7);
    EXPECT_EQ(port.StopBits(), B_STOP_BITS_1);
}

TEST(SerialPorts, ClosedPortsAndOtherFilesSayWhy)
{
    LineFolder folder;
    BSerialPort port;
    char buffer[4];
    int32 waiting;
    EXPECT_EQ(port.Read(buffer, 4), B_NO_INIT);
    EXPECT_EQ(port.Write(buffer, 4), B_NO_INIT);
    EXPECT_EQ(port.NumCharsAvailable(&waiting), B_NO_INIT);
    EXPECT_EQ(port.WaitForInput(), B_NO_INIT);
    EXPECT_EQ(port.SetDTR(true), B_NO_INIT);
    EXPECT_FALSE(port.IsCTS());
    EXPECT_EQ(port.Open(nullptr), B_BAD_VALUE);
    EXPECT_EQ(port.Open("ttyS1"), B_ENTRY_NOT_FOUND);
    folder.Put("/dev/file", "no line");
    errno = 0;
    EXPECT_LT(port.Open("file"), 0);
    EXPECT_EQ(errno, ENOTTY);
    EXPECT_EQ(port.Read(buffer, 4), B_NO_INIT);
    ASSERT_GT(port.Open("ttyS0"), 0);
    EXPECT_EQ(port.Read(nullptr, 4), B_BAD_VALUE);
    EXPECT_EQ(port.Write(nullptr, 4), B_BAD_VALUE);
    EXPECT_LT(port.SetRTS(true), 0);  // a pseudo terminal has no such line
    port.Close();
    port.Close();
    EXPECT_EQ(port.Read(buffer, 4), B_NO_INIT);
}

TEST(SerialPorts, ALineThatHangsUpEndsReading)
{
    auto* folder = new LineFolder;
    BSerialPort port;
    ASSERT_GT(port.Open("ttyS0"), 0);
    std::thread hangs_up([&] { delete folder; });
    char buffer[4];
    EXPECT_LE(port.Read(buffer, 4), 0);
    hangs_up.join();
}
