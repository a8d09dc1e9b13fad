#include "dialog/Appearance.h"
#include "dialog/Desktop.h"
#include "dialog/DialogController.h"
#include "dialog/Text.h"
#include "script/Script.h"

#include <cstdio>
#include <cstdlib>

extern char** environ;

/// Starts the dialog as soon as the application runs.
@interface Starter : NSObject
{
@public
    Options options;
    int script;
}
@end

@implementation Starter

- (void)applicationDidFinishLaunching:(NSNotification*)notification
{
    NSString* reason = nil;
    DialogController* dialog = [[DialogController alloc] initWithOptions:options error:&reason];
    if (dialog == nil) {
        fprintf(stderr, "printdialog: %s\n", textOf(reason).c_str());
        exit(EXIT_FAILURE);
    }
    if (script >= 0)
        driveByScript(dialog, script);
    else
        [dialog showPanel];
}

- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)application
{
    return NO;
}

@end

int main(int argc, char** argv)
{
    Options options;
    if (std::optional<int> status = parseOptions(argc, argv, options))
        return *status;
    int script = options.script.empty() ? -1 : openScript(options.script);
    if (script < 0 && !options.script.empty())
        return 2;
    settleLanguage();
    // The toolkit would take our arguments for documents to open. A second dialog is for another document:
    // it never gives way to the first, also where the user wants that of programs.
    char useRunningCopy[] = "-NSUseRunningCopy", no[] = "NO";
    char* toolkitArguments[] = {argv[0], useRunningCopy, no, nullptr};
    [NSProcessInfo initializeWithArguments:toolkitArguments count:3 environment:environ];
    @autoreleasepool {
        registerAppearance();
        @try {
            [NSApplication sharedApplication];
        } @catch (NSException* exception) {
            fprintf(stderr, "printdialog: no display (DISPLAY=%s): %s\n", getenv("DISPLAY") ?: "",
                    textOf([exception reason]).c_str());
            return EXIT_FAILURE;
        }
        applyAppearance(options.appearance);
        Starter* starter = [[Starter alloc] init];
        starter->options = options;
        starter->script = script;
        [NSApp setDelegate:(id)starter];
        [NSApp run];
    }
    return EXIT_SUCCESS;
}
