#include "WalkStart.h"

#include "ListFolder.h"
#include "Process.h"
#include "profiles/DriverPaths.h"

#include <algorithm>
#include <arpa/inet.h>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

Outcome lockTheWalk(const Account& account, Descriptor& lock)
{
    RootScope root;
    ListFolder folder;
    if (Outcome outcome = folder.open(account); !outcome)
        return outcome;
    lock = openLockFile(folder, ".R4270-walk-" + std::to_string(getuid()));
    if (!lock)
        return kUnsafeFile;
    if (flock(lock.get(), LOCK_EX | LOCK_NB) != 0)
        return kBusy;
    return fcntl(lock.get(), F_SETFD, 0) == 0 ? kDone : kFileError;
}

} // namespace

bool isHostAddress(std::string_view text)
{
    constexpr size_t kLongestHost = 253;
    auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    // Where a name ends in a number, resolvers take odd forms of addresses for one: 2130706433, 127.1.
    std::string_view last = text.substr(text.rfind('.') + 1);
    in_addr address;
    if (!last.empty() && std::all_of(last.begin(), last.end(), isDigit) &&
        inet_pton(AF_INET, std::string(text).c_str(), &address) != 1)
        return false;
    return !text.empty() && text.size() <= kLongestHost && text.front() != '-' &&
           std::all_of(text.begin(), text.end(), [&](char c) {
               return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || isDigit(c) || c == '.' ||
                      c == '-' || c == '_';
           });
}

Outcome startWalk(const Account& account, std::vector<std::string> command)
{
    Descriptor lock;
    if (Outcome outcome = lockTheWalk(account, lock); !outcome)
        return outcome;
    std::string helper = helperExecutable();
    command.insert(command.begin(), helper.substr(0, helper.rfind('/') + 1) + "R4270Walker");
    std::vector<char*> arguments(command.size() + 1, nullptr);
    std::transform(command.begin(), command.end(), arguments.begin(),
                   [](std::string& argument) { return argument.data(); });
    if (!becomeRealUser())
        _exit(1);
    // The environment is the one that settleProcess made.
    execv(arguments[0], arguments.data());
    return kNoWalker;
}
