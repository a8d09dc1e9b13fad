#include "Staging.h"

#include "Process.h"

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
    if (name == std::string_view::npos || name + 2 > rest.size())
        return std::nullopt;
    rest.remove_prefix(name + 2);
    for (int field = kFieldAfterName; field < kStartTimeField; ++field) {
        size_t blank = rest.find(' ');
        if (blank == std::string_view::npos)
            return std::nullopt;
        rest.remove_prefix(blank + 1);
    }
    StartTime start = 0;
    auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), start);
    return error == std::errc() ? std::optional(start) : std::nullopt;
}

std::string stagingPrefix()
{
    return ".R4270-staging-" + std::to_string(getuid()) + "-";
}

// Whether the process that a staging file belongs to has ended. A name that says nothing is nobody's.
bool isAbandoned(std::string_view caller)
{
    pid_t process = 0;
    StartTime start = 0;
    const char* end = caller.data() + caller.size();
    auto [dash, error] = std::from_chars(caller.data(), end, process);
    if (error != std::errc() || dash == end || *dash != '-' ||
        std::from_chars(dash + 1, end, start).ptr != end)
        return true;
    return startTimeOf(process) != start;
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
        if (!isAbandoned(std::string_view(name).substr(prefix.size())) || !removeOwnFile(folder, name))
            ++alive;
    }
    return alive;
}

Outcome beginWrite(const ListFolder& folder, const std::string& name, Descriptor& file)
{
    if (!removeOwnFile(folder, name))
        return Outcome::kUnsafeFile;
    if (removeAbandonedWrites(folder) >= kMostWrites)
        return Outcome::kTooManyWrites;
    file = makeOwnFile(folder, name);
    return file ? Outcome::kDone : Outcome::kFileError;
}

Outcome continueWrite(const ListFolder& folder, const std::string& name, Descriptor& file)
{
    if (stateOf(folder, name) == NameState::kAbsent)
        return Outcome::kNoWriteBegun;
    file = openOwnFile(folder, name, O_WRONLY | O_APPEND);
    return file ? Outcome::kDone : Outcome::kUnsafeFile;
}

Outcome append(const Descriptor& file, std::string_view piece)
{
    struct stat written = {};
    if (fstat(file.get(), &written) != 0)
        return Outcome::kFileError;
    if (static_cast<size_t>(written.st_size) + piece.size() > kLargestList)
        return Outcome::kTooLarge;
    return writeAll(file, piece) ? Outcome::kDone : Outcome::kFileError;
}

} // namespace

std::optional<std::string> stagingName()
{
    pid_t caller = getppid();
    std::optional<StartTime> start = startTimeOf(caller);
    if (!start)
        return std::nullopt;
    return stagingPrefix() + std::to_string(caller) + "-" + std::to_string(*start);
}

Outcome stagePiece(const Account& account, std::string_view piece)
{
    RootScope root;
    std::optional<std::string> name = stagingName();
    if (!name)
        return Outcome::kNoCaller;
    ListFolder folder;
    Outcome outcome = folder.open(account);
    if (outcome == Outcome::kDone)
        outcome = folder.lock();
    if (outcome != Outcome::kDone)
        return outcome;
    Descriptor file;
    bool begins = piece.starts_with(kFirstPieceMark);
    outcome = begins ? beginWrite(folder, *name, file) : continueWrite(folder, *name, file);
    if (outcome == Outcome::kDone)
        outcome = append(file, piece);
    if (outcome != Outcome::kDone)
        (void)removeOwnFile(folder, *name); // what stays is not a list, and rename would say so
    return outcome;
}
