// The sample printer's PPD keeps to the format in all its languages, and conflicts only where the user makes
// it.
#include "support/Process.h"

#include <cups/ppd.h>
#include <gtest/gtest.h>
#include <memory>

constexpr char kFile[] = PDE_SOURCE_DIR "/printer/R4270.ppd";

// The tool also looks for every text in every language of the file.
TEST(SamplePpd, KeepsToTheFormatInAllItsLanguages)
{
    ProcessResult result = runProcess({"cupstestppd", "-v", kFile});
    EXPECT_EQ(result.status, 0) << result.out;
    EXPECT_EQ(result.out.find("WARN"), std::string::npos) << result.out;
}

TEST(SamplePpd, ConflictsOnlyWhereTheUserMakesOne)
{
    std::unique_ptr<ppd_file_t, decltype(&ppdClose)> ppd(ppdOpenFile(kFile), &ppdClose);
    ASSERT_TRUE(ppd);
    ppdMarkDefaults(ppd.get());
    EXPECT_EQ(ppdConflicts(ppd.get()), 0);
    ppdMarkOption(ppd.get(), "VelSimSource", "SWOP");
    EXPECT_EQ(ppdConflicts(ppd.get()), 0);
    EXPECT_GT(ppdMarkOption(ppd.get(), "VelColorAsGray", "True"), 0);
}
