#include "Commands.h"

#include "CommandError.h"
#include "ProfileJson.h"
#include "StoredProfiles.h"

#include "profiles/ProfileEdits.h"
#include "profiles/ProfileListFile.h"
#include "profiles/ProfileName.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>

namespace {

constexpr int32_t kAllLists[] = {kRgbList, kSimList, kDstList};

/// Runs `change` on each selected profile, in every selected list that has it. Throws when none has it.
template <typename Change>
void forEachSelected(ProfileLists& lists, const Selection& selection, Change change)
{
    bool found = false;
    for (int32_t index : selection.indexes) {
        ProfileRecord* record = findProfile(lists[index], selection.fileName, selection.location);
        if (record == nullptr)
            continue;
        found = true;
        change(index, *record);
    }
    if (!found)
        throw CommandError(kNotPossible, "no list has a profile \"" + printable(selection.fileName) + "\"");
}

std::string readInput(const std::string& path)
{
    constexpr std::streamsize kLongest = static_cast<std::streamsize>(kLongestListFile);
    std::ifstream file;
    if (path != "-")
        file.open(path, std::ios::binary);
    std::istream& input = path == "-" ? std::cin : file;
    std::string text(static_cast<size_t>(kLongest) + 1, '\0');
    input.read(text.data(), kLongest + 1);
    if (input.bad() || (path != "-" && !file.is_open()))
        throw CommandError(kBadInput, "cannot read " + printable(path));
    if (input.gcount() > kLongest)
        throw CommandError(kBadInput, printable(path) + " is longer than 4 MiB");
    text.resize(static_cast<size_t>(input.gcount()));
    return text;
}

/// Gives a stored profile the name and the place in menus of an imported one; true when that changes it.
bool bringUpToDate(ProfileRecord& stored, const ProfileRecord& imported)
{
    if (isListed(stored) == isListed(imported) &&
        nameText(stored.ProfileName) == nameText(imported.ProfileName))
        return false;
    setListed(stored, isListed(imported));
    memcpy(stored.ProfileName, imported.ProfileName, kProfileNameSize);
    return true;
}

} // namespace

void listProfiles(const std::vector<int32_t>& indexes, bool asJson)
{
    auto lists = loadLists();
    if (asJson) {
        std::cout << jsonOf(*lists, indexes).dump(2) << '\n';
        return;
    }
    char line[64];
    for (int32_t index : indexes) {
        for (const ProfileRecord& record : (*lists)[index].records) {
            if (record.InMenu == kFreeSlot)
                continue;
            snprintf(line, sizeof line, "%-4s %-7s %-11s %-5s ", kClassNames[index],
                     isListed(record) ? "shown" : "hidden", statusName(record),
                     locationName(record.Location).c_str());
            std::string file = printable(nameText(record.FileName));
            file.resize(std::max<size_t>(file.size(), kProfileNameSize), ' ');
            std::cout << line << file << ' ' << printable(nameText(record.ProfileName)) << '\n';
        }
    }
}

void addProfile(const Selection& selection, const std::string& profileName, bool listed)
{
    int32_t location = selection.location == 0 ? static_cast<int32_t>(kOnDisk) : selection.location;
    ProfileRecord record = makeRecord(selection.fileName, profileName, location, listed);
    auto lists = loadLists();
    for (int32_t index : selection.indexes) {
        if (findProfile((*lists)[index], selection.fileName, location) != nullptr)
            throw CommandError(kNotPossible, std::string(kClassNames[index]) + " has \"" +
                                                 selection.fileName + "\" on the " + locationName(location) +
                                                 " already");
        addOrThrow((*lists)[index], record);
    }
    saveLists(*lists);
    for (int32_t index : selection.indexes)
        std::cout << "added " << selection.fileName << " to " << kClassNames[index] << '\n';
}

void removeProfile(const Selection& selection)
{
    auto lists = loadLists();
    std::string done;
    forEachSelected(*lists, selection, [&](int32_t index, ProfileRecord& record) {
        if (isOnPrinter(record))
            throw CommandError(kNotPossible, std::string(kClassNames[index]) + ": the printer has \"" +
                                                 selection.fileName +
                                                 "\" and would bring it back; hide it instead");
        removeRecord((*lists)[index], record);
        done += "removed " + selection.fileName + " from " + kClassNames[index] + "\n";
    });
    saveLists(*lists);
    std::cout << done;
}

void setListing(const Selection& selection, bool listed)
{
    auto lists = loadLists();
    std::string done;
    bool changed = false;
    forEachSelected(*lists, selection, [&](int32_t index, ProfileRecord& record) {
        bool already = isListed(record) == listed;
        changed = changed || !already;
        setListed(record, listed);
        done += selection.fileName + (already ? " was already " : " is now ") +
                (listed ? "shown" : "hidden") + " in the menus of " + kClassNames[index] + "\n";
    });
    if (changed)
        saveLists(*lists);
    std::cout << done;
}

void importLists(const std::string& path, bool replace)
{
    std::vector<int32_t> named;
    std::vector<ImportedProfile> profiles = parseImport(readInput(path), named);
    // A damaged file is in the way of everything but replacing all of it.
    bool replacesAll = replace && named.size() == kProfileListCount;
    auto lists = replacesAll ? std::make_unique<ProfileLists>() : loadLists();
    for (int32_t index : named)
        if (replace)
            (*lists)[index] = {};
    size_t added = 0, changed = 0;
    for (const ImportedProfile& profile : profiles) {
        ProfileList& list = (*lists)[profile.index];
        ProfileRecord* stored = findProfile(list, nameText(profile.record.FileName), profile.record.Location);
        if (stored == nullptr)
            addOrThrow(list, profile.record);
        added += stored == nullptr;
        changed += stored != nullptr && bringUpToDate(*stored, profile.record);
    }
    if (replace || added + changed > 0)
        saveLists(*lists);
    std::cout << added << " added, " << changed << " changed, " << profiles.size() - added - changed
              << " as they were\n";
}

void exportLists(const std::string& path)
{
    auto lists = loadLists();
    std::string text = jsonOf(*lists, {std::begin(kAllLists), std::end(kAllLists)}).dump(2) + "\n";
    if (path == "-") {
        std::cout << text;
        return;
    }
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (!(file << text).flush())
        throw CommandError(kNotWritten, "cannot write " + printable(path));
}
