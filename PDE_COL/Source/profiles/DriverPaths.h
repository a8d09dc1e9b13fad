#pragma once

#include <string>

// Every absolute path of the driver, each with driverRoot() in front. None of the calls touches the disk, but
// for the password database.

/// "/Library/Printers/QUORVEX/Preferences/vendor.quorvex.printers.R4270"
std::string preferencesFolder();

/// Login name of the real user id, from the password database; empty when there is none.
std::string loginName();

/// The current list file, and its previous copy, of the user with this login name. Cut at 254 bytes, the
/// development root not counted. Empty when there is no name.
std::string currentListPath(const std::string& login = loginName());
std::string previousListPath(const std::string& login = loginName());

std::string helperExecutable();
/// The folder offered when a profile is registered by hand.
std::string profileFolder();
/// The icon of a profile that was found on the printer.
std::string fileExistsIcon();
std::string downloadManagerApplication();
