#include "../bench/HostedPanel.h"
#include "profiles/DriverPaths.h"
#include "support/Sandbox.h"

#import <AppKit/AppKit.h>
#include <cassert>

// Whatever a file of print settings holds: the panel takes it or leaves it, and what it saves afterwards it
// restores and saves as it is, and shows in its summary.

static Sandbox sandbox;
static HostedPanel* hosted;

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    setenv("PDE_ROOT", sandbox.path().c_str(), 1);
    std::filesystem::create_directories(preferencesFolder());
    std::filesystem::copy_file(PDE_SOURCE_DIR "/fuzz/corpus/ListFileFuzz/short-list.plist",
                               currentListPath());
    (void)[[NSAutoreleasePool alloc] init]; // as long as the program runs
    [NSApplication sharedApplication];
    hosted = new HostedPanel;
    return 0;
}

static NSDictionary* restoredAndSaved()
{
    [hosted->panel() restoreValuesAndReturnError:nullptr];
    [hosted->panel() saveValuesAndReturnError:nullptr];
    return [NSDictionary dictionaryWithDictionary:[hosted->settings() values]];
}

extern "C" int LLVMFuzzerTestOneInput(const char* data, size_t size)
{
    @autoreleasepool {
        auto file = sandbox.write("settings.plist", {data, size});
        NSDictionary* values = [PMSettingsObject valuesOfFile:[NSString stringWithUTF8String:file.c_str()]
                                                        error:nullptr];
        if (values == nil)
            return 0;
        [hosted->settings() replaceValues:values];
        NSDictionary* saved = restoredAndSaved();
        assert([restoredAndSaved() isEqual:saved]);
        NSDictionary* summary = [hosted->panel() summaryInfo];
        for (NSString* name in [summary objectForKey:@"Summary Display Order"])
            assert([[summary objectForKey:name] isKindOfClass:[NSString class]]);
        [hosted->panel() shouldPrint];
    }
    return 0;
}
