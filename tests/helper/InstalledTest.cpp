// The helper as it is installed: set-id and root's, started by ordinary users in a root folder of its own.
#include "Commands.h"
#include "helper/HelperTest.h"

#include "profiles/HelperChannel.h"

#include <sched.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr uid_t kAnna = 70001, kBert = 70002, kAdminByCase = 70003, kPrimary = 70004, kNobodys = 70099;
constexpr uid_t kBig = 3000000000;
constexpr gid_t kAdmins = 70100, kUsers = 70101;

// Everything happens in a mount namespace of the test's own: a small root folder in memory with the system's
// programs, its own password file and an installed helper. Nothing of the machine is changed.
class InstalledHelperTest : public ::testing::Test {
protected:
    void SetUp() override
    {
#ifdef PDE_SANITIZED
        GTEST_SKIP() << "a sanitized helper must not be installed set-id";
#endif
        if (getuid() != 0 || unshare(CLONE_NEWNS) != 0 ||
            mount("", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
            GTEST_SKIP() << "installing a set-id program in a root folder of its own needs root";
        umask(022);
        root = sandbox / "root";
        fs::create_directory(root);
        ASSERT_EQ(mount("tmpfs", root.c_str(), "tmpfs", 0, "size=16m,mode=755"), 0);
        for (const char* name : {"usr", "bin", "sbin", "lib", "lib64", "lib32", "proc", "dev"})
            bring(name);
        writePasswords();
        fs::create_directories(root.string() + folder);
        fs::path installed = root.string() + program;
        fs::create_directories(installed.parent_path());
        fs::copy_file(PDE_INSTALLED_HELPER, installed);
        ASSERT_EQ(chown(installed.c_str(), 0, 0), 0);
        ASSERT_EQ(chmod(installed.c_str(), 04755), 0);
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

    void writePasswords()
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
        uid_t hostile = kNobodys + 1;
        for (const std::string& name : hostileNames)
            add(name, hostile++, kAdmins);
        std::string members = "root";
        for (int i = 0; i < 2000; ++i)
            members += ",member" + std::to_string(i);
        std::string admins = PDE_ADMIN_GROUP;
        std::string upper = admins;
        upper[0] = static_cast<char>(toupper(upper[0]));
        sandbox.write("root/etc/passwd", users);
        sandbox.write("root/etc/group", "root:x:0:\n" + upper + ":x:70102:bert\n" + admins +
                                            ":x:70100:" + members + ",anna\nusers:x:70101:\n");
        sandbox.write("root/etc/nsswitch.conf", "passwd: files\ngroup: files\n");
    }

    // Runs a command in the root folder as `user`, with the groups of that number.
    ProcessResult start(uid_t user, const Strings& command, const std::string& groups = "",
                        const Strings& environment = {}) const
    {
        Strings all = {"chroot", "--userspec=+" + std::to_string(user) + ":+" + std::to_string(kUsers),
                       "--groups=" + groups, root};
        all.insert(all.end(), command.begin(), command.end());
        ProcessOptions options;
        options.environment = environment;
        return runProcess(all, options);
    }

    // The same for the helper, started by `before`.
    ProcessResult as(uid_t user, const Strings& arguments, const std::string& groups = "",
                     const Strings& environment = {}, Strings before = {}) const
    {
        before.push_back(program);
        before.insert(before.end(), arguments.begin(), arguments.end());
        ProcessResult result = start(user, before, groups, environment);
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

    static std::string listOf(const std::string& user)
    {
        return folder + "/" + user + "-R4270-profile.plist";
    }
    static std::string copyOf(const std::string& user)
    {
        return folder + "/" + user + "-R4270-profile.prev.plist";
    }

    Strings write(const std::string& user, int tag) const
    {
        return {"writeDataToPlistFile_XPC", fileUrl(listOf(user)), listText(tag)};
    }
    Strings rename(const std::string& user) const
    {
        return {"writeDataToPlistFileRename_XPC", fileUrl(listOf(user))};
    }
    bool writes(uid_t user, const std::string& name, int tag) const
    {
        return confirms(user, write(name, tag)) && confirms(user, rename(name));
    }
    std::vector<Strings> changes(const std::string& user) const
    {
        return {write(user, 5),
                rename(user),
                {"velPListSwapProfile_XPC", "2", listOf(user), copyOf(user)},
                {"velPListSwapProfile_XPC", "3", listOf(user), copyOf(user)},
                {"velPListRemove_XPC", listOf(user)},
                {"velPListRemove_XPC", copyOf(user)},
                {"mibwalk_XPC", "R4270", user, "snmpwalk", "-Os", "-c", "vislaq", "-v", "1", "127.0.0.1",
                 "1.3.6.1.4.1.99999.1.1.1.1.6.13.1.1"}};
    }

    static inline const std::string folder =
        "/Library/Printers/QUORVEX/Preferences/vendor.quorvex.printers.R4270";
    static inline const std::string program =
        "/Library/Application Support/QUORVEX/R4270/Helpers/R4270Helper.app/Contents/MacOS/R4270Helper";
    static inline const Strings hostileNames = {"../x",  "a/b", ".hidden",
                                                "-dash", "..",  std::string(200, 'n')};
    Sandbox sandbox;
    fs::path root;
};

} // namespace

TEST_F(InstalledHelperTest, AMemberOfTheAdministratorsGroupMaintainsHisOwnListOnly)
{
    for (auto [user, name] :
         {std::pair<uid_t, std::string>(kAnna, "anna"), {kPrimary, "primary"}, {kBig, "big"}, {0, "root"}}) {
        EXPECT_TRUE(confirms(user, {"velPListIsAdminProfile_XPC", listOf(name)})) << name;
        EXPECT_TRUE(confirms(user, write(name, 1)));
        for (const auto& entry : fs::directory_iterator(root.string() + folder)) {
            struct stat found = {};
            ASSERT_EQ(lstat(entry.path().c_str(), &found), 0);
            EXPECT_EQ(found.st_uid, 0U) << entry;
            EXPECT_EQ(found.st_mode & 07777, entry.path().extension() == ".plist" ? 0644U : 0600U) << entry;
        }
        EXPECT_TRUE(confirms(user, rename(name)));
        EXPECT_EQ(readFile(root.string() + listOf(name)), listText(1));
        struct stat list = {};
        ASSERT_EQ(lstat((root.string() + listOf(name)).c_str(), &list), 0);
        EXPECT_EQ(list.st_gid, 0U);
        EXPECT_TRUE(confirms(user, {"velPListSwapProfile_XPC", "2", listOf(name), copyOf(name)}));
        EXPECT_TRUE(confirms(user, {"velPListExistProfile_XPC", listOf(name)}));
        EXPECT_TRUE(confirms(user, {"velPListRemove_XPC", copyOf(name)}));
    }
    ASSERT_TRUE(writes(kBig, "big", 2));
    for (const Strings& change : changes("big"))
        expectRefused(kAnna, change);
    expectRefused(kAnna, {"velPListExistProfile_XPC", listOf("big")});
    expectRefused(kAnna, {"velPListIsAdminProfile_XPC", listOf("big")});
}

TEST_F(InstalledHelperTest, ServesTheInstalledProfilectlOfAMemberOnly)
{
    fs::copy_file(PDE_INSTALLED_PROFILECTL, root / "profilectl");
    auto profilectl = [&](uid_t user, Strings arguments, int status) {
        arguments.insert(arguments.begin(), "/profilectl");
        ProcessResult result = start(user, arguments, "", {"PDE_ROOT=/bait"});
        EXPECT_EQ(result.status, status) << result.err;
        return result.out + result.err;
    };
    profilectl(kAnna, {"add", "photo.icc", "--class", "rgb", "--name", "Photo"}, 0);
    profilectl(kAnna, {"hide", "photo.icc"}, 0);
    EXPECT_EQ(profilectl(kAnna, {"list"}, 0),
              "rgb  hidden  by-hand     disk  photo.icc                        Photo\n");
    EXPECT_NE(profilectl(kAnna, {"check"}, 0).find("nothing is wrong with it"), std::string::npos);
    EXPECT_NE(profilectl(kBert, {"add", "photo.icc", "--class", "rgb"}, 4)
                  .find("members of the group \"" PDE_ADMIN_GROUP "\""),
              std::string::npos);
    EXPECT_EQ(profilectl(kBert, {"list"}, 0), "");
    EXPECT_FALSE(fs::exists(root.string() + listOf("bert")));
}

TEST_F(InstalledHelperTest, WhoeverIsNotAMemberIsRefusedAndChangesNothing)
{
    sandbox.write("root" + listOf("bert"), listText(1));
    sandbox.write("root" + copyOf("bert"), listText(2));
    // The groups of a process are its caller's choice, so not even the real group's number helps.
    for (const char* groups : {"", "70100", "70102"}) {
        expectRefused(kBert, {"velPListIsAdminProfile_XPC", listOf("bert")}, groups);
        for (const Strings& change : changes("bert"))
            expectRefused(kBert, change, groups);
    }
    EXPECT_TRUE(confirms(kBert, {"velPListExistProfile_XPC", listOf("bert")})) << "he may ask about his own";
    expectRefused(kAdminByCase, {"velPListIsAdminProfile_XPC", listOf("Anna")});
    expectRefused(kNobodys, {"velPListIsAdminProfile_XPC", listOf("")});
    uid_t hostile = kNobodys + 1;
    for (const std::string& name : hostileNames) {
        expectRefused(hostile, {"velPListIsAdminProfile_XPC", listOf(name)});
        expectRefused(hostile++, write(name, 3));
    }
    sandbox.write("root/etc/group", "no groups at all\n");
    expectRefused(kAnna, {"velPListIsAdminProfile_XPC", listOf("anna")});
}

// Who may run a command is asked before it sees its parameters.
TEST_F(InstalledHelperTest, EveryCommandThatDoesNotSayOtherwiseIsForAdministratorsOnly)
{
    static_assert(Command{}.mayRun == Who::kAdministrators);
    for (const Command& command : commands()) {
        Strings arguments(command.parameters + 1, "x");
        arguments[0] = command.name;
        bool forAnybody = arguments[0] == kExistCommand;
        const char* reason = forAnybody ? kForeignPath.reason : kNotPermitted.reason;
        EXPECT_NE(as(kBert, arguments).err.find(reason), std::string::npos) << command.name;
    }
}

TEST_F(InstalledHelperTest, AFolderThatOthersCanChangeOrOwnIsRefusedAtEveryLevel)
{
    for (fs::path level = root.string() + folder; level != root.parent_path(); level = level.parent_path()) {
        for (mode_t mode : {0775, 0777, 01777}) {
            ASSERT_EQ(chmod(level.c_str(), mode), 0);
            expectRefused(kAnna, write("anna", 1));
        }
        ASSERT_EQ(chmod(level.c_str(), 0755), 0);
        ASSERT_EQ(chown(level.c_str(), kAnna, kUsers), 0);
        expectRefused(kAnna, write("anna", 1));
        ASSERT_EQ(chown(level.c_str(), 0, 0), 0);
        EXPECT_TRUE(writes(kAnna, "anna", 1));
    }
    ASSERT_EQ(chown((root.string() + listOf("anna")).c_str(), kAnna, kUsers), 0);
    expectRefused(kAnna, {"velPListRemove_XPC", listOf("anna")});
}

TEST_F(InstalledHelperTest, NoVariableOfTheCallersHasAnyEffect)
{
    sandbox.write("root/bait/Library/Printers/QUORVEX/Preferences/vendor.quorvex.printers.R4270/x", "");
    Strings baits;
    for (const std::string& name :
         words("PDE_ROOT HOME TMPDIR PATH LD_PRELOAD LD_LIBRARY_PATH LD_AUDIT MIBS MIBDIRS SNMPCONFPATH "
               "SNMP_PERSISTENT_DIR LANG LC_ALL LANGUAGE LOCPATH NLSPATH TZ TZDIR GCONV_PATH HOSTALIASES "
               "RES_OPTIONS MALLOC_TRACE GLIBC_TUNABLES GNUSTEP_CONFIG_FILE"))
        baits.push_back(name + "=/bait");
    EXPECT_EQ(as(kAnna, write("anna", 1), "", baits).out, "writeDataToPlistFile_XPC=TRUE\n");
    EXPECT_EQ(as(kAnna, rename("anna"), "", baits).out, "writeDataToPlistFileRename_XPC=TRUE\n");
    EXPECT_EQ(readFile(root.string() + listOf("anna")), listText(1));
    if (traced({}, {}).empty())
        GTEST_SKIP() << "strace cannot trace here";
    Strings command = {"chroot", root, "strace", "-u", "anna", "-o", "/trace", program};
    Strings remove = {"velPListRemove_XPC", listOf("anna")};
    command.insert(command.end(), remove.begin(), remove.end());
    ProcessOptions options;
    options.environment = baits;
    options.environment.push_back("PATH=/usr/sbin:/usr/bin:/sbin:/bin");
    std::erase(options.environment, "PATH=/bait");
    std::erase_if(options.environment, [](const std::string& each) { return each.starts_with("LD_"); });
    EXPECT_EQ(runProcess(command, options).out, "velPListRemove_XPC=TRUE\n");
    std::string trace = readFile(root / "trace");
    EXPECT_NE(trace.find("unlinkat("), std::string::npos);
    trace.erase(0, trace.find('\n'));
    EXPECT_EQ(trace.find("bait"), std::string::npos);
}

TEST_F(InstalledHelperTest, OneUsersStuckCommandDoesNotTouchAnother)
{
    ASSERT_TRUE(writes(kAnna, "anna", 1));
    std::string lock = root.string() + folder + "/.R4270-lock-" + std::to_string(kAnna);
    int file = open(lock.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(file, LOCK_EX), 0);
    EXPECT_TRUE(writes(kBig, "big", 1));
    close(file);
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
    fs::path installed = root.string() + program;
    fs::remove(installed);
    fs::copy_file(PDE_HELPER, installed);
    ASSERT_EQ(chmod(installed.c_str(), 04755), 0);
    ProcessResult result = as(kAnna, {"--version"});
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.status, 1);
}

TEST_F(InstalledHelperTest, RootIsGivenUpForGoodBeforeTheWalk)
{
    fs::path walker =
        (root.string() + program).substr(0, (root.string() + program).rfind('/')) + "/R4270Walker";
    sandbox.write(
        fs::relative(walker, sandbox.path()),
        "#!/bin/sh\ngrep -E '^(Uid|Gid|CapEff|CapPrm)' /proc/$$/status\nid -u\nulimit -f\nulimit -n\n");
    ASSERT_EQ(chmod(walker.c_str(), 0755), 0);
    ProcessResult result = as(kAnna, changes("anna").back(), "", {},
                              {"sh", "-c", "ulimit -f 77; ulimit -n 55; exec \"$0\" \"$@\""});
    EXPECT_NE(result.out.find("Uid:\t70001\t70001\t70001\t70001\n"), std::string::npos)
        << result.out << result.err;
    EXPECT_NE(result.out.find("Gid:\t70101\t70101\t70101\t70101\n"), std::string::npos);
    EXPECT_NE(result.out.find("CapPrm:\t0000000000000000\n"), std::string::npos);
    EXPECT_NE(result.out.find("\n77\n55\n"), std::string::npos) << "his own limits: " << result.out;
}
