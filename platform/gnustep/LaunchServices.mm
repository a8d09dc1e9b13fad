#include <CoreServices/CoreServices.h>

#import <Foundation/Foundation.h>

#include <cerrno>
#include <cstring>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

/// The executable of the application folder `path`, the file itself when it is one, or nil.
static NSString* executableAt(NSString* path)
{
    NSFileManager* files = [NSFileManager defaultManager];
    BOOL isFolder = NO;
    if ([files fileExistsAtPath:path isDirectory:&isFolder] && !isFolder)
        return [files isExecutableFileAtPath:path] ? path : nil;
    NSString* name = [[path lastPathComponent] stringByDeletingPathExtension];
    for (NSString* candidate in @[ [@"Contents/MacOS" stringByAppendingPathComponent:name], name ]) {
        NSString* executable = [path stringByAppendingPathComponent:candidate];
        if ([files isExecutableFileAtPath:executable])
            return executable;
    }
    return nil;
}

OSStatus FSPathMakeRef(const UInt8* path, FSRef* ref, Boolean* isDirectory)
{
    struct stat info;
    const char* text = reinterpret_cast<const char*>(path);
    if (text == nullptr || ref == nullptr || strlen(text) >= sizeof ref->path)
        return paramErr;
    if (stat(text, &info) != 0)
        return fnfErr;
    memcpy(ref->path, text, strlen(text) + 1);
    if (isDirectory != nullptr)
        *isDirectory = S_ISDIR(info.st_mode);
    return noErr;
}

OSStatus LSOpenFSRef(const FSRef* ref, FSRef* launchedRef)
{
    if (ref == nullptr || launchedRef != nullptr)
        return paramErr;
    NSString* path = [NSString stringWithUTF8String:ref->path];
    NSString* executable = path != nil ? executableAt(path) : nil;
    NSString* command = executable != nil ? executable : path;
    if (command == nil)
        return fnfErr;
    // The shell starts the program in the background and ends, so that the program belongs to nobody here.
    char shell[] = "/bin/sh", option[] = "-c", name[] = "sh";
    char run[] = "\"$1\" </dev/null >/dev/null 2>&1 &";
    char openWithDesktop[] = "xdg-open \"$1\" </dev/null >/dev/null 2>&1 &";
    char* arguments[] = {shell,
                         option,
                         executable != nil ? run : openWithDesktop,
                         name,
                         const_cast<char*>([command fileSystemRepresentation]),
                         nullptr};
    pid_t child = 0;
    if (posix_spawn(&child, shell, nullptr, nullptr, arguments, environ) != 0)
        return memFullErr;
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR)
        continue;
    return status == 0 ? noErr : fnfErr;
}
