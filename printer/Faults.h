#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ProfileTable.h"

/// An answer on its way out, and how it is delivered.
struct Delivery {
    std::vector<u_char> packet;
    int copies = 1;
    int delayMilliseconds = 0;
    int socket = -1; ///< sends from this UDP socket instead of the agent's; stays the fault's
};

/// One way to misbehave. The agent makes a right answer first; the fault then changes what it says, or what
/// becomes of its packet.
struct Fault {
    std::function<void(netsnmp_pdu&)> change; ///< may be empty
    std::function<void(Delivery&)> deliver;   ///< may be empty
};

/// Makes a fault from "NAME" or "NAME:VALUE". Throws std::invalid_argument with a text for the user.
Fault parseFault(const std::string& text);

/// The faults that there are, a line each, for the program's help.
std::string faultHelp();

/// Lets every answer that `transport` sends, but for the first `after`, go through `fault`. Once a process.
void installFault(netsnmp_transport& transport, Fault fault, unsigned after);
