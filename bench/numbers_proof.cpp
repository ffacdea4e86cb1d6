// Proves that the library's conversions give what the C library's do: numbers_proof [millions of
// doubles] [seed]. Prints the first difference and fails if there is one.

#include "../tests/tools/decimals.h"

int main(int argc, char** argv)
{
    const uint64_t millions = argc > 1 ? strtoull(argv[1], nullptr, 10) : 30;
    const uint64_t seed = argc > 2 ? strtoull(argv[2], nullptr, 10) : 1;
    for (uint64_t i = 0; i < millions; i++) {
        const std::string found = decimals::first_difference(1000000, seed * 1000 + i);
        if (!found.empty()) {
            puts(found.c_str());
            return 1;
        }
    }
    printf("%llu million doubles: no difference\n", static_cast<unsigned long long>(millions));
    return 0;
}
