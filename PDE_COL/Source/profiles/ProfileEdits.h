#pragma once

#include "profiles/ProfileRecord.h"

#include <string_view>

// What is known of a profile and what is done to a list. Rows are the first `iNum` slots.

/// Slots that count as rows: `iNum`, within the list.
int usedSlots(const ProfileList& list);

/// Profiles that the last walk found.
bool isOnPrinter(const ProfileRecord& record);
/// Profiles of the printer can only be renamed.
bool isCustom(const ProfileRecord& record);

/// Whether the profile is listed, and the same record with that set to `listed`. A record of an unknown
/// state is neither listed nor hidden: menus, which leave out what is hidden, show it, but jobs cannot use
/// it.
bool isListed(const ProfileRecord& record);
bool isHidden(const ProfileRecord& record);
void setListed(ProfileRecord& record, bool listed);

/// The record shown in `row`; null outside the list.
ProfileRecord* recordAtRow(ProfileList& list, long row);

/// The first used record with this file name and location (any, when it is 0), in a row or not; or null.
ProfileRecord* findProfile(ProfileList& list, std::string_view fileName, int32_t location);

/// Whether another row than `except` has this file name and location.
bool hasRowWithFile(const ProfileList& list, std::string_view fileName, int32_t location, long except);

/// A listed profile registered by hand, its names still empty.
ProfileRecord recordByHand(int32_t location);

/// Copies a record into the first free slot; null when all are used.
ProfileRecord* addRecord(ProfileList& list, const ProfileRecord& record);
/// The same, and gives a record without an index the one of a profile registered by hand.
ProfileRecord* addByHand(ProfileList& list, const ProfileRecord& record);

/// Frees the slot of a record and closes all gaps.
void removeRecord(ProfileList& list, ProfileRecord& record);
/// Removes a row and moves up the later ones. Of the last only the state is cleared: the rest of the slot
/// stays as it was until it is used again.
void removeRow(ProfileList& list, long row);

/// Adds a copy behind the last row; a full list stays as it is.
void appendCopy(ProfileList& list, const ProfileRecord& record);
