#include "support/PrivateAvahi.h"

#include <csignal>
#include <filesystem>
#include <unistd.h>

namespace {

// Everybody who reaches the socket may do everything: that is the test alone.
const char* const kBusPolicy = R"(
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

const char* const kDaemonConfiguration = "[server]\n"
                                         "host-name=pde-test\n"
                                         "use-ipv4=yes\n"
                                         "use-ipv6=no\n"
                                         "allow-interfaces=lo\n"
                                         "[publish]\n"
                                         "publish-hinfo=no\n"
                                         "publish-workstation=no\n";

// The daemon keeps its process id in a fixed file below /run, in a folder that must be the user avahi's: here
// that is whoever runs the test.
const char* const kOwnNetwork =
    "cd \"$0\" && mount -t tmpfs tmpfs /run && ip link set lo up && "
    "mount --bind passwd /etc/passwd && mount --bind group /etc/group && "
    "exec avahi-daemon --no-drop-root --no-chroot --no-rlimits -f \"$0/avahi.conf\"";

} // namespace

PrivateAvahi::PrivateAvahi() : address_("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + (sandbox_ / "bus").string())
{
    const std::string listen =
        "<busconfig>\n  <type>custom</type>\n  <listen>unix:path=" + (sandbox_ / "bus").string() +
        "</listen>";
    const std::string busFile = sandbox_.write("bus.conf", listen + kBusPolicy);
    sandbox_.write("avahi.conf", kDaemonConfiguration);
    const std::string user = std::to_string(getuid()), group = std::to_string(getgid());
    sandbox_.write("passwd", "avahi:x:" + user + ":" + group + "::/:/bin/false\n");
    sandbox_.write("group", "avahi:x:" + group + ":\n");
    const std::string busLog = sandbox_ / "bus.log", daemonLog = sandbox_ / "daemon.log";
    bus_ = std::make_unique<BackgroundProcess>(
        std::vector<std::string>{"dbus-daemon", "--nofork", "--nopidfile", "--config-file=" + busFile},
        busLog);
    if (!waitUntil([this] { return !bus_->running() || std::filesystem::exists(sandbox_ / "bus"); }) ||
        !bus_->running()) {
        problem_ = "the message bus does not start: " + readFile(busLog);
        return;
    }
    daemon_ = std::make_unique<BackgroundProcess>(
        std::vector<std::string>{"unshare", "--map-current-user", "--keep-caps", "--mount", "--net", "sh",
                                 "-c", kOwnNetwork, sandbox_.path()},
        daemonLog);
    const auto ready = [&] {
        return readFile(daemonLog).find("Server startup complete") != std::string::npos;
    };
    if (!waitUntil([&] { return !daemon_->running() || ready(); }) || !ready())
        problem_ = "the Avahi daemon does not start: " + readFile(daemonLog);
}

PrivateAvahi::~PrivateAvahi()
{
    stopDaemon();
}

void PrivateAvahi::stopDaemon()
{
    // A frozen one would not hear that it is to end.
    if (daemon_ && daemon_->running())
        kill(daemon_->pid(), SIGCONT);
    daemon_.reset();
}

void PrivateAvahi::freezeDaemon()
{
    kill(daemon_->pid(), SIGSTOP);
}
