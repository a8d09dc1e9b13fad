#include "ListFolder.h"

#include "profiles/BuildKind.h"

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace {

constexpr timespec kLockPause = {0, 2'000'000};
constexpr int kLockTries = 2000;

bool isTrustedOwner(uid_t owner)
{
    return owner == ownerOfLists() || owner == 0;
}

Descriptor openFolderAt(int above, const char* name)
{
    Descriptor folder(openat(above, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat found = {};
    if (!folder || fstat(folder.get(), &found) != 0 || !isTrustedOwner(found.st_uid) ||
        (found.st_mode & forbiddenBits()) != 0)
        return {};
    return folder;
}

bool isOwnFile(const struct stat& found)
{
    return S_ISREG(found.st_mode) && isTrustedOwner(found.st_uid) && (found.st_mode & forbiddenBits()) == 0;
}

template <typename Call>
auto untilNotInterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

} // namespace

Outcome ListFolder::open(const Account& account)
{
    std::string_view left = account.folder;
    std::string start(left.substr(0, uncheckedLength(left)));
    left.remove_prefix(start.size());
    folder_ = start.empty() ? openFolderAt(AT_FDCWD, "/")
                            : Descriptor(::open(start.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    while (folder_ && !left.empty()) {
        left.remove_prefix(1);
        std::string name(left.substr(0, left.find('/')));
        left.remove_prefix(name.size());
        folder_ = openFolderAt(folder_.get(), name.c_str());
    }
    return folder_ ? kDone : kUnsafeFolder;
}

Outcome ListFolder::openLocked(const Account& account)
{
    if (Outcome outcome = open(account); !outcome)
        return outcome;
    lock_ = openLockFile(*this, ".R4270-lock-" + std::to_string(getuid()));
    if (!lock_)
        return kUnsafeFile;
    for (int i = 0; i < kLockTries; ++i) {
        if (flock(lock_.get(), LOCK_EX | LOCK_NB) == 0)
            return kDone;
        if (errno != EWOULDBLOCK && errno != EINTR)
            return kFileError;
        nanosleep(&kLockPause, nullptr);
    }
    return kBusy;
}

NameState stateOf(const ListFolder& folder, const std::string& name)
{
    struct stat found = {};
    if (fstatat(folder.descriptor(), name.c_str(), &found, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT ? NameState::kAbsent : NameState::kSomethingElse;
    return isOwnFile(found) ? NameState::kOwnFile : NameState::kSomethingElse;
}

Descriptor openOwnFile(const ListFolder& folder, const std::string& name, int flags)
{
    Descriptor file(
        openat(folder.descriptor(), name.c_str(), flags | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat found = {};
    if (!file || fstat(file.get(), &found) != 0 || !isOwnFile(found))
        return {};
    // Anybody may have given the file another name, where the system lets him; that harms nobody until
    // something is written through it.
    if ((flags & O_ACCMODE) != O_RDONLY && found.st_nlink != 1)
        return {};
    return file;
}

Descriptor makeOwnFile(const ListFolder& folder, const std::string& name)
{
    if (!removeFile(folder, name))
        return {};
    Descriptor file(openat(folder.descriptor(), name.c_str(),
                           O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    // A new file has the caller's group, which is nobody's business here.
    if (!file || (ownerOfLists() == 0 && fchown(file.get(), 0, 0) != 0))
        return {};
    return file;
}

Descriptor openLockFile(const ListFolder& folder, const std::string& name)
{
    if (stateOf(folder, name) == NameState::kSomethingElse && !removeFile(folder, name))
        return {};
    Descriptor file(openat(folder.descriptor(), name.c_str(),
                           O_RDONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0600));
    struct stat found = {};
    if (!file || fstat(file.get(), &found) != 0 || !isOwnFile(found))
        return {};
    return file;
}

bool removeFile(const ListFolder& folder, const std::string& name)
{
    return unlinkat(folder.descriptor(), name.c_str(), 0) == 0 || errno == ENOENT;
}

bool writeAll(const Descriptor& file, std::string_view text)
{
    while (!text.empty()) {
        ssize_t written = untilNotInterrupted([&] { return write(file.get(), text.data(), text.size()); });
        if (written <= 0)
            return false;
        text.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

Outcome publish(const ListFolder& folder, const Descriptor& file, const std::string& from,
                const std::string& to)
{
    if (stateOf(folder, to) == NameState::kSomethingElse)
        return kUnsafeFile;
    if (fchmod(file.get(), 0644) != 0 || untilNotInterrupted([&] { return fsync(file.get()); }) != 0 ||
        renameat(folder.descriptor(), from.c_str(), folder.descriptor(), to.c_str()) != 0)
        return kFileError;
    // The new file stands; that only a power loss could still undo it is worth a word, not a failure.
    if (untilNotInterrupted([&] { return fsync(folder.descriptor()); }) != 0)
        fputs("R4270Helper: the preferences folder could not be flushed to disk\n", stderr);
    return kDone;
}
