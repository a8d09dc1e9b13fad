#include "Commands.h"
#include "WalkStart.h"
#include "helper/HelperTest.h"
#include "profiles/DriverPaths.h"

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
    for (const std::string& login :
         Strings{"a", "Anna-2", "DOMAIN\\anna", "j\xC3\xBCrg", std::string(128, 'n')})
        EXPECT_TRUE(mayNameFiles(login)) << login;
    for (const std::string& login :
         Strings{"", "a/b", "../b", ".", ".a", "-a", "a\nb", "a\x7F", "\x01", std::string(129, 'n')})
        EXPECT_FALSE(mayNameFiles(login)) << login;
}

TEST_F(HelperTest, EachCommandHasItsOwnNameAndNumberOfParameters)
{
    for (const Strings& arguments :
         {Strings{}, Strings{""}, Strings{"velPListIsAdminProfile", current},
          Strings{"VelPListIsAdminProfile_XPC", current}, Strings{"velPListIsAdminProfile_XPC ", current},
          Strings{"--help", "x"}}) {
        ProcessResult result = run(arguments);
        EXPECT_EQ(result.status, 2) << ::testing::PrintToString(arguments);
        EXPECT_EQ(result.out, "");
        EXPECT_NE(result.err.find("no such command"), std::string::npos);
    }
    const char* none[] = {nullptr};
    EXPECT_EQ(runHelper(0, none), 2);
    EXPECT_EQ(run({"--version"}).out, "R4270Helper " PDE_VERSION "\n");
    std::string help = run({"--help"}).out;
    for (const Command& command : commands()) {
        EXPECT_NE(help.find(std::string("  ") + command.name + " "), std::string::npos) << command.name;
        for (size_t count = 0; count < 13; ++count) {
            Strings arguments(count + 1, count == command.parameters ? "" : current);
            arguments[0] = command.name;
            expectRefused(arguments);
        }
    }
    expectRefused({kWritePieceCommand, url, ""});
}

// Everything but the two paths themselves gets one and the same answer, whether it exists or not.
TEST_F(HelperTest, ForeignPathsAreRefusedAlikeAndNothingIsTouched)
{
    ASSERT_TRUE(write(listText(1)) && confirms({kSwapCommand, "2", current, previous}) && stage(listText(2)));
    fs::path other = folder / "other-R4270-profile.plist", alias = root / "alias";
    sandbox.write(other.lexically_relative(root), listText(9));
    fs::create_symlink(current, alias);
    std::string name = fs::path(current).filename(), above = folder.string();
    Strings reasons;
    auto refuse = [&](const Strings& arguments) { reasons.push_back(expectRefused(arguments)); };
    Strings paths = {"", "/", "/etc/shadow", "/dev/zero", name, other, alias, above, folder / names()[0]};
    for (const char* front : {" ", "/", "/etc/..", "file://localhost"})
        paths.push_back(front + current);
    for (const char* tail : {"/", "\n", ".bak", "\xFF", "%00"})
        paths.push_back(current + tail);
    for (const char* between : {"//", "/./"})
        paths.push_back(above + between + name);
    for (const char* tail : {"#x", "?x"})
        paths.push_back(url + tail);
    for (const std::string& path : paths) {
        for (const char* command : {kAdministratorCommand, kExistCommand, kRemoveCommand})
            refuse({command, path});
        refuse({kSwapCommand, "2", path, previous});
        refuse({kSwapCommand, "2", current, path});
        for (const std::string& asUrl : {path, "file://" + path}) {
            refuse({kWritePieceCommand, asUrl, listText(3)});
            refuse({kRenameCommand, asUrl});
        }
    }
    for (const char* command : {kAdministratorCommand, kExistCommand})
        refuse({command, previous});
    refuse({kRenameCommand, "file://" + previous});
    refuse({kSwapCommand, "2", previous, current});
    refuse({kSwapCommand, "3", current, current});
    EXPECT_EQ(std::count(reasons.begin(), reasons.end(), reasons[0]), std::ptrdiff_t(reasons.size()));
    EXPECT_TRUE(rename()) << "the staged list was still there";
}

TEST_F(HelperTest, TheWalkBecomesTheWalkerWithItsOwnArgumentsAndACleanEnvironment)
{
    Strings walk = walkCommand(loginName(), "127.0.0.1");
    for (size_t i = 1; i < walk.size(); ++i)
        for (const std::string other : {"", "-Lf/tmp/x", "-Dall", "-OS", "nobody-else", "2c"}) {
            Strings changed = walk;
            changed[i] = i == 1 + kWalkHost ? "-" + other : other;
            expectRefused(changed);
        }
    EXPECT_EQ(run(walk).out, "mibwalk_XPC=FALSE\n") << "no walker";
    ScopedVariable variable("PDE_ROOT", root);
    fs::path walker = fs::path(helperExecutable()).replace_filename("R4270Walker");
    sandbox.write(walker.lexically_relative(root),
                  "#!/bin/sh\nprintf '%s|' \"$@\"\necho\nexport -p\nset -- /proc/$$/fd/*\necho files $#\n"
                  "while [ -e " +
                      root.string() + "/hold ]; do sleep 0.02; done\n");
    fs::permissions(walker, fs::perms(0755));
    ProcessOptions options;
    options.environment = {"HOME=/bait", "LD_BIND_NOW=1", "MIBS=/bait", "SNMPCONFPATH=/conf"};
    std::string out = run(walk, options).out, joined;
    for (const std::string& each : walk)
        joined += each + "|";
    EXPECT_EQ(out.substr(0, out.find('\n')), joined);
    EXPECT_EQ(out.find("bait"), std::string::npos) << out;
    EXPECT_NE(out.find("SNMPCONFPATH='/conf'"), std::string::npos) << out;
    EXPECT_NE(out.find("\nfiles 6\n"), std::string::npos)
        << "the standard ones, lock, script, listing: " << out;

    sandbox.write("hold", "");
    Strings command = walk;
    command.insert(command.begin(), program);
    {
        BackgroundProcess first(command, root / "log");
        ASSERT_TRUE(waitUntil([&] { return !readFile(root / "log").empty(); }));
        EXPECT_EQ(run(walk).out, "mibwalk_XPC=FALSE\n") << "one walk at a time";
    }
    fs::remove(root / "hold");
    EXPECT_TRUE(waitUntil([&] { return run(walk).status == 0; })) << "a walk that was killed blocks none";
}
