#include <CFNetwork/CFNetwork.h>

#include "support/PrivateAvahi.h"
#include "support/SimulatedPrinter.h"

#import <Foundation/Foundation.h>
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/un.h>

namespace {

/// Says the IPv4 address of a printer by its service name, and ends.
[[noreturn]] void resolve(CFTimeInterval seconds)
{
    @autoreleasepool {
        CFNetServiceRef service = CFNetServiceCreate(nullptr, CFSTR("local"), CFSTR("_pdl-datastream._tcp"),
                                                     CFSTR("Office Printer"), 0);
        const bool found = CFNetServiceResolveWithTimeout(service, seconds, nullptr);
        NSData* first = [(NSArray*)CFNetServiceGetAddressing(service) firstObject];
        char text[INET_ADDRSTRLEN] = "";
        if ([first length] == sizeof(sockaddr_in))
            fputs(inet_ntop(AF_INET, (const UInt8*)[first bytes] + 4, text, sizeof text), stderr);
        _exit(found != (first != nil));
    }
}

/// In a process of its own, which keeps to the message bus that it meets first. Nothing else is said, and the
/// time-out is kept to: the bus library alone would wait 25 seconds for an answer.
void expectAddress(const std::string& expected, CFTimeInterval seconds)
{
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EXIT(resolve(seconds), testing::ExitedWithCode(0), testing::Matcher<const std::string&>(expected));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15));
}

} // namespace

TEST(NetService, FindsAPrinterUntilTheDaemonHangs)
{
    PrivateAvahi avahi;
    if (!avahi.problem().empty())
        GTEST_SKIP() << avahi.problem();
    SimulatedPrinter office("", {"--publish", "Office Printer"});
    ASSERT_TRUE(office.says("announced as")) << office.log();
    expectAddress("127.0.0.1", 5);
    avahi.signalDaemon(SIGSTOP);
    expectAddress("", 0.3);
}

TEST(NetService, FindsNothingWithoutAMessageBusOrOnASilentOne)
{
    Sandbox sandbox;
    const std::string path = sandbox / "bus";
    ScopedVariable bus("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + path);
    expectAddress("", 5);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int silent = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(bind(silent, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(silent, 5), 0);
    expectAddress("", 0.3);
    close(silent);
}
