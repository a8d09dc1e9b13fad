// The panel's life in the dialog's process, and the keys of its profile window.
#include "support/PanelHarness.h"
#include "support/Sandbox.h"

#include <gtest/gtest.h>

// What the tests ask of the classes of the bundle.
@protocol PanelParts
- (void)initWithProfileControl __attribute__((objc_method_family(none)));
- (void)showProfileManagementWindow:(id)sender;
- (void)addButton:(id)sender;
- (void)constraints:(id)sender;
@end

// Closes a window by its title bar while its modal run goes on, and ends the run if that did not.
@interface WindowCloser : NSObject
@end
@implementation WindowCloser
- (void)wake:(NSWindow*)window
{
    [NSApp postEvent:[NSEvent otherEventWithType:NSApplicationDefined
                                        location:NSZeroPoint
                                   modifierFlags:0
                                       timestamp:0
                                    windowNumber:[window windowNumber]
                                         context:nil
                                         subtype:0
                                           data1:0
                                           data2:0]
             atStart:NO];
}
- (void)close:(NSWindow*)window
{
    [window performClose:nil];
    [self wake:window];
}
- (void)giveUp:(NSWindow*)window
{
    ADD_FAILURE() << "the modal run goes on";
    [NSApp stopModal];
    [self wake:window];
}
@end

namespace {

void* pointerIn(id object, const char* name)
{
    void* value = nullptr;
    object_getInstanceVariable(object, name, &value);
    return value;
}

/// The profile window on the screen, without a modal run, and keys for it.
class ProfileKeys : public ::testing::Test {
protected:
    void SetUp() override
    {
        [harness.panel() panelView];
        control = harness.outlet("profileControl");
        [control initWithProfileControl];
        window = [(NSObject*)control valueForKey:@"_profileManagementWindow"];
        [window makeKeyAndOrderFront:nil];
    }
    void TearDown() override { [window orderOut:nil]; }

    id part(NSString* outlet) { return [(NSObject*)control valueForKey:outlet]; }
    int mode() { return [part(@"buttonIdentify") intValue]; }
    bool focused(NSString* outlet) { return [window firstResponder] == part(outlet); }
    void press(NSString* characters)
    {
        for (NSUInteger i = 0; i < [characters length]; ++i) {
            NSString* key = [characters substringWithRange:NSMakeRange(i, 1)];
            NSEvent* event = [NSEvent keyEventWithType:NSKeyDown
                                              location:NSZeroPoint
                                         modifierFlags:0
                                             timestamp:0
                                          windowNumber:[window windowNumber]
                                               context:nil
                                            characters:key
                           charactersIgnoringModifiers:key
                                             isARepeat:NO
                                               keyCode:0];
            // Through the queue, which makes it the current event.
            [NSApp postEvent:event atStart:YES];
            [NSApp sendEvent:[NSApp nextEventMatchingMask:NSKeyDownMask
                                                untilDate:[NSDate distantFuture]
                                                   inMode:NSDefaultRunLoopMode
                                                  dequeue:YES]];
        }
    }
    // No list, and no helper.
    Sandbox sandbox;
    ScopedVariable root{"PDE_ROOT", sandbox.path().string()};
    PanelHarness harness;
    id<PanelParts> control = nil;
    NSWindow* window = nil;
};

} // namespace

TEST(Panel, IsOfferedToThePrintDialogOnlyAndLoadsOnceOnDemand)
{
    id<PDEPlugInProtocol> plugIn = [[[PanelHarness::principalClass() alloc] init] autorelease];
    EXPECT_EQ([plugIn PDEPanelsForType:@"6A0D8B3E-E57F-11D3-B5CC-0050E4603277" withHostInfo:nil], nil);
    PanelHarness harness;
    EXPECT_EQ(harness.outlet("pdeMainView"), nil);
    NSArray* keys = [harness.panel() supportedPPDOptionKeys];
    EXPECT_NE(harness.outlet("pdeMainView"), nil);
    EXPECT_EQ([harness.panel() panelView], harness.outlet("pdeMainView"));
    // The advanced keys come first.
    EXPECT_STREQ([[keys objectAtIndex:0] UTF8String], "VelImageRGBSource");
    EXPECT_STREQ([[keys lastObject] UTF8String], "VelEdgeType");
}

