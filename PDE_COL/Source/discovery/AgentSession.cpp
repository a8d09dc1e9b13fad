#include "discovery/AgentSession.h"

#include "profiles/BuildKind.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <sched.h>
#include <sys/socket.h>
#include <utility>

using namespace std::chrono;

namespace {

// A folder that cannot exist, so that nothing is found or made in it.
constexpr char kNowhere[] = "/dev/null/none";

// net-snmp hands its hooks no data of ours: what belongs to the one open session stands here.
void* openSession = nullptr;
steady_clock::time_point timeIsUp;
long usualTimeout = 0; // microseconds, of one try
int usualRetries = 0;

bool sameAddress(const netsnmp_sockaddr_storage& a, const netsnmp_sockaddr_storage& b)
{
    if (a.sa.sa_family != b.sa.sa_family)
        return false;
    if (a.sa.sa_family == AF_INET)
        return a.sin.sin_port == b.sin.sin_port && a.sin.sin_addr.s_addr == b.sin.sin_addr.s_addr;
    return a.sa.sa_family == AF_INET6 && a.sin6.sin6_port == b.sin6.sin6_port &&
           std::memcmp(&a.sin6.sin6_addr, &b.sin6.sin6_addr, sizeof a.sin6.sin6_addr) == 0;
}

using SendFunction = decltype(netsnmp_transport::f_send);
SendFunction sendPacket = nullptr;

// How long a sent request is waited for awake. A printer nearby answers before a process has gone to sleep
// and been woken again, and a full table is 3500 requests.
constexpr auto kAwake = microseconds(100);

int sendAndStayAwake(netsnmp_transport* transport, const void* packet, int size, void** opaque, int* length)
{
    int sent = sendPacket(transport, packet, size, opaque, length);
    auto end = steady_clock::now() + kAwake;
    char any;
    while (sent >= 0 && recv(transport->sock, &any, sizeof any, MSG_PEEK | MSG_DONTWAIT) < 0 &&
           steady_clock::now() < end)
        sched_yield();
    return sent;
}

// Runs for every packet, before it is parsed.
int comesFromAgent(netsnmp_session*, netsnmp_transport* transport, void* from, int fromLength)
{
    // Packets that are not taken must not keep a request from timing out.
    snmp_sess_timeout(openSession);
    constexpr int kPairSize = sizeof(netsnmp_indexed_addr_pair);
    if (from == nullptr || fromLength != kPairSize || transport->data_length != kPairSize)
        return 0;
    return sameAddress(static_cast<netsnmp_indexed_addr_pair*>(from)->remote_addr,
                       static_cast<netsnmp_indexed_addr_pair*>(transport->data)->remote_addr);
}

// Anything but a response would end the exchange too, and leave its request behind.
int isResponse(netsnmp_session* session, netsnmp_pdu* pdu, int parseError)
{
    return parseError == SNMPERR_SUCCESS && pdu->command == SNMP_MSG_RESPONSE &&
           pdu->version == session->version && pdu->community_len == session->community_len &&
           std::memcmp(pdu->community, session->community, session->community_len) == 0;
}

} // namespace

void restrainNetSnmp()
{
    setenv("MIBS", "", 1);
    setenv("MIBDIRS", "", 1);
    unsetenv("MIBFILES");
    for (int off : {NETSNMP_DS_LIB_DISABLE_PERSISTENT_LOAD, NETSNMP_DS_LIB_DISABLE_PERSISTENT_SAVE,
                    NETSNMP_DS_LIB_DONT_LOAD_HOST_FILES})
        netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, off, 1);
    // The indexes of certificates are made below this folder whatever the settings say.
    set_persistent_directory(kNowhere);
    if (mayConfigureWalk())
        return;
    unsetenv("SNMPCONFPATH");
    for (int off : {NETSNMP_DS_LIB_DONT_READ_CONFIGS, NETSNMP_DS_LIB_DONT_PERSIST_STATE})
        netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, off, 1);
    set_configuration_directory(kNowhere);
}

AgentSession::AgentSession(netsnmp_session& wanted, steady_clock::time_point end)
    : session_(snmp_open_ex(&wanted, comesFromAgent, nullptr, isResponse, nullptr, nullptr, nullptr))
{
    timeIsUp = end;
    if (session_ == nullptr)
        return;
    openSession = snmp_sess_pointer(session_);
    netsnmp_transport* transport = snmp_sess_transport(openSession);
    sendPacket = std::exchange(transport->f_send, sendAndStayAwake);
    usualTimeout = session_->timeout;
    usualRetries = session_->retries;
}

AgentSession::~AgentSession()
{
    close();
}

void AgentSession::close()
{
    if (session_ != nullptr)
        snmp_close(session_);
    session_ = nullptr;
    openSession = nullptr;
}

int exchangeInTime(netsnmp_session* session, netsnmp_pdu* request, netsnmp_pdu** response)
{
    *response = nullptr;
    long left = duration_cast<microseconds>(timeIsUp - steady_clock::now()).count();
    if (left <= 0) {
        snmp_free_pdu(request);
        return STAT_TIMEOUT;
    }
    session->timeout = std::min(usualTimeout, left);
    session->retries = static_cast<int>(std::min<long>(usualRetries, left / session->timeout - 1));
    // net-snmp reports every packet that it cannot read: a printer must not fill the user's log. Without any
    // log it would turn to standard error after all.
    [[maybe_unused]] static netsnmp_log_handler* silent =
        netsnmp_register_loghandler(NETSNMP_LOGHANDLER_NONE, LOG_DEBUG);
    snmp_disable_stderrlog();
    int status = snmp_synch_response(session, request, response);
    snmp_enable_stderrlog();
    return status;
}
