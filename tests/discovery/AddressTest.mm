// The address at which the printer of a device URI is walked, and walks from there to the stored lists.
#include "discovery/PDECommon+Discovery.h"

#include "profiles/ProfileListOperations.h"
#include "support/DriverRoot.h"
#include "support/SimulatedPrinter.h"

#include <PrintingObjects.h>
#include <gtest/gtest.h>

namespace {

/// A session with a printer of this device URI, to be used within an autorelease pool.
PMPrintSession sessionOf(const std::string& uri)
{
    PMPrinterObject* printer =
        [[PMPrinterObject alloc] initWithIdentifier:@"queue"
                                          deviceURI:[NSString stringWithUTF8String:uri.c_str()]
                                               file:@PDE_SOURCE_DIR "/printer/R4270.ppd"
                                              error:nullptr];
    return [[[[PMSessionObject alloc] initWithPrinter:[printer autorelease]] autorelease] handle];
}

/// Discovers with a script in place of the helper. A copy of the lists has to be asked for first; gives the
/// address of the walk that follows, "" for none.
std::string agentFor(PMPrintSession session)
{
    const DriverRoot root;
    root.replaceHelper("echo \"$1 $2 ${10}\" >>\"$0.log\"\necho $1=TRUE\n");
    EXPECT_EQ([PDECommon commonGetProfilesFromMIB:session], 0);
    const std::string asked = readFile(helperExecutable() + ".log");
    const std::string copied = "velPListIsAdminProfile_XPC " + currentListPath() +
                               " \nvelPListSwapProfile_XPC 2 \n",
                      walk = copied + "mibwalk_XPC R4270 ";
    EXPECT_TRUE(asked.starts_with(copied)) << asked;
    return asked.starts_with(walk) ? asked.substr(walk.size(), asked.size() - walk.size() - 1) : "";
}

// In a network of its own with nothing but a loopback interface, so that nothing is announced to anybody. The
// daemon keeps its process id in a fixed file below /run, in a folder that must be the user avahi's: here
// that is whoever runs the test.
const char* const kAvahi = R"(cd "$0" && mount -t tmpfs tmpfs /run && ip link set lo up &&
    printf '[server]\nuse-ipv6=no\nallow-interfaces=lo\n' >conf &&
    echo "avahi:x:$(id -u):$(id -g)::/:/bin/false" >passwd && mount --bind passwd /etc/passwd &&
    echo "avahi:x:$(id -g):" >group && mount --bind group /etc/group &&
    exec avahi-daemon --no-drop-root --no-chroot --no-rlimits -f "$0/conf")";

} // namespace

TEST(Address, ComesFromTheDeviceUri)
{
    const std::string longest(253, 'h');
    const struct {
        std::string uri;
        int code;
        std::string agent;
    } cases[] = {
        {"lpd://192.168.1.20:515/queue", 0, "192.168.1.20"},
        {"lpd://my_printer/q", 0, "my_printer"},
        {"lpd://user@host:515/q", 0, "host"},
        {"lpd://host/queue@other?reserve=none", 0, "host"},
        {"lpd://" + longest + ":/q", 0, longest},
        {"lpd://" + longest + "hh/q", 0, ""},
        {"lpd://user@:515/queue", 0, ""},
        {"mdns://%ff._x._tcp.local", 1, ""},
        {"dnssd://a.b.c", 1, ""},
        {"pap://zone/printer", 2, ""},
        {"usb://QUORVEX/R4270?serial=1", 3, ""},
        {"Lpd://192.168.1.20/", -1, ""},
        {"ipp://host/lpd://other", -1, ""},
        {"", -1, ""},
    };
    @autoreleasepool {
        for (const auto& c : cases) {
            EXPECT_EQ([PDECommon commoniGetProtocol:sessionOf(c.uri)], c.code) << c.uri;
            EXPECT_EQ(agentFor(sessionOf(c.uri)), c.agent) << c.uri;
        }
        PMSessionObject* bare = [[[PMSessionObject alloc] initWithPrinter:nil] autorelease];
        for (PMPrintSession without : {[bare handle], PMPrintSession()})
            EXPECT_EQ(agentFor(without), "");
    }
}

TEST(Address, LeadsToTheProfilesOfThePrinter)
{
    Sandbox session;
    const std::string address = "unix:path=" + (session / "bus").string(), said = session / "daemon.log";
    ScopedVariable systemBus("DBUS_SYSTEM_BUS_ADDRESS", address);
    // A session's bus lets its one user do everything.
    BackgroundProcess bus({"dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=" + address},
                          session / "log");
    waitUntil([&] { return !bus.running() || std::filesystem::exists(session / "bus"); });
    BackgroundProcess daemon({"unshare", "--map-current-user", "--keep-caps", "--mount", "--net", "sh", "-c",
                              kAvahi, session.path()},
                             said);
    auto ready = [&] { return readFile(said).find("Server startup complete") != std::string::npos; };
    if (!waitUntil([&] { return !daemon.running() || ready(); }) || !ready())
        GTEST_SKIP() << "no Avahi daemon: " << readFile(said);
    SimulatedPrinter printer("profile 1 4 \"Office\" \"OFFICE.ICC\" 1\n",
                             {"--publish", "100% B\u00fcro v2.5"});
    ASSERT_TRUE(printer.says("announced as")) << printer.log();
    const std::pair<const char*, int> cases[] = {
        {"dnssd://100%25%20B%C3%BCro%20v2%2E5._pdl-datastream._tcp.local./?uuid=1", 1},
        {"mdns://100%25%20B%C3%BCro%20v2%2E5._pdl-datastream._tcp.local", 1},
        {"dnssd://Nobody._pdl-datastream._tcp.local./", 0},
    };
    for (auto [uri, found] : cases) {
        const DriverRoot root;
        auto lists = std::make_unique<ProfileList[]>(kProfileListCount);
        @autoreleasepool {
            EXPECT_EQ([PDECommon commonGetProfilesFromMIB:sessionOf(uri)], 0);
        }
        (void)VelPListReadProfile_All(&lists[kRgbList], &lists[kSimList], &lists[kDstList]);
        EXPECT_EQ(lists[kRgbList].iNum, found) << uri;
    }
    // The bus library alone would wait 25 seconds for an answer.
    for (const BackgroundProcess* silent : {&daemon, &bus}) {
        kill(silent->pid(), SIGSTOP);
        const auto start = std::chrono::steady_clock::now();
        @autoreleasepool {
            EXPECT_EQ(agentFor(sessionOf(cases[0].first)), "");
        }
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15));
        kill(silent->pid(), SIGCONT); // a stopped one would not hear that it is to end
    }
}
