#pragma once

#include "support/Process.h"
#include "support/SamplePpd.h"

#include <gtest/gtest.h>
#include <optional>
#include <unistd.h>

/// A test with a CUPS server of its own in a scratch folder, reached over a socket in it and named in
/// CUPS_SERVER. It needs no root and leaves the machine's own server alone. Its printers, "Hall" and
/// "Office", are scripts that keep what a job brings. Skipped where no server is installed.
class PrivateCups : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (access("/usr/sbin/cupsd", X_OK) != 0 || access("/usr/lib/cups/filter/pstops", X_OK) != 0)
            GTEST_SKIP() << "no CUPS server with its filters is installed";
        layOut();
        start();
        addQueue("Hall", kPpd);
        addQueue("Office", kPpd);
    }

    /// Makes a queue at an address that is not asked for profiles.
    void addQueue(const std::string& name, const std::string& ppd)
    {
        administer({"/usr/sbin/lpadmin", "-p", name, "-E", "-v", "socket://127.0.0.2:9100", "-P", ppd});
    }
    /// Runs a program on the server, which has to end well.
    void administer(const std::vector<std::string>& arguments)
    {
        ProcessResult result = runProcess(arguments);
        EXPECT_EQ(result.status, 0) << arguments[0] << ": " << result.err << log();
    }
    void stop() { server_.reset(); }
    /// Starts the server again, with its queues.
    void start()
    {
        const std::filesystem::path socket = scratch_ / "cups.sock";
        std::filesystem::remove(socket);
        server_.emplace(std::vector<std::string>{scratch_ / "cupsd", "-f", "-c", scratch_ / "cupsd.conf",
                                                 "-s", scratch_ / "cups-files.conf"},
                        scratch_ / "output");
        waitUntil([&] { return !server_->running() || std::filesystem::exists(socket); });
        EXPECT_TRUE(server_->running()) << log();
    }

    /// The bytes of the job as the backend got them, waited for.
    std::string receivedJob(int id) const
    {
        const std::string file = scratch_ / ("tmp/job-" + std::to_string(id));
        EXPECT_TRUE(waitUntil([&file] { return std::filesystem::exists(file); })) << id << log();
        return readFile(file);
    }

private:
    /// What the server has said.
    std::string log() const { return readFile(scratch_ / "output"); }

    void layOut() const
    {
        const std::string root = scratch_.path();
        std::string files = "Printcap\nSystemGroup root\nAccessLog stderr\nErrorLog stderr\nPageLog stderr\n";
        for (const char* directive : {"ServerRoot", "ServerBin", "CacheDir", "StateDir", "RequestRoot"})
            files += directive + (" " + root + "\n");
        scratch_.write("cups-files.conf", files + "TempDir " + root + "/tmp\n");
        scratch_.write("cupsd.conf",
                       "Listen " + root +
                           "/cups.sock\nBrowsing Off\nDefaultAuthType None\nWebInterface No\n"
                           "LogLevel info\n<Policy default>\n<Limit All>\nAllow all\n</Limit>\n</Policy>\n");
        // Called without arguments a backend lists its devices: it has none.
        scratch_.write("backend/socket", "#!/bin/sh\n"
                                         "[ $# -gt 0 ] || exit 0\n"
                                         "cat ${6:+\"$6\"} >\"$TMPDIR/part-$1\" &&\n"
                                         "mv \"$TMPDIR/part-$1\" \"$TMPDIR/job-$1\"\n");
        // The server is run from a copy: the confinement that some systems put on the installed path knows no
        // scratch folders. Started by root it runs its backends as lp, which has to reach the folder.
        const char commands[] = "cd \"$0\" && cp /usr/sbin/cupsd . && ln -s /usr/lib/cups/daemon "
                                "/usr/lib/cups/filter . && mkdir tmp &&"
                                "chmod 755 . backend/socket && if [ $(id -u) = 0 ]; then chown lp: . tmp; fi";
        EXPECT_EQ(runProcess({"sh", "-c", commands, root}).status, 0);
    }

    Sandbox scratch_;
    ScopedVariable serverName_{"CUPS_SERVER", scratch_ / "cups.sock"};
    std::optional<BackgroundProcess> server_;
};
