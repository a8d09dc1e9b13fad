#include "profiles/ProfileName.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>

TEST(ProfileFileName, AcceptsNamesWithinTheRule)
{
    for (const char* name :
         {"PROFILE1.ICC", "a.b", "name.x.y", "abc~1.icc", "ends.", "bare", "a...", "%n%n.x", "$(id).x",
          "abcdefghijklmnopqrstuvwxyz0", "abcdefghijklmnopqrstuvwxyz0.123"})
        EXPECT_TRUE(bJudgement8point3Format(name)) << name;
}

TEST(ProfileFileName, RefusesNamesOutsideTheRule)
{
    EXPECT_FALSE(bJudgement8point3Format(nullptr));
    for (const char* name : {"", ".", ".icc", "PROFILE1.ICCX", "name.tar.gz", "a.....", "two words.icc",
                             "a@b.icc", "abcdefghijklmnopqrstuvwxyz01", "abcdefghijklmnopqrstuvwxyz01.icc",
                             "../a.icc", "a/b", "a\tb", "a\x7f", "caf\xc3\xa9.icc", "\xff", "a\n"})
        EXPECT_FALSE(bJudgement8point3Format(name)) << name;
}

TEST(ProfileFileName, HoldsLettersDigitsAndSixteenMarks)
{
    for (int c = -128; c < 128; ++c) {
        bool expected = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                        (c > 0 && strchr("!#$%&'()-.^_`{}~", c) != nullptr);
        EXPECT_EQ(FileNameFilter(c), expected) << c;
    }
}
