// Main routine of the tests that need the toolkit. The application object is made in an environment,
// not in main, so that listing the tests needs no display.
#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

namespace {

class Application : public ::testing::Environment {
public:
    void SetUp() override
    {
        pool_ = [[NSAutoreleasePool alloc] init];
        [NSApplication sharedApplication];
    }
    void TearDown() override { [pool_ drain]; }

private:
    NSAutoreleasePool* pool_ = nil;
};

} // namespace

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::AddGlobalTestEnvironment(new Application);
    return RUN_ALL_TESTS();
}
