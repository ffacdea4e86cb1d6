#ifndef _PARSEDATE_H
#define _PARSEDATE_H

#include <SupportDefs.h>

#include <time.h>

// What parsedate_etc() tells of a date: it counts from `now`, by days or by less.
#define PARSEDATE_RELATIVE_TIME 1
#define PARSEDATE_DAY_RELATIVE_TIME 1
#define PARSEDATE_MINUTE_RELATIVE_TIME 2
#define PARSEDATE_INVALID_DATE 256

extern "C" {
/* The time that a text means: "25 Dec 1999 17:30", "12/25/99", "1999-12-25T17:30:00Z", "next
   monday", "yesterday 10:00", "last week", "5 minutes ago" ... Without a year it is that of `now`,
   without a day today, without a time the day's beginning, without a zone local; `now` -1 is the
   present. -1 for a text that is no date, and for null. Any thread. */
time_t parsedate(const char* dateString, time_t now);
time_t parsedate_etc(const char* dateString, time_t now, int* _storedFlags);

/* The forms that dates have; the first that fits counts. The table ends with null and stays the
   caller's, null brings the kit's own back. A letter stands for each part: a A day of the week, d
   day, b B month by name, m by number, y Y year, T time, or H I hour, M minute, S second and p am
   or pm, z Z zone; [parts] may be missing, blanks mean nothing, other signs themselves. Not while
   another thread reads dates. */
void set_dateformats(const char* table[]);
const char** get_dateformats();
}

#endif  // _PARSEDATE_H
