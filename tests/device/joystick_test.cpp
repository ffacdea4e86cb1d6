// Joysticks of a device tree that each test lays out itself; their events come through a pipe.

#include <Joystick.h>
#include <String.h>

#include <gtest/gtest.h>

#include <cstring>

#include <fcntl.h>
#include <linux/joystick.h>
#include <sys/stat.h>
#include <unistd.h>

#include "device/DeviceTree.h"
#include "device_folder.h"

// A tree with a joystick js0 that has axes X, Y and throttle, a hat and three buttons, one of them
// of the kind that comes before the joystick's own.
class JoystickFolder : public DeviceFolder {
public:
    JoystickFolder()
    {
        Device("/sys/class/input/js0/device/name", "Flight Stick\n");
        Device("/sys/class/input/js0/device/capabilities/abs", "30043\n");
        Device("/sys/class/input/js0/device/capabilities/key", "300010000 0 0 0 0\n");
        Link("/sys/class/input/js0/device/device/driver", "../../bus/drivers/hid-stick");
        Folder("/dev/input");
        mkfifo(At("/dev/input/js0").c_str(), 0600);
        fWriter = open(At("/dev/input/js0").c_str(), O_RDWR | O_NONBLOCK);
    }
    ~JoystickFolder() { close(fWriter); }
    void Send(int type, int number, int value) const
    {
        js_event event = {0, __s16(value), __u8(type), __u8(number)};
        ASSERT_EQ(write(fWriter, &event, sizeof(event)), ssize_t(sizeof(event)));
    }

private:
    int fWriter;
};

TEST(Joysticks, NamesAreCountedInNaturalOrderAndRescannedOnlyWhenAsked)
{
    DeviceFolder folder;
    BJoystick none;
    EXPECT_EQ(none.CountDevices(), 0);
    for (const char* leaf : {"js10", "js2", "event3", "mouse0", "js", "jsx", "js7"})
        folder.Folder(std::string("/sys/class/input/") + leaf);
    BPrivate::device_host().is_joystick = [](const char* name) {
        return strcmp(name, "js7") != 0;
    };  // a keyboard, udev says
    BJoystick stick;
    EXPECT_EQ(stick.CountDevices(), 2);
    char name[B_OS_NAME_LENGTH] = "?";
    EXPECT_EQ(stick.GetDeviceName(0, name), B_OK);
    EXPECT_STREQ(name, "js2");
    EXPECT_EQ(stick.GetDeviceName(1, name), B_OK);
    EXPECT_STREQ(name, "js10");
    EXPECT_EQ(stick.GetDeviceName(2, name), B_BAD_INDEX);
    EXPECT_EQ(stick.GetDeviceName(-1, name), B_BAD_INDEX);
    EXPECT_EQ(stick.GetDeviceName(0, nullptr), B_BAD_VALUE);
    EXPECT_EQ(stick.GetDeviceName(0, name, 0), B_BAD_VALUE);
    EXPECT_EQ(stick.GetDeviceName(1, name, 4), B_OK);
    EXPECT_STREQ(name, "js1");
    EXPECT_EQ(none.CountDevices(), 0);
    EXPECT_EQ(none.RescanDevices(), B_OK);
    EXPECT_EQ(none.CountDevices(), 2);
}

