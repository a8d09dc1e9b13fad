#include "Staging.h"

#include "Process.h"
#include "profiles/HelperProtocol.h"

#include <charconv>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

namespace {

using StartTime = unsigned long long;

constexpr std::string_view kFirstPieceMark = "<?xml";
constexpr int kStartTimeField = 22;
constexpr int kFieldAfterName = 3;

// In clock ticks since the system started; with the id it names one process for ever.
std::optional<StartTime> startTimeOf(pid_t process)
{
    Descriptor file(open(("/proc/" + std::to_string(process) + "/stat").c_str(), O_RDONLY | O_CLOEXEC));
    char text[1024];
    ssize_t length = file ? read(file.get(), text, sizeof text) : -1;
    if (length <= 0)
        return std::nullopt;
    // The program's name may hold anything, so the fields are counted from its closing bracket.
    std::string_view rest(text, static_cast<size_t>(length));
    size_t name = rest.rfind(')');
    if (name == std::string_view::npos)
        return std::nullopt;
    rest.remove_prefix(std::min(name + 2, rest.size()));
    for (int field = kFieldAfterName; field < kStartTimeField; ++field)
        rest.remove_prefix(rest.find(' ') + 1);
    StartTime start = 0;
    auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), start);
    return error == std::errc() ? std::optional(start) : std::nullopt;
}

std::string stagingPrefix()
{
    return ".R4270-staging-" + std::to_string(getuid()) + "-";
}

// Removes the calling user's abandoned writes and counts the others.
int removeAbandonedWrites(const ListFolder& folder)
{
    struct Close {
        void operator()(DIR* directory) const { closedir(directory); }
    };
    Descriptor again(openat(folder.descriptor(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    std::unique_ptr<DIR, Close> directory(again ? fdopendir(again.get()) : nullptr);
    if (!directory)
        return kMostWrites;
    (void)again.release();
    int alive = 0;
    std::string prefix = stagingPrefix();
    while (const dirent* entry = readdir(directory.get())) {
        std::string name = entry->d_name;
        if (!name.starts_with(prefix))
            continue;
        // The file of a process that has ended is nobody's, and so is one whose name says nothing.
        pid_t process = 0;
        std::from_chars(name.data() + prefix.size(), name.data() + name.size(), process);
        if (stagingName(process) == name || !removeFile(folder, name))
            ++alive;
    }
    return alive;
}

Outcome beginWrite(const ListFolder& folder, const std::string& name, Descriptor& file)
{
    if (!removeFile(folder, name))
        return kUnsafeFile;
    if (removeAbandonedWrites(folder) >= kMostWrites)
        return kTooManyWrites;
    file = makeOwnFile(folder, name);
    return file ? kDone : kFileError;
}

Outcome continueWrite(const ListFolder& folder, const std::string& name, Descriptor& file)
{
    if (stateOf(folder, name) == NameState::kAbsent)
        return kNoWriteBegun;
    file = openOwnFile(folder, name, O_WRONLY | O_APPEND);
    return file ? kDone : kUnsafeFile;
}

Outcome append(const Descriptor& file, std::string_view piece)
{
    struct stat written = {};
    if (fstat(file.get(), &written) != 0)
        return kFileError;
    if (static_cast<size_t>(written.st_size) + piece.size() > kLongestListFile)
        return kTooLarge;
    return writeAll(file, piece) ? kDone : kFileError;
}

} // namespace

std::optional<std::string> stagingName(pid_t process)
{
    std::optional<StartTime> start = startTimeOf(process);
    if (!start)
        return std::nullopt;
    return stagingPrefix() + std::to_string(process) + "-" + std::to_string(*start);
}

Outcome stagePiece(const Account& account, std::string_view piece)
{
    RootScope root;
    std::optional<std::string> name = stagingName(getppid());
    if (!name)
        return kNoCaller;
    ListFolder folder;
    if (Outcome outcome = folder.openLocked(account); !outcome)
        return outcome;
    Descriptor file;
    bool begins = piece.starts_with(kFirstPieceMark);
    Outcome outcome = begins ? beginWrite(folder, *name, file) : continueWrite(folder, *name, file);
    if (outcome)
        outcome = append(file, piece);
    if (!outcome)
        (void)removeFile(folder, *name); // what stays is not a list, and rename would say so
    return outcome;
}
