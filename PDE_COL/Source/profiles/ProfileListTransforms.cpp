#include "profiles/ProfileListOperations.h"

#include <algorithm>
#include <cstring>

namespace {

/// As "kept by cleaning": the printer's row is not known any more.
constexpr int32_t kKeptIndexOnDevice = 501;

bool hasFileName(const ProfileRecord& record)
{
    return record.FileName[0] != '\0';
}

} // namespace

void VelPListCleanProfile_Dict(ProfileList* list)
{
    for (ProfileRecord& record : list->records) {
        if (record.IndexOnDevice != 0 || !hasFileName(record))
            continue;
        if (record.InMenu == kGoneListed || record.InMenu == kFoundListed) {
            record.IndexOnDevice = kKeptIndexOnDevice;
            record.InMenu = kGoneListed;
        } else {
            record = {};
            --list->iNum;
        }
    }
}

void VelPListSalvage_Dict(ProfileList* list)
{
    for (ProfileRecord& record : list->records) {
        if (record.IndexOnDevice != 0 && hasFileName(record) && record.InMenu == kGoneListed)
            record.InMenu = kByHandListed;
    }
}

void VelPListPaddingProfile_Dict(ProfileList* list)
{
    ProfileRecord* end = list->records + kProfileSlots;
    ProfileRecord* used = list->records;
    for (ProfileRecord* hole = list->records; hole != end; ++hole) {
        if (hole->InMenu != kFreeSlot)
            continue;
        used = std::find_if(std::max(used, hole + 1), end,
                            [](const ProfileRecord& record) { return record.InMenu != kFreeSlot; });
        if (used == end)
            return;
        *hole = *used;
        // The freed slot keeps its ProfileClass: that is how the file has always looked.
        int32_t profileClass = used->ProfileClass;
        *used = {};
        used->ProfileClass = profileClass;
    }
}
