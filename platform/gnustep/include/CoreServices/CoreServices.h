#pragma once

// Launch Services: opening an application that is named by its path.

#include <CFNetwork/CFNetwork.h>
#include <CoreFoundation/CoreFoundation.h>

enum : OSStatus { noErr = 0, paramErr = -50, memFullErr = -108, fnfErr = -43 };

/// A file-system reference: the path, on Linux.
typedef struct {
    char path[1024];
} FSRef;

extern "C" {

/// fnfErr when nothing exists at `path` (UTF-8). `isDirectory` may be null.
OSStatus FSPathMakeRef(const UInt8* path, FSRef* ref, Boolean* isDirectory);

/// Starts the application without waiting for it. `launchedRef` must be null.
OSStatus LSOpenFSRef(const FSRef* ref, FSRef* launchedRef);

} // extern "C"
