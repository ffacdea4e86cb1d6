#ifndef PLINTH_H
#define PLINTH_H

/* The run-time library of a compiled program: one C function per statement or built-in.
 *
 * Objects are named by idents, integers that the call which creates them hands out. Failure is
 * silent: an unknown ident or a wrong kind makes a call do nothing and return 0, -1, false, null
 * or "". Where no thread is named, a call belongs to the program's main thread; handlers run on
 * the thread of their window, with the window locked. Text results live in a ring of sixteen
 * slots or in a buffer of their function: never free them, and copy what is kept.
 *
 * A target, the first argument of every drawing call, is a window's ident, -1 for the window that
 * SetDefaultGfx named, or the address of a view. */

#include <stdbool.h>
#include <stdint.h>

#pragma GCC visibility push(default)
#ifdef __cplusplus
extern "C" {
#endif

/* ---- Start-up, shutdown, allocation ---------------------------------------------------------- */

/* ---- Strings --------------------------------------------------------------------------------- */

/* ---- Console, numbers, sorting --------------------------------------------------------------- */

/* ---- Windows and events ---------------------------------------------------------------------- */

/* ---- Drawing --------------------------------------------------------------------------------- */

/* ---- File channels --------------------------------------------------------------------------- */

#ifdef __cplusplus
}
#endif
#pragma GCC visibility pop

#endif /* PLINTH_H */
