#pragma once

#include <memory>
#include <string>

/// Announces the printer with DNS service discovery, type _pdl-datastream._tcp, through the Avahi daemon, for
/// as long as the object lives. It keeps trying while there is no daemon, and takes another name when the
/// name is taken; what happens is told on standard error.
class Publisher {
public:
    /// The printer is announced at `address`; at "0.0.0.0", at every address of this machine. An address of
    /// the loopback network is announced on that network only. Throws std::runtime_error.
    Publisher(const std::string& name, const std::string& address, bool verbose);
    ~Publisher();
    Publisher(const Publisher&) = delete;
    Publisher& operator=(const Publisher&) = delete;

private:
    class Announcement;
    std::unique_ptr<Announcement> announcement_;
};
