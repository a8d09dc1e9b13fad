// From a printer on the network to the stored lists, through the real helper and walker.
#include "discovery/SpoolMerge.h"
#include "discovery/SpoolTable.h"
#include "profiles/HelperProtocol.h"
#include "profiles/ProfileListOperations.h"
#include "profiles/ProfileName.h"
#include "support/DriverRoot.h"
#include "support/SimulatedPrinter.h"

#include <csignal>
#include <gtest/gtest.h>
#include <set>

namespace {

using Words = std::vector<std::string>;

class Discovery : public testing::Test {
protected:
    /// Starts a printer with this table at the port that net-snmp's configuration names.
    void startPrinter(const std::string& table, const Words& options = {})
    {
        printer_ = std::make_unique<SimulatedPrinter>(table, options);
        configuration_.write("snmp.conf",
                             "defaultPort " + std::to_string(printer_->port()) + "\ntimeout 2\nretries 0\n");
    }
    static Words command(const std::string& host = "127.0.0.1")
    {
        Words words = walkCommand(loginName(), host);
        words.insert(words.begin(), helperExecutable());
        return words;
    }
    /// Walks through the helper and expects this exit value as all that it says.
    static void walk(int exitValue)
    {
        const ProcessResult result = runProcess(command());
        EXPECT_EQ(result.out, "mibwalk_XPC=iRet=" + std::to_string(exitValue) + "\n") << result.err;
        EXPECT_EQ(result.status, exitValue == 0 ? 0 : 1);
    }
    static std::string row(int number, const std::string& fileName, int profileClass = 1,
                           int location = kOnDisk)
    {
        return "profile " + std::to_string(number) + " " + std::to_string(location) + " \"Found\" \"" +
               fileName + "\" " + std::to_string(profileClass) + "\n";
    }
    static ProfileRecord record(const std::string& fileName, int32_t inMenu, int32_t indexOnDevice = 7)
    {
        ProfileRecord made{indexOnDevice, inMenu, 2, {}, {}, kOnDisk, 0};
        setNameText(made.FileName, fileName);
        setNameText(made.ProfileName, "stored " + fileName);
        return made;
    }
    /// All three lists hold these from here on.
    static void store(const std::vector<ProfileRecord>& records)
    {
        auto list = std::make_unique<ProfileList>();
        std::copy(records.begin(), records.end(), list->records);
        list->iNum = static_cast<int32_t>(records.size());
        ASSERT_EQ(VelPListWriteProfile_All(list.get(), list.get(), list.get()), 0);
    }
    /// The file names and codes of the list as it is stored now, "A.ICC 2, B.ICC 4", sorted.
    std::string codes(ProfileListIndex index)
    {
        EXPECT_EQ(VelPListReadProfile_All(&lists_[kRgbList], &lists_[kSimList], &lists_[kDstList]), 0);
        std::set<std::string> entries;
        for (int i = 0; i < lists_[index].iNum; ++i)
            entries.insert(std::string(nameText(lists_[index].records[i].FileName)) + " " +
                           std::to_string(lists_[index].records[i].InMenu));
        std::string text;
        for (const std::string& entry : entries)
            text += (text.empty() ? "" : ", ") + entry;
        return text;
    }

    DriverRoot root_;
    Sandbox configuration_;
    ScopedVariable readsConfiguration_{"SNMPCONFPATH", configuration_.path()};
    std::unique_ptr<SimulatedPrinter> printer_;
    std::unique_ptr<ProfileList[]> lists_ = std::make_unique<ProfileList[]>(kProfileListCount);
};

} // namespace

