#pragma once

#include <map>
#include <memory>
#include <string>

#include "Faults.h"
#include "ProfileTable.h"

#include <net-snmp/library/snmp_transport.h>

struct AgentOptions {
    std::string address = "127.0.0.1";
    int port = 161;
    std::string community = "vislaq";
    int delay = 0;           ///< milliseconds from a request to its answer
    Fault fault;             ///< may be empty
    unsigned faultAfter = 0; ///< objects of the table whose answers stay right
    bool verbose = false;    ///< every request is told on standard error
};

/// Readies net-snmp, without the configuration, the MIB files and the persistent files of the system. Comes
/// before all else that uses net-snmp.
void initializeSnmp();

/// The SNMP version 1 agent.
class Agent {
public:
    /// Listens from here on. Throws std::runtime_error with a text for the user.
    Agent(const AgentOptions& options, ObjectTable table);
    ~Agent();
    Agent(const Agent&) = delete;
    Agent& operator=(const Agent&) = delete;

    /// What is served from the next request on.
    void replaceTable(ObjectTable table) { table_ = std::move(table); }

    /// Serves until something can be read from `descriptor`.
    void serveUntil(int descriptor);

private:
    using Clock = std::chrono::steady_clock;
    struct Packet {
        std::vector<u_char> bytes;
        std::shared_ptr<void> peer; ///< as net-snmp's transport names it
        int peerLength = 0;
        Answer delivery;
    };

    void takeRequest();
    bool isForUs(const netsnmp_pdu& request) const;
    /// Turns a request into its answer. Gives the place of the object in the table.
    size_t answer(netsnmp_pdu& request) const;
    void send(const Packet& packet);
    timespec sendWhatIsDue();

    AgentOptions options_;
    ObjectTable table_;
    netsnmp_transport* transport_;
    std::multimap<Clock::time_point, Packet> waiting_; ///< by the time when they are due
};
