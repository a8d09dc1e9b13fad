#include "profiles/ProfileFileName.h"

#include "profiles/FileNameCharacter.h"

#include <algorithm>
#include <cwctype>
#include <string_view>

bool FileNameFilter(int character)
{
    if (character > 127)
        return std::iswalnum(static_cast<wint_t>(character)) != 0;
    return isFileNameCharacter(character);
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
