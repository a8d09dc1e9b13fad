#pragma once

#include <chrono>
#include <netinet/in.h>
#include <optional>
#include <string>

/// A service of DNS service discovery. All three are UTF-8; the name is one label, not escaped.
struct ServiceName {
    std::string name;   ///< "Office Printer"
    std::string type;   ///< "_pdl-datastream._tcp"
    std::string domain; ///< "local"
};

/// The first IPv4 address that the Avahi daemon finds for a service. Blocks for at most `timeout`, also when
/// the message bus or the daemon does not answer. Does not throw.
std::optional<sockaddr_in> resolveService(const ServiceName& service, std::chrono::milliseconds timeout);
