// The helper as it is installed: set-id and root's, started by ordinary users in a root folder of its own.
#include "Commands.h"
#include "helper/HelperTest.h"
#include "profiles/HelperChannel.h"

#include <sched.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr uid_t kAnna = 70001, kBert = 70002, kAdminByCase = 70003, kPrimary = 70004, kHostile = 70005;
constexpr uid_t kBig = 3000000000;
constexpr gid_t kAdmins = 70100, kUsers = 70101;

// Everything happens in a mount namespace of the test's own: a small root folder in memory with the system's
// programs, its own password file and an installed helper. Nothing of the machine is changed.
class InstalledHelperTest : public ::testing::Test {
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
        umask(022);
        root = sandbox / "root";
        fs::create_directory(root);
        ASSERT_EQ(mount("tmpfs", root.c_str(), "tmpfs", 0, "size=64m,mode=755"), 0);
        for (const char* name : {"usr", "bin", "sbin", "lib", "lib64", "lib32", "proc", "dev"})
            bring(name);
        writePasswords();
        fs::create_directories(folder());
        install(PDE_INSTALLED_HELPER, 04755);
    }

    void TearDown() override
    {
        if (!root.empty())
            umount2(root.c_str(), MNT_DETACH);
    }

    void bring(const fs::path& name)
    {
        fs::path here = fs::path("/") / name, there = root / name;
        if (fs::is_symlink(here))
            fs::copy_symlink(here, there);
        else if (fs::exists(here)) {
            fs::create_directory(there);
            ASSERT_EQ(mount(here.c_str(), there.c_str(), nullptr, MS_BIND | MS_REC, nullptr), 0) << name;
        }
    }

    void writePasswords() const
    {
        std::string users = "root:x:0:0::/:/bin/sh\n";
        auto add = [&](const std::string& name, uid_t uid, gid_t gid) {
            users += name + ":x:" + std::to_string(uid) + ":" + std::to_string(gid) + "::/:/bin/sh\n";
        };
        add("anna", kAnna, kUsers);
        add("bert", kBert, kUsers);
        add("Anna", kAdminByCase, kUsers);
        add("primary", kPrimary, kAdmins);
        add("big", kBig, kAdmins);
        add("../x", kHostile, kAdmins);
        std::string members, admins = PDE_ADMIN_GROUP, upper = admins;
        for (int i = 0; i < 2000; ++i)
            members += "member" + std::to_string(i) + ",";
        upper[0] = static_cast<char>(toupper(upper[0]));
        sandbox.write("root/etc/passwd", users);
        sandbox.write("root/etc/group", "root:x:0:\n" + upper + ":x:70102:bert\n" + admins +
                                            ":x:70100:" + members + "anna\nusers:x:70101:\n");
        sandbox.write("root/etc/nsswitch.conf", "passwd: files\ngroup: files\n");
    }

    void install(const char* build, mode_t mode) const
    {
        fs::path installed = root.string() + program;
        fs::create_directories(installed.parent_path());
        fs::copy_file(build, installed, fs::copy_options::overwrite_existing);
        ASSERT_EQ(chmod(installed.c_str(), mode), 0);
    }

    // Runs the helper in the root folder as `user`, with the groups of that number, in an environment of
    // baits.
    ProcessResult as(uid_t user, const Strings& arguments, const std::string& groups = "") const
    {
        Strings all = {"chroot", "--userspec=+" + std::to_string(user) + ":+" + std::to_string(kUsers),
                       "--groups=" + groups, root, program};
        all.insert(all.end(), arguments.begin(), arguments.end());
        ProcessOptions options;
        for (const char* name :
             {"PDE_ROOT", "HOME", "TMPDIR", "SNMPCONFPATH", "LANG", "TZDIR", "HOSTALIASES"})
            options.environment.push_back(std::string(name) + "=/bait");
        ProcessResult result = runProcess(all, options);
        EXPECT_LT(result.out.size() + result.err.size(), 4096U);
        return result;
    }

    bool confirms(uid_t user, const Strings& arguments) const
    {
        return as(user, arguments).out == arguments[0] + "=TRUE\n";
    }

    void expectRefused(uid_t user, const Strings& arguments, const std::string& groups = "") const
    {
        SCOPED_TRACE(std::to_string(user) + " " + ::testing::PrintToString(arguments));
        std::string before = treeOf(root / "Library");
        ProcessResult result = as(user, arguments, groups);
        EXPECT_EQ(result.out, arguments[0] + "=FALSE\n") << result.err;
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(treeOf(root / "Library"), before);
    }

    static std::string listOf(const std::string& user, const std::string& ending = ".plist")
    {
        return preferences + "/" + user + "-R4270-profile" + ending;
    }

    // In an order in which each succeeds for who may.
    static std::vector<Strings> changes(const std::string& user)
    {
        std::string list = listOf(user), copy = listOf(user, ".prev.plist");
        return {{kWritePieceCommand, fileUrl(list), listText(5)},
                {kRenameCommand, fileUrl(list)},
                {kSwapCommand, "2", list, copy},
                {kSwapCommand, "3", list, copy},
                {kAdministratorCommand, list},
                {kRemoveCommand, copy},
                {kRemoveCommand, list}};
    }

    std::string folder() const
    {
        return root.string() + preferences;
    }

    static inline const std::string preferences =
        "/Library/Printers/QUORVEX/Preferences/vendor.quorvex.printers.R4270";
    static inline const std::string program =
        "/Library/Application Support/QUORVEX/R4270/Helpers/R4270Helper.app/Contents/MacOS/R4270Helper";
    Sandbox sandbox;
    fs::path root;
};

} // namespace

