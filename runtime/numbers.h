#ifndef RUNTIME_NUMBERS_H
#define RUNTIME_NUMBERS_H

// Text of numbers, the same as the C library's under the C locale.

#include <stddef.h>

constexpr size_t kGeneralSize = 32;
constexpr size_t kFixedSize = 320;  // plus one byte a decimal

// Writes `x` as "%g" does into `to` (kGeneralSize bytes). Returns the terminator.
char* put_general(char* to, double x);

// Writes `x` as "%.<precision>f" does into `to` (kFixedSize + precision bytes). Returns the
// terminator.
char* put_fixed(char* to, double x, int precision);

#endif  // RUNTIME_NUMBERS_H
