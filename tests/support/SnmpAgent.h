#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <vector>

// An SNMP agent that says exactly what a test tells it to, byte for byte if need be: wrong types, wrong
// lengths, wrong senders. For a printer that behaves, and for the faults that it offers, use r4270-printer.

using SnmpName = std::vector<uint32_t>;

enum SnmpTag : uint8_t {
    kSnmpInteger = 0x02,
    kSnmpString = 0x04,
    kSnmpNull = 0x05,
    kSnmpName = 0x06,
    kSnmpSequence = 0x30,
    kSnmpCounter = 0x41,
    kSnmpGet = 0xa0,
    kSnmpGetNext = 0xa1,
    kSnmpResponse = 0xa2,
};

/// A BER element; `content` may be anything.
std::string ber(uint8_t tag, const std::string& content);
std::string berInteger(int64_t value);
std::string berString(const std::string& text);
std::string berName(const SnmpName& name);

struct SnmpVariable {
    SnmpName name;
    std::string value; ///< a whole BER element
};

struct SnmpMessage {
    int32_t version = 0;
    std::string community = "vislaq";
    uint8_t pdu = kSnmpResponse;
    int32_t requestId = 0;
    int32_t errorStatus = 0;
    int32_t errorIndex = 0;
    std::vector<SnmpVariable> variables;

    std::string encoded() const;
};

using SnmpTable = std::map<SnmpName, std::string>;

/// Instance `row` of column `column` of the printer's profile table.
SnmpName profileCell(uint32_t column, uint32_t row);

/// A row of the table, columns 1 to 7, with row numbers as device indexes.
void addProfileRow(SnmpTable& table, uint32_t row, const std::string& fileName, int32_t profileClass,
                   int32_t location);

/// What an agent with this table answers to a GET or GETNEXT of one variable.
SnmpMessage answerFrom(const SnmpTable& table, const SnmpMessage& request);

class SnmpAgent {
public:
    /// Called on the agent's own thread for each request that can be read; answers with send and its like.
    using Script = std::function<void(SnmpAgent& agent, const SnmpMessage& request)>;

    explicit SnmpAgent(Script script);
    explicit SnmpAgent(const SnmpTable& table);
    ~SnmpAgent();
    SnmpAgent(const SnmpAgent&) = delete;
    SnmpAgent& operator=(const SnmpAgent&) = delete;

    int port() const { return port_; }
    std::string address() const { return "127.0.0.1:" + std::to_string(port_); }
    int requests() const { return requests_; }

    void send(const std::string& datagram);
    void send(const SnmpMessage& answer) { send(answer.encoded()); }
    void sendFromOtherPort(const std::string& datagram);
    /// From 127.0.0.2, the agent's own port.
    void sendFromOtherAddress(const std::string& datagram);

private:
    void serve();
    void sendFrom(int socket, const std::string& datagram);

    Script script_;
    int socket_;
    int otherPort_;
    int otherAddress_;
    int port_ = 0;
    std::string client_; // sockaddr_in of the request at hand
    std::atomic<bool> ending_ = false;
    std::atomic<int> requests_ = 0;
    std::thread thread_;
};
