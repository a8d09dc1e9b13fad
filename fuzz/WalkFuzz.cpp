#include "discovery/ProfileTableWalk.h"
#include "discovery/SpoolMerge.h"
#include "discovery/SpoolTable.h"
#include "profiles/ProfileListFile.h"
#include "support/Sandbox.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cassert>
#include <mutex>
#include <sys/socket.h>
#include <thread>

// Whatever a printer answers: the walk ends, within its limits, and what it has read makes a list that can be
// written. An input is answers, each a length byte and then what follows the request's number in the packet:
// error status, error index and variables. An empty one is no answer at all.

static std::mutex mutex;
static std::string answers;

static std::string nextAnswer()
{
    std::lock_guard lock(mutex);
    if (answers.empty())
        return {"\2\1\2\2\1\1\x30\0", 8}; // no such name: the end of the table
    std::string answer = answers.substr(1, static_cast<unsigned char>(answers[0]));
    answers.erase(0, answer.size() + 1);
    return answer;
}

static std::string part(char tag, const std::string& content)
{
    return std::string{tag, '\x82', static_cast<char>(content.size() >> 8),
                       static_cast<char>(content.size())} +
           content;
}

static void serve(int agent)
{
    char request[2048];
    sockaddr_in walker{};
    for (socklen_t length = sizeof walker;;) {
        auto* sender = reinterpret_cast<sockaddr*>(&walker);
        ssize_t got = recvfrom(agent, request, sizeof request, 0, sender, &length);
        std::string answer = nextAnswer();
        if (got < 0 || answer.empty())
            continue;
        // The request's version, community and number, all in front, are the answer's too.
        char* community = request + 5;
        char* number = community + 2 + community[1] + 2;
        std::string pdu = part('\xA2', std::string(number, number + 2 + number[1]) + answer);
        std::string packet = part('\x30', std::string(request + 2, number - 2) + pdu);
        sendto(agent, packet.data(), packet.size(), 0, sender, length);
    }
}

static std::string startAgent()
{
    int agent = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{AF_INET, 0, {htonl(INADDR_LOOPBACK)}, {}};
    socklen_t length = sizeof address;
    bind(agent, reinterpret_cast<sockaddr*>(&address), length);
    getsockname(agent, reinterpret_cast<sockaddr*>(&address), &length);
    std::thread(serve, agent).detach();
    return "127.0.0.1:" + std::to_string(ntohs(address.sin_port));
}

extern "C" int LLVMFuzzerTestOneInput(const char* data, size_t size)
{
    // Without a helper in it, which would be eight processes an input.
    static Sandbox sandbox;
    static ScopedVariable root("PDE_ROOT", sandbox.path());
    static std::string host = startAgent();
    {
        std::lock_guard lock(mutex);
        answers.assign(data, size);
    }
    const char* words[] = {"snmpwalk",
                           "-c",
                           "vislaq",
                           "-v",
                           "1",
                           "-t",
                           "0.01",
                           "-r",
                           "0",
                           host.c_str(),
                           "1.3.6.1.4.1.99999.1.1.1.1.6.13.1.1"};
    int result = mib_walk(std::size(words), const_cast<char**>(words));
    assert(result >= 0 && result <= 2 && numprinted <= kMaxWalkVariables);
    static ProfileList list;
    list = {};
    for (int row = 0; row < std::min(PlistForSpool.iNum, kProfileSlots); ++row)
        vRestructDetail(row, &list);
    assert(isListFileText(listFileText(list, list, list)));
    return 0;
}
