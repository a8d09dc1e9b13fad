// From a printer on the network to the stored lists: walks of a simulated printer's table in this process,
// and through the real helper. They check the printer's faults as well: one that did nothing would give a
// complete walk.
#include "discovery/ProfileTableWalk.h"
#include "discovery/SpoolMerge.h"
#include "discovery/SpoolTable.h"
#include "profiles/HelperProtocol.h"
#include "profiles/ListFixture.h"
#include "support/DriverRoot.h"
#include "support/SimulatedPrinter.h"

#include <cstring>
#include <random>
#include <sched.h>

#if __has_feature(address_sanitizer)
// net-snmp's argument parser leaves a copy of the community behind at each call: the walker calls it once.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:netsnmp_parse_args\n";
}
#endif

namespace {

using Words = std::vector<std::string>;
const std::string kTable = "1.3.6.1.4.1.99999.1.1.1.1.6.13.1.1";

class Discovery : public testing::Test {
protected:
    static int walkBy(Words words)
    {
        std::vector<char*> argv;
        for (std::string& word : words)
            argv.push_back(word.data());
        argv.push_back(nullptr);
        return mib_walk(static_cast<int>(words.size()), argv.data());
    }
    static int walkAt(const std::string& agent, const Words& options = {})
    {
        Words words = {"snmpwalk", "-Os", "-c", "vislaq", "-v", "1", "-t", "2", "-r", "0"};
        words.insert(words.end(), options.begin(), options.end());
        words.insert(words.end(), {agent, kTable});
        return walkBy(words);
    }
    int walk(const std::string& table, const Words& printerOptions = {}, const Words& options = {})
    {
        printer_.emplace(table, printerOptions);
        return walkAt(printer_->address(), options);
    }
    static std::string row(int number, const std::string& fileName, int profileClass = 1,
                           int location = kOnDisk)
    {
        return "profile " + std::to_string(number) + " " + std::to_string(location) + " \"Found\" \"" +
               fileName + "\" " + std::to_string(profileClass) + "\n";
    }
    static std::string rows(int count)
    {
        std::string table;
        for (int number = 1; number <= count; ++number)
            table += row(number, "FILE" + std::to_string(number) + ".ICC", number % 3 + 1);
        return table;
    }
    /// How many requests the printer saw that begin like this.
    long asked(const std::string& request) const
    {
        long count = 0;
        const std::string log = printer_->log();
        for (size_t at = 0; (at = log.find("\n" + request + " ", at)) != log.npos; ++at)
            ++count;
        return count;
    }
    /// All three lists hold these from here on.
    static void store(const std::vector<ProfileRecord>& records)
    {
        const ProfileList list = listOf(records);
        ASSERT_EQ(VelPListWriteProfile_All(&list, &list, &list), 0);
    }
    /// The codes and file names of the list as it is stored now.
    std::string stored(ProfileListIndex index)
    {
        EXPECT_EQ(VelPListReadProfile_All(&lists_[kRgbList], &lists_[kSimList], &lists_[kDstList]), 0);
        return slots(lists_[index], lists_[index].iNum);
    }

    DriverRoot root_;
    std::optional<SimulatedPrinter> printer_;
    std::unique_ptr<ProfileList[]> lists_ = std::make_unique<ProfileList[]>(kProfileListCount);
};

} // namespace

TEST_F(Discovery, SpoolsEveryColumnAndStartsCleanEachTime)
{
    ASSERT_EQ(walk("profile 3 5 \"B\xC3\xBCro\" \"FILE3.ICC\" 2 9 7\n" + rows(2), {}, {"-Cipcz"}), 0);
    EXPECT_STREQ(walkMessage(), "Unknown flag passed to -C: z\n");
    ASSERT_EQ(walkAt(printer_->address()), 0) << "the flags of the walk before do not linger";
    EXPECT_STREQ(walkMessage(), "");
    EXPECT_EQ(numprinted, 21);
    const ProfileRecord expected{3, 0, 2, "FILE3.ICC", "B\xC3\xBCro", 5, 7};
    EXPECT_EQ(memcmp(&PlistForSpool.records[2], &expected, sizeof expected), 0);
    EXPECT_EQ(asked("GET"), 1) << "of the root, which only the first walk was to include";
}

