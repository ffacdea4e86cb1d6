// BJoystick over the kernel's joystick devices: their events bring the state up to date, and /sys
// tells which axes and buttons the numbers in the events stand for.

#include <Joystick.h>

#include <errno.h>
#include <fcntl.h>
#include <linux/input.h>
#include <linux/joystick.h>
#include <unistd.h>

#include <bitset>
#include <cstdlib>
#include <iterator>
#include <sstream>

#include <String.h>

#include "device/DeviceNames.h"
#include "device/DeviceTree.h"
#include "support/HostErrors.h"

using namespace device;

// Names of the axes by their codes, as far as they are known.
static const char* const kAxisNames[] = {
    "X",        "Y",      "Z",     "Rotation X", "Rotation Y", "Rotation Z",
    "Throttle", "Rudder", "Wheel", "Gas",        "Brake",
};

// The set that a file of /sys shows: words in hexadecimal, the lowest last.
template <size_t kCount>
static std::bitset<kCount> parse_bits(const std::string& text)
{
    std::vector<unsigned long> words;
    std::istringstream stream(text);
    for (std::string word; stream >> word;)
        words.insert(words.begin(), strtoul(word.c_str(), nullptr, 16));
    std::bitset<kCount> bits;
    const size_t word_bits = sizeof(unsigned long) * 8;
    for (size_t bit = 0; bit < kCount && bit / word_bits < words.size(); bit++)
        bits[bit] = (words[bit / word_bits] >> (bit % word_bits) & 1) != 0;
    return bits;
}

struct BJoystick::Data {
    int file = -1;
    std::string leaf;                       // of the open joystick
    std::vector<int> codes;                 // of all axes in the order of the host's numbers
    std::vector<int16> values;              // by the host's numbers
    std::vector<size_t> axes;               // the host's numbers of those that belong to no hat
    std::vector<std::pair<int, int>> hats;  // the host's numbers of each one's axes, -1 for none
    std::vector<bool> buttons;              // true while pressed
    std::vector<std::string> names;
    bool scanned = false;

    void FindParts();
    void TakeEvent(const js_event& event);
    int16 ValueOf(int number) const { return number < 0 ? 0 : values[number]; }
};

// The kernel numbers axes by their codes; buttons from that of the joysticks on, then those below.
void BJoystick::Data::FindParts()
{
    const std::string folder = "input/" + leaf + "/device/capabilities/";
    const auto has_axis = parse_bits<ABS_CNT>(read_attribute(folder + "abs"));
    const auto has_key = parse_bits<KEY_CNT>(read_attribute(folder + "key"));
    codes.clear();
    axes.clear();
    hats.clear();
    for (int code = 0; code < ABS_CNT; code++) {
        if (!has_axis[code])
            continue;
        const int number = codes.size();
        codes.push_back(code);
        if (code < ABS_HAT0X || code > ABS_HAT3Y) {
            axes.push_back(number);
        } else if ((code - ABS_HAT0X) % 2 == 0) {
            hats.emplace_back(number, -1);
        } else if (has_axis[code - 1]) {
            hats.back().second = number;
        } else {
            hats.emplace_back(-1, number);
        }
    }
    size_t button_count = 0;
    for (int code = BTN_MISC; code < KEY_CNT; code++)
        button_count += has_key[code];
    values.assign(codes.size(), 0);
    buttons.assign(button_count, false);
}

void BJoystick::Data::TakeEvent(const js_event& event)
{
    const int type = event.type & ~JS_EVENT_INIT;
    if (type == JS_EVENT_AXIS && event.number < values.size())
        values[event.number] = event.value;
    else if (type == JS_EVENT_BUTTON && event.number < buttons.size())
        buttons[event.number] = event.value != 0;
}

BJoystick::BJoystick()
    : timestamp(0), horizontal(0), vertical(0), button1(true), button2(true), fData(new Data)
{
}

BJoystick::~BJoystick()
{
    Close();
    delete fData;
}

status_t BJoystick::Open(const char* portName) { return Open(portName, true); }

status_t BJoystick::Open(const char* portName, bool)
{
    Close();
    const int file = open_device(portName, O_RDONLY);
    if (file < 0)
        return file;
    const std::string path = portName;
    fData->leaf = path.substr(path.rfind('/') + 1);
    fData->file = file;
    fData->FindParts();
    Update();  // the host begins with the present state
    return file;
}

void BJoystick::Close()
{
    if (fData->file < 0)
        return;
    close(fData->file);
    fData->file = -1;
    fData->leaf.clear();
    fData->FindParts();
}

status_t BJoystick::Update()
{
    if (fData->file < 0)
        return BPrivate::not_set();
    js_event events[64];
    for (;;) {
        const ssize_t got = read(fData->file, events, sizeof(events));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0 && errno != EAGAIN)
            return BPrivate::host_failure();
        const size_t count = got > 0 ? got / sizeof(js_event) : 0;
        for (size_t i = 0; i < count; i++)
            fData->TakeEvent(events[i]);
        if (count < std::size(events))
            break;
    }
    const std::vector<size_t>& axes = fData->axes;
    const std::vector<bool>& buttons = fData->buttons;
    timestamp = system_time();
    horizontal = axes.size() > 0 ? fData->values[axes[0]] : 0;
    vertical = axes.size() > 1 ? fData->values[axes[1]] : 0;
    button1 = buttons.size() < 1 || !buttons[0];
    button2 = buttons.size() < 2 || !buttons[1];
    return B_OK;
}

