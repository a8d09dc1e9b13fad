#include "Agent.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <poll.h>

#include <net-snmp/library/snmpUDPBaseDomain.h>
#include <net-snmp/library/snmp_impl.h>

namespace {

constexpr char kProgram[] = "r4270-printer";
constexpr char kNowhere[] = "/dev/null";

using PduHolder = std::unique_ptr<netsnmp_pdu, decltype(&snmp_free_pdu)>;
using Bytes = std::vector<u_char>;

/// The message in `packet`; null when net-snmp cannot read it.
PduHolder decode(Bytes packet)
{
    PduHolder pdu(snmp_pdu_create(SNMP_MSG_RESPONSE), snmp_free_pdu);
    Bytes community(SNMP_MAX_MSG_SIZE);
    size_t length = packet.size();
    size_t communityLength = community.size();
    long version = 0;
    u_char* body = snmp_comstr_parse(packet.data(), &length, community.data(), &communityLength, &version);
    if (body == nullptr || snmp_pdu_parse(pdu.get(), body, &length) != 0)
        return {nullptr, snmp_free_pdu};
    pdu->version = version;
    pdu->community = static_cast<u_char*>(malloc(communityLength + 1));
    memcpy(pdu->community, community.data(), communityLength);
    pdu->community_len = communityLength;
    return pdu;
}

/// The packet of a message; empty when net-snmp cannot make it.
Bytes encode(netsnmp_pdu& pdu)
{
    netsnmp_session session;
    snmp_sess_init(&session);
    session.version = pdu.version;
    size_t size = 2048;
    size_t used = 0;
    auto* buffer = static_cast<u_char*>(malloc(size));
    Bytes packet;
    if (snmp_build(&buffer, &size, &used, &session, &pdu) == 0)
        packet.assign(buffer + size - used, buffer + size); // it is built from its end
    free(buffer);
    return packet;
}

netsnmp_transport* listenAt(const AgentOptions& options)
{
    in_addr address;
    if (inet_pton(AF_INET, options.address.c_str(), &address) != 1)
        throw std::runtime_error("not an IPv4 address: " + options.address);
    const std::string place = options.address + ":" + std::to_string(options.port);
    errno = 0;
    netsnmp_transport* transport = netsnmp_transport_open_server("snmp", ("udp:" + place).c_str());
    if (transport == nullptr)
        throw std::runtime_error("cannot listen at " + place + ": " + strerror(errno) +
                                 (errno == EACCES ? " (only root may use this port: try --port)" : ""));
    return transport;
}

} // namespace

void initializeSnmp()
{
    for (int setting : {NETSNMP_DS_LIB_DONT_READ_CONFIGS, NETSNMP_DS_LIB_DONT_PERSIST_STATE,
                        NETSNMP_DS_LIB_DISABLE_PERSISTENT_LOAD, NETSNMP_DS_LIB_DISABLE_PERSISTENT_SAVE})
        netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, setting, 1);
    // net-snmp looks for certificates, and makes folders for them, even so: there it cannot.
    set_configuration_directory(kNowhere);
    set_persistent_directory(kNowhere);
    setenv("MIBS", "", 1);
    setenv("MIBDIRS", kNowhere, 1);
    netsnmp_register_loghandler(NETSNMP_LOGHANDLER_NONE, LOG_DEBUG); // packets that cannot be read
    init_snmp(kProgram);
}

Agent::Agent(const AgentOptions& options, ObjectTable table)
    : options_(options), table_(std::move(table)), transport_(listenAt(options))
{
}

Agent::~Agent()
{
    transport_->f_close(transport_);
    netsnmp_transport_free(transport_);
}

bool Agent::isForUs(const netsnmp_pdu& request) const
{
    const char* wrong = nullptr;
    if (request.version != SNMP_VERSION_1)
        wrong = "not SNMP version 1";
    else if (options_.community != std::string(request.community, request.community + request.community_len))
        wrong = "wrong community";
    else if (request.variables == nullptr)
        wrong = "nothing asked";
    if (wrong != nullptr && options_.verbose)
        std::cerr << "dropped a request: " << wrong << std::endl;
    return wrong == nullptr;
}

