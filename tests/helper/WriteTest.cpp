#include "helper/HelperTest.h"
#include "profiles/HelperChannel.h"
#include "profiles/ProfileListFile.h"

#include <functional>
#include <memory>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

#ifdef PDE_SANITIZED
constexpr int kRounds = 10; // a sanitized program takes many times longer to start
#else
constexpr int kRounds = 100;
#endif

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
    auto list = std::make_unique<ProfileList>();
    std::string text = listFileText(*list, *list, *list);
    expectRefused({kWritePieceCommand, url, text.substr(20, 200)});
    EXPECT_TRUE(stage("<?xml of a write that was given up"));
    for (std::string_view piece : listFilePieces(text)) {
        EXPECT_TRUE(stage(std::string(piece)));
        EXPECT_FALSE(fs::exists(current));
    }
    ASSERT_EQ(names().size(), 1U);
    EXPECT_EQ(fs::status(folder / names()[0]).permissions(), fs::perms(0600));
    EXPECT_TRUE(rename());
    EXPECT_EQ(readFile(current), text);
    EXPECT_EQ(names(), Strings{fs::path(current).filename()});
    expectRefused({kRenameCommand, url});
    expectRefused({kWritePieceCommand, url, "more"});
}

TEST_F(HelperTest, WhatIsNotAListReplacesNeitherAListNorItsCopy)
{
    std::string text = listText(2), withoutSim = text,
                deep = "<?xml version=\"1.0\"?><plist version=\"1.0\">";
    withoutSim.replace(withoutSim.find("SIM"), 3, "SIN");
    for (int i = 0; i < 5000; ++i)
        deep += "<dict><key>a</key>";
    ASSERT_TRUE(write(listText(1)) && confirms({kSwapCommand, "2", current, previous}));
    for (const std::string& bad :
         Strings{"<?xml", text.substr(0, text.size() - 3), withoutSim, "<?xml version=\"1.0\"?><plist/>",
                 "<?xml version=\"1.0\"?><!DOCTYPE p [<!ENTITY a \"b\">]>" + text.substr(text.find("<plist")),
                 text + text, deep}) {
        SCOPED_TRACE(bad.substr(0, 80));
        EXPECT_TRUE(stage(bad));
        EXPECT_FALSE(rename());
        EXPECT_EQ(readFile(current), listText(1));
        EXPECT_EQ(names().size(), 2U) << "the refused write is gone";
        sandbox.write(fs::relative(current, root), bad);
        expectRefused({kSwapCommand, "2", current, previous});
        EXPECT_TRUE(confirms({kSwapCommand, "3", current, previous})) << "the last good copy is back";
        EXPECT_EQ(readFile(current), listText(1));
    }
    sandbox.write(fs::relative(previous, root), "not a list");
    expectRefused({kSwapCommand, "3", current, previous});
    for (const char* mode : {"0", "1", "4", "-1", "23", "", "two", "02", "2 "})
        expectRefused({kSwapCommand, mode, current, previous});
}

TEST_F(HelperTest, MoreThanAListEverHasIsRefusedAndEndsTheWrite)
{
    std::string piece(120000, ' ');
    ASSERT_TRUE(stage("<?xml"));
    int accepted = 0;
    while (accepted < 100 && stage(piece))
        ++accepted;
    EXPECT_EQ(accepted, (4 << 20) / 120000);
    EXPECT_TRUE(names().empty());
    expectRefused({kWritePieceCommand, url, "x"});
    sandbox.write(fs::relative(current, root), listText(1) + std::string(4 << 20, ' '));
    expectRefused({kSwapCommand, "2", current, previous});
}

TEST_F(HelperTest, WhatDeadWritesLeftIsRemovedByTheNextOneAndLiveOnesAreFew)
{
    EXPECT_EQ(statusOf(inAnotherProcess([&] { return write(listText(1)) && stage("<?xml dead"); })), 0);
    ASSERT_EQ(names().size(), 2U);
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
    EXPECT_TRUE(waitUntil([&] { return names().size() == 17; }))
        << "the list and 16 writes, not the dead one";
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
            bool done = true;
            for (int round = 0; round < kRounds; ++round)
                done = done && stage(text.substr(0, 300)) && stage(text.substr(300)) && rename();
            return done;
        }));
    bool whole = true;
    for (bool running = true; running;) {
        std::string seen = readFile(current);
        whole = whole && (seen == listText(1) || seen == listText(2));
        siginfo_t ended = {};
        running = waitid(P_ALL, 0, &ended, WEXITED | WNOHANG | WNOWAIT) == 0 && ended.si_pid == 0;
    }
    EXPECT_TRUE(whole);
    EXPECT_EQ(statusOf(writers[0]) + statusOf(writers[1]), 0);
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
    const std::pair<std::string, std::function<void(const fs::path&)>> kinds[] = {
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
                    bool harmless = kind == "second name" && command != more;
                    EXPECT_EQ(confirms(command), done || harmless)
                        << row.place << ' ' << kind << ' ' << ::testing::PrintToString(command);
                    EXPECT_EQ(readFile(victim), listText(7));
                    EXPECT_FALSE(fs::exists(root / "absent"));
                }
    fs::remove(current);
    for (const Strings& command : {exist, remove, keep})
        expectRefused(command);
}

TEST_F(HelperTest, ALinkOrAForeignHandOnTheWayToTheFolderIsRefused)
{
    for (fs::path level = folder; level != root / "Library"; level = level.parent_path()) {
        SCOPED_TRACE(level);
        fs::path aside = root / "aside";
        fs::rename(level, aside);
        expectRefused({kWritePieceCommand, url, listText(1)});
        fs::create_directory_symlink(aside, level);
        expectRefused({kWritePieceCommand, url, listText(1)});
        fs::remove(level);
        fs::rename(aside, level);
        chmod(level.c_str(), 0777);
        expectRefused({kWritePieceCommand, url, listText(1)});
        chmod(level.c_str(), 0755);
        EXPECT_TRUE(stage(listText(1)));
    }
}

TEST(Installation, StopsAtWhateverOthersCouldChangeAndMakesItsFoldersReadable)
{
    Sandbox sandbox;
    auto prepare = [&] {
        ProcessOptions options;
        options.environment = {"DESTDIR=" + (sandbox / "to").string()};
        return runProcess({"sh", "-c",
                           "umask 077; exec cmake -DCMAKE_INSTALL_PREFIX=/usr "
                           "'-DFOLDERS=/Library/Printers/QUORVEX/R4270;bin' -P \"$0\"",
                           PDE_SOURCE_DIR "/packaging/PrepareFolders.cmake"},
                          options);
    };
    EXPECT_EQ(prepare().status, 0);
    fs::path own = sandbox / "to/Library/Printers/QUORVEX", list = own / "a-R4270-profile.plist";
    for (const auto& entry : fs::recursive_directory_iterator(sandbox / "to"))
        EXPECT_EQ(entry.status().permissions(), fs::perms(0755)) << entry;
    EXPECT_TRUE(fs::exists(own / "R4270") && fs::exists(sandbox / "to/usr/bin"));
    fs::permissions(sandbox / "to/usr", fs::perms(0775));
    fs::remove_all(sandbox / "to/usr/bin");
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
