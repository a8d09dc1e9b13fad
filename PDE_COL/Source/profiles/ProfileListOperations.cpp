#include "profiles/ProfileListOperations.h"

#include "profiles/DriverPaths.h"
#include "profiles/HelperChannel.h"
#include "profiles/HelperProtocol.h"
#include "profiles/ProfileEdits.h"
#include "profiles/ProfileListFile.h"
#include "profiles/ProfileName.h"

#include <algorithm>
#include <memory>
#include <string>

namespace {

constexpr int32_t kSuccess = 0, kFailure = -1;

/// As "kept by cleaning": the printer's row is not known any more.
constexpr int32_t kKeptIndexOnDevice = 501;

bool hasFileName(const ProfileRecord& record)
{
    return record.FileName[0] != '\0';
}

bool isListIndex(int32_t index)
{
    return index >= 0 && index < kProfileListCount;
}

int32_t readOne(ProfileList& list, int32_t index, bool cannotBeWalked)
{
    const StoredLists* lists = isListIndex(index) ? currentLists() : nullptr;
    if (lists == nullptr || !(*lists)[index].complete)
        return kFailure;
    readList((*lists)[index], list, cannotBeWalked);
    return kSuccess;
}

bool isSameProfile(const ProfileRecord& a, const ProfileRecord& b)
{
    return nameText(a.FileName) == nameText(b.FileName) && a.Location == b.Location;
}

bool contains(const ProfileList& list, const ProfileRecord& record)
{
    return std::any_of(list.records, list.records + usedSlots(list),
                       [&](const ProfileRecord& other) { return isSameProfile(other, record); });
}

int32_t writeLists(const ProfileList& rgb, const ProfileList& sim, const ProfileList& dst)
{
    return sendListFile(listFileText(rgb, sim, dst));
}

} // namespace

int32_t VelPListReadProfile_All(ProfileList* rgb, ProfileList* sim, ProfileList* dst)
{
    const StoredLists* stored = currentLists();
    if (stored == nullptr ||
        !std::all_of(stored->begin(), stored->end(), [](const StoredList& list) { return list.complete; }))
        return kFailure;
    readList((*stored)[kRgbList], *rgb);
    readList((*stored)[kSimList], *sim);
    readList((*stored)[kDstList], *dst);
    return kSuccess;
}

int32_t VelPListReadProfile_Dict(ProfileList* list, int32_t index)
{
    return readOne(*list, index, false);
}

int32_t VelPListReadProfile_Dict_Pap(ProfileList* list, int32_t index)
{
    return readOne(*list, index, true);
}

int32_t VelPListWriteProfile_All(const ProfileList* rgb, const ProfileList* sim, const ProfileList* dst)
{
    return VelPListIsAdminProfile() != 0 ? writeLists(*rgb, *sim, *dst) : kFailure;
}

int32_t updateLists(const std::function<bool(ProfileLists& lists, int32_t readResult)>& change)
{
    constexpr int kAttempts = 10;
    std::string path = currentListPath();
    bool replaced = true;
    for (int i = 0; i < kAttempts && replaced; ++i) {
        auto lists = std::make_unique<ProfileLists>();
        auto& [rgb, sim, dst] = *lists;
        FileVersion read = versionOf(path);
        if (!change(*lists, VelPListReadProfile_All(&rgb, &sim, &dst)))
            return kSuccess;
        replaced = false;
        auto isSame = [&] { return !(replaced = versionOf(path) != read); };
        if (VelPListIsAdminProfile() != 0 && sendListFile(listFileText(rgb, sim, dst), isSame) == 0)
            return kSuccess;
    }
    return kFailure;
}

int32_t VelPListWriteProfile_Dict(const ProfileList* list, int32_t index, ProfileList* rgb, ProfileList* sim,
                                  ProfileList* dst)
{
    if (!isListIndex(index))
        return kFailure;
    auto lists = std::make_unique<ProfileLists>();
    auto& [storedRgb, storedSim, storedDst] = *lists;
    ProfileList* outs[kProfileListCount] = {rgb, sim, dst};
    (void)VelPListReadProfile_All(&storedRgb, &storedSim, &storedDst); // none yet: empty
    for (int i = 0; i < kProfileListCount; ++i) {
        if (outs[i] != nullptr)
            *outs[i] = (*lists)[i];
    }
    (*lists)[index] = *list;
    int32_t result = VelPListWriteProfile_All(&storedRgb, &storedSim, &storedDst);
    if (outs[index] != nullptr)
        *outs[index] = *list;
    return result;
}

