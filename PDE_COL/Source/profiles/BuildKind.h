#pragma once

#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

// All that a development build does differently from one that is installed. Each kind of build has its
// answers in a source file of its own: DevelopmentBuild.cpp and InstalledBuild.cpp.

/// In front of every absolute path of the driver. A development build's is the environment variable PDE_ROOT
/// if set, else root/ in the build folder; an installed build has none and reads no variable.
std::string driverRoot();

/// The variables of its caller's that a program of the driver reads or passes on, as "NAME=value": none in an
/// installed build.
std::vector<std::string> keptEnvironment();

/// Whether net-snmp may read a configuration, which says where the tests' printer listens.
bool mayConfigureWalk();

/// The user whom the lists and their folder belong to and the helper works as: root. In a development build,
/// which must never be set-id, the user who runs it.
uid_t ownerOfLists();

/// How much of the front of the preferences folder's path nobody checks: nothing. In a development build
/// what is above /Library/Printers, the developer's own folders; all of it when that is not on the way.
size_t uncheckedLength(std::string_view folder);

/// The write bits that no list and no folder on the checked way may have; in a development build those for
/// the group are free.
mode_t forbiddenBits();

/// Whether the calling user counts as an administrator, in a group of them or not: never. In a development
/// build the owner of the preferences folder does.
bool isAdministratorByFolder(const std::string& folder);
