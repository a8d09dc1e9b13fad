#include "profiles/ProfileEdits.h"

#include "profiles/ProfileListOperations.h"
#include "profiles/ProfileName.h"

#include <algorithm>

namespace {

constexpr int32_t kByHandIndexBase = 500;
constexpr int32_t kByHandClass = 2;
constexpr int32_t kByHandColumn7 = 3;

/// The states of a profile that is hidden and of the same profile listed.
constexpr int32_t kPairs[][2] = {
    {kGoneHidden, kGoneListed}, {kFoundHidden, kFoundListed}, {kByHandHidden, kByHandListed}};

bool isInPair(const ProfileRecord& record, bool listed)
{
    return std::any_of(std::begin(kPairs), std::end(kPairs),
                       [&](const auto& pair) { return pair[listed] == record.InMenu; });
}

} // namespace

int usedSlots(const ProfileList& list)
{
    return std::clamp(list.iNum, 0, kProfileSlots);
}

bool isOnPrinter(const ProfileRecord& record)
{
    return record.InMenu == kFoundHidden || record.InMenu == kFoundListed;
}

bool isCustom(const ProfileRecord& record)
{
    return record.InMenu >= kGoneHidden && record.InMenu <= kFoundListed;
}

bool isListed(const ProfileRecord& record)
{
    return isInPair(record, true);
}

bool isHidden(const ProfileRecord& record)
{
    return isInPair(record, false);
}

void setListed(ProfileRecord& record, bool listed)
{
    for (const auto& pair : kPairs) {
        if (record.InMenu == pair[!listed])
            record.InMenu = pair[listed];
    }
}

ProfileRecord* recordAtRow(ProfileList& list, long row)
{
    return row >= 0 && row < usedSlots(list) ? &list.records[row] : nullptr;
}

ProfileRecord* findProfile(ProfileList& list, std::string_view fileName, int32_t location)
{
    auto found = std::find_if(std::begin(list.records), std::end(list.records), [&](const auto& record) {
        return record.InMenu != kFreeSlot && nameText(record.FileName) == fileName &&
               (location == 0 || record.Location == location);
    });
    return found == std::end(list.records) ? nullptr : found;
}

bool hasRowWithFile(const ProfileList& list, std::string_view fileName, int32_t location, long except)
{
    return std::any_of(list.records, list.records + usedSlots(list), [&](const ProfileRecord& record) {
        return &record - list.records != except && record.Location == location &&
               nameText(record.FileName) == fileName;
    });
}

ProfileRecord recordByHand(int32_t location)
{
    return {0, kByHandListed, kByHandClass, {}, {}, location, kByHandColumn7};
}

ProfileRecord* addRecord(ProfileList& list, const ProfileRecord& record)
{
    auto slot = std::find_if(std::begin(list.records), std::end(list.records),
                             [](const ProfileRecord& other) { return other.InMenu == kFreeSlot; });
    if (slot == std::end(list.records))
        return nullptr;
    *slot = record;
    ++list.iNum;
    return slot;
}

ProfileRecord* addByHand(ProfileList& list, const ProfileRecord& record)
{
    ProfileRecord* slot = addRecord(list, record);
    if (slot != nullptr && slot->IndexOnDevice == 0)
        slot->IndexOnDevice = static_cast<int32_t>(slot - list.records) + kByHandIndexBase;
    return slot;
}

void removeRecord(ProfileList& list, ProfileRecord& record)
{
    record = {};
    --list.iNum;
    VelPListPaddingProfile_Dict(&list);
}

void removeRow(ProfileList& list, long row)
{
    ProfileRecord* end = list.records + usedSlots(list);
    std::copy(list.records + row + 1, end, list.records + row);
    end[-1].InMenu = kFreeSlot;
    --list.iNum;
}

void appendCopy(ProfileList& list, const ProfileRecord& record)
{
    if (list.iNum < kProfileSlots)
        list.records[list.iNum++] = record;
}
