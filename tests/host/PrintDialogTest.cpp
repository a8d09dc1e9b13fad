// The print dialog driven by scripts, as the documented lines say, on the real bundle and the sample PPD.

#include "support/DialogScript.h"
#include "support/Sandbox.h"

#include <gtest/gtest.h>

using nlohmann::json;

namespace {

const std::string kPpd = PDE_SOURCE_DIR "/printer/R4270.ppd";
const std::string kSettings = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
                              "<key>Other</key><string>kept</string></dict></plist>\n";

class PrintDialog : public ::testing::Test {
protected:
    DialogRun run(std::vector<std::string> arguments, const std::vector<std::string>& script)
    {
        arguments.insert(arguments.end(), {"--ppd", kPpd});
        return runDialog(arguments, script);
    }

    Sandbox root;
};

} // namespace

TEST_F(PrintDialog, CarriesASessionFromOpeningToThePrintJob)
{
    std::string picture = root / "picture.png";
    DialogRun dialog = run({}, {"panels A-PAGE-SETUP-TYPE", "open", "keys", "view", "restore", "will-show",
                                "shown", "controls", "screenshot " + picture, "save", "should-hide",
                                "settings", "should-print", "job", "terminate"});
    ASSERT_EQ(dialog.process.status, 0) << dialog.process.err;
    ASSERT_EQ(dialog.answers.size(), 15u);
    EXPECT_EQ(dialog[0], json({{"panels", nullptr}}));
    EXPECT_EQ(dialog[1].at("panels"), 1);
    EXPECT_EQ(dialog[1].at("kind"), "vendor.quorvex.pde.R4270.velco");
    EXPECT_EQ(dialog[1].at("name"), "Color Options");
    ASSERT_EQ(dialog[2].at("keys").size(), 26u);
    EXPECT_EQ(dialog[2].at("keys")[0], "VelImageRGBSource");
    EXPECT_EQ(dialog[2].at("keys")[21], "VelQuickColor");
    EXPECT_EQ(dialog[3].at("view"), "MainView");
    EXPECT_EQ(dialog[3].at("width").dump(), "620");
    EXPECT_EQ(dialog[4], json({{"result", true}}));
    EXPECT_EQ(dialog[5], json({{"result", nullptr}}));
    EXPECT_EQ(dialog[6].at("shown"), "ColorOptions");
    EXPECT_EQ(readFile(picture).substr(0, 4), "\x89PNG");
    const json& options = dialog[13].at("options");
    for (const json& key : dialog[2].at("keys"))
        EXPECT_TRUE(options.contains(key)) << key;
    const json& stored = dialog[11].at("settings").at("R4270").at("R4270-sample");
    EXPECT_EQ(stored.at("VelQuickColor"), options.at("VelQuickColor"));
    EXPECT_FALSE(options.contains("R4270")) << "a job option is a string";
}

TEST_F(PrintDialog, ActsAsAUserDoes)
{
    DialogRun dialog =
        run({}, {"open", "view", "restore", "press button_AdvanceColorOptions", "shown",
                 "choose menu_QuickColor 3", "press button_AdvanceColorOptions", "shown", "tab 3",
                 "press button_HideAdvancedOptions", "shown", "check check_EconomyPrint 1",
                 "check check_EconomyPrint 1", "check check_EconomyPrint 0", "page summary", "page panel"});
    ASSERT_EQ(dialog.process.status, 0) << dialog.process.err;
    EXPECT_EQ(dialog[4].at("shown"), "ColorOptions") << "the button is disabled while a preset is chosen";
    EXPECT_EQ(dialog[5].at("value"), 3);
    EXPECT_EQ(dialog[7].at("shown"), "AdvancedColorOptions");
    EXPECT_EQ(dialog[8].at("value"), 3);
    EXPECT_EQ(dialog[8].at("items"), json({"Image", "Text", "Graphics", "Simulation"}));
    EXPECT_EQ(dialog[10].at("shown"), "ColorOptions");
    EXPECT_EQ(dialog[11].at("value"), 1);
    EXPECT_EQ(dialog[12].at("value"), 1);
    EXPECT_EQ(dialog[13].at("value"), 0);
}

