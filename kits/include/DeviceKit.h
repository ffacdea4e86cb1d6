#ifndef _DEVICE_KIT_H
#define _DEVICE_KIT_H

// Everything of the Device Kit.

#include <Joystick.h>
#include <SerialPort.h>

#endif  // _DEVICE_KIT_H
