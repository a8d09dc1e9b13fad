#include "Account.h"

#include "profiles/DriverPaths.h"

namespace {

// Well below what would make the path of a list be cut: a cut one could name another user's file.
constexpr size_t kLongestLogin = 128;

} // namespace

bool mayNameFiles(std::string_view login)
{
    if (login.empty() || login.size() > kLongestLogin || login.front() == '.' || login.front() == '-')
        return false;
    for (unsigned char c : login)
        if (c < 0x20 || c == 0x7F || c == '/')
            return false;
    return true;
}

std::optional<Account> callingAccount()
{
    Account account;
    account.login = loginName();
    account.folder = preferencesFolder();
    account.currentPath = currentListPath();
    account.previousPath = previousListPath();
    if (!mayNameFiles(account.login))
        return std::nullopt;
    std::string start = account.folder + "/" + account.login + "-";
    if (!account.currentPath.starts_with(start) || !account.previousPath.starts_with(start))
        return std::nullopt;
    account.currentName = account.currentPath.substr(account.folder.size() + 1);
    account.previousName = account.previousPath.substr(account.folder.size() + 1);
    return account;
}
