#include "Commands.h"

#include "ListCommands.h"
#include "Permission.h"
#include "Process.h"
#include "Staging.h"
#include "WalkStart.h"
#include "profiles/HelperChannel.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <unistd.h>

namespace {

constexpr int kFailed = 1;
constexpr int kUsageError = 2;

bool isUrlOfList(const Account& account, const char* url)
{
    return url == fileUrl(account.currentPath);
}

Reply writePiece(const Account& account, Parameters parameters)
{
    if (!isUrlOfList(account, parameters[0]))
        return kForeignPath;
    return *parameters[1] == '\0' ? kWrongParameters : stagePiece(account, parameters[1]);
}

Reply renameList(const Account& account, Parameters parameters)
{
    return isUrlOfList(account, parameters[0]) ? publishStagedList(account) : kForeignPath;
}

Reply askPermission(const Account& account, Parameters parameters)
{
    return parameters[0] == account.currentPath ? kDone : kForeignPath;
}

Reply swap(const Account& account, Parameters parameters)
{
    if (parameters[1] != account.currentPath || parameters[2] != account.previousPath)
        return kForeignPath;
    std::string_view mode = parameters[0];
    if (mode == kKeepPreviousCopy)
        return copyList(account, account.currentName, account.previousName);
    return mode == kPutBackPreviousCopy ? copyList(account, account.previousName, account.currentName)
                                        : kNoSuchMode;
}

Reply askExistence(const Account& account, Parameters parameters)
{
    return parameters[0] == account.currentPath ? currentListExists(account) : kForeignPath;
}

Reply remove(const Account& account, Parameters parameters)
{
    if (parameters[0] == account.currentPath)
        return removeList(account, account.currentName);
    return parameters[0] == account.previousPath ? removeList(account, account.previousName) : kForeignPath;
}

Reply walk(const Account& account, Parameters parameters)
{
    std::string host = parameters[kWalkHost];
    std::vector<std::string> command = walkCommand(account.login, host);
    bool fixed = std::equal(parameters.begin(), parameters.end(), command.begin() + 1, command.end());
    return fixed && isHostAddress(host) ? startWalk(account, command) : kWrongParameters;
}

constexpr Command kCommands[] = {
    {kWritePieceCommand, 2, writePiece, "URL PIECE", "stage one piece of a new list"},
    {kRenameCommand, 1, renameList, "URL", "make the staged pieces the list"},
    {kAdministratorCommand, 1, askPermission, "PATH", "may this user manage his lists?"},
    {kSwapCommand, 3, swap, "MODE PATH COPY", "2: keep a copy, 3: put the copy back"},
    {kExistCommand, 1, askExistence, "PATH", "is there a list?", Who::kAnybody},
    {kRemoveCommand, 1, remove, "PATH", "remove the list or its copy"},
    {kWalkCommand, kWalkParameters, walk, "R4270 LOGIN ARGUMENT...", "read the printer's profile table"},
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

std::string help()
{
    std::string text = "usage: R4270Helper COMMAND PARAMETER...\n"
                       "\n"
                       "Changes the calling user's profile lists of the R4270 printer driver. The driver's\n"
                       "print dialog panel and profilectl start it; there is no need to do so by hand.\n"
                       "\n";
    for (const Command& command : kCommands) {
        char line[128];
        std::string call = std::string(command.name) + " " + command.usage;
        snprintf(line, sizeof line, "  %-40s %s\n", call.c_str(), command.purpose);
        text += line;
    }
    return text + "\nAnswers COMMAND=TRUE (exit status 0) or COMMAND=FALSE (1); 2: no such command.\n";
}

Reply run(const Command& command, Parameters parameters)
{
    try {
        if (parameters.size() != command.parameters)
            return kWrongParameters;
        std::optional<Account> account = callingAccount();
        if (!account)
            return kNoAccount;
        if (!hasOwnersRights())
            return kNotRoot;
        if (command.mayRun == Who::kAdministrators && !mayManageLists(*account))
            return kNotPermitted;
        return command.run(*account, parameters);
    } catch (const std::exception&) {
        return kNoMemory; // nothing else throws
    }
}

} // namespace

std::span<const Command> commands()
{
    return kCommands;
}

int runHelper(int argc, const char* const* argv)
{
    std::string_view name = argc > 1 ? argv[1] : "";
    if (argc == 2 && (name == "--help" || name == "--version")) {
        print(STDOUT_FILENO, name == "--help" ? help() : "R4270Helper " PDE_VERSION "\n");
        return 0;
    }
    for (const Command& command : kCommands) {
        if (command.name != name)
            continue;
        Reply reply = run(command, Parameters(argv + 2, static_cast<size_t>(argc - 2)));
        bool done(reply.outcome);
        if (!done)
            print(STDERR_FILENO, std::string("R4270Helper: ") + reply.outcome.reason + "\n");
        print(STDOUT_FILENO, command.name + (done ? reply.ending : kFailedEnding) + "\n");
        return done ? 0 : kFailed;
    }
    print(STDERR_FILENO, "R4270Helper: no such command; see R4270Helper --help\n");
    return kUsageError;
}
