#ifndef _MIDI_KIT_H
#define _MIDI_KIT_H

// Everything of the Midi Kit.

#include <Midi.h>
#include <MidiDefs.h>
#include <MidiPort.h>

#endif  // _MIDI_KIT_H