TEST_F(InstalledHelperTest, AMemberOfTheAdministratorsGroupMaintainsHisOwnListOnly)
{
    for (auto [user, name] :
         {std::pair<uid_t, std::string>(kAnna, "anna"), {kPrimary, "primary"}, {kBig, "big"}, {0, "root"}})
        for (const Strings& change : changes(name)) {
            EXPECT_TRUE(confirms(user, change)) << name << ' ' << change[0];
            for (const auto& entry : fs::directory_iterator(folder())) {
                struct stat found = {};
                ASSERT_EQ(lstat(entry.path().c_str(), &found), 0);
                bool isList = entry.path().extension() == ".plist";
                EXPECT_EQ(found.st_uid + (isList ? found.st_gid : 0), 0U) << entry;
                EXPECT_EQ(found.st_mode & 07777, isList ? 0644U : 0600U) << entry;
            }
        }
    sandbox.write("root" + listOf("big"), listText(1));
    for (const Strings& change : changes("big"))
        expectRefused(kAnna, change);
    expectRefused(kAnna, {kExistCommand, listOf("big")});
    expectRefused(kAnna, walkCommand("big", "127.0.0.1"));
}

// Who may run a command is asked before it sees its parameters.
TEST_F(InstalledHelperTest, WhoeverIsNotAMemberIsRefusedEveryCommandThatDoesNotSayOtherwise)
{
    static_assert(Command{}.mayRun == Who::kAdministrators);
    for (const Command& command : commands()) {
        Strings arguments(command.parameters + 1, "x");
        arguments[0] = command.name;
        Outcome outcome = arguments[0] == kExistCommand ? kForeignPath : kNotPermitted;
        EXPECT_NE(as(kBert, arguments).err.find(outcome.reason), std::string::npos) << command.name;
    }
    sandbox.write("root" + listOf("bert"), listText(1));
    EXPECT_TRUE(confirms(kBert, {kExistCommand, listOf("bert")})) << "he may ask about his own";
    // The groups of a process are its caller's choice, so not even the real group's number helps.
    for (const char* groups : {"", "70100", "70102"})
        for (const Strings& change : changes("bert"))
            expectRefused(kBert, change, groups);
    expectRefused(kAdminByCase, {kAdministratorCommand, listOf("Anna")});
    expectRefused(kHostile + 1, {kAdministratorCommand, listOf("")});
    expectRefused(kHostile, {kAdministratorCommand, listOf("../x")});
    sandbox.write("root/etc/group", "no groups at all\n");
    expectRefused(kAnna, {kAdministratorCommand, listOf("anna")});
}

