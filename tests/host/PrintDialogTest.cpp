// The print dialog driven by scripts, as the documented lines say, on the real bundle and the sample PPD.

#include "support/DialogScript.h"
#include "support/Sandbox.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>

using nlohmann::json;

namespace {

const std::string kPpd = PDE_SOURCE_DIR "/printer/R4270.ppd";
const std::string kHelpers = "/Library/Application Support";
const std::string kPreferences = "/Library/Printers/QUORVEX/Preferences/vendor.quorvex.printers.R4270";

std::string plist(const std::string& body)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + body + "</plist>\n";
}

/// Print settings whose model dictionary has `entries` for the queue "Q", and an entry of somebody else's.
std::string settingsOfQueue(const std::string& entries)
{
    return plist("<dict><key>Other</key><string>kept</string><key>R4270</key><dict><key>Q</key>" + entries +
                 "<key>P</key><dict><key>VelQuickColor</key><string>LineArt</string></dict></dict></dict>");
}

class PrintDialog : public ::testing::Test {
protected:
    PrintDialog()
    {
        // The driver's files of this test alone, with the helper of the build.
        std::filesystem::create_directories(root / kPreferences.substr(1));
        std::filesystem::create_directory_symlink(PDE_BUILD_DIR "/root" + kHelpers,
                                                  root / kHelpers.substr(1));
    }

    DialogRun run(std::vector<std::string> arguments, const std::vector<std::string>& script)
    {
        for (std::string option : {"--ppd", kPpd.c_str()})
            arguments.push_back(option);
        return runDialog(arguments, script, environment());
    }

    std::vector<std::string> environment() const { return {"PDE_ROOT=" + root.path().string()}; }

    Sandbox root;
};

std::string errorOf(const json& answer)
{
    return answer.is_object() ? answer.value("error", "") : "no answer";
}

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

