#ifndef _BE_H
#define _BE_H

// Everything of all kits.

#include <AppKit.h>
#include <DeviceKit.h>
#include <InterfaceKit.h>
#include <KernelKit.h>
#include <MailKit.h>
#include <MidiKit.h>
#include <StorageKit.h>
#include <SupportKit.h>
#include <TranslationKit.h>

#endif  // _BE_H
