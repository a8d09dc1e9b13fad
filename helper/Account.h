#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The calling user, known from the real user id alone, and the names of his files.
struct Account {
    std::string login;
    std::string folder;       ///< the preferences folder
    std::string currentPath;  ///< of his current list
    std::string previousPath; ///< of its previous copy
    std::string currentName;  ///< of his current list, inside the folder
    std::string previousName; ///< of its previous copy, inside the folder
};

/// Empty when the user has no password entry, or one whose name cannot be part of a file name.
std::optional<Account> callingAccount();

/// True when files may be named after `login`: 1 to 128 bytes, no "/", no control character, no leading "."
/// or "-".
bool mayNameFiles(std::string_view login);
