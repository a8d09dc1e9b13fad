#include "profilewindow/KeyFilters.h"

#include "profiles/ProfileName.h"

#include <algorithm>

namespace {

/// Accepted by the two ASCII filters although no typed character has this code; their callers may count on
/// it.
constexpr int32_t kAlwaysAccepted = -128;

bool within(int32_t code, int32_t first, int32_t last)
{
    return code >= first && code <= last;
}

} // namespace

bool AsciiKeyFilter(int32_t code)
{
    return within(code, 0x20, 0x7E) || code == kAlwaysAccepted;
}

bool AsciiKeyFilterAppoint(int32_t code)
{
    return isFileNameCharacter(code) || code == kAlwaysAccepted;
}

bool AlphaNumericKeyFilter(int32_t code)
{
    return NumericKeyFilter(code) || within(code, 'A', 'Z') || within(code, 'a', 'z');
}

bool NumericKeyFilter(int32_t code)
{
    return within(code, '0', '9');
}

bool WideCharKeyFilter(int32_t code)
{
    return code != '+' && code != '"';
}

bool FilterEditTextInputKey(int32_t inputkey, int32_t code)
{
    switch (inputkey) {
    case kInputAscii:
        return AsciiKeyFilter(code);
    case kInputFileName:
        return AsciiKeyFilterAppoint(code);
    case kInputAlphaNumeric:
        return AlphaNumericKeyFilter(code);
    case kInputNumeric:
        return NumericKeyFilter(code);
    default:
        return WideCharKeyFilter(code);
    }
}

int32_t UCFindComposedCharAtIndex(const char16_t* units, size_t count, size_t index, size_t* next)
{
    // One unit at a time, also over a pair: its second half is then judged as a character of its own, and a
    // filter that refuses the pair deletes both.
    *next = index + 1;
    int32_t unit = units[index];
    if (!within(unit, 0xD800, 0xDFFF))
        return unit;
    int32_t following = index + 1 < count ? units[index + 1] : 0;
    return ((unit << 10) & 0xFFC00) + (following & 0x3FF) + 0x10000;
}

void CheckUniCharString(const char16_t* units, size_t count, int32_t inputkey, std::u16string& text)
{
    size_t output = 0;
    for (size_t index = 0; index < count;) {
        if (FilterEditTextInputKey(inputkey, UCFindComposedCharAtIndex(units, count, index, &index)))
            ++output;
        else
            text.erase(output, 1);
    }
}

bool isBrowsedNameAccepted(const std::u16string& name)
{
    std::u16string filtered = name;
    CheckUniCharString(name.data(), name.size(), kInputFileName, filtered);
    return name.size() <= kLongestTypedName && filtered == name &&
           std::count(name.begin(), name.end(), u'.') <= 1;
}
