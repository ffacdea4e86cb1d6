/* The scripted visit that the examples play for `--tour FILE.png`: a hand that moves the mouse and
   types, and a picture of the screen at the end. */

#ifndef EXAMPLES_TOUR_H
#define EXAMPLES_TOUR_H

#include <stdint.h>

/* The picture's file if the command line asks for a visit, else null. */
const char *tour_picture(void);

/* Presses and releases the primary button at a place of the window whose content starts at the
   origin given to tour_begin. */
void tour_begin(int32_t left, int32_t top);
void tour_click(int32_t x, int32_t y);
void tour_move(int32_t x, int32_t y);
void tour_type(const char *text);
/* Gives windows time to come up. */
void tour_pause(int32_t ms);
/* Asks the window to close by its close button. */
void tour_close(void);

/* Waits until a word that another thread writes has a value, ten seconds at most. */
void tour_wait(const _Atomic int32_t *word, int32_t value);

/* Waits for the windows to draw, and saves the screen. Returns 0, or a negative status. */
int32_t tour_end(const char *picture);

#endif
