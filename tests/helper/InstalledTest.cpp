// The helper as it is installed: set-id and root's, started by ordinary users in a root folder of its own.
#include "Commands.h"
#include "helper/HelperTest.h"

#include <sched.h>
#include <sys/mount.h>

namespace {

constexpr uid_t kAnna = 70001, kBert = 70002, kAdminByCase = 70003, kPrimary = 70004, kHostile = 70005;
constexpr size_t kAsk = 5; // among the commands on a list
constexpr char kUsers[] = R"(root:x:0:0::/:/bin/sh
anna:x:70001:70101::/:/bin/sh
bert:x:70002:70101::/:/bin/sh
Anna:x:70003:70101::/:/bin/sh
primary:x:70004:70100::/:/bin/sh
../x:x:70005:70100::/:/bin/sh
big:x:3000000000:70100::/:/bin/sh
)";
constexpr char kBringPrograms[] = R"(cd "$0"
for name in usr bin sbin lib lib64 lib32 proc dev; do
    if [ -L /$name ]; then cp -P /$name .; elif [ -e /$name ]; then mkdir $name && mount --rbind /$name $name; fi
done)";
constexpr char kHelper[] =
    "/Library/Application Support/QUORVEX/R4270/Helpers/R4270Helper.app/Contents/MacOS/R4270Helper";

