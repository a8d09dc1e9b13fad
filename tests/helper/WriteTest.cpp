#include "helper/HelperTest.h"

#include <fcntl.h>
#include <future>
#include <list>
#include <sys/file.h>
#include <sys/prctl.h>

TEST_F(HelperTest, PiecesBecomeTheListOnlyByTheRename)
{
    const std::string text = listText(1),
                      start = runProcess({"sh", "-c",
                                          "sed 's/.*) //' /proc/$PPID/stat | cut -d' ' -f20 | tr -d '\\n'"})
                                  .out;
    prctl(PR_SET_NAME, "a) b (c) d"); // what any caller may be called
    expectRefused({kWritePieceCommand, url, text.substr(20, 200)});
    EXPECT_TRUE(stage("<?xml of a write that was given up"));
    for (const std::string& piece : {text.substr(0, 300), text.substr(300)}) {
        EXPECT_TRUE(stage(piece));
        EXPECT_EQ(names(), Strings{".R4270-staging-" + std::to_string(getuid()) + "-" +
                                   std::to_string(getpid()) + "-" + start});
    }
    EXPECT_EQ(fs::status(folder / names()[0]).permissions(), fs::perms(0600));
    EXPECT_TRUE(confirms(publish));
    EXPECT_EQ(readFile(current), text);
    EXPECT_EQ(names(), Strings{fs::path(current).filename()});
    expectRefused(publish);
    expectRefused({kWritePieceCommand, url, "more"});
}

TEST_F(HelperTest, WhatIsNotAListReplacesNeitherAListNorItsCopy)
{
    std::string withoutSim = listText(2);
    withoutSim.replace(withoutSim.find("SIM"), 3, "SIN");
    const Strings putBack = {kSwapCommand, "3", current, previous};
    ASSERT_TRUE(write(listText(1)) && confirms(keep));
    for (const std::string& bad : Strings{"<?xml", withoutSim, "<?xml version=\"1.0\"?><plist/>"}) {
        SCOPED_TRACE(bad.substr(0, 80));
        EXPECT_TRUE(stage(bad));
        EXPECT_FALSE(confirms(publish));
        EXPECT_EQ(readFile(current), listText(1));
        EXPECT_EQ(names().size(), 2U) << "the refused write is gone";
        std::ofstream(current) << bad;
        expectRefused(keep);
        EXPECT_TRUE(confirms(putBack)) << "the last good copy is back";
        EXPECT_EQ(readFile(current), listText(1));
    }
    std::ofstream(previous) << "not a list";
    expectRefused(putBack);
    for (const char* mode : {"0", "1", "4", "-1", "23", "", "two", "02", "2 "})
        expectRefused({kSwapCommand, mode, current, previous});
}

TEST_F(HelperTest, AListMayHave4MiBAndWhatWouldBeMoreEndsTheWrite)
{
    reset();
    std::string full = listText(1);
    full.resize(4 << 20, ' ');
    std::ofstream(current) << full;
    EXPECT_TRUE(confirms(keep) && readFile(previous) == full);
    std::ofstream(current, std::ios::app) << ' ';
    EXPECT_NE(expectRefused(keep).find("too large"), std::string::npos) << "nobody has read it";
    fs::resize_file(folder / names()[0], full.size() - 1);
    EXPECT_TRUE(stage(" "));
    EXPECT_FALSE(stage(" "));
    EXPECT_EQ(names().size(), 2U);
}

TEST_F(HelperTest, SixteenWritesCanBeUnderWayAndThoseOfDeadProgramsAreRemovedByTheNext)
{
    std::list<BackgroundProcess> writers;
    for (int i = 0; i < 16; ++i)
        writers.emplace_back(
            Strings{"sh", "-c", "\"$@\"; exec sleep 60", "sh", program[0], kWritePieceCommand, url, "<?xml"},
            root / "log");
    EXPECT_TRUE(waitUntil([this] { return names().size() == 16; })) << readFile(root / "log");
    EXPECT_FALSE(stage("<?xml"));
    writers.clear();
    EXPECT_TRUE(write(listText(1)));
    EXPECT_EQ(names().size(), 1U);
}

