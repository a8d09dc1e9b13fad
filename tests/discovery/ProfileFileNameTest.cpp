#include "profiles/ProfileName.h"

#include <gtest/gtest.h>

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
