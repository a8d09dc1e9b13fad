#pragma once

#include "profiles/HelperProtocol.h"
#include "support/Process.h"
#include "support/Sandbox.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

using Strings = std::vector<std::string>;

/// A short, valid list file; `tag` tells one from another.
std::string listText(int tag);

/// What a tree holds: a line for each entry with its type, owner, mode, links, size, time and contents. The
/// folders' own times and the helper's empty lock files are left out.
std::string treeOf(const std::filesystem::path& folder);

/// A root folder of its own for the development build of the helper, and the verbs of its commands.
class HelperTest : public ::testing::Test {
protected:
    HelperTest();

    /// Runs the helper; whatever it was asked, its reply is short.
    ProcessResult run(const Strings& arguments, ProcessOptions options = {}) const;
    bool confirms(const Strings& arguments) const;
    /// "COMMAND=FALSE", exit status 1, and nothing changed below the root folder. Gives the reason.
    std::string expectRefused(const Strings& arguments) const;

    bool stage(const std::string& piece) const { return confirms({kWritePieceCommand, url, piece}); }
    bool rename() const { return confirms({kRenameCommand, url}); }
    bool write(const std::string& text) const { return stage(text) && rename(); }
    /// What stands in the folder beside the locks.
    Strings names() const;

    Sandbox sandbox;
    std::filesystem::path root, folder;
    std::string program, current, previous, url;
};
