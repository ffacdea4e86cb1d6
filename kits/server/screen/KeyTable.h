#ifndef SERVER_KEY_TABLE_H
#define SERVER_KEY_TABLE_H

// The keys of a US keyboard: BeOS key codes, their bytes, and the host's codes of the same keys.
// Pure look-ups, any thread.

#include <SupportDefs.h>

namespace server {

const int32 kKeyCount = 128;  // key codes are below this

// The key code of a Linux input event code (X: key code - 8), 0 for a key that BeOS never had.
int32 KeyForHostCode(uint32 code);
// The byte that the key sends under these modifiers, -1 for none.
int32 KeyByte(int32 key, uint32 modifiers);
// True for keys whose byte is the same on every keyboard: function and cursor keys, Enter, Tab ...
bool KeyIsFixed(int32 key);
bool KeyIsLetter(int32 key);
// The byte without modifiers, seven bits of it.
int32 KeyRawChar(int32 key);
// Both bits (B_SHIFT_KEY | B_LEFT_SHIFT_KEY, say) of a modifier key, the one bit of a lock, or 0.
uint32 KeyModifiers(int32 key);
bool KeyIsLock(int32 key);
// The key that types an ASCII character, with or without Shift. False: there is none.
bool KeyForCharacter(char character, int32* key, bool* shift);

}  // namespace server

#endif  // SERVER_KEY_TABLE_H
