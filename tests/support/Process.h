#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <sys/types.h>
#include <thread>
#include <vector>

/// What a finished child process left behind.
struct ProcessResult {
    int status = -1;        ///< exit status; 128 + signal when one ended it, SIGKILL when its time was up
    long peakKilobytes = 0; ///< the most memory it had resident at a time
    std::string out;
    std::string err;
};

struct ProcessOptions {
    std::string input;                    ///< what standard input holds
    std::vector<std::string> environment; ///< "NAME=value" entries, added to this process's own
    std::chrono::milliseconds timeout{30000};
    std::function<void()> prepare; ///< called in the child, which then becomes the program
};

/// Runs `arguments` (the first is the program, searched in PATH) to its end.
ProcessResult runProcess(const std::vector<std::string>& arguments, const ProcessOptions& options = {});

/// A child that runs beside the test (a server). It is terminated, then killed, when the object goes.
class BackgroundProcess {
public:
    /// Standard output and error go to `log`.
    BackgroundProcess(const std::vector<std::string>& arguments, const std::string& log,
                      const std::vector<std::string>& environment = {});
    ~BackgroundProcess() { stop(); }
    BackgroundProcess(const BackgroundProcess&) = delete;
    BackgroundProcess& operator=(const BackgroundProcess&) = delete;

    pid_t pid() const { return pid_; }
    bool running() const;
    /// Sends SIGTERM, waits up to five seconds, then SIGKILL.
    void stop();

private:
    mutable pid_t pid_;
};

inline void sleepMilliseconds(int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

/// Polls `condition` every 2 ms until it is true (then true) or the time is up (then false).
template <typename Condition>
bool waitUntil(Condition condition, std::chrono::milliseconds timeout = std::chrono::seconds(10))
{
    auto end = std::chrono::steady_clock::now() + timeout;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        sleepMilliseconds(2);
    }
    return true;
}

/// A UDP port that was free a moment ago.
int freePort();