TEST_F(Discovery, TakesEveryCodeThroughTheTableOfTransitions)
{
    std::vector<ProfileRecord> before;
    std::string table;
    for (int32_t code = 1; code <= 6; ++code) {
        before.push_back(record("HERE" + std::to_string(code), code));
        before.push_back(record("GONE" + std::to_string(code), code));
        table += row(code, "HERE" + std::to_string(code));
    }
    store(before);
    startPrinter(table);
    walk(0);
    // Listed entries that are gone count as registered by hand from here on.
    EXPECT_EQ(codes(kRgbList), "GONE1 1, GONE2 1, GONE3 6, GONE4 6, GONE5 5, GONE6 6, "
                               "HERE1 2, HERE2 2, HERE3 4, HERE4 4, HERE5 2, HERE6 4");
    EXPECT_STREQ(lists_[kRgbList].records[0].ProfileName, "stored HERE1") << "nothing else is updated";

    // All columns that matter are read when the agent begins to fail. A row does not revive an entry that the
    // failure freed, and what is ticked survives any number of failures.
    store(before);
    startPrinter(table, {"--fault", "error:5", "--fault-after", "32"});
    walk(2);
    const std::string kept = "GONE3 6, GONE4 6, GONE5 5, GONE6 6, ";
    EXPECT_EQ(codes(kRgbList), kept + "HERE3 4, HERE4 4, HERE5 2, HERE6 4");
    startPrinter(table, {"--fault", "error:5"});
    walk(2);
    EXPECT_EQ(codes(kRgbList), kept + "HERE3 6, HERE4 6, HERE6 6");
    EXPECT_EQ(codes(kSimList), kept + "HERE3 6, HERE4 6, HERE5 5, HERE6 6");
    startPrinter(table);
    walk(0);
    EXPECT_EQ(codes(kRgbList), kept + "HERE1 2, HERE2 2, HERE3 4, HERE4 4, HERE5 2, HERE6 4")
        << "the freed ones are really gone, so this walk finds them anew";
}

TEST_F(Discovery, MarksEveryCodeBeforeTheMerge)
{
    const int32_t after[][7] = {{0, 1, 1, 3, 3, 5, 6}, {0, 0, 0, 3, 6, 5, 6}};
    for (int failed : {0, 1}) {
        auto list = std::make_unique<ProfileList>();
        for (int32_t code = 0; code < 7; ++code)
            list->records[493 + code].InMenu = code;
        vDeleteMIBprofilesTemporary(failed, list.get());
        for (int32_t code = 0; code < 7; ++code)
            EXPECT_EQ(list->records[493 + code].InMenu, after[failed][code]) << code;
    }
}

TEST_F(Discovery, FilesRowsByClassLocationAndName)
{
    store({record("NO GOOD.ICC", kByHandListed), record("KEPT.ICC", kByHandListed),
           record("OLD.ICC", kGoneHidden, 0), record("LISTED.ICC", kGoneListed, 0)});
    startPrinter(row(1, "ONE.ICC", 1) + row(2, "TWO.ICC", 2, kOnCard) + row(3, "LISTED.ICC", 3) +
                 row(4, "FOUR.ICC", 4) + row(5, "MEMORY.ICC", 1, 1) + row(6, "BAD NAME.ICC", 1) +
                 row(7, "KEPT.ICC", 1) + row(8, "KEPT.ICC", 3) + row(9, "KEPT.ICC", 1, kOnCard) +
                 row(10, "OLD.ICC", 1) + row(11, "LISTED.ICC", 1) + row(12, "FRESH.ICC", 1) +
                 "object 1.1.12 i 0\nobject 3.1.1 x \"ff fe 01 3c 26 3e\"\n");
    walk(0);
    // Entries without an index on the device are cleaned away, though just found, or counted as by hand.
    EXPECT_EQ(codes(kRgbList), "KEPT.ICC 2, KEPT.ICC 4, LISTED.ICC 6, ONE.ICC 2, TWO.ICC 2");
    for (ProfileListIndex index : {kSimList, kDstList})
        EXPECT_EQ(codes(index), "KEPT.ICC 4, LISTED.ICC 2, LISTED.ICC 6")
            << "the last stood behind the gap of a bad name, so it joined again";
}

TEST_F(Discovery, DropsATableThatFindsTheListsFull)
{
    std::vector<ProfileRecord> full;
    std::string table;
    for (int i = 1; i <= kProfileSlots; ++i) {
        full.push_back(record("HAND" + std::to_string(i) + ".ICC", kByHandListed));
        table += row(i, "NEW" + std::to_string(i) + ".ICC", i % 3 + 1);
    }
    store(full);
    const std::string before = readFile(currentListPath());
    startPrinter(table);
    walk(0);
    EXPECT_EQ(readFile(currentListPath()), before);
    store({});
    walk(0);
    (void)codes(kRgbList);
    EXPECT_EQ(lists_[kRgbList].iNum, 333);
    EXPECT_EQ(lists_[kDstList].iNum, 167);

    vSpoolPlist(nullptr, 0, nullptr, 1);
    setNameText(PlistForSpool.records[499].FileName, "LAST.ICC");
    PlistForSpool.records[499].Location = kOnDisk;
    PlistForSpool.records[499].ProfileClass = PlistForSpool.records[499].IndexOnDevice = 1;
    PlistForSpool.iNum = 9999; // a table that repeats rows counts more than there are
    EXPECT_EQ(vRestructPlistSpool2Current(1), 0);
    EXPECT_EQ(codes(kRgbList), "LAST.ICC 2");
}

