#ifndef _TLS_H
#define _TLS_H

#include <SupportDefs.h>

#define TLS_MAX_KEYS 64

extern "C" {
/* Thread-local words. A new index holds null in every thread; there are TLS_MAX_KEYS of them, and
   they are never given back. B_NO_MEMORY. */
int32 tls_allocate();
void* tls_get(int32 index);
void** tls_address(int32 index);  // null for a bad index
void tls_set(int32 index, void* value);
}

#endif  // _TLS_H
