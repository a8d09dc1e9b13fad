// What the helper inherits from whoever starts it.
#include "helper/HelperTest.h"

#include <csignal>
#include <fcntl.h>
#include <functional>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

class HelperInheritsTest : public HelperTest {
protected:
    // Runs the helper in a child that `prepare` has spoilt first; the reply goes to the file "reply".
    int runAfter(const std::function<void()>& prepare, const Strings& arguments) const
    {
        pid_t child = fork();
        if (child == 0) {
            setenv("PDE_ROOT", root.c_str(), 1);
            setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
            std::vector<char*> argv = {const_cast<char*>(program.c_str())};
            for (const std::string& each : arguments)
                argv.push_back(const_cast<char*>(each.c_str()));
            argv.push_back(nullptr);
            dup2(open((root / "reply").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644), 1);
            dup2(open("/dev/null", O_WRONLY), 2);
            prepare();
            execv(argv[0], argv.data());
            _exit(127);
        }
        int status = -1;
        waitpid(child, &status, 0);
        return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    }

    bool writesAfter(const std::function<void()>& prepare, int tag) const
    {
        return runAfter(prepare, {kWritePieceCommand, url, listText(tag)}) == 0 &&
               runAfter(prepare, {kRenameCommand, url}) == 0 && readFile(current) == listText(tag);
    }
};

void blockEverything()
{
    sigset_t all;
    sigfillset(&all);
    sigprocmask(SIG_BLOCK, &all, nullptr);
    for (int number : {SIGCHLD, SIGALRM, SIGTERM, SIGPIPE, SIGXFSZ})
        signal(number, SIG_IGN);
}

} // namespace

TEST_F(HelperInheritsTest, ClosedAndCrowdedDescriptorsAndLostRepliesNeverHarmTheList)
{
    for (int closed = 0; closed < 8; ++closed)
        EXPECT_TRUE(writesAfter(
            [&] {
                for (int number = 0; number < 3; ++number)
                    if ((closed & (1 << number)) != 0)
                        close(number);
            },
            closed))
            << closed;
    auto crowd = [] {
        for (int i = 0; i < 900; ++i)
            (void)open("/dev/null", O_RDONLY);
    };
    EXPECT_TRUE(writesAfter(crowd, 20));
    auto loseTheReader = [] {
        int ends[2];
        if (pipe(ends) == 0 && dup2(ends[1], 1) == 1)
            close(ends[0]);
    };
    EXPECT_TRUE(writesAfter(loseTheReader, 21));
    EXPECT_TRUE(writesAfter([] { dup2(open("/dev/full", O_WRONLY), 1); }, 22));
}

TEST_F(HelperInheritsTest, SmallLimitsFailCleanlyOrDoNoHarm)
{
#ifdef PDE_SANITIZED
    GTEST_SKIP() << "a sanitized program itself needs more than these limits";
#endif
    ASSERT_TRUE(write(listText(1)));
    for (auto resource : {RLIMIT_FSIZE, RLIMIT_NOFILE, RLIMIT_AS})
        for (rlim_t value : {0, 4, 1 << 20}) {
            auto spoil = [&] {
                rlimit limit = {value, value};
                setrlimit(resource, &limit);
            };
            for (const Strings& command :
                 {Strings{kWritePieceCommand, url, listText(2)}, Strings{kRenameCommand, url},
                  Strings{kSwapCommand, "2", current, previous}}) {
                int status = runAfter(spoil, command);
                EXPECT_EQ(readFile(root / "reply").find("=TRUE") != std::string::npos, status == 0);
                for (const std::string& list : {current, previous})
                    EXPECT_TRUE(!fs::exists(list) || readFile(list) == listText(1) ||
                                readFile(list) == listText(2));
            }
        }
    EXPECT_TRUE(write(listText(3)));
}

TEST_F(HelperInheritsTest, SignalsTimersMaskAndFolderAreItsOwn)
{
    ASSERT_EQ(chdir(root.c_str()), 0);
    for (mode_t mask : {0, 0777}) {
        auto spoil = [mask] {
            blockEverything();
            itimerval soon = {{0, 1000}, {0, 1000}};
            setitimer(ITIMER_PROF, &soon, nullptr);
            setitimer(ITIMER_VIRTUAL, &soon, nullptr);
            if (mkdir("gone", 0700) == 0 && chdir("gone") == 0)
                rmdir("../gone");
            umask(mask);
        };
        EXPECT_TRUE(writesAfter(spoil, int(mask)));
        EXPECT_EQ(runAfter(spoil, {kSwapCommand, "2", current, previous}), 0);
        for (const std::string& list : {current, previous})
            EXPECT_EQ(fs::status(list).permissions(), fs::perms(0644)) << mask;
    }
    ASSERT_EQ(chdir("/"), 0);
}

// The caller blocks and ignores every signal and never reads: the deadline ends the helper all the same.
TEST_F(HelperInheritsTest, ItsTimeIsLimitedWhateverTheCallerDoes)
{
    ASSERT_TRUE(stage(listText(1)));
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_NONBLOCK), 0);
    while (::write(ends[1], "x", 1) == 1)
        continue;
    auto spoil = [&] {
        fcntl(ends[1], F_SETFL, 0);
        dup2(ends[1], 1);
        blockEverything();
    };
    EXPECT_EQ(runAfter(spoil, {kRenameCommand, url}), 128 + SIGALRM);
    EXPECT_EQ(readFile(current), listText(1));
    close(ends[0]);
    close(ends[1]);
}
