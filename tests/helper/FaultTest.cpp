// A kill or a failing call at each step of a command, a full disk: the list is the old one or the new one,
// the marker appears only with the new one, and the next write works.
#include "helper/HelperTest.h"

#include <fstream>
#include <functional>
#include <map>
#include <regex>
#include <sched.h>
#include <set>
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
        if (runProcess({"strace", "-D", "-o", "/dev/null", "true"}).status != 0)
            GTEST_SKIP() << "strace cannot trace here";
    }

    struct Case {
        Strings command;
        bool isStaged;             ///< a list with tag 2 is staged before it
        std::string file;          ///< which the command replaces
        std::string before, after; ///< what it holds
    };

    std::vector<Case> cases() const
    {
        return {{{kRenameCommand, url}, true, current, listText(1), listText(2)},
                {{kWritePieceCommand, url, listText(2)}, false, current, listText(1), listText(1)},
                {{kSwapCommand, "2", current, previous}, false, previous, listText(0), listText(1)}};
    }

    // Runs a command on lists with the tags 1 and 0, traced with `options`. The command stays our child.
    ProcessResult trace(const Case& each, const Strings& options) const
    {
        for (const fs::path& left : fs::directory_iterator(folder))
            fs::remove(left);
        sandbox.write(fs::relative(current, root), listText(1));
        sandbox.write(fs::relative(previous, root), listText(0));
        EXPECT_TRUE(!each.isStaged || stage(listText(2)));
        Strings all = {"strace", "-D", "-y"};
        all.insert(all.end(), options.begin(), options.end());
        all.push_back(program);
        all.insert(all.end(), each.command.begin(), each.command.end());
        ScopedVariable variable("PDE_ROOT", root);
        return runProcess(all);
    }

    // Which of its calls of each kind a command makes once its process is settled: the first and the last
    // number. Before that nothing has been looked at.
    std::map<std::string, std::pair<int, int>> systemCalls(const Case& each) const
    {
        trace(each, {"-o", root / "trace"});
        std::map<std::string, int> before;
        std::map<std::string, std::pair<int, int>> calls;
        std::ifstream lines(root / "trace");
        bool settled = false;
        for (std::string line; std::getline(lines, line);) {
            std::string call = line.substr(0, line.find('('));
            if (call == line || call.find(' ') != std::string::npos)
                continue;
            settled = settled || call == "setresuid";
            int number = ++before[call];
            // Who it is cannot fail, so nobody asks whether it did.
            if (settled && !(call.starts_with("get") && call.ends_with("id")))
                calls[call] = {calls.contains(call) ? calls[call].first : number, number};
        }
        return calls;
    }

    // Runs the command with `fault` at the given call and looks at what stands then.
    bool failsAt(const Case& each, const std::string& call, int number, const std::string& fault) const
    {
        SCOPED_TRACE(each.command[0] + ": " + fault + " at " + call + " " + std::to_string(number));
        std::string inject = "inject=" + call + ":" + fault + ":when=" + std::to_string(number);
        ProcessResult result = trace(each, {"-o", "/dev/null", "-e", "trace=" + call, "-e", inject});
        bool said = result.out.find("=TRUE") != std::string::npos;
        std::string now = readFile(each.file);
        EXPECT_TRUE(now == each.before || now == each.after) << now.size();
        if (said)
            EXPECT_EQ(now, each.after);
        else if (result.status == 1 && call != "write" && call != "setresuid")
            EXPECT_EQ(now, each.before) << "no marker, but the new list stands";
        EXPECT_EQ(readFile(current), each.file == current ? now : listText(1));
        EXPECT_TRUE(write(listText(3)) && readFile(current) == listText(3)) << "the next write";
        EXPECT_EQ(names().size(), 2U) << "what a dead command left is gone";
        return !said;
    }
};

} // namespace

TEST_F(HelperFaultTest, AKillOrAnErrorAtAnySystemCallLeavesAWholeList)
{
    const std::set<std::string> fileCalls = {"write",  "fsync", "openat", "renameat",
                                             "fchmod", "flock", "pread64"};
    int failed = 0;
    for (const Case& each : cases())
        for (auto [call, numbers] : systemCalls(each))
            for (const std::string fault : {"signal=KILL", "error=EIO", "error=EINTR", "error=ENOSPC"})
                for (int n = numbers.first; n <= numbers.second && !HasFailure(); ++n)
                    if (fault.ends_with("L") || fault.ends_with("IO") || fileCalls.contains(call))
                        failed += failsAt(each, call, n, fault);
    EXPECT_GT(failed, 60) << "the faults did happen";
}

// What a power loss may undo is not said to be done. Names are not looked at: an ordinary user's trace of the
// helper has none.
TEST_F(HelperFaultTest, SyncsTheFileBeforeTheRenameAndTheFolderAfterIt)
{
    const std::regex wanted("fsync\\((\\d+).*\nrenameat\\((\\d+).*\nfsync\\((\\d+).*\nwrite\\(1\\D");
    for (const Case& each : {cases()[0], cases()[2]}) {
        trace(each, {"-o", root / "trace", "-e", "trace=write,fsync,renameat"});
        std::string calls = readFile(root / "trace");
        std::smatch found;
        ASSERT_TRUE(std::regex_search(calls, found, wanted)) << calls;
        EXPECT_NE(found[1], found[2]) << "the file is not the folder; " << calls;
        EXPECT_EQ(found[3], found[2]) << "the folder in which it is renamed; " << calls;
    }
}

TEST_F(HelperFaultTest, AFullDiskFailsTheWriteAndKeepsTheList)
{
    if (getuid() != 0 || unshare(CLONE_NEWNS) != 0 ||
        mount("", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        GTEST_SKIP() << "a small file system of its own needs root and mount namespaces";
    ASSERT_EQ(mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=256k,mode=755"), 0);
    ASSERT_TRUE(write(listText(1)) && stage(listText(2)));
    std::string piece(100000, ' ');
    EXPECT_TRUE(stage(piece) && stage(piece));
    EXPECT_FALSE(stage(piece));
    EXPECT_FALSE(rename());
    std::ofstream(folder / "filler") << std::string(300000, 'f');
    EXPECT_FALSE(stage(listText(2)));
    expectRefused({kSwapCommand, "2", current, previous});
    EXPECT_EQ(readFile(current), listText(1));
    fs::remove(folder / "filler");
    EXPECT_TRUE(write(listText(2)));
    umount(folder.c_str());
}
