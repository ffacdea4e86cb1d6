/* The start object of every compiled program: main, which runs the program's own entry beside the
   application's loop. */

#include <plinth.h>

extern void ProgramMain(void);

int main(int argc, char** argv) { return PlinthStart(argc, argv, ProgramMain); }
