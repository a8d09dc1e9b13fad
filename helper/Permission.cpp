#include "Permission.h"

#include <algorithm>
#include <cerrno>
#include <grp.h>
#include <optional>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

// Room for an entry of the group database: some have thousands of members.
constexpr size_t kFirstEntrySize = 4096;
constexpr size_t kLargestEntrySize = 16 << 20;
constexpr int kMostGroups = 65536;

std::optional<gid_t> administratorsGroup()
{
    for (size_t size = kFirstEntrySize; size <= kLargestEntrySize; size *= 4) {
        std::vector<char> buffer(size);
        group entry = {};
        group* found = nullptr;
        int error = getgrnam_r(PDE_ADMIN_GROUP, &entry, buffer.data(), buffer.size(), &found);
        if (error == ERANGE)
            continue;
        if (error != 0 || found == nullptr)
            return std::nullopt;
        return found->gr_gid;
    }
    return std::nullopt;
}

bool isMember(const std::string& login, gid_t ownGroup, gid_t wanted)
{
    for (int room = 64; room <= kMostGroups; room *= 4) {
        std::vector<gid_t> groups(static_cast<size_t>(room));
        int count = room;
        if (getgrouplist(login.c_str(), ownGroup, groups.data(), &count) < 0)
            continue;
        groups.resize(static_cast<size_t>(count));
        return std::find(groups.begin(), groups.end(), wanted) != groups.end();
    }
    return false;
}

} // namespace

bool mayManageLists(const Account& account)
{
    if (getuid() == 0)
        return true;
#ifdef PDE_DEV_ROOT
    struct stat folder = {};
    if (lstat(account.folder.c_str(), &folder) == 0 && folder.st_uid == getuid())
        return true;
#endif
    std::optional<gid_t> wanted = administratorsGroup();
    if (!wanted)
        return false;
    // His primary group in the database; the process's own may be any that he could switch to.
    passwd entry = {};
    passwd* found = nullptr;
    std::vector<char> buffer(65536);
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr)
        return false;
    return isMember(account.login, found->pw_gid, *wanted);
}
