#include "Fuzz.h"
#include "profiles/DriverPaths.h"
#include "support/PanelHarness.h"
#include "support/Sandbox.h"

#import <AppKit/AppKit.h>

// Whatever a file of print settings holds: the panel takes it or leaves it, and what it saves afterwards it
// restores and saves as it is, shows in its summary and can be read from a file again.

static Sandbox sandbox;
static PanelHarness* harness;

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    static ScopedVariable root("PDE_ROOT", sandbox.path());
    std::filesystem::create_directories(preferencesFolder());
    std::filesystem::copy_file(PDE_SOURCE_DIR "/fuzz/corpus/ListFileFuzz/short-list.plist",
                               currentListPath());
    (void)[[NSAutoreleasePool alloc] init]; // as long as the program runs
    [NSApplication sharedApplication];
    harness = new PanelHarness;
    return 0;
}

static NSDictionary* restoredAndSaved()
{
    require([harness->panel() restoreValuesAndReturnError:nullptr]);
    require([harness->panel() saveValuesAndReturnError:nullptr]);
    return [NSDictionary dictionaryWithDictionary:harness->settings()];
}

static NSDictionary* valuesOf(const std::filesystem::path& file)
{
    NSString* error = nil;
    NSDictionary* values = [PMSettingsObject valuesOfFile:[NSString stringWithUTF8String:file.c_str()]
                                                    error:&error];
    require((values == nil) == (error != nil));
    return values;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    @autoreleasepool {
        NSDictionary* values = valuesOf(sandbox.write("settings.plist", textOf(data, size)));
        if (values == nil)
            return 0;
        [harness->settingsObject() replaceValues:values];
        NSDictionary* saved = restoredAndSaved();
        require([restoredAndSaved() isEqual:saved]);
        NSDictionary* summary = [harness->panel() summaryInfo];
        for (NSString* name in [summary objectForKey:@"Summary Display Order"])
            require([[summary objectForKey:name] isKindOfClass:[NSString class]]);
        require([harness->panel() shouldPrint]);
        std::filesystem::path file = sandbox / "saved.plist";
        if ([harness->settingsObject() writeToFile:[NSString stringWithUTF8String:file.c_str()]])
            require(valuesOf(file) != nil);
    }
    return 0;
}
