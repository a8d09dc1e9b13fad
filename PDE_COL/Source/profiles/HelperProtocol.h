#pragma once

#include <string>
#include <vector>

// What the helper, the walker and the programs that start them agree on. A command is the first argument,
// its parameters follow. The reply is the command's name and one of the endings below on a line of its own.

inline constexpr char kWritePieceCommand[] = "writeDataToPlistFile_XPC";
inline constexpr char kRenameCommand[] = "writeDataToPlistFileRename_XPC";
inline constexpr char kAdministratorCommand[] = "velPListIsAdminProfile_XPC";
inline constexpr char kSwapCommand[] = "velPListSwapProfile_XPC";
inline constexpr char kExistCommand[] = "velPListExistProfile_XPC";
inline constexpr char kRemoveCommand[] = "velPListRemove_XPC";
inline constexpr char kWalkCommand[] = "mibwalk_XPC";

inline constexpr char kDoneEnding[] = "=TRUE";
inline constexpr char kFailedEnding[] = "=FALSE";
/// Before the exit value of a walk, a decimal number.
inline constexpr char kWalkEnding[] = "=iRet=";

/// The modes of a swap that do something.
inline constexpr char kKeepPreviousCopy[] = "2";    ///< copies the current list to the previous copy
inline constexpr char kPutBackPreviousCopy[] = "3"; ///< and back

/// The longest list file in bytes, well above any that is written.
inline constexpr size_t kLongestListFile = 4 << 20;

/// A walk's parameters, and which of them is the host address.
inline constexpr size_t kWalkParameters = 10;
inline constexpr size_t kWalkHost = 8;

/// The whole walk command of the user `login` for the printer at `host`.
inline std::vector<std::string> walkCommand(const std::string& login, const std::string& host)
{
    return {kWalkCommand,
            "R4270",
            login,
            "snmpwalk",
            "-Os",
            "-c",
            "vislaq",
            "-v",
            "1",
            host,
            "1.3.6.1.4.1.99999.1.1.1.1.6.13.1.1"};
}

/// Where the walk's own command line begins in it: after the command, the model and the user.
inline constexpr int kWalkLine = 3;
