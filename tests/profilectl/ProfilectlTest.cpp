#include "support/DriverRoot.h"
#include "support/SimulatedPrinter.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

bool has(const std::string& text, const std::string& words)
{
    return text.find(words) != std::string::npos;
}

/// The program and the real helper below a scratch root.
class ProfilectlTest : public testing::Test {
protected:
    static ProcessResult run(std::vector<std::string> arguments, ProcessOptions options = {})
    {
        arguments.insert(arguments.begin(), PDE_PROFILECTL);
        return runProcess(arguments, options);
    }

    static std::string done(const std::vector<std::string>& arguments, const std::string& input = {})
    {
        ProcessResult result = run(arguments, {.input = input});
        EXPECT_TRUE(result.status == 0 && result.err.empty()) << result.err;
        return result.out;
    }

    /// Expects this exit status, a message that holds `words`, and an untouched list file.
    static void fails(const std::vector<std::string>& arguments, int status, const std::string& words,
                      const std::string& input = {})
    {
        std::string before = readFile(currentListPath());
        ProcessResult result = run(arguments, {.input = input});
        EXPECT_EQ(result.status, status) << words << ": " << result.err;
        EXPECT_TRUE(has(result.err, words) && has(result.err, "profilectl: ")) << words << ": " << result.err;
        EXPECT_TRUE(readFile(currentListPath()) == before) << words;
    }

    fs::path helper = fs::path(helperExecutable()); ///< this build's own
    DriverRoot root;
};

} // namespace

TEST_F(ProfilectlTest, AddsHidesShowsAndRemovesThroughTheHelper)
{
    EXPECT_TRUE(has(done({"check"}), "no list file yet"));
    std::string longest(31, 'n');
    done({"add", "--class", "rgb", "photo.icc", "--name", longest});
    done({"add", "photo.icc", "--class", "rgb,sim,dst", "--location", "card", "--hidden"});
    EXPECT_EQ(done({"hide", "photo.icc", "--location", "disk"}),
              "photo.icc is now hidden in the menus of rgb\n");
    EXPECT_EQ(done({"show", "photo.icc", "--class", "dst"}), "photo.icc is now shown in the menus of dst\n");
    EXPECT_EQ(done({"remove", "photo.icc", "--class", "sim"}), "removed photo.icc from sim\n");
    fails({"show", "photo.icc", "--class", "sim"}, 3,
          "none of these lists has a profile \"photo.icc\"; it is in rgb, dst");
    EXPECT_EQ(done({"list"}),
              "rgb  hidden  by-hand     disk  photo.icc                        " + longest +
                  "\nrgb  hidden  by-hand     card  photo.icc                        photo.icc\n"
                  "dst  shown   by-hand     card  photo.icc                        photo.icc\n");
    EXPECT_TRUE(has(done({"check"}), "nothing is wrong"));
    EXPECT_EQ(runProcess({"sh", "-c", PDE_PROFILECTL " list >/dev/full"}).status, 5);
}

TEST_F(ProfilectlTest, ExportedListsCanBeImportedElsewhereAndAgain)
{
    done({"add", "photo.icc", "--class", "rgb", "--name", "Photo"});
    const std::string two = R"({"rgb":[{"file":"photo.icc","name":"New","inMenu":false}],
                                "dst":[{"file":"a.icc","status":"on-printer"}]})";
    EXPECT_EQ(done({"import", "-"}, two), "1 added, 1 changed, 0 as they were\n");
    EXPECT_EQ(done({"import", "-"}, two), "0 added, 0 changed, 2 as they were\n");
    EXPECT_EQ(done({"list"}), "rgb  hidden  by-hand     disk  photo.icc                        New\n"
                              "dst  shown   on-printer  disk  a.icc                            a.icc\n");
    fails({"remove", "a.icc"}, 3, "would bring it back");
    std::string file = (root / "lists.json").string();
    done({"export", file});
    fs::remove(currentListPath());
    EXPECT_EQ(done({"import", file, "--replace"}), "2 added, 0 changed, 0 as they were, 0 removed\n");
    EXPECT_EQ(done({"export"}), readFile(file));
    done({"add", "more.icc", "--class", "rgb,dst"});
    EXPECT_EQ(done({"import", "-", "--replace"}, R"({"rgb":[{"file":"photo.icc"},{"file":"b.icc"}]})"),
              "1 added, 1 changed, 0 as they were, 1 removed\n");
    EXPECT_TRUE(has(done({"list", "--class", "dst"}), "more.icc")) << "only the named list is replaced";
}

TEST_F(ProfilectlTest, SaysWhatIsWrongWithACommandANameOrAnImportedFile)
{
    done({"add", "photo.icc", "--class", "rgb"});
    const std::tuple<std::vector<std::string>, int, const char*> commands[] = {
        {{"add", "photo.icc", "--class", "dst,rgb"}, 3, "already"},
        {{"hide", "nope.icc"}, 3, "no list has"},
        {{"add", "--class", "rgb", "a b.icc"}, 2, "no profile file name"},
        {{"add", "--class", "rgb", "a.icc", "--name", std::string(30, 'n') + "\xC3\xA9"}, 2, "32 bytes"},
        {{"add", "--class", "rgb", "a.icc", "--name", "bell\x07"}, 2, "cannot be shown"},
        {{"add", "--class", "rgb", "a.icc", "--name", "\u202Egpj.exe"}, 2, "cannot be shown"},
        {{}, 2, "commands are list"},
        {{"bogus"}, 2, "no command \"bogus\""},
        {{"add", "a.icc"}, 2, "--class"},
        {{"import", "/nowhere"}, 2, "cannot read"},
        {{"restore"}, 3, "no previous copy"},
    };
    for (const auto& [arguments, status, words] : commands)
        fails(arguments, status, words);
    const std::pair<std::string, const char*> files[] = {
        {"\x9B", "last read: '?'"},
        {R"({"rgb":[{"file":"ok.icc"},{"file":"a.icc","bogus":1}]})", "rgb[1]"},
        {R"({"rgb":[{"file":"a.icc","index":18446744073709551615}]})", "32 bits"},
        {R"({"rgb":[{"file":"a.icc","location":"moon"}]})", "disk"},
        {std::string(5 << 20, ' '), "4 MiB"},
    };
    for (const auto& [text, words] : files)
        fails({"import", "-"}, 2, words, text);
}

