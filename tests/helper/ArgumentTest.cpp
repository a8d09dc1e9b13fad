#include "Commands.h"
#include "WalkStart.h"
#include "helper/HelperTest.h"

#include <fcntl.h>
#include <regex>
#include <sys/file.h>

TEST(HelperArguments, HostsAreNamesOrDottedAddressesAndLoginsHarmlessInFileNames)
{
    auto expect = [](bool accepted, bool (*accepts)(std::string_view), const Strings& texts) {
        for (const std::string& text : texts)
            EXPECT_EQ(accepts(text), accepted) << text;
    };
    expect(true, isHostAddress,
           {"127.0.0.1", "printer-1.example.com", "my_printer", "a", "2nd.local.", "10-20",
            std::string(253, 'a')});
    expect(
        false, isHostAddress,
        {"",       "-Lf",        "-",     "--help",    "unix:/tmp/x", "1.2.3.4:161", "host name",
         "host\n", "$(id)",      "a/b",   "[::1]",     "h\xC3\xB6st", "a%b",         "a,b",
         "@",      "2130706433", "127.1", "1.2.3.256", "1.2.3.4.5",   "printer.9",   std::string(254, 'a')});
    expect(true, mayNameFiles, {"a", "Anna-2", "DOMAIN\\anna", "j\xC3\xBCrg", std::string(128, 'n')});
    expect(false, mayNameFiles,
           {"", "a/b", "../b", ".", ".a", "-a", "a\nb", "a\x7F", "\x01", std::string(129, 'n')});
}

TEST_F(HelperTest, EachCommandHasItsOwnNameAndNumberOfParameters)
{
    for (const char* name : {"", "velPListIsAdminProfile", "VelPListIsAdminProfile_XPC",
                             "velPListIsAdminProfile_XPC ", "--help"}) {
        ProcessResult result = run({name, current});
        EXPECT_EQ(result.status, 2) << name;
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
    ASSERT_TRUE(stage("<?xml"));
    expectRefused({kWritePieceCommand, url, ""});
}

// Everything but the two paths themselves gets one and the same answer, whether it exists or not.
TEST_F(HelperTest, ForeignPathsAreRefusedAlikeAndNothingIsTouched)
{
    ASSERT_TRUE(write(listText(1)) && confirms(keep) && stage(listText(2)));
    std::string name = fs::path(current).filename(), above = folder;
    fs::path other = folder / "other-R4270-profile.plist";
    fs::copy_file(current, other);
    Strings paths = {name, above, above + "//" + name, above + "/./" + name, folder / names()[0], other};
    for (std::string pattern : {"", "/", "/etc/shadow", "/dev/zero", " @", "/@", "/etc/..@",
                                "file://localhost@", "@/", "@\n", "@.bak", "@\xFF", "@%00", "@#x", "@?x"})
        paths.push_back(std::regex_replace(pattern, std::regex("@"), current));
    auto refuse = [this](const Strings& arguments) {
        EXPECT_NE(expectRefused(arguments).find(kForeignPath.reason), std::string::npos);
    };
    for (const std::string& path : paths) {
        for (const Strings& command : commandsOn(path, path))
            refuse(command);
        refuse({kSwapCommand, "2", path, previous});
        refuse({kSwapCommand, "2", current, path});
        for (const std::string& asUrl : {path, "file://" + path}) {
            refuse({kWritePieceCommand, asUrl, listText(3)});
            refuse({kRenameCommand, asUrl});
        }
    }
    for (size_t i = 0; i < 7; ++i)
        refuse(commandsOn(previous, current)[i]);
    EXPECT_TRUE(confirms(publish)) << "the staged list was still there";
}

TEST_F(HelperTest, TheWalkBecomesTheWalkerWithItsOwnArgumentsAndACleanEnvironment)
{
    const Strings walk = walkCommand(loginName(), "127.0.0.1");
    EXPECT_EQ(run(walk).out, "mibwalk_XPC=FALSE\n") << "no walker";
    fs::path walker = fs::path(helperExecutable()).replace_filename("R4270Walker");
    sandbox.write(walker.lexically_relative(root), R"(#!/bin/sh
printf '%s|' "$@"
tr '\0' '|' </proc/$$/environ
set -- /proc/$$/fd/*
echo $#
)");
    fs::permissions(walker, fs::perms(0755));
    for (size_t i = 1; i < walk.size(); ++i)
        for (const std::string other : {"", "-Lf/tmp/x", "-Dall", "-OS", "nobody-else", "2c"}) {
            Strings changed = walk;
            changed[i] = i == 1 + kWalkHost ? "-" + other : other;
            expectRefused(changed);
        }
    std::string expected;
    for (const std::string& each : walk)
        expected += each + "|";
    expected += "PDE_ROOT=" + root.string() + "|SNMPCONFPATH=/conf|PATH=/usr/bin:/bin|LC_ALL=C|6\n";
    auto mixUp = [] { fcntl(2, F_DUPFD, 77), close(0); };
    EXPECT_EQ(run(walk, {.environment = {"HOME=/bait", "SNMPCONFPATH=/conf"}, .prepare = mixUp}).out,
              expected)
        << "the files: the standard ones, lock, script, listing";

    int held = open((folder / (".R4270-walk-" + std::to_string(getuid()))).c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(held, LOCK_SH), 0);
    EXPECT_EQ(run(walk).out, "mibwalk_XPC=FALSE\n") << "one walk at a time";
    close(held);
    EXPECT_EQ(run(walk).status, 0);
}
