#include "profiles/DriverPaths.h"
#include "support/Process.h"
#include "support/Sandbox.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

/// The program and the real helper in a root folder of their own.
class Profilectl : public testing::Test {
protected:
    Profilectl() : root("PDE_ROOT", sandbox.path().string())
    {
        fs::create_directories(preferencesFolder());
        fs::create_directories(fs::path(helperExecutable()).parent_path());
        fs::copy_file(PDE_HELPER, helperExecutable());
    }

    ProcessResult run(std::vector<std::string> arguments, ProcessOptions options = {}) const
    {
        arguments.insert(arguments.begin(), PDE_PROFILECTL);
        return runProcess(arguments, options);
    }

    /// Expects success and gives what was printed.
    std::string done(const std::vector<std::string>& arguments, const std::string& input = {}) const
    {
        ProcessResult result = run(arguments, {.input = input});
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.err, "");
        return result.out;
    }

    /// Expects this exit status, a message that holds `words`, and an untouched list file.
    void fails(const std::vector<std::string>& arguments, int status, const std::string& words,
               const std::string& input = {}) const
    {
        std::string before = readFile(currentListPath());
        ProcessResult result = run(arguments, {.input = input});
        EXPECT_EQ(result.status, status) << arguments[0] << ": " << result.err;
        EXPECT_NE((result.err + result.out).find(words), std::string::npos) << result.err;
        EXPECT_EQ(readFile(currentListPath()), before);
    }

    Sandbox sandbox;
    ScopedVariable root;
};

} // namespace

TEST_F(Profilectl, AddsHidesShowsAndRemovesThroughTheHelper)
{
    EXPECT_NE(done({"check"}).find("no list file yet"), std::string::npos);
    EXPECT_EQ(done({"list"}), "");
    done({"add", "--class", "rgb", "photo.icc", "--name", "B\xC3\xBCro"});
    done({"add", "proof.icc", "--class", "sim,dst", "--location", "card", "--hidden"});
    EXPECT_EQ(done({"list", "--class", "rgb"}),
              "rgb  shown   by-hand     disk  photo.icc                        B\xC3\xBCro\n");
    EXPECT_EQ(done({"hide", "photo.icc"}), "photo.icc is now hidden in the menus of rgb\n");
    EXPECT_EQ(done({"hide", "photo.icc"}), "photo.icc was already hidden in the menus of rgb\n");
    done({"show", "proof.icc", "--class", "dst"});
    EXPECT_EQ(done({"remove", "proof.icc", "--class", "sim"}), "removed proof.icc from sim\n");
    EXPECT_EQ(done({"list"}), "rgb  hidden  by-hand     disk  photo.icc                        B\xC3\xBCro\n"
                              "dst  shown   by-hand     card  proof.icc                        proof.icc\n");
    EXPECT_NE(done({"check"}).find("nothing is wrong"), std::string::npos);
}

TEST_F(Profilectl, ExportedListsCanBeImportedElsewhereAndAgain)
{
    done({"add", "photo.icc", "--class", "rgb", "--name", "Photo"});
    std::string exported = done({"export"});
    EXPECT_EQ(done({"list", "--json"}), exported);
    EXPECT_EQ(done({"import", "-"}, exported), "0 added, 0 changed, 1 as they were\n");
    EXPECT_EQ(done({"import", "-"}, R"({"rgb":[{"file":"photo.icc","name":"New","inMenu":false}],
                                       "dst":[{"file":"a.icc","status":"on-printer"}]})"),
              "1 added, 1 changed, 0 as they were\n");
    EXPECT_EQ(done({"list"}), "rgb  hidden  by-hand     disk  photo.icc                        New\n"
                              "dst  shown   on-printer  disk  a.icc                            a.icc\n");
    fails({"remove", "a.icc"}, 3, "would bring it back");
    std::string file = (sandbox / "lists.json").string();
    done({"export", file});
    fs::remove(currentListPath());
    done({"import", file, "--replace"});
    done({"export", file + "2"});
    EXPECT_EQ(readFile(file), readFile(file + "2"));
    EXPECT_EQ(done({"import", "-", "--replace"}, R"({"rgb":[]})"), "0 added, 0 changed, 0 as they were\n");
    EXPECT_EQ(done({"list", "--class", "rgb"}), "") << "only the named list is replaced";
    EXPECT_NE(done({"list"}), "");
}

