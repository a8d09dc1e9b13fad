#include "Commands.h"
#include "WalkStart.h"
#include "helper/HelperTest.h"

#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

TEST(HelperArguments, TakesOnlyHostNamesAndDottedAddresses)
{
    for (const std::string& host : Strings{"127.0.0.1", "printer-1.example.com", "my_printer", "a",
                                           "2nd.local.", "10-20", std::string(253, 'a')})
        EXPECT_TRUE(isHostAddress(host)) << host;
    for (const std::string& host : Strings{"",           "-Lf",         "-",
                                           "--help",     "unix:/tmp/x", "1.2.3.4:161",
                                           "host name",  "host\n",      "$(id)",
                                           "a/b",        "[::1]",       "h\xC3\xB6st",
                                           "a%b",        "a,b",         "@",
                                           "2130706433", "127.1",       "1.2.3.256",
                                           "1.2.3.4.5",  "printer.9",   std::string(254, 'a')})
        EXPECT_FALSE(isHostAddress(host)) << host;
}

TEST(HelperArguments, NamesFilesOnlyAfterHarmlessLogins)
{
    for (const char* login : {"a", "anna", "Anna-2", "DOMAIN\\anna", "j\xC3\xBCrg", "a.b"})
        EXPECT_TRUE(mayNameFiles(login)) << login;
    for (const std::string login : {"", "/", "a/b", "../b", "..", ".", ".a", "-a", "a\nb", "a\x7F", "\x01"})
        EXPECT_FALSE(mayNameFiles(login)) << login;
    EXPECT_TRUE(mayNameFiles(std::string(128, 'n')));
    EXPECT_FALSE(mayNameFiles(std::string(129, 'n')));
}

TEST_F(HelperTest, AnUnknownCommandIsSaidToBeUnknown)
{
    for (const Strings& arguments :
         {Strings{}, Strings{""}, Strings{"velPListIsAdminProfile"},
          Strings{"VelPListIsAdminProfile_XPC", current}, Strings{"velPListIsAdminProfile_XPC ", current},
          Strings{"%s%n"}, Strings{"--help", "x"}, Strings{"-h"},
          Strings{"velPListIsAdminProfile_XPC=TRUE"}}) {
        ProcessResult result = run(arguments);
        EXPECT_EQ(result.status, 2) << ::testing::PrintToString(arguments);
        EXPECT_EQ(result.out, "");
        EXPECT_NE(result.err.find("no such command"), std::string::npos);
    }
    const char* none[] = {nullptr};
    EXPECT_EQ(runHelper(0, none), 2);
    EXPECT_NE(run({"--help"}).out.find("usage: R4270Helper"), std::string::npos);
    EXPECT_EQ(run({"--version"}).out, "R4270Helper " PDE_VERSION "\n");
}

TEST_F(HelperTest, EachCommandHasExactlyItsOwnNumberOfParameters)
{
    std::string help = run({"--help"}).out;
    for (const Command& command : commands()) {
        EXPECT_NE(help.find(std::string("  ") + command.name + " "), std::string::npos) << command.name;
        for (size_t count = 0; count < 13; ++count) {
            Strings arguments(count + 1, "");
            arguments[0] = command.name;
            expectRefused(arguments);
            if (count == command.parameters)
                continue;
            std::fill(arguments.begin() + 1, arguments.end(), count == 0 ? "" : current);
            expectRefused(arguments);
        }
    }
    expectRefused({kWritePieceCommand, url, ""});
}

// Everything but the two paths themselves gets one and the same answer, whether it exists or not.
TEST_F(HelperTest, ForeignPathsAreRefusedAlikeAndNothingIsTouched)
{
    ASSERT_TRUE(write(listText(1)));
    ASSERT_TRUE(confirms({kSwapCommand, "2", current, previous}));
    ASSERT_TRUE(stage(listText(2)));
    std::string other = folder / "somebody-R4270-profile.plist";
    sandbox.write(fs::relative(other, root), listText(9));
    fs::create_symlink(current, root / "alias");
    fs::create_hard_link(other, root / "linked.plist");
    std::string name = fs::path(current).filename();
    Strings paths = words("/ .. /etc/shadow /dev/zero %s%s%n velPListExistProfile_XPC=TRUE " + name);
    for (const std::string& path :
         Strings{"", " " + current, "/" + current, "/etc/passwd/../../" + current, std::string(100000, '/'),
                 folder / names()[0], other, folder / "absent-R4270-profile.plist"})
        paths.push_back(path);
    for (const char* path : {"alias", "linked.plist", "Library"})
        paths.push_back(root / path);
    for (const std::string tail : {"/", " ", "\n", "/.", ".bak", "\xFF", "%00", "?x"})
        paths.push_back(current + tail);
    for (const std::string& between : Strings{"//", "/./", "/../" + folder.filename().string() + "/"})
        paths.push_back(folder.string() + between + name);
    Strings urls = {current, "file://localhost" + current, url + "#x", "file://" + previous};
    for (const std::string& path : paths)
        urls.push_back("file://" + path);
    Strings reasons;
    auto refuse = [&](const Strings& arguments) { reasons.push_back(expectRefused(arguments)); };
    for (const std::string& each : urls) {
        refuse({kWritePieceCommand, each, listText(3)});
        refuse({kRenameCommand, each});
    }
    paths.push_back(url);
    for (const std::string& each : paths) {
        refuse({kAdministratorCommand, each});
        refuse({kExistCommand, each});
        refuse({kRemoveCommand, each});
        refuse({kSwapCommand, "2", each, previous});
        refuse({kSwapCommand, "2", current, each});
    }
    refuse({kAdministratorCommand, previous});
    refuse({kExistCommand, previous});
    refuse({kSwapCommand, "2", previous, current});
    refuse({kSwapCommand, "3", current, current});
    EXPECT_EQ(std::count(reasons.begin(), reasons.end(), reasons[0]), std::ptrdiff_t(reasons.size()));
    EXPECT_TRUE(rename()) << "the staged list was still there";
}

