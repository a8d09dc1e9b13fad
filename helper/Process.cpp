#include "Process.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>
#include <vector>

namespace {

// Root's own id where the helper is installed; the caller's where it is not set-id.
uid_t privileged = static_cast<uid_t>(-1);

struct Limit {
    __rlimit_resource resource;
    rlimit caller;
};
// Too low, each of these would stop a write half-way.
std::array<Limit, 7> limits = {{{RLIMIT_FSIZE, {}},
                                {RLIMIT_NOFILE, {}},
                                {RLIMIT_CPU, {}},
                                {RLIMIT_AS, {}},
                                {RLIMIT_DATA, {}},
                                {RLIMIT_STACK, {}},
                                {RLIMIT_CORE, {}}}};

void clearEnvironment()
{
#ifdef PDE_DEV_ROOT
    // Where a development build has its files, and where the tests' printer listens.
    std::vector<std::pair<const char*, std::string>> kept;
    for (const char* name : {"PDE_ROOT", "SNMPCONFPATH", "SNMP_PERSISTENT_DIR", "MIBS"})
        if (const char* value = getenv(name))
            kept.emplace_back(name, value);
#endif
    clearenv();
    setenv("PATH", "/usr/bin:/bin", 1);
    setenv("LC_ALL", "C", 1);
#ifdef PDE_DEV_ROOT
    for (const auto& [name, value] : kept)
        setenv(name, value.c_str(), 1);
#endif
}

void raiseLimits()
{
    for (Limit& limit : limits) {
        getrlimit(limit.resource, &limit.caller);
        rlimit wanted = {RLIM_INFINITY, RLIM_INFINITY};
        if (limit.resource == RLIMIT_CORE)
            wanted = {0, 0};
        else if (limit.resource == RLIMIT_NOFILE)
            wanted = {256, 256};
        else if (limit.resource == RLIMIT_STACK)
            wanted = {8 << 20, RLIM_INFINITY};
        if (setrlimit(limit.resource, &wanted) == 0)
            continue;
        // Not root: as far as the caller's own ceiling allows.
        wanted = {limit.caller.rlim_max, limit.caller.rlim_max};
        (void)setrlimit(limit.resource, &wanted);
    }
}

bool settleDescriptors()
{
    for (int number = 0; number < 3; ++number)
        if (fcntl(number, F_GETFD) < 0 && open("/dev/null", O_RDWR) != number)
            return false;
    closefrom(3);
    return true;
}

void settleSignals()
{
    itimerval off = {};
    setitimer(ITIMER_VIRTUAL, &off, nullptr);
    setitimer(ITIMER_PROF, &off, nullptr);
    alarm(0);
    struct sigaction standard = {};
    standard.sa_handler = SIG_DFL;
    struct sigaction ignored = {};
    ignored.sa_handler = SIG_IGN;
    for (int number = 1; number < NSIG; ++number) {
        (void)sigaction(number, &ignored, nullptr); // forgets one that the caller left waiting
        (void)sigaction(number, &standard, nullptr);
    }
    // A reader that has gone, or a file that may not grow, is an error of the call and not the end.
    sigaction(SIGPIPE, &ignored, nullptr);
    sigaction(SIGXFSZ, &ignored, nullptr);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    // The default action ends the process.
    alarm(kDeadlineSeconds);
}

} // namespace

bool settleProcess()
{
    clearEnvironment();
    privileged = geteuid();
#ifdef PDE_DEV_ROOT
    // A development build reads a variable of its caller, so it must never be set-id.
    if (privileged != getuid() || getegid() != getgid())
        return false;
#endif
    raiseLimits();
    if (!settleDescriptors())
        return false;
    settleSignals();
    umask(077);
    if (chdir("/") != 0 || prctl(PR_SET_DUMPABLE, 0) != 0)
        return false;
    return seteuid(getuid()) == 0;
}

RootScope::RootScope()
{
    if (seteuid(privileged) != 0)
        _exit(1);
}

RootScope::~RootScope()
{
    if (seteuid(getuid()) != 0)
        _exit(1);
}

uid_t privilegedUser()
{
    return privileged;
}

bool becomeRealUser()
{
    alarm(0);
    struct sigaction standard = {};
    standard.sa_handler = SIG_DFL;
    sigaction(SIGPIPE, &standard, nullptr);
    sigaction(SIGXFSZ, &standard, nullptr);
    uid_t user = getuid();
    gid_t group = getgid();
    if (seteuid(privileged) != 0)
        return false;
    for (const Limit& limit : limits)
        (void)setrlimit(limit.resource, &limit.caller); // root may, and another can only keep his own
    if (setresgid(group, group, group) != 0 || setresuid(user, user, user) != 0)
        return false;
    return user == 0 || (setuid(0) != 0 && seteuid(0) != 0);
}
