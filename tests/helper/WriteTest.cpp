#include "helper/HelperTest.h"
#include "profiles/HelperChannel.h"
#include "profiles/ProfileListFile.h"

#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

#ifdef PDE_SANITIZED
constexpr int kRounds = 10; // a sanitized program takes many times longer to start
#else
constexpr int kRounds = 200;
#endif

// A whole list of 500 slots, so long that it takes several pieces.
std::string fullListText(int tag)
{
    auto list = std::make_unique<ProfileList>();
    list->iNum = tag;
    return listFileText(*list, *list, *list);
}

// Runs `work` in a process of its own, as another dialog would.
pid_t inAnotherProcess(const std::function<bool()>& work)
{
    pid_t child = fork();
    if (child == 0)
        _exit(work() ? 0 : 1);
    return child;
}

int statusOf(pid_t child)
{
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

} // namespace

TEST_F(HelperTest, PiecesBecomeTheListOnlyByTheRename)
{
    std::string text = fullListText(1);
    std::vector<std::string_view> pieces = listFilePieces(text);
    ASSERT_GT(pieces.size(), 3U);
    for (std::string_view piece : pieces) {
        EXPECT_TRUE(stage(std::string(piece)));
        EXPECT_FALSE(fs::exists(current));
    }
    struct stat staging = {};
    ASSERT_EQ(names().size(), 1U);
    ASSERT_EQ(stat((folder / names()[0]).c_str(), &staging), 0);
    EXPECT_EQ(staging.st_mode & 0777, 0600U);
    EXPECT_TRUE(rename());
    EXPECT_EQ(readFile(current), text);
    struct stat list = {};
    ASSERT_EQ(stat(current.c_str(), &list), 0);
    EXPECT_EQ(list.st_mode & 07777, 0644U);
    EXPECT_EQ(names(), Strings{fs::path(current).filename()});
    expectRefused({kRenameCommand, url});
}

TEST_F(HelperTest, APieceNeedsABeginningAndABeginningStartsAfresh)
{
    std::string text = listText(1);
    expectRefused({kWritePieceCommand, url, text.substr(20)});
    EXPECT_TRUE(stage("<?xml of a write that was given up"));
    EXPECT_TRUE(stage(text.substr(0, 20)));
    EXPECT_TRUE(stage(text.substr(20)));
    EXPECT_TRUE(rename());
    EXPECT_EQ(readFile(current), text);
    expectRefused({kWritePieceCommand, url, "more"});
}

TEST_F(HelperTest, WhatIsNotAListNeverReplacesOne)
{
    ASSERT_TRUE(write(listText(1)));
    std::string text = listText(2);
    std::string withoutSim = text;
    withoutSim.replace(withoutSim.find("SIM"), 3, "SIN");
    Strings bad = {"<?xml",
                   text.substr(0, text.size() - 3),
                   withoutSim,
                   "<?xml version=\"1.0\"?><plist/>",
                   "<?xml version=\"1.0\"?><!DOCTYPE p [<!ENTITY a \"b\">]>" +
                       text.substr(text.find("<plist")),
                   text + text};
    std::string deep = "<?xml version=\"1.0\"?><plist version=\"1.0\">";
    for (int i = 0; i < 10000; ++i)
        deep += "<dict><key>a</key>";
    bad.push_back(deep.substr(0, 100000));
    for (const std::string& each : bad) {
        SCOPED_TRACE(each.substr(0, 80));
        EXPECT_TRUE(stage(each));
        EXPECT_FALSE(rename());
        EXPECT_EQ(readFile(current), listText(1));
        EXPECT_EQ(names().size(), 1U) << "the refused write is gone";
    }
    EXPECT_TRUE(write(text));
}

TEST_F(HelperTest, MoreThanAListEverHasIsRefusedAndEndsTheWrite)
{
    std::string piece(120000, ' ');
    ASSERT_TRUE(stage("<?xml"));
    int accepted = 0;
    while (accepted < 100 && confirms({kWritePieceCommand, url, piece}))
        ++accepted;
    EXPECT_EQ(accepted, (4 << 20) / 120000);
    EXPECT_TRUE(names().empty());
    expectRefused({kWritePieceCommand, url, "x"});
}