int32_t VelPListWriteProfile_All_Pap(const ProfileList* rgb, const ProfileList* sim, const ProfileList* dst,
                                     const ProfileList* deletedRgb, const ProfileList* deletedSim,
                                     const ProfileList* deletedDst)
{
    if (VelPListIsAdminProfile() == 0)
        return kFailure;
    auto merged = std::make_unique<ProfileLists>();
    auto& [outRgb, outSim, outDst] = *merged;
    VelPListMappingProfile_All_Pap(rgb, sim, dst, &outRgb, &outSim, &outDst, deletedRgb, deletedSim,
                                   deletedDst);
    return writeLists(outRgb, outSim, outDst);
}

int32_t VelPListMappingProfile_All_Pap(const ProfileList* newRgb, const ProfileList* newSim,
                                       const ProfileList* newDst, ProfileList* outRgb, ProfileList* outSim,
                                       ProfileList* outDst, const ProfileList* deletedRgb,
                                       const ProfileList* deletedSim, const ProfileList* deletedDst)
{
    auto old = std::make_unique<ProfileLists>();
    auto& [oldRgb, oldSim, oldDst] = *old;
    (void)VelPListReadProfile_All(&oldRgb, &oldSim, &oldDst); // none yet: empty
    VelPListMapping_Pap(newRgb, &oldRgb, outRgb, deletedRgb);
    VelPListMapping_Pap(newSim, &oldSim, outSim, deletedSim);
    VelPListMapping_Pap(newDst, &oldDst, outDst, deletedDst);
    return kSuccess;
}

void VelPListMapping_Pap(const ProfileList* fresh, const ProfileList* old, ProfileList* out,
                         const ProfileList* deleted)
{
    int count = 0;
    for (int i = 0; i < usedSlots(*old) && count < kProfileSlots; ++i) {
        const ProfileRecord& record = old->records[i];
        if (record.InMenu != kFoundListed && record.InMenu != kFoundHidden)
            continue;
        if (!contains(*deleted, record) && !contains(*fresh, record))
            out->records[count++] = record;
    }
    for (int i = 0; i < usedSlots(*fresh) && count < kProfileSlots; ++i)
        out->records[count++] = fresh->records[i];
    out->iNum = count;
}

int32_t VelPListIsAdminProfile()
{
    return helperConfirms({kAdministratorCommand, currentListPath()}) ? 1 : 0;
}

void VelPListSwapProfile(int32_t mode)
{
    if (VelPListIsAdminProfile() == 0)
        return;
    // Without a current list there is nothing to keep: the reply does not matter.
    (void)helperReply({kSwapCommand, std::to_string(mode), currentListPath(), previousListPath()});
}

int32_t VelPListExistProfile()
{
    return VelPListIsAdminProfile() != 0 && helperConfirms({kExistCommand, currentListPath()}) ? 1 : 0;
}

int32_t VelPListRemove(int32_t which)
{
    constexpr int32_t kPreviousCopy = 2, kCurrentList = 3;
    if (which != kPreviousCopy && which != kCurrentList)
        return 0;
    std::string path = which == kPreviousCopy ? previousListPath() : currentListPath();
    return VelPListIsAdminProfile() != 0 && helperConfirms({kRemoveCommand, path}) ? 1 : 0;
}

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

int32_t VelPListMappingGetMainDict_FromPlist(PropertyListDocument* rgb, PropertyListDocument* sim,
                                             PropertyListDocument* dst)
{
    std::string text;
    if (readListFile(currentListPath(), text) != FileProblem::kNone)
        return kFailure;
    std::optional<PropertyListDocument> document = PropertyListDocument::parse(std::move(text));
    if (!document)
        return kFailure;
    PropertyListDocument* outs[kProfileListCount] = {rgb, sim, dst};
    for (int index = 0; index < kProfileListCount; ++index) {
        PropertyListNode classDictionary = document->root()[kListKeys[index]];
        if (!classDictionary.isDictionary())
            return kFailure;
        *outs[index] = classDictionary.copy();
    }
    return kSuccess;
}

int32_t VelPListMappingGetSubDict(PropertyListNode classDictionary, PropertyListNode* indexOnDevice,
                                  PropertyListNode* inMenu, PropertyListNode* profileClass,
                                  PropertyListNode* location, PropertyListNode* fileName,
                                  PropertyListNode* profileName, int32_t* iNum)
{
    PropertyListNode* outs[kStoredFields] = {indexOnDevice, inMenu,   profileClass,
                                             location,      fileName, profileName};
    for (int field = 0; field < kStoredFields; ++field) {
        PropertyListNode dictionary = classDictionary[kFieldKeys[field]];
        if (!dictionary.isDictionary())
            return kFailure;
        *outs[field] = dictionary;
    }
    if (std::optional<int32_t> count = classDictionary[kCountKey].integer())
        *iNum = *count;
    return kSuccess;
}

void MyDebugMessage(const char*, int32_t) {}