status_t BJoystick::SetMaxLatency(bigtime_t maxLatency)
{
    return maxLatency < 0 ? B_BAD_VALUE : B_OK;
}

int32 BJoystick::CountDevices()
{
    if (!fData->scanned)
        RescanDevices();
    return fData->names.size();
}

status_t BJoystick::GetDeviceName(int32 index, char* name, size_t bufSize)
{
    CountDevices();
    return copy_name(fData->names, index, name, bufSize);
}

status_t BJoystick::RescanDevices()
{
    fData->names = joysticks();
    fData->scanned = true;
    return B_OK;
}

bool BJoystick::EnterEnhancedMode(const entry_ref*) { return fData->file >= 0; }
int32 BJoystick::CountSticks() { return fData->file >= 0 ? 1 : 0; }
int32 BJoystick::CountAxes() { return fData->axes.size(); }
int32 BJoystick::CountHats() { return fData->hats.size(); }
int32 BJoystick::CountButtons() { return fData->buttons.size(); }

// What all calls for a stick ask first.
static status_t check(const void* place, int32 stick, int file)
{
    if (place == nullptr)
        return B_BAD_VALUE;
    if (file < 0)
        return B_NO_INIT;
    return stick == 0 ? B_OK : B_BAD_INDEX;
}

status_t BJoystick::GetAxisValues(int16* outValues, int32 forStick)
{
    const status_t status = check(outValues, forStick, fData->file);
    if (status != B_OK)
        return status;
    for (size_t number : fData->axes)
        *outValues++ = fData->values[number];
    return B_OK;
}

// The direction of a hat, clockwise from 1; 0 in the middle.
static uint8 hat_direction(int16 across, int16 down)
{
    static const uint8 kDirections[3][3] = {{8, 1, 2}, {7, 0, 3}, {6, 5, 4}};
    const auto third = [](int16 value) { return value < 0 ? 0 : value > 0 ? 2 : 1; };
    return kDirections[third(down)][third(across)];
}

status_t BJoystick::GetHatValues(uint8* outHats, int32 forStick)
{
    const status_t status = check(outHats, forStick, fData->file);
    if (status != B_OK)
        return status;
    for (const auto& [across, down] : fData->hats)
        *outHats++ = hat_direction(fData->ValueOf(across), fData->ValueOf(down));
    return B_OK;
}

uint32 BJoystick::ButtonValues(int32 forStick)
{
    uint32 bits = 0;
    if (forStick != 0)
        return bits;
    for (size_t i = 0; i < fData->buttons.size() && i < 32; i++)
        bits |= uint32(fData->buttons[i]) << i;
    return bits;
}

status_t BJoystick::GetButtonValues(bool* outButtons, int32 forStick)
{
    const status_t status = check(outButtons, forStick, fData->file);
    if (status != B_OK)
        return status;
    for (bool pressed : fData->buttons)
        *outButtons++ = pressed;
    return B_OK;
}

// "Button 1" and so on, for one of `count`.
static status_t give_name(BString* name, const char* kind, int32 index, int32 count)
{
    if (name == nullptr)
        return B_BAD_VALUE;
    if (index < 0 || index >= count)
        return B_BAD_INDEX;
    name->SetToFormat("%s %d", kind, static_cast<int>(index + 1));
    return B_OK;
}

status_t BJoystick::GetAxisNameAt(int32 index, BString* outName)
{
    const status_t status = give_name(outName, "Axis", index, CountAxes());
    if (status != B_OK)
        return status;
    const size_t code = fData->codes[fData->axes[index]];
    if (code < std::size(kAxisNames))
        *outName = kAxisNames[code];
    return B_OK;
}

status_t BJoystick::GetHatNameAt(int32 index, BString* outName)
{
    return give_name(outName, "Hat", index, CountHats());
}

status_t BJoystick::GetButtonNameAt(int32 index, BString* outName)
{
    return give_name(outName, "Button", index, CountButtons());
}

// What /sys tells of the open joystick.
static status_t give_text(BString* place, int file, const std::string& text)
{
    const status_t status = check(place, 0, file);
    if (status != B_OK)
        return status;
    if (text.empty())
        return B_ENTRY_NOT_FOUND;
    *place = text.c_str();
    return B_OK;
}

status_t BJoystick::GetControllerModule(BString* outName)
{
    return give_text(outName, fData->file,
                     read_link_leaf("input/" + fData->leaf + "/device/device/driver"));
}

status_t BJoystick::GetControllerName(BString* outName)
{
    return give_text(outName, fData->file, read_attribute("input/" + fData->leaf + "/device/name"));
}

bool BJoystick::IsCalibrationEnabled() { return true; }

status_t BJoystick::EnableCalibration(bool calibrates)
{
    return calibrates ? B_OK : B_NOT_SUPPORTED;
}
