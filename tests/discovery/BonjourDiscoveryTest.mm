#include "discovery/PDECommon+Discovery.h"

#include "DiscoveryFixture.h"
#include "PrinterSession.h"
#include "support/PrivateAvahi.h"

// In a program of its own: a process keeps to the message bus that it met first.
TEST_F(DiscoveryTest, ProfilesOfAnAnnouncedPrinterReachTheStoredLists)
{
    PrivateAvahi avahi;
    if (!avahi.problem().empty())
        GTEST_SKIP() << avahi.problem();
    startPrinter("profile 1 4 \"Office\" \"OFFICE.ICC\" 1\n"
                 "profile 2 5 \"Press\" \"PRESS.ICC\" 3\n",
                 {"--publish", "Office Printer"});
    ASSERT_TRUE(waitUntil([&] {
        return readFile(sandbox_ / "log").find("announced as") != std::string::npos;
    })) << readFile(sandbox_ / "log");
    @autoreleasepool {
        PrinterSession session("dnssd://Office%20Printer._pdl-datastream._tcp.local./?uuid=1");
        EXPECT_EQ([PDECommon commonGetProfilesFromMIB:session.handle()], 0);
    }
    EXPECT_EQ(codes(kRgbList), Codes({{"OFFICE.ICC", kFoundHidden}}));
    EXPECT_EQ(codes(kSimList), Codes({{"PRESS.ICC", kFoundHidden}}));
    EXPECT_EQ(codes(kDstList), Codes({{"PRESS.ICC", kFoundHidden}}));
}
