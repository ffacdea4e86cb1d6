#ifndef _SUPPORT_DEFS_H
#define _SUPPORT_DEFS_H

#include <BeBuild.h>
#include <Errors.h>
#include <FormatMacros.h>

#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>

// The kits' own integer names. Everything else in the headers is built from these.
typedef int8_t int8;
typedef uint8_t uint8;
typedef int16_t int16;
typedef uint16_t uint16;
typedef int32_t int32;
typedef uint32_t uint32;
typedef int64_t int64;
typedef uint64_t uint64;

typedef volatile int8 vint8;
typedef volatile uint8 vuint8;
typedef volatile int16 vint16;
typedef volatile uint16 vuint16;
typedef volatile int32 vint32;
typedef volatile uint32 vuint32;
typedef volatile int64 vint64;
typedef volatile uint64 vuint64;

typedef volatile long vlong;
typedef volatile int vint;
typedef volatile short vshort;
typedef volatile char vchar;
typedef volatile unsigned long vulong;
typedef volatile unsigned int vuint;
typedef volatile unsigned short vushort;
typedef volatile unsigned char vuchar;

typedef unsigned char uchar;

typedef int32 status_t;
typedef int64 bigtime_t;   // microseconds
typedef int64 nanotime_t;  // nanoseconds
typedef uint32 type_code;
typedef uint32 perform_code;

typedef uintptr_t addr_t;
typedef uint64 phys_addr_t;
typedef phys_addr_t phys_size_t;
typedef uint64 generic_addr_t;
typedef generic_addr_t generic_size_t;

#ifndef FALSE
#define FALSE 0
#endif
#ifndef TRUE
#define TRUE 1
#endif

extern const char* B_EMPTY_STRING;  // ""

#define min_c(a, b) ((a) > (b) ? (b) : (a))
#define max_c(a, b) ((a) > (b) ? (a) : (b))
#define B_COUNT_OF(a) (sizeof(a) / sizeof((a)[0]))

// Where the frame of the calling function lies on the stack.
[[gnu::always_inline]] inline void* get_stack_frame() { return __builtin_frame_address(0); }

// Sequentially consistent operations; all but atomic_set return the value before the change.

inline void atomic_set(int32* value, int32 newValue)
{
    __atomic_store_n(value, newValue, __ATOMIC_SEQ_CST);
}

inline int32 atomic_get_and_set(int32* value, int32 newValue)
{
    return __atomic_exchange_n(value, newValue, __ATOMIC_SEQ_CST);
}

// Stores `newValue` only where `testAgainst` is found.
inline int32 atomic_test_and_set(int32* value, int32 newValue, int32 testAgainst)
{
    __atomic_compare_exchange_n(value, &testAgainst, newValue, false, __ATOMIC_SEQ_CST,
                                __ATOMIC_SEQ_CST);
    return testAgainst;
}

inline int32 atomic_add(int32* value, int32 addValue)
{
    return __atomic_fetch_add(value, addValue, __ATOMIC_SEQ_CST);
}

inline int32 atomic_and(int32* value, int32 andValue)
{
    return __atomic_fetch_and(value, andValue, __ATOMIC_SEQ_CST);
}

inline int32 atomic_or(int32* value, int32 orValue)
{
    return __atomic_fetch_or(value, orValue, __ATOMIC_SEQ_CST);
}

inline int32 atomic_get(int32* value) { return __atomic_load_n(value, __ATOMIC_SEQ_CST); }

inline void atomic_set64(int64* value, int64 newValue)
{
    __atomic_store_n(value, newValue, __ATOMIC_SEQ_CST);
}

inline int64 atomic_get_and_set64(int64* value, int64 newValue)
{
    return __atomic_exchange_n(value, newValue, __ATOMIC_SEQ_CST);
}

// Stores `newValue` only where `testAgainst` is found.
inline int64 atomic_test_and_set64(int64* value, int64 newValue, int64 testAgainst)
{
    __atomic_compare_exchange_n(value, &testAgainst, newValue, false, __ATOMIC_SEQ_CST,
                                __ATOMIC_SEQ_CST);
    return testAgainst;
}

inline int64 atomic_add64(int64* value, int64 addValue)
{
    return __atomic_fetch_add(value, addValue, __ATOMIC_SEQ_CST);
}

inline int64 atomic_and64(int64* value, int64 andValue)
{
    return __atomic_fetch_and(value, andValue, __ATOMIC_SEQ_CST);
}

inline int64 atomic_or64(int64* value, int64 orValue)
{
    return __atomic_fetch_or(value, orValue, __ATOMIC_SEQ_CST);
}

inline int64 atomic_get64(int64* value) { return __atomic_load_n(value, __ATOMIC_SEQ_CST); }

#endif  // _SUPPORT_DEFS_H