TEST_F(HelperTest, ASwapKeepsOrPutsBackTheWholeList)
{
    for (const char* mode : {"2", "3", "0", "1", "4", "-1", "23", "2147483647", "", "two", "02"})
        expectRefused({kSwapCommand, mode, current, previous});
    ASSERT_TRUE(write(listText(1)));
    EXPECT_TRUE(confirms({kSwapCommand, "2", current, previous}));
    EXPECT_EQ(readFile(previous), listText(1));
    ASSERT_TRUE(write(listText(2)));
    EXPECT_TRUE(confirms({kSwapCommand, "3", current, previous}));
    EXPECT_EQ(readFile(current), listText(1));
    EXPECT_EQ(readFile(previous), listText(1));
    EXPECT_EQ(names().size(), 2U);
    sandbox.write(fs::relative(previous, root), "not a list");
    expectRefused({kSwapCommand, "3", current, previous});
    sandbox.write(fs::relative(current, root), std::string((4 << 20) + 1, ' '));
    expectRefused({kSwapCommand, "2", current, previous});
}

TEST_F(HelperTest, ExistenceAndRemovalSayWhatIsThere)
{
    expectRefused({kExistCommand, current});
    expectRefused({kRemoveCommand, current});
    expectRefused({kRemoveCommand, previous});
    ASSERT_TRUE(write(listText(1)));
    ASSERT_TRUE(confirms({kSwapCommand, "2", current, previous}));
    EXPECT_TRUE(confirms({kExistCommand, current}));
    EXPECT_TRUE(confirms({kRemoveCommand, current}));
    EXPECT_EQ(names(), Strings{fs::path(previous).filename()});
    EXPECT_TRUE(confirms({kRemoveCommand, previous}));
    EXPECT_TRUE(names().empty());
}

TEST_F(HelperTest, WhatDeadWritesLeftIsRemovedByTheNextOneAndLiveOnesAreFew)
{
    ASSERT_EQ(
        statusOf(inAnotherProcess([&] { return stage(listText(1)) && rename() && stage("<?xml dead"); })), 0);
    EXPECT_EQ(names().size(), 2U);
    ASSERT_TRUE(stage(listText(2)));
    EXPECT_EQ(names().size(), 2U) << "the dead write is gone, ours is there";
    ASSERT_TRUE(rename());

    int gate[2];
    ASSERT_EQ(pipe(gate), 0);
    std::vector<pid_t> children;
    for (int i = 0; i < 20; ++i)
        children.push_back(inAnotherProcess([&] {
            char byte;
            close(gate[1]);
            bool staged = stage("<?xml alive");
            return read(gate[0], &byte, 1) == 0 && staged;
        }));
    EXPECT_TRUE(waitUntil([&] { return names().size() == 17; }));
    EXPECT_FALSE(waitUntil([&] { return names().size() > 17; }, std::chrono::milliseconds(300)));
    close(gate[1]);
    close(gate[0]);
    int refused = 0;
    for (pid_t child : children)
        refused += statusOf(child) != 0;
    EXPECT_EQ(refused, 4);
    EXPECT_TRUE(write(listText(3)));
}

TEST_F(HelperTest, TwoDialogsThatSaveAtOnceNeverMixAndReadersSeeWholeLists)
{
    ASSERT_TRUE(write(listText(1)));
    std::vector<pid_t> writers;
    for (int tag : {1, 2})
        writers.push_back(inAnotherProcess([&, tag] {
            std::string text = listText(tag);
            for (int round = 0; round < kRounds; ++round) {
                if (!stage(text.substr(0, 300)) || !stage(text.substr(300)) || !rename())
                    return false;
            }
            return true;
        }));
    int reads = 0;
    bool whole = true;
    for (bool running = true; running; ++reads) {
        std::string seen = readFile(current);
        whole = whole && (seen == listText(1) || seen == listText(2));
        siginfo_t ended = {};
        running = waitid(P_ALL, 0, &ended, WEXITED | WNOHANG | WNOWAIT) == 0 && ended.si_pid == 0;
    }
    EXPECT_TRUE(whole);
    EXPECT_GT(reads, kRounds / 2);
    for (pid_t writer : writers)
        EXPECT_EQ(statusOf(writer), 0);
    EXPECT_EQ(names().size(), 1U);
}

