#include "discovery/SpoolTable.h"

#include <algorithm>
#include <cstring>

ProfileList PlistForSpool;

namespace {

// An instance is named base "." column "." k "." row, with a base of 15 parts. k is not looked at.
constexpr size_t kColumnPart = 15;
constexpr size_t kRowPart = 17;

enum Column : oid {
    kIndexColumn = 1,
    kLocationColumn = 2,
    kProfileNameColumn = 3,
    kFileNameColumn = 4,
    kClassColumn = 5,
    kSeventhColumn = 7,
};

int32_t integerOf(const netsnmp_variable_list& variable)
{
    return static_cast<int32_t>(*variable.val.integer);
}

// The field was zeroed with the spool, so a name shorter than it is terminated and a full one is not.
void storeText(char (&field)[kProfileNameSize], const netsnmp_variable_list& variable)
{
    char text[kProfileNameSize + 1] = {};
    std::memcpy(text, variable.val.string, std::min<size_t>(variable.val_len, kProfileNameSize));
    std::memcpy(field, text, std::strlen(text));
}

void storeInteger(ProfileRecord& record, oid column, int32_t value)
{
    switch (column) {
    case kIndexColumn:
        record.IndexOnDevice = value;
        ++PlistForSpool.iNum;
        break;
    case kLocationColumn:
        record.Location = value;
        break;
    case kClassColumn:
        record.ProfileClass = value;
        break;
    case kSeventhColumn:
        record.TableColumn7 = value;
        break;
    default:
        break;
    }
}

} // namespace

void vSpoolPlist(const oid* name, int, const netsnmp_variable_list* variable, int clear)
{
    if (clear == 1) {
        PlistForSpool = {};
        return;
    }
    if (variable->name_length <= kRowPart)
        return;
    // Parts of a name are unsigned, so row 0 becomes a very large index here.
    size_t index = name[kRowPart] - 1;
    if (index >= kProfileSlots)
        return;
    ProfileRecord& record = PlistForSpool.records[index];
    oid column = name[kColumnPart];
    if (variable->type == ASN_INTEGER)
        storeInteger(record, column, integerOf(*variable));
    else if (variable->type == ASN_OCTET_STR && column == kProfileNameColumn)
        storeText(record.ProfileName, *variable);
    else if (variable->type == ASN_OCTET_STR && column == kFileNameColumn)
        storeText(record.FileName, *variable);
}
