#include "Account.h"

#include "profiles/DriverPaths.h"

#include <algorithm>

bool mayNameFiles(std::string_view login)
{
    // Well below what would make the path of a list be cut: a cut one could name another user's file.
    constexpr size_t kLongestLogin = 128;
    return !login.empty() && login.size() <= kLongestLogin && login.front() != '.' && login.front() != '-' &&
           std::none_of(login.begin(), login.end(),
                        [](unsigned char c) { return c < 0x20 || c == 0x7F || c == '/'; });
}

std::optional<Account> callingAccount()
{
    Account account = {loginName(), preferencesFolder(), currentListPath(), previousListPath(), {}, {}};
    if (!mayNameFiles(account.login))
        return std::nullopt;
    account.currentName = account.currentPath.substr(account.folder.size() + 1);
    account.previousName = account.previousPath.substr(account.folder.size() + 1);
    return account;
}
