#pragma once

#include <stdexcept>
#include <string>

/// Exit statuses that scripts rely on; docs/profilectl.md says the same.
enum ExitStatus {
    kDone = 0,
    kFaultFound = 1,   ///< `check` found a fault, or the list file is damaged
    kBadInput = 2,     ///< the command line, a name or an imported file breaks the rules
    kNotPossible = 3,  ///< the profile is not there, is there already, or there is no room
    kNoPermission = 4, ///< the user may not manage the lists, or the helper is not installed
    kNotWritten = 5,
};

/// Ends a command: the message is for the user, the status for his script.
class CommandError : public std::runtime_error {
public:
    CommandError(ExitStatus exitStatus, const std::string& message)
        : std::runtime_error(message), status(exitStatus)
    {
    }
    const ExitStatus status;
};
