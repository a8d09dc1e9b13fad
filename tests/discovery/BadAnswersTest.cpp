#include "WalkFixture.h"

#include <atomic>
#include <cstring>
#include <memory>
#include <unistd.h>

// Single answers that a sane agent would not give.

using BadAnswers = WalkTest;

namespace {

SnmpMessage answerWith(const SnmpMessage& request, const SnmpName& name, const std::string& value)
{
    SnmpMessage answer = request;
    answer.pdu = kSnmpResponse;
    answer.variables = {{name, value}};
    return answer;
}

/// Answers with this variable, then with an error: a client that cannot read the first need not time out.
SnmpAgent::Script answeringOnce(const SnmpName& name, const std::string& value)
{
    return [=](SnmpAgent& agent, const SnmpMessage& request) {
        SnmpMessage answer = answerWith(request, name, value);
        if (request.variables[0].name.size() == 15)
            agent.send(answer);
        answer.errorStatus = 5;
        answer.variables.clear();
        agent.send(answer);
    };
}

} // namespace

TEST_F(BadAnswers, AreIgnoredWhenTheTypeIsNotTheColumns)
{
    const std::string values[] = {berInteger(9),           berString("TEXT"),       ber(kSnmpNull, ""),
                                  ber(kSnmpCounter, "\1"), ber(0x42, "\1"),         ber(0x43, "\1"),
                                  ber(0x44, "\x9f\x78"),   ber(0x46, "\1\2\3\4\5"), ber(0x40, "\x7f\1\1\1"),
                                  berName({1, 3, 6}),      ber(0x01, "\1"),         ber(0x03, "\1")};
    for (uint32_t column = 0; column <= 8; ++column) {
        for (const std::string& value : values) {
            EXPECT_EQ(walk(answeringOnce(profileCell(column, 1), value)), 2);
            ProfileRecord expected{};
            bool integer = value[0] == kSnmpInteger;
            bool text = value[0] == kSnmpString;
            expected.IndexOnDevice = column == 1 && integer ? 9 : 0;
            expected.Location = column == 2 && integer ? 9 : 0;
            memcpy(expected.ProfileName, "TEXT", column == 3 && text ? 4 : 0);
            memcpy(expected.FileName, "TEXT", column == 4 && text ? 4 : 0);
            expected.ProfileClass = column == 5 && integer ? 9 : 0;
            expected.TableColumn7 = column == 7 && integer ? 9 : 0;
            EXPECT_EQ(memcmp(&spooled(1), &expected, sizeof expected), 0)
                << "column " << column << ", type " << int(value[0]);
        }
    }
}

TEST_F(BadAnswers, KeepIntegersOfEveryLengthWithin32Bits)
{
    for (size_t length : {0, 1, 4, 5, 8, 9, 200}) {
        EXPECT_EQ(walk(answeringOnce(profileCell(2, 1), ber(kSnmpInteger, std::string(length, '\x7f')))), 2);
        if (length == 1 || length == 4)
            EXPECT_EQ(spooled(1).Location, length == 1 ? 0x7f : 0x7f7f7f7f);
    }
}

TEST_F(BadAnswers, AreCutToTheField)
{
    for (size_t length : {0, 1, 31, 32, 33, 255, 60000}) {
        SnmpTable table = {{profileCell(3, 1), berString(std::string(length, 'p'))},
                           {profileCell(4, 1), berString(std::string(length, 'f'))}};
        SnmpAgent agent(table);
        ASSERT_EQ(walk(agent), 0);
        size_t kept = std::min<size_t>(length, 32);
        EXPECT_EQ(std::string(spooled(1).ProfileName, 32),
                  std::string(kept, 'p') + std::string(32 - kept, '\0'));
        EXPECT_EQ(std::string(spooled(1).FileName, 32),
                  std::string(kept, 'f') + std::string(32 - kept, '\0'));
    }
    SnmpAgent agent(SnmpTable{{profileCell(4, 1), berString(std::string("AB\0CD", 5))}});
    ASSERT_EQ(walk(agent), 0);
    EXPECT_EQ(std::string(spooled(1).FileName, 6), std::string("AB\0\0\0\0", 6));
}

TEST_F(BadAnswers, TouchNoRowButTheirOwn)
{
    SnmpName table = profileCell(1, 1);
    table.resize(15);
    auto named = [&](std::vector<uint32_t> rest) {
        SnmpName name = table;
        name.insert(name.end(), rest.begin(), rest.end());
        return name;
    };
    const std::vector<SnmpName> strays = {
        named({}),          named({1}),         named({1, 1}),           named({1, 1, 0}),
        named({1, 1, 501}), named({1, 1, ~0u}), named({1, 1, 1u << 31}), named({1, 1, (1u << 31) - 1}),
        named({0, 1, 1}),   named({8, 1, 500}), named({~0u, 1, 1}),      named(std::vector<uint32_t>(114, 1)),
    };
    for (const SnmpName& name : strays) {
        int exitValue = walk(answeringOnce(name, berInteger(9)));
        EXPECT_EQ(exitValue, name == table ? 1 : 2) << "the root itself does not increase";
        EXPECT_EQ(memcmp(&PlistForSpool, std::make_unique<ProfileList>().get(), sizeof PlistForSpool), 0)
            << name.size() << " parts, the last " << name.back();
    }
    std::vector<uint32_t> longest(113, 1);
    longest[2] = 500;
    for (const auto& rest : {std::vector<uint32_t>{1, 77, 500}, {1, 1, 500, 4}, {1, ~0u, 500}, longest}) {
        SnmpAgent agent(SnmpTable{{named(rest), berInteger(9)}});
        EXPECT_EQ(walk(agent), 0);
        EXPECT_EQ(spooled(500).IndexOnDevice, 9) << "neither part 17 nor what follows the row matters";
    }
}

