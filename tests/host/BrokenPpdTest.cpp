// Whatever is in a PPD, the dialog opens its panel or says what is wrong with the file.
#include "support/DialogScript.h"
#include "support/SamplePpd.h"
#include "support/Sandbox.h"

#include <functional>
#include <gtest/gtest.h>

namespace {

using nlohmann::json;

const std::vector<std::string> kSession = {
    "open",
    "keys",
    "view",
    "restore",
    "will-show",
    "controls",
    "choose menu_QuickColor 3",
    "choose menu_EdgeStrength 1",
    "check check_EconomyPrint 1",
    "press button_AdvanceColorOptions",
    "choose menu_iHalftone 2",
    "choose menu_sSimulationProfile 1",
    "summary",
    "save",
    "should-hide",
    "should-print",
    "job",
    "terminate",
};
constexpr size_t kControls = 5, kSummary = 12, kJob = 16;

class BrokenPpd : public ::testing::Test {
protected:
    /// Runs a whole session on the PPD and requires that it opens and goes through to its end. Only a choice
    /// that the PPD does not have may be an error.
    DialogRun open(const std::string& text)
    {
        DialogRun run = runDialog({"--ppd", sandbox_.write("broken.ppd", text)}, kSession);
        EXPECT_EQ(run.answers.size(), kSession.size()) << run.process.out << run.process.err;
        run.answers.resize(kSession.size(), json::object());
        bool error = false;
        for (const json& answer : run.answers) {
            error = error || answer.contains("error");
            EXPECT_NE(answer.value("error", "no such item").find("no such item"), std::string::npos)
                << answer;
        }
        EXPECT_EQ(run.process.status, error ? 1 : 0) << run.process.err;
        EXPECT_EQ(run[0].value("panels", 0), 1);
        return run;
    }

    /// Requires that the dialog refuses the file with a reason that names it.
    void refuse(const std::string& path)
    {
        DialogRun run = runDialog({"--ppd", path}, {"open"});
        EXPECT_EQ(run.process.status, 1) << run.process.err;
        EXPECT_NE((run.process.out + run.process.err).find(path), std::string::npos)
            << run.process.out << run.process.err;
    }

    std::string jobOption(const DialogRun& run, const std::string& key)
    {
        return run[kJob].value("options", json::object()).value(key, "");
    }

    size_t itemsOf(const DialogRun& run, const std::string& field)
    {
        return controlRow(run[kControls], field).value("items", json::array()).size();
    }

