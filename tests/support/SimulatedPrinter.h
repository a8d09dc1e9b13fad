#pragma once

#include "support/Process.h"
#include "support/Sandbox.h"

#include <csignal>
#include <optional>

/// r4270-printer on a free port of 127.0.0.1, serving a table of the test's own. As long as it lives net-snmp
/// asks at its port.
class SimulatedPrinter {
public:
    /// Serves from here on, or has ended: log() tells why. `options` are the program's own; "@" at the end of
    /// one stands for the port.
    explicit SimulatedPrinter(const std::string& table, const std::vector<std::string>& options = {})
    {
        std::vector<std::string> command = {PDE_BUILD_DIR "/printer/r4270-printer", "--verbose", "--port",
                                            std::to_string(port_), sandbox_.write("table", table)};
        command.insert(command.end(), options.begin(), options.end());
        for (std::string& word : command)
            if (word.ends_with('@'))
                word.replace(word.size() - 1, 1, std::to_string(port_));
        sandbox_.write("snmp.conf", "defaultPort " + std::to_string(port_) + "\n");
        process_.emplace(command, sandbox_ / "log");
        waitUntil([this] { return !running() || log().find("serving") != std::string::npos; });
    }

    bool running() const { return process_->running(); }
    std::string address() const { return "127.0.0.1:" + std::to_string(port_); }

    /// Rewrites the table file and has it read again, up to the program's saying so or complaining.
    void changeTable(const std::string& table)
    {
        const size_t before = log().size();
        sandbox_.write("table", table);
        if (running())
            kill(process_->pid(), SIGHUP);
        waitUntil([&] { return log().find("/table", before) != std::string::npos; });
    }

    /// What the program has said, the requests among it.
    std::string log() const { return readFile(sandbox_ / "log"); }
    /// Waits until the program has said `text`.
    bool says(const std::string& text) const
    {
        return waitUntil([&] { return log().find(text) != std::string::npos; });
    }

private:
    Sandbox sandbox_;
    ScopedVariable configuration_{"SNMPCONFPATH", sandbox_.path()};
    const int port_ = freePort();
    std::optional<BackgroundProcess> process_;
};
