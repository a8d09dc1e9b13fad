#include "support/PanelHarness.h"

#include "support/SamplePpd.h"
#include "support/Sandbox.h"

#include <gtest/gtest.h>

@interface HarnessCallback : NSObject <PDEPluginCallback>
{
@public
    PMSettingsObject* settings_;
    PMSessionObject* session_;
}
@end

@implementation HarnessCallback
- (PMPrintSettings)printSettings
{
    return [settings_ handle];
}
- (PMPrintSession)printSession
{
    return [session_ handle];
}
- (ppd_file_t*)ppdFile
{
    return [[session_ printer] ppdFile];
}
@end

@protocol HarnessTables
- (PDEControlItem*)getControlData;
@end

static NSString* text(const char* utf8)
{
    return [NSString stringWithUTF8String:utf8];
}

Class PanelHarness::principalClass()
{
    NSBundle* bundle = [NSBundle bundleWithPath:text(PDE_BUILD_DIR "/R4270.plugin")];
    EXPECT_TRUE([bundle load]);
    return [bundle principalClass];
}

PanelHarness::PanelHarness(const std::string& ppd, NSDictionary* settings, NSString* queue)
{
    Sandbox sandbox;
    auto file = sandbox.write("printer.ppd", ppd.empty() ? samplePpd() : ppd);
    NSString* error = nil;
    printer_ = [[PMPrinterObject alloc] initWithIdentifier:queue
                                                 deviceURI:nil
                                                      file:text(file.c_str())
                                                     error:&error];
    EXPECT_NE(printer_, nil) << [[error description] UTF8String];
    session_ = [[PMSessionObject alloc] initWithPrinter:printer_];
    settings_ = [[PMSettingsObject alloc] init];
    if (settings != nil)
        [settings_ replaceValues:settings];
    HarnessCallback* callback = [[HarnessCallback alloc] init];
    callback->settings_ = settings_;
    callback->session_ = session_;
    callback_ = callback;
    id<PDEPlugInProtocol> plugIn = [[principalClass() alloc] init];
    [plugIn initWithBundle:[NSBundle bundleForClass:principalClass()]];
    panel_ = [[[plugIn PDEPanelsForType:PDE_PRINT_DIALOG_TYPE withHostInfo:callback] lastObject] retain];
    [plugIn release];
}

PanelHarness::~PanelHarness()
{
    [panel_ terminate];
    [panel_ release];
    [callback_ release];
    [settings_ release];
    [session_ release];
    [printer_ release];
}

id PanelHarness::outlet(const char* name) const
{
    for (NSString* owner in @[ @"onColorView", @"onAdvancedView" ]) {
        id view = [(NSObject*)panel_ valueForKey:owner];
        if (object_getInstanceVariable(view, name, nullptr) != nullptr)
            return [view valueForKey:text(name)];
    }
    return [(NSObject*)panel_ valueForKey:text(name)];
}

void PanelHarness::choose(const char* name, NSInteger index) const
{
    [popup(name) selectItemAtIndex:index];
    [popup(name) sendAction:[popup(name) action] to:[popup(name) target]];
}

void PanelHarness::check(const char* name, int state) const
{
    [outlet(name) setIntValue:state];
    [outlet(name) sendAction:[outlet(name) action] to:[outlet(name) target]];
}

PDEControlItem* PanelHarness::colorTable() const
{
    return [(id<HarnessTables>)[(NSObject*)panel_ valueForKey:@"onColorView"] getControlData];
}

PDEControlItem* PanelHarness::advancedTable() const
{
    return [(id<HarnessTables>)[(NSObject*)panel_ valueForKey:@"onAdvancedView"] getControlData];
}

NSDictionary* PanelHarness::queueSettings() const
{
    return [[settings() objectForKey:@"R4270"] objectForKey:@"Test_Queue"];
}
