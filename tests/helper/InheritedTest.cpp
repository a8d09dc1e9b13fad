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

    std::string reply() const { return readFile(root / "reply"); }

    bool writesAfter(const std::function<void()>& prepare, int tag)
    {
        return runAfter(prepare, {kWritePieceCommand, url, listText(tag)}) == 0 &&
               runAfter(prepare, {kRenameCommand, url}) == 0 && readFile(current) == listText(tag);
    }
};

} // namespace

TEST_F(HelperInheritsTest, ClosedAndCrowdedDescriptorsNeverReachTheList)
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
    EXPECT_TRUE(writesAfter(
        [] {
            for (int i = 0; i < 900; ++i)
                (void)open("/dev/null", O_RDONLY);
        },
        20));
}

TEST_F(HelperInheritsTest, SmallLimitsFailCleanlyOrDoNoHarm)
{
#ifdef PDE_SANITIZED
    GTEST_SKIP() << "a sanitized program itself needs more than these limits";
#endif
    ASSERT_TRUE(write(listText(1)));
    for (auto resource :
         {RLIMIT_FSIZE, RLIMIT_NOFILE, RLIMIT_CPU, RLIMIT_STACK, RLIMIT_AS, RLIMIT_DATA, RLIMIT_NPROC})
        for (rlim_t value : {0, 3, 4, 5, 8, 65536, 1 << 20})
            for (bool hard : {false, true}) {
                auto spoil = [&] {
                    rlimit limit = {};
                    getrlimit(resource, &limit);
                    limit.rlim_cur = std::min(value, limit.rlim_max);
                    if (hard)
                        limit.rlim_max = limit.rlim_cur;
                    setrlimit(resource, &limit);
                };
                for (const Strings& command :
                     {Strings{kWritePieceCommand, url, listText(2)}, Strings{kRenameCommand, url},
                      Strings{kSwapCommand, "2", current, previous}}) {
                    int status = runAfter(spoil, command);
                    EXPECT_EQ(reply().find("=TRUE") != std::string::npos, status == 0);
                    EXPECT_TRUE(readFile(current) == listText(1) || readFile(current) == listText(2));
                    EXPECT_TRUE(!fs::exists(previous) || readFile(previous) == listText(1) ||
                                readFile(previous) == listText(2));
                }
            }
    EXPECT_TRUE(write(listText(3)));
}

TEST_F(HelperInheritsTest, SignalsTimersMaskAndFolderAreItsOwn)
{
    auto spoil = [](mode_t mask) {
        return [mask] {
            sigset_t all;
            sigfillset(&all);
            sigprocmask(SIG_BLOCK, &all, nullptr);
            for (int number : {SIGCHLD, SIGALRM, SIGTERM, SIGPIPE, SIGXFSZ})
                signal(number, SIG_IGN);
            itimerval soon = {{0, 1000}, {0, 1000}};
            setitimer(ITIMER_PROF, &soon, nullptr);
            setitimer(ITIMER_VIRTUAL, &soon, nullptr);
            if (mkdir("gone", 0700) == 0 && chdir("gone") == 0)
                rmdir("../gone");
            umask(mask);
        };
    };
    ASSERT_EQ(chdir(root.c_str()), 0);
    for (mode_t mask : {0, 022, 0777}) {
        EXPECT_TRUE(writesAfter(spoil(mask), int(mask)));
        EXPECT_EQ(runAfter(spoil(mask), {kSwapCommand, "2", current, previous}), 0);
        for (const std::string& name : names()) {
            struct stat found = {};
            ASSERT_EQ(stat((folder / name).c_str(), &found), 0);
            EXPECT_EQ(found.st_mode & 07777, 0644U) << name << ' ' << mask;
        }
    }
    ASSERT_EQ(chdir("/"), 0);
}

TEST_F(HelperInheritsTest, AReaderThatHasGoneOrADiskThatIsFullLosesOnlyTheReply)
{
    ASSERT_TRUE(stage(listText(1)));
    EXPECT_EQ(runAfter(
                  [] {
                      int ends[2];
                      if (pipe(ends) == 0 && dup2(ends[1], 1) == 1)
                          close(ends[0]);
                  },
                  {kRenameCommand, url}),
              0);
    EXPECT_EQ(readFile(current), listText(1));
    ASSERT_TRUE(stage(listText(2)));
    EXPECT_EQ(runAfter([] { dup2(open("/dev/full", O_WRONLY), 1); }, {kRenameCommand, url}), 0);
    EXPECT_EQ(readFile(current), listText(2));
}

// The caller blocks and ignores every signal and never reads: the deadline ends the helper all the same.
TEST_F(HelperInheritsTest, ItsTimeIsLimitedWhateverTheCallerDoes)
{
    ASSERT_TRUE(stage(listText(1)));
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_NONBLOCK), 0);
    while (::write(ends[1], "x", 1) == 1)
        continue;
    EXPECT_EQ(runAfter(
                  [&] {
                      fcntl(ends[1], F_SETFL, 0);
                      dup2(ends[1], 1);
                      sigset_t all;
                      sigfillset(&all);
                      sigprocmask(SIG_BLOCK, &all, nullptr);
                      signal(SIGALRM, SIG_IGN);
                  },
                  {kRenameCommand, url}),
              128 + SIGALRM);
    EXPECT_EQ(readFile(current), listText(1));
    close(ends[0]);
    close(ends[1]);
}
