// Dates in words and numbers. A text is cut into numbers, words and signs, which are then held
// against one form after the other. Any thread, but for the table of forms.

#include <parsedate.h>

#include <ctype.h>
#include <string.h>
#include <strings.h>

#include <atomic>
#include <string>
#include <vector>

namespace {

const char* const kMonths[] = {"january",   "february", "march",    "april",
                               "may",       "june",     "july",     "august",
                               "september", "october",  "november", "december"};
const char* const kDays[] = {"sunday",   "monday", "tuesday", "wednesday",
                             "thursday", "friday", "saturday"};

struct Unit {
    const char* name;
    int seconds;  // 0: calendar units
    int months;
};

const Unit kUnits[] = {
    {"second", 1, 0},  {"sec", 1, 0},       {"minute", 60, 0}, {"min", 60, 0},  {"hour", 3600, 0},
    {"day", 86400, 0}, {"week", 604800, 0}, {"month", 0, 1},   {"year", 0, 12},
};

struct Zone {
    const char* name;
    int minutes;  // east of Greenwich
};

const Zone kZones[] = {
    {"z", 0},      {"gmt", 0},    {"ut", 0},     {"utc", 0},    {"wet", 0},
    {"cet", 60},   {"met", 60},   {"cest", 120}, {"eet", 120},  {"msk", 180},
    {"jst", 540},  {"est", -300}, {"edt", -240}, {"cst", -360}, {"cdt", -300},
    {"mst", -420}, {"mdt", -360}, {"pst", -480}, {"pdt", -420},
};

const char* sForms[] = {
    "[A][,] B d[,] [Y][,] [T] [z]",
    "[A][,] d[-][.] B[-] [Y][,] [T] [z]",
    "[A][,] B d[,] T [z] Y",
    "[A][,] Y-m-d[,] [T] [z]",
    "[A][,] m/d/Y[,] [T] [z]",
    "[A][,] d.m.Y[,] [T] [z]",
    "[A][,] Y/m/d[,] [T] [z]",
    "m/d [T]",
    "T [z][,] [A][,] B d[,] [Y]",
    "T [z][,] [A][,] d B [Y]",
    "A[,] [T] [z]",
    "B Y",
    "T [z]",
    nullptr,
};

std::atomic<const char**> sTable{sForms};

struct Token {
    enum Kind { Number, Word, Sign } kind;
    std::string text;
    int value = 0;
};

const int kNone = -1;

struct Parts {
    int year = kNone, month = kNone, day = kNone, weekday = kNone;
    int hour = kNone, minute = 0, second = 0;
    int zone = 0;
    bool has_zone = false;
};

// False for a text with numbers that no date has.
bool cut(const char* text, std::vector<Token>* tokens)
{
    for (const char* at = text; *at != '\0';) {
        const unsigned char c = *at;
        if (isspace(c)) {
            at++;
            continue;
        }
        const bool divides =
            (c == 'T' || c == 't') && at > text && isdigit(at[-1]) && isdigit(at[1]);
        Token token{isdigit(c) ? Token::Number : isalpha(c) ? Token::Word : Token::Sign, {}};
        while (token.kind == Token::Number ? isdigit(static_cast<unsigned char>(*at))
                                           : isalpha(static_cast<unsigned char>(*at)))
            token.text += static_cast<char>(tolower(static_cast<unsigned char>(*at++)));
        if (token.kind == Token::Sign)
            token.text = *at++;
        if (token.text.size() > 9)
            return false;
        if (token.kind == Token::Number)
            token.value = std::stoi(token.text);
        if (!divides)
            tokens->push_back(token);
    }
    return !tokens->empty();
}

// The name that a word of three letters or more begins; -1 for none.
template <size_t kCount>
int index_of(const Token& token, const char* const (&names)[kCount])
{
    for (size_t i = 0; token.kind == Token::Word && token.text.size() >= 3 && i < kCount; i++) {
        if (strncmp(names[i], token.text.c_str(), token.text.size()) == 0)
            return static_cast<int>(i);
    }
    return kNone;
}

// One form held against the tokens, part by part.
class Match {
public:
    Match(const std::vector<Token>& tokens) : fTokens(tokens) {}

    bool Whole(const char* form, Parts* parts) const
    {
        size_t at = 0;
        return _From(form, at, parts);
    }

private:
    // Tries a part in brackets first with, then without it.
    bool _From(const char* form, size_t at, Parts* parts) const
    {
        while (*form == ' ' || *form == ']')
            form++;
        if (*form == '\0')
            return at == fTokens.size();
        Parts tried = *parts;
        size_t next = at;
        if (*form != '[') {
            if (!_One(*form, &next, &tried) || !_From(form + 1, next, &tried))
                return false;
        } else if (!_From(form + 1, at, &tried)) {
            const char* end = strchr(form, ']');
            return end != nullptr && _From(end + 1, at, parts);
        }
        *parts = tried;
        return true;
    }

