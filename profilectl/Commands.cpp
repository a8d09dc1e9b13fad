#include "Commands.h"

#include "CommandError.h"
#include "ProfileJson.h"
#include "StoredProfiles.h"

#include "profiles/DriverPaths.h"
#include "profiles/HelperChannel.h"
#include "profiles/HelperProtocol.h"
#include "profiles/ProfileEdits.h"
#include "profiles/ProfileListFile.h"
#include "profiles/ProfileListOperations.h"
#include "profiles/ProfileName.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>

namespace {

constexpr int32_t kAllLists[] = {kRgbList, kSimList, kDstList};

/// Exit value of a walk that the printer answered with an error.
constexpr int kWalkRefused = 2;

/// Runs `change` on each selected profile, in every selected list that has it. Throws when none has it.
template <typename Change>
void forEachSelected(ProfileLists& lists, const Selection& selection, Change change)
{
    bool found = false;
    std::string elsewhere;
    for (int32_t index : kAllLists) {
        ProfileRecord* record = findProfile(lists[index], selection.fileName, selection.location);
        if (record == nullptr)
            continue;
        bool selected = std::count(selection.indexes.begin(), selection.indexes.end(), index) != 0;
        found = found || selected;
        if (selected)
            change(index, *record);
        else
            elsewhere += std::string(elsewhere.empty() ? "; it is in " : ", ") + kClassNames[index];
    }
    if (!found)
        throw CommandError(kNotPossible, std::string(elsewhere.empty() ? "no list" : "none of these lists") +
                                             " has a profile \"" + selection.fileName + "\"" + elsewhere);
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
        throw CommandError(kBadInput, "cannot read " + path);
    if (input.gcount() > kLongest)
        throw CommandError(kBadInput, path + " is longer than 4 MiB");
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

void listProfiles(const std::vector<int32_t>& indexes, bool asJson, bool onPrinterOnly)
{
    auto lists = loadLists();
    if (asJson) {
        std::cout << jsonOf(*lists, indexes).dump(2) << '\n';
        return;
    }
    char line[64];
    for (int32_t index : indexes) {
        for (const ProfileRecord& record : (*lists)[index].records) {
            if (record.InMenu == kFreeSlot || (onPrinterOnly && !isOnPrinter(record)))
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
    changeLists([&](ProfileLists& lists) {
        for (int32_t index : selection.indexes) {
            if (findProfile(lists[index], selection.fileName, location) != nullptr)
                throw CommandError(kNotPossible, std::string(kClassNames[index]) + " has \"" +
                                                     selection.fileName + "\" on the " +
                                                     locationName(location) + " already");
            addOrThrow(lists[index], record);
        }
        return true;
    });
    for (int32_t index : selection.indexes)
        std::cout << "added " << selection.fileName << " to " << kClassNames[index] << '\n';
}

void removeProfile(const Selection& selection)
{
    std::string done;
    changeLists([&](ProfileLists& lists) {
        done.clear();
        forEachSelected(lists, selection, [&](int32_t index, ProfileRecord& record) {
            if (isOnPrinter(record))
                throw CommandError(kNotPossible, std::string(kClassNames[index]) + ": the printer has \"" +
                                                     selection.fileName +
                                                     "\" and would bring it back; hide it instead");
            removeRecord(lists[index], record);
            done += "removed " + selection.fileName + " from " + kClassNames[index] + "\n";
        });
        return true;
    });
    std::cout << done;
}

void setListing(const Selection& selection, bool listed)
{
    std::string done;
    changeLists([&](ProfileLists& lists) {
        done.clear();
        bool changed = false;
        forEachSelected(lists, selection, [&](int32_t index, ProfileRecord& record) {
            bool already = isListed(record) == listed;
            changed = changed || !already;
            setListed(record, listed);
            done += selection.fileName + (already ? " was already " : " is now ") +
                    (listed ? "shown" : "hidden") + " in the menus of " + kClassNames[index] + "\n";
        });
        return changed;
    });
    std::cout << done;
}

void importLists(const std::string& path, bool replace)
{
    std::vector<int32_t> named;
    std::vector<ImportedProfile> profiles = parseImport(readInput(path), named);
    // A damaged file is in the way of everything but replacing all of it.
    bool replacesAll = replace && named.size() == kProfileListCount;
    long added = 0, changed = 0, removed = 0;
    changeLists(
        [&](ProfileLists& lists) {
            auto before = std::make_unique<ProfileLists>(lists);
            added = changed = removed = 0;
            for (int32_t index : named) {
                if (!replace)
                    continue;
                removed +=
                    std::count_if(std::begin(lists[index].records), std::end(lists[index].records),
                                  [](const ProfileRecord& record) { return record.InMenu != kFreeSlot; });
                lists[index] = {};
            }
            for (const auto& [index, record] : profiles) {
                std::string_view file = nameText(record.FileName);
                ProfileRecord* earlier = findProfile((*before)[index], file, record.Location);
                if (ProfileRecord* stored = findProfile(lists[index], file, record.Location)) {
                    changed += bringUpToDate(*stored, record);
                    continue;
                }
                addOrThrow(lists[index], record);
                added += earlier == nullptr;
                removed -= earlier != nullptr;
                changed += earlier != nullptr && bringUpToDate(*earlier, record);
            }
            return replace || added + changed > 0;
        },
        replacesAll);
    std::cout << added << " added, " << changed << " changed, "
              << static_cast<long>(profiles.size()) - added - changed << " as they were";
    std::cout << (replace ? ", " + std::to_string(removed) + " removed\n" : "\n");
}

void restoreLists()
{
    std::string previous;
    if (readListFile(previousListPath(), previous) == FileProblem::kMissing)
        throw CommandError(kNotPossible, "there is no previous copy of the lists");
    if (!isListFileText(previous))
        throw CommandError(kFaultFound, "the previous copy cannot be read: " + previousListPath());
    requirePermission();
    if (!helperConfirms({kSwapCommand, kPutBackPreviousCopy, currentListPath(), previousListPath()}))
        throw CommandError(kNotWritten,
                           "the previous copy could not be put back; the lists are as they were");
    std::cout << "the lists are again as they were before the last discovery\n";
}

void discoverProfiles(const std::string& host)
{
    requirePermission();
    VelPListSwapProfile(2);
    std::optional<int> result = walkPrinterTable(host);
    if (!result)
        throw CommandError(kNotPossible, "the printer at " + host + " could not be asked");
    auto lists = loadLists();
    long found = 0;
    for (const ProfileList& list : *lists)
        found += std::count_if(std::begin(list.records), std::end(list.records), isOnPrinter);
    if (*result == kWalkRefused || (*result == 0 && found == 0))
        throw CommandError(kNotPossible, host + " answers, but is not supported: it has no profiles");
    if (*result != 0)
        throw CommandError(kNotPossible, "no answer from " + host);
    listProfiles({std::begin(kAllLists), std::end(kAllLists)}, false, true);
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
        throw CommandError(kNotWritten, "cannot write " + path);
}
