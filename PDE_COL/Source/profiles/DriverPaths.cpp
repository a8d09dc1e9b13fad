#include "profiles/DriverPaths.h"

#include "profiles/BuildKind.h"

#include <cerrno>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr size_t kLongestListPath = 254;

const char kPreferencesFolder[] = "/Library/Printers/QUORVEX/Preferences/vendor.quorvex.printers.R4270";

std::string listPath(const std::string& login, const char* ending)
{
    if (login.empty())
        return {};
    return driverRoot() +
           (std::string(kPreferencesFolder) + "/" + login + ending).substr(0, kLongestListPath);
}

std::string lookUpLoginName(uid_t user)
{
    std::vector<char> buffer(1024);
    passwd entry{};
    passwd* found = nullptr;
    int error;
    while ((error = getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found)) == ERANGE ||
           error == EINTR) {
        if (error == ERANGE)
            buffer.resize(buffer.size() * 2);
    }
    return error == 0 && found != nullptr ? entry.pw_name : "";
}

} // namespace

std::string preferencesFolder()
{
    return driverRoot() + kPreferencesFolder;
}

std::string currentListPath(const std::string& login)
{
    return listPath(login, "-R4270-profile.plist");
}

std::string previousListPath(const std::string& login)
{
    return listPath(login, "-R4270-profile.prev.plist");
}

std::string loginName()
{
    // The list's path is asked for at every read, and a password database may be across a network.
    static uid_t cachedUser;
    static std::string cachedName;
    uid_t user = getuid();
    if (cachedName.empty() || cachedUser != user) {
        cachedName = lookUpLoginName(user);
        cachedUser = user;
    }
    return cachedName;
}

std::string helperExecutable()
{
    return driverRoot() + "/Library/Application Support/QUORVEX/R4270/Helpers/R4270Helper.app/Contents/MacOS/"
                          "R4270Helper";
}

std::string profileFolder()
{
    return driverRoot() + "/Library/Printers/QUORVEX/R4270/Profiles";
}

std::string fileExistsIcon()
{
    return driverRoot() + "/Library/Printers/QUORVEX/R4270/Icons/fileExistqxR4270.icns";
}

std::string downloadManagerApplication()
{
    return driverRoot() + "/Applications/Download Manager R4270/QUORVEX Download Manager.app";
}
