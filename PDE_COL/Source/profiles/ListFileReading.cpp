#include "profiles/DriverPaths.h"
#include "profiles/ProfileListFile.h"

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

#ifdef __APPLE__
#define st_mtim st_mtimespec
#define st_ctim st_ctimespec
constexpr clockid_t kFileClock = CLOCK_REALTIME;
#else
// File times are taken from this clock: it stands still for some milliseconds between ticks.
constexpr clockid_t kFileClock = CLOCK_REALTIME_COARSE;
#endif

bool before(const timespec& a, const timespec& b)
{
    return a.tv_sec != b.tv_sec ? a.tv_sec < b.tv_sec : a.tv_nsec < b.tv_nsec;
}

bool same(const timespec& a, const timespec& b)
{
    return !before(a, b) && !before(b, a);
}

bool sameVersion(const struct stat& a, const struct stat& b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
           same(a.st_mtim, b.st_mtim) && same(a.st_ctim, b.st_ctim);
}

/// A change in the same clock tick would leave the times as they are, so a file is only remembered when
/// its last change lies in an earlier tick.
bool isSettled(const struct stat& status)
{
    timespec now{};
    clock_gettime(kFileClock, &now);
    return before(status.st_ctim, now);
}

bool readAll(int file, size_t size, std::string& text)
{
    // One byte more than expected: a file that grew meanwhile is noticed.
    text.resize(size + 1);
    size_t got = 0;
    while (got < text.size()) {
        ssize_t n = read(file, text.data() + got, text.size() - got);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return false;
        if (n == 0)
            break;
        got += static_cast<size_t>(n);
    }
    bool whole = got <= size;
    text.resize(got);
    return whole;
}

FileProblem checkStatus(const struct stat& status)
{
    if (!S_ISREG(status.st_mode))
        return FileProblem::kNotAFile;
    return status.st_size > static_cast<off_t>(kMaxPropertyListSize) ? FileProblem::kTooLong
                                                                     : FileProblem::kNone;
}

FileProblem readListFile(const std::string& path, std::string& text, struct stat& status, bool& settled)
{
    // Asked before opening, since opening alone can set a device going; and again of what was opened.
    if (stat(path.c_str(), &status) != 0)
        return errno == ENOENT || errno == ENOTDIR ? FileProblem::kMissing : FileProblem::kUnreadable;
    if (FileProblem problem = checkStatus(status); problem != FileProblem::kNone)
        return problem;
    int file = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (file < 0)
        return FileProblem::kUnreadable;
    FileProblem problem = fstat(file, &status) == 0 ? checkStatus(status) : FileProblem::kUnreadable;
    settled = isSettled(status);
    if (problem == FileProblem::kNone && !readAll(file, static_cast<size_t>(status.st_size), text))
        problem = FileProblem::kUnreadable;
    close(file);
    return problem;
}

/// The last file parsed, and what became of it.
struct LastParse {
    std::string path; ///< empty: nothing to remember
    struct stat status;
    bool parsed;
    StoredLists lists;
};

} // namespace

FileProblem readListFile(const std::string& path, std::string& text)
{
    struct stat status;
    bool settled;
    return readListFile(path, text, status, settled);
}

const StoredLists* currentLists()
{
    static LastParse last;
    std::string path = currentListPath();
    struct stat status;
    if (!last.path.empty() && last.path == path && stat(path.c_str(), &status) == 0 &&
        sameVersion(status, last.status))
        return last.parsed ? &last.lists : nullptr;
    std::string text;
    bool settled = false;
    last.path.clear();
    if (readListFile(path, text, last.status, settled) != FileProblem::kNone)
        return nullptr;
    std::optional<PropertyListDocument> document = PropertyListDocument::parse(std::move(text));
    last.parsed = document.has_value();
    if (document)
        extractLists(*document, last.lists);
    if (settled)
        last.path = path;
    return last.parsed ? &last.lists : nullptr;
}
