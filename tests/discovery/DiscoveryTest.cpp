#include "DiscoveryFixture.h"

#include <csignal>

// From a printer on the network to the stored lists, through the real helper and walker.

using Discovery = DiscoveryTest;

namespace {

std::string row(int number, const std::string& fileName, int profileClass = 1, int location = kOnDisk)
{
    return "profile " + std::to_string(number) + " " + std::to_string(location) + " \"Profile " +
           std::to_string(number) + "\" \"" + fileName + "\" " + std::to_string(profileClass) + "\n";
}

} // namespace

TEST_F(Discovery, TakesEveryCodeThroughTheTableOfTransitions)
{
    std::vector<ProfileRecord> before;
    std::string table;
    for (int32_t code = 1; code <= 6; ++code) {
        std::string there = "THERE" + std::to_string(code) + ".ICC";
        before.push_back(record(there, code));
        before.push_back(record("GONE" + std::to_string(code) + ".ICC", code));
        table += row(code, there);
    }
    store(before);
    startPrinter(table);
    EXPECT_EQ(walk(), 0);
    // Listed entries that are gone count as registered by hand from here on.
    EXPECT_EQ(codes(kRgbList), (Codes{{"THERE1.ICC", 2},
                                      {"THERE2.ICC", 2},
                                      {"THERE3.ICC", 4},
                                      {"THERE4.ICC", 4},
                                      {"THERE5.ICC", 2},
                                      {"THERE6.ICC", 4},
                                      {"GONE1.ICC", 1},
                                      {"GONE2.ICC", 1},
                                      {"GONE3.ICC", 6},
                                      {"GONE4.ICC", 6},
                                      {"GONE5.ICC", 5},
                                      {"GONE6.ICC", 6}}));
    EXPECT_STREQ(lists_[kRgbList].records[0].ProfileName, "stored THERE1.ICC") << "nothing else is updated";
    EXPECT_EQ(lists_[kRgbList].records[0].IndexOnDevice, 7);

    // All columns that matter are read when the agent begins to fail.
    store(before);
    startPrinter(table, {"--fault", "error:5", "--fault-after", "32"});
    EXPECT_EQ(walk(), 2);
    const Codes afterFailure = {{"THERE3.ICC", 4}, {"THERE4.ICC", 4}, {"THERE5.ICC", 2}, {"THERE6.ICC", 4},
                                {"GONE3.ICC", 6},  {"GONE4.ICC", 6},  {"GONE5.ICC", 5},  {"GONE6.ICC", 6}};
    EXPECT_EQ(codes(kRgbList), afterFailure) << "a row does not revive an entry that the failure freed";

    // The freed ones are really gone, so the next walk finds them anew.
    startPrinter(table);
    EXPECT_EQ(walk(), 0);
    Codes next = afterFailure;
    next.insert({{"THERE1.ICC", 2}, {"THERE2.ICC", 2}});
    EXPECT_EQ(codes(kRgbList), next);
}

TEST_F(Discovery, KeepsTickedProfilesThroughFailedWalks)
{
    store({record("TICKED.ICC", kFoundListed), record("HAND.ICC", kByHandHidden)},
          {record("SIM.ICC", kGoneListed)});
    for (const char* right : {"0", "1", "17"}) {
        startPrinter(row(1, "P1.ICC") + row(2, "P2.ICC") + row(3, "P3.ICC"),
                     {"--fault", "error:5", "--fault-after", right});
        EXPECT_EQ(walk(), 2);
        Codes rgb = codes(kRgbList);
        EXPECT_EQ(rgb["TICKED.ICC"], 6) << right;
        EXPECT_EQ(rgb["HAND.ICC"], 5) << right;
        EXPECT_EQ(codes(kSimList)["SIM.ICC"], 6) << right;
    }
}

