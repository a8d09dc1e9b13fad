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

TEST(Panel, IsLoadedOnceOnDemandAndDoneWithOnceWhicheverWayTheDialogSaysSo)
{
    HostedPanel hosted;
    PDEPlugInInterface* panel = (PDEPlugInInterface*)hosted.panel();
    EXPECT_EQ(hosted.part(@"pdeMainView"), nil);
    NSView* view = [panel panelView];
    [panel supportedPPDOptionKeys];
    EXPECT_EQ([panel panelView], view);
    NSObject* callback = (NSObject*)pointerIn(panel, "pdePluginCallbackObject");
    NSUInteger references = [callback retainCount];
    [panel printWindowWillClose:nil];
    [panel terminate];
    EXPECT_EQ([callback retainCount], references - 1);
    EXPECT_EQ(pointerIn(panel, "compTable"), nullptr);
    EXPECT_EQ(pointerIn(hosted.part(@"profileControl"), "constTable"), nullptr);
    [panel constraints:nil];
}