TEST(Joysticks, UpdateTakesAllEventsAndHatsAreNoAxes)
{
    JoystickFolder folder;
    folder.Send(JS_EVENT_AXIS | JS_EVENT_INIT, 1, -32767);
    BJoystick stick;
    ASSERT_GT(stick.Open("js0"), 0);
    EXPECT_EQ(stick.vertical, -32767);
    EXPECT_TRUE(stick.button1);  // up
    EXPECT_EQ(stick.CountSticks(), 1);
    EXPECT_EQ(stick.CountAxes(), 3);
    EXPECT_EQ(stick.CountHats(), 1);
    EXPECT_EQ(stick.CountButtons(), 3);
    for (int i = 0; i < 200; i++)
        folder.Send(JS_EVENT_AXIS, 0, i);
    folder.Send(JS_EVENT_AXIS, 2, 1234);
    folder.Send(JS_EVENT_AXIS, 3, 32767);   // the hat to the right
    folder.Send(JS_EVENT_AXIS, 4, -32767);  // and forward
    folder.Send(JS_EVENT_BUTTON, 0, 1);
    folder.Send(JS_EVENT_BUTTON, 2, 1);
    folder.Send(JS_EVENT_AXIS, 99, 1);    // no such axis
    folder.Send(JS_EVENT_BUTTON, 99, 1);  // nor button
    EXPECT_EQ(stick.horizontal, 0);
    const bigtime_t before = system_time();
    ASSERT_EQ(stick.Update(), B_OK);
    EXPECT_GE(stick.timestamp, before);
    EXPECT_EQ(stick.horizontal, 199);
    EXPECT_EQ(stick.vertical, -32767);
    EXPECT_FALSE(stick.button1);
    EXPECT_TRUE(stick.button2);
    int16 axes[3] = {};
    EXPECT_EQ(stick.GetAxisValues(axes), B_OK);
    EXPECT_EQ(axes[0], 199);
    EXPECT_EQ(axes[2], 1234);
    uint8 hat = 0;
    EXPECT_EQ(stick.GetHatValues(&hat), B_OK);
    EXPECT_EQ(hat, 2);
    EXPECT_EQ(stick.ButtonValues(), 5u);
    bool buttons[3] = {};
    EXPECT_EQ(stick.GetButtonValues(buttons), B_OK);
    EXPECT_TRUE(buttons[0] && !buttons[1] && buttons[2]);
}

TEST(Joysticks, PartsAndControllerAreNamed)
{
    JoystickFolder folder;
    BJoystick stick;
    BString name;
    EXPECT_EQ(stick.GetControllerName(&name), B_NO_INIT);
    ASSERT_GT(stick.Open("/dev/input/js0", false), 0);
    EXPECT_EQ(stick.GetAxisNameAt(2, &name), B_OK);
    EXPECT_STREQ(name.String(), "Throttle");
    EXPECT_EQ(stick.GetAxisNameAt(3, &name), B_BAD_INDEX);
    EXPECT_EQ(stick.GetHatNameAt(0, &name), B_OK);
    EXPECT_STREQ(name.String(), "Hat 1");
    EXPECT_EQ(stick.GetButtonNameAt(2, &name), B_OK);
    EXPECT_STREQ(name.String(), "Button 3");
    EXPECT_EQ(stick.GetButtonNameAt(-1, &name), B_BAD_INDEX);
    EXPECT_EQ(stick.GetButtonNameAt(0, nullptr), B_BAD_VALUE);
    EXPECT_EQ(stick.GetControllerName(&name), B_OK);
    EXPECT_STREQ(name.String(), "Flight Stick");
    EXPECT_EQ(stick.GetControllerModule(&name), B_OK);
    EXPECT_STREQ(name.String(), "hid-stick");
    stick.Close();
    EXPECT_EQ(stick.CountAxes(), 0);
    EXPECT_EQ(stick.CountButtons(), 0);
}

TEST(Joysticks, WhatCannotBeOpenedSaysWhy)
{
    JoystickFolder folder;
    BJoystick stick;
    EXPECT_EQ(stick.Open(nullptr), B_BAD_VALUE);
    EXPECT_EQ(stick.Open(""), B_BAD_VALUE);
    EXPECT_EQ(stick.Open("js1"), B_ENTRY_NOT_FOUND);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(stick.Update(), B_NO_INIT);
    int16 axes[3];
    EXPECT_EQ(stick.GetAxisValues(axes), B_NO_INIT);
    ASSERT_GT(stick.Open("js0"), 0);
    EXPECT_EQ(stick.GetAxisValues(axes, 1), B_BAD_INDEX);
    EXPECT_EQ(stick.GetAxisValues(nullptr), B_BAD_VALUE);
    EXPECT_EQ(stick.Open("js1"), B_ENTRY_NOT_FOUND);  // and the former one is closed
    EXPECT_EQ(stick.CountSticks(), 0);
}