TEST_F(Discovery, SaysNothingButItsResultWhateverThePrinterSays)
{
    std::string value;
    for (const char c : "\nmibwalk_XPC=iRet=77\n" + std::string(30000, '\n')) {
        char digits[4];
        snprintf(digits, sizeof digits, "%02x ", static_cast<unsigned char>(c));
        value += digits;
    }
    startPrinter("object .1.3.6.1.4.1.99999.1.1.1.1.6.13.1.1 x \"" + value + "\"\n");
    walk(0);
    EXPECT_NE(printer_->log().find("GET .1.3.6.1.4.1.99999.1.1.1.1.6.13.1.1 -> .1"), std::string::npos)
        << "the root itself is printed";
}

TEST_F(Discovery, LeavesAWholeListWhenSomethingDiesInTheMiddle)
{
    store({record("KEPT.ICC", kFoundListed)});
    const std::string before = readFile(currentListPath());
    for (bool killWalk : {true, false}) {
        startPrinter(row(1, "A.ICC") + row(2, "B.ICC") + row(3, "C.ICC"), {"--delay", "100"});
        BackgroundProcess helper(command(), root_ / "reply");
        ASSERT_TRUE(waitUntil([&] { return printer_->log().size() > 600; }));
        if (killWalk)
            kill(helper.pid(), SIGKILL);
        else
            printer_.reset();
        EXPECT_TRUE(waitUntil([&] { return !helper.running(); }));
        EXPECT_EQ(readFile(root_ / "reply"), killWalk ? "" : "mibwalk_XPC=iRet=1\n");
        EXPECT_EQ(readFile(currentListPath()) == before, killWalk);
    }
    EXPECT_NE(codes(kRgbList).find("KEPT.ICC 6"), std::string::npos);
}

TEST_F(Discovery, AsksAHostByANameWithAnUnderscore)
{
    startPrinter(row(1, "A.ICC"));
    configuration_.write("hosts", "127.0.0.1 my_printer\n");
    Words inNamespace = {"unshare", "--map-current-user", "--keep-caps", "--mount", "true"};
    if (runProcess(inNamespace).status != 0)
        GTEST_SKIP() << "no mount namespace of the test's own here";
    inNamespace.back() = "sh";
    inNamespace.insert(inNamespace.end(),
                       {"-c", "mount --bind \"$0\" /etc/hosts && exec \"$@\"", configuration_ / "hosts"});
    for (const std::string& word : command("my_printer"))
        inNamespace.push_back(word);
    EXPECT_EQ(runProcess(inNamespace).out, "mibwalk_XPC=iRet=0\n");
    EXPECT_EQ(codes(kRgbList), "A.ICC 2");
}

TEST(ProfileFileName, KeepsToTheRule)
{
    EXPECT_FALSE(bJudgement8point3Format(nullptr));
    for (const char* name : {"PROFILE1.ICC", "a.b", "name.x.y", "abc~1.icc", "ends.", "bare", "a...",
                             "$(id).x", "abcdefghijklmnopqrstuvwxyz0", "abcdefghijklmnopqrstuvwxyz0.123"})
        EXPECT_TRUE(bJudgement8point3Format(name)) << name;
    for (const char* name : {"", ".", ".icc", "PROFILE1.ICCX", "name.tar.gz", "a.....", "two words.icc",
                             "a@b.icc", "abcdefghijklmnopqrstuvwxyz01", "abcdefghijklmnopqrstuvwxyz01.icc",
                             "a/b", "a\x7f", "caf\xc3\xa9.icc", "a\n"})
        EXPECT_FALSE(bJudgement8point3Format(name)) << name;
}
