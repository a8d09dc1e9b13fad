// The print dialog driven by scripts, as the documented lines say, on good PPDs and bad ones.
#include "support/DialogScript.h"

#include <gtest/gtest.h>

using nlohmann::json;

namespace {

TEST(PrintDialog, AnswersWhatCannotBeDoneWithAnErrorAndGoesOn)
{
    Sandbox sandbox;
    std::string good = "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>A</key><string>b</string>"
                       "</dict></plist>";
    std::string deep = good.substr(0, good.find("<string>"));
    for (const char* tag : {"<array>", "</array>"})
        for (int i = 0; i < 250000; ++i)
            deep += tag;
    std::vector<std::string> script = {"load " + sandbox.write("good", good).string(),
                                       "load " + sandbox.write("deep", deep + "</dict></plist>").string(),
                                       "load /nowhere",
                                       "load " + sandbox.write("old", "{a = b;}").string(),
                                       "load " +
                                           sandbox.write("hostile", "\x01\x01\x90\x90\x90\x90").string(),
                                       "frobnicate",
                                       "choose menu_QuickColor 1",
                                       "open",
                                       "choose menu_QuickColor 4",
                                       "choose nothing 1",
                                       "press menu_QuickColor",
                                       "tab x",
                                       "tick 0",
                                       "settings"};
    DialogRun dialog = runDialog({"--ppd", kPpd}, script);
    EXPECT_EQ(dialog.process.status, 1);
    ASSERT_EQ(dialog.answers.size(), script.size()) << dialog.process.err;
    for (size_t i = 1; i + 1 < script.size(); ++i)
        EXPECT_EQ(dialog[i].contains("error"), script[i] != "open") << script[i];
    EXPECT_EQ(dialog.answers.back(), dialog[0]) << "no bad file has taken the place of the good one";
}

TEST(PrintDialog, OpensABrokenPpdWithTheItemsThatAreLeft)
{
    const std::string good = readFile(kPpd), halftones = "*CloseUI: *VelTextHalftone";
    std::string many;
    for (int i = 0; i < 296; ++i)
        many += "*VelTextHalftone Extra" + std::to_string(i) + "/Extra " + std::to_string(i) + ": \"\"\n";
    struct {
        std::string ppd, field;
        size_t items;
        int value; ///< of the field, after restoring
    } const cases[] = {
        {good.substr(0, good.find("*OpenGroup: VelColor/")), "menu_QuickColor", 0, -1},
        {good.substr(0, good.find("*VelQuickColor LineArt") + 12), "menu_QuickColor", 2, 0},
        {replaced(good, "*DefaultVelQuickColor: Document", "*DefaultVelQuickColor: Nowhere"),
         "menu_QuickColor", 4, -1},
        {replaced(good, halftones, many + halftones), "menu_tHalftone", 300, 2},
        {replaced(good, "Photo/Photo:", "Photo/Ph\x81\xff\xfeto:"), "menu_QuickColor", 4, 0},
    };
    const std::vector<std::string> session = {"open",    "view", "restore",      "controls", "settings",
                                              "summary", "save", "page summary", "job",      "terminate"};
    Sandbox sandbox;
    for (const auto& c : cases) {
        DialogRun run = runDialog({"--ppd", sandbox.write("broken.ppd", c.ppd)}, session);
        ASSERT_EQ(run.answers.size(), session.size()) << c.field << run.process.out << run.process.err;
        json row = controlRow(run[3], c.field);
        EXPECT_EQ(row.at("items").size(), c.items) << row;
        EXPECT_EQ(row.at("value"), c.value) << row;
    }
}

TEST(PrintDialog, SaysWhatIsWrongWithTheCommandLineAndTheFilesInIt)
{
    Sandbox sandbox;
    std::string empty = sandbox.write("empty", ""), zeros = sandbox.write("zeros", std::string(4096, '\0'));
    struct {
        std::vector<std::string> arguments;
        int status;
        std::string message;
    } const cases[] = {
        {{"--help"}, 0, "--script"},
        {{"--version"}, 0, "printdialog 1."},
        {{"--printer", "Q", "--ppd", kPpd}, 2, "--ppd"},
        {{"--printer", "Q", "--queue", "P"}, 2, "--queue"},
        {{"--script", "/nowhere/script"}, 2, "/nowhere/script"},
        {{"--script", "/dev/null", "--ppd", zeros}, 1, zeros},
        {{"--script", "/dev/null", "--plugin", sandbox.path()}, 1, sandbox.path()},
        {{"--script", "/dev/null", "--settings", empty}, 1, empty},
        {{"--script", "/dev/null", "--ppd", kPpd, "file to print"}, 0, ""},
    };
    for (const auto& c : cases) {
        std::vector<std::string> arguments = c.arguments;
        arguments.insert(arguments.begin(), PDE_BUILD_DIR "/bin/printdialog");
        ProcessResult result = runProcess(arguments);
        EXPECT_EQ(result.status, c.status) << c.message << result.err;
        EXPECT_NE((result.out + result.err).find(c.message), std::string::npos) << c.message << result.err;
    }
}

} // namespace