TEST_F(PrintDialog, ReportsEveryRowOfBothTables)
{
    DialogRun dialog = run({}, {"open", "controls", "restore", "controls"});
    ASSERT_EQ(dialog.process.status, 0) << dialog.process.err;
    const json& rows = dialog[3].at("controls");
    ASSERT_EQ(rows.size(), 9u + 46u);
    EXPECT_EQ(dialog[1].at("controls").size(), rows.size())
        << "a panel that is not loaded is loaded to be looked at";
    std::map<int, int> kinds;
    for (const json& row : rows) {
        ++kinds[row.at("kind").get<int>()];
        EXPECT_FALSE(row.at("field").get<std::string>().empty()) << row;
        EXPECT_TRUE(row.at("title").is_string()) << row;
        EXPECT_EQ(row.at("items").is_array(), row.at("kind") == 1035 || row.at("kind") == 1040) << row;
    }
    EXPECT_EQ(kinds, (std::map<int, int>{{1034, 24}, {1035, 24}, {1036, 2}, {1039, 4}, {1040, 1}}));
    EXPECT_EQ(rows[0].at("field"), "menu_QuickColor");
    EXPECT_EQ(rows[0].at("items").size(), 4u);
    EXPECT_EQ(rows[0].at("identifier"), "QuickColorPopup");
    EXPECT_EQ(rows[9].at("field"), "menu_iRGBSource");
    EXPECT_EQ(controlRow(dialog[3], "text_QuickColor").at("value"), nullptr);
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

TEST_F(PrintDialog, SummaryListsTheItemsInDisplayOrder)
{
    DialogRun dialog = run({}, {"open", "restore", "summary"});
    const json& order = dialog[2].at("order");
    ASSERT_GE(order.size(), 5u);
    EXPECT_EQ(order[0], "Quick Color");
    for (const json& name : order)
        EXPECT_TRUE(dialog[2].at("values").contains(name)) << name;
    EXPECT_FALSE(dialog[2].at("values").contains("Summary Display Order"));
}

TEST_F(PrintDialog, RestoresWhatAnEarlierRunSavedForTheSameQueueOnly)
{
    std::string file = root / "settings.plist";
    DialogRun first = run({"--queue", "Q", "--settings", file},
                          {"open", "restore", "choose menu_QuickColor 1", "choose menu_Brightness 4",
                           "check check_ColorAsGrayscale 1", "controls", "save", "terminate"});
    ASSERT_EQ(first.process.status, 0) << first.process.err;
    DialogRun same = run({"--queue", "Q", "--settings", file}, {"open", "restore", "controls"});
    DialogRun other = run({"--queue", "P", "--settings", file}, {"open", "restore", "controls"});
    DialogRun fresh = run({"--queue", "P"}, {"open", "restore", "controls"});
    EXPECT_EQ(same[2], first[5]);
    EXPECT_EQ(other[2], fresh[2]);
    EXPECT_NE(other[2], first[5]);
}

TEST_F(PrintDialog, SurvivesSettingsOfWrongTypesAndKeepsTheRest)
{
    const std::string number = "<integer>7</integer>", array = "<array><string>Photo</string></array>";
    const std::string good = "<key>VelBrightness</key><string>Darkest</string>";
    struct {
        std::string what, queue, settings;
        bool keepsBrightness;
    } const cases[] = {
        {"model is a number", "Q", plist("<dict><key>R4270</key>" + number + "</dict>"), false},
        {"model is an array", "Q", plist("<dict><key>R4270</key>" + array + "</dict>"), false},
        {"queue is a string", "Q", settingsOfQueue("<string>x</string>"), false},
        {"queue is empty", "Q", settingsOfQueue("<dict/>"), false},
        {"choice is an array", "Q",
         settingsOfQueue("<dict>" + good + "<key>VelQuickColor</key>" + array + "</dict>"), true},
        {"choice is a number", "Q",
         settingsOfQueue("<dict>" + good + "<key>VelEconoMode</key>" + number + "</dict>"), true},
        {"choice is unknown", "Q",
         settingsOfQueue("<dict>" + good + "<key>VelQuickColor</key><string>Nothing</string></dict>"), true},
        {"profile flag is a number", "Q",
         settingsOfQueue("<dict>" + good + "<key>VelImageRGBSourceCustom</key>" + number + "</dict>"), true},
        {"profile path is an array", "Q",
         settingsOfQueue("<dict>" + good +
                         "<key>VelImageRGBSourceCustom</key><string>True</string>"
                         "<key>VelImageRGBSourceCustomFilename</key>" +
                         array + "</dict>"),
         true},
        {"identifier is empty", "", settingsOfQueue("<dict>" + good + "</dict>"), false},
    };
    for (const auto& c : cases) {
        std::string file = root.write("settings.plist", c.settings);
        DialogRun dialog =
            run({"--queue", c.queue, "--settings", file},
                {"open", "restore", "controls", "summary", "save", "should-print", "settings", "terminate"});
        ASSERT_EQ(dialog.process.status, 0) << c.what << dialog.process.err;
        const json& settings = dialog[6].at("settings");
        EXPECT_EQ(controlRow(dialog[2], "menu_Brightness").at("value"), c.keepsBrightness ? 4 : 2) << c.what;
        if (c.settings.find("Other") != std::string::npos) {
            EXPECT_EQ(settings.at("Other"), "kept") << c.what;
            EXPECT_EQ(settings.at("R4270").at("P"), json({{"VelQuickColor", "LineArt"}})) << c.what;
        }
        if (c.keepsBrightness)
            EXPECT_EQ(settings.at("VelBrightness"), "Darkest") << c.what;
    }
}

TEST_F(PrintDialog, RefusesFilesThatAreNoSettings)
{
    std::string good = root.write("good.plist", settingsOfQueue("<dict/>"));
    std::vector<std::string> script = {"load " + good};
    for (std::string text :
         {"", "garbage", "{a = b;}", "<plist>", "\x01\x01\x90\x90\x90\x90\x90\x90\x90\x90"})
        script.push_back("load " + root.write("bad" + std::to_string(script.size()), text).string());
    script.push_back("load " + root.write("array", plist("<array/>")).string());
    script.push_back("load " + root.path().string());
    script.push_back("load /nowhere/at/all");
    script.push_back("settings");
    DialogRun dialog = run({}, script);
    EXPECT_EQ(dialog.process.status, 1);
    ASSERT_EQ(dialog.answers.size(), script.size());
    EXPECT_EQ(dialog[0].at("settings").at("Other"), "kept");
    for (size_t i = 1; i + 1 < script.size(); ++i)
        EXPECT_FALSE(errorOf(dialog[i]).empty()) << script[i];
    EXPECT_EQ(dialog.answers.back().at("settings"), dialog[0].at("settings"));
}

TEST_F(PrintDialog, AnswersALineThatCannotBeCarriedOutWithAnError)
{
    std::vector<std::string> closed = {"frobnicate",
                                       "keys",
                                       "restore",
                                       "controls",
                                       "choose menu_QuickColor 1",
                                       "window",
                                       "print",
                                       "screenshot /nowhere/x.png"};
    for (const std::string& line : closed) {
        DialogRun dialog = run({}, {line, "settings"});
        EXPECT_FALSE(errorOf(dialog[0]).empty()) << line;
        EXPECT_TRUE(dialog[1].contains("settings")) << line;
        EXPECT_EQ(dialog.process.status, 1) << line;
    }
    std::vector<std::string> script = {"open", "restore"};
    std::vector<std::string> open = {"choose menu_QuickColor 4",
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
                                     "load",
                                     "OPEN"};
    script.insert(script.end(), open.begin(), open.end());
    DialogRun dialog = run({}, script);
    ASSERT_EQ(dialog.answers.size(), script.size()) << dialog.process.err;
    for (size_t i = 2; i < script.size(); ++i)
        EXPECT_FALSE(errorOf(dialog[i]).empty()) << script[i];
}

TEST_F(PrintDialog, GoesOnWhileTheProfileWindowIsOpen)
{
    DialogRun dialog = run({}, {"open",
                                "view",
                                "restore",
                                "choose menu_QuickColor 3",
                                "press button_ManageProfile",
                                "window",
                                "choose menu_QuickColor 0",
                                "press _addButton",
                                "type _fileNameEdit my f@ile.icc",
                                "type _profileNameEdit A \xC3\xA9 name",
                                "press _localOK",
                                "row 0",
                                "tick 0",
                                "press _editButton",
                                "browse-answer /tmp/other.icc",
                                "press _browse",
                                "press _browse",
                                "press _localCancel",
                                "list 1",
                                "list 0",
                                "press window-ok",
                                "window",
                                "controls",
                                "press button_ManageProfile",
                                "press window-cancel",
                                "terminate"});
    ASSERT_EQ(dialog.answers.size(), 26u) << dialog.process.err;
    EXPECT_EQ(dialog[4].at("field"), "button_ManageProfile");
    EXPECT_EQ(dialog[5].at("visible"), true);
    EXPECT_FALSE(errorOf(dialog[6]).empty()) << "the user cannot reach the dialog below";
    EXPECT_EQ(dialog[7].at("mode"), 1);
    EXPECT_EQ(dialog[8].at("fields").at("_fileNameEdit"), json({{"text", "myfile.icc"}, {"caret", 10}}));
    EXPECT_EQ(dialog[9].at("fields").at("_profileNameEdit").at("text"), "A  name");
    json row = {{"icon", false},
                {"filename", "myfile.icc"},
                {"profilename", "A  name"},
                {"location", "Disk"},
                {"inmenu", true}};
    EXPECT_EQ(dialog[10].at("rows"), json::array({row}));
    EXPECT_EQ(dialog[11].at("selected"), 0);
    EXPECT_EQ(dialog[12].at("rows")[0].at("inmenu"), false);
    EXPECT_EQ(dialog[13].at("mode"), 2);
    EXPECT_EQ(dialog[15].at("fields").at("_fileNameEdit").at("text"), "other.icc");
    EXPECT_EQ(dialog[16].at("fields").at("_fileNameEdit").at("text"), "other.icc")
        << "a second panel is cancelled";
    EXPECT_EQ(dialog[18].at("list"), 1);
    EXPECT_EQ(dialog[18].at("rows"), json::array());
    EXPECT_EQ(dialog[21].at("visible"), false);
    EXPECT_EQ(dialog[23].at("field"), "button_ManageProfile") << "it opens again";
    EXPECT_EQ(dialog[24].at("visible"), false);
    EXPECT_EQ(dialog[25], json({{"result", nullptr}}));
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
        ProcessResult result = runProcess(arguments, {.environment = environment()});
        EXPECT_EQ(result.status, c.status) << c.message << result.err;
        EXPECT_NE((result.out + result.err).find(c.message), std::string::npos) << c.message << result.err;
    }
    ProcessResult noDisplay = runProcess({dialog, "--script", "/dev/null"}, {.environment = {"DISPLAY="}});
    EXPECT_EQ(noDisplay.status, 1);
    EXPECT_NE(noDisplay.err.find("no display"), std::string::npos) << noDisplay.err;
}