size_t Agent::answer(netsnmp_pdu& pdu) const
{
    size_t place = 0;
    const char* kind = pdu.command == SNMP_MSG_GET ? "GET" : pdu.command == SNMP_MSG_GETNEXT ? "GETNEXT" : "";
    pdu.errstat = pdu.errindex = 0;
    long index = 0;
    for (netsnmp_variable_list* variable = pdu.variables; variable != nullptr;
         variable = variable->next_variable) {
        ++index;
        const ObjectName name(variable->name, variable->name + variable->name_length);
        const auto found = *kind == '\0'                 ? table_.end()
                           : pdu.command == SNMP_MSG_GET ? table_.find(name)
                                                         : table_.upper_bound(name);
        if (options_.verbose)
            std::cerr << kind << ' ' << dotted(name) << " -> "
                      << (found == table_.end() ? "nothing" : dotted(found->first)) << std::endl;
        place = static_cast<size_t>(std::distance(table_.begin(), found));
        if (found != table_.end()) {
            snmp_set_var_objid(variable, found->first.data(), found->first.size());
            snmp_set_var_typed_value(variable, found->second.type, found->second.bytes.data(),
                                     found->second.bytes.size());
        } else if (pdu.errstat == 0) {
            pdu.errstat = SNMP_ERR_NOSUCHNAME;
            pdu.errindex = index;
        }
    }
    pdu.command = SNMP_MSG_RESPONSE;
    return place;
}

void Agent::takeRequest()
{
    Bytes bytes(SNMP_MAX_MSG_SIZE);
    void* peer = nullptr;
    int peerLength = 0;
    const int size =
        transport_->f_recv(transport_, bytes.data(), static_cast<int>(bytes.size()), &peer, &peerLength);
    Packet packet{{}, {peer, free}, peerLength, {}};
    if (size <= 0)
        return;
    bytes.resize(static_cast<size_t>(size));
    PduHolder pdu = decode(bytes);
    if (pdu == nullptr || !isForUs(*pdu))
        return;
    packet.delivery.says = pdu.get();
    if (answer(*pdu) >= options_.faultAfter && options_.fault)
        options_.fault(packet.delivery);
    packet.bytes = encode(*pdu);
    if (packet.delivery.damage && !packet.bytes.empty())
        packet.delivery.damage(packet.bytes);
    packet.delivery.says = nullptr;
    const auto due = Clock::now() + std::chrono::milliseconds(options_.delay) + packet.delivery.delay;
    waiting_.emplace(due, std::move(packet));
}

void Agent::send(const Packet& packet)
{
    const Clock::time_point end = Clock::now() + packet.delivery.flooding;
    const auto size = packet.bytes.size();
    do {
        for (int i = 0; i < packet.delivery.copies; ++i) {
            void* peer = packet.peer.get();
            int peerLength = packet.peerLength;
            if (packet.delivery.socket >= 0)
                sendto(packet.delivery.socket, packet.bytes.data(), size, 0,
                       &static_cast<const netsnmp_indexed_addr_pair*>(peer)->remote_addr.sa,
                       sizeof(sockaddr_in));
            else
                transport_->f_send(transport_, packet.bytes.data(), static_cast<int>(size), &peer,
                                   &peerLength);
        }
    } while (Clock::now() < end);
}

/// Gives the time until there is more to send.
timespec Agent::sendWhatIsDue()
{
    using namespace std::chrono;
    while (!waiting_.empty() && waiting_.begin()->first <= Clock::now())
        send(waiting_.extract(waiting_.begin()).mapped());
    const auto left = waiting_.empty() ? Clock::duration(hours(1)) : waiting_.begin()->first - Clock::now();
    const auto wait = std::max<nanoseconds>(left, nanoseconds(0));
    return {wait / seconds(1), (wait % seconds(1)).count()};
}

void Agent::serveUntil(int descriptor)
{
    pollfd ready[] = {{descriptor, POLLIN, 0}, {transport_->sock, POLLIN, 0}};
    while (ready[0].revents == 0) {
        const timespec wait = sendWhatIsDue();
        if (ppoll(ready, std::size(ready), &wait, nullptr) > 0 && ready[1].revents != 0)
            takeRequest();
    }
}