TEST_F(HelperTest, AStuckCommandMakesTheNextOnesFailAndIsForgottenWhenItEnds)
{
    reset();
    int file = open(lock.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(file, LOCK_SH), 0);
    std::list<std::future<bool>> answers;
    for (const Strings& command : {keep, publish, {kRemoveCommand, current}, {kWritePieceCommand, url, "\n"}})
        answers.push_back(std::async(std::launch::async, [this, command] { return confirms(command); }));
    EXPECT_TRUE(confirms({kExistCommand, current})) << "a question needs no lock";
    for (std::future<bool>& answer : answers)
        EXPECT_FALSE(answer.get());
    auto end = std::async(std::launch::async, [file] {
        sleepMilliseconds(300);
        close(file);
    });
    EXPECT_TRUE(confirms(keep) && confirms(publish)) << "what was staged is no part of another command";
    EXPECT_TRUE(readFile(previous) == listText(1) && readFile(current) == listText(2));
}

// A list is refused for what it is not; names of the helper's own are made anew. Nothing is followed, and
// another name of a file, which anybody may give it on some systems, stops nothing but writing through it.
TEST_F(HelperTest, WhatStandsInPlaceOfAFileIsRefusedOrReplacedButNeverFollowed)
{
    const std::string victim = sandbox.write("victim", listText(7));
    reset();
    // Which of the commands are done all the same.
    const std::pair<std::string, std::string> places[] = {{current, "yynnnynyn"},
                                                          {previous, "yyynnyyny"},
                                                          {folder / names()[0], "ynnyyyyyy"},
                                                          {lock, "yyyyyyyyy"}};
    for (const auto& [place, done] : places)
        for (const std::string kind : {"ln -s $1", "ln -s $1.absent", "mkfifo", "install -m 666 $1", "ln $1"})
            for (size_t i = 0; i < done.size(); ++i) {
                reset();
                ASSERT_TRUE(fs::remove(place));
                ASSERT_EQ(runProcess({"sh", "-c", kind + " \"$0\"", place, victim}).status, 0);
                const Strings command = commandsOn(current, previous)[i];
                bool harmless = kind == "ln $1" && command.back() != "\n";
                EXPECT_EQ(confirms(command), done[i] == 'y' || harmless)
                    << place << ' ' << kind << ' ' << ::testing::PrintToString(command);
                EXPECT_EQ(readFile(victim), listText(7));
                EXPECT_FALSE(fs::exists(victim + ".absent"));
            }
    fs::remove(current);
    for (const Strings& command : {keep, {kExistCommand, current}, {kRemoveCommand, current}})
        EXPECT_NE(expectRefused(command).find("no profile list yet"), std::string::npos);
}

TEST(Installation, StopsAtWhateverOthersCouldChangeAndMakesItsFoldersReadable)
{
    Sandbox sandbox;
    ScopedVariable destination("DESTDIR", sandbox / "to");
    auto prepare = [] {
        return runProcess({"cmake", "-DCMAKE_INSTALL_PREFIX=/usr",
                           "-DFOLDERS=/Library/Printers/QUORVEX/R4270;bin", "-P",
                           PDE_SOURCE_DIR "/packaging/PrepareFolders.cmake"},
                          {.prepare = [] { umask(077); }});
    };
    EXPECT_EQ(prepare().status, 0);
    fs::path own = sandbox / "to/Library/Printers/QUORVEX", list = own / "a-R4270-profile.plist";
    EXPECT_EQ(runProcess({"find", sandbox / "to", "!", "-perm", "755"}).out, "");
    EXPECT_TRUE(fs::exists(own / "R4270") && fs::remove(sandbox / "to/usr/bin"));
    fs::permissions(sandbox / "to/usr", fs::perms(0775));
    fs::create_symlink("/tmp", own / "R4270/Icons");
    sandbox.write(list.lexically_relative(sandbox.path()), "");
    fs::permissions(list, fs::perms(0666));
    ProcessResult stopped = prepare();
    EXPECT_NE(stopped.status, 0);
    for (const std::string& said : {(sandbox / "to/usr").string() + " can be written",
                                    list.string() + " can be", (own / "R4270/Icons").string() + " is a link"})
        EXPECT_NE(stopped.err.find(said), std::string::npos) << said << stopped.err;
    EXPECT_FALSE(fs::exists(sandbox / "to/usr/bin"));
}
