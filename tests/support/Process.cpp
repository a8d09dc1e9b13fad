#include "support/Process.h"

#include <arpa/inet.h>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <grp.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::vector<char*> pointers(std::vector<std::string>& strings)
{
    std::vector<char*> result;
    for (std::string& s : strings)
        result.push_back(s.data());
    result.push_back(nullptr);
    return result;
}

/// Starts the program with these files for its standard input, output and errors.
pid_t start(std::vector<std::string> arguments, const ProcessOptions& options, int in, int out, int err)
{
    std::vector<char*> argv = pointers(arguments);
    pid_t child = fork();
    if (child != 0)
        return child;
    dup2(in, 0);
    dup2(out, 1);
    dup2(err, 2);
    for (const std::string& entry : options.environment)
        putenv(const_cast<char*>(entry.c_str()));
    if (options.uid != static_cast<uid_t>(-1) &&
        (setgroups(1, &options.gid) != 0 || setgid(options.gid) != 0 || setuid(options.uid) != 0))
        _exit(126);
    execvp(argv[0], argv.data());
    _exit(127);
}

/// A file in memory, closed in the programs that are started.
class MemoryFile {
public:
    MemoryFile() : file_(memfd_create("test", MFD_CLOEXEC)) {}
    ~MemoryFile() { close(file_); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    operator int() const { return file_; }
    std::string text() const
    {
        std::string text(static_cast<size_t>(lseek(file_, 0, SEEK_END)), '\0');
        return pread(file_, text.data(), text.size(), 0) < 0 ? "" : text;
    }

private:
    int file_;
};

} // namespace

ProcessResult runProcess(const std::vector<std::string>& arguments, const ProcessOptions& options)
{
    MemoryFile in, out, err;
    if (write(in, options.input.data(), options.input.size()) < 0 || lseek(in, 0, SEEK_SET) != 0)
        return {};
    pid_t child = start(arguments, options, in, out, err);
    int waited = 0;
    rusage usage{};
    bool ended = waitUntil([&] { return wait4(child, &waited, WNOHANG, &usage) == child; }, options.timeout);
    if (!ended) {
        kill(child, SIGKILL);
        wait4(child, &waited, 0, &usage);
    }
    return {WIFSIGNALED(waited) ? 128 + WTERMSIG(waited) : WEXITSTATUS(waited), !ended, usage.ru_maxrss,
            out.text(), err.text()};
}

BackgroundProcess::BackgroundProcess(const std::vector<std::string>& arguments, const std::string& log,
                                     const std::vector<std::string>& environment)
{
    int file = open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    int none = open("/dev/null", O_RDONLY | O_CLOEXEC);
    pid_ = start(arguments, {.environment = environment}, none, file, file);
    close(file);
    close(none);
}

BackgroundProcess::~BackgroundProcess()
{
    stop();
}

bool BackgroundProcess::running() const
{
    if (pid_ > 0 && waitpid(pid_, nullptr, WNOHANG) == pid_)
        pid_ = -1;
    return pid_ > 0;
}

void BackgroundProcess::stop()
{
    if (pid_ <= 0)
        return;
    kill(pid_, SIGTERM);
    if (waitUntil([this] { return !running(); }, std::chrono::seconds(5)))
        return;
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
    pid_ = -1;
}

void sleepMilliseconds(int milliseconds)
{
    usleep(static_cast<useconds_t>(milliseconds) * 1000);
}

int freePort()
{
    int s = socket(AF_INET, SOCK_DGRAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    int port = -1;
    if (bind(s, reinterpret_cast<sockaddr*>(&address), length) == 0 &&
        getsockname(s, reinterpret_cast<sockaddr*>(&address), &length) == 0)
        port = ntohs(address.sin_port);
    close(s);
    return port;
}
