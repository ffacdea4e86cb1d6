#ifndef _SERVER_INJECTION_H
#define _SERVER_INJECTION_H

/* Input as hardware would make it, for tests and scripted visits. Plain C. Any thread; each call
   returns once its event is on its way to the window (not when a handler has run). Screen
   coordinates are pixels from the left top of the screen. Only on hosts where these kits are
   built. */

#include <stdbool.h>
#include <stdint.h>

#pragma GCC visibility push(default)
#ifdef __cplusplus
extern "C" {
#endif

/* Moves the pointer. */
void inject_pointer(float x, float y);
/* Presses or releases buttons: 1 primary, 2 secondary, 4 tertiary. */
void inject_button(int32_t button, bool down);
/* Presses or releases the key with a BeOS key code (0x02 is F1, 0x4b the left Shift). Modifier
   keys change the modifiers of what follows; the characters are those of a US keyboard. */
void inject_key(int32_t key, bool down);
/* Types a text: presses and releases the keys of its characters, with Shift where needed;
   characters that a US keyboard lacks arrive as their UTF-8 bytes with key 0. */
void inject_text(const char* text);
/* What an input method has made of keys so far: `text`, "" for nothing any more, with its caret at
   a byte; and the text that it is done with, "" for none. */
void inject_composition(const char* text, int32_t caret, const char* committed);
/* Where the input method's list of words goes: a rectangle on the screen, left, top, right and
   bottom. False if no text has been composed in the active window. */
bool inject_composition_place(float place[4]);
/* Turns the wheel: positive dy moves the content up. */
void inject_wheel(float dx, float dy);
/* Drops files on the window under (x, y). */
void inject_file_drop(float x, float y, const char* const* paths, int32_t count);
/* What a person does to a window by its frame; the window is the one whose content or title holds
   (x, y). Sizes are those of the content in pixels minus one, as BeOS counts. */
void inject_window_close(float x, float y);
void inject_window_move(float x, float y, float left, float top);
void inject_window_resize(float x, float y, float width, float height);
void inject_window_minimize(float x, float y, bool minimize);
void inject_window_zoom(float x, float y);
void inject_window_activate(float x, float y);

/* Gives the display in memory so many pixels a unit, from 1 to 4, as if its windows had moved to
   another screen. Places and sizes stay as they are. */
void inject_display_scale(float scale);

/* Saves all windows of this program, in stacking order over the desktop, as a PNG, with the
   pixels that the display has. Returns 0 or a
   negative status. */
int32_t inject_save_screen(const char* png_path);

#ifdef __cplusplus
}
#endif
#pragma GCC visibility pop

#endif /* _SERVER_INJECTION_H */
