#include "CommandError.h"
#include "Commands.h"
#include "StoredProfiles.h"

#include "profiles/DriverPaths.h"
#include "profiles/ProfileListFile.h"
#include "profiles/ProfileName.h"

#include <algorithm>
#include <iostream>
#include <set>

namespace {

/// Prints faults, each with the list it is in, and counts them.
struct FaultReport {
    int count = 0;
    const char* list = nullptr;

    void add(const std::string& fault)
    {
        ++count;
        std::cout << (list != nullptr ? std::string(list) + ": " : "") << fault << '\n';
    }
};

std::string slotName(int slot)
{
    return "slot " + std::to_string(slot);
}

std::string profileAt(const ProfileList& list, int slot)
{
    return "\"" + printable(nameText(list.records[slot].FileName)) + "\" in " + slotName(slot);
}

void checkFields(PropertyListNode classDictionary, const StoredList& stored, FaultReport& report)
{
    for (int field = 0; field < kStoredFields; ++field) {
        PropertyListNode dictionary = classDictionary[kFieldKeys[field]];
        if (!dictionary.isDictionary()) {
            report.add(std::string(kFieldKeys[field]) + " is missing: the file is not read");
            continue;
        }
        int entries = 0, longNames = 0;
        dictionary.forEachEntry([&](std::string_view, PropertyListNode value) {
            ++entries;
            longNames += value.string().value_or("").size() >= kProfileNameSize;
        });
        auto slots = std::count_if(std::begin(stored.fields), std::end(stored.fields),
                                   [&](uint8_t fields) { return (fields & (1 << field)) != 0; });
        if (slots < kProfileSlots)
            report.add(std::string(kFieldKeys[field]) + ": " + std::to_string(kProfileSlots - slots) +
                       " slots have no entry and are read as 0 or empty");
        if (entries > slots)
            report.add(std::string(kFieldKeys[field]) + ": " + std::to_string(entries - slots) +
                       " entries are ignored: no slot's key, another type, out of range, or there twice");
        if (longNames > 0)
            report.add(std::string(kFieldKeys[field]) + ": " + std::to_string(longNames) +
                       " names are longer than 31 bytes and are cut when read");
    }
}

/// What the consistency rule would do, in words.
void checkCount(const StoredList& stored, FaultReport& report)
{
    ProfileList read = stored.list;
    VelPlistCheckWithInMenu_Dict(&read);
    if (!stored.hasCount)
        report.add("iNum is missing: reading sets it to " + std::to_string(read.iNum));
    else if (read.iNum != stored.list.iNum)
        report.add("iNum is " + std::to_string(stored.list.iNum) + " but " + std::to_string(read.iNum) +
                   " slots are used: reading sets it to that and clears every slot from " +
                   std::to_string(read.iNum) + " on");
    for (int slot = 0; slot < kProfileSlots; ++slot) {
        if (stored.list.records[slot].InMenu != kFreeSlot && read.records[slot].InMenu == kFreeSlot)
            report.add("reading loses " + profileAt(stored.list, slot));
        else if (read.records[slot].InMenu != kFreeSlot && slot >= read.iNum)
            report.add(profileAt(read, slot) + " lies behind a free slot and is not offered in menus");
    }
}

void checkProfiles(const ProfileList& list, FaultReport& report)
{
    std::set<std::pair<std::string_view, int32_t>> seen;
    for (int slot = 0; slot < kProfileSlots; ++slot) {
        const ProfileRecord& record = list.records[slot];
        if (record.InMenu == kFreeSlot)
            continue;
        if (record.InMenu < kFreeSlot || record.InMenu > kByHandListed)
            report.add(profileAt(list, slot) + " has the unknown InMenu " + std::to_string(record.InMenu));
        if (!bJudgement8point3Format(std::string(nameText(record.FileName)).c_str()))
            report.add(profileAt(list, slot) +
                       " breaks the rule for file names: the next discovery removes it");
        if (record.Location != kOnDisk && record.Location != kOnCard)
            report.add(profileAt(list, slot) + " has the unknown location " +
                       std::to_string(record.Location) + ": a job that chose it prints with the default");
        if (!seen.emplace(nameText(record.FileName), record.Location).second)
            report.add(profileAt(list, slot) + " is there twice");
    }
}

void checkDocument(const PropertyListDocument& document, FaultReport& report)
{
    auto lists = std::make_unique<StoredLists>();
    extractLists(document, *lists);
    for (int index = 0; index < kProfileListCount; ++index) {
        const StoredList& stored = (*lists)[index];
        PropertyListNode classDictionary = document.root()[kListKeys[index]];
        report.list = kListKeys[index];
        if (!classDictionary.isDictionary()) {
            report.add("the list is missing: the file is not read");
            continue;
        }
        checkFields(classDictionary, stored, report);
        checkCount(stored, report);
        checkProfiles(stored.list, report);
    }
}

const char* describe(FileProblem problem)
{
    switch (problem) {
    case FileProblem::kNotAFile:
        return "it is no ordinary file";
    case FileProblem::kTooLong:
        return "it is longer than 4 MiB";
    default:
        return "it cannot be read";
    }
}

} // namespace

int checkListFile()
{
    std::string text, reason;
    FaultReport report;
    std::cout << currentListPath() << '\n';
    FileProblem problem = readListFile(currentListPath(), text);
    if (problem == FileProblem::kMissing) {
        std::cout << "there is no list file yet: all lists are empty\n";
        return kDone;
    }
    if (problem != FileProblem::kNone)
        report.add(describe(problem));
    else if (auto document = PropertyListDocument::parse(std::move(text), &reason))
        checkDocument(*document, report);
    else
        report.add("it is no profile list: " + reason);
    std::cout << (report.count == 0 ? "nothing is wrong with it" : std::to_string(report.count) + " faults")
              << '\n';
    return report.count == 0 ? kDone : kFaultFound;
}
