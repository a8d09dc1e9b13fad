#include "WalkFixture.h"

#include <unistd.h>

// How a walk goes through a table, what it takes from the command line, and how it ends.

using ProfileTableWalk = WalkTest;

TEST_F(ProfileTableWalk, SpoolsEveryColumnOfEveryRow)
{
    SnmpAgent agent(tableOf(3));
    EXPECT_EQ(walk(agent), 0);
    EXPECT_EQ(numprinted, 21);
    EXPECT_EQ(PlistForSpool.iNum, 3);
    EXPECT_EQ(spooled(3).IndexOnDevice, 3);
    EXPECT_EQ(spooled(3).InMenu, 0);
    EXPECT_EQ(spooled(3).ProfileClass, 1);
    EXPECT_EQ(spooled(3).Location, kOnDisk);
    EXPECT_EQ(spooled(3).TableColumn7, 3);
    EXPECT_STREQ(spooled(3).FileName, "FILE3.ICC");
    EXPECT_STREQ(spooled(3).ProfileName, "Profile 3");
}

TEST_F(ProfileTableWalk, StartsCleanEachTimeAndLeavesItsArgumentsAlone)
{
    SnmpAgent agent(tableOf(2));
    std::vector<std::string> words = arguments(agent.address(), {"-Cipcz"});
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    EXPECT_EQ(mib_walk(static_cast<int>(words.size()), argv.data()), 0);
    EXPECT_STREQ(walkMessage(), "Unknown flag passed to -C: z\n");
    EXPECT_EQ(words, arguments(agent.address(), {"-Cipcz"}));

    int before = agent.requests();
    EXPECT_EQ(walk(agent), 0);
    EXPECT_EQ(numprinted, 14);
    EXPECT_EQ(PlistForSpool.iNum, 2);
    EXPECT_EQ(agent.requests() - before, 15) << "the options of the walk before do not linger";
    EXPECT_STREQ(walkMessage(), "");
}

TEST_F(ProfileTableWalk, GetsTheRootWhenNothingIsBelowItOrWhenAskedTo)
{
    std::vector<int> kinds;
    SnmpTable elsewhere = {{{1, 3, 6, 1, 5}, berInteger(1)}};
    auto script = [&](SnmpAgent& agent, const SnmpMessage& request) {
        kinds.push_back(request.pdu);
        agent.send(answerFrom(elsewhere, request));
    };
    EXPECT_EQ(walk(script), 0);
    EXPECT_EQ(kinds, (std::vector<int>{kSnmpGetNext, kSnmpGet}));
    EXPECT_EQ(PlistForSpool.iNum, 0);
    kinds.clear();
    EXPECT_EQ(walk(script, {"-Ci"}), 0);
    EXPECT_EQ(kinds, (std::vector<int>{kSnmpGet, kSnmpGetNext, kSnmpGet}));
}

TEST_F(ProfileTableWalk, WithoutARootWalksMib2)
{
    SnmpName asked;
    SnmpAgent agent([&](SnmpAgent& self, const SnmpMessage& request) {
        asked = request.variables[0].name;
        self.send(answerFrom({}, request));
    });
    std::vector<std::string> words = arguments(agent.address(), {});
    words.pop_back();
    EXPECT_EQ(walk(words), 0);
    EXPECT_EQ(asked, (SnmpName{1, 3, 6, 1, 2, 1}));
}

TEST_F(ProfileTableWalk, RefusesWhatItCannotStartWith)
{
    EXPECT_EQ(mib_walk(0, nullptr), -1);
    EXPECT_EQ(walk({"snmpwalk"}), -1);
    EXPECT_EQ(walk({"snmpwalk", "-v", "9"}), -1);
    EXPECT_EQ(walk({"snmpwalk", "-V"}), -2);
    EXPECT_EQ(walk(arguments("127.0.0.1", {}, "no.such.name")), 1);
    EXPECT_EQ(walk(arguments("no-such-host.invalid", {})), 1);
    for (const char* silent : {"0.0.0.0:9", "224.0.0.1:9", "127.255.255.255:9", "127.0.0.1:9"})
        EXPECT_EQ(walk(arguments(silent, {"-t", "0.05"})), 1) << silent;
}