TEST_F(PrintDialog, OpensBesideAnotherOfTheSameUserEvenIfProgramsAreToRunOnce)
{
    auto setDefault = [](const char* command, const char* value) {
        return runProcess(
            {"sh", "-c", std::string("defaults ") + command + " NSGlobalDomain NSUseRunningCopy" + value});
    };
    ASSERT_EQ(setDefault("write", " YES").status, 0);
    std::string log = root / "log", script = root / "script";
    ASSERT_EQ(runProcess({"mkfifo", script}).status, 0);
    BackgroundProcess first({PDE_BUILD_DIR "/bin/printdialog", "--ppd", kPpd, "--script", script}, log,
                            environment());
    std::ofstream lines(script);
    auto answers = [&] {
        std::string text = readFile(log);
        return std::count(text.begin(), text.end(), '{');
    };
    lines << "open" << std::endl;
    EXPECT_TRUE(waitUntil([&] { return answers() == 1; }, std::chrono::seconds(30))) << readFile(log);
    DialogRun second = run({}, {"open", "view"});
    EXPECT_EQ(second.process.status, 0) << second.process.err;
    EXPECT_EQ(second[1].value("view", ""), "MainView");
    lines << "view" << std::endl;
    EXPECT_TRUE(waitUntil([&] { return answers() == 2; }, std::chrono::seconds(30))) << readFile(log);
    EXPECT_TRUE(first.running());
    EXPECT_EQ(setDefault("delete", "").status, 0);
}

