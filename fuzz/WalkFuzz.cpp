#include "Fuzz.h"
#include "discovery/ProfileTableWalk.h"
#include "discovery/SpoolMerge.h"
#include "discovery/SpoolTable.h"
#include "profiles/ProfileListFile.h"
#include "support/Sandbox.h"

#include <algorithm>
#include <arpa/inet.h>
#include <mutex>
#include <sys/socket.h>
#include <thread>

// Whatever a printer answers: the walk ends, within its limits, and what it has read makes a list that can be
// written. An input is answers, each a length byte and then what follows the request's number in the packet:
// error status, error index and variables. An empty one is no answer at all.

namespace {

class Agent {
public:
    Agent()
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        require(bind(socket_, reinterpret_cast<sockaddr*>(&address), length) == 0);
        require(getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &length) == 0);
        host_ = "127.0.0.1:" + std::to_string(ntohs(address.sin_port));
        std::thread([this] { serve(); }).detach();
    }

    const std::string& host() const { return host_; }

    void setAnswers(std::string answers)
    {
        std::lock_guard lock(mutex_);
        answers_ = std::move(answers);
    }

private:
    std::string nextAnswer()
    {
        std::lock_guard lock(mutex_);
        if (answers_.empty())
            return {"\2\1\2\2\1\1\x30\0", 8}; // no such name: the end of the table
        std::string answer = answers_.substr(1, static_cast<unsigned char>(answers_[0]));
        answers_.erase(0, answer.size() + 1);
        return answer;
    }

    static std::string part(char tag, const std::string& content)
    {
        return std::string{tag, '\x82', static_cast<char>(content.size() >> 8),
                           static_cast<char>(content.size())} +
               content;
    }

    // The request's version, community and number, all in front, are the answer's too.
    static std::string packetFor(const std::string& request, const std::string& answer)
    {
        auto end = [&request](size_t start) {
            return start + 2 + static_cast<unsigned char>(request[start + 1]);
        };
        size_t community = end(2), number = community + 2;
        return part('\x30', request.substr(2, community - 2) +
                                part('\xA2', request.substr(number, end(number) - number) + answer));
    }

    void serve()
    {
        char buffer[2048];
        sockaddr_storage from{};
        for (;;) {
            socklen_t length = sizeof from;
            auto* sender = reinterpret_cast<sockaddr*>(&from);
            ssize_t got = recvfrom(socket_, buffer, sizeof buffer, 0, sender, &length);
            std::string answer = nextAnswer();
            if (got < 0 || answer.empty())
                continue;
            std::string packet = packetFor({buffer, static_cast<size_t>(got)}, answer);
            sendto(socket_, packet.data(), packet.size(), 0, sender, length);
        }
    }

    int socket_ = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    std::string host_, answers_;
    std::mutex mutex_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // Without a helper in it, which would be eight processes an input.
    static Sandbox sandbox;
    static ScopedVariable root("PDE_ROOT", sandbox.path());
    static Agent agent;
    agent.setAnswers(textOf(data, size));
    std::vector<std::string> words = {"snmpwalk", "-Os", "-c",         "vislaq",
                                      "-v",       "1",   "-t",         "0.01",
                                      "-r",       "0",   agent.host(), "1.3.6.1.4.1.99999.1.1.1.1.6.13.1.1"};
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    int result = mib_walk(static_cast<int>(arguments.size()), arguments.data());
    require(result >= 0 && result <= 2 && numprinted <= kMaxWalkVariables);
    static ProfileList list;
    list = {};
    for (int row = 0; row < std::min(PlistForSpool.iNum, kProfileSlots); ++row)
        vRestructDetail(row, &list);
    require(isListFileText(listFileText(list, list, list)));
    return 0;
}
