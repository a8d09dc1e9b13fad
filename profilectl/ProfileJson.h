#pragma once

#include "StoredProfiles.h"

#include <nlohmann/json.hpp>
#include <vector>

/// The lists with these indexes, an array of profiles under each list's name. Bytes of a name that are no
/// text are left out.
nlohmann::ordered_json jsonOf(const ProfileLists& lists, const std::vector<int32_t>& indexes);

/// One profile of an imported file.
struct ImportedProfile {
    int32_t index; ///< the list it belongs to
    ProfileRecord record;
};

/// The profiles in the text of an imported file, and which lists it names. Throws with the place of the
/// first fault: nothing of a file with a fault is used.
std::vector<ImportedProfile> parseImport(const std::string& text, std::vector<int32_t>& indexes);
