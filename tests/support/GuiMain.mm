// Main routine of the tests that need the toolkit. The application object is made in an environment,
// not in main, so that listing the tests needs no display.
#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#if __has_feature(address_sanitizer)
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libgnustep-base\nleak:libgnustep-gui\nleak:libgnustep-cairo\nleak:libobjc\n"
           "leak:libfontconfig\nleak:libcairo\nleak:libX11\nleak:libxcb\nleak:libMagickCore\n"
           "leak:libdbus\nleak:ld-linux\n";
}
#endif

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
