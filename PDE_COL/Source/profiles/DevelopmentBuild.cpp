#include "profiles/BuildKind.h"

#include <algorithm>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

std::string driverRoot()
{
    const char* root = getenv("PDE_ROOT");
    return root != nullptr && *root != '\0' ? root : PDE_DEV_ROOT;
}

std::vector<std::string> keptEnvironment()
{
    std::vector<std::string> kept;
    for (const char* name : {"PDE_ROOT", "SNMPCONFPATH"})
        if (const char* value = getenv(name))
            kept.push_back(std::string(name) + "=" + value);
    return kept;
}

bool mayConfigureWalk()
{
    return getenv("SNMPCONFPATH") != nullptr;
}

uid_t ownerOfLists()
{
    return getuid();
}

size_t uncheckedLength(std::string_view folder)
{
    return std::min(folder.rfind("/Library/Printers/"), folder.size());
}

mode_t forbiddenBits()
{
    return S_IWOTH;
}

bool isAdministratorByFolder(const std::string& folder)
{
    struct stat found = {};
    return lstat(folder.c_str(), &found) == 0 && found.st_uid == getuid();
}
