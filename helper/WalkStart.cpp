#include "WalkStart.h"

#include "Arguments.h"
#include "ListFolder.h"
#include "Process.h"
#include "profiles/DriverPaths.h"

#include <array>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

extern char** environ;

namespace {

std::string walkerExecutable()
{
    std::string helper = helperExecutable();
    return helper.substr(0, helper.rfind('/') + 1) + "R4270Walker";
}

Outcome lockTheWalk(const Account& account, Descriptor& lock)
{
    RootScope root;
    ListFolder folder;
    if (Outcome outcome = folder.open(account); outcome != Outcome::kDone)
        return outcome;
    lock = openLockFile(folder, ".R4270-walk-" + std::to_string(getuid()));
    if (!lock)
        return Outcome::kUnsafeFile;
    if (flock(lock.get(), LOCK_EX | LOCK_NB) != 0)
        return Outcome::kBusy;
    return fcntl(lock.get(), F_SETFD, 0) == 0 ? Outcome::kDone : Outcome::kFileError;
}

} // namespace

Outcome startWalk(const Account& account, const char* host)
{
    Descriptor lock;
    if (Outcome outcome = lockTheWalk(account, lock); outcome != Outcome::kDone)
        return outcome;
    std::string walker = walkerExecutable();
    std::array<const char*, kWalkParameters + 3> arguments = {walker.c_str(), "mibwalk_XPC"};
    for (size_t i = 0; i < kWalkParameters; ++i)
        arguments[i + 2] = kWalkArguments[i];
    arguments[kWalkLogin + 2] = account.login.c_str();
    arguments[kWalkHost + 2] = host;
    if (!becomeRealUser())
        _exit(1);
    // The environment is the one that settleProcess made.
    execve(walker.c_str(), const_cast<char* const*>(arguments.data()), environ);
    return Outcome::kNoWalker;
}
