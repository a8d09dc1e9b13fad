#include "Process.h"

#include "profiles/BuildKind.h"

#include <array>
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
    rlimit wanted;
    rlimit caller;
};
constexpr rlimit kNone = {RLIM_INFINITY, RLIM_INFINITY};
// Too low, each of these would stop a write half-way; a core file would show root's memory.
std::array<Limit, 7> limits = {{{RLIMIT_FSIZE, kNone, {}},
                                {RLIMIT_NOFILE, {256, 256}, {}},
                                {RLIMIT_CPU, kNone, {}},
                                {RLIMIT_AS, kNone, {}},
                                {RLIMIT_DATA, kNone, {}},
                                {RLIMIT_STACK, {8 << 20, RLIM_INFINITY}, {}},
                                {RLIMIT_CORE, {0, 0}, {}}}};

void replaceEnvironment()
{
    static std::vector<std::string> environment = keptEnvironment();
    clearenv();
    environment.insert(environment.end(), {"PATH=/usr/bin:/bin", "LC_ALL=C"});
    for (std::string& entry : environment)
        putenv(entry.data());
}

void raiseLimits()
{
    for (Limit& limit : limits) {
        getrlimit(limit.resource, &limit.caller);
        if (setrlimit(limit.resource, &limit.wanted) == 0)
            continue;
        // Not root: as far as the caller's own ceiling allows.
        rlimit ceiling = {limit.caller.rlim_max, limit.caller.rlim_max};
        (void)setrlimit(limit.resource, &ceiling);
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
    for (int number = 1; number < NSIG; ++number) {
        (void)signal(number, SIG_IGN); // forgets one that the caller left waiting
        (void)signal(number, SIG_DFL);
    }
    // A reader that has gone, or a file that may not grow, is an error of the call and not the end.
    (void)signal(SIGPIPE, SIG_IGN);
    (void)signal(SIGXFSZ, SIG_IGN);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    // The default action ends the process.
    alarm(kDeadlineSeconds);
}

// With the id the system sets back whether a set-id program may be dumped, to what the machine has for all.
bool actAs(uid_t user)
{
    bool acts = seteuid(user) == 0;
    (void)prctl(PR_SET_DUMPABLE, 0); // cannot fail
    return acts;
}

} // namespace

bool settleProcess()
{
    replaceEnvironment();
    privileged = geteuid();
    bool isSetId = privileged != getuid() || getegid() != getgid();
    if (isSetId && privileged != ownerOfLists())
        return false;
    raiseLimits();
    if (!settleDescriptors())
        return false;
    settleSignals();
    umask(077);
    return chdir("/") == 0 && actAs(getuid());
}

bool hasOwnersRights()
{
    return privileged == ownerOfLists();
}

RootScope::RootScope()
{
    if (!actAs(privileged))
        _exit(1);
}

RootScope::~RootScope()
{
    if (!actAs(getuid()))
        _exit(1);
}

bool becomeRealUser()
{
    alarm(0);
    (void)signal(SIGPIPE, SIG_DFL);
    (void)signal(SIGXFSZ, SIG_DFL);
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
