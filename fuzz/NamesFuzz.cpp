#include "Fuzz.h"
#include "profiles/ProfileName.h"
#include "profiles/PropertyList.h"
#include "profilewindow/KeyFilters.h"

#include <algorithm>
#include <cstring>
#include <regex>

// Whatever is typed, chosen or read as a name: the field keeps just the characters that its filter accepts, a
// name that may be kept may be chosen, and what is stored is the beginning of what was given.

namespace {

void checkFilters(const std::u16string& units)
{
    for (int32_t key = kInputAscii; key <= kInputNumeric + 1; ++key) {
        std::u16string kept, filtered = units;
        std::copy_if(units.begin(), units.end(), std::back_inserter(kept), [key](char16_t unit) {
            bool half = unit >= 0xD800 && unit <= 0xDFFF; // of a character beyond all ranges
            return FilterEditTextInputKey(key, half ? 0x10000 : unit);
        });
        CheckUniCharString(units.data(), units.size(), key, filtered);
        require(filtered == kept);
    }
}

void checkRule(const std::string& name)
{
    static const std::regex rule(R"([\w!#$%&'()^`{}~-]{1,27}(\.[\w!#$%&'().^`{}~-]{0,3})?)");
    bool kept = bJudgement8point3Format(name.c_str());
    require(kept == std::regex_match(name.c_str(), rule));
    if (kept && std::count(name.begin(), name.end(), '.') <= 1)
        require(isBrowsedNameAccepted(std::u16string(name.begin(), name.end())));
}

void checkField(const std::string& name, size_t longest)
{
    char field[kProfileNameSize];
    setNameText(field, name, longest);
    std::string_view text = nameText(field);
    require(text == name.substr(0, std::min(longest, strlen(name.c_str()))));
    if (std::optional<std::string> stored = storableName(field)) {
        require(text.starts_with(*stored) && isPropertyListText(*stored));
        setNameText(field, *stored);
        require(storableName(field) == stored || stored->size() == kProfileNameSize);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::string name = textOf(data, std::min<size_t>(size, 64));
    std::u16string units(name.size() / 2, u'\0');
    std::memcpy(units.data(), name.data(), units.size() * 2);
    checkFilters(units);
    checkFilters(std::u16string(data, data + name.size()));
    checkRule(name.c_str());
    checkField(name, kLongestName);
    checkField(name, kProfileNameSize);
    return 0;
}