    bool _IsSign(size_t at, char sign) const
    {
        return at < fTokens.size() && fTokens[at].kind == Token::Sign &&
               fTokens[at].text[0] == sign;
    }

    bool _Number(size_t* at, int least, int most, int* value) const
    {
        if (*at >= fTokens.size() || fTokens[*at].kind != Token::Number ||
            fTokens[*at].value < least || fTokens[*at].value > most)
            return false;
        *value = fTokens[(*at)++].value;
        return true;
    }

    bool _Year(size_t* at, int* year) const
    {
        if (!_Number(at, 0, 9999, year))
            return false;
        if (fTokens[*at - 1].text.size() <= 2)
            *year += *year < 70 ? 2000 : 1900;
        return *year >= 1900;
    }

    bool _HalfDay(size_t* at, Parts* parts) const
    {
        if (*at >= fTokens.size() || (fTokens[*at].text != "am" && fTokens[*at].text != "pm") ||
            parts->hour < 1 || parts->hour > 12)
            return false;
        parts->hour = parts->hour % 12 + (fTokens[(*at)++].text == "pm" ? 12 : 0);
        return true;
    }

    // Hour and minute, or an hour before "am" or "pm".
    bool _Time(size_t* at, Parts* parts) const
    {
        if (!_Number(at, 0, 23, &parts->hour))
            return false;
        if (!_IsSign(*at, ':'))
            return _HalfDay(at, parts);
        (*at)++;
        if (!_Number(at, 0, 59, &parts->minute))
            return false;
        if (_IsSign(*at, ':')) {
            (*at)++;
            if (!_Number(at, 0, 60, &parts->second))
                return false;
        }
        _HalfDay(at, parts);
        return true;
    }

    // A name, or four digits behind a sign, or both.
    bool _Zone(size_t* at, Parts* parts) const
    {
        bool found = false;
        for (const Zone& zone : kZones) {
            if (*at < fTokens.size() && fTokens[*at].text == zone.name) {
                parts->zone = zone.minutes;
                found = true;
                (*at)++;
                break;
            }
        }
        const bool west = _IsSign(*at, '-');
        if (west || _IsSign(*at, '+')) {
            size_t next = *at + 1;
            int hours, minutes = 0;
            if (!_Number(&next, 0, 1400, &hours))
                return found;
            if (_IsSign(next, ':')) {
                next++;
                if (!_Number(&next, 0, 59, &minutes))
                    return found;
            } else if (hours > 14) {
                minutes = hours % 100;
                hours /= 100;
            }
            parts->zone = (west ? -1 : 1) * (hours * 60 + minutes);
            *at = next;
            found = true;
        }
        parts->has_zone = found;
        return found;
    }

    bool _Name(size_t* at, int* value, int index) const
    {
        if (index == kNone)
            return false;
        *value = index;
        (*at)++;
        if (_IsSign(*at, '.'))  // of an abbreviation
            (*at)++;
        return true;
    }

    bool _One(char letter, size_t* at, Parts* parts) const
    {
        if (*at >= fTokens.size())
            return false;
        int month;
        switch (letter) {
            case 'a':
            case 'A':
                return _Name(at, &parts->weekday, index_of(fTokens[*at], kDays));
            case 'b':
            case 'B':
                return _Name(at, &parts->month, index_of(fTokens[*at], kMonths));
            case 'd': {
                if (!_Number(at, 1, 31, &parts->day))
                    return false;
                const std::string& next = *at < fTokens.size() ? fTokens[*at].text : std::string();
                *at += next == "st" || next == "nd" || next == "rd" || next == "th";
                return true;
            }
            case 'm':
                if (!_Number(at, 1, 12, &month))
                    return false;
                parts->month = month - 1;
                return true;
            case 'y':
            case 'Y':
                return _Year(at, &parts->year);
            case 'H':
            case 'I':
                return _Number(at, 0, 23, &parts->hour);
            case 'M':
                return _Number(at, 0, 59, &parts->minute);
            case 'S':
                return _Number(at, 0, 60, &parts->second);
            case 'p':
                return _HalfDay(at, parts);
            case 'T':
                return _Time(at, parts);
            case 'z':
            case 'Z':
                return _Zone(at, parts);
            default:
                if (!_IsSign(*at, letter))
                    return false;
                (*at)++;
                return true;
        }
    }

