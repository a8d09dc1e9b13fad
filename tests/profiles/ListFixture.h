#pragma once

#include "profiles/ProfileListFile.h"
#include "profiles/ProfileListOperations.h"
#include "profiles/ProfileName.h"
#include "support/DriverRoot.h"
#include "support/Process.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>

/// The driver's files below a scratch root, with lists that start zeroed.
class ListFixture : public testing::Test {
protected:
    void writeListFile(const std::string& text)
    {
        // A new file each time: writing over an old one waits for the disk.
        std::filesystem::remove(currentListPath());
        sandbox.write(currentListPath(), text);
    }

    /// Puts a shell script where the helper belongs, which logs the `n`th call before `answer`.
    void installHelper(const std::string& answer)
    {
        sandbox.replaceHelper("echo \"$1\" >>\"$PDE_ROOT/commands\"\nn=$(wc -l <\"$PDE_ROOT/commands\")\n"
                              "echo \"$(printf '%s|' \"$@\")\" >>\"$PDE_ROOT/calls\"\n" +
                              answer + "\n");
    }

    /// The names of the commands so far, and the commands with their arguments, each followed by "|": a line
    /// each.
    std::string commands() const { return readFile(sandbox / "commands"); }
    std::string calls() const { return readFile(sandbox / "calls"); }

    int32_t readAll() { return VelPListReadProfile_All(&rgb(), &sim(), &dst()); }
    ProfileList& rgb() { return lists[kRgbList]; }
    ProfileList& sim() { return lists[kSimList]; }
    ProfileList& dst() { return lists[kDstList]; }

    DriverRoot sandbox;
    std::unique_ptr<ProfileList[]> lists = std::make_unique<ProfileList[]>(kProfileListCount);
};

inline const char kSayTrue[] = "echo \"$1=TRUE\"";

/// A record with every field set; its names hold the code.
inline ProfileRecord record(int32_t inMenu, const std::string& fileName = "", int32_t location = kOnDisk)
{
    ProfileRecord made{7, inMenu, 2, {}, {}, location, 3};
    setNameText(made.FileName, fileName.empty() ? "file" + std::to_string(inMenu) + ".icc" : fileName);
    setNameText(made.ProfileName, "Profile " + std::to_string(inMenu));
    return made;
}

/// A list of records with these codes, packed at the front, with the count that belongs to it.
inline ProfileList listOf(const std::vector<ProfileRecord>& records)
{
    ProfileList list{};
    std::copy(records.begin(), records.end(), list.records);
    list.iNum = static_cast<int32_t>(records.size());
    return list;
}

/// The codes and file names of the first `count` slots, "3 a.icc, 0 , ".
inline std::string slots(const ProfileList& list, int count)
{
    std::string text;
    for (const ProfileRecord& one : std::vector(list.records, list.records + count))
        text += std::to_string(one.InMenu) + " " + std::string(nameText(one.FileName)) + ", ";
    return text;
}