TEST_F(ProfileTableWalk, TurnsAnErrorStatusIntoItsExitValue)
{
    struct Case {
        int32_t status, index;
        int exitValue;
    };
    for (auto [status, index, exitValue] :
         {Case{1, 0, 2}, Case{2, 1, 0}, Case{3, 1, 2}, Case{4, 1, 2}, Case{5, 0, 2}, Case{6, 1, 2},
          Case{255, 1, 2}, Case{5, 1 << 30, 2}}) {
        SnmpTable table = tableOf(2);
        auto script = [&, status = status, index = index](SnmpAgent& agent, const SnmpMessage& request) {
            SnmpMessage answer = answerFrom(table, request);
            if (answer.variables[0].name == profileCell(2, 1)) {
                answer.errorStatus = status;
                answer.errorIndex = index;
            }
            agent.send(answer);
        };
        EXPECT_EQ(walk(script), exitValue) << "error status " << status;
        EXPECT_EQ(PlistForSpool.iNum, 2) << "rows read before the error stay";
    }
}

TEST_F(ProfileTableWalk, EndsWhenNamesDoNotIncrease)
{
    const std::vector<std::vector<SnmpName>> sequences = {
        {profileCell(1, 1), profileCell(1, 1)},
        {profileCell(1, 2), profileCell(1, 1)},
        {profileCell(1, 1), profileCell(1, 2), profileCell(1, 3), profileCell(1, 1)},
    };
    for (const auto& names : sequences) {
        auto script = [&, next = size_t{0}](SnmpAgent& agent, const SnmpMessage& request) mutable {
            SnmpMessage answer = answerFrom({}, request);
            answer.errorStatus = answer.errorIndex = 0;
            answer.variables = {{names[next++ % names.size()], berInteger(7)}};
            agent.send(answer);
        };
        EXPECT_EQ(walk(script), 1);
        EXPECT_EQ(numprinted, static_cast<int>(names.size())) << "the faulty variable counts too";
        EXPECT_EQ(spooled(1).IndexOnDevice, 7);
        EXPECT_EQ(std::string(walkMessage()).substr(0, 40), "[SNMP] Error: OID not increasing: \1 >= \1");
        EXPECT_EQ(walk(script, {"-Cc"}), 1) << "unchecked, it ends at the most variables of a walk";
        EXPECT_EQ(numprinted, kMaxWalkVariables);
    }
}

TEST_F(ProfileTableWalk, EndsATableWithoutEnd)
{
    auto script = [next = uint32_t{0}](SnmpAgent& agent, const SnmpMessage& request) mutable {
        SnmpMessage answer = answerFrom({}, request);
        answer.errorStatus = answer.errorIndex = 0;
        answer.variables = {{profileCell(1, ++next), berInteger(next)}};
        agent.send(answer);
    };
    EXPECT_EQ(walk(script), 1);
    EXPECT_EQ(numprinted, kMaxWalkVariables);
    EXPECT_EQ(PlistForSpool.iNum, kProfileSlots);
    EXPECT_EQ(spooled(kProfileSlots).IndexOnDevice, kProfileSlots);
}

TEST_F(ProfileTableWalk, TakesEachVariableOfAnAnswerByItself)
{
    auto answering = [](std::vector<SnmpVariable> variables) {
        return [variables](SnmpAgent& agent, const SnmpMessage& request) {
            SnmpMessage answer = answerFrom({}, request);
            answer.errorStatus = answer.errorIndex = 0;
            answer.variables = variables;
            agent.send(answer);
        };
    };
    EXPECT_EQ(walk(answering({})), 0) << "without a variable there is no name to go on from";
    EXPECT_EQ(numprinted, 0);
    EXPECT_EQ(walk(answering({{profileCell(1, 1), berInteger(1)},
                              {{1, 3, 6, 1, 5}, berInteger(1)},
                              {profileCell(1, 3), berInteger(3)}})),
              0);
    EXPECT_EQ(PlistForSpool.iNum, 2) << "those after the end of the subtree still count";

    std::vector<SnmpVariable> repeats(600, {profileCell(1, 1), berInteger(1)});
    EXPECT_EQ(walk(answering(repeats)), 1);
    EXPECT_EQ(PlistForSpool.iNum, 600) << "more than the spool holds; the merge must not follow";
}

TEST_F(ProfileTableWalk, KeepsToItsTimeLimit)
{
    walkTimeLimit = std::chrono::milliseconds(400);
    SnmpTable table = tableOf(500);
    EXPECT_EQ(walk(
                  [&](SnmpAgent& agent, const SnmpMessage& request) {
                      usleep(50'000);
                      agent.send(answerFrom(table, request));
                  },
                  {"-t", "10", "-r", "5"}),
              1);
    EXPECT_GT(PlistForSpool.iNum, 0);
    EXPECT_LE(PlistForSpool.iNum, 8);

    SnmpAgent silent([](SnmpAgent&, const SnmpMessage&) {});
    EXPECT_EQ(walk(silent, {"-t", "0.1", "-r", "50"}), 1);
    EXPECT_LE(silent.requests(), 4);
    walkTimeLimit = std::chrono::minutes(2);
}
