// A kill or a failing call at each step of a command, a write that ends half-way: the list is the old one or
// the new one, the marker appears only with the new one, and the next write works. And what the helper
// inherits from whoever starts it.
#include "helper/HelperTest.h"

#include <csignal>
#include <fcntl.h>
#include <map>
#include <regex>
#include <sys/resource.h>
#include <sys/time.h>

namespace {

void blockEverything()
{
    sigset_t all;
    sigfillset(&all);
    sigprocmask(SIG_BLOCK, &all, nullptr);
    for (int number : {SIGCHLD, SIGALRM, SIGTERM, SIGPIPE, SIGXFSZ})
        signal(number, SIG_IGN);
}

void limit(__rlimit_resource resource, rlim_t value)
{
    rlimit limits = {};
    getrlimit(resource, &limits);
    limits.rlim_cur = value;
    setrlimit(resource, &limits);
}

struct Case {
    Strings command;
    std::string file;          ///< which the command replaces
    std::string before, after; ///< what it holds
};

class HelperFaultTest : public HelperTest {
public:
    // Runs a command after a reset. It stays our child.
    ProcessResult trace(const Case& each, const Strings& options)
    {
        reset();
        program = {"strace", "-D", PDE_HELPER};
        program.insert(program.end() - 1, options.begin(), options.end());
        ProcessResult result = run(each.command);
        program = {PDE_HELPER};
        return result;
    }

    // Runs the command with `fault` at the given call and looks at what stands then.
    bool failsAt(const Case& each, const std::string& call, int number, const std::string& fault)
    {
        std::string inject = "inject=" + call + ":" + fault + ":when=" + std::to_string(number);
        SCOPED_TRACE(each.command[0] + ": " + inject);
        ProcessResult result = trace(each, {"-o", "/dev/null", "-e", "trace=" + call, "-e", inject});
        bool said = result.out.find("=TRUE") != std::string::npos;
        std::string now = readFile(each.file);
        if (said || now != each.before)
            EXPECT_EQ(now, each.after);
        if (!said && result.status == 1 && call != "write" && call != "setresuid")
            EXPECT_EQ(now, each.before) << "no marker, but the new list stands";
        if (fault == "error=EINTR" && (call == "fsync" || call == "pread64"))
            EXPECT_TRUE(said) << "an interrupted call is made again";
        EXPECT_EQ(readFile(current), each.file == current ? now : listText(1));
        EXPECT_TRUE(write(listText(3)) && readFile(current) == listText(3)) << "the next write";
        EXPECT_EQ(names().size(), 2U) << "what a dead command left is gone";
        return !said;
    }
};

} // namespace

TEST_F(HelperFaultTest, AKillOrAnErrorAtAnySystemCallLeavesAWholeListAndSyncsStandAroundTheRename)
{
#ifdef PDE_SANITIZED
    GTEST_SKIP() << "a sanitizer makes hundreds of calls of its own; the ordinary build is tested";
#endif
    if (runProcess({"strace", "-D", "-o", "/dev/null", "true"}).status != 0)
        GTEST_SKIP() << "strace cannot trace here";
    const std::regex wanted("fsync\\((\\d+).*\nrenameat\\((\\d+).*\nfsync\\((\\d+).*\nwrite\\(1\\D");
    int failed = 0;
    for (const Case& each : {Case{publish, current, listText(1), listText(2)},
                             Case{{kWritePieceCommand, url, listText(2)}, current, listText(1), listText(1)},
                             Case{keep, previous, listText(0), listText(1)}}) {
        trace(each, {"-o", root / "trace"});
        std::ifstream lines(root / "trace");
        std::map<std::string, int> number;
        std::string syncs;
        for (std::string line; std::getline(lines, line) && !HasFailure();) {
            std::string call = line.substr(0, line.find('('));
            ++number[call];
            if (call == "fsync" || call == "renameat" || call == "write")
                syncs += line + "\n";
            // Before its process is settled nothing has been looked at, and who it is cannot fail.
            bool counts = call == "setresuid" || (number.contains("setresuid") && !call.ends_with("id"));
            for (const char* fault : {"signal=KILL", "error=EIO", "error=EINTR"})
                if (counts && call.find(' ') == std::string::npos)
                    failed += failsAt(each, call, number[call], fault);
        }
        std::smatch found;
        if (each.before != each.after) {
            // What a power loss may undo is not said to be done.
            ASSERT_TRUE(std::regex_search(syncs, found, wanted)) << syncs;
            EXPECT_NE(found[1], found[2]) << "the file is not the folder; " << syncs;
            EXPECT_EQ(found[3], found[2]) << "the folder in which it is renamed; " << syncs;
        }
    }
    EXPECT_GT(failed, 60) << "the faults did happen";
}

