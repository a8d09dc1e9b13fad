#include "support/PrivateAvahi.h"
#include "support/SimulatedPrinter.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

/// The address of a printer by its service name, "" when it is not found. Whatever happens, not a word is
/// said.
std::string resolve(const std::string& name, const std::string& seconds)
{
    ProcessOptions options;
    // The bus library waits 25 seconds for an answer: what takes as long has not kept to its time-out.
    options.timeout = std::chrono::seconds(15);
    ProcessResult result =
        runProcess({PDE_BUILD_DIR "/tests/platform/resolve_service", name, seconds}, options);
    EXPECT_FALSE(result.timedOut);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    return result.out;
}

} // namespace

TEST(NetService, FindsAPrinterUntilTheDaemonHangsOrIsGone)
{
    PrivateAvahi avahi;
    if (!avahi.problem().empty())
        GTEST_SKIP() << avahi.problem();
    SimulatedPrinter office("", {"--publish", "Office Printer"});
    ASSERT_TRUE(office.says("announced as")) << office.log();
    EXPECT_EQ(resolve("Office Printer", "5"), "127.0.0.1\n");
    avahi.freezeDaemon();
    EXPECT_EQ(resolve("Office Printer", "0.3"), "");
    avahi.stopDaemon();
    EXPECT_EQ(resolve("Office Printer", "0.3"), "");
}

TEST(NetService, FindsNothingWithoutAMessageBusOrOnASilentOne)
{
    Sandbox sandbox;
    const std::string path = sandbox / "bus";
    ScopedVariable bus("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + path);
    EXPECT_EQ(resolve("Office Printer", "5"), "");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int silent = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(bind(silent, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(silent, 5), 0);
    EXPECT_EQ(resolve("Office Printer", "0.3"), "");
    close(silent);
}
