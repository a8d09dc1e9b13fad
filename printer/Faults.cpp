#include "Faults.h"

#include <arpa/inet.h>
#include <charconv>
#include <cstring>
#include <iomanip>
#include <random>
#include <sstream>
#include <sys/socket.h>
#include <utility>

namespace {

using std::chrono::milliseconds;

/// What a fault knows beside the answer at hand.
struct Setting {
    std::string text; ///< the value, "" without one
    long number = 0;  ///< the value as a number
    std::minstd_rand random;
    long turn = 0; ///< answers so far, this one among them
};

struct Kind {
    const char* name;
    const char*
        value; ///< null when it takes none; a number in upper case, in brackets when it can be left out
    const char* help;
    void (*apply)(Answer& answer, Setting& setting);
};

long numberIn(const std::string& text)
{
    constexpr long kMost = 1000000;
    long value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < 0 || value > kMost)
        throw std::invalid_argument("it takes a number from 0 to " + std::to_string(kMost));
    return value;
}

/// The variable of an answer that carries no error any more, so that a client takes it for a value.
netsnmp_variable_list& asValue(Answer& answer)
{
    constexpr long kOne = 1;
    if (answer.says->errstat != SNMP_ERR_NOERROR)
        snmp_set_var_typed_value(answer.says->variables, ASN_INTEGER, &kOne, sizeof kOne);
    answer.says->errstat = answer.says->errindex = 0;
    return *answer.says->variables;
}

ObjectName nameIn(const Answer& answer)
{
    const netsnmp_variable_list& variable = *answer.says->variables;
    return {variable.name, variable.name + variable.name_length};
}

void setName(Answer& answer, const ObjectName& name)
{
    snmp_set_var_objid(&asValue(answer), name.data(), name.size());
}

