#include "ListCommands.h"

#include "ListFolder.h"
#include "Process.h"
#include "Staging.h"
#include "profiles/ProfileListFile.h"

#include <fcntl.h>

namespace {

Outcome openLocked(const Account& account, ListFolder& folder)
{
    RootScope root;
    Outcome outcome = folder.open(account);
    return outcome == Outcome::kDone ? folder.lock() : outcome;
}

Outcome readOwnFile(const ListFolder& folder, const std::string& name, Outcome whenAbsent, std::string& text)
{
    if (stateOf(folder, name) == NameState::kAbsent)
        return whenAbsent;
    Descriptor file = openOwnFile(folder, name, O_RDONLY);
    return file ? readAll(file, text) : Outcome::kUnsafeFile;
}

Outcome copyOver(const ListFolder& folder, const std::string& text, const std::string& to)
{
    std::string copy = ".R4270-copy-" + std::to_string(getuid());
    Descriptor file = makeOwnFile(folder, copy);
    Outcome outcome = file && writeAll(file, text) ? publish(folder, file, copy, to) : Outcome::kFileError;
    if (outcome != Outcome::kDone)
        (void)removeOwnFile(folder, copy); // the next swap would replace it anyway
    return outcome;
}

} // namespace

Outcome publishStagedList(const Account& account)
{
    ListFolder folder;
    if (Outcome outcome = openLocked(account, folder); outcome != Outcome::kDone)
        return outcome;
    std::string name;
    std::string text;
    Descriptor file;
    {
        RootScope root;
        std::optional<std::string> staged = stagingName();
        if (!staged)
            return Outcome::kNoCaller;
        name = *staged;
        if (stateOf(folder, name) == NameState::kAbsent)
            return Outcome::kNoWriteBegun;
        file = openOwnFile(folder, name, O_RDONLY);
        if (!file)
            return Outcome::kUnsafeFile;
        if (Outcome outcome = readAll(file, text); outcome != Outcome::kDone)
            return outcome;
    }
    // The parser sees what the user sent, so it works with the user's rights.
    bool valid = isListFileText(text);
    RootScope root;
    if (valid)
        return publish(folder, file, name, account.currentName);
    (void)removeOwnFile(folder, name); // what stays would be refused again
    return Outcome::kNotAProfileList;
}

Outcome swapLists(const Account& account, int mode)
{
    if (mode != kKeepPreviousCopy && mode != kPutBackPreviousCopy)
        return Outcome::kNoSuchMode;
    bool keep = mode == kKeepPreviousCopy;
    const std::string& from = keep ? account.currentName : account.previousName;
    const std::string& to = keep ? account.previousName : account.currentName;
    ListFolder folder;
    if (Outcome outcome = openLocked(account, folder); outcome != Outcome::kDone)
        return outcome;
    std::string text;
    {
        RootScope root;
        Outcome whenAbsent = keep ? Outcome::kNoList : Outcome::kNoPreviousCopy;
        Outcome outcome = readOwnFile(folder, from, whenAbsent, text);
        if (outcome != Outcome::kDone)
            return outcome;
    }
    if (!keep && !isListFileText(text))
        return Outcome::kNotAProfileList;
    RootScope root;
    return copyOver(folder, text, to);
}

Outcome currentListExists(const Account& account)
{
    RootScope root;
    ListFolder folder;
    if (Outcome outcome = folder.open(account); outcome != Outcome::kDone)
        return outcome;
    return stateOf(folder, account.currentName) == NameState::kOwnFile ? Outcome::kDone : Outcome::kNoList;
}

Outcome removeList(const Account& account, const std::string& name)
{
    ListFolder folder;
    if (Outcome outcome = openLocked(account, folder); outcome != Outcome::kDone)
        return outcome;
    RootScope root;
    switch (stateOf(folder, name)) {
    case NameState::kAbsent:
        return name == account.currentName ? Outcome::kNoList : Outcome::kNoPreviousCopy;
    case NameState::kSomethingElse:
        return Outcome::kUnsafeFile;
    case NameState::kOwnFile:
        break;
    }
    return removeOwnFile(folder, name) ? Outcome::kDone : Outcome::kFileError;
}
