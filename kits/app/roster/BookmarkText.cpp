// Finding one bookmark in XBEL.

#include "app/roster/BookmarkText.h"

#include <ctype.h>

#include <string_view>

namespace BPrivate {

static const std::string_view kBegin = "<bookmark";
static const std::string_view kEnd = "</bookmark>";

// What the elements' own parts are named by; a list that names them otherwise is not edited here.
static const char* const kNames[] = {
    "xmlns:bookmark=\"http://www.freedesktop.org/standards/desktop-bookmarks\"",
    "xmlns:mime=\"http://www.freedesktop.org/standards/shared-mime-info\"",
};

static const struct {
    std::string_view code;
    char character;
} kEntities[] = {
    {"&amp;", '&'}, {"&lt;", '<'},   {"&gt;", '>'},   {"&quot;", '"'},  {"&apos;", '\''},
    {"&#38;", '&'}, {"&#39;", '\''}, {"&#x26;", '&'}, {"&#x27;", '\''},
};

namespace {

struct Range {
    size_t begin = std::string::npos;
    size_t end = std::string::npos;
    bool IsFound() const { return begin != std::string::npos; }
};

}  // namespace

static std::string decoded(std::string_view text)
{
    std::string plain;
    while (!text.empty()) {
        size_t length = 1;
        char character = text[0];
        for (const auto& entity : kEntities) {
            if (text.starts_with(entity.code)) {
                length = entity.code.size();
                character = entity.character;
            }
        }
        plain += character;
        text.remove_prefix(length);
    }
    return plain;
}

// The index behind a tag that begins at `at`: quotes may hold its end's character.
static size_t end_of_tag(std::string_view text, size_t at)
{
    char quote = '\0';
    for (; at < text.size(); ++at) {
        const char c = text[at];
        if (quote != '\0')
            quote = c == quote ? '\0' : quote;
        else if (c == '"' || c == '\'')
            quote = c;
        else if (c == '>')
            return at + 1;
    }
    return text.size();
}

static std::string address_in(std::string_view tag)
{
    for (size_t at = tag.find("href"); at != tag.npos; at = tag.find("href", at + 1)) {
        size_t begin = tag.find_first_not_of(" \t\r\n", at + 4);
        if (!isspace(static_cast<unsigned char>(tag[at - 1])) || begin == tag.npos ||
            tag[begin] != '=')
            continue;
        begin = tag.find_first_of("\"'", begin);
        if (begin == tag.npos)
            return "";
        const size_t end = tag.find(tag[begin], begin + 1);
        return decoded(tag.substr(begin + 1, end - begin - 1));
    }
    return "";
}

// Behind what is no element at `at`: comments and raw text. `at` itself for all else.
static size_t behind_others(std::string_view text, size_t at)
{
    const auto behind = [&](std::string_view begin, std::string_view end) {
        const size_t found = text.substr(at).starts_with(begin) ? text.find(end, at) : text.npos;
        return found != text.npos ? found + end.size() : at;
    };
    const size_t comment = behind("<!--", "-->");
    return comment != at ? comment : behind("<![CDATA[", "]]>");
}

static Range find_bookmark(std::string_view text, const std::string& uri)
{
    for (size_t at = text.find('<'); at != text.npos; at = text.find('<', at)) {
        const size_t other = behind_others(text, at);
        if (other != at) {
            at = other;
            continue;
        }
        const size_t tag_end = end_of_tag(text, at);
        const std::string_view tag = text.substr(at, tag_end - at);
        if (tag.starts_with(kBegin) && tag.size() > kBegin.size() &&
            isspace(static_cast<unsigned char>(tag[kBegin.size()])) && address_in(tag) == uri) {
            const size_t end = tag.ends_with("/>") ? tag_end : text.find(kEnd, tag_end);
            if (end == text.npos)
                return Range();
            return {at, tag.ends_with("/>") ? end : end + kEnd.size()};
        }
        at = tag_end;
    }
    return Range();
}

std::string bookmark_in(const std::string& text, const std::string& uri)
{
    const Range range = find_bookmark(text, uri);
    return range.IsFound() ? text.substr(range.begin, range.end - range.begin) : "";
}

std::string with_bookmark(const std::string& text, const std::string& uri,
                          const std::string& element)
{
    for (const char* name : kNames) {
        if (text.find(name) == text.npos)
            return "";
    }
    std::string edited = text;
    const Range range = find_bookmark(text, uri);
    if (range.IsFound())
        return edited.replace(range.begin, range.end - range.begin, element);
    const size_t end = text.rfind("</xbel>");
    if (end == text.npos)
        return "";
    return edited.insert(end, "  " + element + "\n");
}

}  // namespace BPrivate
