// Walks of a simulated printer's table in this process: what is spooled, and how a walk ends. They check the
// printer's faults as well: one that did nothing would give a complete walk.
#include "discovery/ProfileTableWalk.h"
#include "discovery/SpoolTable.h"
#include "profiles/ProfileName.h"
#include "support/SimulatedPrinter.h"

#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <sched.h>

namespace {

using Words = std::vector<std::string>;
const std::string kTable = "1.3.6.1.4.1.99999.1.1.1.1.6.13.1.1";

/// There is no helper below the scratch root: the merge at the end writes nothing.
class TableWalk : public testing::Test {
protected:
    static int walk(Words words)
    {
        std::vector<char*> argv;
        for (std::string& word : words)
            argv.push_back(word.data());
        argv.push_back(nullptr);
        return mib_walk(static_cast<int>(words.size()), argv.data());
    }
    static Words walkOf(const std::string& agent, const Words& options = {}, const std::string& root = kTable)
    {
        Words words = {"snmpwalk", "-Os", "-c", "vislaq", "-v", "1", "-t", "2", "-r", "0"};
        words.insert(words.end(), options.begin(), options.end());
        words.insert(words.end(), {agent, root});
        return words;
    }
    /// Walks a printer with this table and these options of its own.
    int walk(const std::string& table, const Words& printerOptions, const Words& options = {})
    {
        printer_ = std::make_unique<SimulatedPrinter>(table, printerOptions);
        return walk(walkOf(printer_->address(), options));
    }
    static std::string rows(int count)
    {
        std::string table;
        for (int row = 1; row <= count; ++row) {
            std::string number = std::to_string(row);
            table += "profile " + number + " 4 \"Profile " + number + "\" \"FILE" + number + ".ICC\" 1 0 3\n";
        }
        return table;
    }
    static const ProfileRecord& spooled(int row) { return PlistForSpool.records[row - 1]; }
    /// How many requests the printer saw that begin like this.
    long asked(const std::string& request) const
    {
        long count = 0;
        const std::string log = printer_->log();
        for (size_t at = 0; (at = log.find("\n" + request + " ", at)) != log.npos; ++at)
            ++count;
        return count;
    }

    Sandbox sandbox_;
    ScopedVariable root_{"PDE_ROOT", sandbox_.path()};
    std::unique_ptr<SimulatedPrinter> printer_;
};

} // namespace

TEST_F(TableWalk, SpoolsEveryColumnAndStartsCleanEachTime)
{
    ASSERT_EQ(walk("profile 3 5 \"B\xC3\xBCro\" \"FILE3.ICC\" 2 9 7\n" + rows(2), {}, {"-Cipcz"}), 0);
    EXPECT_STREQ(walkMessage(), "Unknown flag passed to -C: z\n");
    ASSERT_EQ(walk(walkOf(printer_->address())), 0) << "the flags of the walk before do not linger";
    EXPECT_STREQ(walkMessage(), "");
    EXPECT_EQ(numprinted, 21);
    EXPECT_EQ(PlistForSpool.iNum, 3);
    ProfileRecord expected{3, 0, 2, {}, {}, 5, 7};
    setNameText(expected.FileName, "FILE3.ICC");
    setNameText(expected.ProfileName, "B\xC3\xBCro");
    EXPECT_EQ(memcmp(&spooled(3), &expected, sizeof expected), 0) << spooled(3).FileName;
    EXPECT_EQ(asked("GET"), 1) << "of the root, which only the first walk was to include";
}

TEST_F(TableWalk, TakesOfAnObjectOnlyWhatFitsItsColumn)
{
    const Words values = {"i 9", "s TEXT", "u 9", "c 9", "t 9", "a 127.0.0.1", "o 1.3.6"};
    std::string table;
    for (int column = 0; column <= 8; ++column)
        for (size_t row = 1; row <= values.size(); ++row)
            table += "object " + std::to_string(column) + ".1." + std::to_string(row) + " " +
                     values[row - 1] + "\n";
    ASSERT_EQ(walk(table, {}), 0);
    for (size_t row = 1; row <= values.size(); ++row) {
        ProfileRecord expected = {};
        if (row == 1)
            expected = {9, 0, 9, {}, {}, 9, 9};
        setNameText(expected.FileName, row == 2 ? "TEXT" : "");
        setNameText(expected.ProfileName, row == 2 ? "TEXT" : "");
        EXPECT_EQ(memcmp(&spooled(static_cast<int>(row)), &expected, sizeof expected), 0) << values[row - 1];
    }
    EXPECT_EQ(PlistForSpool.iNum, 1) << "rows are counted by the integers of column 1";
}

