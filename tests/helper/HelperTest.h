#pragma once

#include "profiles/DriverPaths.h"
#include "profiles/HelperChannel.h"
#include "profiles/HelperProtocol.h"
#include "profiles/ProfileListFile.h"
#include "support/Process.h"
#include "support/Sandbox.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

/// A short, valid list file; `tag` tells one from another.
inline std::string listText(int tag)
{
    PropertyListDocument document;
    PropertyListNode top = document.root();
    for (const char* key : kListKeys) {
        PropertyListNode list = top.addDictionary(key);
        for (const char* field : kFieldKeys)
            list.addDictionary(field);
        list.addInteger(kCountKey, tag);
    }
    return document.text();
}

/// Each command that works on these two lists, in an order in which each is done, those that remove at the
/// end.
inline std::vector<Strings> commandsOn(const std::string& list, const std::string& copy)
{
    const std::string url = fileUrl(list);
    return {{kWritePieceCommand, url, listText(5)},
            {kWritePieceCommand, url, "\n"},
            {kRenameCommand, url},
            {kSwapCommand, "2", list, copy},
            {kSwapCommand, "3", list, copy},
            {kAdministratorCommand, list},
            {kExistCommand, list},
            {kRemoveCommand, copy},
            {kRemoveCommand, list}};
}

/// A root folder of its own for the development build of the helper, and the verbs of its commands.
class HelperTest : public ::testing::Test {
public:
    HelperTest()
    {
        umask(022);
        fs::create_directories(folder);
    }

    /// Runs the helper; whatever it was asked, its reply is short.
    ProcessResult run(const Strings& arguments, const ProcessOptions& options = {}) const
    {
        Strings all = program;
        all.insert(all.end(), arguments.begin(), arguments.end());
        ProcessResult result = runProcess(all, options);
        EXPECT_LT(result.out.size() + result.err.size(), 4096U);
        return result;
    }

    /// Whether it said "COMMAND=TRUE" with exit status 0, not "COMMAND=FALSE" with another.
    bool confirms(const Strings& arguments) const
    {
        ProcessResult result = run(arguments);
        EXPECT_EQ(result.out, arguments[0] + (result.status == 0 ? "=TRUE\n" : "=FALSE\n")) << result.err;
        return result.status == 0;
    }

    /// "COMMAND=FALSE", exit status 1, and nothing changed below the root folder. Gives the reason.
    std::string expectRefused(const Strings& arguments) const
    {
        SCOPED_TRACE(::testing::PrintToString(program) + ::testing::PrintToString(arguments));
        // Without the folders' own times and the empty lock files.
        const Strings tree = {"find",    root / "Library",   "!", "-name", ".R4270-[lw]*",
                              "-printf", "\n%p %M %U:%G %l", "!", "-type", "d",
                              "-printf", " %n %s %i %T@ %C@"};
        std::string before = runProcess(tree).out;
        ProcessResult result = run(arguments);
        EXPECT_EQ(result.out, arguments[0] + "=FALSE\n") << result.err;
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(runProcess(tree).out, before);
        return result.err;
    }

    bool stage(const std::string& piece) const { return confirms({kWritePieceCommand, url, piece}); }
    bool write(const std::string& text) const { return stage(text) && confirms(publish); }

    /// Lists with the tags 1 and 0 (the copy), a staged one with 2, and nothing else.
    void reset() const
    {
        for (const fs::path& left : fs::directory_iterator(folder))
            fs::remove(left);
        std::ofstream(current) << listText(1);
        std::ofstream(previous) << listText(0);
        EXPECT_TRUE(stage(listText(2)));
    }

    /// What stands in the folder beside the locks.
    Strings names() const
    {
        Strings all;
        for (const fs::path& path : fs::directory_iterator(folder))
            if (path.string().find(".R4270-lock-") == std::string::npos)
                all.push_back(path.filename());
        std::sort(all.begin(), all.end());
        return all;
    }

    Sandbox sandbox;
    fs::path root = sandbox.path();
    ScopedVariable variable{"PDE_ROOT", root};
    fs::path folder = preferencesFolder();
    std::string lock = folder / (".R4270-lock-" + std::to_string(getuid())); ///< of his commands
    std::string current = currentListPath(), previous = previousListPath(), url = fileUrl(current);
    Strings program = {PDE_HELPER}; ///< the helper, after what it is run by
    Strings publish = {kRenameCommand, url}, keep = {kSwapCommand, "2", current, previous};
};
