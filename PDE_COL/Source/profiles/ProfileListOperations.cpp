#include "profiles/ProfileListOperations.h"

#include "profiles/DriverPaths.h"
#include "profiles/HelperChannel.h"
#include "profiles/ProfileEdits.h"
#include "profiles/ProfileListDictionaries.h"
#include "profiles/ProfileListFile.h"
#include "profiles/ProfileName.h"

#include <algorithm>
#include <string>

namespace {

constexpr int32_t kSuccess = 0, kFailure = -1;

bool isListIndex(int32_t index)
{
    return index >= 0 && index < kProfileListCount;
}

/// The list as the current file holds it; null when the file or a part of that class is missing.
const StoredList* storedList(int32_t index)
{
    const StoredLists* lists = isListIndex(index) ? currentLists() : nullptr;
    return lists != nullptr && (*lists)[index].complete ? &(*lists)[index] : nullptr;
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
    const StoredList* stored = storedList(index);
    if (stored == nullptr)
        return kFailure;
    readList(*stored, *list);
    return kSuccess;
}

int32_t VelPListReadProfile_Dict_Pap(ProfileList* list, int32_t index)
{
    const StoredList* stored = storedList(index);
    if (stored == nullptr)
        return kFailure;
    int out = 0;
    for (int slot = 0; slot < kProfileSlots; ++slot) {
        if (stored->list.records[slot].InMenu == kFoundHidden)
            continue;
        ProfileRecord& record = list->records[out++];
        readRecord(*stored, slot, record);
        if (stored->list.records[slot].InMenu == kFoundListed)
            record.InMenu = kByHandListed;
    }
    if (stored->hasCount)
        list->iNum = stored->list.iNum;
    VelPlistCheckWithInMenu_Dict(list);
    return kSuccess;
}

int32_t VelPListWriteProfile_All(const ProfileList* rgb, const ProfileList* sim, const ProfileList* dst)
{
    return VelPListIsAdminProfile() != 0 ? writeLists(*rgb, *sim, *dst) : kFailure;
}

int32_t VelPListWriteProfile_Dict(const ProfileList* list, int32_t index, ProfileList* rgb, ProfileList* sim,
                                  ProfileList* dst)
{
    if (!isListIndex(index))
        return kFailure;
    ProfileList stored[kProfileListCount] = {};
    ProfileList* outs[kProfileListCount] = {rgb, sim, dst};
    (void)VelPListReadProfile_All(&stored[kRgbList], &stored[kSimList], &stored[kDstList]); // none yet: empty
    const ProfileList* written[kProfileListCount];
    for (int i = 0; i < kProfileListCount; ++i) {
        if (outs[i] != nullptr)
            *outs[i] = stored[i];
        written[i] = i == index ? list : &stored[i];
    }
    int32_t result = VelPListWriteProfile_All(written[kRgbList], written[kSimList], written[kDstList]);
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
    ProfileList out[kProfileListCount] = {};
    VelPListMappingProfile_All_Pap(rgb, sim, dst, &out[kRgbList], &out[kSimList], &out[kDstList], deletedRgb,
                                   deletedSim, deletedDst);
    return writeLists(out[kRgbList], out[kSimList], out[kDstList]);
}

int32_t VelPListMappingProfile_All_Pap(const ProfileList* newRgb, const ProfileList* newSim,
                                       const ProfileList* newDst, ProfileList* outRgb, ProfileList* outSim,
                                       ProfileList* outDst, const ProfileList* deletedRgb,
                                       const ProfileList* deletedSim, const ProfileList* deletedDst)
{
    ProfileList old[kProfileListCount] = {};
    (void)VelPListReadProfile_All(&old[kRgbList], &old[kSimList], &old[kDstList]); // none yet: empty
    VelPListMapping_Pap(newRgb, &old[kRgbList], outRgb, deletedRgb);
    VelPListMapping_Pap(newSim, &old[kSimList], outSim, deletedSim);
    VelPListMapping_Pap(newDst, &old[kDstList], outDst, deletedDst);
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
    return helperConfirms({"velPListIsAdminProfile_XPC", currentListPath()}) ? 1 : 0;
}

void VelPListSwapProfile(int32_t mode)
{
    if (VelPListIsAdminProfile() == 0)
        return;
    // Without a current list there is nothing to keep: the reply does not matter.
    (void)helperReply(
        {"velPListSwapProfile_XPC", std::to_string(mode), currentListPath(), previousListPath()});
}

int32_t VelPListExistProfile()
{
    return VelPListIsAdminProfile() != 0 && helperConfirms({"velPListExistProfile_XPC", currentListPath()})
               ? 1
               : 0;
}

int32_t VelPListRemove(int32_t which)
{
    constexpr int32_t kPreviousCopy = 2, kCurrentList = 3;
    if (which != kPreviousCopy && which != kCurrentList)
        return 0;
    std::string path = which == kPreviousCopy ? previousListPath() : currentListPath();
    return VelPListIsAdminProfile() != 0 && helperConfirms({"velPListRemove_XPC", path}) ? 1 : 0;
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