// Everything happens in a mount namespace of the test's own: a small root folder in memory with the system's
// programs, its own password file and an installed helper. Nothing of the machine is changed.
class InstalledHelperTest : public HelperTest {
protected:
    void SetUp() override
    {
#ifdef PDE_SANITIZED
        std::string test = ::testing::UnitTest::GetInstance()->current_test_info()->name();
        if (test != "ADevelopmentBuildNeverRunsSetId")
            GTEST_SKIP() << "a sanitized helper must not be installed set-id";
#endif
        if (getuid() != 0 || unshare(CLONE_NEWNS) != 0 ||
            mount("", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
            GTEST_SKIP() << "installing a set-id program in a root folder of its own needs root";
        ASSERT_EQ(mount("tmpfs", root.c_str(), "tmpfs", 0, "size=64m,mode=755"), 0);
        ASSERT_EQ(runProcess({"sh", "-ec", kBringPrograms, root}).status, 0);
        // The group is large, its name stands there in another case, too, and anna is in many others.
        std::string groups = "root:x:0:\nusers:x:70101:\n", admins = PDE_ADMIN_GROUP, members;
        for (int i = 0; i < 2000; ++i)
            members += "member" + std::to_string(i) + ",";
        for (int i = 0; i < 100; ++i)
            groups += "g" + std::to_string(i) + ":x:" + std::to_string(80000 + i) + ":anna\n";
        groups += static_cast<char>(toupper(admins[0])) + admins.substr(1) + ":x:70102:bert\n";
        sandbox.write("etc/passwd", kUsers);
        sandbox.write("etc/group", groups + admins + ":x:70100:" + members + "anna\n");
        sandbox.write("etc/nsswitch.conf", "passwd: files\ngroup: files\n");
        fs::create_directories(folder);
        install(PDE_INSTALLED_HELPER, "4755");
    }

    void TearDown() override
    {
        umount2(root.c_str(), MNT_DETACH);
    }

    void install(const char* build, const char* mode) const
    {
        ASSERT_EQ(runProcess({"install", "-D", "-m", mode, build, root.string() + kHelper}).status, 0);
    }

    // The helper as `user` runs it in the root folder, with the groups of that number.
    InstalledHelperTest& as(uid_t user, const std::string& groups = "")
    {
        program = {"chroot", "--userspec=+" + std::to_string(user) + ":+70101", "--groups=" + groups, root,
                   kHelper};
        return *this;
    }

    static std::vector<Strings> commandsOf(const std::string& user)
    {
        std::string list =
            "/Library/Printers/QUORVEX/Preferences/vendor.quorvex.printers.R4270/" + user + "-R4270-profile";
        return commandsOn(list + ".plist", list + ".prev.plist");
    }
};

} // namespace

TEST_F(InstalledHelperTest, AMemberOfTheAdministratorsGroupMaintainsHisOwnLists)
{
    for (auto [user, name] :
         {std::pair(kAnna, "anna"), {kPrimary, "primary"}, {3000000000U, "big"}, {0U, "root"}})
        for (const Strings& command : commandsOf(name)) {
            EXPECT_TRUE(as(user).confirms(command)) << name << ' ' << command[0];
            const char wrong[] = R"(find "$0" -type f ! \( -name '*.plist' -perm 644 -uid 0 -gid 0 \) \
                ! \( -name '.R4270-*' -perm 600 -uid 0 \))";
            EXPECT_EQ(runProcess({"sh", "-c", wrong, folder}).out, "");
        }
}

// Who may run a command is asked before it sees its parameters. The groups of a process are its caller's
// choice, so not even the real group's number helps.
TEST_F(InstalledHelperTest, WhoeverIsNotAMemberIsRefusedEveryCommandThatDoesNotSayOtherwise)
{
    static_assert(Command{}.mayRun == Who::kAdministrators);
    for (const char* groups : {"", "70100", "70102"})
        for (const Command& command : commands()) {
            Strings arguments(command.parameters + 1, "x");
            arguments[0] = command.name;
            Outcome outcome = arguments[0] == kExistCommand ? kForeignPath : kNotPermitted;
            std::string reason = as(kBert, groups).expectRefused(arguments);
            EXPECT_NE(reason.find(outcome.reason), std::string::npos) << reason;
        }
    std::ofstream(folder / "bert-R4270-profile.plist") << listText(1);
    EXPECT_TRUE(as(kBert).confirms(commandsOf("bert")[6])) << "he may ask whether he has a list";
    as(kAdminByCase).expectRefused(commandsOf("Anna")[kAsk]);
    as(kHostile + 1).expectRefused(commandsOf("")[kAsk]);
    as(kHostile).expectRefused(commandsOf("../x")[kAsk]);
    sandbox.write("etc/group", "no groups at all\n");
    as(kAnna).expectRefused(commandsOf("anna")[kAsk]);
    install(PDE_INSTALLED_HELPER, "755");
    EXPECT_NE(as(kAnna).expectRefused(commandsOf("anna")[kAsk]).find("nosuid"), std::string::npos);
}

TEST_F(InstalledHelperTest, WhatOthersCanChangeOrOwnOrALinkIsRefusedAtEveryLevel)
{
    fs::path list = folder / "anna-R4270-profile.plist";
    std::ofstream(list) << listText(1);
    keep = commandsOf("anna")[3];
    as(kAnna);
    for (fs::path level = list; level != root.parent_path(); level = level.parent_path()) {
        mode_t usual = level == list ? 0644 : 0755;
        for (mode_t mode : {0020, 0002, 01022}) {
            ASSERT_EQ(chmod(level.c_str(), mode | usual), 0);
            expectRefused(keep);
        }
        ASSERT_EQ(chmod(level.c_str(), usual) + chown(level.c_str(), kAnna, 0), 0);
        expectRefused(keep);
        ASSERT_EQ(chown(level.c_str(), 0, 0), 0);
        if (level != root) {
            fs::rename(level, root / "aside");
            fs::create_symlink("/aside", level);
            expectRefused(keep);
            fs::remove(level);
            fs::rename(root / "aside", level);
        }
        EXPECT_TRUE(confirms(keep)) << level;
    }
}

TEST_F(InstalledHelperTest, TheProgramIsHardenedAndHasNoHooks)
{
    std::string headers = runProcess({"readelf", "-W", "-h", "-d", "-l", "-s", PDE_INSTALLED_HELPER}).out;
    for (const char* wanted : {"DYN (Position-Independent", "BIND_NOW", "GNU_RELRO", "__stack_chk_fail"})
        EXPECT_NE(headers.find(wanted), std::string::npos) << wanted;
    for (const char* unwanted : {"RPATH", "RUNPATH", "netsnmp", "__asan", " socket@"})
        EXPECT_EQ(headers.find(unwanted), std::string::npos) << unwanted;
    for (const char* hook : {"PDE_ROOT", "SNMPCONFPATH", PDE_BUILD_DIR "/root"})
        EXPECT_EQ(readFile(PDE_INSTALLED_HELPER).find(hook), std::string::npos) << hook;
}

TEST_F(InstalledHelperTest, ADevelopmentBuildNeverRunsSetId)
{
    install(PDE_HELPER, "4755");
    fs::create_directory(root / "bait");
    fs::permissions(root / "bait", fs::perms(0777));
    ScopedVariable options("ASAN_OPTIONS", "verbosity=2:log_path=/bait/log");
    ProcessResult result = as(kAnna).run({"--version"});
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(fs::is_empty(root / "bait"));
}

TEST_F(InstalledHelperTest, RootIsGivenUpForGoodBeforeTheWalk)
{
    fs::path walker = fs::path(root.string() + kHelper).replace_filename("R4270Walker");
    sandbox.write(fs::relative(walker, root), R"(#!/bin/sh
grep -E '^(Uid|Gid|SigIgn|CapPrm)' /proc/$$/status
tr '\0' '|' </proc/$$/environ
set -- $(grep 'Max file size' /proc/$$/limits)
echo $4
)");
    fs::permissions(walker, fs::perms(0755));
    as(kAnna);
    program.insert(program.begin(), {"prlimit", "--fsize=4096:"});
    EXPECT_EQ(run(walkCommand("anna", "127.0.0.1")).out,
              "Uid:\t70001\t70001\t70001\t70001\nGid:\t70101\t70101\t70101\t70101\n"
              "SigIgn:\t0000000000000000\nCapPrm:\t0000000000000000\nPATH=/usr/bin:/bin|LC_ALL=C|4096\n")
        << "with his own limits";
}
