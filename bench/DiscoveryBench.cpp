#include "support/DriverRoot.h"
#include "support/Process.h"

#include <arpa/inet.h>
#include <benchmark/benchmark.h>
#include <cstring>
#include <memory>
#include <sys/socket.h>
#include <unistd.h>

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

#include <net-snmp/library/snmp_impl.h>

// The walk of a full profile table, 500 rows of 7 columns, next to what it is measured against: net-snmp's
// own walk of the same table, and the same packets in a bare loop. All three ask the same simulated printer,
// so many milliseconds away.

namespace {

constexpr oid kRows = 500;
constexpr oid kColumns = 7;
constexpr char kTable[] = "1.3.6.1.4.1.99999.1.1.1.1.6.13.1.1";

/// The simulated printer with a full table, and a root with this build's helper and walker.
class Bench {
public:
    explicit Bench(const std::vector<std::string>& printerOptions)
    {
        configuration_.write("snmp.conf", "defaultPort " + std::to_string(port_) + "\n");
        std::string table;
        for (oid row = 1; row <= kRows; ++row) {
            std::string number = std::to_string(row);
            table += "profile " + number + " 4 \"Office Proof Coated " + number + "\" \"PROFILE" + number +
                     ".ICC\" " + std::to_string(row % 3 + 1) + "\n";
        }
        std::vector<std::string> command = {PDE_PRINTER, "--port", std::to_string(port_)};
        command.insert(command.end(), printerOptions.begin(), printerOptions.end());
        command.push_back(configuration_.write("table", table));
        printer_ = std::make_unique<BackgroundProcess>(command, configuration_ / "log");
        sleepMilliseconds(300); // until it listens
    }

    explicit Bench(const benchmark::State& state) : Bench({"--delay", std::to_string(state.range(0))}) {}

    int port() const { return port_; }

private:
    DriverRoot root_;
    Sandbox configuration_;
    ScopedVariable readsConfiguration_{"SNMPCONFPATH", configuration_.path()};
    int port_ = freePort();
    std::unique_ptr<BackgroundProcess> printer_;
};

/// The packet of a GETNEXT request.
std::string packetOf(long requestId, const std::vector<oid>& name)
{
    netsnmp_session session;
    snmp_sess_init(&session);
    session.version = SNMP_VERSION_1;
    char community[] = "vislaq";
    session.community = reinterpret_cast<u_char*>(community);
    session.community_len = strlen(community);
    netsnmp_pdu* pdu = snmp_pdu_create(SNMP_MSG_GETNEXT);
    pdu->version = SNMP_VERSION_1;
    pdu->reqid = requestId;
    snmp_add_null_var(pdu, name.data(), name.size());
    size_t size = 2048, used = 0;
    auto* buffer = static_cast<u_char*>(malloc(size));
    snmp_build(&buffer, &size, &used, &session, pdu);
    std::string packet(buffer + size - used, buffer + size); // it is built from its end
    free(buffer);
    snmp_free_pdu(pdu);
    return packet;
}

void discover(benchmark::State& state, const char* reply)
{
    ProcessResult result = runProcess({helperExecutable(), "mibwalk_XPC", "R4270", loginName(), "snmpwalk",
                                       "-Os", "-c", "vislaq", "-v", "1", "127.0.0.1", kTable});
    if (result.out != reply)
        state.SkipWithError("not the walk that was to be measured");
}

void everyDistance(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Unit(benchmark::kMillisecond)->UseRealTime()->Arg(0)->Arg(1)->Arg(2)->Arg(5)->Arg(10)->Arg(20);
}

void walkInABareLoop(benchmark::State& state)
{
    Bench bench(state);
    std::vector<std::string> requests;
    for (oid column = 1; column <= kColumns; ++column)
        for (oid row = 0; row < kRows; ++row)
            requests.push_back(packetOf(static_cast<long>(0x10000000 + requests.size()),
                                        {1, 3, 6, 1, 4, 1, 99999, 1, 1, 1, 1, 6, 13, 1, 1, column, 1, row}));
    sockaddr_in printer{};
    printer.sin_family = AF_INET;
    printer.sin_port = htons(static_cast<uint16_t>(bench.port()));
    printer.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int client = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    (void)connect(client, reinterpret_cast<sockaddr*>(&printer), sizeof printer);
    for (auto _ : state) {
        for (const std::string& packet : requests) {
            char answer[2048];
            if (send(client, packet.data(), packet.size(), 0) < 0 ||
                recv(client, answer, sizeof answer, 0) <= 0)
                state.SkipWithError("the printer does not answer");
        }
    }
    close(client);
}
BENCHMARK(walkInABareLoop)->Apply(everyDistance);

void walkWithSnmpwalk(benchmark::State& state)
{
    Bench bench(state);
    std::string command = "exec snmpwalk -v1 -c vislaq 127.0.0.1:" + std::to_string(bench.port()) + " " +
                          kTable + " >/dev/null 2>&1";
    for (auto _ : state) {
        if (runProcess({"/bin/sh", "-c", command}).status != 0)
            state.SkipWithError("snmpwalk failed");
    }
}
BENCHMARK(walkWithSnmpwalk)->Apply(everyDistance);

/// The helper's whole command: walk, merge and durable write.
void discoverThroughTheHelper(benchmark::State& state)
{
    Bench bench(state);
    for (auto _ : state)
        discover(state, "mibwalk_XPC=iRet=0\n");
}
BENCHMARK(discoverThroughTheHelper)->Apply(everyDistance);

/// net-snmp's default: six tries of a second.
void discoverASilentPrinter(benchmark::State& state)
{
    Bench bench(std::vector<std::string>{"--fault", "silent"});
    for (auto _ : state)
        discover(state, "mibwalk_XPC=iRet=1\n");
}
BENCHMARK(discoverASilentPrinter)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);

} // namespace