TEST_F(TableWalk, TouchesNoRowButTheObjectsOwn)
{
    std::string strays;
    for (std::string name : {"1", "1.1", "1.1.0", "1.1.501", "1.1.4294967295", "1.1.2147483648", "0.1.1",
                             "8.1.500", "4294967295.1.1"})
        strays += "object " + name + " i 9\n";
    EXPECT_EQ(walk(strays, {}), 0);
    EXPECT_EQ(memcmp(&PlistForSpool, std::make_unique<ProfileList>().get(), sizeof PlistForSpool), 0);
    for (const char* name : {"1.1.500", "1.77.500", "1.1.500.4", "1.4294967295.500"}) {
        EXPECT_EQ(walk(std::string("object ") + name + " i 9\n", {}), 0);
        EXPECT_EQ(spooled(500).IndexOnDevice, 9) << name;
    }
    for (size_t length : {0, 31, 32, 33, 2000}) {
        EXPECT_EQ(walk("object 3.1.1 s " + std::string(length, 'p') + "\nobject 4.1.1 x \"41 00 42\"\n", {}),
                  0);
        const size_t kept = std::min<size_t>(length, 32);
        EXPECT_EQ(std::string(spooled(1).ProfileName, 32),
                  std::string(kept, 'p') + std::string(32 - kept, '\0'));
        EXPECT_EQ(std::string(spooled(1).FileName, 3), std::string("A\0\0", 3)) << "cut at a zero byte";
    }
}

TEST_F(TableWalk, EndsAsThePrinterMakesIt)
{
    const struct {
        Words fault;
        int exitValue, variables, rows;
        Words options = {};
    } cases[] = {
        // Nobody's answers and half ones: alone they are none.
        {{"silent"}, 1, 0, 0},
        {{"from:127.0.0.2"}, 1, 0, 0},
        {{"from:127.0.0.1:" + std::to_string(freePort())}, 1, 0, 0},
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
        {{"empty"}, 0, 0, 0},
        {{"many:5", "--fault-after", "13"}, 0, 18, 2},
        // Names that do not increase, and tables without end.
        {{"name:"}, 1, 1, 0},
        {{"name:1.1.1"}, 1, 2, 2},
        {{"name:1.1.1", "--fault-after", "5"}, 1, 6, 2},
        {{"endless"}, 1, kMaxWalkVariables, 2},
        {{"name:1.1.1"}, 1, kMaxWalkVariables, kMaxWalkVariables, {"-Cc"}},
        {{"name:.1.3.6.1.5"}, 0, 1, 0},
    };
    for (const auto& c : cases) {
        Words fault = c.fault;
        fault.insert(fault.begin(), "--fault");
        Words options = {"-t", "0.2"};
        options.insert(options.end(), c.options.begin(), c.options.end());
        std::string what = testing::PrintToString(c.fault) + testing::PrintToString(c.options);
        EXPECT_EQ(walk(rows(2), fault, options), c.exitValue) << what;
        EXPECT_EQ(numprinted, c.variables) << what;
        if (c.fault == Words{"name:1.1.1"} && c.options.empty())
            EXPECT_STREQ(walkMessage(), "[SNMP] Error: OID not increasing: \1 >= \1");
        EXPECT_EQ(PlistForSpool.iNum, c.rows) << what;
        EXPECT_EQ(spooled(500).IndexOnDevice, 0) << what;
    }
    EXPECT_EQ(asked("GET"), 1) << "nothing below the root: it may be an object itself";
}

TEST_F(TableWalk, LooksAheadWithoutAChangeInWhatItLeaves)
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
            const int exitValue =
                walk(table, {"--fault", "mixed:" + std::to_string(seed)}, {"-t", "0.05", "-r", "30"});
            left[window / 8] =
                std::to_string(exitValue) + " " + std::to_string(numprinted) + walkMessage() +
                std::string(reinterpret_cast<const char*>(&PlistForSpool), sizeof PlistForSpool);
        }
        EXPECT_TRUE(left[0] == left[1])
            << seed << ": " << left[0].substr(0, 60) << " / " << left[1].substr(0, 60);
    }
}