TEST_F(Discovery, TakesOfAnObjectOnlyWhatFitsItsColumnAndTouchesNoRowButItsOwn)
{
    const Words values = {"i 9", "s TEXT", "u 9", "c 9", "t 9", "a 127.0.0.1", "o 1.3.6"};
    std::string table;
    for (int column = 0; column <= 8; ++column)
        for (size_t row = 1; row <= values.size(); ++row)
            table += "object " + std::to_string(column) + ".1." + std::to_string(row) + " " +
                     values[row - 1] + "\n";
    for (std::string stray :
         {"1", "1.1", "1.1.0", "1.1.501", "1.1.4294967295", "1.1.2147483648", "8.1.500", "4294967295.1.1"})
        table += "object " + stray + " i 9\n";
    ASSERT_EQ(walk(table + "object 1.4294967295.499 i 9\nobject 1.4294967295.500.4 i 9\n"), 0);
    auto expected = std::make_unique<ProfileList>();
    expected->records[0] = {9, 0, 9, {}, {}, 9, 9};
    expected->records[1] = {0, 0, 0, "TEXT", "TEXT", 0, 0};
    expected->records[498].IndexOnDevice = expected->records[499].IndexOnDevice = 9;
    expected->iNum = 3; // rows are counted by the integers of column 1
    EXPECT_EQ(memcmp(&PlistForSpool, expected.get(), sizeof PlistForSpool), 0);
    for (size_t length : {0, 31, 32, 33, 2000}) {
        EXPECT_EQ(walk("object 3.1.1 s " + std::string(length, 'p') + "\nobject 4.1.1 x \"41 00 42\"\n"), 0);
        EXPECT_EQ(nameText(PlistForSpool.records[0].ProfileName),
                  std::string(std::min<size_t>(length, 32), 'p'));
        EXPECT_EQ(std::string(PlistForSpool.records[0].FileName, 3), std::string("A\0\0", 3));
    }
}

TEST_F(Discovery, EndsAsThePrinterMakesIt)
{
    const struct {
        Words fault;
        int exitValue, variables, rows;
    } cases[] = {
        // Nobody's answers and half ones: alone they are none.
        {{"silent"}, 1, 0, 0},
        {{"from:127.0.0.2:@"}, 1, 0, 0},
        {{"from:127.0.0.1"}, 1, 0, 0},
        {{"community:visla"}, 1, 0, 0},
        {{"community:vislaQ"}, 1, 0, 0},
        {{"version2"}, 1, 0, 0},
        {{"request-id"}, 1, 0, 0},
        {{"truncate:40"}, 1, 0, 0},
        // What was read before stays.
        {{"silent", "--fault-after", "5"}, 1, 5, 2},
        {{"error:1", "--fault-after", "3"}, 2, 3, 2},
        {{"error:2", "--fault-after", "3"}, 0, 3, 2},
        {{"type:128", "--fault-after", "3"}, 0, 4, 2},
        {{"type:129", "--fault-after", "3"}, 0, 4, 2},
        {{"type:130", "--fault-after", "3"}, 0, 4, 2},
        {{"many:5", "--fault-after", "13"}, 0, 18, 2},
        // Names that do not increase, and tables without end.
        {{"name:"}, 1, 1, 0},
        {{"name:1.1.1", "--fault-after", "5"}, 1, 6, 2},
        {{"name:1.1.1"}, 1, 2, 2},
        {{"endless"}, 1, kMaxWalkVariables, 2},
        {{"name:.1.3.6.1.5"}, 0, 1, 0},
        {{"empty"}, 0, 0, 0},
    };
    for (const auto& c : cases) {
        Words fault = c.fault;
        fault.insert(fault.begin(), "--fault");
        const std::string what = testing::PrintToString(c.fault);
        EXPECT_EQ(walk(rows(2), fault, {"-t", "0.2"}), c.exitValue) << what;
        EXPECT_EQ(numprinted, c.variables) << what;
        EXPECT_EQ(PlistForSpool.iNum, c.rows) << what;
        EXPECT_EQ(PlistForSpool.records[499].IndexOnDevice, 0) << what;
    }
    EXPECT_EQ(asked("GET"), 1) << "nothing below the root: it may be an object itself";
    EXPECT_EQ(walk(rows(2), {"--fault", "name:1.1.1"}, {"-Cc"}), 1);
    EXPECT_EQ(PlistForSpool.iNum, kMaxWalkVariables);
    EXPECT_EQ(walk(rows(2), {"--fault", "name:1.1.1"}), 1);
    EXPECT_STREQ(walkMessage(), "[SNMP] Error: OID not increasing: \1 >= \1");
}

