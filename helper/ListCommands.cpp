#include "ListCommands.h"

#include "ListFolder.h"
#include "Process.h"
#include "Staging.h"
#include "profiles/ProfileListFile.h"

#include <fcntl.h>

namespace {

// Opens the folder, waits for the user's other commands, opens the file `name` and reads it.
Outcome readLocked(const Account& account, const std::string& name, Outcome whenAbsent, ListFolder& folder,
                   Descriptor& file, std::string& text)
{
    RootScope root;
    if (Outcome outcome = folder.openLocked(account); !outcome)
        return outcome;
    if (stateOf(folder, name) == NameState::kAbsent)
        return whenAbsent;
    file = openOwnFile(folder, name, O_RDONLY);
    if (!file)
        return kUnsafeFile;
    FileProblem problem = readListFile(file.get(), text);
    return problem == FileProblem::kNone ? kDone : problem == FileProblem::kTooLong ? kTooLarge : kFileError;
}

Outcome absent(const Account& account, const std::string& name)
{
    return name == account.currentName ? kNoList : kNoPreviousCopy;
}

} // namespace

Outcome publishStagedList(const Account& account)
{
    std::optional<std::string> name;
    {
        RootScope root;
        name = stagingName(getppid());
    }
    if (!name)
        return kNoCaller;
    ListFolder folder;
    Descriptor file;
    std::string text;
    if (Outcome outcome = readLocked(account, *name, kNoWriteBegun, folder, file, text); !outcome)
        return outcome;
    // The parser sees what the user sent, so it works with the user's rights.
    bool valid = isListFileText(text);
    RootScope root;
    if (valid)
        return publish(folder, file, *name, account.currentName);
    (void)removeFile(folder, *name); // what stays would be refused again
    return kNotAProfileList;
}

Outcome copyList(const Account& account, const std::string& from, const std::string& to)
{
    ListFolder folder;
    Descriptor file;
    std::string text;
    if (Outcome outcome = readLocked(account, from, absent(account, from), folder, file, text); !outcome)
        return outcome;
    // What is damaged replaces neither a list nor the last good copy of one.
    if (!isListFileText(text))
        return kNotAProfileList;
    RootScope root;
    // Named like a write of the helper's own, so that the next write removes it should this process die.
    std::optional<std::string> name = stagingName(getpid());
    if (!name)
        return kNoCaller;
    Descriptor copy = makeOwnFile(folder, *name);
    Outcome outcome = copy && writeAll(copy, text) ? publish(folder, copy, *name, to) : kFileError;
    if (!outcome)
        (void)removeFile(folder, *name);
    return outcome;
}

Outcome currentListExists(const Account& account)
{
    RootScope root;
    ListFolder folder;
    if (Outcome outcome = folder.open(account); !outcome)
        return outcome;
    return stateOf(folder, account.currentName) == NameState::kOwnFile ? kDone : kNoList;
}

Outcome removeList(const Account& account, const std::string& name)
{
    RootScope root;
    ListFolder folder;
    if (Outcome outcome = folder.openLocked(account); !outcome)
        return outcome;
    switch (stateOf(folder, name)) {
    case NameState::kAbsent:
        return absent(account, name);
    case NameState::kSomethingElse:
        return kUnsafeFile;
    case NameState::kOwnFile:
        break;
    }
    return removeFile(folder, name) ? kDone : kFileError;
}
