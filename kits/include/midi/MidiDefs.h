#ifndef _MIDI_DEFS_H
#define _MIDI_DEFS_H

#include <Errors.h>
#include <OS.h>

/* The present time as MIDI times are told: milliseconds on the clock of system_time(). */
#define B_NOW ((uint32)(system_time() / 1000))

// Where synthesizer files are: a directory_which, and names below it.
#define B_SYNTH_DIRECTORY 1015
#define B_BIG_SYNTH_FILE "synth/big_synth.sy"
#define B_LITTLE_SYNTH_FILE "synth/little_synth.sy"

// Statuses of synthesizers and of MIDI files.
enum {
    B_BAD_INSTRUMENT = static_cast<int>(0x80005100),
    B_BAD_MIDI_DATA = static_cast<int>(0x80005101),
    B_ALREADY_PAUSED = static_cast<int>(0x80005102),
    B_ALREADY_RESUMED = static_cast<int>(0x80005103),
    B_NO_SONG_PLAYING = static_cast<int>(0x80005104),
    B_TOO_MANY_SONGS_PLAYING = static_cast<int>(0x80005105)
};

// Kinds of synthesizers.
enum synth_mode {
    B_NO_SYNTH = 0,
    B_BIG_SYNTH = 1,
    B_LITTLE_SYNTH = 2,
    B_DEFAULT_SYNTH = 3,
    B_SAMPLES_ONLY = 4
};

// The instruments of General MIDI; some have two names.
enum midi_axe {
    B_ACOUSTIC_GRAND = 0,
    B_BRIGHT_GRAND = 1,
    B_ELECTRIC_GRAND = 2,
    B_HONKY_TONK = 3,
    B_ELECTRIC_PIANO_1 = 4,
    B_ELECTRIC_PIANO_2 = 5,
    B_HARPSICHORD = 6,
    B_CLAVICHORD = 7,
    B_CELESTA = 8,
    B_GLOCKENSPIEL = 9,
    B_MUSIC_BOX = 10,
    B_VIBRAPHONE = 11,
    B_MARIMBA = 12,
    B_XYLOPHONE = 13,
    B_TUBULAR_BELLS = 14,
    B_DULCIMER = 15,
    B_DRAWBAR_ORGAN = 16,
    B_PERCUSSIVE_ORGAN = 17,
    B_ROCK_ORGAN = 18,
    B_CHURCH_ORGAN = 19,
    B_REED_ORGAN = 20,
    B_ACCORDION = 21,
    B_HARMONICA = 22,
    B_TANGO_ACCORDION = 23,
    B_ACOUSTIC_GUITAR_NYLON = 24,
    B_ACOUSTIC_GUITAR_STEEL = 25,
    B_ELECTRIC_GUITAR_JAZZ = 26,
    B_ELECTRIC_GUITAR_CLEAN = 27,
    B_ELECTRIC_GUITAR_MUTED = 28,
    B_OVERDRIVEN_GUITAR = 29,
    B_DISTORTION_GUITAR = 30,
    B_GUITAR_HARMONICS = 31,
    B_ACOUSTIC_BASS = 32,
    B_ELECTRIC_BASS_FINGER = 33,
    B_ELECTRIC_BASS_PICK = 34,
    B_FRETLESS_BASS = 35,
    B_SLAP_BASS_1 = 36,
    B_SLAP_BASS_2 = 37,
    B_SYNTH_BASS_1 = 38,
    B_SYNTH_BASS_2 = 39,
    B_VIOLIN = 40,
    B_VIOLA = 41,
    B_CELLO = 42,
    B_CONTRABASS = 43,
    B_TREMOLO_STRINGS = 44,
    B_PIZZICATO_STRINGS = 45,
    B_ORCHESTRAL_STRINGS = 46,
    B_TIMPANI = 47,
    B_STRING_ENSEMBLE_1 = 48,
    B_STRING_ENSEMBLE_2 = 49,
    B_SYNTH_STRINGS_1 = 50,
    B_SYNTH_STRINGS_2 = 51,
    B_VOICE_AAH = 52,
    B_VOICE_OOH = 53,
    B_SYNTH_VOICE = 54,
    B_ORCHESTRA_HIT = 55,
    B_TRUMPET = 56,
    B_TROMBONE = 57,
    B_TUBA = 58,
    B_MUTED_TRUMPET = 59,
    B_FRENCH_HORN = 60,
    B_BRASS_SECTION = 61,
    B_SYNTH_BRASS_1 = 62,
    B_SYNTH_BRASS_2 = 63,
    B_SOPRANO_SAX = 64,
    B_ALTO_SAX = 65,
    B_TENOR_SAX = 66,
    B_BARITONE_SAX = 67,
    B_OBOE = 68,
    B_ENGLISH_HORN = 69,
    B_BASSOON = 70,
    B_CLARINET = 71,
    B_PICCOLO = 72,
    B_FLUTE = 73,
    B_RECORDER = 74,
    B_PAN_FLUTE = 75,
    B_BLOWN_BOTTLE = 76,
    B_SHAKUHACHI = 77,
    B_WHISTLE = 78,
    B_OCARINA = 79,
    B_LEAD_1 = 80,
    B_SQUARE_WAVE = 80,
    B_LEAD_2 = 81,
    B_SAWTOOTH_WAVE = 81,
    B_LEAD_3 = 82,
    B_CALLIOPE = 82,
    B_LEAD_4 = 83,
    B_CHIFF = 83,
    B_LEAD_5 = 84,
    B_CHARANG = 84,
    B_LEAD_6 = 85,
    B_VOICE = 85,
    B_LEAD_7 = 86,
    B_FIFTHS = 86,
    B_LEAD_8 = 87,
    B_BASS_LEAD = 87,
    B_PAD_1 = 88,
    B_NEW_AGE = 88,
    B_PAD_2 = 89,
    B_WARM = 89,
    B_PAD_3 = 90,
    B_POLYSYNTH = 90,
    B_PAD_4 = 91,
    B_CHOIR = 91,
    B_PAD_5 = 92,
    B_BOWED = 92,
    B_PAD_6 = 93,
    B_METALLIC = 93,
    B_PAD_7 = 94,
    B_HALO = 94,
    B_PAD_8 = 95,
    B_SWEEP = 95,
    B_FX_1 = 96,
    B_FX_2 = 97,
    B_FX_3 = 98,
    B_FX_4 = 99,
    B_FX_5 = 100,
    B_FX_6 = 101,
    B_FX_7 = 102,
    B_FX_8 = 103,
    B_SITAR = 104,
    B_BANJO = 105,
    B_SHAMISEN = 106,
    B_KOTO = 107,
    B_KALIMBA = 108,
    B_BAGPIPE = 109,
    B_FIDDLE = 110,
    B_SHANAI = 111,
    B_TINKLE_BELL = 112,
    B_AGOGO = 113,
    B_STEEL_DRUMS = 114,
    B_WOODBLOCK = 115,
    B_TAIKO_DRUMS = 116,
    B_MELODIC_TOM = 117,
    B_SYNTH_DRUM = 118,
    B_REVERSE_CYMBAL = 119,
    B_FRET_NOISE = 120,
    B_BREATH_NOISE = 121,
    B_SEASHORE = 122,
    B_BIRD_TWEET = 123,
    B_TELEPHONE = 124,
    B_HELICOPTER = 125,
    B_APPLAUSE = 126,
    B_GUNSHOT = 127
};