TEST_F(Profilectl, SaysWhatIsWrongWithACommandANameOrAnImportedFile)
{
    done({"add", "photo.icc", "--class", "rgb"});
    fails({"add", "photo.icc", "--class", "dst,rgb"}, 3, "already");
    fails({"hide", "nope.icc"}, 3, "no list has");
    fails({"hide", "photo.icc", "--location", "card"}, 3, "no list has");
    struct {
        std::string file, name, words;
    } names[] = {
        {"a/b.icc", "x", "path"},
        {"a b.icc", "x", "no profile file name"},
        {"a.iccc", "x", "no profile file name"},
        {"", "x", "no profile file name"},
        {"a.icc", std::string(32, 'n'), "32 bytes"},
        {"a.icc", std::string(30, 'n') + "\xC3\xA9", "32 bytes"},
        {"a.icc", "bell\x07", "cannot be shown"},
        {"a.icc", "\xFF", "cannot be shown"},
    };
    for (auto& [file, name, words] : names)
        fails({"add", "--class", "rgb", "--name", name, "--", file}, 2, words);
    for (std::vector<std::string> arguments :
         std::vector<std::vector<std::string>>{{},
                                               {"bogus"},
                                               {"add"},
                                               {"add", "a.icc"},
                                               {"list", "--class", "cmyk"},
                                               {"import"},
                                               {"import", "/nowhere"},
                                               {"list", "x"}}) {
        ProcessResult result = run(arguments);
        EXPECT_EQ(result.status, 2) << result.err;
        EXPECT_NE(result.err, "");
    }
    for (auto [text, words] : std::vector<std::pair<std::string, std::string>>{
             {"[1", "no JSON"},
             {"[]", "no object"},
             {R"({"cmyk":[]})", "cmyk"},
             {R"({"rgb":{}})", "array"},
             {R"({"rgb":[{"file":"ok.icc"},{"file":"a.icc","bogus":1}]})", "rgb[1]"},
             {R"({"rgb":[{}]})", "missing"},
             {R"({"rgb":[{"file":7}]})", "another type"},
             {R"({"rgb":[{"file":"a.icc","index":4294967296}]})", "32 bits"},
             {R"({"rgb":[{"file":"a.icc","status":"lost"}]})", "status"},
             {R"({"rgb":[{"file":"a.icc","location":"moon"}]})", "disk"},
             {std::string(5 << 20, ' '), "4 MiB"}})
        fails({"import", "-"}, 2, words, text);
    EXPECT_NE(done({"list", "--help"}).find("--json"), std::string::npos);
}

TEST_F(Profilectl, CheckNamesTheFaultsOfAFileAndWhatReadingMakesOfIt)
{
    done({"add", "one.icc", "--class", "rgb"});
    done({"add", "two.icc", "--class", "rgb"});
    std::string good = readFile(currentListPath());
    auto checked = [&](const std::string& from, const std::string& to) {
        std::string text = good;
        size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        fs::remove(currentListPath());
        sandbox.write(fs::path(currentListPath()).lexically_relative(sandbox.path()),
                      text.replace(at, from.size(), to));
        ProcessResult result = run({"check"});
        EXPECT_EQ(result.status, 1);
        return result.out;
    };
    auto has = [](const std::string& text, const std::string& words) {
        return text.find(words) != std::string::npos;
    };
    std::string hole = checked("<key>InMenu0000</key>\n<integer>6<", "<key>InMenu0000</key>\n<integer>0<");
    EXPECT_TRUE(has(hole, "RGB: iNum is 2 but 1 slots are used")) << hole;
    EXPECT_TRUE(has(hole, "reading loses \"two.icc\" in slot 1")) << hole;
    EXPECT_TRUE(has(checked("one.icc", "two.icc"), "is there twice"));
    EXPECT_TRUE(has(checked("one.icc", "not allowed.icc"), "breaks the rule"));
    EXPECT_TRUE(has(checked("one.icc", std::string(40, 'x')), "longer than 31"));
    EXPECT_TRUE(has(checked("InMenu0499", "InMenu0500"), "InMenu: 1 entries are ignored"));
    EXPECT_TRUE(has(checked("<key>SIM</key>", "<key>sim</key>"), "SIM: the list is missing"));
    EXPECT_TRUE(has(checked("</plist>", "</plis>"), "no profile list"));
    fails({"add", "x.icc", "--class", "rgb"}, 1, "profilectl check");
    done({"import", "-", "--replace"}, R"({"rgb":[],"sim":[],"dst":[]})");
    EXPECT_NE(done({"check"}).find("nothing is wrong"), std::string::npos);
}

TEST_F(Profilectl, AUserWithoutPermissionOrHelperCanOnlyRead)
{
    done({"add", "photo.icc", "--class", "rgb"});
    fs::path helper = helperExecutable();
    fs::rename(helper, helper.string() + ".away");
    fails({"hide", "photo.icc"}, 4, "not installed");
    fs::rename(helper.string() + ".away", helper);
    if (getuid() != 0)
        GTEST_SKIP() << "running as another user needs root";
    fs::permissions(sandbox.path(), fs::perms(0755));
    fs::copy_file(PDE_PROFILECTL, sandbox / "profilectl"); // the build folder may be closed to others
    constexpr uid_t kNobody = 65534;
    ProcessOptions nobody;
    nobody.uid = nobody.gid = kNobody;
    ProcessResult result = runProcess({sandbox / "profilectl", "add", "x.icc", "--class", "rgb"}, nobody);
    EXPECT_EQ(result.status, 4) << result.err;
    EXPECT_EQ(runProcess({sandbox / "profilectl", "list"}, nobody).status, 0);
    EXPECT_FALSE(fs::exists(currentListPath("nobody")));
}