TEST_F(Discovery, DropsATableThatFindsTheListsFull)
{
    std::vector<ProfileRecord> full;
    std::string table;
    for (int i = 1; i <= kProfileSlots; ++i) {
        full.push_back(record("HAND" + std::to_string(i) + ".ICC", kByHandListed));
        table += row(i, "NEW" + std::to_string(i) + ".ICC", i % 3 + 1);
    }
    store(full, full, full);
    std::string before = readFile(currentListPath());
    startPrinter(table);
    EXPECT_EQ(walk(), 0);
    EXPECT_EQ(readFile(currentListPath()), before);

    store({});
    EXPECT_EQ(walk(), 0);
    EXPECT_EQ(codes(kRgbList).size(), 333u);
    EXPECT_EQ(codes(kSimList).size(), 167u);
    EXPECT_EQ(codes(kDstList).size(), 167u);
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
    EXPECT_EQ(walk(), 0);
    EXPECT_NE(printer_->log().find("GET .1.3.6.1.4.1.99999.1.1.1.1.6.13.1.1 -> .1"), std::string::npos)
        << "the root itself is printed";
}

TEST_F(Discovery, LeavesAWholeListWhenSomethingDiesInTheMiddle)
{
    store({record("KEPT.ICC", kFoundListed)});
    const std::string before = readFile(currentListPath());
    std::string table;
    for (int i = 1; i <= 50; ++i)
        table += row(i, "NEW" + std::to_string(i) + ".ICC");
    for (bool killWalk : {true, false}) {
        startPrinter(table, {"--delay", "20"}, 2);
        BackgroundProcess helper(command(), root_ / "reply");
        ASSERT_TRUE(waitUntil([&] { return printer_->log().size() > 2000; }));
        if (killWalk)
            kill(helper.pid(), SIGKILL);
        else
            printer_.reset();
        EXPECT_TRUE(waitUntil([&] { return !helper.running(); }));
        EXPECT_EQ(readFile(root_ / "reply"), killWalk ? "" : "mibwalk_XPC=iRet=1\n");
        EXPECT_EQ(readFile(currentListPath()) == before, killWalk);
    }
    EXPECT_EQ(codes(kRgbList)["KEPT.ICC"], 6);
}

TEST_F(Discovery, AsksAHostByANameWithAnUnderscore)
{
    startPrinter(row(1, "A.ICC"));
    configuration_.write("hosts", "127.0.0.1 my_printer\n");
    std::vector<std::string> inNamespace = {"unshare", "--map-current-user", "--keep-caps", "--mount",
                                            "true"};
    if (runProcess(inNamespace).status != 0)
        GTEST_SKIP() << "no mount namespace of the test's own here";
    inNamespace.back() = "sh";
    inNamespace.insert(inNamespace.end(),
                       {"-c", "mount --bind \"$0\" /etc/hosts && exec \"$@\"", configuration_ / "hosts"});
    for (const std::string& word : command("my_printer"))
        inNamespace.push_back(word);
    EXPECT_EQ(runProcess(inNamespace).out, "mibwalk_XPC=iRet=0\n");
    EXPECT_EQ(codes(kRgbList), (Codes{{"A.ICC", 2}}));
}

TEST_F(Discovery, WalkerRefusesWhatTheHelperWouldNotSend)
{
    std::string walker = std::filesystem::path(helperExecutable()).replace_filename("R4270Walker");
    std::vector<std::string> good = command();
    good[0] = walker;
    auto refused = [&](size_t index, const std::string& text) {
        std::vector<std::string> bad = good;
        bad[index] = text;
        ProcessResult result = runProcess(bad);
        return result.status == 2 && result.out.empty();
    };
    EXPECT_TRUE(refused(1, "mibwalk"));
    EXPECT_TRUE(refused(2, "R4271"));
    EXPECT_TRUE(refused(3, "nobody-else"));
    good.pop_back();
    EXPECT_TRUE(refused(1, "mibwalk_XPC")) << "one argument short";
    EXPECT_EQ(runProcess({walker}).status, 2);
    EXPECT_NE(runProcess({walker, "--help"}).out.find("usage:"), std::string::npos);
    EXPECT_EQ(runProcess({walker, "--version"}).status, 0);
}
