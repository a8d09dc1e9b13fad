#include "common/TableFixture.h"
#include "panels/PresetConstraints.h"

#include <cstdlib>

class ControlTable : public TableFixture {};

TEST_F(ControlTable, KeepsAPopupAndACheckBoxWithinTheirValues)
{
    openPpd(samplePpd());
    build({{makePopup(), PDEControlKindPopup, "VelEdgeType", nullptr, nullptr, kNoKey},
           {makeCheckBox(), PDEControlKindCheckBox, "VelEconoMode", "EconoMode", nullptr, kNoKey},
           {makeText(), PDEControlKindText, kNoKey, "Brightness:", nullptr, kNoKey}});
    auto setAndGet = [&](SInt16 row, int value) {
        [PDECommon commonSetControlValueWithSInt32:&table[row] value:value];
        return [PDECommon commonGetControlValueWithSInt32:&table[row]];
    };
    EXPECT_EQ([table[0].control numberOfItems], 4);
    EXPECT_EQ(setAndGet(0, 2), 2);
    EXPECT_EQ(setAndGet(0, 4), 2);
    EXPECT_EQ(setAndGet(0, 7), 2);
    EXPECT_EQ(setAndGet(0, -1), -1);
    EXPECT_EQ(setAndGet(1, 1), 1);
    EXPECT_EQ(setAndGet(1, 0), 0);
    EXPECT_EQ(setAndGet(2, 5), 0);
    [PDECommon commonSetControlValueWithSInt32:nullptr value:1];
    EXPECT_EQ([PDECommon commonGetControlValueWithSInt32:nullptr], 0);
    EXPECT_EQ([PDECommon commonGetControlValueFromPPDWithSInt32:nullptr], 0);
    EXPECT_EQ([PDECommon commonGetControlValueFromPPDWithNSString:nullptr], nil);
}

TEST_F(ControlTable, CountsPopupItemsFromOneForTheRules)
{
    PDEControlItem popup = {makePopup(), PDEControlKindPopup, kNoKey, nullptr, nullptr, kNoKey};
    PDEControlItem box = {makeCheckBox(), PDEControlKindCheckBox, kNoKey, nullptr, nullptr, kNoKey};
    for (auto [value, there, back] : std::vector<std::array<int, 3>>{{-1, 0, 0}, {0, 1, 0}, {4, 5, 3}}) {
        EXPECT_EQ([PDECommon commonConvertToCSTValue:&popup convalue:value], there);
        EXPECT_EQ([PDECommon commonConvertFromCSTValue:&popup convalue:value], back);
        EXPECT_EQ([PDECommon commonConvertToCSTValue:&box convalue:value], value);
        EXPECT_EQ([PDECommon commonConvertFromCSTValue:nullptr convalue:value], value);
    }
}

TEST_F(ControlTable, SkipsRowsWithoutAnOptionAndStopsAtAMissingControl)
{
    openPpd(samplePpd());
    build({{makeText(), PDEControlKindText, kNoKey, "Brightness:", nullptr, kNoKey},
           {makePopup(), PDEControlKindPopup, "VelEdgeType", nullptr, nullptr, kNoKey},
           {nil, PDEControlKindPopup, "VelBrightness", nullptr, nullptr, kNoKey},
           {makePopup(), PDEControlKindPopup, "VelQuickColor", nullptr, nullptr, kNoKey}});
    NSMutableArray* keys = [NSMutableArray array];
    EXPECT_EQ([PDECommon commonAddPPDArray:keys table:table], 0);
    EXPECT_TRUE([keys isEqual:@[ @"VelEdgeType" ]]);
    EXPECT_EQ([PDECommon commonAddPPDArray:nil table:table], -50);
    EXPECT_NE(table[1].choices, nullptr);
    EXPECT_EQ(table[3].choices, nullptr);
    [PDECommon commonDefaultFromPPDInfo:table];
    EXPECT_EQ([table[1].control indexOfSelectedItem], 2);
}

TEST_F(ControlTable, CompoundsTablesInOrderAndSharesTheirRows)
{
    openPpd(samplePpd());
    build({{makePopup(), PDEControlKindPopup, "VelEdgeType", nullptr, nullptr, "EdgeTypePopup"},
           {makePopup(), PDEControlKindPopup, "VelBrightness", nullptr, nullptr, kNoKey}});
    PDEControlItem empty = kEndRow;
    PDEControlItem* tables[] = {table, &empty, nullptr, table};
    PDEControlItem* compound = [PDECommon commonControlTableCompound:tables count:4];
    ASSERT_NE(compound, nullptr);
    EXPECT_EQ(compound[0].choices, table[0].choices);
    EXPECT_EQ(compound[3].control, table[1].control);
    EXPECT_EQ(compound[4].kind, PDEControlKindEnd);
    EXPECT_EQ(compound[4].control, nil);
    free(compound);
}

TEST_F(ControlTable, TakesEmptyTablesAndNone)
{
    PDEControlItem end = kEndRow;
    for (PDEControlItem* t : {&end, (PDEControlItem*)nullptr}) {
        vColorPresetConstraints(t);
        EXPECT_EQ(bMatchCondition(0, t), 0);
        [PDECommon commonDefaultFromPPDInfo:t];
        [PDECommon commonBuildPDEItem:t ppdfile:nullptr];
        EXPECT_EQ([PDECommon commonAddPPDArray:[NSMutableArray array] table:t], 0);
    }
}

TEST_F(ControlTable, LabelsEveryTabBeyondTheFourthLikeTheFourth)
{
    NSTabView* tabs = [[NSTabView alloc] initWithFrame:NSMakeRect(0, 0, 300, 200)];
    controls.push_back(tabs);
    for (int i = 0; i < 5; ++i)
        [tabs addTabViewItem:[[[NSTabViewItem alloc] initWithIdentifier:@(i)] autorelease]];
    PDEControlItem row = {tabs, PDEControlKindTab, kNoKey, "Image", nullptr, kNoKey};
    [PDECommon commonSetControlTitleFromLocalizeString:&row];
    NSMutableArray* labels = [NSMutableArray array];
    for (NSTabViewItem* item in [tabs tabViewItems])
        [labels addObject:[item label]];
    EXPECT_TRUE(([labels isEqual:@[ @"Image", @"Text", @"Graphics", @"Simulation", @"Simulation" ]]));
}
