#pragma once

#include "support/Process.h"
#include "support/Sandbox.h"

#include <memory>
#include <string>

/// A message bus and an Avahi daemon of the test's own. The daemon has a network of its own with nothing but
/// a loopback interface, so that nothing is announced to anybody and no other daemon stands in its way. The
/// bus is the system's, for this process and its children, as long as the object lives.
class PrivateAvahi {
public:
    PrivateAvahi();
    ~PrivateAvahi();

    /// Why the daemon does not run; empty when it does. A machine that lets nobody have a network of his own
    /// is a reason to skip a test.
    const std::string& problem() const { return problem_; }

    void stopDaemon();
    /// The daemon stays on the bus and answers nobody.
    void freezeDaemon();

private:
    Sandbox sandbox_;
    ScopedVariable address_;
    std::unique_ptr<BackgroundProcess> bus_;
    std::unique_ptr<BackgroundProcess> daemon_;
    std::string problem_;
};