TEST_F(HelperTest, AFileThatMayNotGrowFailsTheWriteAndKeepsTheLists)
{
    reset();
    program = {"prlimit", "--fsize=600", PDE_HELPER};
    if (getuid() == 0) // who could raise it
        program.insert(program.begin(), {"setpriv", "--bounding-set=-sys_resource"});
    EXPECT_FALSE(stage(listText(2)));
    EXPECT_FALSE(confirms(keep));
    EXPECT_EQ(names().size(), 2U) << "what was begun is gone";
    EXPECT_TRUE(readFile(current) == listText(1) && readFile(previous) == listText(0));
}

TEST_F(HelperTest, OutputLimitsSignalsTimersAndMaskAreItsOwn)
{
    std::vector<std::function<void()>> inherited = {
        blockEverything,
        [] { umask(0); },
        [] { umask(0777); },
        [] { dup2(open("/dev/full", O_WRONLY), 1); },
        [] {
            int ends[2];
            if (pipe(ends) == 0 && dup2(ends[1], 1) == 1)
                close(ends[0]); // so nobody reads
        },
        [] { limit(RLIMIT_FSIZE, 0); },
        [] {
            closefrom(3); // the loader needs one of them
            limit(RLIMIT_NOFILE, 4);
        },
    };
    for (unsigned first : {0, 1, 2})
        for (unsigned last = first; last < 3; ++last)
            inherited.push_back([=] { close_range(first, last, 0); });
    for (size_t i = 0; i < inherited.size(); ++i) {
        const std::string text = listText(static_cast<int>(i));
        for (const Strings& command : {{kWritePieceCommand, url, text}, publish, keep})
            EXPECT_EQ(run(command, {.prepare = inherited[i]}).status, 0) << i << command[0];
        for (const std::string& list : {current, previous}) {
            EXPECT_EQ(readFile(list), text) << i;
            EXPECT_EQ(fs::status(list).permissions(), fs::perms(0644)) << i;
        }
    }
    std::ofstream(current, std::ios::app) << std::string(4'000'000, ' '); // work enough for a timer to end it
    auto soon = [] {
        itimerval interval = {{0, 1000}, {0, 1000}};
        blockEverything();
        setitimer(ITIMER_PROF, &interval, nullptr);
        setitimer(ITIMER_VIRTUAL, &interval, nullptr);
    };
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(run(keep, {.prepare = soon}).status, 0);
}

// The caller blocks and ignores every signal and never reads: the deadline ends the helper all the same.
TEST_F(HelperTest, ItsTimeIsLimitedWhateverTheCallerDoes)
{
    ASSERT_TRUE(stage(listText(1)));
    auto spoil = [] {
        int ends[2];
        if (pipe2(ends, O_NONBLOCK) != 0)
            _exit(126);
        while (::write(ends[1], "x", 1) == 1)
            continue;
        fcntl(ends[1], F_SETFL, 0);
        dup2(ends[0], 0);
        dup2(ends[1], 1);
        blockEverything();
    };
    EXPECT_EQ(run(publish, {.prepare = spoil}).status, 128 + SIGALRM);
    EXPECT_EQ(readFile(current), listText(1));
}
