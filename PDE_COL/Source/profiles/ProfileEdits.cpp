#include "profiles/ProfileEdits.h"

#include "profiles/ProfileName.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int32_t kByHandIndexBase = 500;
constexpr int32_t kByHandClass = 2;
constexpr int32_t kByHandColumn7 = 3;

/// The codes of a profile that is not listed and of the same profile listed.
constexpr int32_t kPairs[][2] = {
    {kGoneHidden, kGoneListed}, {kFoundHidden, kFoundListed}, {kByHandHidden, kByHandListed}};

} // namespace

int usedSlots(const ProfileList& list)
{
    return std::clamp(list.iNum, 0, kProfileSlots);
}

ProfileRecord* freeSlot(ProfileList& list)
{
    auto slot = std::find_if(std::begin(list.records), std::end(list.records),
                             [](const ProfileRecord& record) { return record.InMenu == kFreeSlot; });
    return slot == std::end(list.records) ? nullptr : slot;
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
    return std::any_of(std::begin(kPairs), std::end(kPairs),
                       [&](const auto& pair) { return pair[1] == record.InMenu; });
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

long rowWithFile(const ProfileList& list, std::string_view fileName, int32_t location, long except)
{
    for (int row = 0; row < usedSlots(list); ++row) {
        const ProfileRecord& record = list.records[row];
        if (row != except && record.Location == location && nameText(record.FileName) == fileName)
            return row;
    }
    return -1;
}

ProfileRecord recordByHand(int32_t location)
{
    return {0, kByHandListed, kByHandClass, {}, {}, location, kByHandColumn7};
}

int32_t indexByHand(const ProfileList& list, const ProfileRecord& slot)
{
    return static_cast<int32_t>(&slot - list.records) + kByHandIndexBase;
}

ProfileRecord* addByHand(ProfileList& list)
{
    ProfileRecord* slot = freeSlot(list);
    if (slot == nullptr)
        return nullptr;
    *slot = recordByHand(slot->Location);
    slot->IndexOnDevice = indexByHand(list, *slot);
    ++list.iNum;
    return slot;
}

void removeRow(ProfileList& list, long row)
{
    ProfileRecord* used = list.records;
    ProfileRecord* last = used + std::min(list.iNum, kProfileSlots) - 1;
    std::copy(used + row + 1, last + 1, used + row);
    // Only its state says that the slot is free; the rest stays until the slot is used again.
    last->InMenu = kFreeSlot;
    --list.iNum;
}

void appendCopy(ProfileList& list, const ProfileRecord& record)
{
    if (list.iNum < kProfileSlots)
        list.records[list.iNum++] = record;
}

void setNameField(char (&field)[kProfileNameSize], std::string_view text)
{
    memset(field, 0, sizeof field);
    text.copy(field, sizeof field);
}
