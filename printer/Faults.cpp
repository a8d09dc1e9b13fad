#include "Faults.h"

#include <arpa/inet.h>
#include <charconv>
#include <chrono>
#include <cstring>
#include <iomanip>
#include <limits>
#include <random>
#include <sstream>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include <net-snmp/library/snmpUDPBaseDomain.h>
#include <net-snmp/library/snmp_impl.h>
#include <net-snmp/library/snmp_transport.h>

namespace {

using PduHolder = std::unique_ptr<netsnmp_pdu, decltype(&snmp_free_pdu)>;

long number(const std::string& text, long least, long most)
{
    long value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < least || value > most)
        throw std::invalid_argument("it takes a number from " + std::to_string(least) + " to " +
                                    std::to_string(most));
    return value;
}

void setValue(netsnmp_variable_list& variable, const ObjectValue& value)
{
    snmp_set_var_typed_value(&variable, value.type, value.bytes.data(), value.bytes.size());
}

/// An answer without the error it may carry, so that a client takes its variables for values.
void clearError(netsnmp_pdu& pdu)
{
    if (pdu.errstat != SNMP_ERR_NOERROR && pdu.variables != nullptr)
        setValue(*pdu.variables, parseObjectValue('i', "1"));
    pdu.errstat = SNMP_ERR_NOERROR;
    pdu.errindex = 0;
}

ObjectName nameOf(const netsnmp_variable_list& variable)
{
    return {variable.name, variable.name + variable.name_length};
}

void setName(netsnmp_variable_list& variable, const ObjectName& name)
{
    snmp_set_var_objid(&variable, name.data(), name.size());
}

Fault silent(const std::string&)
{
    return {nullptr, [](Delivery& delivery) { delivery.copies = 0; }};
}

Fault late(const std::string& value)
{
    const int delay = static_cast<int>(number(value, 0, 600000));
    return {nullptr, [delay](Delivery& delivery) { delivery.delayMilliseconds = delay; }};
}

Fault twice(const std::string&)
{
    return {nullptr, [](Delivery& delivery) { delivery.copies = 2; }};
}

