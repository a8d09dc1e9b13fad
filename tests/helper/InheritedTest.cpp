// What the helper inherits from whoever starts it.
#include "helper/HelperTest.h"

#include <csignal>
#include <fcntl.h>
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

} // namespace

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
