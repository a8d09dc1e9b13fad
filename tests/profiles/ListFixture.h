#pragma once

#include "profiles/DriverPaths.h"
#include "profiles/ProfileListFile.h"
#include "profiles/ProfileListOperations.h"
#include "profiles/ProfileName.h"
#include "support/Process.h"
#include "support/Sandbox.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

/// The driver's files below a scratch root, with lists that start zeroed.
class ListFixture : public testing::Test {
protected:
    ListFixture() : root("PDE_ROOT", sandbox.path().string()), lists(std::make_unique<ProfileList[]>(3)) {}

    void writeListFile(const std::string& text)
    {
        // A new file each time: writing over an old one waits for the disk.
        std::filesystem::remove(currentListPath());
        sandbox.write(std::filesystem::path(currentListPath()).lexically_relative(sandbox.path()), text);
    }

    /// Puts a shell script where the helper belongs. It logs its arguments, one file each, before `answer`.
    void installHelper(const std::string& answer)
    {
        std::filesystem::path program = helperExecutable();
        sandbox.write(program.lexically_relative(sandbox.path()),
                      "#!/bin/sh\nprintf '%s\\n' \"$1\" >>\"$PDE_ROOT/commands\"\n"
                      "n=$(wc -l <\"$PDE_ROOT/commands\")\n"
                      "for a; do printf '%s|' \"$a\" >>\"$PDE_ROOT/arguments.$n\"; done\n" +
                          answer + "\n");
        std::filesystem::permissions(program, std::filesystem::perms(0755));
    }

    /// The names of the commands so far, a line each.
    std::string commands() const { return readFile(sandbox / "commands"); }
    /// The arguments of the `n`th command (from 1), each followed by "|".
    std::string arguments(int n) const { return readFile(sandbox / ("arguments." + std::to_string(n))); }

    int32_t readAll() { return VelPListReadProfile_All(&rgb(), &sim(), &dst()); }
    ProfileList& rgb() { return lists[kRgbList]; }
    ProfileList& sim() { return lists[kSimList]; }
    ProfileList& dst() { return lists[kDstList]; }

    Sandbox sandbox;
    ScopedVariable root;
    std::unique_ptr<ProfileList[]> lists;
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

inline std::vector<int32_t> codes(const ProfileList& list, int count)
{
    std::vector<int32_t> result;
    std::transform(list.records, list.records + count, std::back_inserter(result),
                   [](const ProfileRecord& one) { return one.InMenu; });
    return result;
}

/// The text of a list file in which `xml` stands in place of the first value of `key`.
inline std::string fileWith(const std::string& key, const std::string& xml, const ProfileList& rgb = {})
{
    std::string text = listFileText(rgb, {}, {});
    size_t at = text.find("<key>" + key + "</key>\n") + key.size() + 12;
    return text.replace(at, text.find('\n', at) - at, xml);
}