TEST_F(PrintDialog, KeepsNoMemoryOfPanelsThatWereClosed)
{
    std::string log = root / "log", script = root / "script";
    ASSERT_EQ(runProcess({"mkfifo", script}).status, 0);
    BackgroundProcess dialog({PDE_BUILD_DIR "/bin/printdialog", "--ppd", kPpd, "--script", script}, log,
                             environment());
    std::ofstream lines(script);
    auto closedPanels = [&] {
        std::string text = readFile(log);
        int count = 0;
        for (size_t at = 0; (at = text.find("{\"result\":null}", at)) != std::string::npos; ++at)
            ++count;
        return count;
    };
    auto memoryAfter = [&](int panels) {
        for (int i = closedPanels(); i < panels; ++i)
            lines << "open\nview\nrestore\nsave\nterminate\n";
        lines.flush();
        EXPECT_TRUE(waitUntil([&] { return closedPanels() == panels || !dialog.running(); },
                              std::chrono::seconds(150)));
        std::string status = readFile("/proc/" + std::to_string(dialog.pid()) + "/status");
        size_t at = status.find("VmRSS:");
        return at == std::string::npos ? 0 : std::stol(status.substr(at + 6));
    };
    long early = memoryAfter(50), late = memoryAfter(200);
    ASSERT_GT(early, 0) << readFile(log);
    EXPECT_LT(late - early, 4 * 1024) << "kB more after 150 panels; early " << early;
}
