#include "support/PanelHarness.h"
#include "support/SamplePpd.h"

#include <gtest/gtest.h>

// What the tests ask of the classes of the bundle.
@protocol Switcher
- (void)ColorToAdvancedView:(id)sender;
- (void)AdvancedToColorView:(id)sender;
- (short)getControlCountEachView;
- (void)createPPDKeyNSArrayAdvance:(NSMutableArray*)array;
- (void)createPPDKeyNSArray:(NSMutableArray*)array;
- (void)setViewBounds:(NSRect)rect;
- (NSArray*)splitCharEvery:(unsigned int)count;
@end

static NSArray* keysOf(const PDEControlItem* table)
{
    NSMutableArray* keys = [NSMutableArray array];
    for (; table->control != nil; ++table) {
        if (table->ppdKey[0] != '\0')
            [keys addObject:[NSString stringWithUTF8String:table->ppdKey]];
    }
    return keys;
}

TEST(Panel, IsOfferedToThePrintDialogOnly)
{
    id<PDEPlugInProtocol> plugIn = [[[PanelHarness::principalClass() alloc] init] autorelease];
    EXPECT_TRUE([plugIn initWithBundle:[NSBundle bundleForClass:PanelHarness::principalClass()]]);
    EXPECT_TRUE([plugIn initWithBundle:nil]);
    EXPECT_EQ([[plugIn PDEPanelsForType:PDE_PRINT_DIALOG_TYPE withHostInfo:nil] count], 1u);
    EXPECT_EQ([plugIn PDEPanelsForType:@"6A0D8B3E-E57F-11D3-B5CC-0050E4603277" withHostInfo:nil], nil);
    EXPECT_EQ([plugIn PDEPanelsForType:nil withHostInfo:nil], nil);
}

TEST(Panel, LoadsOnceAndOnDemand)
{
    PanelHarness harness;
    EXPECT_EQ(harness.outlet("pdeMainView"), nil);
    NSArray* keys = [harness.panel() supportedPPDOptionKeys];
    id view = harness.outlet("pdeMainView");
    EXPECT_NE(view, nil);
    EXPECT_EQ([harness.panel() panelView], view);
    EXPECT_TRUE([[harness.panel() supportedPPDOptionKeys] isEqual:keys]);
    ASSERT_EQ([keys count], 26u);
    NSArray* expected = [keysOf(harness.advancedTable()) arrayByAddingObjectsFromArray:@[
        @"VelQuickColor", @"VelBrightness", @"VelColorAsGray", @"VelEconoMode", @"VelEdgeType"
    ]];
    EXPECT_TRUE([keys isEqual:expected]) << [[keys description] UTF8String];
    EXPECT_STREQ([[harness.panel() panelKind] UTF8String], "vendor.quorvex.pde.R4270.velco");
    EXPECT_TRUE([harness.panel() shouldHide]);
}

TEST(Panel, BuildsTablesOfNineAndFortySixRows)
{
    PanelHarness harness;
    [harness.panel() panelView];
    id<Switcher> switcher = harness.outlet("painChange");
    EXPECT_EQ([switcher getControlCountEachView], 10 + 47);
    NSMutableArray* all = [NSMutableArray array];
    [harness.outlet("onAdvancedView") createPPDKeyNSArrayAdvance:all];
    EXPECT_EQ([all count], 46u);
    [all removeObject:@""];
    EXPECT_EQ([all count], 21u);
    [all removeAllObjects];
    [harness.outlet("onColorView") createPPDKeyNSArray:all];
    EXPECT_EQ([all count], 9u);
    EXPECT_EQ([harness.outlet("tab_SwitchVew")
                  indexOfTabViewItem:[harness.outlet("tab_SwitchVew") selectedTabViewItem]],
              0);
}

