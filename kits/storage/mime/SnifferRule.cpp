// Sniffer rules of BeOS, and the same in the desktop's terms. Any thread.

#include "storage/mime/SnifferRule.h"

#include <ctype.h>
#include <limits.h>
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <utility>

#include <glib.h>

#include <StorageDefs.h>

namespace storage {

static const size_t kMaxMatches = 4096;

namespace {

// Walks over a rule; the first fault ends it.
class Parser {
public:
    explicit Parser(const char* text) : fText(text), fAt(text) {}

    bool Parse(SnifferRule* rule);
    const std::string& Error() const { return fError; }

private:
    bool _Fail(const char* what);
    void _SkipSpace();
    bool _Take(char c);
    size_t _SkipDigits();
    bool _ReadPriority(double* priority);
    bool _ReadNumber(int32* number);
    bool _ReadRange(SnifferPattern* pattern);
    bool _ReadFlag(bool* ignore_case);
    bool _ReadList(std::vector<SnifferPattern>* list);
    bool _ReadPattern(SnifferPattern* pattern);
    bool _ReadBytes(std::string* bytes);
    bool _ReadHex(std::string* bytes);
    bool _ReadText(std::string* bytes);
    bool _ReadEscape(std::string* bytes);

    const char* fText;
    const char* fAt;
    std::string fError;
};

}  // namespace

bool Parser::_Fail(const char* what)
{
    if (fError.empty()) {
        fError =
            std::string("Sniffer rule, character ") + std::to_string(fAt - fText + 1) + ": " + what;
    }
    return false;
}

void Parser::_SkipSpace()
{
    while (isspace(static_cast<uint8>(*fAt)))
        fAt++;
}

bool Parser::_Take(char c)
{
    _SkipSpace();
    if (*fAt != c)
        return false;
    fAt++;
    return true;
}

size_t Parser::_SkipDigits()
{
    const char* const start = fAt;
    while (isdigit(static_cast<uint8>(*fAt)))
        fAt++;
    return static_cast<size_t>(fAt - start);
}

bool Parser::_ReadPriority(double* priority)
{
    _SkipSpace();
    const char* const start = fAt;
    if (*fAt == '+' || *fAt == '-')
        fAt++;
    size_t digits = _SkipDigits();
    if (*fAt == '.') {
        fAt++;
        digits += _SkipDigits();
    }
    if (digits == 0)
        return _Fail("a priority is missing");
    if (*fAt == 'e' || *fAt == 'E') {
        fAt += fAt[1] == '+' || fAt[1] == '-' ? 2 : 1;
        if (_SkipDigits() == 0)
            return _Fail("an exponent is missing");
    }
    *priority = g_ascii_strtod(std::string(start, fAt).c_str(), nullptr);
    if (*priority < 0.0)
        return _Fail("the priority is less than 0");
    if (*priority > 1.0)
        return _Fail("the priority is more than 1");
    return isspace(static_cast<uint8>(*fAt)) || *fAt == '(' || *fAt == '[' || *fAt == '\0'
               ? true
               : _Fail("no number");
}

bool Parser::_ReadNumber(int32* number)
{
    _SkipSpace();
    const bool is_negative = *fAt == '-';
    if (is_negative || *fAt == '+')
        fAt++;
    if (!isdigit(static_cast<uint8>(*fAt)))
        return _Fail("a number is missing");
    int64 value = 0;
    for (; isdigit(static_cast<uint8>(*fAt)); fAt++) {
        value = value * 10 + (*fAt - '0');
        if (value > INT_MAX)
            return _Fail("the number is too large");
    }
    *number = static_cast<int32>(is_negative ? -value : value);
    return true;
}

bool Parser::_ReadRange(SnifferPattern* pattern)
{
    if (!_ReadNumber(&pattern->first))
        return false;
    pattern->last = pattern->first;
    if (_Take(':') && !_ReadNumber(&pattern->last))
        return false;
    if (pattern->last < pattern->first)
        return _Fail("the range ends before it begins");
    return _Take(']') || _Fail("']' is missing");
}

bool Parser::_ReadFlag(bool* ignore_case)
{
    _SkipSpace();
    if (*fAt != '-')
        return true;
    if (fAt[1] != 'i' || isalnum(static_cast<uint8>(fAt[2])))
        return _Fail("an unknown flag");
    fAt += 2;
    *ignore_case = true;
    return true;
}

bool Parser::_ReadHex(std::string* bytes)
{
    fAt += 2;
    while (isxdigit(static_cast<uint8>(fAt[0]))) {
        if (!isxdigit(static_cast<uint8>(fAt[1])))
            return _Fail("half a byte");
        const char digits[3] = {fAt[0], fAt[1], '\0'};
        *bytes += static_cast<char>(strtol(digits, nullptr, 16));
        fAt += 2;
    }
    return !bytes->empty() || _Fail("a hexadecimal number without digits");
}

bool Parser::_ReadEscape(std::string* bytes)
{
    static const char kLetters[] = "abfnrtv";
    static const char kMeanings[] = "\a\b\f\n\r\t\v";
    fAt++;
    if (*fAt == '\0')
        return _Fail("the rule ends with '\\'");
    if (*fAt == 'x' && isxdigit(static_cast<uint8>(fAt[1]))) {
        int value = 0;
        fAt++;
        for (int digits = 0; digits < 2 && isxdigit(static_cast<uint8>(*fAt)); digits++, fAt++) {
            const char digit[2] = {*fAt, '\0'};
            value = value * 16 + static_cast<int>(strtol(digit, nullptr, 16));
        }
        *bytes += static_cast<char>(value);
        return true;
    }
    if (*fAt >= '0' && *fAt <= '7') {
        int value = 0;
        for (int digits = 0; digits < 3 && *fAt >= '0' && *fAt <= '7'; digits++, fAt++)
            value = value * 8 + (*fAt - '0');
        if (value > 0xFF)
            return _Fail("an octal escape beyond one byte");
        *bytes += static_cast<char>(value);
        return true;
    }
    const char* letter = strchr(kLetters, *fAt);
    *bytes += letter != nullptr ? kMeanings[letter - kLetters] : *fAt;
    fAt++;
    return true;
}

bool Parser::_ReadText(std::string* bytes)
{
    const char quote = *fAt == '"' || *fAt == '\'' ? *fAt++ : '\0';
    while (*fAt != '\0') {
        if (quote != '\0' ? *fAt == quote
                          : isspace(static_cast<uint8>(*fAt)) || strchr("()[]|&:\"'", *fAt))
            break;
        if (*fAt != '\\')
            *bytes += *fAt++;
        else if (!_ReadEscape(bytes))
            return false;
    }
    if (quote != '\0') {
        if (*fAt != quote)
            return _Fail("the quote is not closed");
        fAt++;
    }
    return !bytes->empty() || _Fail("an empty pattern");
}

bool Parser::_ReadBytes(std::string* bytes)
{
    _SkipSpace();
    return fAt[0] == '0' && (fAt[1] == 'x' || fAt[1] == 'X') ? _ReadHex(bytes) : _ReadText(bytes);
}

bool Parser::_ReadPattern(SnifferPattern* pattern)
{
    if (!_ReadBytes(&pattern->bytes))
        return false;
    if (!_Take('&'))
        return true;
    if (!_ReadBytes(&pattern->mask))
        return false;
    return pattern->mask.size() == pattern->bytes.size() ||
           _Fail("the mask is not as long as the pattern");
}

// Behind the opening bracket. A range before the bracket is the first pattern's, and counts for
// those without one of their own.
bool Parser::_ReadList(std::vector<SnifferPattern>* list)
{
    SnifferPattern start = list->back();
    list->clear();
    if (!_ReadFlag(&start.ignore_case))
        return false;
    do {
        SnifferPattern pattern = start;
        if (_Take('[') && !_ReadRange(&pattern))
            return false;
        if (!_ReadFlag(&pattern.ignore_case) || !_ReadPattern(&pattern))
            return false;
        list->push_back(pattern);
    } while (_Take('|'));
    return _Take(')') || _Fail("')' is missing");
}

bool Parser::Parse(SnifferRule* rule)
{
    if (!_ReadPriority(&rule->priority))
        return false;
    for (_SkipSpace(); *fAt != '\0'; _SkipSpace()) {
        std::vector<SnifferPattern> list = {{0, 0, "", "", false}};
        if (_Take('[') && !_ReadRange(&list.back()))
            return false;
        if (!_Take('('))
            return _Fail("'(' is missing");
        if (!_ReadList(&list))
            return false;
        rule->lists.push_back(std::move(list));
    }
    return !rule->lists.empty() || _Fail("patterns are missing");
}

status_t parse_sniffer_rule(const char* text, SnifferRule* rule, std::string* error)
{
    Parser parser(text);
    *rule = {};
    if (parser.Parse(rule))
        return B_OK;
    if (error != nullptr)
        *error = parser.Error();
    return B_BAD_MIME_SNIFFER_RULE;
}

// ---- By itself

static uint8 folded(char c, bool ignore_case)
{
    return static_cast<uint8>(ignore_case ? g_ascii_tolower(c) : c);
}

static bool matches_at(const SnifferPattern& pattern, std::string_view bytes)
{
    if (bytes.size() < pattern.bytes.size())
        return false;
    for (size_t i = 0; i < pattern.bytes.size(); i++) {
        const uint8 mask = pattern.mask.empty() ? 0xFF : static_cast<uint8>(pattern.mask[i]);
        if ((folded(bytes[i], pattern.ignore_case) & mask) !=
            (folded(pattern.bytes[i], pattern.ignore_case) & mask))
            return false;
    }
    return true;
}

static bool matches(const SnifferPattern& pattern, std::string_view bytes)
{
    const int64 end = std::min<int64>(pattern.last, static_cast<int64>(bytes.size()));
    for (int64 at = std::max(pattern.first, 0); at <= end; at++) {
        if (matches_at(pattern, bytes.substr(static_cast<size_t>(at))))
            return true;
    }
    return false;
}

bool matches(const SnifferRule& rule, std::string_view bytes)
{
    return std::all_of(rule.lists.begin(), rule.lists.end(), [&](const auto& list) {
        return std::any_of(list.begin(), list.end(),
                           [&](const SnifferPattern& pattern) { return matches(pattern, bytes); });
    });
}

// ---- In the desktop's terms

static std::string escaped(const std::string& bytes)
{
    std::string text;
    char code[8];
    for (const char c : bytes) {
        snprintf(code, sizeof(code), isalnum(static_cast<uint8>(c)) ? "%c" : "\\%03o",
                 static_cast<uint8>(c));
        text += code;
    }
    return text;
}

// Letters lose the bit that tells their case.
static SnifferPattern without_case(SnifferPattern pattern)
{
    if (pattern.mask.empty())
        pattern.mask.assign(pattern.bytes.size(), '\xFF');
    for (size_t i = 0; i < pattern.bytes.size(); i++) {
        if (isalpha(static_cast<uint8>(pattern.bytes[i])))
            pattern.mask[i] = static_cast<char>(pattern.mask[i] & ~0x20);
    }
    return pattern;
}

static std::string match_of(const SnifferPattern& given)
{
    const SnifferPattern pattern = given.ignore_case ? without_case(given) : given;
    std::string bytes = pattern.bytes;
    for (size_t i = 0; i < pattern.mask.size(); i++)
        bytes[i] = static_cast<char>(bytes[i] & pattern.mask[i]);
    std::string text =
        "<match type=\"string\" offset=\"" + std::to_string(std::max(pattern.first, 0));
    if (pattern.last > pattern.first)
        text.append(":").append(std::to_string(pattern.last));
    text.append("\" value=\"").append(escaped(bytes)).append("\"");
    if (!pattern.mask.empty()) {
        text += " mask=\"0x";
        char digits[4];
        for (const char c : pattern.mask) {
            snprintf(digits, sizeof(digits), "%02x", static_cast<uint8>(c));
            text += digits;
        }
        text += "\"";
    }
    return text;
}

// All lists from `index` on: each pattern of one holds the matches of those behind it.
static std::string matches_of(const SnifferRule& rule, size_t index)
{
    std::string text;
    const std::string inner = index + 1 < rule.lists.size() ? matches_of(rule, index + 1) : "";
    for (const SnifferPattern& pattern : rule.lists[index])
        text += match_of(pattern) + (inner.empty() ? "/>" : ">" + inner + "</match>");
    return text;
}

std::string magic_of(const SnifferRule& rule)
{
    // Nothing begins before the first byte.
    SnifferRule possible = rule;
    size_t leaves = 1;
    for (auto& list : possible.lists) {
        std::erase_if(list, [](const SnifferPattern& pattern) { return pattern.last < 0; });
        leaves *= list.size();
        if (leaves == 0 || leaves > kMaxMatches)
            return "";
    }
    return "<magic priority=\"" + std::to_string(lround(rule.priority * 100.0)) + "\">" +
           matches_of(possible, 0) + "</magic>";
}

}  // namespace storage
