// Whatever is in a PPD, the dialog opens its panel or says what is wrong with the file.
#include "support/DialogScript.h"
#include "support/SamplePpd.h"
#include "support/Sandbox.h"

#include <gtest/gtest.h>

namespace {

using nlohmann::json;

const std::vector<std::string> kSession = {"open",
                                           "view",
                                           "restore",
                                           "will-show",
                                           "controls",
                                           "choose menu_QuickColor 3",
                                           "check check_EconomyPrint 1",
                                           "press button_AdvanceColorOptions",
                                           "choose menu_iHalftone 2",
                                           "summary",
                                           "save",
                                           "should-hide",
                                           "should-print",
                                           "job",
                                           "terminate"};

TEST(BrokenPpd, OpensWithTheItemsThatAreLeft)
{
    const std::string good = samplePpd(), halftones = "*CloseUI: *VelTextHalftone";
    std::string many, noChoice = "*OpenUI *VelEdgeType/Edge Type: PickOne\n*CloseUI: *VelEdgeType\n";
    for (int i = 0; i < 296; ++i)
        many += "*VelTextHalftone Extra" + std::to_string(i) + "/Extra " + std::to_string(i) + ": \"\"\n";
    auto photo = [&good](const std::string& encoding, const std::string& text) {
        std::string named = replaced(good, "*LanguageEncoding: ISOLatin1\n", encoding);
        return replaced(named, "*VelQuickColor Photo/Photo:", "*VelQuickColor Photo/" + text + ":");
    };
    struct {
        std::string ppd, field;
        size_t items;
        int value; ///< of the field, after restoring
    } const cases[] = {
        {withOption(good, "VelBrightness"), "menu_Brightness", 0, -1},
        {good.substr(0, good.find("*OpenGroup: VelColor/")), "menu_QuickColor", 0, -1},
        {withOption(good, "VelEdgeType", noChoice), "menu_EdgeStrength", 0, -1},
        {replaced(good, "*DefaultVelQuickColor: Document", "*DefaultVelQuickColor: Nowhere"),
         "menu_QuickColor", 4, -1},
        {replaced(good, halftones, many + halftones), "menu_tHalftone", 300, 2},
        {photo("*LanguageEncoding: UTF-8\n", "Ph\x81\xff\xfeto"), "menu_QuickColor", 4, 0},
        {photo("*LanguageEncoding: Klingon\n", "Ph\x81\xff\xfeto"), "menu_QuickColor", 4, 0},
        {photo("", "Ph\xf6to"), "menu_QuickColor", 4, 0},
        {replaced(good, "*UIConstraints:", "*UIConstraints: *VelQuickColor *VelEdgeType\n*UIConstraints:"),
         "menu_QuickColor", 4, 0},
        {good.substr(0, good.find("*VelQuickColor LineArt") + 12), "menu_QuickColor", 2, 0},
    };
    Sandbox sandbox;
    for (const auto& c : cases) {
        DialogRun run = runDialog({"--ppd", sandbox.write("broken.ppd", c.ppd)}, kSession);
        ASSERT_EQ(run.answers.size(), kSession.size()) << c.field << run.process.out << run.process.err;
        json row = controlRow(run[4], c.field);
        EXPECT_EQ(row.at("items").size(), c.items) << row;
        EXPECT_EQ(row.at("value"), c.value) << row;
        for (const json& answer : run.answers)
            EXPECT_NE(answer.value("error", "no such item").find("no such item"), std::string::npos)
                << answer;
    }
}

TEST(BrokenPpd, IsRefusedByNameWhenItIsNone)
{
    Sandbox sandbox;
    std::string huge(100000, 'x'), photo = "*VelQuickColor Photo/Photo: \"";
    for (const std::string& text : {std::string(), std::string(4096, '\0'), std::string("%PDF-1.7\n"),
                                    replaced(samplePpd(), photo, photo + huge)}) {
        std::string path = sandbox.write("none.ppd", text);
        DialogRun run = runDialog({"--ppd", path}, {"open"});
        EXPECT_EQ(run.process.status, 1);
        EXPECT_NE(run.process.err.find(path), std::string::npos) << run.process.err;
    }
}

} // namespace
