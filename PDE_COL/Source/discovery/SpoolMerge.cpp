#include "discovery/SpoolMerge.h"

#include "discovery/SpoolTable.h"
#include "profiles/ProfileEdits.h"
#include "profiles/ProfileListOperations.h"
#include "profiles/ProfileName.h"

#include <algorithm>
#include <cstring>

namespace {

// ProfileRecord::ProfileClass as the printer reports it.
enum PrinterProfileClass : int32_t { kRgbClass = 1, kSecondRgbClass = 2, kCmykClass = 3 };

// A name that fills its field has no terminator there.
bool hasAcceptableName(const ProfileRecord& record)
{
    char name[kProfileNameSize + 1] = {};
    std::memcpy(name, record.FileName, kProfileNameSize);
    return bJudgement8point3Format(name);
}

int32_t codeBeforeMerge(int32_t code, bool failed)
{
    switch (code) {
    case kGoneHidden:
    case kFoundHidden:
        return failed ? kFreeSlot : kGoneHidden;
    case kFoundListed:
        return failed ? kByHandListed : kGoneListed;
    default:
        return code;
    }
}

int32_t codeWhenFound(int32_t code)
{
    switch (code) {
    case kGoneHidden:
    case kByHandHidden:
        return kFoundHidden;
    case kGoneListed:
    case kByHandListed:
        return kFoundListed;
    default:
        // A failed walk has freed the slot: it stays free, though its name still matches.
        return code;
    }
}

void removeBadNames(ProfileLists& lists)
{
    bool changed = false;
    for (int slot = 0; slot < kProfileSlots; ++slot) {
        for (ProfileList& list : lists) {
            ProfileRecord& record = list.records[slot];
            if (record.FileName[0] == '\0' || hasAcceptableName(record))
                continue;
            record = {};
            --list.iNum;
            changed = true;
        }
    }
    // Only the RGB list closes its gaps before the merge; in the others an entry beyond iNum is not found
    // and joins a second time.
    if (changed)
        VelPListPaddingProfile_Dict(&lists[kRgbList]);
}

void mergeSpool(ProfileLists& lists)
{
    // A table that repeats rows counts more of them than the spool holds.
    for (int row = 0; row < std::min(PlistForSpool.iNum, kProfileSlots); ++row) {
        const ProfileRecord& record = PlistForSpool.records[row];
        if ((record.Location != kOnDisk && record.Location != kOnCard) || !hasAcceptableName(record))
            continue;
        if (record.ProfileClass == kRgbClass || record.ProfileClass == kSecondRgbClass) {
            vRestructDetail(row, &lists[kRgbList]);
        } else if (record.ProfileClass == kCmykClass) {
            vRestructDetail(row, &lists[kSimList]);
            vRestructDetail(row, &lists[kDstList]);
        }
    }
}

} // namespace

void vDeleteMIBprofilesTemporary(int failed, ProfileList* list)
{
    for (ProfileRecord& record : list->records)
        record.InMenu = codeBeforeMerge(record.InMenu, failed != 0);
}

void vRestructDetail(int row, ProfileList* list)
{
    const ProfileRecord& found = PlistForSpool.records[row];
    ProfileRecord* end = list->records + usedSlots(*list);
    ProfileRecord* same = std::find_if(list->records, end, [&](const ProfileRecord& record) {
        return std::memcmp(record.FileName, found.FileName, kProfileNameSize) == 0 &&
               record.Location == found.Location;
    });
    if (same != end) {
        same->InMenu = codeWhenFound(same->InMenu);
        return;
    }
    if (ProfileRecord* added = addRecord(*list, found))
        added->InMenu = kFoundHidden;
}

int32_t vRestructPlistSpool2Current(int exitValue)
{
    // Without a file, or with one that cannot be read, the lists are empty.
    return updateLists([exitValue](ProfileLists& lists, int32_t) {
        for (ProfileList& list : lists)
            vDeleteMIBprofilesTemporary(exitValue, &list);
        removeBadNames(lists);
        mergeSpool(lists);
        for (ProfileList& list : lists) {
            VelPListCleanProfile_Dict(&list);
            VelPListPaddingProfile_Dict(&list);
            VelPListSalvage_Dict(&list);
        }
        return true;
    });
}
