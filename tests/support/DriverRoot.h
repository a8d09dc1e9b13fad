#pragma once

#include "profiles/DriverPaths.h"
#include "support/Sandbox.h"

/// The driver's files below a scratch root, for this process and its children as long as the object lives:
/// the preferences folder, and this build's helper and walker.
class DriverRoot {
public:
    DriverRoot() : builds_(helperFolder()), root_("PDE_ROOT", sandbox_.path())
    {
        std::filesystem::create_directories(helperFolder().parent_path());
        std::filesystem::create_directory_symlink(builds_, helperFolder());
        std::filesystem::create_directories(preferencesFolder());
    }

    /// Puts a shell script in the helper's place.
    void replaceHelper(const std::string& script) const
    {
        if (std::filesystem::is_symlink(helperFolder()))
            std::filesystem::remove(helperFolder());
        const std::filesystem::path helper = helperExecutable();
        sandbox_.write(helper.lexically_relative(sandbox_.path()), "#!/bin/sh\n" + script);
        std::filesystem::permissions(helper, std::filesystem::perms(0755));
    }

    std::filesystem::path operator/(const std::string& name) const { return sandbox_ / name; }

private:
    static std::filesystem::path helperFolder()
    {
        return std::filesystem::path(helperExecutable()).parent_path().parent_path().parent_path();
    }

    Sandbox sandbox_;
    std::filesystem::path builds_;
    ScopedVariable root_;
};
