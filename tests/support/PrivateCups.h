#pragma once

#include "support/Process.h"
#include "support/Sandbox.h"

#include <optional>
#include <pwd.h>
#include <unistd.h>

/// A CUPS server of the test's own in a scratch folder, reached over a socket in it. It needs no root and
/// leaves the machine's own server alone. Its printers are scripts that keep what a job brings.
class PrivateCups {
public:
    struct Job {
        std::string options; ///< as the server hands them to a backend
        std::string data;    ///< the bytes of the document
    };

    /// Whether this machine has a server to run.
    static bool installed()
    {
        return access("/usr/sbin/cupsd", X_OK) == 0 && access("/usr/lib/cups/filter/pstops", X_OK) == 0;
    }

    /// Starts the server, and names it in CUPS_SERVER for as long as the object lives.
    PrivateCups()
    {
        if (!installed())
            return;
        layOut();
        start();
    }

    /// Makes a queue at an address that is not asked for profiles. This and the next two give false, with the
    /// reason in problem(), when the server refuses.
    bool addQueue(const std::string& name, const std::string& ppd)
    {
        return administer(
            {"/usr/sbin/lpadmin", "-p", name, "-E", "-v", "socket://127.0.0.2:9100", "-P", ppd});
    }
    /// Runs an administrator's program on the server.
    bool administer(const std::vector<std::string>& arguments)
    {
        // The clients keep settings in their home folder.
        ProcessResult result =
            runProcess(arguments, {.environment = {"HOME=" + (sandbox_ / "home").string()}});
        if (result.status != 0)
            problem_ = arguments[0] + ": " + result.err + log();
        return result.status == 0;
    }
    void stop() { server_.reset(); }
    /// Starts the server again, with its queues.
    bool start()
    {
        const std::filesystem::path socket = sandbox_ / "run/cups.sock";
        std::filesystem::remove(socket);
        server_.emplace(std::vector<std::string>{sandbox_ / "bin/cupsd", "-f", "-c",
                                                 sandbox_ / "etc/cupsd.conf", "-s",
                                                 sandbox_ / "etc/cups-files.conf"},
                        sandbox_ / "output");
        waitUntil([&] { return !server_->running() || std::filesystem::exists(socket); });
        if (!server_->running())
            problem_ = "cupsd did not start: " + log();
        return server_->running();
    }
    const std::string& problem() const { return problem_; }
    /// What the server has said, for a failing test to show.
    std::string log() const { return readFile(sandbox_ / "output"); }

    /// The job as the backend got it; nothing when it does not arrive within ten seconds.
    std::optional<Job> receivedJob(int id) const
    {
        const std::string file = sandbox_ / ("spool/tmp/job-" + std::to_string(id));
        if (!waitUntil([&file] { return std::filesystem::exists(file + ".options"); }))
            return std::nullopt;
        return Job{readFile(file + ".options"), readFile(file + ".data")};
    }

private:
    void layOut() const
    {
        const std::string root = sandbox_.path();
        std::string files = "Printcap\nSystemGroup root\nAccessLog stderr\nErrorLog stderr\nPageLog stderr\n";
        for (auto [directive, folder] : {std::pair("ServerRoot", "/etc"),
                                         {"ServerBin", "/bin"},
                                         {"DataDir", "/data"},
                                         {"CacheDir", "/cache"},
                                         {"StateDir", "/run"},
                                         {"RequestRoot", "/spool"},
                                         {"TempDir", "/spool/tmp"}})
            files += std::string(directive) + " " + root + folder + "\n";
        sandbox_.write("etc/cups-files.conf", files);
        sandbox_.write("etc/cupsd.conf",
                       "Listen " + root +
                           "/run/cups.sock\nBrowsing Off\nDefaultAuthType None\nWebInterface No\n"
                           "LogLevel info\n<Policy default>\n<Limit All>\nAllow all\n</Limit>\n</Policy>\n");
        // Called without arguments a backend lists its devices: it has none. The options come last, so that a
        // job that has them is complete.
        const auto backend =
            sandbox_.write("bin/backend/socket", "#!/bin/sh\n"
                                                 "[ $# -gt 0 ] || exit 0\n"
                                                 "cat ${6:+\"$6\"} >>\"$TMPDIR/job-$1.data\" &&\n"
                                                 "printf %s \"$5\" >\"$TMPDIR/job-$1.part\" &&\n"
                                                 "mv \"$TMPDIR/job-$1.part\" \"$TMPDIR/job-$1.options\"\n");
        std::filesystem::permissions(backend, std::filesystem::perms(0755));
        for (const char* folder : {"cache", "run", "spool/tmp", "home"})
            std::filesystem::create_directories(sandbox_ / folder);
        std::filesystem::create_symlink("/usr/lib/cups/daemon", sandbox_ / "bin/daemon");
        std::filesystem::create_symlink("/usr/lib/cups/filter", sandbox_ / "bin/filter");
        std::filesystem::create_symlink("/usr/share/cups", sandbox_ / "data");
        // Run from a copy: the confinement that some systems put on the installed path knows no scratch
        // folders.
        std::filesystem::copy_file("/usr/sbin/cupsd", sandbox_ / "bin/cupsd");
        // Started by root the server runs its backends as lp, which has to reach the scratch folder.
        std::filesystem::permissions(sandbox_.path(), std::filesystem::perms(0755));
        const passwd* lp = getpwnam("lp");
        for (const char* folder : {"spool", "spool/tmp", "cache"})
            if (geteuid() == 0 && lp != nullptr &&
                chown((sandbox_ / folder).c_str(), lp->pw_uid, lp->pw_gid) != 0)
                throw std::runtime_error(std::string("cannot give to lp: ") + folder);
    }

    Sandbox sandbox_;
    ScopedVariable serverName_{"CUPS_SERVER", sandbox_ / "run/cups.sock"};
    std::string problem_;
    std::optional<BackgroundProcess> server_;
};
