#ifndef _TLS_H
#define _TLS_H

#include <SupportDefs.h>

#define TLS_MAX_KEYS                         64

extern "C" {
int32 tls_allocate();
void* tls_get(int32 index);
void** tls_address(int32 index);
void tls_set(int32 index, void* value);
}

#endif  // _TLS_H
