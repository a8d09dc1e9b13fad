#include "discovery/SpoolMerge.h"
#include "discovery/SpoolTable.h"
#include "profiles/ProfileName.h"

#include <algorithm>
#include <cassert>
#include <vector>

#include <net-snmp/library/snmp_impl.h>

// Whatever a printer answers, from the bytes on: what the merge takes of it has a name that a profile may
// have. An input is answers, each a length byte and then what follows the request's number in the packet:
// error status, error index and variables.

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    vSpoolPlist(nullptr, 0, nullptr, 1);
    for (const uint8_t *end = data + size, *next = nullptr; data < end; data = next) {
        next = data + std::min<size_t>(1 + *data, end - data);
        std::vector<u_char> packet = {SNMP_MSG_RESPONSE, 0x81, static_cast<u_char>(next - data + 2), 2, 1, 0};
        packet.insert(packet.end(), data + 1, next);
        netsnmp_pdu* pdu = snmp_pdu_create(SNMP_MSG_RESPONSE);
        size_t length = packet.size();
        if (snmp_pdu_parse(pdu, packet.data(), &length) == 0)
            for (const netsnmp_variable_list* v = pdu->variables; v != nullptr; v = v->next_variable)
                vSpoolPlist(v->name, 0, v, 0);
        snmp_free_pdu(pdu);
    }
    static ProfileList list;
    list = {};
    for (int row = 0; row < std::min(PlistForSpool.iNum, kProfileSlots); ++row) {
        vRestructDetail(row, &list);
        const ProfileRecord& merged = PlistForSpool.records[row];
        assert(std::any_of(std::begin(list.records), std::end(list.records), [&merged](const auto& record) {
            return nameText(record.FileName) == nameText(merged.FileName) &&
                   record.Location == merged.Location;
        }));
    }
    return 0;
}
