#pragma once

#include "profiles/DriverPaths.h"
#include "support/Sandbox.h"

/// The driver's files below a scratch root, for this process and its children as long as the object lives:
/// the preferences folder, and this build's helper, walker and icon.
class DriverRoot : public Sandbox {
public:
    DriverRoot()
    {
        std::filesystem::create_directories(preferencesFolder());
        for (const char* installed : {"Library/Application Support", "Library/Printers/QUORVEX/R4270"})
            std::filesystem::create_symlink(PDE_BUILD_DIR "/root" / std::filesystem::path(installed),
                                            *this / installed);
    }

    /// Puts a shell script in the helper's place.
    void replaceHelper(const std::string& script) const
    {
        if (std::filesystem::is_symlink(*this / "Library/Application Support"))
            std::filesystem::remove(*this / "Library/Application Support");
        write(helperExecutable(), "#!/bin/sh\n" + script);
        std::filesystem::permissions(helperExecutable(), std::filesystem::perms(0755));
    }

private:
    ScopedVariable root_{"PDE_ROOT", path()};
};
