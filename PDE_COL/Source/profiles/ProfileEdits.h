#pragma once

#include "profiles/ProfileRecord.h"

#include <string_view>

// What is asked of a profile and done to a list. Rows are the first `iNum` slots.

/// Slots that count as rows: `iNum`, within the list.
int usedSlots(const ProfileList& list);

/// The first free slot; null when all are used.
ProfileRecord* freeSlot(ProfileList& list);

/// Profiles of the printer can only be renamed.
bool isOnPrinter(const ProfileRecord& record);
bool isCustom(const ProfileRecord& record);

/// Whether the profile appears in the panel's menus, and the same record with that set to `listed`.
bool isListed(const ProfileRecord& record);
void setListed(ProfileRecord& record, bool listed);

/// The record shown in `row`; null outside the list.
ProfileRecord* recordAtRow(ProfileList& list, long row);

/// The first row, other than `except`, with this file name and location; -1 when there is none.
long rowWithFile(const ProfileList& list, std::string_view fileName, int32_t location, long except);

/// A listed profile registered by hand, names still empty, and the index of one in this slot.
ProfileRecord recordByHand(int32_t location);
int32_t indexByHand(const ProfileList& list, const ProfileRecord& slot);

/// Takes the first free slot for a profile registered by hand, names still empty; null when all are used.
ProfileRecord* addByHand(ProfileList& list);

/// Removes a row of the list.
void removeRow(ProfileList& list, long row);

/// Adds a copy; a full list stays as it is.
void appendCopy(ProfileList& list, const ProfileRecord& record);

/// The first 32 bytes of `text`, zero-filled: a text that long leaves no terminator.
void setNameField(char (&field)[kProfileNameSize], std::string_view text);
