#ifndef STORAGE_SNIFFER_RULE_H
#define STORAGE_SNIFFER_RULE_H

#include <string>
#include <string_view>
#include <vector>

#include <SupportDefs.h>

namespace [[gnu::visibility("hidden")]] storage {

// A rule that tells a type by a file's bytes:
//
//     0.5 [0:32] ("GIF87a" | "GIF89a") (-i [4] 'png' | [8] 0xCAFE & 0xFFF0)
//
// A priority from 0 to 1, as any language writes it; then one or more lists in brackets, all of
// which must match. A list is a set of patterns behind one range, or of patterns with a range each;
// one of them must match. "-i" is for either case. A range is the first and the last place that the
// pattern may begin at, or the only one; nothing begins at negative ones. A pattern is a text in
// either quotes or in none, with C's escapes, or a hexadecimal number; a mask as long as the
// pattern may follow.
struct SnifferPattern {
    int32 first, last;
    std::string bytes;
    std::string mask;  // as long as the bytes; empty: all bits count
    bool ignore_case;
};

struct SnifferRule {
    double priority;
    std::vector<std::vector<SnifferPattern>> lists;
};

// B_BAD_MIME_SNIFFER_RULE with what is wrong, and where, in `error`.
status_t parse_sniffer_rule(const char* text, SnifferRule* rule, std::string* error);

// Whether these bytes from a file's start are of the type.
bool matches(const SnifferRule& rule, std::string_view bytes);

// The rule as the element "magic" of the desktop's database; empty if it would be too long
// or nothing can match it.
std::string magic_of(const SnifferRule& rule);

}  // namespace storage

#endif  // STORAGE_SNIFFER_RULE_H