// First bytes of messages; those of a channel hold its number, from 0, in the low half.
const uchar B_NOTE_OFF = 0x80;
const uchar B_NOTE_ON = 0x90;
const uchar B_KEY_PRESSURE = 0xA0;
const uchar B_CONTROL_CHANGE = 0xB0;
const uchar B_PROGRAM_CHANGE = 0xC0;
const uchar B_CHANNEL_PRESSURE = 0xD0;
const uchar B_PITCH_BEND = 0xE0;

// System messages.
const uchar B_SYS_EX_START = 0xF0;
const uchar B_MIDI_TIME_CODE = 0xF1;
const uchar B_SONG_POSITION = 0xF2;
const uchar B_SONG_SELECT = 0xF3;
const uchar B_CABLE_MESSAGE = 0xF5;
const uchar B_TUNE_REQUEST = 0xF6;
const uchar B_SYS_EX_END = 0xF7;
const uchar B_TIMING_CLOCK = 0xF8;
const uchar B_START = 0xFA;
const uchar B_CONTINUE = 0xFB;
const uchar B_STOP = 0xFC;
const uchar B_ACTIVE_SENSING = 0xFE;
const uchar B_SYSTEM_RESET = 0xFF;

// Controllers.
const uchar B_MODULATION = 1;
const uchar B_BREATH_CONTROLLER = 2;
const uchar B_FOOT_CONTROLLER = 4;
const uchar B_PORTAMENTO_TIME = 5;
const uchar B_DATA_ENTRY = 6;
const uchar B_MAIN_VOLUME = 7;
const uchar B_MIDI_BALANCE = 8;
const uchar B_PAN = 0xA;
const uchar B_EXPRESSION_CTRL = 0xB;
const uchar B_GENERAL_CTRL_1 = 0x10;
const uchar B_GENERAL_CTRL_2 = 0x11;
const uchar B_GENERAL_CTRL_3 = 0x12;
const uchar B_GENERAL_CTRL_4 = 0x13;
const uchar B_SUSTAIN_PEDAL = 0x40;
const uchar B_PORTAMENTO = 0x41;
const uchar B_SOSTENUTO = 0x42;
const uchar B_SOFT_PEDAL = 0x43;
const uchar B_HOLD_2 = 0x45;
const uchar B_GENERAL_CTRL_5 = 0x50;
const uchar B_GENERAL_CTRL_6 = 0x51;
const uchar B_GENERAL_CTRL_7 = 0x52;
const uchar B_GENERAL_CTRL_8 = 0x53;
const uchar B_EFFECTS_DEPTH = 0x5B;
const uchar B_TREMOLO_DEPTH = 0x5C;
const uchar B_CHORUS_DEPTH = 0x5D;
const uchar B_CELESTE_DEPTH = 0x5E;
const uchar B_PHASER_DEPTH = 0x5F;
const uchar B_DATA_INCREMENT = 0x60;
const uchar B_DATA_DECREMENT = 0x61;

// Controllers that change how a channel is played.
const uchar B_RESET_ALL_CONTROLLERS = 0x79;
const uchar B_LOCAL_CONTROL = 0x7A;
const uchar B_ALL_NOTES_OFF = 0x7B;
const uchar B_OMNI_MODE_OFF = 0x7C;
const uchar B_OMNI_MODE_ON = 0x7D;
const uchar B_MONO_MODE_ON = 0x7E;
const uchar B_POLY_MODE_ON = 0x7F;

// Of MIDI files.
const uchar B_TEMPO_CHANGE = 0x51;

#endif  // _MIDI_DEFS_H
