// From the panel, by the system's own filters, to the bytes that the printer gets.
#include "support/DialogScript.h"
#include "support/PrivateCups.h"

#include <cups/ppd.h>
#include <gtest/gtest.h>
#include <regex>

namespace {

using Names = std::vector<std::string>;

/// PostScript of five pages, with one letter on the first and five on the last.
std::string fivePages(char letter)
{
    std::string text = "%!PS-Adobe-3.0\n%%Pages: 5\n%%EndComments\n";
    for (size_t page = 1; page <= 5; ++page)
        text += "%%Page: " + std::to_string(page) + " " + std::to_string(page) +
                "\n/Courier findfont 40 scalefont setfont 50 600 moveto (" + std::string(page, letter) +
                ") show showpage\n";
    return text + "%%EOF\n";
}

/// Without what names the job.
std::string rest(const std::string& text)
{
    return std::regex_replace(text, std::regex("%%(For|Title|CreationDate).*"), "");
}

class CupsPrint : public PrivateCups {
protected:
    /// Chooses the last or the second item of every pop-up and ticks both boxes or neither, prints, and
    /// requires the code of each of the 26 choices among the bytes, and the same bytes when `lp` is given the
    /// options.
    std::string printed(const Names& files, const std::map<std::string, std::string>& finishing, bool last)
    {
        std::string settings = "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>";
        for (const auto& [name, value] : finishing)
            settings += "<key>" + name + "</key><string>" + value + "</string>";
        Names arguments = {"--printer", "Office", "--settings",
                           sandbox_.write("settings.plist", settings + "</dict></plist>")};
        arguments.insert(arguments.end(), files.begin(), files.end());
        DialogRun look = runDialog({"--ppd", kPpd}, {"open", "keys", "controls"});
        Names script = {"open", "view", "restore"}, ticks, expected, lp = {"lp", "-d", "Office"};
        ppd_file_t* ppd = ppdOpenFile(kPpd);
        for (const nlohmann::json& row : look[2]["controls"]) {
            std::string field = row["field"], key = row["ppdKey"];
            ppd_option_t* option = ppdFindOption(ppd, key.c_str());
            if (option == nullptr)
                continue;
            bool isBox = option->ui == PPD_UI_BOOLEAN;
            int index = isBox ? !last : last || key == "VelQuickColor" ? option->num_choices - 1 : 1;
            (isBox ? ticks : script)
                .push_back((isBox ? "check " : "choose ") + field + " " +
                           std::to_string(isBox ? 1 - index : index));
            expected.push_back("%%BeginFeature: *" + key + " " + option->choices[index].choice + "\n");
        }
        ppdClose(ppd);
        EXPECT_EQ(expected.size(), look[1]["keys"].size());
        script.insert(script.end(), ticks.begin(), ticks.end()); // they disable pop-ups
        script.insert(script.end(), {"print", "job"});
        DialogRun run = runDialog(arguments, script);
        EXPECT_EQ(run[script.size() - 2].value("job", 0), ++jobs_);
        std::string data = receivedJob(jobs_);
        for (const std::string& code : expected)
            EXPECT_NE(data.find(code), std::string::npos) << code << run.process.out << run.process.err;
        for (const auto& [name, value] : run[script.size() - 1]["options"].items())
            lp.insert(lp.end(), {"-o", name + "=" + value.get<std::string>()});
        lp.insert(lp.end(), files.begin(), files.end());
        administer(lp);
        EXPECT_EQ(rest(data), rest(receivedJob(++jobs_)));
        return data;
    }

    /// How many letters each side has that comes out of a printer.
    std::string lettersOf(const std::string& data)
    {
        Sandbox sides;
        runProcess({"gs", "-q", "-dNOPAUSE", "-dBATCH", "-sDEVICE=txtwrite",
                    "-sOutputFile=" + (sides / "%d").string(), sandbox_.write("data", data)});
        std::string letters;
        for (char side = '1'; side <= '9'; ++side) { // a side's number counts the copies of those before
            std::string text = readFile(sides / std::string(1, side));
            std::erase_if(text, [](char c) { return c == ' ' || c == '\r' || c == '\n'; });
            letters += text.empty() ? "" : std::to_string(text.size());
        }
        return letters;
    }

    Sandbox sandbox_;
    int jobs_ = 0;
};

TEST_F(CupsPrint, PutsChoicesPagesCopiesAndLayoutIntoTheBytesOfWholeJobsOfAnyTypeAndNothingElse)
{
    std::string z = sandbox_.write("z.ps", fivePages('Z')), a = sandbox_.write("a.ps", fivePages('A'));
    std::string pdf = sandbox_ / "five.pdf", text = sandbox_.write("five.txt", "A\fAA\fAAA\fAAAA\fAAAAA\n");
    ASSERT_EQ(runProcess({"ps2pdf", a, pdf}).status, 0);
    DialogRun half = runDialog({"--printer", "Office", a, "/nowhere.ps"}, {"open", "print"});
    EXPECT_NE(half[1].value("error", "").find("/nowhere.ps"), std::string::npos) << half[1];
    for (const Names& files : {Names{z, a}, {pdf}, {text}}) {
        SCOPED_TRACE(files[0]);
        std::string some =
            printed(files, {{"copies", "2"}, {"page-ranges", "2-3"}, {"Duplex", "DuplexNoTumble"}}, true);
        int documents = static_cast<int>(files.size());
        EXPECT_EQ(lettersOf(some), documents == 2 ? "2323" : "23");
        for (const char* code :
             {"numcopies\\(2\\)", "Feature: \\*Duplex DuplexNoTumble", "Feature: \\*PageRegion A4"}) {
            const std::regex pattern(code);
            EXPECT_EQ(std::distance(std::sregex_iterator(some.begin(), some.end(), pattern), {}), documents)
                << code;
        }
        if (documents == 2)
            EXPECT_LT(some.find("(ZZZ)"), some.find("(AA)")) << "in the order of the command line";
        std::string sheets = printed({files.back()},
                                     {{"copies", "2"},
                                      {"multiple-document-handling", "separate-documents-collated-copies"},
                                      {"outputorder", "reverse"},
                                      {"number-up", "2"}},
                                     false);
        EXPECT_EQ(lettersOf(sheets), "573573");
    }
}

} // namespace
