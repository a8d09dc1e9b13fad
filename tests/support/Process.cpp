#include "support/Process.h"

#include <arpa/inet.h>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Starts the program with these files, closed on execution, for its standard input, output and errors.
pid_t start(std::vector<std::string> arguments, const ProcessOptions& options, const int (&files)[3])
{
    std::vector<char*> argv;
    for (std::string& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    pid_t child = fork();
    if (child != 0)
        return child;
    for (int i = 0; i < 3; ++i)
        dup2(files[i], i);
    for (const std::string& entry : options.environment)
        putenv(const_cast<char*>(entry.c_str()));
    if (options.prepare)
        options.prepare();
    execvp(argv[0], argv.data());
    _exit(127);
}

/// Closes a file and gives all that it held.
std::string take(int file)
{
    std::string text(static_cast<size_t>(lseek(file, 0, SEEK_END)), '\0');
    bool done = pread(file, text.data(), text.size(), 0) >= 0;
    close(file);
    return done ? text : "";
}

} // namespace

ProcessResult runProcess(const std::vector<std::string>& arguments, const ProcessOptions& options)
{
    int files[3];
    for (int& file : files)
        file = memfd_create("test", MFD_CLOEXEC);
    bool fed = pwrite(files[0], options.input.data(), options.input.size(), 0) >= 0;
    pid_t child = fed ? start(arguments, options, files) : -1;
    if (child < 0)
        return {};
    int waited = 0;
    rusage usage{};
    if (!waitUntil([&] { return wait4(child, &waited, WNOHANG, &usage) == child; }, options.timeout)) {
        kill(child, SIGKILL);
        wait4(child, &waited, 0, &usage);
    }
    close(files[0]);
    return {WIFSIGNALED(waited) ? 128 + WTERMSIG(waited) : WEXITSTATUS(waited), usage.ru_maxrss,
            take(files[1]), take(files[2])};
}

BackgroundProcess::BackgroundProcess(const std::vector<std::string>& arguments, const std::string& log,
                                     const std::vector<std::string>& environment)
{
    int none = open("/dev/null", O_RDONLY | O_CLOEXEC);
    int file = open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    pid_ = start(arguments, {.environment = environment}, {none, file, file});
    close(none);
    close(file);
}

bool BackgroundProcess::running() const
{
    if (pid_ > 0 && waitpid(pid_, nullptr, WNOHANG) == pid_)
        pid_ = -1;
    return pid_ > 0;
}

void BackgroundProcess::stop()
{
    for (int number : {SIGTERM, SIGKILL})
        if (running()) {
            kill(pid_, number);
            (void)waitUntil([this] { return !running(); }, std::chrono::seconds(5));
        }
}

int freePort()
{
    sockaddr_in address{.sin_family = AF_INET};
    auto* any = reinterpret_cast<sockaddr*>(&address);
    socklen_t length = sizeof address;
    int s = socket(AF_INET, SOCK_DGRAM, 0);
    bool known = bind(s, any, length) == 0 && getsockname(s, any, &length) == 0;
    close(s);
    return known ? ntohs(address.sin_port) : -1;
}
