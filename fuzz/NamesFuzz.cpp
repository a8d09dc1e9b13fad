#include "profiles/ProfileName.h"
#include "profiles/ProfilePath.h"
#include "profilewindow/KeyFilters.h"

#include <algorithm>
#include <cassert>
#include <regex>

// Whatever is typed, chosen or stored as a name: the field keeps just the characters that its filter accepts,
// a name that may be kept may be chosen, and what is stored is the beginning of what was given.

static void checkFilters(const std::u16string& units)
{
    for (int32_t key = kInputAscii; key <= kInputNumeric + 1; ++key) {
        std::u16string kept, filtered = units;
        std::copy_if(units.begin(), units.end(), std::back_inserter(kept), [key](char16_t unit) {
            bool half = unit >= 0xD800 && unit <= 0xDFFF; // of a character beyond all ranges
            return FilterEditTextInputKey(key, half ? 0x10000 : unit);
        });
        CheckUniCharString(units.data(), units.size(), key, filtered);
        assert(filtered == kept);
    }
}

extern "C" int LLVMFuzzerTestOneInput(const char* data, size_t size)
{
    const std::string bytes(data, std::min<size_t>(size, 64)), name = bytes.c_str();
    checkFilters({bytes.begin(), bytes.end()});
    checkFilters({reinterpret_cast<const char16_t*>(bytes.data()), bytes.size() / 2});
    static const std::regex rule(R"([\w!#$%&'()^`{}~-]{1,27}(\.[\w!#$%&'().^`{}~-]{0,3})?)");
    bool kept = bJudgement8point3Format(name.c_str());
    assert(kept == std::regex_match(name, rule));
    assert(!kept || std::count(name.begin(), name.end(), '.') > 1 ||
           isBrowsedNameAccepted({name.begin(), name.end()}));
    char field[kProfileNameSize];
    setNameText(field, bytes, kProfileNameSize);
    assert(nameText(field) == name.substr(0, kProfileNameSize));
    std::optional<std::string> stored = storableName(field);
    assert(!stored || (name.starts_with(*stored) && decodePrinterPath(encodePrinterPath(*stored)) == stored));
    return 0;
}
