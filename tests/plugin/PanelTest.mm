// The panel's life in the dialog's process.
#include "../bench/HostedPanel.h"
#include "plugin/PDEPlugInInterface.h"

#include <gtest/gtest.h>

namespace {

void* pointerIn(id object, const char* name)
{
    void* value = nullptr;
    object_getInstanceVariable(object, name, &value);
    return value;
}

} // namespace

TEST(Panel, IsOfferedToThePrintDialogOnlyAndLoadsOnceOnDemand)
{
    HostedPanel hosted;
    id<PDEPanelProtocol> panel = hosted.panel();
    EXPECT_EQ(hosted.part(@"pdeMainView"), nil);
    NSArray* keys = [panel supportedPPDOptionKeys];
    id view = hosted.part(@"pdeMainView");
    id<PDEPlugInProtocol> plugIn =
        [[[[[NSBundle bundleForClass:[(id)panel class]] principalClass] alloc] init] autorelease];
    EXPECT_EQ([plugIn PDEPanelsForType:@"6A0D8B3E-E57F-11D3-B5CC-0050E4603277" withHostInfo:nil], nil);
    // The advanced keys come first.
    EXPECT_STREQ([[keys objectAtIndex:0] UTF8String], "VelImageRGBSource");
    EXPECT_STREQ([[keys lastObject] UTF8String], "VelEdgeType");
    EXPECT_NE(view, nil);
    EXPECT_EQ([panel panelView], view);
}

TEST(Panel, IsDoneWithOnceWhicheverWayTheDialogSaysSo)
{
    HostedPanel hosted;
    PDEPlugInInterface* panel = (PDEPlugInInterface*)hosted.panel();
    [panel panelView];
    NSObject* callback = (NSObject*)pointerIn(panel, "pdePluginCallbackObject");
    NSUInteger references = [callback retainCount];
    [panel printWindowWillClose:nil];
    [panel terminate];
    EXPECT_EQ([callback retainCount], references - 1);
    EXPECT_EQ(pointerIn(panel, "compTable"), nullptr);
    EXPECT_EQ(pointerIn(hosted.part(@"profileControl"), "constTable"), nullptr);
    [panel constraints:nil];
}