TEST(Panel, AppliesTheRulesToItsFirstViewAloneWhenQuickColorChanges)
{
    PanelHarness harness;
    [harness.panel() restoreValuesAndReturnError:nullptr];
    // Changed behind the rules' back: the action of Quick Color must not notice.
    [harness.outlet("check_ColorAsGrayscale") setIntValue:1];
    harness.choose("menu_QuickColor", 3);
    EXPECT_TRUE(harness.enabled("button_AdvanceColorOptions"));
    EXPECT_TRUE(harness.enabled("menu_iRGBSource"));
    harness.choose("menu_QuickColor", -1);
    EXPECT_FALSE(harness.enabled("button_AdvanceColorOptions"));
    NSUInteger firstView = 5;
    EXPECT_EQ([[[harness.panel() summaryInfo] objectForKey:@"Summary Display Order"] count], firstView - 1)
        << "nothing is dictated, and Quick Color has no value";
}

TEST(Panel, SurvivesAnInterfaceWithoutAView)
{
    PanelHarness harness;
    [(NSObject*)harness.panel() setValue:[[[NSView alloc] init] autorelease] forKey:@"pdeMainView"];
    EXPECT_TRUE([harness.panel() restoreValuesAndReturnError:nullptr]);
    EXPECT_TRUE([harness.panel() saveValuesAndReturnError:nullptr]);
    EXPECT_EQ([[harness.panel() summaryInfo] count], 1u);
    EXPECT_TRUE([harness.panel() shouldPrint]);
}

TEST(Panel, IsDoneWithOnceWhicheverWayTheDialogSaysSo)
{
    for (bool closed : {true, false}) {
        PanelHarness harness;
        [harness.panel() panelView];
        NSObject* callback = (NSObject*)pointerIn(harness.panel(), "pdePluginCallbackObject");
        NSUInteger references = [callback retainCount];
        if (closed)
            [harness.panel() printWindowWillClose:nil];
        [harness.panel() terminate];
        [harness.panel() printWindowWillClose:nil];
        EXPECT_EQ([callback retainCount], references - 1);
        EXPECT_EQ(pointerIn(harness.panel(), "pdePluginCallbackObject"), nullptr);
        EXPECT_EQ(pointerIn(harness.panel(), "compTable"), nullptr);
        EXPECT_EQ(pointerIn(harness.outlet("profileControl"), "constTable"), nullptr);
        [(id<PanelParts>)harness.panel() constraints:nil];
    }
}

TEST_F(ProfileKeys, EndTheEditAndNothingElse)
{
    NSInteger rows = [part(@"_profileTableView") numberOfRows];
    [control addButton:nil];
    press(@"\t");
    EXPECT_TRUE(focused(@"_browse"));
    press(@"\r");
    EXPECT_TRUE([window isVisible] && mode() == 1) << "there is no name yet";
    [window makeFirstResponder:part(@"_fileNameEdit")];
    press(@"zz.icc\r");
    EXPECT_TRUE([window isVisible] && mode() == 0);
    EXPECT_EQ([part(@"_profileTableView") numberOfRows], rows + 1);
    [control addButton:nil];
    press(@"x\033");
    EXPECT_TRUE([window isVisible] && mode() == 0);
    EXPECT_EQ([part(@"_profileTableView") numberOfRows], rows + 1);
    EXPECT_STREQ([[part(@"_fileNameEdit") stringValue] UTF8String], "");
}

TEST_F(ProfileKeys, TickTheSelectedProfileOutsideAnEdit)
{
    NSTableView* table = part(@"_profileTableView");
    [control addButton:nil];
    press(@"zz.icc\r");
    NSTableColumn* column = [table tableColumnWithIdentifier:@"inmenu"];
    auto ticked = [&] {
        return [[[table dataSource] tableView:table objectValueForTableColumn:column row:0] intValue];
    };
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
}

TEST_F(ProfileKeys, ClosingTheWindowEndsItsRun)
{
    [window orderOut:nil];
    WindowCloser* closer = [[[WindowCloser alloc] init] autorelease];
    NSArray* modes = @[ NSModalPanelRunLoopMode ];
    [closer performSelector:@selector(close:) withObject:window afterDelay:0.2 inModes:modes];
    [closer performSelector:@selector(giveUp:) withObject:window afterDelay:10 inModes:modes];
    [control showProfileManagementWindow:nil];
    [NSObject cancelPreviousPerformRequestsWithTarget:closer];
    EXPECT_FALSE([window isVisible]);
}