TEST_F(InstalledHelperTest, WhatOthersCanChangeOrOwnIsRefusedAtEveryLevel)
{
    fs::path list = sandbox.write("root" + listOf("anna"), listText(1));
    const Strings keep = changes("anna")[2];
    for (fs::path level = list; level != root.parent_path(); level = level.parent_path()) {
        bool isList = level == list;
        for (mode_t mode : {0020, 0002, 01022}) {
            ASSERT_EQ(chmod(level.c_str(), mode | (isList ? 0644 : 0755)), 0);
            expectRefused(kAnna, keep);
        }
        ASSERT_EQ(chmod(level.c_str(), isList ? 0644 : 0755), 0);
        ASSERT_EQ(chown(level.c_str(), kAnna, kUsers), 0);
        expectRefused(kAnna, keep);
        ASSERT_EQ(chown(level.c_str(), 0, 0), 0);
        EXPECT_TRUE(confirms(kAnna, keep)) << level;
    }
}

TEST_F(InstalledHelperTest, OneUserCannotBlockAnother)
{
    std::string lock = folder() + "/.R4270-lock-" + std::to_string(kAnna);
    ASSERT_TRUE(confirms(kAnna, changes("anna")[0]));
    int file = open(lock.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(file, LOCK_EX), 0);
    EXPECT_TRUE(confirms(kBig, changes("big")[0])) << "while a command of anna's is stuck";
    close(file);
    // As a stranger can where the system lets him link foreign files.
    for (const Strings& change : changes("anna")) {
        for (const auto& entry : fs::directory_iterator(folder()))
            if (entry.path().string().find("staging") == std::string::npos)
                fs::create_hard_link(entry, root / ("link" + std::to_string(random())));
        EXPECT_TRUE(confirms(kAnna, change)) << change[0];
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
    install(PDE_HELPER, 04755);
    fs::create_directory(root / "bait");
    fs::permissions(root / "bait", fs::perms(0777));
    ScopedVariable options("ASAN_OPTIONS", "verbosity=2:log_path=/bait/log");
    ProcessResult result = as(kAnna, {"--version"});
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(fs::is_empty(root / "bait"));
}

TEST_F(InstalledHelperTest, WithoutRootItSaysWhyItCanDoNothing)
{
    install(PDE_INSTALLED_HELPER, 0755);
    EXPECT_NE(as(kAnna, changes("anna")[0]).err.find("nosuid"), std::string::npos);
}

TEST_F(InstalledHelperTest, RootIsGivenUpForGoodBeforeTheWalk)
{
    fs::path walker = fs::path(root.string() + program).replace_filename("R4270Walker");
    sandbox.write(fs::relative(walker, sandbox.path()),
                  "#!/bin/sh\ngrep -E '^(Uid|Gid|CapPrm)' /proc/$$/status\nulimit -n\n");
    ASSERT_EQ(chmod(walker.c_str(), 0755), 0);
    rlimit few = {55, 55}, before = {};
    getrlimit(RLIMIT_NOFILE, &before);
    setrlimit(RLIMIT_NOFILE, &few);
    std::string out = as(kAnna, walkCommand("anna", "127.0.0.1")).out;
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(out, "Uid:\t70001\t70001\t70001\t70001\nGid:\t70101\t70101\t70101\t70101\n"
                   "CapPrm:\t0000000000000000\n55\n")
        << "with his own limits";
}