TEST_F(TableWalk, LooksAheadQuicklyButGently)
{
    using std::chrono::steady_clock;
    steady_clock::duration taken[2];
    for (int window : {1, 8}) {
        walkWindow = window;
        printer_ = std::make_unique<SimulatedPrinter>(rows(50), Words{"--delay", "10"});
        const auto start = steady_clock::now();
        EXPECT_EQ(walk(walkOf(printer_->address())), 0);
        taken[window / 8] = steady_clock::now() - start;
        EXPECT_EQ(numprinted, 350);
        EXPECT_LE(asked("GETNEXT"), window == 1 ? 351 : 351 + 16) << "few guesses are in vain";
    }
    EXPECT_LT(taken[1] * 4, taken[0]);

    EXPECT_EQ(walk(rows(50), {"--fault", "silent", "--fault-after", "60"}, {"-t", "0.1", "-r", "2"}), 1);
    EXPECT_EQ(numprinted, 60);
    const std::string second = "GETNEXT ." + kTable + ".2.1.";
    EXPECT_EQ(asked(second + "10"), 3) << "the question that counts is repeated";
    EXPECT_EQ(asked(second + "17"), 1) << "the eighth is asked, and a guess is not repeated";
    EXPECT_EQ(asked(second + "18"), 0);

    std::string holes;
    for (int row = 2; row <= 40; row += 2)
        holes += "object 1.1." + std::to_string(row) + " i 1\n";
    EXPECT_EQ(walk(holes, {}), 0);
    EXPECT_EQ(asked("GETNEXT"), 21) << "nothing is asked ahead where nothing goes on as expected";

    for (int every : {3, 10}) {
        EXPECT_EQ(walk(rows(10), {"--fault", "silent:" + std::to_string(every)}, {"-t", "0.05", "-r", "20"}),
                  0);
        EXPECT_EQ(numprinted, 70);
        EXPECT_LE(asked("GETNEXT"), 71 * every / (every - 1) + 16);
    }
}

TEST_F(TableWalk, IsNotCrashedByNoise)
{
    for (int seed = 1; seed <= 20; ++seed) {
        int exitValue = walk(rows(8), {"--fault", "noise:" + std::to_string(seed)}, {"-t", "0.05"});
        EXPECT_TRUE(exitValue >= 0 && exitValue <= 2) << seed;
    }
}

TEST_F(TableWalk, RefusesWhatItCannotStartWith)
{
    EXPECT_EQ(mib_walk(0, nullptr), -1);
    EXPECT_EQ(walk({"snmpwalk"}), -1);
    EXPECT_EQ(walk({"snmpwalk", "-v", "9"}), -1);
    EXPECT_EQ(walk({"snmpwalk", "-V"}), -2);
    EXPECT_EQ(walk(walkOf("127.0.0.1", {}, "no.such.name")), 1);
    EXPECT_EQ(walk(walkOf("no-such-host.invalid")), 1);
    for (const char* silent : {"0.0.0.0:9", "224.0.0.1:9", "127.255.255.255:9"})
        EXPECT_EQ(walk(walkOf(silent, {"-t", "0.05"})), 1) << silent;
    printer_ = std::make_unique<SimulatedPrinter>("");
    Words withoutRoot = walkOf(printer_->address());
    withoutRoot.pop_back();
    EXPECT_EQ(walk(withoutRoot), 0);
    EXPECT_NE(printer_->log().find("GETNEXT .1.3.6.1.2.1 "), std::string::npos) << printer_->log();
}

TEST_F(TableWalk, IsNotHeldByPacketsThatAreNotTaken)
{
    // For root alone: on a busy machine the flood has gaps otherwise. The printer inherits it.
    const sched_param first{1}, usual{0};
    (void)sched_setscheduler(0, SCHED_FIFO, &first);
    for (const char* retries : {"0", "2"}) {
        printer_.reset();
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(walk(rows(1), {"--fault", "flood:2600"}, {"-t", "0.1", "-r", retries}), 1);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(2300)) << retries;
    }
    (void)sched_setscheduler(0, SCHED_OTHER, &usual);
}

TEST_F(TableWalk, KeepsToItsTimeLimit)
{
    walkTimeLimit = std::chrono::milliseconds(400);
    EXPECT_EQ(walk(rows(500), {"--delay", "50"}, {"-t", "10", "-r", "5"}), 1);
    EXPECT_GT(PlistForSpool.iNum, 0);
    EXPECT_LE(PlistForSpool.iNum, 64);
    EXPECT_EQ(walk(rows(1), {"--fault", "silent"}, {"-t", "0.1", "-r", "50"}), 1);
    EXPECT_LE(asked("GETNEXT"), 4);
    walkTimeLimit = std::chrono::minutes(2);
}
