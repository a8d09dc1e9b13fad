#pragma once

#include "support/Process.h"
#include "support/Sandbox.h"

#include <optional>

/// A message bus and an Avahi daemon of the test's own. The daemon has a network of its own with nothing but
/// a loopback interface, so that nothing is announced to anybody and no other daemon stands in its way. The
/// bus is the system's, for this process and its children, as long as the object lives.
class PrivateAvahi {
public:
    PrivateAvahi();
    ~PrivateAvahi();

    /// Why the daemon does not run; empty when it does. A machine that lets nobody have a network of his own
    /// is a reason to skip a test.
    std::string problem() const;

    /// After SIGSTOP the daemon stays on the bus and answers nobody.
    void signalDaemon(int signal);

private:
    Sandbox sandbox_;
    ScopedVariable address_;
    std::optional<BackgroundProcess> bus_;
    std::optional<BackgroundProcess> daemon_;
};
