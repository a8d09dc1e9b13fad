#include "profiles/ProfileName.h"

#include "profiles/PropertyList.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr unsigned char kContinuationMask = 0xC0, kContinuation = 0x80;

/// How many bytes at the end of `text` are the beginning of a character that was cut off there.
size_t cutBytes(std::string_view text)
{
    constexpr size_t kLongestCut = 3;
    for (size_t n = 1; n <= std::min(kLongestCut, text.size()); ++n) {
        unsigned char byte = text[text.size() - n];
        if ((byte & kContinuationMask) == kContinuation)
            continue;
        size_t length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
        return n < length ? n : 0;
    }
    return 0;
}

} // namespace

std::string_view nameText(const char (&field)[kProfileNameSize])
{
    return {field, strnlen(field, kProfileNameSize)};
}

void setNameText(char (&field)[kProfileNameSize], std::string_view text)
{
    text = text.substr(0, std::min<size_t>(text.find('\0'), kProfileNameSize - 1));
    memset(field, 0, kProfileNameSize);
    text.copy(field, text.size());
}

std::optional<std::string> storableName(const char (&field)[kProfileNameSize])
{
    std::string_view text = nameText(field);
    text.remove_suffix(cutBytes(text));
    if (!isPropertyListText(text))
        return std::nullopt;
    return std::string(text);
}
