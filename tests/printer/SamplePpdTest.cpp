// What the colour panel counts on in the sample printer's PPD.
#include "support/Process.h"
#include "support/Sandbox.h"

#include <cups/ppd.h>
#include <gtest/gtest.h>
#include <memory>

namespace {

const std::string kFile = PDE_SOURCE_DIR "/printer/R4270.ppd";

class SamplePpd : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(ppd_) << kFile;
        ppdMarkDefaults(ppd_.get());
    }

    std::string choice(const std::string& keyword, int index)
    {
        ppd_option_t* option = ppdFindOption(ppd_.get(), keyword.c_str());
        return option != nullptr && index < option->num_choices ? option->choices[index].choice : "(none)";
    }

    std::unique_ptr<ppd_file_t, decltype(&ppdClose)> ppd_{ppdOpenFile(kFile.c_str()), &ppdClose};
};

// The tool also looks for every text in every language of the file.
TEST_F(SamplePpd, KeepsToTheFormatInAllItsLanguages)
{
    ProcessResult result = runProcess({"cupstestppd", "-v", kFile});
    EXPECT_EQ(result.status, 0) << result.out;
    EXPECT_EQ(result.out.find("WARN"), std::string::npos) << result.out;
}

TEST_F(SamplePpd, HasTheChoicesWhereThePresetsAndRulesLookForThem)
{
    EXPECT_EQ(choice("VelQuickColor", 3), "UserDefined");
    EXPECT_EQ(choice("VelEdgeType", 0), "Off");
    EXPECT_EQ(choice("VelSimSource", 0), "None");
    for (std::string group : {"VelImage", "VelText", "VelGraphics"}) {
        EXPECT_EQ(choice(group + "RGBSource", 0), "None");
        EXPECT_EQ(choice(group + "DestinationProfile", 0), "Auto");
        EXPECT_EQ(choice(group + "EdgeEnhance", 0), "Off");
        EXPECT_NE(choice(group + "EdgeEnhance", 1), "(none)");
        EXPECT_NE(choice(group + "RenderIntent", 1), "(none)");
        EXPECT_NE(choice(group + "Halftone", 2), "(none)");
    }
    for (const char* box : {"VelColorAsGray", "VelEconoMode"}) {
        EXPECT_EQ(ppdFindOption(ppd_.get(), box)->ui, PPD_UI_BOOLEAN);
        EXPECT_NE(ppdFindChoice(ppdFindOption(ppd_.get(), box), "True"), nullptr);
        EXPECT_NE(ppdFindChoice(ppdFindOption(ppd_.get(), box), "False"), nullptr);
    }
}

TEST_F(SamplePpd, ConflictsOnlyWhereTheUserMakesOne)
{
    EXPECT_EQ(ppdConflicts(ppd_.get()), 0);
    ppdMarkOption(ppd_.get(), "VelSimSource", "SWOP");
    EXPECT_EQ(ppdConflicts(ppd_.get()), 0);
    EXPECT_GT(ppdMarkOption(ppd_.get(), "VelColorAsGray", "True"), 0);
}

} // namespace