TEST_F(PrintDialog, RestoresWhatAnEarlierRunSavedForTheSameQueueOnly)
{
    std::string file = root.write("settings.plist", kSettings);
    DialogRun first = run({"--queue", "Q", "--settings", file},
                          {"open", "restore", "choose menu_QuickColor 1", "choose menu_Brightness 4",
                           "check check_ColorAsGrayscale 1", "controls", "save", "settings"});
    ASSERT_EQ(first.process.status, 0) << first.process.err;
    EXPECT_EQ(first[7].at("settings").at("Other"), "kept");
    DialogRun same = run({"--queue", "Q", "--settings", file}, {"open", "restore", "controls"});
    DialogRun other = run({"--queue", "P", "--settings", file}, {"open", "restore", "controls"});
    DialogRun fresh = run({"--queue", "P"}, {"open", "restore", "controls"});
    EXPECT_EQ(same[2], first[5]);
    EXPECT_EQ(other[2], fresh[2]);
    EXPECT_NE(other[2], first[5]);
}

TEST_F(PrintDialog, AnswersWhatCannotBeDoneWithAnErrorAndGoesOn)
{
    std::vector<std::string> script = {"load " + root.write("good.plist", kSettings).string(),
                                       "frobnicate",
                                       "keys",
                                       "choose menu_QuickColor 1",
                                       "window",
                                       "print",
                                       "screenshot /nowhere/x.png",
                                       "load /nowhere",
                                       "load",
                                       "load " + root.path().string()};
    for (std::string text : {"", "garbage", "{a = b;}", "<plist>", "\x01\x01\x90\x90\x90\x90\x90\x90\x90"})
        script.push_back("load " + root.write("bad" + std::to_string(script.size()), text).string());
    script.insert(script.end(), {"open",
                                 "choose menu_QuickColor 4",
                                 "choose menu_QuickColor -1",
                                 "choose menu_QuickColor",
                                 "choose nothing 1",
                                 "choose check_EconomyPrint 1",
                                 "check check_EconomyPrint 2",
                                 "check menu_QuickColor 1",
                                 "press menu_QuickColor",
                                 "press nothing",
                                 "tab 4",
                                 "tab x",
                                 "list 0",
                                 "row 0",
                                 "tick 0",
                                 "type _fileNameEdit x",
                                 "press window-ok",
                                 "page other",
                                 "OPEN",
                                 "settings"});
    DialogRun dialog = run({}, script);
    EXPECT_EQ(dialog.process.status, 1);
    ASSERT_EQ(dialog.answers.size(), script.size()) << dialog.process.err;
    for (size_t i = 1; i + 1 < script.size(); ++i)
        EXPECT_EQ(dialog[i].contains("error"), script[i] != "open") << script[i];
    EXPECT_EQ(dialog.answers.back(), dialog[0]) << "no bad file has taken the place of the good one";
}

TEST_F(PrintDialog, SaysWhatIsWrongWithTheCommandLine)
{
    std::string dialog = PDE_BUILD_DIR "/bin/printdialog";
    std::string empty = root.write("empty.ppd", "");
    struct {
        std::vector<std::string> arguments;
        int status;
        std::string message;
    } const cases[] = {
        {{"--help"}, 0, "--script"},
        {{"--version"}, 0, "printdialog 1."},
        {{"--unknown"}, 2, "--unknown"},
        {{"--ppd"}, 2, "--ppd"},
        {{"--printer", "Q", "--ppd", kPpd}, 2, "--ppd"},
        {{"--printer", "Q", "--queue", "P"}, 2, "--queue"},
        {{"--script", "/nowhere/script"}, 2, "/nowhere/script"},
        {{"--script", "/dev/null", "--ppd", "/nowhere.ppd"}, 1, "/nowhere.ppd"},
        {{"--script", "/dev/null", "--ppd", empty}, 1, empty},
        {{"--script", "/dev/null", "--plugin", "/nowhere.plugin"}, 1, "/nowhere.plugin"},
        {{"--script", "/dev/null", "--plugin", root.path().string()}, 1, root.path().string()},
        {{"--script", "/dev/null", "--settings", empty}, 1, empty},
        {{"--script", "/dev/null", "--ppd", kPpd, "file to print"}, 0, ""},
    };
    for (const auto& c : cases) {
        std::vector<std::string> arguments = c.arguments;
        arguments.insert(arguments.begin(), dialog);
        ProcessResult result = runProcess(arguments);
        EXPECT_EQ(result.status, c.status) << c.message << result.err;
        EXPECT_NE((result.out + result.err).find(c.message), std::string::npos) << c.message << result.err;
    }
    ProcessResult noDisplay = runProcess({dialog, "--script", "/dev/null"}, {.environment = {"DISPLAY="}});
    EXPECT_EQ(noDisplay.status, 1);
    EXPECT_NE(noDisplay.err.find("no display"), std::string::npos) << noDisplay.err;
}