Fault from(const std::string& value)
{
    const size_t colon = value.find(':');
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port =
        htons(static_cast<uint16_t>(colon == value.npos ? 0 : number(value.substr(colon + 1), 0, 65535)));
    if (inet_pton(AF_INET, value.substr(0, colon).c_str(), &address.sin_addr) != 1)
        throw std::invalid_argument("it takes an IPv4 address");
    const int source = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (source < 0 || bind(source, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        throw std::invalid_argument(value + ": " + strerror(errno));
    return {nullptr, [source](Delivery& delivery) { delivery.socket = source; }};
}

Fault truncate(const std::string& value)
{
    const long length = value.empty() ? -1 : number(value, 0, 65535);
    return {nullptr, [length](Delivery& delivery) {
                const size_t size = delivery.packet.size();
                delivery.packet.resize(length < 0 ? size / 2 : std::min(size, static_cast<size_t>(length)));
            }};
}

Fault noise(const std::string& value)
{
    const auto seed = static_cast<uint32_t>(value.empty() ? 1 : number(value, 0, 0x7FFFFFFF));
    return {nullptr, [random = std::mt19937(seed)](Delivery& delivery) mutable {
                // Mostly a few bytes, so that some of the damage lies deep in the packet.
                for (uint32_t count = random() % 4 == 0 ? random() % 64 : random() % 4; count-- > 0;)
                    delivery.packet[random() % delivery.packet.size()] = static_cast<u_char>(random());
            }};
}

Fault error(const std::string& value)
{
    const long status = number(value, 0, std::numeric_limits<int32_t>::max());
    return {[status](netsnmp_pdu& pdu) {
                pdu.errstat = status;
                pdu.errindex = 1;
            },
            nullptr};
}

Fault empty(const std::string&)
{
    return {[](netsnmp_pdu& pdu) {
                clearError(pdu);
                snmp_free_varbind(pdu.variables);
                pdu.variables = nullptr;
            },
            nullptr};
}

Fault exception(const std::string& value)
{
    u_char type = 0;
    if (value == "no-such-object")
        type = SNMP_NOSUCHOBJECT;
    else if (value == "no-such-instance")
        type = SNMP_NOSUCHINSTANCE;
    else if (value == "end-of-mib-view")
        type = SNMP_ENDOFMIBVIEW;
    else
        throw std::invalid_argument("it takes no-such-object, no-such-instance or end-of-mib-view");
    return {[type](netsnmp_pdu& pdu) {
                clearError(pdu);
                setValue(*pdu.variables, {type, {}});
            },
            nullptr};
}

Fault value(const std::string& text)
{
    if (text.size() < 2 || text[1] != ':')
        throw std::invalid_argument("it takes the letter of a type, a colon and a value, as in i:5");
    return {[value = parseObjectValue(text[0], text.substr(2))](netsnmp_pdu& pdu) {
                if (pdu.errstat == SNMP_ERR_NOERROR)
                    setValue(*pdu.variables, value);
            },
            nullptr};
}

Fault name(const std::string& text)
{
    return {[name = parseObjectName(text)](netsnmp_pdu& pdu) {
                clearError(pdu);
                setName(*pdu.variables, name);
            },
            nullptr};
}

Fault decrease(const std::string&)
{
    return {[](netsnmp_pdu& pdu) {
                ObjectName name = nameOf(*pdu.variables);
                if (pdu.errstat != SNMP_ERR_NOERROR || name.back() < 3)
                    return;
                name.back() -= 2;
                setName(*pdu.variables, name);
            },
            nullptr};
}

Fault endless(const std::string&)
{
    return {[](netsnmp_pdu& pdu) {
                // Past the end the answer is an error, which carries the name that was asked for.
                if (pdu.errstat != SNMP_ERR_NOERROR) {
                    ObjectName name = nameOf(*pdu.variables);
                    if (name.size() <= profileTableName().size())
                        name.insert(name.end(), {1, 1, 0});
                    ++name.back();
                    setName(*pdu.variables, name);
                }
                clearError(pdu);
            },
            nullptr};
}

Fault many(const std::string& value)
{
    const long count = number(value, 1, 5000);
    return {[count](netsnmp_pdu& pdu) {
                if (pdu.errstat != SNMP_ERR_NOERROR)
                    return;
                const netsnmp_variable_list& first = *pdu.variables;
                ObjectName name = nameOf(first);
                for (long i = 1; i < count; ++i) {
                    ++name.back();
                    snmp_varlist_add_variable(&pdu.variables, name.data(), name.size(), first.type,
                                              first.val.string, first.val_len);
                }
            },
            nullptr};
}

Fault requestId(const std::string&)
{
    return {[](netsnmp_pdu& pdu) { ++pdu.reqid; }, nullptr};
}

Fault community(const std::string& value)
{
    return {[value](netsnmp_pdu& pdu) {
                free(pdu.community);
                pdu.community = reinterpret_cast<u_char*>(strdup(value.c_str()));
                pdu.community_len = value.size();
            },
            nullptr};
}

Fault version2(const std::string&)
{
    return {[](netsnmp_pdu& pdu) { pdu.version = SNMP_VERSION_2c; }, nullptr};
}

struct Mode {
    const char* name;
    const char* value; ///< null when it takes none; in brackets when it can be left out
    const char* help;
    Fault (*make)(const std::string&);
};

constexpr Mode kModes[] = {
    {"silent", nullptr, "no answer", silent},
    {"late", "MILLISECONDS", "each answer is held back that long", late},
    {"twice", nullptr, "each answer is sent twice", twice},
    {"from", "ADDRESS[:PORT]", "answers come from another address or port", from},
    {"truncate", "[BYTES]", "packets are cut, in half or to that many bytes", truncate},
    {"noise", "[SEED]", "some bytes of each packet are random, the same ones for the same seed", noise},
    {"error", "STATUS", "each answer carries the error status", error},
    {"empty", nullptr, "answers without a variable", empty},
    {"exception", "NAME", "the value is no-such-object, no-such-instance or end-of-mib-view", exception},
    {"value", "TYPE:VALUE", "each object has this value, in snmpset's notation", value},
    {"name", "NAME", "each answer has this name: below the table, or whole with a leading dot", name},
    {"decrease", nullptr, "from row 3 on, the row's number is two less", decrease},
    {"endless", nullptr, "the table goes on past its end, row by row", endless},
    {"many", "COUNT", "that many variables in an answer", many},
    {"request-id", nullptr, "answers carry another request's number", requestId},
    {"community", "NAME", "answers carry another community", community},
    {"version2", nullptr, "answers are of SNMP version 2c", version2},
};

Fault installed;
unsigned leftAlone;
int (*sendPacket)(netsnmp_transport*, const void*, int, void**, int*);

/// The answer in `packet`; null when net-snmp cannot read it.
PduHolder decode(const std::vector<u_char>& packet)
{
    PduHolder pdu(snmp_pdu_create(SNMP_MSG_RESPONSE), snmp_free_pdu);
    std::vector<u_char> copy = packet;
    std::vector<u_char> communityName(SNMP_MAX_MSG_SIZE);
    size_t length = copy.size();
    size_t communityLength = communityName.size();
    long version = 0;
    u_char* body = snmp_comstr_parse(copy.data(), &length, communityName.data(), &communityLength, &version);
    if (pdu == nullptr || body == nullptr || snmp_pdu_parse(pdu.get(), body, &length) != 0)
        return {nullptr, snmp_free_pdu};
    pdu->version = version;
    pdu->community = static_cast<u_char*>(malloc(communityLength + 1));
    memcpy(pdu->community, communityName.data(), communityLength);
    pdu->community_len = communityLength;
    return pdu;
}

/// The packet of an answer; empty when net-snmp cannot make it.
std::vector<u_char> encode(netsnmp_pdu& pdu)
{
    netsnmp_session session;
    snmp_sess_init(&session);
    session.version = pdu.version;
    size_t size = 2048;
    size_t used = 0;
    auto* buffer = static_cast<u_char*>(malloc(size));
    std::vector<u_char> packet;
    if (snmp_build(&buffer, &size, &used, &session, &pdu) == 0)
        packet.assign(buffer + size - used, buffer + size); // it is built from its end
    free(buffer);
    return packet;
}

int sendFaulty(netsnmp_transport* transport, const void* data, int size, void** opaque, int* opaqueLength)
{
    if (leftAlone > 0) {
        --leftAlone;
        return sendPacket(transport, data, size, opaque, opaqueLength);
    }
    const auto* bytes = static_cast<const u_char*>(data);
    Delivery delivery{{bytes, bytes + size}};
    if (installed.change) {
        PduHolder pdu = decode(delivery.packet);
        if (pdu != nullptr && pdu->variables != nullptr)
            installed.change(*pdu);
        if (pdu != nullptr)
            delivery.packet = encode(*pdu);
    }
    if (installed.deliver && !delivery.packet.empty())
        installed.deliver(delivery);
    std::this_thread::sleep_for(std::chrono::milliseconds(delivery.delayMilliseconds));
    for (int i = 0; i < delivery.copies; ++i) {
        if (delivery.socket >= 0) {
            const auto* peer = static_cast<const netsnmp_indexed_addr_pair*>(*opaque);
            sendto(delivery.socket, delivery.packet.data(), delivery.packet.size(), 0, &peer->remote_addr.sa,
                   sizeof(sockaddr_in));
        } else {
            sendPacket(transport, delivery.packet.data(), static_cast<int>(delivery.packet.size()), opaque,
                       opaqueLength);
        }
    }
    return size;
}

} // namespace

Fault parseFault(const std::string& text)
{
    const size_t colon = text.find(':');
    const std::string wanted = text.substr(0, colon);
    const std::string value = colon == text.npos ? "" : text.substr(colon + 1);
    for (const Mode& mode : kModes) {
        if (wanted != mode.name)
            continue;
        if (mode.value == nullptr && colon != text.npos)
            throw std::invalid_argument("fault " + wanted + ": it takes no value");
        if (mode.value != nullptr && *mode.value != '[' && colon == text.npos)
            throw std::invalid_argument("fault " + wanted + ": it takes a value, as " + mode.value);
        try {
            return mode.make(value);
        } catch (const std::invalid_argument& reason) {
            throw std::invalid_argument("fault " + wanted + ": " + reason.what());
        }
    }
    throw std::invalid_argument("there is no fault \"" + wanted + "\"; --help lists them");
}

std::string faultHelp()
{
    std::ostringstream text;
    for (const Mode& mode : kModes) {
        std::string left = mode.name;
        if (mode.value != nullptr)
            left += *mode.value == '[' ? "[:" + std::string(mode.value + 1) : ":" + std::string(mode.value);
        text << "  " << std::left << std::setw(27) << left << mode.help << "\n";
    }
    return text.str();
}

void installFault(netsnmp_transport& transport, Fault fault, unsigned after)
{
    installed = std::move(fault);
    leftAlone = after;
    sendPacket = transport.f_send;
    transport.f_send = sendFaulty;
}
