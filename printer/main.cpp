#include "Agent.h"
#include "Faults.h"
#include "ProfileTable.h"
#include "Publisher.h"

#include <CLI/CLI.hpp>
#include <csignal>
#include <iostream>
#include <optional>
#include <sys/signalfd.h>
#include <unistd.h>

namespace {

struct Options {
    AgentOptions agent;
    std::string table;
    std::string fault;
    std::string publish;
    unsigned exitAfter = 0;
};

void complain(const std::exception& error)
{
    std::cerr << "r4270-printer: " << error.what() << std::endl;
}

void declareOptions(CLI::App& app, Options& options)
{
    app.set_version_flag("--version", "r4270-printer " PDE_VERSION);
    app.add_option("TABLE", options.table, "The profile table, a text file")->required()->option_text("FILE");
    app.add_option("--address", options.agent.address, "IPv4 address to listen at")->capture_default_str();
    app.add_option("--port", options.agent.port, "UDP port; below 1024 only for root")
        ->capture_default_str()
        ->check(CLI::Range(1, 65535));
    app.add_option("--community", options.agent.community, "Read community")->capture_default_str();
    app.add_option("--publish", options.publish,
                   "Announce the printer under this name (Bonjour, through Avahi)")
        ->option_text("NAME");
    app.add_option("--delay", options.agent.delay, "Milliseconds from each request to its answer")
        ->option_text("MILLISECONDS")
        ->check(CLI::Range(0, 600000));
    app.add_option("--fault", options.fault, "Misbehave; the faults are listed below")->option_text("FAULT");
    app.add_option("--fault-after", options.agent.faultAfter,
                   "Objects of the table, from its beginning, whose answers stay right")
        ->option_text("COUNT");
    app.add_option("--exit-after", options.exitAfter, "End by itself after so many seconds")
        ->option_text("SECONDS");
    app.add_flag("--verbose", options.agent.verbose, "Tell of every request on standard error");
    app.footer("Faults:\n" + faultHelp() +
               "\nThe table is read again on SIGHUP; when it has an error, the earlier one stays. "
               "SIGTERM and SIGINT end the program.");
}

void reload(const Options& options, Agent& agent)
{
    try {
        agent.replaceTable(readTableFile(options.table));
        if (options.agent.verbose)
            std::cerr << "r4270-printer: read " << options.table << " again" << std::endl;
    } catch (const TableFileError& error) {
        complain(error);
    }
}

/// Signals come through a descriptor from here on, in this thread and in those that it starts.
int signalDescriptor()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (int number : {SIGHUP, SIGTERM, SIGINT, SIGALRM})
        sigaddset(&signals, number);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    return signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

void run(Options& options)
{
    const int signals = signalDescriptor();
    alarm(options.exitAfter);
    initializeSnmp();
    if (!options.fault.empty())
        options.agent.fault = parseFault(options.fault);
    ObjectTable table = readTableFile(options.table);
    const size_t count = table.size();
    Agent agent(options.agent, std::move(table));
    std::optional<Publisher> publisher;
    if (!options.publish.empty())
        publisher.emplace(options.publish, options.agent.address, options.agent.verbose);
    if (options.agent.verbose)
        std::cerr << "r4270-printer: serving " << count << " objects at " << options.agent.address << ":"
                  << options.agent.port << std::endl;
    while (true) {
        agent.serveUntil(signals);
        signalfd_siginfo signal{};
        if (read(signals, &signal, sizeof signal) != sizeof signal || signal.ssi_signo != SIGHUP)
            return;
        reload(options, agent);
    }
}

} // namespace

int main(int argc, char** argv)
{
    try {
        CLI::App app{"A simulated R4270 printer: an SNMP version 1 agent that serves the printer's table of "
                     "colour profiles from a text file.",
                     "r4270-printer"};
        Options options;
        declareOptions(app, options);
        CLI11_PARSE(app, argc, argv);
        run(options);
    } catch (const std::exception& error) {
        complain(error);
        return 1;
    }
    return 0;
}