TEST(Panel, ShowsOneViewAtATimeInTheContainersSize)
{
    PanelHarness harness;
    [[harness.panel() panelView] setFrameOrigin:NSMakePoint(50, 60)];
    id color = harness.outlet("onColorView");
    id advanced = harness.outlet("onAdvancedView");
    NSView* container = [color superview];
    ASSERT_NE(container, nil);
    [harness.panel() willShow];
    EXPECT_EQ([color superview], container);
    EXPECT_EQ([advanced superview], nil);
    id<Switcher> switcher = harness.outlet("painChange");
    for (int round = 0; round < 3; ++round) {
        [switcher ColorToAdvancedView:nil];
        EXPECT_EQ([color superview], nil);
        EXPECT_EQ([advanced superview], container);
        EXPECT_TRUE(NSEqualRects([advanced bounds], [container bounds]));
        EXPECT_EQ([[container subviews] count], 1u);
        [switcher AdvancedToColorView:nil];
        EXPECT_EQ([color superview], container);
        EXPECT_EQ([[container subviews] count], 1u);
    }
    [advanced setViewBounds:NSMakeRect(50, 60, 400, 300)];
    EXPECT_TRUE(NSEqualRects([advanced bounds], NSMakeRect(0, 0, 400, 300)));
}

TEST(Panel, DoesNotSwitchBeforeTheTablesExist)
{
    id<Switcher> switcher = [[[[[NSBundle bundleForClass:PanelHarness::principalClass()]
        classNamed:@"PainChangeController_5C1E9A20_6B4D_4F3A_9E21_3D7B8C0F4A16"] alloc] init] autorelease];
    ASSERT_NE(switcher, nil);
    [switcher ColorToAdvancedView:nil];
    [switcher AdvancedToColorView:nil];
    EXPECT_EQ([switcher getControlCountEachView], 0);
}

TEST(Panel, RestoresDefaultsFirstAndThenTheSettingsAndThenTheRules)
{
    PanelHarness harness(
        "", @{
            @"R4270" : @{@"Test_Queue" : @{@"VelQuickColor" : @"UserDefined", @"VelImageRGBSource" : @"None"}}
        });
    EXPECT_TRUE([harness.panel() restoreValuesAndReturnError:nullptr]);
    EXPECT_EQ([harness.popup("menu_QuickColor") indexOfSelectedItem], 3);
    EXPECT_EQ([harness.popup("menu_iRGBSource") indexOfSelectedItem], 0);
    EXPECT_EQ([harness.popup("menu_EdgeStrength") indexOfSelectedItem], 2);
    EXPECT_TRUE(harness.enabled("button_AdvanceColorOptions"));
    EXPECT_FALSE(harness.enabled("menu_iRGBIntent"));
}

TEST(Panel, WritesOnlyTheAdvancedViewWhenPrinting)
{
    PanelHarness harness;
    [harness.panel() restoreValuesAndReturnError:nullptr];
    [harness.panel() saveValuesAndReturnError:nullptr];
    harness.choose("menu_Brightness", 0);
    harness.choose("menu_QuickColor", 2);
    EXPECT_TRUE([harness.panel() shouldPrint]);
    EXPECT_STREQ([[harness.queueSettings() objectForKey:@"VelBrightness"] UTF8String], "Normal");
    EXPECT_STREQ([[harness.queueSettings() objectForKey:@"VelImageHalftone"] UTF8String], "Detail");
}

TEST(Panel, SurvivesAnInterfaceWithoutAView)
{
    PanelHarness harness;
    [(NSObject*)harness.panel() setValue:[[[NSView alloc] init] autorelease] forKey:@"pdeMainView"];
    EXPECT_TRUE([harness.panel() restoreValuesAndReturnError:nullptr]);
    EXPECT_TRUE([harness.panel() saveValuesAndReturnError:nullptr]);
    EXPECT_EQ([[harness.panel() summaryInfo] count], 1u);
    EXPECT_EQ([[harness.panel() supportedPPDOptionKeys] count], 0u);
    EXPECT_TRUE([harness.panel() shouldPrint]);
    [harness.panel() willShow];
}

TEST(Panel, CutsStringsIntoPieces)
{
    EXPECT_NE(PanelHarness::principalClass(), nil);
    struct Case {
        const char* text;
        const char* pieces;
    };
    for (const Case& c : {Case{"", ""}, Case{"ab", "ab"}, Case{"abc", "abc"}, Case{"abcd", "abc|d"},
                          Case{"abcdef", "abc|def"}, Case{"abcdefg", "abc|def|g"}}) {
        NSString* text = [NSString stringWithUTF8String:c.text];
        NSArray* pieces = [(id)text splitCharEvery:3];
        EXPECT_STREQ([[pieces componentsJoinedByString:@"|"] UTF8String], c.pieces);
    }
}