TEST_F(HelperTest, AStuckCommandMakesTheNextOneFailAndIsForgottenWhenItEnds)
{
    ASSERT_TRUE(write(listText(1)));
    std::string lock = folder / (".R4270-lock-" + std::to_string(getuid()));
    int file = open(lock.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(file, LOCK_EX), 0);
    expectRefused({kSwapCommand, "2", current, previous});
    EXPECT_TRUE(confirms({kExistCommand, current})) << "a question needs no lock";
    close(file);
    EXPECT_TRUE(confirms({kSwapCommand, "2", current, previous}));
}

// At every name and level, whatever may stand there instead of what the helper expects.
TEST_F(HelperTest, LinksFifosAndFoldersInPlaceOfFilesAreRefused)
{
    fs::path victim = sandbox.write("victim", listText(7));
    Strings places = {fs::path(current).filename(), fs::path(previous).filename()};
    ASSERT_TRUE(stage(listText(1)));
    std::string staging = names()[0];
    std::string lock = ".R4270-lock-" + std::to_string(getuid());
    for (const std::string& place :
         {places[0], places[1], staging, lock, ".R4270-copy-" + std::to_string(getuid())})
        for (int kind = 0; kind < 5; ++kind) {
            SCOPED_TRACE(place + " " + std::to_string(kind));
            fs::remove_all(folder);
            fs::create_directories(folder);
            ASSERT_TRUE(write(listText(1)));
            ASSERT_TRUE(confirms({kSwapCommand, "2", current, previous}));
            ASSERT_TRUE(stage(listText(2)));
            fs::path at = folder / place;
            fs::remove(at);
            if (kind == 0)
                fs::create_symlink(victim, at);
            else if (kind == 1)
                fs::create_hard_link(victim, at);
            else if (kind == 2)
                ASSERT_EQ(mkfifo(at.c_str(), 0666), 0);
            else if (kind == 3)
                fs::create_directory(at);
            else
                fs::create_symlink(folder / "absent", at);
            if (place == lock || place == staging)
                expectRefused({kWritePieceCommand, url, listText(2)});
            if (place != places[1] && place[1] != 'R')
                expectRefused({kExistCommand, current});
            if (place == lock || place == staging || place == places[0])
                expectRefused({kRenameCommand, url});
            if (place != staging) {
                expectRefused({kSwapCommand, "2", current, previous});
            }
            if (place == lock || place == places[0])
                expectRefused({kRemoveCommand, current});
            EXPECT_EQ(readFile(victim), listText(7));
            fs::remove(at);
        }
}

TEST_F(HelperTest, ALinkOrAForeignHandOnTheWayToTheFolderIsRefused)
{
    for (fs::path level = folder; level != root / "Library"; level = level.parent_path()) {
        SCOPED_TRACE(level);
        fs::path aside = root / "aside";
        fs::rename(level, aside);
        fs::create_directory_symlink(aside, level);
        expectRefused({kWritePieceCommand, url, listText(1)});
        fs::remove(level);
        sandbox.write(fs::relative(level, root), "a file");
        expectRefused({kWritePieceCommand, url, listText(1)});
        fs::remove(level);
        expectRefused({kWritePieceCommand, url, listText(1)});
        fs::rename(aside, level);
        chmod(level.c_str(), 0777);
        expectRefused({kWritePieceCommand, url, listText(1)});
        chmod(level.c_str(), 0755);
        EXPECT_TRUE(stage(listText(1)));
    }
}
