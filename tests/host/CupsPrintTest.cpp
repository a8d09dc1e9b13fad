// The dialog on a queue of a real server, from the panel to what the printer's backend is given.
#include "support/DialogScript.h"
#include "support/PrivateCups.h"

#include <cups/ppd.h>
#include <gtest/gtest.h>

namespace {

using nlohmann::json;

const char* const kPpd = PDE_SOURCE_DIR "/printer/R4270.ppd";

class CupsPrint : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!PrivateCups::installed())
            GTEST_SKIP() << "no CUPS server with its filters is installed";
        ASSERT_TRUE(cups_.addQueue("Office", kPpd)) << cups_.problem();
        document_ = sandbox_.write("page.txt", "A page.\n");
    }

    DialogRun dialog(const std::vector<std::string>& script)
    {
        return runDialog({"--printer", "Office", document_}, script);
    }

    PrivateCups cups_;
    Sandbox sandbox_;
    std::string document_;
};

/// For every option that the panel offers, the script line that chooses something else than its default,
/// and the choice keyword that the line stands for.
struct Choices {
    std::vector<std::string> lines;
    std::map<std::string, std::string> expected;
};

Choices otherThanDefault(const json& controls)
{
    Choices choices;
    std::vector<std::string> boxes;
    ppd_file_t* ppd = ppdOpenFile(kPpd);
    for (const json& row : controls["controls"]) {
        std::string key = row["ppdKey"], field = row["field"];
        ppd_option_t* option = ppdFindOption(ppd, key.c_str());
        if (option == nullptr)
            continue;
        if (option->ui == PPD_UI_BOOLEAN) {
            boxes.push_back("check " + field + " 1");
            choices.expected[key] = "True";
            continue;
        }
        // Not the first where that can be avoided: "None" and "Off" disable other pop-ups. Quick Color's last
        // is the user's own choices; a preset would put others in their place.
        int last = option->num_choices - 1;
        int other = option->choices[last].choice == std::string(option->defchoice) ? 0 : last;
        choices.lines.push_back("choose " + field + " " + std::to_string(other));
        choices.expected[key] = option->choices[other].choice;
    }
    ppdClose(ppd);
    // Checked boxes disable pop-ups: they come last.
    choices.lines.insert(choices.lines.end(), boxes.begin(), boxes.end());
    return choices;
}

TEST_F(CupsPrint, TheBackendGetsTheChosenKeywordOfEveryOption)
{
    DialogRun look = dialog({"open", "view", "restore", "controls"});
    ASSERT_EQ(look.process.status, 0) << look.process.out << look.process.err;
    Choices choices = otherThanDefault(look[3]);
    ASSERT_EQ(choices.expected.size(), 26u);

    std::vector<std::string> script = {"open", "view", "restore", "will-show"};
    script.insert(script.end(), choices.lines.begin(), choices.lines.end());
    script.push_back("print");
    DialogRun run = dialog(script);
    ASSERT_EQ(run.process.status, 0) << run.process.out << run.process.err;
    int id = run.answers.back().value("job", 0);
    ASSERT_GT(id, 0) << run.answers.back();

    auto job = cups_.receivedJob(id);
    ASSERT_TRUE(job) << cups_.log();
    for (const auto& [key, choice] : choices.expected)
        EXPECT_NE(job->data.find("%%BeginFeature: *" + key + " " + choice + "\n"), std::string::npos) << key;
}

TEST_F(CupsPrint, APresetPutsItsOwnAdvancedChoicesIntoTheJob)
{
    DialogRun run = dialog({"open", "view", "restore", "will-show", "choose menu_QuickColor 2",
                            "check check_EconomyPrint 1", "print"});
    auto job = cups_.receivedJob(run.answers.back().value("job", 0));
    ASSERT_TRUE(job) << run.process.out << run.process.err << cups_.log();
    EXPECT_EQ(job->options["VelQuickColor"], "LineArt");
    EXPECT_EQ(job->options["VelImageRenderIntent"], "Saturation");
    EXPECT_EQ(job->options["VelImageHalftone"], "Detail");
    EXPECT_EQ(job->options["VelTextEdgeEnhance"], "On");
    EXPECT_EQ(job->options["VelGraphicsEdgeEnhance"], "Off");
    EXPECT_EQ(job->options["VelEconoMode"], "true");
    EXPECT_EQ(job->options["VelColorAsGray"], "false");
}

TEST_F(CupsPrint, WhatTheServerRefusesIsShownAsItSaysIt)
{
    ASSERT_TRUE(cups_.administer({"/usr/sbin/cupsreject", "Office"})) << cups_.problem();
    DialogRun run = dialog({"open", "view", "restore", "print"});
    EXPECT_EQ(run.process.status, 1);
    EXPECT_NE(run[3].value("error", "").find("not accepting jobs"), std::string::npos) << run[3];
}

TEST_F(CupsPrint, AnUnknownQueueOrServerIsNamed)
{
    DialogRun unknown = runDialog({"--printer", "Nobody"}, {"open"});
    EXPECT_EQ(unknown.process.status, 1);
    EXPECT_NE((unknown.process.out + unknown.process.err).find("Nobody"), std::string::npos);

    cups_.stop();
    DialogRun gone = dialog({"open"});
    EXPECT_EQ(gone.process.status, 1);
    EXPECT_NE((gone.process.out + gone.process.err).find("does not answer"), std::string::npos);
}

} // namespace
