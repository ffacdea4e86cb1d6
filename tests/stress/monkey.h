/* What the monkey's two files share. */

#ifndef STRESS_MONKEY_H
#define STRESS_MONKEY_H

#include <stdint.h>

/* A number below `limit`, above 0, of the calling thread's own row, which the seed begins. */
uint32_t monkey_number(uint32_t limit);
void monkey_seed(uint32_t seed);

/* Writes a step down, for the case that it is the last one. Any thread. */
void monkey_note(const char* format, ...);

/* Makes one call of the library with arguments by chance. Handlers make none that would wait for
   the program's thread. */
void monkey_call(void);
/* Idents in use: a gadget's, a window's, else a number that may be anything. */
int32_t monkey_gadget(void);
int32_t monkey_window(void);
/* Windows opened before this ident are not touched. */
void monkey_keep_below(int32_t ident);
/* Kills all gadgets there are. */
void monkey_kill_all(void);
/* How many gadgets there are, more or less. */
int32_t monkey_count(void);

#endif
