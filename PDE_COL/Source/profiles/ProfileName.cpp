#include "profiles/ProfileName.h"

#include "profiles/PropertyList.h"

#include <algorithm>
#include <cstring>
#include <cwctype>

namespace {

/// How many bytes at the end of `text` are the beginning of a character that was cut off there.
size_t cutBytes(std::string_view text)
{
    constexpr size_t kLongestCut = 3;
    for (size_t n = 1; n <= std::min(kLongestCut, text.size()); ++n) {
        unsigned char byte = text[text.size() - n];
        if ((byte & 0xC0) == 0x80)
            continue;
        size_t length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
        return n < length ? n : 0;
    }
    return 0;
}

} // namespace

bool FileNameFilter(int character)
{
    return character > 127 ? std::iswalnum(static_cast<wint_t>(character)) != 0
                           : isFileNameCharacter(character);
}

bool bJudgement8point3Format(const char* name)
{
    std::string_view text = name == nullptr ? "" : name;
    size_t stop = text.find('.');
    std::string_view base = text.substr(0, stop);
    if (base.empty() || base.size() > kMaxBaseLength)
        return false;
    if (stop != std::string_view::npos && text.size() - stop - 1 > kMaxExtensionLength)
        return false;
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return FileNameFilter(static_cast<signed char>(c)); });
}

std::string_view nameText(const char (&field)[kProfileNameSize])
{
    return {field, strnlen(field, kProfileNameSize)};
}

void setNameText(char (&field)[kProfileNameSize], std::string_view text, size_t longest)
{
    text = text.substr(0, std::min(text.find('\0'), longest));
    memset(field, 0, kProfileNameSize);
    text.copy(field, text.size());
}

std::optional<std::string> storableName(const char (&field)[kProfileNameSize])
{
    std::string_view text = nameText(field).substr(0, kLongestName);
    text.remove_suffix(cutBytes(text));
    if (!isPropertyListText(text))
        return std::nullopt;
    return std::string(text);
}
