#include "Agent.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include <net-snmp/agent/agent_callbacks.h>
#include <net-snmp/agent/net-snmp-agent-includes.h>

namespace {

constexpr char kProgram[] = "r4270-printer";
constexpr char kNowhere[] = "/dev/null";

ObjectTable served;
bool verbose;

const char* modeName(int mode)
{
    return mode == MODE_GET ? "GET" : mode == MODE_GETNEXT ? "GETNEXT" : "SET";
}

/// The object that answers a request; the end of the table when there is none.
ObjectTable::const_iterator answerTo(const netsnmp_request_info& request, int mode)
{
    const netsnmp_variable_list& asked = *request.requestvb;
    const ObjectName name(asked.name, asked.name + asked.name_length);
    if (mode == MODE_GET)
        return served.find(name);
    return request.inclusive != 0 ? served.lower_bound(name) : served.upper_bound(name);
}

int serveObjects(netsnmp_mib_handler*, netsnmp_handler_registration*, netsnmp_agent_request_info* info,
                 netsnmp_request_info* requests)
{
    for (netsnmp_request_info* request = requests; request != nullptr; request = request->next) {
        if (request->processed != 0)
            continue;
        netsnmp_variable_list* variable = request->requestvb;
        const auto found = answerTo(*request, info->mode);
        if (verbose)
            std::cerr << modeName(info->mode) << ' '
                      << dotted({variable->name, variable->name + variable->name_length}) << " -> "
                      << (found == served.end() ? "nothing" : dotted(found->first)) << std::endl;
        if (found != served.end()) {
            snmp_set_var_objid(variable, found->first.data(), found->first.size());
            snmp_set_var_typed_value(variable, found->second.type, found->second.bytes.data(),
                                     found->second.bytes.size());
        } else if (info->mode == MODE_GET) {
            netsnmp_set_request_error(info, request, SNMP_NOSUCHINSTANCE);
        }
        // A GETNEXT that is left without a value goes on to the end of the view.
    }
    return SNMP_ERR_NOERROR;
}

/// Runs after net-snmp's own check of the community, which lets version 2c pass as well.
int refuseOtherVersions(int, int, void* parameters, void*)
{
    auto* check = static_cast<view_parameters*>(parameters);
    if (check->pdu->version != SNMP_VERSION_1)
        check->errorcode = VACM_NOSECNAME;
    if (verbose && check->errorcode != VACM_SUCCESS)
        std::cerr << "dropped a request: "
                  << (check->pdu->version != SNMP_VERSION_1 ? "not SNMP version 1" : "wrong community")
                  << std::endl;
    return SNMPERR_SUCCESS;
}

void allowCommunity(const std::string& community)
{
    std::string line = "rocommunity \"" + community + "\" default " + dotted(enterpriseName());
    if (netsnmp_config(line.data()) != SNMPERR_SUCCESS)
        throw std::runtime_error("not a community name: " + community);
    snmp_register_callback(SNMP_CALLBACK_APPLICATION, SNMPD_CALLBACK_ACM_CHECK_INITIAL, refuseOtherVersions,
                           nullptr);
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

void initializeSnmp(const std::string& community)
{
    for (int setting : {NETSNMP_DS_LIB_DONT_READ_CONFIGS, NETSNMP_DS_LIB_DONT_PERSIST_STATE,
                        NETSNMP_DS_LIB_DISABLE_PERSISTENT_LOAD, NETSNMP_DS_LIB_DISABLE_PERSISTENT_SAVE})
        netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, setting, 1);
    // net-snmp looks for certificates, and makes folders for them, even so: there it cannot.
    set_configuration_directory(kNowhere);
    set_persistent_directory(kNowhere);
    setenv("MIBS", "", 1);
    setenv("MIBDIRS", kNowhere, 1);
    netsnmp_register_loghandler(NETSNMP_LOGHANDLER_STDERR, LOG_WARNING);
    init_agent(kProgram);
    // Before init_snmp, which would warn that nobody has access.
    allowCommunity(community);
    init_snmp(kProgram);
}

Agent::Agent(const AgentOptions& options, ObjectTable table)
{
    served = std::move(table);
    verbose = options.verbose;
    netsnmp_transport* transport = listenAt(options);
    if (options.fault)
        installFault(*transport, *options.fault, options.faultAfter);
    netsnmp_handler_registration* objects = netsnmp_create_handler_registration(
        "objects", serveObjects, enterpriseName().data(), enterpriseName().size(), HANDLER_CAN_RONLY);
    if (objects == nullptr || netsnmp_register_handler(objects) != MIB_REGISTERED_OK ||
        netsnmp_register_agent_nsap(transport) == 0)
        throw std::runtime_error("net-snmp's agent does not start");
}

Agent::~Agent()
{
    snmp_shutdown(kProgram);
    shutdown_agent();
}

void Agent::replaceTable(ObjectTable table)
{
    served = std::move(table);
}

void Agent::serve()
{
    agent_check_and_process(1);
}