TEST_F(BadAnswers, AreNotTakenFromAnybodyElse)
{
    SnmpTable table = tableOf(1);
    using Forger = void (*)(SnmpAgent&, SnmpMessage forged);
    const std::pair<const char*, Forger> forgers[] = {
        {"another address", [](SnmpAgent& a, SnmpMessage m) { a.sendFromOtherAddress(m.encoded()); }},
        {"another port", [](SnmpAgent& a, SnmpMessage m) { a.sendFromOtherPort(m.encoded()); }},
        {"another community", [](SnmpAgent& a, SnmpMessage m) { m.community = "public", a.send(m); }},
        {"a community cut short", [](SnmpAgent& a, SnmpMessage m) { m.community = "visla", a.send(m); }},
        {"another version", [](SnmpAgent& a, SnmpMessage m) { m.version = 1, a.send(m); }},
        {"an unknown version", [](SnmpAgent& a, SnmpMessage m) { m.version = 77, a.send(m); }},
        {"another request", [](SnmpAgent& a, SnmpMessage m) { ++m.requestId, a.send(m); }},
        {"a request", [](SnmpAgent& a, SnmpMessage m) { m.pdu = kSnmpGetNext, a.send(m); }},
        {"a trap", [](SnmpAgent& a, SnmpMessage m) { m.pdu = 0xa7, a.send(m); }},
        {"a report", [](SnmpAgent& a, SnmpMessage m) { m.pdu = 0xa8, a.send(m); }},
        {"half a packet", [](SnmpAgent& a, SnmpMessage m) { a.send(m.encoded().substr(0, 40)); }},
        {"a length beyond the packet", [](SnmpAgent& a, SnmpMessage m) { a.send("\x30\x7f" + m.encoded()); }},
        {"an empty packet", [](SnmpAgent& a, SnmpMessage) { a.send(std::string()); }},
        {"the largest packet", [](SnmpAgent& a, SnmpMessage) { a.send(std::string(65507, '\x30')); }},
    };
    for (auto [what, forge] : forgers) {
        auto forged = [&, forge = forge](SnmpAgent& agent, const SnmpMessage& request) {
            forge(agent, answerWith(request, profileCell(1, 500), berInteger(666)));
        };
        EXPECT_EQ(walk(forged, {"-t", "0.05"}), 1) << what << " alone is no answer";
        EXPECT_EQ(walk([&](SnmpAgent& agent, const SnmpMessage& request) {
                      forged(agent, request);
                      agent.send(answerFrom(table, request));
                  }),
                  0)
            << what;
        EXPECT_EQ(numprinted, 7) << what;
        EXPECT_EQ(spooled(500).IndexOnDevice, 0) << what;
    }
}

TEST_F(BadAnswers, MayComeLateOrTwice)
{
    SnmpTable table = tableOf(2);
    auto twice = [&](SnmpAgent& agent, const SnmpMessage& request) {
        agent.send(answerFrom(table, request));
        agent.send(answerFrom(table, request));
    };
    EXPECT_EQ(walk(twice), 0);
    EXPECT_EQ(numprinted, 14);
    auto late = [&, asked = SnmpName()](SnmpAgent& agent, const SnmpMessage& request) mutable {
        if (asked == request.variables[0].name)
            return; // asked again meanwhile
        asked = request.variables[0].name;
        usleep(asked == profileCell(4, 1) ? 450'000 : 0);
        agent.send(answerFrom(table, request));
    };
    EXPECT_EQ(walk(late, {"-t", "0.3", "-r", "50"}), 0);
    EXPECT_EQ(numprinted, 14);
}

TEST_F(BadAnswers, CannotHoldTheWalkByTheirNumber)
{
    std::atomic<bool> walked = false;
    bool outlasted = false;
    SnmpAgent agent([&](SnmpAgent& self, const SnmpMessage& request) {
        SnmpMessage stranger = answerFrom({}, request);
        ++stranger.requestId;
        // Slower to read than to send, so that the next one is always there.
        stranger.variables.assign(4000, {{1, 3}, ber(kSnmpNull, "")});
        const std::string datagram = stranger.encoded();
        auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!walked && !outlasted) {
            self.send(datagram);
            outlasted = std::chrono::steady_clock::now() > end;
        }
    });
    EXPECT_EQ(walk(agent, {"-t", "0.1"}), 1);
    walked = true;
    EXPECT_FALSE(outlasted);
}
