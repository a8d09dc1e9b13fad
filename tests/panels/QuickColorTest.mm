#include "support/PanelHarness.h"
#include "support/SamplePpd.h"

#include <gtest/gtest.h>

// The title that a stored choice keyword has in its row's menu.
static NSString* titleOf(const PDEControlItem& row, NSString* keyword)
{
    for (NSArray* choice in (NSArray*)row.choices) {
        if ([[choice objectAtIndex:kChoiceKeyword] isEqual:keyword])
            return [choice objectAtIndex:kChoiceText];
    }
    return nil;
}

static NSUInteger occurrences(NSString* name, NSDictionary* summary)
{
    NSUInteger count = 0;
    for (NSString* entry in [summary objectForKey:@"Summary Display Order"])
        count += [entry isEqual:name] ? 1 : 0;
    return count;
}

static NSString* localised(NSString* key)
{
    return [[NSBundle bundleForClass:PanelHarness::principalClass()] localizedStringForKey:key
                                                                                     value:nil
                                                                                     table:nil];
}

TEST(QuickColor, SummaryShowsWhatPrintingWritesForEveryPresetAndEconomyMode)
{
    for (int preset = 0; preset < 4; ++preset) {
        for (int economy = 0; economy < 2; ++economy) {
            PanelHarness panel;
            [panel.panel() restoreValuesAndReturnError:nullptr];
            // The user's own settings, none of which is a preset's.
            for (const PDEControlItem* row = panel.advancedTable(); row->kind == PDEControlKindPopup; ++row)
                [row->control selectItemAtIndex:[row->control numberOfItems] - 1];
            panel.choose("menu_QuickColor", preset);
            panel.check("check_EconomyPrint", economy);
            NSDictionary* summary = [panel.panel() summaryInfo];
            [panel.panel() saveValuesAndReturnError:nullptr];
            EXPECT_TRUE([panel.panel() shouldPrint]);
            int rows = 0;
            for (const PDEControlItem* row = panel.advancedTable(); row->kind == PDEControlKindPopup; ++row) {
                NSString* key = [NSString stringWithUTF8String:row->ppdKey];
                NSString* written = titleOf(*row, [panel.settings() objectForKey:key]);
                NSString* shown =
                    [summary objectForKey:localised([NSString stringWithUTF8String:row->summaryName])];
                EXPECT_TRUE(written != nil && [written isEqual:shown])
                    << row->ppdKey << " preset " << preset << " economy " << economy;
                ++rows;
                if (preset == 3)
                    EXPECT_EQ([row->control indexOfSelectedItem], [row->control numberOfItems] - 1);
            }
            EXPECT_EQ(rows, 21);
        }
    }
}

TEST(QuickColor, EconomyModeNamesTheEdgesTwiceAndNeverLowersThoseOfText)
{
    struct Case {
        int preset;
        NSUInteger image, text, graphics;
    };
    for (const Case& c : {Case{0, 1, 1, 2}, Case{1, 1, 1, 1}, Case{2, 2, 1, 2}}) {
        PanelHarness panel;
        [panel.panel() restoreValuesAndReturnError:nullptr];
        panel.choose("menu_QuickColor", c.preset);
        panel.check("check_EconomyPrint", 1);
        NSDictionary* summary = [panel.panel() summaryInfo];
        EXPECT_EQ(occurrences(localised(@"Image EdgeEnhance"), summary), c.image) << c.preset;
        EXPECT_EQ(occurrences(localised(@"Text EdgeEnhance"), summary), c.text) << c.preset;
        EXPECT_EQ(occurrences(localised(@"Graphics EdgeEnhance"), summary), c.graphics) << c.preset;
        [panel.panel() shouldPrint];
        EXPECT_EQ([panel.popup("menu_iEdgeEnhancement") indexOfSelectedItem], 0);
        EXPECT_EQ([panel.popup("menu_tEdgeEnhancement") indexOfSelectedItem], c.preset == 1 ? 0 : 1);
        EXPECT_EQ([panel.popup("menu_gEdgeEnhancement") indexOfSelectedItem], 0);
    }
}

TEST(QuickColor, WithoutASelectionDictatesNothing)
{
    PanelHarness panel;
    [panel.panel() restoreValuesAndReturnError:nullptr];
    [panel.popup("menu_iHalftone") selectItemAtIndex:3];
    panel.choose("menu_QuickColor", -1);
    NSDictionary* summary = [panel.panel() summaryInfo];
    EXPECT_EQ(occurrences(localised(@"Image Halftone"), summary), 0u);
    [panel.panel() shouldPrint];
    EXPECT_EQ([panel.popup("menu_iHalftone") indexOfSelectedItem], 3);
}

TEST(QuickColor, SkipsItemsThatThePpdLacks)
{
    std::string oneHalftone = withOption(samplePpd(), "VelImageHalftone",
                                         "*OpenUI *VelImageHalftone/Image Halftone: PickOne\n"
                                         "*DefaultVelImageHalftone: Auto\n"
                                         "*VelImageHalftone Auto/Auto: \"\"\n"
                                         "*CloseUI: *VelImageHalftone\n");
    PanelHarness panel(oneHalftone);
    [panel.panel() restoreValuesAndReturnError:nullptr];
    panel.choose("menu_QuickColor", 2);
    EXPECT_EQ([[panel.panel() summaryInfo] objectForKey:localised(@"Image Halftone")], nil);
    [panel.panel() shouldPrint];
    EXPECT_EQ([panel.popup("menu_iHalftone") indexOfSelectedItem], 0);
}
