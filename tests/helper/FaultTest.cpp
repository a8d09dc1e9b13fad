// A kill or a failing call at each step of a command, a full disk: the list is the old one or the new one,
// the marker appears only with the new one, and the next write works.
#include "helper/HelperTest.h"

#include <fstream>
#include <functional>
#include <map>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

class HelperFaultTest : public HelperTest {
protected:
    void SetUp() override
    {
#ifdef PDE_SANITIZED
        GTEST_SKIP() << "a sanitizer makes hundreds of calls of its own; the ordinary build is tested";
#endif
    }

    struct Case {
        Strings command;
        std::function<void()> prepare;
        std::string file;          ///< which the command replaces
        std::string before, after; ///< what it holds
    };

    std::vector<Case> cases()
    {
        auto lists = [this](int now, int copy) {
            for (const fs::path& left : fs::directory_iterator(folder))
                fs::remove(left);
            sandbox.write(fs::relative(current, root), listText(now));
            sandbox.write(fs::relative(previous, root), listText(copy));
        };
        auto staged = [=, this] {
            lists(1, 1);
            ASSERT_TRUE(stage(listText(2)));
        };
        return {
            {{kRenameCommand, url}, staged, current, listText(1), listText(2)},
            {{kWritePieceCommand, url, listText(2)}, [=] { lists(1, 1); }, current, listText(1), listText(1)},
            {{kSwapCommand, "2", current, previous},
             [=] { lists(2, 1); },
             previous,
             listText(1),
             listText(2)}};
    }

    Strings tracing(const Strings& options, const Strings& command) const
    {
        Strings helper = {program};
        helper.insert(helper.end(), command.begin(), command.end());
        return traced(options, helper);
    }

    // Which of its calls of each kind a command makes once its process is settled: the first and the last
    // number. Before that nothing has been looked at.
    std::map<std::string, std::pair<int, int>> systemCalls(const Case& each)
    {
        each.prepare();
        ProcessOptions options;
        options.environment = {"PDE_ROOT=" + root.string()};
        std::string log = root / "trace";
        runProcess(tracing({"-o", log}, each.command), options);
        std::map<std::string, int> before;
        std::map<std::string, std::pair<int, int>> calls;
        std::ifstream lines(log);
        bool settled = false;
        for (std::string line; std::getline(lines, line);) {
            size_t end = line.find('(');
            if (end == std::string::npos || line.find(' ') < end)
                continue;
            std::string call = line.substr(0, end);
            settled = settled || call == "setresuid";
            int number = ++before[call];
            // Who it is cannot fail, so nobody asks whether it did.
            if (settled && !(call.starts_with("get") && call.ends_with("id")))
                calls[call] = {calls.contains(call) ? calls[call].first : number, number};
        }
        return calls;
    }

    // Runs the command with `fault` at the given call and looks at what stands then.
    void injectAt(const Case& each, const std::string& call, int number, const std::string& fault)
    {
        SCOPED_TRACE(each.command[0] + ": " + fault + " at " + call + " " + std::to_string(number));
        each.prepare();
        ProcessOptions options;
        options.environment = {"PDE_ROOT=" + root.string()};
        std::string inject = call + ":" + fault + ":when=" + std::to_string(number);
        ProcessResult result = runProcess(
            tracing({"-o", "/dev/null", "-e", "trace=" + call, "-e", "inject=" + inject}, each.command),
            options);
        failed += result.out.find("=TRUE") == std::string::npos;
        std::string now = readFile(each.file);
        EXPECT_TRUE(now == each.before || now == each.after) << now.size();
        if (result.out.find("=TRUE") != std::string::npos)
            EXPECT_EQ(now, each.after);
        else if (result.status == 1 && call != "write" && call != "setresuid")
            EXPECT_EQ(now, each.before) << "no marker, but the new list stands";
        EXPECT_EQ(readFile(current), each.file == current ? now : listText(each.file == previous ? 2 : 1));
        EXPECT_TRUE(write(listText(3)) && readFile(current) == listText(3)) << "the next write";
    }

    void injectEverywhere(const std::string& fault)
    {
        if (tracing({}, {}).empty())
            GTEST_SKIP() << "strace cannot trace here";
        for (const Case& each : cases()) {
            auto calls = systemCalls(each);
            EXPECT_GT(calls.size(), 10U);
            for (auto [call, numbers] : calls)
                for (int number = numbers.first; number <= numbers.second && !HasFailure(); ++number)
                    injectAt(each, call, number, fault);
        }
        EXPECT_GT(failed, 30) << "the faults did happen";
    }

    int failed = 0; ///< commands that an injected fault kept from succeeding
};

} // namespace

TEST_F(HelperFaultTest, AKillAtAnySystemCallLeavesAWholeList)
{
    injectEverywhere("signal=KILL");
}

TEST_F(HelperFaultTest, AnErrorOfAnySystemCallLeavesAWholeList)
{
    injectEverywhere("error=EIO");
}

TEST_F(HelperFaultTest, InterruptedAndOutOfSpaceWritesLeaveAWholeList)
{
    if (tracing({}, {}).empty())
        GTEST_SKIP() << "strace cannot trace here";
    for (const Case& each : cases())
        for (auto [call, numbers] : systemCalls(each))
            for (const std::string file :
                 {"write", "fsync", "openat", "renameat", "fchmod", "flock", "pread64"})
                for (int number = numbers.first; call == file && number <= numbers.second; ++number)
                    for (const char* fault : {"error=EINTR", "error=ENOSPC", "error=EMFILE"})
                        injectAt(each, call, number, fault);
}

TEST_F(HelperFaultTest, AFullDiskFailsTheWriteAndKeepsTheList)
{
    if (getuid() != 0 || unshare(CLONE_NEWNS) != 0 ||
        mount("", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        GTEST_SKIP() << "a small file system of its own needs root and mount namespaces";
    ASSERT_EQ(mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=256k,mode=755"), 0);
    ASSERT_TRUE(write(listText(1)));
    ASSERT_TRUE(stage(listText(2)));
    std::string piece(100000, ' ');
    EXPECT_TRUE(confirms({kWritePieceCommand, url, piece}));
    EXPECT_TRUE(confirms({kWritePieceCommand, url, piece}));
    EXPECT_FALSE(confirms({kWritePieceCommand, url, piece}));
    EXPECT_FALSE(rename());
    EXPECT_EQ(readFile(current), listText(1));
    {
        std::ofstream filler(folder / "filler");
        filler << std::string(300000, 'f');
    }
    EXPECT_FALSE(stage(listText(2)));
    expectRefused({kSwapCommand, "2", current, previous});
    EXPECT_EQ(readFile(current), listText(1));
    fs::remove(folder / "filler");
    EXPECT_TRUE(write(listText(2)));
    umount(folder.c_str());
}
