#pragma once

#include "support/Process.h"
#include "support/Sandbox.h"

#include <memory>
#include <optional>
#include <string>

/// A CUPS server of the test's own in a scratch folder, reached over a socket in it. It needs no root and
/// leaves the machine's own server alone. Its printers are scripts that keep what a job brings.
class PrivateCups {
public:
    struct Job {
        std::string options; ///< as the server hands them to a backend
        std::string data;    ///< the bytes of the document
    };

    /// Whether this machine has a server to run.
    static bool installed();

    /// Starts the server, and names it in CUPS_SERVER for as long as the object lives.
    PrivateCups();

    /// Why the server does not run; empty when it does.
    const std::string& problem() const { return problem_; }

    /// Makes a queue at an address that is not asked for profiles. These give false, with the reason in
    /// problem(), when the server refuses.
    bool addQueue(const std::string& name, const std::filesystem::path& ppd);
    /// Runs an administrator's program on the server.
    bool administer(const std::vector<std::string>& arguments);

    /// The job as the backend got it; nothing when it does not arrive within ten seconds.
    std::optional<Job> receivedJob(int id) const;

    /// The server's error log, for a failing test to show.
    std::string log() const { return readFile(sandbox_ / "log/error"); }

    void stop() { server_.reset(); }
    /// Starts the server again, with its queues.
    bool start();

private:
    void layOut() const;

    Sandbox sandbox_;
    ScopedVariable serverName_;
    std::string problem_;
    std::unique_ptr<BackgroundProcess> server_;
};
