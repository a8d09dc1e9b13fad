#include "profilewindow/KeyFilters.h"

#include <gtest/gtest.h>
#include <string>

namespace {

/// The accepted codes from -200 to 0x110000 as "first-last" ranges.
std::string acceptedCodes(int32_t inputkey)
{
    std::string ranges;
    for (int32_t code = -200, first = 0, in = 0; code <= 0x110000; ++code) {
        int32_t accepted = FilterEditTextInputKey(inputkey, code);
        if (accepted && !in)
            first = code;
        if (!accepted && in)
            ranges += std::to_string(first) + ".." + std::to_string(code - 1) + " ";
        in = accepted;
        if (in && code == 0x110000)
            ranges += std::to_string(first) + "..";
    }
    return ranges;
}

} // namespace

TEST(KeyFilters, AcceptExactlyTheirCodes)
{
    EXPECT_EQ(acceptedCodes(0), "-128..-128 32..126 ");
    EXPECT_EQ(acceptedCodes(1), "-128..-128 33..33 35..41 45..46 48..57 65..90 94..123 125..126 ");
    EXPECT_EQ(acceptedCodes(2), "48..57 65..90 97..122 ");
    EXPECT_EQ(acceptedCodes(3), "48..57 ");
    for (int32_t other : {4, -1, 255})
        EXPECT_EQ(acceptedCodes(other), "-200..33 35..42 44..") << other;
}

TEST(KeyFilters, ReadAPairFromEitherHalfButAdvanceByOneUnit)
{
    const char16_t text[] = {u'a', 0xD83D, 0xDE00, u'b', 0xDBFF, 0xDFFF, 0xD800};
    const int32_t codes[] = {'a',    0x1F600, 0x80000 + 'b' + 0x10000, 'b', 0x10FFFF, 0xFFC00 + 0x10000,
                             0x10000};
    for (size_t i = 0, next = 99; i < std::size(text); i = next) {
        int32_t code = UCFindComposedCharAtIndex(text, std::size(text), i, &next);
        EXPECT_EQ(code, codes[i]) << i;
        EXPECT_EQ(next, i + 1);
    }
    // Each unit of a refused character goes by itself.
    std::u16string left = u"x\U0001F600+y\u00E9";
    CheckUniCharString(u"x\U0001F600+y\u00E9", left.size(), 0, left);
    EXPECT_EQ(left, u"x+y");
}
