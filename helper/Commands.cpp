#include "Commands.h"

#include "Account.h"
#include "Arguments.h"
#include "ListCommands.h"
#include "Permission.h"
#include "Staging.h"
#include "WalkStart.h"

#include <exception>
#include <unistd.h>

namespace {

constexpr int kFailed = 1;
constexpr int kUsageError = 2;

constexpr std::string_view kHelp =
    "usage: R4270Helper COMMAND PARAMETER...\n"
    "\n"
    "Changes the calling user's profile lists of the R4270 printer driver. The driver's\n"
    "print dialog panel and profilectl start it; there is no need to do so by hand.\n"
    "\n"
    "  writeDataToPlistFile_XPC URL PIECE       stage one piece of a new list\n"
    "  writeDataToPlistFileRename_XPC URL       make the staged pieces the list\n"
    "  velPListIsAdminProfile_XPC PATH          may this user manage his lists?\n"
    "  velPListSwapProfile_XPC MODE PATH COPY   2: keep a copy, 3: put the copy back\n"
    "  velPListExistProfile_XPC PATH            is there a list?\n"
    "  velPListRemove_XPC PATH                  remove the list or its copy\n"
    "  mibwalk_XPC R4270 LOGIN ARGUMENT...      read the printer's profile table\n"
    "\n"
    "Answers COMMAND=TRUE (exit status 0) or COMMAND=FALSE (1); 2: no such command.\n";

constexpr std::string_view kVersion = "R4270Helper " PDE_VERSION "\n";

using Parameters = const char* const*;

Outcome writePiece(const Account& account, Parameters parameters)
{
    if (!isFileUrlOf(parameters[0], account.currentPath))
        return Outcome::kForeignPath;
    return *parameters[1] == '\0' ? Outcome::kWrongParameters : stagePiece(account, parameters[1]);
}

Outcome renameList(const Account& account, Parameters parameters)
{
    return isFileUrlOf(parameters[0], account.currentPath) ? publishStagedList(account) : Outcome::kForeignPath;
}

Outcome askPermission(const Account& account, Parameters parameters)
{
    return parameters[0] == account.currentPath ? Outcome::kDone : Outcome::kForeignPath;
}

Outcome swap(const Account& account, Parameters parameters)
{
    std::optional<int> mode = decimalNumber(parameters[0]);
    if (!mode)
        return Outcome::kWrongParameters;
    bool own = parameters[1] == account.currentPath && parameters[2] == account.previousPath;
    return own ? swapLists(account, *mode) : Outcome::kForeignPath;
}

Outcome askExistence(const Account& account, Parameters parameters)
{
    return parameters[0] == account.currentPath ? currentListExists(account) : Outcome::kForeignPath;
}

Outcome remove(const Account& account, Parameters parameters)
{
    if (parameters[0] == account.currentPath)
        return removeList(account, account.currentName);
    return parameters[0] == account.previousPath ? removeList(account, account.previousName)
                                                 : Outcome::kForeignPath;
}

Outcome walk(const Account& account, Parameters parameters)
{
    return areWalkParameters(parameters, account.login) ? startWalk(account, parameters[kWalkHost])
                                                        : Outcome::kWrongParameters;
}

enum class Who { kAdministrators, kAnybody };

struct Command {
    std::string_view name;
    int parameters;
    Outcome (*run)(const Account&, Parameters);
    Who mayRun = Who::kAdministrators; ///< asked before `run`, so that no command can forget to
};

constexpr Command kCommands[] = {
    {"writeDataToPlistFile_XPC", 2, writePiece},
    {"writeDataToPlistFileRename_XPC", 1, renameList},
    {"velPListIsAdminProfile_XPC", 1, askPermission},
    {"velPListSwapProfile_XPC", 3, swap},
    {"velPListExistProfile_XPC", 1, askExistence, Who::kAnybody},
    {"velPListRemove_XPC", 1, remove},
    {"mibwalk_XPC", kWalkParameters, walk},
};

// A reader that has gone loses the reply; what was done on the disk stays.
void print(int file, std::string_view text)
{
    while (!text.empty()) {
        ssize_t written = write(file, text.data(), text.size());
        if (written <= 0)
            return;
        text.remove_prefix(static_cast<size_t>(written));
    }
}

Outcome run(const Command& command, int count, Parameters parameters)
{
    try {
        if (count != command.parameters)
            return Outcome::kWrongParameters;
        std::optional<Account> account = callingAccount();
        if (!account)
            return Outcome::kNoAccount;
        if (command.mayRun == Who::kAdministrators && !mayManageLists(*account))
            return Outcome::kNotPermitted;
        return command.run(*account, parameters);
    } catch (const std::exception&) {
        return Outcome::kFileError; // out of memory
    }
}

} // namespace

int runHelper(int argc, const char* const* argv)
{
    std::string_view name = argc > 1 ? argv[1] : "";
    if (argc == 2 && name == "--help") {
        print(STDOUT_FILENO, kHelp);
        return 0;
    }
    if (argc == 2 && name == "--version") {
        print(STDOUT_FILENO, kVersion);
        return 0;
    }
    for (const Command& command : kCommands) {
        if (command.name != name)
            continue;
        Outcome outcome = run(command, argc - 2, argv + 2);
        bool done = outcome == Outcome::kDone;
        if (!done)
            print(STDERR_FILENO, std::string("R4270Helper: ") + reasonFor(outcome) + "\n");
        print(STDOUT_FILENO, std::string(name) + (done ? "=TRUE\n" : "=FALSE\n"));
        return done ? 0 : kFailed;
    }
    print(STDERR_FILENO, "R4270Helper: no such command; see R4270Helper --help\n");
    return kUsageError;
}
