#include "support/SimulatedPrinter.h"

#include <csignal>

SimulatedPrinter::SimulatedPrinter(const std::string& table, const std::vector<std::string>& options)
    : port_(freePort())
{
    std::vector<std::string> command = {PDE_BUILD_DIR "/printer/r4270-printer", "--verbose", "--port",
                                        std::to_string(port_), sandbox_.write("table", table)};
    command.insert(command.end(), options.begin(), options.end());
    process_ = std::make_unique<BackgroundProcess>(command, sandbox_ / "log");
    waitUntil([this] { return !running() || log().find("serving") != std::string::npos; });
}

bool SimulatedPrinter::says(const std::string& text) const
{
    return waitUntil([&] { return log().find(text) != std::string::npos; });
}

void SimulatedPrinter::changeTable(const std::string& table)
{
    const size_t before = log().size();
    sandbox_.write("table", table);
    kill(process_->pid(), SIGHUP);
    waitUntil([&] { return log().find("/table", before) != std::string::npos; });
}
