#ifndef _MAIL_KIT_H
#define _MAIL_KIT_H

// Everything of the Mail Kit.

#include <E-mail.h>

#endif  // _MAIL_KIT_H
