#pragma once

#include "profiles/ProfileRecord.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

// The lists of the user who runs the program, and what all commands need to know of a profile.

/// Names of the lists on the command line and in JSON, by ProfileListIndex.
inline constexpr const char* kClassNames[kProfileListCount] = {"rgb", "sim", "dst"};

/// The stored lists; empty ones when there is no file yet. Throws when the file is damaged.
std::unique_ptr<ProfileLists> loadLists();

/// updateLists, but throws when the file is damaged (unless `mayBeDamaged`), when the user may not, and when
/// writing failed. `change` may run several times, each time on lists as they are stored then.
void changeLists(const std::function<bool(ProfileLists&)>& change, bool mayBeDamaged = false);

/// Throws what keeps the user from changing his lists: a helper that does not work, or its refusal.
void requirePermission();

/// "by-hand", "on-printer" or "not-found": what is known of it on the printer.
const char* statusName(ProfileRecord record);
/// Takes the status of that name and stays listed or hidden; false for any other name.
bool setStatus(ProfileRecord& record, std::string_view statusName);

/// "disk", "card", or the number of any other location.
std::string locationName(int32_t location);

/// A record for a profile that is registered by hand. Throws when a name breaks the rules or would be cut.
ProfileRecord makeRecord(const std::string& fileName, const std::string& profileName, int32_t location,
                         bool listed);

/// addByHand, but throws when no slot is free.
void addOrThrow(ProfileList& list, const ProfileRecord& record);

/// Text for a terminal: control, direction and broken characters become "?".
std::string printable(std::string_view text);
