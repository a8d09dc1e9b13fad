#include "CommandError.h"
#include "Commands.h"
#include "StoredProfiles.h"

#include "profiles/DriverPaths.h"
#include "profiles/ProfileListFile.h"
#include "profiles/ProfileName.h"

#include <algorithm>
#include <iostream>
#include <memory>

namespace {

/// Prints what reading would lose, each with the list it is in, and counts them.
struct FaultReport {
    int count = 0;
    const char* list = nullptr;

    void add(const std::string& fault)
    {
        ++count;
        std::cout << (list != nullptr ? std::string(list) + ": " : "") << fault << '\n';
    }
};

std::string countOf(long count, const std::string& one)
{
    return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

void checkFields(PropertyListNode classDictionary, const StoredList& stored, FaultReport& report)
{
    for (int field = 0; field < kStoredFields; ++field) {
        PropertyListNode dictionary = classDictionary[kFieldKeys[field]];
        std::string place = std::string(kFieldKeys[field]) + ": ";
        if (!dictionary.isDictionary()) {
            report.add(place + "the field is missing: the file is not read");
            continue;
        }
        long entries = 0, longNames = 0;
        dictionary.forEachEntry([&](std::string_view, PropertyListNode value) {
            ++entries;
            longNames += value.string().value_or("").size() > kLongestName;
        });
        auto slots = std::count_if(std::begin(stored.fields), std::end(stored.fields),
                                   [&](uint8_t fields) { return (fields & (1 << field)) != 0; });
        if (entries > slots)
            report.add(place + countOf(entries - slots, "value") +
                       " lost: no slot's key, another type, out of range, or there twice");
        if (longNames > 0)
            report.add(place + countOf(longNames, "name") + " cut to " + std::to_string(kLongestName) +
                       " bytes");
    }
}

/// What the consistency rule clears.
void checkCount(const ProfileList& stored, FaultReport& report)
{
    auto read = std::make_unique<ProfileList>(stored);
    VelPlistCheckWithInMenu_Dict(read.get());
    for (int slot = 0; slot < kProfileSlots; ++slot) {
        if (stored.records[slot].InMenu != kFreeSlot && read->records[slot].InMenu == kFreeSlot)
            report.add("\"" + printable(nameText(stored.records[slot].FileName)) + "\" in slot " +
                       std::to_string(slot) + " lost: iNum is " + std::to_string(stored.iNum) + ", but " +
                       countOf(read->iNum, "slot") + " used");
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
        checkCount(stored.list, report);
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
    std::cout << (report.count == 0 ? "nothing is wrong with it" : countOf(report.count, "fault")) << '\n';
    return report.count == 0 ? kDone : kFaultFound;
}