TEST_F(ProfilectlTest, CheckTellsWhatReadingLosesAndTheLastGoodCopyIsPutBack)
{
    done({"add", "one.icc", "--class", "rgb"});
    done({"add", "two.icc", "--class", "rgb"});
    const std::string good = readFile(currentListPath());
    const std::array<std::string, 3> rows[] = {
        {"<key>InMenu0000</key>\n<integer>6<", "<key>InMenu0000</key>\n<integer>0<",
         "\nRGB: \"two.icc\" in slot 1 lost: iNum is 2, but 1 slot used\n1 fault\n"},
        {"one.icc", std::string(40, 'x'), "RGB: FileName: 1 name cut to 31 bytes"},
        {"InMenu0499", "InMenu0500", "RGB: InMenu: 1 value lost"},
        {"<key>SIM</key>", "<key>sim</key>", "SIM: the list is missing"},
        {"</plist>", "</plis>", "no profile list"},
        // What costs nothing is no fault.
        {"one.icc", "two.icc", ""},
        {"<key>FileName0000</key>\n<string>one.icc</string>", "", ""},
        {"<integer>2</integer>", "<integer>3</integer>", ""},
    };
    for (const auto& [from, to, words] : rows) {
        std::string text = good;
        std::ofstream(currentListPath()) << text.replace(text.find(from), from.size(), to);
        ProcessResult result = run({"check"});
        EXPECT_EQ(result.status, words.empty() ? 0 : 1) << to << result.out;
        EXPECT_TRUE(has(result.out, words)) << result.out;
    }
    std::ofstream(currentListPath()) << "<plist>";
    std::ofstream(previousListPath()) << good;
    fails({"add", "x.icc", "--class", "rgb"}, 1, "profilectl check");
    done({"restore"});
    EXPECT_TRUE(readFile(currentListPath()) == good);
    std::ofstream(previousListPath()) << "<plist>";
    fails({"restore"}, 1, "cannot be read");
}

TEST_F(ProfilectlTest, AUserWithoutPermissionOrAHelperThatWorksCanOnlyRead)
{
    done({"add", "photo.icc", "--class", "rgb"});
    const fs::path installed = helperExecutable();
    root.replaceHelper("exit 0");
    for (auto [change, words] : {std::pair("chmod 644 \"$0\"", "cannot be executed"),
                                 {"rm \"$0\"", "is not installed"},
                                 {"head -c 3000 $1 >\"$0\"; chmod 755 \"$0\"", "is damaged"}}) {
        (void)runProcess({"sh", "-c", change, installed, helper});
        fails({"hide", "photo.icc"}, 4, words);
    }
    if (getuid() != 0)
        GTEST_SKIP() << "running as another user needs root";
    fs::copy_file(helper, installed, fs::copy_options::overwrite_existing);
    ProcessResult result = runProcess(
        {"unshare", "-m", "sh", "-c",
         "mount -t tmpfs -o nosuid none \"$1\" && cp \"$2\" \"$1\" && chown 65534 \"$1/R4270Helper\" && "
         "chmod 4755 \"$1/R4270Helper\" && exec " PDE_PROFILECTL " discover 127.0.0.1",
         "sh", installed.parent_path(), helper});
    EXPECT_TRUE(result.status == 4 && has(result.err, "nosuid")) << result.err;
    fs::copy_file(PDE_PROFILECTL, root / "profilectl"); // the build folder may be closed to others
    fs::permissions(root / "", fs::perms(0755));
    result = runProcess({"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", root / "profilectl",
                         "add", "x.icc", "--class", "rgb"});
    EXPECT_TRUE(result.status == 4 && has(result.err, "members of the group")) << result.err;
    EXPECT_FALSE(fs::exists(currentListPath("nobody")));
}

TEST_F(ProfilectlTest, DiscoverSaysWhatAPrinterHasAndNoSaveDuringAWalkIsLost)
{
    done({"add", "photo.icc", "--class", "rgb"});
    SimulatedPrinter without("");
    fails({"discover", "127.0.0.1"}, 3, "not supported");
    std::string table;
    for (char i = '1'; i <= '9'; ++i)
        table += std::string("profile ") + i + " 4 \"Profile\" \"P" + i + ".ICC\" 1\n";
    SimulatedPrinter nine(table);
    EXPECT_TRUE(has(done({"discover", "127.0.0.1"}),
                    "rgb  hidden  on-printer  disk  P9.ICC                           Profile\n"));
    // Each save falls into a walk, a little later each time.
    for (int i = 0; i < 12; ++i) {
        fs::remove(currentListPath());
        BackgroundProcess walk({PDE_PROFILECTL, "discover", "127.0.0.1"}, root / "walk");
        sleepMilliseconds(2 * i);
        done({"add", "mine.icc", "--class", "rgb"});
        EXPECT_TRUE(waitUntil([&] { return !walk.running(); }));
        std::string list = done({"list"});
        EXPECT_TRUE(has(list, "mine.icc") && has(list, "P1.ICC")) << i << list << readFile(root / "walk");
    }
}