    Sandbox sandbox_;
};

TEST_F(BrokenPpd, MissingOptionsLeaveTheirControlsEmpty)
{
    DialogRun run = open(withOption(withOption(samplePpd(), "VelBrightness"), "VelImageHalftone"));
    EXPECT_EQ(itemsOf(run, "menu_Brightness"), 0u);
    EXPECT_EQ(itemsOf(run, "menu_iHalftone"), 0u);
    EXPECT_EQ(itemsOf(run, "menu_tHalftone"), 4u);
    EXPECT_EQ(jobOption(run, "VelBrightness"), "");
    EXPECT_EQ(jobOption(run, "VelQuickColor"), "UserDefined");
}

TEST_F(BrokenPpd, AllOptionsMayBeMissing)
{
    std::string text = samplePpd();
    DialogRun run = open(text.substr(0, text.find("*OpenGroup: VelColor/")));
    EXPECT_EQ(itemsOf(run, "menu_QuickColor"), 0u);
    EXPECT_EQ(run[kSummary].value("order", json()).size(), 0u) << run[kSummary];
}

TEST_F(BrokenPpd, AnOptionWithoutChoicesLeavesItsControlEmpty)
{
    std::string empty =
        "*OpenUI *VelEdgeType/Edge Type: PickOne\n*DefaultVelEdgeType: Off\n*CloseUI: *VelEdgeType\n";
    EXPECT_EQ(itemsOf(open(withOption(samplePpd(), "VelEdgeType", empty)), "menu_EdgeStrength"), 0u);
}

TEST_F(BrokenPpd, DefaultsThatAreNoChoicesDoNotStopThePanel)
{
    std::string text =
        replaced(samplePpd(), "*DefaultVelQuickColor: Document", "*DefaultVelQuickColor: Nowhere");
    DialogRun run = open(replaced(text, "*DefaultVelEconoMode: False", "*DefaultVelEconoMode: Perhaps"));
    EXPECT_EQ(controlRow(run[kControls], "menu_QuickColor").value("value", 0), -1);
    EXPECT_EQ(controlRow(run[kControls], "check_EconomyPrint").value("value", -1), 0);
}

TEST_F(BrokenPpd, ThreeHundredChoicesAreAllOffered)
{
    std::string many;
    for (int i = 0; i < 296; ++i)
        many += "*VelTextHalftone Extra" + std::to_string(i) + "/Extra " + std::to_string(i) + ": \"\"\n";
    std::string closing = "*CloseUI: *VelTextHalftone";
    EXPECT_EQ(itemsOf(open(replaced(samplePpd(), closing, many + closing)), "menu_tHalftone"), 300u);
}

TEST_F(BrokenPpd, UndecodableTextsAreShownAllTheSame)
{
    for (const char* encoding : {"UTF-8", "Klingon", "JIS83-RKSJ"}) {
        std::string text = replaced(samplePpd(), "*LanguageEncoding: ISOLatin1",
                                    std::string("*LanguageEncoding: ") + encoding);
        text = replaced(text, "*VelQuickColor Photo/Photo:", "*VelQuickColor Photo/Ph\x81\xff\xfeto:");
        EXPECT_EQ(itemsOf(open(text), "menu_QuickColor"), 4u) << encoding;
    }
}

TEST_F(BrokenPpd, AMissingEncodingIsNoHindrance)
{
    std::string text = replaced(samplePpd(), "*LanguageEncoding: ISOLatin1\n", "");
    text = replaced(text, "*VelQuickColor Photo/Photo:", "*VelQuickColor Photo/Ph\xf6to:");
    EXPECT_EQ(itemsOf(open(text), "menu_QuickColor"), 4u);
}

TEST_F(BrokenPpd, ABooleanMayLackAChoice)
{
    std::string text =
        replaced(samplePpd(), "*VelEconoMode False/Off: \"userdict /VelEconoMode false put\"\n", "");
    DialogRun run =
        open(replaced(text, "*VelColorAsGray True/On: \"userdict /VelColorAsGray true put\"\n", ""));
    EXPECT_EQ(jobOption(run, "VelEconoMode"), "True");
    EXPECT_EQ(jobOption(run, "VelColorAsGray"), "False");
}

TEST_F(BrokenPpd, ConflictsOfEverythingWithEverythingChangeNoMark)
{
    std::string conflicts;
    const char* keys[] = {"VelQuickColor", "VelBrightness", "VelColorAsGray",  "VelEconoMode",
                          "VelEdgeType",   "VelSimSource",  "VelImageHalftone"};
    for (const char* a : keys)
        for (const char* b : keys)
            if (a != b)
                conflicts += std::string("*UIConstraints: *") + a + " *" + b + "\n";
    DialogRun run = open(replaced(samplePpd(), "*UIConstraints:", conflicts + "*UIConstraints:"));
    EXPECT_EQ(controlRow(run[kControls], "menu_QuickColor").value("value", -1), 0);
    EXPECT_EQ(jobOption(run, "VelEdgeType"), "Light");
}

TEST_F(BrokenPpd, ATruncatedFileOffersWhatIsLeft)
{
    std::string text = samplePpd();
    DialogRun run = open(text.substr(0, text.find("*VelQuickColor LineArt") + 12));
    EXPECT_EQ(itemsOf(run, "menu_QuickColor"), 2u);
    EXPECT_EQ(itemsOf(run, "menu_Brightness"), 0u);
}

TEST_F(BrokenPpd, FilesThatAreNoPpdAreRefusedByName)
{
    std::string huge(100000, 'x'), photo = "*VelQuickColor Photo/Photo: \"";
    refuse(sandbox_.write("empty.ppd", ""));
    refuse(sandbox_.write("zeros.ppd", std::string(4096, '\0')));
    refuse(sandbox_.write("other.ppd", "%PDF-1.7\n"));
    refuse(sandbox_.write("huge-code.ppd", replaced(samplePpd(), photo, photo + huge)));
    refuse(sandbox_.write("huge-text.ppd", replaced(samplePpd(), "Photo/Photo:", "Photo/" + huge + ":")));
    refuse(sandbox_ / "missing.ppd");
    refuse(sandbox_.path());
}

} // namespace
