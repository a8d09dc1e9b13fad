#include "WalkFixture.h"

#include <cstdlib>
#include <random>

// Answers damaged at random, through the real client: made for the sanitizers. PDE_MUTATED_ANSWERS says how
// many (the default takes seconds).

using MutatedAnswers = WalkTest;

namespace {

class Mutator {
public:
    std::string operator()(std::string datagram)
    {
        for (size_t changes = below(4) + 1; changes > 0 && !datagram.empty(); --changes)
            change(datagram);
        return datagram;
    }

    size_t below(size_t limit) { return random_() % limit; }

private:
    void change(std::string& datagram)
    {
        size_t at = below(datagram.size());
        static const char telling[] = {'\0', '\1', '\x7f', '\x80', '\x81', '\x82', '\x84', '\x88', '\xff'};
        switch (below(6)) {
        case 0:
            datagram[at] = static_cast<char>(random_());
            break;
        case 1:
            datagram[at] = telling[below(sizeof telling)];
            break;
        case 2:
            datagram[at] = static_cast<char>(datagram[at] ^ 1 << below(8));
            break;
        case 3:
            datagram.resize(at);
            break;
        case 4:
            datagram.insert(at, datagram, below(datagram.size()), below(16));
            break;
        default:
            datagram.erase(at, below(8));
        }
    }

    std::minstd_rand random_{20261122};
};

} // namespace

TEST_F(MutatedAnswers, NeitherCrashNorHoldTheWalk)
{
    const char* wanted = getenv("PDE_MUTATED_ANSWERS");
    const int most = wanted != nullptr ? atoi(wanted) : 20000;
    SnmpTable table = tableOf(8);
    table[profileCell(6, 9)] = berName(profileCell(6, 9));
    std::atomic<int> sent = 0;
    Mutator mutated;
    SnmpAgent agent([&](SnmpAgent& self, const SnmpMessage& request) {
        SnmpMessage good = answerFrom(table, request);
        for (size_t n = mutated.below(12); n > 0; --n, ++sent)
            self.send(mutated(good.encoded()));
        self.send(good);
    });
    int complete = 0;
    int walks = 0;
    for (; sent < most; ++walks) {
        int exitValue = walk(agent);
        ASSERT_TRUE(exitValue >= 0 && exitValue <= 2);
        ASSERT_LE(numprinted, kMaxWalkVariables);
        complete += exitValue == 0;
    }
    EXPECT_GT(complete, 0);
    EXPECT_LT(complete, walks) << "no mutation was taken for an answer: they are too wild";
}
