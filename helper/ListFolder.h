#pragma once

#include "Account.h"
#include "Outcome.h"
#include "profiles/Descriptor.h"

#include <string>
#include <string_view>

// The preferences folder and the files in it. All calls are made inside a RootScope. A name is always one of
// the helper's own, relative to the open folder.

/// The preferences folder, reached from the root folder by descriptor without following a link, so that
/// nothing on the way can be changed under the helper.
class ListFolder {
public:
    /// kUnsafeFolder when a folder on the checked way (see BuildKind.h) is missing, is a link, belongs to
    /// another than the owner of the lists or root, or may be written by others.
    Outcome open(const Account& account);

    /// Then waits until no other command of the calling user is at work, for a few seconds at most, then
    /// kBusy. The kernel frees the lock when the process ends, however it ends.
    Outcome openLocked(const Account& account);

    int descriptor() const { return folder_.get(); }

private:
    Descriptor folder_;
    Descriptor lock_;
};

/// What stands at a name of the folder. kOwnFile: a regular file of the owner of the lists or root that
/// nobody else may write.
enum class NameState { kAbsent, kOwnFile, kSomethingElse };
NameState stateOf(const ListFolder& folder, const std::string& name);

/// Opens an own file without ever waiting for it; none when the name is absent or something else, or has a
/// second name and is to be written.
Descriptor openOwnFile(const ListFolder& folder, const std::string& name, int flags);

/// Makes an own file that nobody else can read, in place of whatever has that name.
Descriptor makeOwnFile(const ListFolder& folder, const std::string& name);

/// Opens the lock file of that name, which is made when it is absent or something else.
Descriptor openLockFile(const ListFolder& folder, const std::string& name);

/// Removes whatever has that name; true when it is gone. Folders stay.
bool removeFile(const ListFolder& folder, const std::string& name);

bool writeAll(const Descriptor& file, std::string_view text);

/// Makes the complete file `from`, open as `file`, durable and readable for everybody, then puts it in the
/// place of `to` in one step. kDone exactly when it stands there.
Outcome publish(const ListFolder& folder, const Descriptor& file, const std::string& from,
                const std::string& to);
