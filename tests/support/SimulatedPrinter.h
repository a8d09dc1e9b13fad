#pragma once

#include "support/Process.h"
#include "support/Sandbox.h"

#include <memory>
#include <string>
#include <vector>

/// r4270-printer on a free port of 127.0.0.1, serving a table of the test's own.
class SimulatedPrinter {
public:
    /// Serves from here on. `options` are the program's own.
    explicit SimulatedPrinter(const std::string& table, const std::vector<std::string>& options = {});

    /// Whether it runs; log() tells why not.
    bool running() const { return process_->running(); }
    int port() const { return port_; }
    std::string address() const { return "127.0.0.1:" + std::to_string(port_); }

    /// Rewrites the table file and has it read again, up to the program's saying so or complaining.
    void changeTable(const std::string& table);

    /// What the program has said, the requests among it.
    std::string log() const { return readFile(sandbox_ / "log"); }
    /// Waits until the program has said `text`.
    bool says(const std::string& text) const;

private:
    Sandbox sandbox_;
    int port_;
    std::unique_ptr<BackgroundProcess> process_;
};