    const std::vector<Token>& fTokens;
};

// -1 for a day that the month does not have.
time_t time_of(const Parts& parts, time_t now, int* flags)
{
    struct tm date;
    localtime_r(&now, &date);
    date.tm_isdst = -1;
    const bool names_day = parts.day != kNone || parts.month != kNone || parts.year != kNone;
    if (parts.year != kNone)
        date.tm_year = parts.year - 1900;
    if (parts.month != kNone)
        date.tm_mon = parts.month;
    if (names_day)
        date.tm_mday = parts.day != kNone ? parts.day : 1;
    else if (parts.weekday != kNone) {
        date.tm_mday += (parts.weekday - date.tm_wday + 7) % 7;
        *flags |= PARSEDATE_DAY_RELATIVE_TIME;
    }
    date.tm_hour = parts.hour != kNone ? parts.hour : 0;
    date.tm_min = parts.minute;
    date.tm_sec = parts.second;
    const int month = date.tm_mon;
    const time_t time = parts.has_zone ? timegm(&date) - parts.zone * 60 : mktime(&date);
    return names_day && date.tm_mon != month ? -1 : time;
}

const Unit* unit_of(const Token& token)
{
    for (const Unit& unit : kUnits) {
        if (token.text == unit.name || token.text == std::string(unit.name) + "s")
            return &unit;
    }
    return nullptr;
}

time_t moved(time_t from, const Unit& unit, int count, int* flags)
{
    *flags |= unit.seconds != 0 && unit.seconds < 86400 ? PARSEDATE_MINUTE_RELATIVE_TIME
                                                        : PARSEDATE_DAY_RELATIVE_TIME;
    if (unit.seconds != 0 && unit.seconds < 86400)
        return from + static_cast<time_t>(unit.seconds) * count;
    struct tm date;
    localtime_r(&from, &date);
    date.tm_isdst = -1;
    date.tm_mday += unit.seconds / 86400 * count;
    date.tm_mon += unit.months * count;
    return mktime(&date);
}

// A day counted from today; what follows may be its time.
time_t day_of(const std::vector<Token>& tokens, size_t used, time_t now, int days, int* flags)
{
    struct tm date;
    localtime_r(&now, &date);
    date.tm_isdst = -1;
    date.tm_mday += days;
    date.tm_hour = date.tm_min = date.tm_sec = 0;
    *flags |= PARSEDATE_DAY_RELATIVE_TIME;
    const std::vector<Token> rest(tokens.begin() + static_cast<ssize_t>(used), tokens.end());
    Parts parts;
    if (!rest.empty() && !Match(rest).Whole("[,] T", &parts))
        return -1;
    if (parts.hour != kNone) {
        date.tm_hour = parts.hour;
        date.tm_min = parts.minute;
        date.tm_sec = parts.second;
    }
    return mktime(&date);
}

// "now", "tomorrow", "next week", "last monday", "5 minutes ago", "in 2 days"; -1 for what is none.
time_t relative(const std::vector<Token>& tokens, time_t now, int* flags)
{
    const std::string& first = tokens[0].text;
    if (first == "now" && tokens.size() == 1) {
        *flags |= PARSEDATE_MINUTE_RELATIVE_TIME;
        return now;
    }
    static const char* const kNames[] = {"yesterday", "today", "tomorrow"};
    for (int i = 0; i < 3; i++) {
        if (first == kNames[i])
            return day_of(tokens, 1, now, i - 1, flags);
    }
    const bool last = first == "last";
    if ((last || first == "next" || first == "this") && tokens.size() >= 2) {
        const int direction = last ? -1 : first == "next";
        if (const Unit* unit = unit_of(tokens[1]))
            return tokens.size() == 2 ? moved(now, *unit, direction, flags) : -1;
        const int weekday = index_of(tokens[1], kDays);
        if (weekday == kNone)
            return -1;
        struct tm date;
        localtime_r(&now, &date);
        int days = (weekday - date.tm_wday + 7) % 7;
        if (days == 0)
            days = direction > 0 ? 7 : 0;
        if (last)
            days = days == 0 ? -7 : days - 7;
        return day_of(tokens, 2, now, days, flags);
    }
    size_t at = first == "in" || first == "+" || first == "-";
    if (at + 1 >= tokens.size() || tokens[at].kind != Token::Number || tokens[at].value > 1'000'000)
        return -1;
    const Unit* unit = unit_of(tokens[at + 1]);
    const bool ago = at + 2 < tokens.size() && tokens[at + 2].text == "ago";
    if (unit == nullptr || tokens.size() != at + 2 + ago)
        return -1;
    const int sign = (first == "-") != ago ? -1 : 1;
    return moved(now, *unit, sign * tokens[at].value, flags);
}

}  // namespace

time_t parsedate_etc(const char* dateString, time_t now, int* _storedFlags)
{
    int ignored;
    int& flags = _storedFlags != nullptr ? *_storedFlags : ignored;
    flags = 0;
    if (now == -1)
        now = time(nullptr);
    std::vector<Token> tokens;
    time_t found = -1;
    if (dateString != nullptr && strlen(dateString) < 256 && cut(dateString, &tokens)) {
        found = relative(tokens, now, &flags);
        for (const char** form = sTable.load(); found == -1 && *form != nullptr; form++) {
            Parts parts;
            flags = 0;
            if (Match(tokens).Whole(*form, &parts))
                found = time_of(parts, now, &flags);
        }
    }
    if (found == -1)
        flags = PARSEDATE_INVALID_DATE;
    return found;
}

time_t parsedate(const char* dateString, time_t now)
{
    return parsedate_etc(dateString, now, nullptr);
}

void set_dateformats(const char* table[]) { sTable = table != nullptr ? table : sForms; }

const char** get_dateformats() { return sTable; }
