#include "Permission.h"

#include "profiles/BuildKind.h"

#include <algorithm>
#include <grp.h>
#include <pwd.h>
#include <unistd.h>
#include <vector>

bool mayManageLists(const Account& account)
{
    if (getuid() == 0 || isAdministratorByFolder(account.folder))
        return true;
    const group* administrators = getgrnam(PDE_ADMIN_GROUP);
    const passwd* user = getpwuid(getuid());
    if (administrators == nullptr || user == nullptr)
        return false;
    // His primary group in the database; the process's own may be any that he could switch to.
    std::vector<gid_t> groups(64);
    int count = static_cast<int>(groups.size());
    while (getgrouplist(user->pw_name, user->pw_gid, groups.data(), &count) < 0)
        groups.resize(static_cast<size_t>(count));
    groups.resize(static_cast<size_t>(count));
    return std::find(groups.begin(), groups.end(), administrators->gr_gid) != groups.end();
}
