// Walks the printer's profile table as the user it is run by. The helper becomes this program after it has
// given up its rights for good, so whatever a printer's answer can do, it does not do it as root.

#include "discovery/ProfileTableWalk.h"
#include "profiles/DriverPaths.h"
#include "profiles/HelperProtocol.h"

#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

constexpr char kUsage[] =
    "usage: R4270Walker mibwalk_XPC R4270 LOGIN snmpwalk -Os -c COMMUNITY -v 1 ADDRESS ROOT\n"
    "\n"
    "Reads the colour profiles of the printer at ADDRESS and merges them into LOGIN's profile\n"
    "lists. R4270Helper starts it; LOGIN is the user who does. The last line of the output is\n"
    "\"mibwalk_XPC=iRet=\" and the result: 0 for a complete walk. The exit status is then 0, and\n"
    "1 after any other walk, 2 for wrong arguments.\n"
    "\n"
    "  --help     this text\n"
    "  --version  the version\n";

enum ExitStatus { kDone = 0, kWalkFailed = 1, kWrongArguments = 2 };

// The walk ends by itself within two minutes. What follows are the helper's commands of one write, of ten
// seconds at most each.
constexpr unsigned kLastSecond = 240;

int refuse(const char* reason)
{
    fprintf(stderr, "R4270Walker: %s (try --help)\n", reason);
    return kWrongArguments;
}

// Limits, signal handling and timers are inherited from whoever started us.
void limitSelf()
{
    signal(SIGALRM, SIG_DFL);
    signal(SIGCHLD, SIG_DFL);
    sigset_t alarms;
    sigemptyset(&alarms);
    sigaddset(&alarms, SIGALRM);
    sigprocmask(SIG_UNBLOCK, &alarms, nullptr);
    alarm(kLastSecond);

    struct Limit {
        __rlimit_resource resource;
        rlim_t value;
    };
    constexpr Limit limits[] = {{RLIMIT_CORE, 0}, {RLIMIT_NOFILE, 64}, {RLIMIT_AS, PDE_WALKER_MEMORY}};
    for (const Limit& limit : limits) {
        rlimit both;
        if (getrlimit(limit.resource, &both) == 0 && both.rlim_cur > limit.value) {
            both.rlim_cur = limit.value;
            (void)setrlimit(limit.resource, &both);
        }
    }
}

// Text from a printer must never look like part of the reply: while the walk runs, standard output is the
// null device. Gives the descriptor of the real one, -1 on failure.
int setOutputAside()
{
    int reply = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    int null = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (reply < 0 || null < 0 || dup2(null, STDOUT_FILENO) < 0)
        return -1;
    close(null);
    return reply;
}

int walk(int argc, char* argv[])
{
    int reply = setOutputAside();
    if (reply < 0)
        return refuse("standard output cannot be set aside");
    limitSelf();
    int result = mib_walk(argc, argv);
    if (dprintf(reply, "%s%s%d\n", kWalkCommand, kWalkEnding, result) < 0)
        return kWalkFailed;
    return result == 0 ? kDone : kWalkFailed;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc == 2 && strcmp(argv[1], "--help") == 0) {
        fputs(kUsage, stdout);
        return kDone;
    }
    if (argc == 2 && strcmp(argv[1], "--version") == 0) {
        puts("R4270Walker " PDE_VERSION);
        return kDone;
    }
    if (argc != 2 + static_cast<int>(kWalkParameters))
        return refuse("wrong number of arguments");
    if (std::vector<std::string>(argv + 1, argv + argc) != walkCommand(loginName(), argv[2 + kWalkHost]))
        return refuse("not the walk of the user's own");
    if (getuid() != geteuid() || getgid() != getegid())
        return refuse("not to be installed set-id");
    return walk(argc - 1 - kWalkLine, argv + 1 + kWalkLine);
}
