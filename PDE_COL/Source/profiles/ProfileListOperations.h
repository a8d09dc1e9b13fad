#pragma once

#include "profiles/ProfileRecord.h"

#include <cstdint>
#include <functional>

class PropertyListDocument;
class PropertyListNode;

// Reading happens in the calling process; every change goes through the privileged helper, after it has
// confirmed that the user may maintain the lists. All calls block; none throws; one thread at a time.
// Lists are caller-owned and zeroed by the caller before a read. Unless said otherwise the result is 0 for
// success and -1 for failure; predicates answer 1 or 0. After a failed read the out lists are as far
// filled as the read got.

/// Reads the three lists of the current user. Every class and every field dictionary must be present.
int32_t VelPListReadProfile_All(ProfileList* rgb, ProfileList* sim, ProfileList* dst);

/// Reads one list; the file needs to hold no other class. `index` is a ProfileListIndex.
int32_t VelPListReadProfile_Dict(ProfileList* list, int32_t index);

/// As above for queues that cannot be walked: records with InMenu 2 are left out, 4 is read as 6.
int32_t VelPListReadProfile_Dict_Pap(ProfileList* list, int32_t index);

/// Replaces the list file by these lists.
int32_t VelPListWriteProfile_All(const ProfileList* rgb, const ProfileList* sim, const ProfileList* dst);

/// Changes the stored lists and loses nothing that others save meanwhile: reads them into zeroed lists, lets
/// `change` work on them, and writes them unless it answers false. When the list file is not the one any more
/// that was read, begins again from the new one, a few times. `change` is told the result of the read.
int32_t updateLists(const std::function<bool(ProfileLists& lists, int32_t readResult)>& change);

/// Replaces one list and keeps the other two. The out lists, each of which may be null, receive what the
/// file held before, but for the class written: that one receives `list`, whether or not the write
/// succeeded. An `index` outside 0..2 writes nothing and gives -1.
int32_t VelPListWriteProfile_Dict(const ProfileList* list, int32_t index, ProfileList* rgb, ProfileList* sim,
                                  ProfileList* dst);

/// Merges as VelPListMappingProfile_All_Pap does, then writes the merged lists.
int32_t VelPListWriteProfile_All_Pap(const ProfileList* rgb, const ProfileList* sim, const ProfileList* dst,
                                     const ProfileList* deletedRgb, const ProfileList* deletedSim,
                                     const ProfileList* deletedDst);

/// Merges the stored lists into new ones with VelPListMapping_Pap, class by class. Always 0: a file that
/// cannot be read counts as empty.
int32_t VelPListMappingProfile_All_Pap(const ProfileList* newRgb, const ProfileList* newSim,
                                       const ProfileList* newDst, ProfileList* outRgb, ProfileList* outSim,
                                       ProfileList* outDst, const ProfileList* deletedRgb,
                                       const ProfileList* deletedSim, const ProfileList* deletedDst);

/// `out` (zeroed by the caller) becomes the old records found on the printer (InMenu 4 or 2) that are
/// neither in `deleted` nor in `fresh`, followed by `fresh`. Records match by FileName and Location.
void VelPListMapping_Pap(const ProfileList* fresh, const ProfileList* old, ProfileList* out,
                         const ProfileList* deleted);

/// 1 when the helper says that this user may maintain the lists.
int32_t VelPListIsAdminProfile();

/// Mode 2 keeps a copy of the current list as the previous copy.
void VelPListSwapProfile(int32_t mode);

int32_t VelPListExistProfile();

/// Removes the previous copy (2) or the current list (3). 1 when it is gone; any other `which` gives 0.
int32_t VelPListRemove(int32_t which);

/// In-place steps of the merge with the printer's table.
void VelPListCleanProfile_Dict(ProfileList* list);
void VelPListSalvage_Dict(ProfileList* list);
void VelPListPaddingProfile_Dict(ProfileList* list);

/// Independent copies of the three class dictionaries in the current user's file; the caller owns them.
/// -1 when the file cannot be read, or at the first class that is absent: what was handed out before stays.
int32_t VelPListMappingGetMainDict_FromPlist(PropertyListDocument* rgb, PropertyListDocument* sim,
                                             PropertyListDocument* dst);

/// The six field dictionaries of a class dictionary, borrowed from its document. -1 at the first that is
/// absent. `iNum` is only written when the dictionary has a count, and may lack it.
int32_t VelPListMappingGetSubDict(PropertyListNode classDictionary, PropertyListNode* indexOnDevice,
                                  PropertyListNode* inMenu, PropertyListNode* profileClass,
                                  PropertyListNode* location, PropertyListNode* fileName,
                                  PropertyListNode* profileName, int32_t* iNum);

/// A debug hook; does nothing.
void MyDebugMessage(const char* text, int32_t value);
