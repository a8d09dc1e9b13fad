// The panel's life in the dialog's process, and the keys of its profile window.
#include "../bench/HostedPanel.h"
#include "plugin/PDEPlugInInterface.h"
#include "profilewindow/ProfileControl.h"
#include "support/Sandbox.h"

#include <gtest/gtest.h>

namespace {

void* pointerIn(id object, const char* name)
{
    void* value = nullptr;
    object_getInstanceVariable(object, name, &value);
    return value;
}

/// A panel without lists and without a helper.
class Panel : public ::testing::Test {
protected:
    id part(NSString* outlet) { return [(NSObject*)control valueForKey:outlet]; }
    /// Through the queue, which makes each the current event.
    void press(NSString* keys)
    {
        for (NSUInteger i = 0; i < [keys length]; ++i) {
            NSString* key = [keys substringWithRange:NSMakeRange(i, 1)];
            [NSApp postEvent:[NSEvent keyEventWithType:NSKeyDown
                                                    location:NSZeroPoint
                                               modifierFlags:0
                                                   timestamp:0
                                                windowNumber:[window windowNumber]
                                                     context:nil
                                                  characters:key
                                 charactersIgnoringModifiers:key
                                                   isARepeat:NO
                                                     keyCode:0]
                     atStart:YES];
            [NSApp sendEvent:[NSApp nextEventMatchingMask:NSKeyDownMask
                                                untilDate:[NSDate distantFuture]
                                                   inMode:NSDefaultRunLoopMode
                                                  dequeue:YES]];
        }
    }

    Sandbox sandbox;
    ScopedVariable root{"PDE_ROOT", sandbox.path().string()};
    HostedPanel hosted;
    PDEPlugInInterface* panel = (PDEPlugInInterface*)hosted.panel();
    NSArray* options = [panel supportedPPDOptionKeys];
    ProfileControl* control = hosted.part(@"profileControl");
    NSWindow* window = part(@"_profileManagementWindow");
};

} // namespace

TEST_F(Panel, IsOfferedToThePrintDialogOnlyAndLoadsOnce)
{
    id<PDEPlugInProtocol> plugIn =
        [[[[[NSBundle bundleForClass:[panel class]] principalClass] alloc] init] autorelease];
    EXPECT_EQ([plugIn PDEPanelsForType:@"6A0D8B3E-E57F-11D3-B5CC-0050E4603277" withHostInfo:nil], nil);
    // The advanced keys come first.
    EXPECT_STREQ([[options objectAtIndex:0] UTF8String], "VelImageRGBSource");
    EXPECT_STREQ([[options lastObject] UTF8String], "VelEdgeType");
    EXPECT_EQ([panel panelView], hosted.part(@"pdeMainView"));
    EXPECT_EQ(hosted.part(@"profileControl"), control);
}

TEST_F(Panel, IsDoneWithOnceWhicheverWayTheDialogSaysSo)
{
    NSObject* callback = (NSObject*)pointerIn(panel, "pdePluginCallbackObject");
    NSUInteger references = [callback retainCount];
    [panel printWindowWillClose:nil];
    [panel terminate];
    EXPECT_EQ([callback retainCount], references - 1);
    EXPECT_EQ(pointerIn(panel, "compTable"), nullptr);
    EXPECT_EQ(pointerIn(control, "constTable"), nullptr);
    [panel constraints:nil];
}

TEST_F(Panel, TakesReturnAndEscapeForAnEditAndSpaceForTheSelectedProfile)
{
    [control initWithProfileControl];
    [window makeKeyAndOrderFront:nil];
    NSTableView* table = part(@"_profileTableView");
    auto ticked = [&] {
        NSTableColumn* column = [table tableColumnWithIdentifier:@"inmenu"];
        return [[[table dataSource] tableView:table objectValueForTableColumn:column row:0] intValue];
    };
    auto expect = [&](int mode, NSInteger rows) {
        EXPECT_TRUE([window isVisible]);
        EXPECT_EQ([part(@"buttonIdentify") intValue], mode);
        EXPECT_EQ([table numberOfRows], rows);
    };
    [control addButton:nil];
    press(@"\r\t");
    EXPECT_EQ([window firstResponder], part(@"_browse"));
    press(@"\r");
    expect(kAdding, 0); // there is no name yet
    [window makeFirstResponder:part(@"_fileNameEdit")];
    press(@"zz.icc\r");
    expect(kBrowsing, 1);
    [control addButton:nil];
    press(@"x\033");
    expect(kBrowsing, 1);

    [window makeFirstResponder:table];
    press(@" ");
    EXPECT_EQ(ticked(), 1) << "none is selected";
    [table selectRowIndexes:[NSIndexSet indexSetWithIndex:0] byExtendingSelection:NO];
    press(@" ");
    EXPECT_EQ(ticked(), 0);
    [control addButton:nil];
    [window makeFirstResponder:table];
    press(@" ");
    EXPECT_EQ(ticked(), 0) << "an edit holds the selection";
    [window orderOut:nil];
}

TEST_F(Panel, EndsTheRunOfItsProfileWindowWhenThatIsClosed)
{
    // The toolkit ends a window's own run by itself once the window is gone.
    NSModalSession run = [NSApp beginModalSessionForWindow:[NSOpenPanel openPanel]];
    EXPECT_FALSE([control windowShouldClose:window]);
    EXPECT_EQ([NSApp runModalSession:run], NSRunStoppedResponse);
    [NSApp endModalSession:run];
}