TEST_F(Discovery, LooksAheadWithoutAChangeInWhatItLeavesAndIsNotCrashedByNoise)
{
    for (uint32_t seed = 1; seed <= 25; ++seed) {
        std::minstd_rand random(seed);
        std::string table;
        const uint32_t first = random() % 4 == 0 ? 490 : random() % 3;
        for (uint32_t column = 1; column <= 8; ++column)
            for (uint32_t row = first; row < first + 14 && (seed + column) % 5 != 0; ++row)
                if (random() % 8 != 0)
                    table += "object " + std::to_string(column) + ".1." + std::to_string(row) +
                             (column == 3 || column == 4 ? " s F" : " i ") + std::to_string(random() % 9) +
                             "\n";
        std::string left[2];
        for (int window : {1, 8}) {
            walkWindow = window;
            left[window / 8] = std::to_string(walk(table, {"--fault", "mixed:" + std::to_string(seed)},
                                                   {"-t", "0.05", "-r", "30"})) +
                               " " + std::to_string(numprinted) + walkMessage();
            left[window / 8].append(reinterpret_cast<const char*>(&PlistForSpool), sizeof PlistForSpool);
        }
        EXPECT_TRUE(left[0] == left[1]) << seed << ": " << left[0].c_str() << " / " << left[1].c_str();
        EXPECT_LE(unsigned(walk(table, {"--fault", "noise:" + std::to_string(seed)}, {"-t", "0.05"})), 2u);
    }
}

TEST_F(Discovery, LooksAheadButGently)
{
    EXPECT_EQ(walk(rows(50), {"--delay", "10"}), 0);
    EXPECT_EQ(numprinted, 350);
    EXPECT_LE(asked("GETNEXT"), 351 + 16) << "few guesses are in vain";

    EXPECT_EQ(walk(rows(50), {"--fault", "silent", "--fault-after", "60"}, {"-t", "0.1", "-r", "2"}), 1);
    const std::string second = "GETNEXT ." + kTable + ".2.1.";
    EXPECT_EQ(asked(second + "10"), 3) << "the question that counts is repeated";
    EXPECT_EQ(asked(second + "17"), 1) << "the eighth is asked, and a guess is not repeated";
    EXPECT_EQ(asked(second + "18"), 0);

    std::string holes;
    for (int row = 2; row <= 40; row += 2)
        holes += "object 1.1." + std::to_string(row) + " i 1\n";
    EXPECT_EQ(walk(holes), 0);
    EXPECT_EQ(asked("GETNEXT"), 21) << "nothing is asked ahead where nothing goes on as expected";

    EXPECT_EQ(walk(rows(10), {"--fault", "silent:3"}, {"-t", "0.05", "-r", "20"}), 0);
    EXPECT_EQ(numprinted, 70);
    EXPECT_LE(asked("GETNEXT"), 71 * 3 / 2 + 16);
}

