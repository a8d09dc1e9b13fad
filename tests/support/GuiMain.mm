// Main routine of the tests that need the toolkit.
#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    @autoreleasepool {
        [NSApplication sharedApplication];
        return RUN_ALL_TESTS();
    }
}
