#pragma once

#include <optional>
#include <string>

#include "Faults.h"
#include "ProfileTable.h"

struct AgentOptions {
    std::string address = "127.0.0.1";
    int port = 161;
    std::optional<Fault> fault;
    unsigned faultAfter = 0; ///< answers that stay right before the fault sets in
    bool verbose = false;    ///< every request is told on standard error
};

/// Readies net-snmp, without the configuration, the MIB files and the persistent files of the system, for
/// readers with `community`. Comes before all else that uses net-snmp. Throws std::runtime_error.
void initializeSnmp(const std::string& community);

/// The SNMP version 1 agent. One a process: net-snmp's agent is global.
class Agent {
public:
    /// Listens from here on. Throws std::runtime_error with a text for the user.
    Agent(const AgentOptions& options, ObjectTable table);
    ~Agent();
    Agent(const Agent&) = delete;
    Agent& operator=(const Agent&) = delete;

    /// What is served from the next request on.
    void replaceTable(ObjectTable table);

    /// Waits for one event, a request or one of the descriptors registered with net-snmp, and serves it.
    void serve();
};
