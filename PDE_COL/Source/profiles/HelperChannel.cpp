#include "profiles/HelperChannel.h"

#include "profiles/BuildKind.h"
#include "profiles/Descriptor.h"
#include "profiles/DriverPaths.h"
#include "profiles/HelperProtocol.h"
#include "profiles/Utf8.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr size_t kLongestReply = 1 << 20;
constexpr int kFirstFree = STDERR_FILENO + 1;

bool messagesPass = false;

/// Both ends closed on exec and above the standard descriptors, which a host may have closed.
bool openPipe(Descriptor (&ends)[2])
{
    int raw[2];
#ifdef __APPLE__
    bool opened = pipe(raw) == 0;
#else
    bool opened = pipe2(raw, O_CLOEXEC) == 0;
#endif
    for (int i = 0; opened && i < 2; ++i) {
        Descriptor low(raw[i]);
        ends[i] = Descriptor(fcntl(low.get(), F_DUPFD_CLOEXEC, kFirstFree));
    }
    return ends[0] && ends[1];
}

std::vector<char*> pointers(std::vector<std::string>& strings)
{
    std::vector<char*> result;
    result.reserve(strings.size() + 1);
    for (std::string& string : strings)
        result.push_back(string.data());
    result.push_back(nullptr);
    return result;
}

/// Only the standard descriptors pass, with `output` as standard output; every signal as a fresh process
/// has it.
struct SpawnSettings {
    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
    bool valid;

    explicit SpawnSettings(int output)
    {
        posix_spawn_file_actions_init(&files);
        posix_spawnattr_init(&attributes);
        sigset_t none, all;
        sigemptyset(&none);
        sigfillset(&all);
        short flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
        bool hasError = messagesPass && fcntl(STDERR_FILENO, F_GETFD) >= 0;
        valid = posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0) == 0 &&
                posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO) == 0 &&
                (hasError ||
                 posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0) == 0);
#ifdef __APPLE__
        flags |= POSIX_SPAWN_CLOEXEC_DEFAULT;
        valid = valid && (!hasError || posix_spawn_file_actions_addinherit_np(&files, STDERR_FILENO) == 0);
#else
        valid = valid && posix_spawn_file_actions_addclosefrom_np(&files, kFirstFree) == 0;
#endif
        valid = valid && posix_spawnattr_setsigmask(&attributes, &none) == 0 &&
                posix_spawnattr_setsigdefault(&attributes, &all) == 0 &&
                posix_spawnattr_setflags(&attributes, flags) == 0;
    }
    ~SpawnSettings()
    {
        posix_spawn_file_actions_destroy(&files);
        posix_spawnattr_destroy(&attributes);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
};

pid_t startHelper(const std::string& program, const std::vector<std::string>& arguments, int output)
{
    std::vector<std::string> all = arguments;
    all.insert(all.begin(), program);
    std::vector<std::string> environment = keptEnvironment();
    SpawnSettings settings(output);
    pid_t child = -1;
    if (!settings.valid || posix_spawn(&child, program.c_str(), &settings.files, &settings.attributes,
                                       pointers(all).data(), pointers(environment).data()) != 0)
        return -1;
    return child;
}

/// Reads to the end of file, also past the longest reply, so that the helper is never stuck. False when the
/// reply is too long or reading failed.
bool drain(int input, std::string& reply)
{
    char buffer[4096];
    bool fits = true;
    for (;;) {
        ssize_t n = read(input, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return fits && n == 0;
        fits = fits && reply.size() + static_cast<size_t>(n) <= kLongestReply;
        if (fits)
            reply.append(buffer, static_cast<size_t>(n));
    }
}

/// The right to replace list files, which one process has at a time, for as long as it is held. Whoever
/// cannot get it within a second goes on without: anybody can hold the folder, and nobody is to be kept from
/// saving.
Descriptor takeWritersTurn()
{
    constexpr timespec kPause = {0, 1'000'000};
    Descriptor folder(open(preferencesFolder().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    for (int i = 0; i < 1000 && flock(folder.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK; ++i)
        nanosleep(&kPause, nullptr);
    return folder;
}

} // namespace

void passHelperMessages()
{
    messagesPass = true;
}

std::optional<std::string> helperReply(const std::vector<std::string>& arguments)
{
    std::string program = helperExecutable();
    Descriptor ends[2];
    if (access(program.c_str(), F_OK) != 0 || !openPipe(ends))
        return std::nullopt;
    pid_t child = startHelper(program, arguments, ends[1].get());
    ends[1] = Descriptor();
    std::string reply;
    bool whole = child > 0 && drain(ends[0].get(), reply);
    // In a host that ignores SIGCHLD there is nobody to wait for: that fails once the helper has exited.
    while (child > 0 && waitpid(child, nullptr, 0) < 0 && errno == EINTR)
        continue;
    if (!whole || !isUtf8(reply))
        return std::nullopt;
    return reply;
}

std::optional<std::string> helperValue(const std::vector<std::string>& arguments, const char* ending)
{
    std::optional<std::string> reply = helperReply(arguments);
    std::string marker = arguments.front() + ending;
    size_t found = reply ? reply->find(marker) : std::string::npos;
    if (found == std::string::npos)
        return std::nullopt;
    size_t value = found + marker.size();
    return reply->substr(value, reply->find('\n', value) - value);
}

bool helperConfirms(const std::vector<std::string>& arguments)
{
    return helperValue(arguments, kDoneEnding).has_value();
}

std::optional<int> walkPrinterTable(const std::string& host)
{
    std::optional<std::string> value = helperValue(walkCommand(loginName(), host), kWalkEnding);
    return value ? std::optional(static_cast<int>(strtol(value->c_str(), nullptr, 10))) : std::nullopt;
}

std::string fileUrl(const std::string& path)
{
    static const char kPlain[] = "/-._~!$&'()*+,=:@";
    static const char kDigits[] = "0123456789ABCDEF";
    std::string url = "file://";
    for (unsigned char c : path) {
        bool letterOrDigit = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        if (letterOrDigit || (c != '\0' && strchr(kPlain, c) != nullptr))
            url += static_cast<char>(c);
        else
            url.append({'%', kDigits[c >> 4], kDigits[c & 15]});
    }
    return url;
}

std::vector<std::string_view> listFilePieces(std::string_view text)
{
    std::vector<std::string_view> pieces;
    if (!isUtf8(text))
        return pieces;
    size_t begin = 0, units = 0;
    for (size_t at = 0; at < text.size(); ++at) {
        // A character counts where its first byte is; only those of four bytes are surrogate pairs.
        unsigned char byte = text[at];
        size_t more = (byte & 0xC0) == 0x80 ? 0 : byte >= 0xF0 ? 2 : 1;
        if (units + more > kLongestPiece) {
            pieces.push_back(text.substr(begin, at - begin));
            begin = at;
            units = 0;
        }
        units += more;
    }
    if (begin < text.size())
        pieces.push_back(text.substr(begin));
    return pieces;
}

int32_t sendListFile(std::string_view text, const std::function<bool()>& stillWanted)
{
    std::string url = fileUrl(currentListPath());
    for (std::string_view piece : listFilePieces(text)) {
        if (!helperConfirms({kWritePieceCommand, url, std::string(piece)}))
            return -1;
    }
    Descriptor turn = takeWritersTurn();
    bool wanted = !stillWanted || stillWanted();
    return wanted && helperConfirms({kRenameCommand, url}) ? 0 : -1;
}
