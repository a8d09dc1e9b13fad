// Presets: print settings kept under a name in the user's configuration folder.

#include "Presets.h"
#include "support/Sandbox.h"

#include <gtest/gtest.h>

namespace {

class PresetsTest : public ::testing::Test {
protected:
    void TearDown() override { [presets release]; }

    Sandbox home;
    ScopedVariable folder{"XDG_CONFIG_HOME", home.path().string()};
    NSDictionary* values = @{@"copies" : @"2", @"R4270" : @{@"VelQuickColor" : @"Photo"}};
    Presets* presets = [[Presets alloc] initWithFolder:@"presets"];
};

} // namespace

TEST_F(PresetsTest, GivesBackWhatWasSavedUntilItIsDeleted)
{
    EXPECT_EQ([[presets names] count], 0u);
    for (NSString* name in @[ @"photos", @"Draft", @"100 % \u00e9\u65e5" ])
        EXPECT_TRUE([presets save:values name:name]);
    EXPECT_TRUE([[presets names] isEqual:(@[ @"100 % \u00e9\u65e5", @"Draft", @"photos" ])]);
    EXPECT_TRUE([[presets valuesOfPreset:@"photos" error:nullptr] isEqual:values]);
    [presets removePreset:@"Draft"];
    EXPECT_EQ([[presets names] count], 2u);
    NSString* reason = nil;
    EXPECT_TRUE([presets valuesOfPreset:@"Draft" error:&reason] == nil);
    EXPECT_GT([reason length], 0u);
    EXPECT_TRUE(std::filesystem::exists(home / "r4270-printdialog/presets/photos.plist"));
}

TEST_F(PresetsTest, AreInTheHomeFolderWithoutAConfigurationFolder)
{
    ScopedVariable none("XDG_CONFIG_HOME", ""), homeFolder("HOME", home.path().string());
    Presets* inHome = [[[Presets alloc] initWithFolder:@"printers"] autorelease];
    EXPECT_TRUE([inHome save:values name:@"photos"]);
    EXPECT_TRUE(std::filesystem::exists(home / ".config/r4270-printdialog/printers/photos.plist"));
}

TEST_F(PresetsTest, RefusesNamesThatWouldLeaveTheFolderOrHide)
{
    NSString* tooLong = [@"" stringByPaddingToLength:101 withString:@"x" startingAtIndex:0];
    for (NSString* name in @[ @"", @".", @"..", @"../x", @"a/b", @".hidden", @"line\nfeed", tooLong ]) {
        EXPECT_FALSE([presets save:values name:name]) << [name UTF8String];
        [presets removePreset:name];
    }
    EXPECT_EQ([[presets names] count], 0u);
}
