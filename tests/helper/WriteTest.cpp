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

// A list is refused for what it is not; names of the helper's own are made anew. Nothing is followed, and
// another name of a file, which anybody may give it on some systems, stops nothing.
TEST_F(HelperTest, WhatStandsInPlaceOfAFileIsRefusedOrReplacedButNeverFollowed)
{
    fs::path victim = sandbox.write("victim", listText(7));
    const Strings begin = {kWritePieceCommand, url, listText(2)}, more = {kWritePieceCommand, url, "\n"},
                  publish = {kRenameCommand, url}, keep = {kSwapCommand, "2", current, previous},
                  putBack = {kSwapCommand, "3", current, previous}, exist = {kExistCommand, current},
                  remove = {kRemoveCommand, current}, removeCopy = {kRemoveCommand, previous};
    ASSERT_TRUE(stage(listText(1)));
    struct Row {
        fs::path place;
        std::vector<Strings> refused, done;
    } rows[] = {{current, {publish, keep, putBack, exist, remove}, {begin, removeCopy}},
                {previous, {keep, putBack, removeCopy}, {publish, remove}},
                {folder / names()[0], {more, publish}, {begin, keep, remove}},
                {folder / (".R4270-lock-" + std::to_string(getuid())), {}, {begin, publish, keep, remove}}};
    const std::pair<const char*, std::function<void(const fs::path&)>> kinds[] = {
        {"link", [&](const fs::path& at) { fs::create_symlink(victim, at); }},
        {"link to nothing", [&](const fs::path& at) { fs::create_symlink(root / "absent", at); }},
        {"fifo", [](const fs::path& at) { mkfifo(at.c_str(), 0666); }},
        {"writable", [&](const fs::path& at) { fs::copy_file(victim, at), chmod(at.c_str(), 0666); }},
        {"second name", [&](const fs::path& at) { fs::create_hard_link(victim, at); }}};
    for (const Row& row : rows)
        for (const auto& [kind, plant] : kinds)
            for (bool done : {false, true})
                for (const Strings& command : done ? row.done : row.refused) {
                    fs::remove_all(folder);
                    fs::create_directories(folder);
                    ASSERT_TRUE(write(listText(1)) && confirms(keep) && stage(listText(2)));
                    fs::remove(row.place);
                    plant(row.place);
                    bool harmless = kind == std::string("second name") && command != more;
                    EXPECT_EQ(confirms(command), done || harmless)
                        << row.place << ' ' << kind << ' ' << ::testing::PrintToString(command);
                    EXPECT_EQ(readFile(victim), listText(7));
                    EXPECT_FALSE(fs::exists(root / "absent"));
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
