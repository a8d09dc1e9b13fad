#include "ProfileJson.h"

#include "CommandError.h"

#include "profiles/ProfileEdits.h"
#include "profiles/ProfileName.h"

#include <algorithm>
#include <iterator>

using nlohmann::json;
using nlohmann::ordered_json;

namespace {

ordered_json jsonOf(const ProfileRecord& record)
{
    ordered_json profile;
    profile["file"] = storableName(record.FileName).value_or("");
    profile["name"] = storableName(record.ProfileName).value_or("");
    if (record.Location == kOnDisk || record.Location == kOnCard)
        profile["location"] = locationName(record.Location);
    else
        profile["location"] = record.Location;
    profile["inMenu"] = isListed(record);
    profile["status"] = statusName(record);
    profile["index"] = record.IndexOnDevice;
    profile["class"] = record.ProfileClass;
    return profile;
}

[[noreturn]] void refuse(const std::string& place, const std::string& why)
{
    throw CommandError(kBadInput, place + ": " + why);
}

template <typename Value>
Value member(const json& profile, const char* key, Value fallback)
{
    auto found = profile.find(key);
    if (found == profile.end())
        return fallback;
    try {
        return found->get<Value>();
    } catch (const json::exception&) {
        throw CommandError(kBadInput, std::string("\"") + key + "\" has a value of another type");
    }
}

int32_t integerMember(const json& profile, const char* key, int32_t fallback)
{
    auto found = profile.find(key);
    if (found == profile.end())
        return fallback;
    // As a double, which holds them all: a large unsigned one would turn negative.
    bool fits =
        found->is_number_integer() && found->get<double>() >= INT32_MIN && found->get<double>() <= INT32_MAX;
    if (!fits)
        throw CommandError(kBadInput, std::string("\"") + key + "\" is no integer of 32 bits");
    return found->get<int32_t>();
}

int32_t locationMember(const json& profile)
{
    auto found = profile.find("location");
    if (found == profile.end() || *found == "disk")
        return kOnDisk;
    if (*found == "card")
        return kOnCard;
    if (found->is_string())
        throw CommandError(kBadInput, "\"location\" is \"disk\" or \"card\"");
    return integerMember(profile, "location", kOnDisk);
}

ProfileRecord recordOf(const json& profile)
{
    if (!profile.is_object())
        throw CommandError(kBadInput, "a profile is an object");
    constexpr const char* kMembers[] = {"file", "name", "location", "inMenu", "status", "index", "class"};
    for (const auto& [key, value] : profile.items()) {
        if (std::find(std::begin(kMembers), std::end(kMembers), key) == std::end(kMembers))
            throw CommandError(kBadInput, "\"" + key + "\" is not known");
    }
    if (!profile.contains("file"))
        throw CommandError(kBadInput, "\"file\" is missing");
    std::string file = member<std::string>(profile, "file", "");
    bool listed = member<bool>(profile, "inMenu", true);
    ProfileRecord record =
        makeRecord(file, member<std::string>(profile, "name", file), locationMember(profile), listed);
    if (!setStatus(record, member<std::string>(profile, "status", "by-hand")))
        throw CommandError(kBadInput, "\"status\" is \"by-hand\", \"on-printer\" or \"not-found\"");
    record.IndexOnDevice = integerMember(profile, "index", 0);
    record.ProfileClass = integerMember(profile, "class", record.ProfileClass);
    return record;
}

} // namespace

ordered_json jsonOf(const ProfileLists& lists, const std::vector<int32_t>& indexes)
{
    ordered_json root = ordered_json::object();
    for (int32_t index : indexes) {
        ordered_json& profiles = root[kClassNames[index]] = ordered_json::array();
        for (const ProfileRecord& record : lists[index].records)
            if (record.InMenu != kFreeSlot)
                profiles.push_back(jsonOf(record));
    }
    return root;
}

std::vector<ImportedProfile> parseImport(const std::string& text, std::vector<int32_t>& indexes)
{
    json root;
    try {
        root = json::parse(text);
    } catch (const json::parse_error& error) {
        refuse("this is no JSON", error.what());
    }
    if (!root.is_object())
        refuse("the file", "it holds no object with the lists \"rgb\", \"sim\", \"dst\"");
    std::vector<ImportedProfile> imported;
    for (const auto& [key, profiles] : root.items()) {
        auto name = std::find(std::begin(kClassNames), std::end(kClassNames), key);
        if (name == std::end(kClassNames))
            refuse(key, "there are only the lists \"rgb\", \"sim\" and \"dst\"");
        if (!profiles.is_array())
            refuse(key, "a list is an array");
        indexes.push_back(static_cast<int32_t>(name - std::begin(kClassNames)));
        for (size_t i = 0; i < profiles.size(); ++i) {
            try {
                imported.push_back({indexes.back(), recordOf(profiles[i])});
            } catch (const CommandError& error) {
                refuse(key + "[" + std::to_string(i) + "]", error.what());
            }
        }
    }
    return imported;
}