TEST_F(HelperTest, ItsOwnNameAndPlaceAreNeverUsed)
{
    sandbox.write("copy", readFile(program));
    fs::permissions(root / "copy", fs::perms(0755));
    for (const std::string& name : Strings{"", "%n%n%s", "/etc/R4270Helper.app/Contents/MacOS/R4270Helper",
                                           std::string(100000, 'n'), "--help", kExistCommand}) {
        int status = -1;
        pid_t child = fork();
        if (child == 0) {
            setenv("PDE_ROOT", root.c_str(), 1);
            close(1);
            execl((root / "copy").c_str(), name.c_str(), kAdministratorCommand, current.c_str(), nullptr);
            _exit(127);
        }
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0) << name;
    }
}

TEST_F(HelperTest, TheWalkBecomesTheWalkerWithItsOwnArgumentsAndACleanEnvironment)
{
    std::string login = fs::path(current).filename().string();
    Strings walk = walkCommand(login.substr(0, login.find("-R4270")), "127.0.0.1");
    for (size_t i = 1; i < walk.size(); ++i)
        for (const char* other : {"", "-Lf/tmp/x", "-Dall", "-M/tmp", "-OS", "nobody-else", "2c", "$(id)"}) {
            Strings changed = walk;
            changed[i] = i == 1 + kWalkHost ? std::string("-") + other : other;
            expectRefused(changed);
        }
    ProcessResult missing = run(walk);
    EXPECT_EQ(missing.out, "mibwalk_XPC=FALSE\n");
    EXPECT_EQ(missing.status, 1);

    fs::path walker = sandbox.write(
        "Library/Application Support/QUORVEX/R4270/Helpers/R4270Helper.app/Contents/"
        "MacOS/R4270Walker",
        "#!/bin/sh\nprintf '%s|' \"$@\"\necho\nexport -p | sort\nset -- /proc/$$/fd/*\necho files $#\n"
        "while [ -e " +
            root.string() +
            "/hold ]; do sleep 0.02; done\n"
            "echo mibwalk_XPC=iRet=0\n");
    fs::permissions(walker, fs::perms(0755));
    ProcessOptions options;
    options.environment = {"HOME=/bait", "LD_BIND_NOW=1", "MIBDIRS=/bait", "SNMPCONFPATH=/conf"};
    ProcessResult done = run(walk, options);
    std::string joined;
    for (const std::string& each : walk)
        joined += each + "|";
    EXPECT_EQ(done.out.substr(0, done.out.find('\n')), joined);
    EXPECT_EQ(done.out.find("bait"), std::string::npos) << done.out;
    EXPECT_NE(done.out.find("SNMPCONFPATH='/conf'"), std::string::npos) << done.out;
    EXPECT_NE(done.out.find("\nfiles 6\n"), std::string::npos)
        << "beside the standard ones the lock, the script and the listing: " << done.out;
    EXPECT_NE(done.out.find("\nmibwalk_XPC=iRet=0\n"), std::string::npos);

    sandbox.write("hold", "");
    Strings command = walk;
    command.insert(command.begin(), program);
    {
        BackgroundProcess first(command, root / "log", {"PDE_ROOT=" + root.string()});
        ASSERT_TRUE(waitUntil([&] { return !readFile(root / "log").empty(); }));
        EXPECT_EQ(run(walk).out, "mibwalk_XPC=FALSE\n") << "one walk at a time";
    }
    fs::remove(root / "hold");
    EXPECT_TRUE(waitUntil([&] { return run(walk).status == 0; })) << "a walk that was killed blocks none";
}
