#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "ProfileTable.h"

/// An answer on its way out: first a right one, then what a fault makes of it.
struct Answer {
    netsnmp_pdu* says = nullptr;                      ///< borrowed; has a variable
    std::function<void(std::vector<u_char>&)> damage; ///< done to the packet; may be empty
    int copies = 1;
    std::chrono::milliseconds delay{0};    ///< held back so long, while other requests are answered
    std::chrono::milliseconds flooding{0}; ///< sent again and again so long, while nothing else is done
    int socket = -1;                       ///< sends from this UDP socket instead of the agent's
};

using Fault = std::function<void(Answer&)>;

/// Makes a fault from "NAME" or "NAME:VALUE". Throws std::invalid_argument with a text for the user.
Fault parseFault(const std::string& text);

/// The faults that there are, a line each, for the program's help.
std::string faultHelp();