TEST_F(Discovery, RefusesWhatItCannotStartWith)
{
    EXPECT_EQ(walkBy({}) + walkBy({"snmpwalk", "-v", "9"}), -2);
    EXPECT_EQ(walkBy({"snmpwalk", "-c", "vislaq", "-v", "1", "127.0.0.1", "no.such.name"}), 1);
    for (const char* silent : {"no-such-host.invalid", "0.0.0.0:9", "224.0.0.1:9", "127.255.255.255:9"})
        EXPECT_EQ(walkAt(silent, {"-t", "0.05"}), 1) << silent;
    printer_.emplace("");
    EXPECT_EQ(walkBy({"snmpwalk", "-c", "vislaq", "-v", "1", printer_->address()}), 0);
    EXPECT_EQ(asked("GETNEXT .1.3.6.1.2.1"), 1);
}

TEST_F(Discovery, KeepsToItsTimeLimitAndIsNotHeldByPacketsThatAreNotTaken)
{
    // For root alone: on a busy machine the flood has gaps otherwise. The printer inherits it.
    const sched_param first{1}, usual{0};
    (void)sched_setscheduler(0, SCHED_FIFO, &first);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(walk(rows(1), {"--fault", "flood:2600"}, {"-t", "0.1", "-r", "2"}), 1);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(2300));
    (void)sched_setscheduler(0, SCHED_OTHER, &usual);

    walkTimeLimit = std::chrono::milliseconds(400);
    EXPECT_EQ(walk(rows(500), {"--delay", "50"}, {"-t", "10", "-r", "5"}), 1);
    EXPECT_GT(PlistForSpool.iNum, 0);
    EXPECT_LE(PlistForSpool.iNum, 64);
    EXPECT_EQ(walk(rows(1), {"--fault", "silent"}, {"-t", "0.1", "-r", "50"}), 1);
    EXPECT_LE(asked("GETNEXT"), 4);
    walkTimeLimit = std::chrono::minutes(2);
}

TEST_F(Discovery, TakesEveryCodeThroughTheTableOfTransitions)
{
    std::vector<ProfileRecord> before;
    std::string table;
    for (int32_t code = 1; code <= 6; ++code) {
        before.push_back(record(code, "HERE" + std::to_string(code)));
        before.push_back(record(code, "GONE" + std::to_string(code)));
        table += row(code, "HERE" + std::to_string(code));
    }
    before.push_back(record(kFoundListed, "LOST"));
    before.back().IndexOnDevice = 0; // kept as gone, but not as registered by hand, which a failure makes it
    store(before);
    EXPECT_EQ(walk(table), 0);
    // Listed entries that are gone count as registered by hand from here on.
    EXPECT_EQ(stored(kRgbList), "2 HERE1, 1 GONE1, 2 HERE2, 1 GONE2, 4 HERE3, 6 GONE3, "
                                "4 HERE4, 6 GONE4, 2 HERE5, 5 GONE5, 4 HERE6, 6 GONE6, 6 LOST, ");
    EXPECT_STREQ(lists_[kRgbList].records[0].ProfileName, "Profile 1") << "nothing else is updated";
    // All columns that matter are read when the agent begins to fail. A row does not revive an entry that the
    // failure freed, and what is ticked survives.
    store(before);
    EXPECT_EQ(walk(table, {"--fault", "error:5", "--fault-after", "32"}), 2);
    EXPECT_EQ(stored(kRgbList), "4 HERE3, 6 GONE3, 4 HERE4, 6 GONE4, 2 HERE5, 5 GONE5, 4 HERE6, 6 GONE6, ");
}

