#ifndef _BEEP_H
#define _BEEP_H

#include <SupportDefs.h>

/* The desktop's bell, which is the sound of every event. They return once it was asked for, not
   when it is over. B_ERROR where there is no desktop with a bell, B_BAD_VALUE for null or an empty
   name, B_NAME_NOT_FOUND for an event that is neither one of the platform's ("Beep", "Startup",
   "Key Down"
   ...) nor was added. Any thread. */
status_t beep();
status_t system_beep(const char* eventName);
status_t add_system_beep_event(const char* eventName, uint32 flags = 0);

#endif  // _BEEP_H
