#include "support/PrivateCups.h"

#include <pwd.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

const char* const kServer = "/usr/sbin/cupsd";
const char* const kExecutor = "/usr/lib/cups/daemon/cups-exec";
const char* const kFilters = "/usr/lib/cups/filter";

// Called without arguments a backend lists its devices: it has none. The options come last, so that a job
// that has them is complete.
const char* const kBackend = "#!/bin/sh\n"
                             "[ $# -gt 0 ] || exit 0\n"
                             "cat ${6:+\"$6\"} >>\"$TMPDIR/job-$1.data\" &&\n"
                             "printf %s \"$5\" >\"$TMPDIR/job-$1.part\" &&\n"
                             "mv \"$TMPDIR/job-$1.part\" \"$TMPDIR/job-$1.options\"\n";

} // namespace

bool PrivateCups::installed()
{
    return access(kServer, X_OK) == 0 && access(kExecutor, X_OK) == 0 &&
           access((std::string(kFilters) + "/pstops").c_str(), X_OK) == 0;
}

PrivateCups::PrivateCups() : serverName_("CUPS_SERVER", sandbox_ / "run/cups.sock")
{
    if (!installed()) {
        problem_ = "no CUPS server with filters is installed";
        return;
    }
    layOut();
    // Run from a copy: the confinement that some systems put on the installed path knows no scratch folders.
    fs::copy_file(kServer, sandbox_ / "bin/cupsd");
    (void)start(); // problem() tells
}

bool PrivateCups::start()
{
    fs::remove(sandbox_ / "run/cups.sock");
    server_ = std::make_unique<BackgroundProcess>(std::vector<std::string>{sandbox_ / "bin/cupsd", "-f", "-c",
                                                                           sandbox_ / "etc/cupsd.conf", "-s",
                                                                           sandbox_ / "etc/cups-files.conf"},
                                                  sandbox_ / "log/output");
    if (!waitUntil([this] { return !server_->running() || fs::exists(sandbox_ / "run/cups.sock"); }) ||
        !server_->running())
        problem_ = "cupsd did not start: " + readFile(sandbox_ / "log/output") + log();
    return problem_.empty();
}

void PrivateCups::layOut() const
{
    for (const char* folder :
         {"etc", "cache", "state", "spool/tmp", "log", "run", "home", "bin/backend", "bin/daemon"})
        fs::create_directories(sandbox_ / folder);
    fs::create_symlink(kExecutor, sandbox_ / "bin/daemon/cups-exec");
    fs::create_symlink(kFilters, sandbox_ / "bin/filter");
    fs::create_symlink("/usr/share/cups", sandbox_ / "data");
    fs::permissions(sandbox_.write("bin/backend/socket", kBackend), fs::perms(0755));

    std::string root = sandbox_.path();
    sandbox_.write("etc/cups-files.conf", "ServerRoot " + root + "/etc\nServerBin " + root +
                                              "/bin\nDataDir " + root + "/data\nCacheDir " + root +
                                              "/cache\nStateDir " + root + "/state\nRequestRoot " + root +
                                              "/spool\nTempDir " + root + "/spool/tmp\nAccessLog " + root +
                                              "/log/access\nErrorLog " + root + "/log/error\nPageLog " +
                                              root + "/log/page\nPrintcap\nSystemGroup root\n");
    sandbox_.write("etc/cupsd.conf", "Listen " + root +
                                         "/run/cups.sock\nBrowsing Off\nDefaultAuthType None\n"
                                         "WebInterface No\nLogLevel info\n<Policy default>\n<Limit All>\n"
                                         "Order allow,deny\nAllow all\n</Limit>\n</Policy>\n");

    // Started by root the server runs its backends as lp, which has to reach the scratch folder.
    fs::permissions(sandbox_.path(), fs::perms(0755));
    const passwd* lp = getpwnam("lp");
    for (const char* folder : {"spool", "spool/tmp", "cache"})
        if (geteuid() == 0 && lp != nullptr &&
            chown((sandbox_ / folder).c_str(), lp->pw_uid, lp->pw_gid) != 0)
            throw std::runtime_error(std::string("cannot give to lp: ") + folder);
}

bool PrivateCups::administer(const std::vector<std::string>& arguments)
{
    // The clients keep settings in their home folder.
    ProcessResult result = runProcess(arguments, {.environment = {"HOME=" + (sandbox_ / "home").string()}});
    if (result.status != 0)
        problem_ = arguments[0] + ": " + result.err + log();
    return result.status == 0;
}

bool PrivateCups::addQueue(const std::string& name, const fs::path& ppd)
{
    return administer({"/usr/sbin/lpadmin", "-p", name, "-E", "-v", "socket://127.0.0.2:9100", "-P", ppd});
}

std::optional<PrivateCups::Job> PrivateCups::receivedJob(int id) const
{
    std::string file = sandbox_ / ("spool/tmp/job-" + std::to_string(id));
    if (!waitUntil([&file] { return fs::exists(file + ".options"); }))
        return std::nullopt;
    return Job{readFile(file + ".options"), readFile(file + ".data")};
}
