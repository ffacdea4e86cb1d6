/* A program that opens no window and just returns. */

#include <plinth.h>

void ProgramMain(void) { Open_Sys(0); }
