// From the panel, by the system's own filters, to the bytes that the printer gets.
#include "support/DialogScript.h"
#include "support/PrivateCups.h"

#include <cups/ppd.h>
#include <gtest/gtest.h>

namespace {

const char* const kPpd = PDE_SOURCE_DIR "/printer/R4270.ppd";
const char* const kSettings = "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist "
                              "version=\"1.0\"><dict><key>copies</key><string>2</string>"
                              "<key>page-ranges</key><string>2-3</string>"
                              "<key>Duplex</key><string>DuplexNoTumble</string></dict></plist>\n";

/// PostScript of five pages that can be told from those of another document.
std::string fivePages(const std::string& mark)
{
    std::string text = "%!PS-Adobe-3.0\n%%Pages: 5\n%%EndComments\n";
    for (std::string page : {"1", "2", "3", "4", "5"})
        text += "%%Page: " + page + " " + page + "\n(" + mark + page + ") pop showpage\n";
    return text + "%%EOF\n";
}

class CupsPrint : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!PrivateCups::installed())
            GTEST_SKIP() << "no CUPS server with its filters is installed";
        ASSERT_TRUE(cups_.addQueue("Office", kPpd)) << cups_.problem();
    }

    /// Chooses in every pop-up what `choice` gives, ticks both boxes or neither, prints, and requires the
    /// code of each of the 26 choices among the bytes.
    std::string printed(const std::vector<std::string>& files, int (*choice)(int choices), bool boxes)
    {
        std::string settings = sandbox_.write("settings.plist", kSettings);
        std::vector<std::string> arguments = {"--printer", "Office", "--settings", settings};
        arguments.insert(arguments.end(), files.begin(), files.end());
        DialogRun look = runDialog({"--ppd", kPpd}, {"open", "keys", "controls"});
        std::vector<std::string> script = {"open", "view", "restore", "choose menu_QuickColor 3"}, ticks;
        std::vector<std::string> expected;
        ppd_file_t* ppd = ppdOpenFile(kPpd);
        for (const nlohmann::json& row : look[2]["controls"]) {
            std::string field = row["field"], key = row["ppdKey"];
            ppd_option_t* option = ppdFindOption(ppd, key.c_str());
            if (option == nullptr)
                continue;
            bool isBox = option->ui == PPD_UI_BOOLEAN;
            int index = key == "VelQuickColor" ? 3 : choice(option->num_choices);
            if (isBox)
                ticks.push_back("check " + field + (boxes ? " 1" : " 0"));
            else
                script.push_back("choose " + field + " " + std::to_string(index));
            expected.push_back("%%BeginFeature: *" + key + " " +
                               (isBox ? (boxes ? "True" : "False") : option->choices[index].choice) + "\n");
        }
        ppdClose(ppd);
        EXPECT_EQ(expected.size(), look[1]["keys"].size());
        script.insert(script.end(), ticks.begin(), ticks.end()); // they disable pop-ups
        script.push_back("print");
        DialogRun run = runDialog(arguments, script);
        auto job = cups_.receivedJob(run[script.size() - 1].value("job", 0));
        EXPECT_TRUE(job) << run.process.out << run.process.err << cups_.log();
        for (const std::string& code : expected)
            EXPECT_NE(job.value_or(PrivateCups::Job()).data.find(code), std::string::npos) << code;
        return job.value_or(PrivateCups::Job()).data;
    }

    PrivateCups cups_;
    Sandbox sandbox_;
};

int last(int choices)
{
    return choices - 1;
}

int second(int)
{
    return 1;
}

int count(const std::string& text, const std::string& part)
{
    int found = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++found;
    return found;
}

/// Without the code of the panel's choices and what names the job.
std::string rest(std::string text)
{
    for (const char* begin : {"%%BeginFeature: *Vel", "%%For", "%%Title", "%%CreationDate"})
        for (size_t at; (at = text.find(begin)) != std::string::npos;)
            text.erase(at, text.find(begin[2] == 'B' ? "%%EndFeature" : "\n", at) - at);
    return text;
}

TEST_F(CupsPrint, PutsChoicesPagesCopiesAndDuplexIntoTheBytesOfAnyTypeAndNothingElse)
{
    std::string lines, z = sandbox_.write("z.ps", fivePages("Z")), a = sandbox_.write("a.ps", fivePages("A"));
    for (int i = 0; i < 300; ++i)
        lines += "line\n";
    ASSERT_EQ(runProcess({"ps2pdf", a, sandbox_ / "five.pdf"}).status, 0);
    for (std::vector<std::string> files :
         {std::vector<std::string>{z, a}, {sandbox_ / "five.pdf"}, {sandbox_.write("five.txt", lines)}}) {
        std::string one = printed(files, last, true), other = printed(files, second, false);
        int documents = static_cast<int>(files.size());
        EXPECT_EQ(count(one, "%%Page: "), 2 * documents) << files[0];
        EXPECT_EQ(count(one, "numcopies(2)"), documents) << files[0];
        EXPECT_EQ(count(one, "BeginFeature: *Duplex DuplexNoTumble"), documents) << files[0];
        if (documents == 2) {
            EXPECT_LT(one.find("(Z3)"), one.find("(A2)")) << "in the order of the command line";
            EXPECT_EQ(rest(one), rest(other));
        }
    }
}

TEST_F(CupsPrint, SendsNoJobOfWhichAPartIsMissing)
{
    std::string page = sandbox_.write("a.ps", fivePages("A"));
    DialogRun half = runDialog({"--printer", "Office", page, "/nowhere.ps"}, {"open", "print"});
    EXPECT_NE(half[1].value("error", "").find("/nowhere.ps"), std::string::npos) << half[1];
    DialogRun whole = runDialog({"--printer", "Office", page}, {"open", "print"});
    EXPECT_EQ(whole[1].value("job", 0), 1) << "the first job of all";
}

} // namespace
