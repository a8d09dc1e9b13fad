#include "support/Process.h"

#include <arpa/inet.h>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

std::vector<char*> pointers(std::vector<std::string>& strings)
{
    std::vector<char*> result;
    for (std::string& s : strings)
        result.push_back(s.data());
    result.push_back(nullptr);
    return result;
}

std::vector<std::string> environmentWith(const std::vector<std::string>& added, bool clean)
{
    std::vector<std::string> result = added;
    for (char** entry = environ; !clean && *entry != nullptr; ++entry) {
        std::string text = *entry;
        std::string name = text.substr(0, text.find('=') + 1);
        bool replaced = false;
        for (const std::string& a : added)
            replaced = replaced || a.compare(0, name.size(), name) == 0;
        if (!replaced)
            result.push_back(text);
    }
    return result;
}

int statusOf(int waited)
{
    return WIFSIGNALED(waited) ? 128 + WTERMSIG(waited) : WEXITSTATUS(waited);
}

} // namespace

ProcessResult runProcess(const std::vector<std::string>& arguments, const ProcessOptions& options)
{
    ProcessResult result;
    std::vector<std::string> argumentCopies = arguments;
    std::vector<std::string> environmentCopies =
        environmentWith(options.environment, options.cleanEnvironment);
    std::vector<char*> argv = pointers(argumentCopies);
    std::vector<char*> envp = pointers(environmentCopies);
    int in[2], out[2], err[2];
    if (pipe2(in, O_CLOEXEC) != 0 || pipe2(out, O_CLOEXEC) != 0 || pipe2(err, O_CLOEXEC) != 0)
        return result;
    pid_t child = fork();
    if (child == 0) {
        dup2(in[0], 0);
        dup2(out[1], 1);
        dup2(err[1], 2);
        if (options.gid != static_cast<gid_t>(-1) &&
            (setgroups(1, &options.gid) != 0 || setgid(options.gid) != 0))
            _exit(126);
        if (options.uid != static_cast<uid_t>(-1) && setuid(options.uid) != 0)
            _exit(126);
        execvpe(argv[0], argv.data(), envp.data());
        _exit(127);
    }
    close(in[0]);
    close(out[1]);
    close(err[1]);
    auto earlier = signal(SIGPIPE, SIG_IGN);
    fcntl(in[1], F_SETFL, O_NONBLOCK);
    size_t written = 0;
    auto end = std::chrono::steady_clock::now() + options.timeout;
    pollfd fds[3] = {{in[1], POLLOUT, 0}, {out[0], POLLIN, 0}, {err[0], POLLIN, 0}};
    while (fds[1].fd >= 0 || fds[2].fd >= 0) {
        if (fds[0].fd >= 0 && written == options.input.size()) {
            close(in[1]);
            fds[0].fd = -1;
        }
        auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        if (left.count() <= 0) {
            result.timedOut = true;
            kill(child, SIGKILL);
            break;
        }
        if (poll(fds, 3, static_cast<int>(left.count())) < 0)
            continue;
        if (fds[0].fd >= 0 && fds[0].revents != 0) {
            ssize_t n = write(in[1], options.input.data() + written, options.input.size() - written);
            written = n < 0 && errno != EAGAIN ? options.input.size() : written + (n > 0 ? size_t(n) : 0);
        }
        for (int i = 1; i < 3; ++i) {
            if (fds[i].fd < 0 || fds[i].revents == 0)
                continue;
            char buffer[65536];
            ssize_t n = read(fds[i].fd, buffer, sizeof buffer);
            if (n > 0)
                (i == 1 ? result.out : result.err).append(buffer, size_t(n));
            else
                fds[i].fd = -1;
        }
    }
    if (fds[0].fd >= 0)
        close(in[1]);
    close(out[0]);
    close(err[0]);
    signal(SIGPIPE, earlier);
    int waited = 0;
    rusage usage{};
    while (wait4(child, &waited, 0, &usage) < 0 && errno == EINTR)
        continue;
    result.peakKilobytes = usage.ru_maxrss;
    result.status = statusOf(waited);
    return result;
}

BackgroundProcess::BackgroundProcess(const std::vector<std::string>& arguments, const std::string& log,
                                     const std::vector<std::string>& environment)
{
    std::vector<std::string> argumentCopies = arguments;
    std::vector<std::string> environmentCopies = environmentWith(environment, false);
    std::vector<char*> argv = pointers(argumentCopies);
    std::vector<char*> envp = pointers(environmentCopies);
    pid_ = fork();
    if (pid_ == 0) {
        int file = open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
        dup2(open("/dev/null", O_RDONLY), 0);
        dup2(file, 1);
        dup2(file, 2);
        execvpe(argv[0], argv.data(), envp.data());
        _exit(127);
    }
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
