#pragma once

#include "Account.h"
#include "Outcome.h"
#include "profiles/HelperProtocol.h"

#include <span>

/// What a command gives back: its outcome and, when it is done, what follows its name in the reply.
struct Reply {
    Reply(Outcome outcome, std::string ending = kDoneEnding) : outcome(outcome), ending(std::move(ending)) {}
    Outcome outcome;
    std::string ending;
};

using Parameters = std::span<const char* const>;

enum class Who { kAdministrators, kAnybody };

struct Command {
    const char* name;
    size_t parameters;
    Reply (*run)(const Account&, Parameters); ///< gets as many parameters as it has
    const char* usage;                        ///< the parameters' names, for --help
    const char* purpose;                      ///< a few words, for --help
    Who mayRun = Who::kAdministrators;        ///< asked before `run`, so that no command can forget to
};

/// Every command there is.
std::span<const Command> commands();

/// Runs the command that the arguments name, as main's arguments are given (`argc` may be 0), and writes the
/// reply: the command's name and "=TRUE" or "=FALSE" on a line of its own, and for a failure the reason on
/// standard error. Gives the exit status: 0 done, 1 refused or failed, 2 no such command. A walk that starts
/// does not return.
int runHelper(int argc, const char* const* argv);