TEST_F(Discovery, FilesRowsByClassLocationAndName)
{
    std::vector<ProfileRecord> before = {record(kByHandListed, "NO GOOD.ICC"),
                                         record(kByHandListed, "KEPT.ICC"), record(kGoneHidden, "OLD.ICC"),
                                         record(kGoneListed, "LISTED.ICC")};
    before[2].IndexOnDevice = before[3].IndexOnDevice = 0;
    store(before);
    EXPECT_EQ(walk(row(1, "ONE.ICC", 1) + row(2, "TWO.ICC", 2, kOnCard) + row(3, "LISTED.ICC", 3) +
                   row(4, "FOUR.ICC", 4) + row(5, "MEMORY.ICC", 1, 1) + row(6, "BAD NAME.ICC", 1) +
                   row(7, "KEPT.ICC", 1) + row(8, "KEPT.ICC", 3) + row(9, "KEPT.ICC", 1, kOnCard) +
                   row(10, "OLD.ICC", 1) + row(11, "LISTED.ICC", 1) + row(12, "FRESH.ICC", 1) +
                   "object 1.1.12 i 0\nobject 3.1.1 x \"ff fe 01 3c 26 3e\"\n"),
              0);
    // Entries without an index on the device are cleaned away, though just found, or counted as by hand.
    EXPECT_EQ(stored(kRgbList), "4 KEPT.ICC, 6 LISTED.ICC, 2 ONE.ICC, 2 TWO.ICC, 2 KEPT.ICC, ");
    for (ProfileListIndex index : {kSimList, kDstList})
        EXPECT_EQ(stored(index), "2 LISTED.ICC, 4 KEPT.ICC, 6 LISTED.ICC, ")
            << "the last stood behind the gap of a bad name, so it joined again";
}

TEST_F(Discovery, DropsATableThatFindsTheListsFull)
{
    std::vector<ProfileRecord> full;
    while (full.size() < kProfileSlots)
        full.push_back(record(kByHandListed, "HAND" + std::to_string(full.size())));
    store(full);
    const std::string before = readFile(currentListPath());
    EXPECT_EQ(walk(rows(kProfileSlots)), 0);
    EXPECT_EQ(readFile(currentListPath()), before);
    store({});
    PlistForSpool.iNum = 9999; // a table that repeats rows counts more than there are
    EXPECT_EQ(vRestructPlistSpool2Current(1), 0);
    EXPECT_NE(stored(kDstList).find("2 FILE500.ICC"), std::string::npos);
    EXPECT_EQ(lists_[kRgbList].iNum, 333);
    EXPECT_EQ(lists_[kDstList].iNum, 167);
}

TEST_F(Discovery, SaysNothingButItsResultWhateverThePrinterSays)
{
    // A reply with another result, and more than a pipe holds.
    std::string value = "0a 6d 69 62 77 61 6c 6b 5f 58 50 43 3d 69 52 65 74 3d 37 37 0a";
    for (int i = 0; i < 30000; ++i)
        value += " 0a";
    printer_.emplace("object ." + kTable + " x \"" + value + "\"\n");
    Words command = walkCommand(loginName(), "127.0.0.1");
    command.insert(command.begin(), helperExecutable());
    EXPECT_EQ(runProcess(command).out, "mibwalk_XPC=iRet=0\n");
    EXPECT_EQ(asked("GET ." + kTable), 1) << "the root itself is printed";
    printer_.emplace("", Words{"--fault", "error:5"});
    EXPECT_EQ(runProcess(command).out, "mibwalk_XPC=iRet=2\n");
}

TEST(ProfileFileName, KeepsToTheRule)
{
    EXPECT_FALSE(bJudgement8point3Format(nullptr));
    for (const char* name : {"PROFILE1.ICC", "a.b", "name.x.y", "abc~1.icc", "bare", "a...", "$(id).x",
                             "abcdefghijklmnopqrstuvwxyz0", "abcdefghijklmnopqrstuvwxyz0.123"})
        EXPECT_TRUE(bJudgement8point3Format(name)) << name;
    for (const char* name :
         {"", ".", ".icc", "PROFILE1.ICCX", "name.tar.gz", "a.....", "two words.icc", "a@b",
          "abcdefghijklmnopqrstuvwxyz01.icc", "a/b", "a\x7f", "caf\xc3\xa9.icc", "a\n"})
        EXPECT_FALSE(bJudgement8point3Format(name)) << name;
}