void sendFromElsewhere(Answer& answer, Setting& setting)
{
    static const int source = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    answer.socket = source;
    if (setting.turn > 1)
        return;
    const size_t colon = setting.text.find(':');
    sockaddr_in address{};
    address.sin_family = AF_INET;
    if (colon != std::string::npos)
        address.sin_port = htons(static_cast<uint16_t>(numberIn(setting.text.substr(colon + 1))));
    if (inet_pton(AF_INET, setting.text.substr(0, colon).c_str(), &address.sin_addr) != 1 ||
        bind(source, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        throw std::invalid_argument("cannot send from " + setting.text);
}

void makeNoise(Answer& answer, Setting& setting)
{
    answer.damage = [&random = setting.random](std::vector<u_char>& packet) {
        // Mostly a few bytes, so that some of the damage lies deep in the packet.
        for (uint32_t count = random() % 4 == 0 ? random() % 64 : random() % 4; count-- > 0;)
            packet[random() % packet.size()] = static_cast<u_char>(random());
    };
}

void addVariables(Answer& answer, Setting& setting)
{
    const netsnmp_variable_list& first = *answer.says->variables;
    ObjectName name = nameIn(answer);
    for (long count = answer.says->errstat == SNMP_ERR_NOERROR ? setting.number : 0; count > 1; --count) {
        ++name.back();
        snmp_varlist_add_variable(&answer.says->variables, name.data(), name.size(), first.type,
                                  first.val.string, first.val_len);
    }
}

void goOnForEver(Answer& answer, Setting&)
{
    // Past the end the answer is an error, which carries the name that was asked for.
    if (answer.says->errstat == SNMP_ERR_NOERROR)
        return;
    ObjectName name = nameIn(answer);
    if (name.size() <= profileTableName().size())
        name.insert(name.end(), {1, 1, 0});
    ++name.back();
    setName(answer, name);
}

void changeCommunity(Answer& answer, Setting& setting)
{
    netsnmp_pdu& pdu = *answer.says;
    free(pdu.community);
    pdu.community = reinterpret_cast<u_char*>(strdup(setting.text.c_str()));
    pdu.community_len = setting.text.size();
}

/// What is said is wrong for one name in forty, in the same way each time that the name comes up; whether and
/// when it arrives is another matter each time.
void mixFaults(Answer& answer, Setting& setting)
{
    static const std::vector<Fault> faults = [] {
        std::vector<Fault> made;
        for (const char* text :
             {"error:2", "error:5", "empty", "name:1.1.1", "name:", "many:3", "endless", "type:130"})
            made.push_back(parseFault(text));
        return made;
    }();
    uint64_t fate = static_cast<uint64_t>(setting.number);
    for (oid part : nameIn(answer))
        fate = (fate ^ part) * 0x9E3779B97F4A7C15;
    fate = (fate >> 32) % (40 * faults.size());
    if (fate < faults.size())
        faults[fate](answer);
    const uint32_t luck = setting.random() % 40;
    answer.copies = luck == 0 ? 0 : luck < 4 ? 2 : 1;
    answer.delay = milliseconds(luck < 10 ? luck % 5 : 0);
}

void flood(Answer& answer, Setting& setting)
{
    // Longer to read than to send, so that the next one is always there.
    Setting many{.number = 2000};
    addVariables(answer, many);
    ++answer.says->reqid;
    answer.flooding = milliseconds(setting.number);
}

const Kind kKinds[] = {
    {"silent", "[COUNT]", "no answer, or none to one request in COUNT",
     [](Answer& a, Setting& s) { a.copies = s.turn % std::max(s.number, 1L) == 0 ? 0 : 1; }},
    {"twice", nullptr, "each answer is sent twice", [](Answer& a, Setting&) { a.copies = 2; }},
    {"from", "address[:port]", "answers come from another address or port", sendFromElsewhere},
    {"flood", "MILLISECONDS", "nothing but large answers to another request, for so long", flood},
    {"truncate", "BYTES", "packets are cut to that many bytes",
     [](Answer& a, Setting& s) {
         a.damage = [&s](std::vector<u_char>& packet) {
             packet.resize(std::min(packet.size(), static_cast<size_t>(s.number)));
         };
     }},
    {"noise", "SEED", "some bytes of each packet are random, the same ones for the same seed", makeNoise},
    {"mixed", "SEED", "some answers are wrong, always the same ones; others are lost, late or doubled",
     mixFaults},
    {"error", "STATUS", "each answer carries the error status",
     [](Answer& a, Setting& s) {
         a.says->errstat = s.number;
         a.says->errindex = 1;
     }},
    {"empty", nullptr, "answers without a variable",
     [](Answer& a, Setting&) {
         asValue(a);
         snmp_free_varbind(std::exchange(a.says->variables, nullptr));
     }},
    {"type", "NUMBER", "each value is an empty one of this type: 128 to 130 are exceptions of version 2",
     [](Answer& a, Setting& s) {
         snmp_set_var_typed_value(&asValue(a), static_cast<u_char>(s.number), nullptr, 0);
     }},
    {"name", "name", "each answer has this name: below the table, or whole with a leading dot",
     [](Answer& a, Setting& s) { setName(a, parseObjectName(s.text)); }},
    {"endless", nullptr, "the table goes on past its end, row by row", goOnForEver},
    {"many", "COUNT", "that many variables in an answer", addVariables},
    {"request-id", nullptr, "answers carry another request's number",
     [](Answer& a, Setting&) { ++a.says->reqid; }},
    {"community", "name", "answers carry another community", changeCommunity},
    {"version2", nullptr, "answers are of SNMP version 2c",
     [](Answer& a, Setting&) { a.says->version = SNMP_VERSION_2c; }},
};

} // namespace

Fault parseFault(const std::string& text)
{
    const size_t colon = text.find(':');
    const std::string name = text.substr(0, colon);
    const Kind* kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                    [&](const Kind& each) { return name == each.name; });
    if (kind == std::end(kKinds))
        throw std::invalid_argument("there is no fault \"" + name + "\"; --help lists them");
    Setting setting;
    if (colon != std::string::npos)
        setting.text = text.substr(colon + 1);
    const bool mayHave = kind->value != nullptr, mustHave = mayHave && *kind->value != '[';
    if (colon == std::string::npos ? mustHave : !mayHave)
        throw std::invalid_argument("fault " + name + ": it takes " + (mustHave ? "a" : "no") + " value");
    try {
        if (colon != std::string::npos && isupper(kind->value[mustHave ? 0 : 1]))
            setting.number = numberIn(setting.text);
    } catch (const std::invalid_argument& reason) {
        throw std::invalid_argument("fault " + name + ": " + reason.what());
    }
    setting.random.seed(static_cast<uint32_t>(setting.number));
    return [kind, setting](Answer& answer) mutable {
        ++setting.turn;
        kind->apply(answer, setting);
    };
}

std::string faultHelp()
{
    std::ostringstream text;
    for (const Kind& kind : kKinds) {
        std::string left = kind.name;
        if (kind.value != nullptr)
            left += *kind.value == '[' ? "[:" + std::string(kind.value + 1) : ":" + std::string(kind.value);
        text << "  " << std::left << std::setw(27) << left << kind.help << "\n";
    }
    return text.str();
}
