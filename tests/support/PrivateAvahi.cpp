#include "support/PrivateAvahi.h"

#include <csignal>
#include <unistd.h>

namespace {

const char* const kDaemonConfiguration = R"([server]
host-name=pde-test
use-ipv6=no
allow-interfaces=lo
[publish]
publish-hinfo=no
publish-workstation=no
)";

// The daemon keeps its process id in a fixed file below /run, in a folder that must be the user avahi's: here
// that is whoever runs the test.
const char* const kOwnNetwork =
    "cd \"$0\" && mount -t tmpfs tmpfs /run && ip link set lo up && "
    "mount --bind passwd /etc/passwd && mount --bind group /etc/group && "
    "exec avahi-daemon --no-drop-root --no-chroot --no-rlimits -f \"$0/avahi.conf\"";

} // namespace

PrivateAvahi::PrivateAvahi() : address_("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + (sandbox_ / "bus").string())
{
    sandbox_.write("avahi.conf", kDaemonConfiguration);
    const std::string user = std::to_string(getuid()), group = std::to_string(getgid());
    sandbox_.write("passwd", "avahi:x:" + user + ":" + group + "::/:/bin/false\n");
    sandbox_.write("group", "avahi:x:" + group + ":\n");
    // A session's bus lets its one user do everything.
    bus_.emplace(std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--nopidfile",
                                          "--address=unix:path=" + (sandbox_ / "bus").string()},
                 sandbox_ / "log");
    waitUntil([this] { return !bus_->running() || std::filesystem::exists(sandbox_ / "bus"); });
    daemon_.emplace(std::vector<std::string>{"unshare", "--map-current-user", "--keep-caps", "--mount",
                                             "--net", "sh", "-c", kOwnNetwork, sandbox_.path()},
                    sandbox_ / "daemon.log");
    waitUntil([this] { return !daemon_->running() || problem().empty(); });
}

PrivateAvahi::~PrivateAvahi()
{
    // A stopped one would not hear that it is to end.
    signalDaemon(SIGCONT);
}

std::string PrivateAvahi::problem() const
{
    const std::string said = readFile(sandbox_ / "daemon.log");
    return said.find("Server startup complete") != std::string::npos ? "" : "no Avahi daemon: " + said;
}

void PrivateAvahi::signalDaemon(int signal)
{
    if (daemon_->running())
        kill(daemon_->pid(), signal);
}
