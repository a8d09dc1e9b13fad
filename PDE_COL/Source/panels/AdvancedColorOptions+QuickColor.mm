#include "panels/AdvancedColorOptions.h"

#include "common/PDECommon+Summary.h"

#include <vector>

// The pop-ups that the presets dictate to, each with its summary name and the item for presets 0, 1 and 2.
struct DictatedItem {
    NSPopUpButton* popup;
    const char* summaryName;
    SInt16 items[3];
};

static void selectItem(const DictatedItem& row, NSInteger item)
{
    if (item < [row.popup numberOfItems])
        [row.popup selectItemAtIndex:item];
}

static void summarise(const DictatedItem& row, NSInteger item, NSMutableDictionary* dict,
                      NSMutableArray* array)
{
    NSString* title = item < [row.popup numberOfItems] ? [row.popup itemTitleAtIndex:item] : nil;
    (void)[PDECommon commonGetSummaryTextQuickColor:row.summaryName
                                           itemName:title
                                            adddict:dict
                                           addArray:array];
}

@implementation AdvancedColorOptions (QuickColor)

// The 21 pop-ups with the item of the preset, then those that economy mode sets back to item 0: in preset 0
// the edges of graphics, in preset 2 those of images and graphics. The edges of text are never lowered.
- (std::vector<std::pair<DictatedItem, NSInteger>>)itemsForQuickColor:(SInt16)quickColor eco:(SInt16)eco
{
    if (quickColor < 0 || quickColor > 2)
        return {};
    const DictatedItem rows[] = {
        {menu_iRGBSource, "Image RGB Source", {1, 1, 1}},
        {menu_iRGBIntent, "Image RGB Intent", {0, 0, 1}},
        {menu_iRGBGrayTreatment, "Image RGB Gray Treatment", {1, 0, 1}},
        {menu_iDestinationProfile, "Image Destination Profile", {0, 0, 0}},
        {menu_iHalftone, "Image Halftone", {1, 1, 2}},
        {menu_iEdgeEnhancement, "Image EdgeEnhance", {0, 0, 1}},
        {menu_tRGBSource, "Text RGB Source", {1, 1, 1}},
        {menu_tRGBIntent, "Text RGB Intent", {1, 0, 1}},
        {menu_tRGBGrayTreatment, "Text RGB Gray Treatment", {1, 0, 1}},
        {menu_tDestinationProfile, "Text Destination Profile", {0, 0, 0}},
        {menu_tHalftone, "Text Halftone", {2, 1, 2}},
        {menu_tEdgeEnhancement, "Text EdgeEnhance", {1, 0, 1}},
        {menu_gRGBSource, "Graphics RGB Source", {1, 1, 1}},
        {menu_gRGBIntent, "Graphics RGB Intent", {1, 0, 1}},
        {menu_gRGBGrayTreatment, "Graphics RGB Gray Treatment", {1, 0, 1}},
        {menu_gDestinationProfile, "Graphics Destination Profile", {0, 0, 0}},
        {menu_gHalftone, "Graphics Halftone", {1, 1, 2}},
        {menu_gEdgeEnhancement, "Graphics EdgeEnhance", {1, 0, 1}},
        {menu_sSimulationProfile, "Simulation Profile", {0, 0, 0}},
        {menu_sMatchPaperColor, "Match Paper Color", {0, 0, 0}},
        {menu_sCMYKGrayTreatment, "CMYK Gray Treatment", {0, 0, 0}},
    };
    std::vector<std::pair<DictatedItem, NSInteger>> result;
    for (const DictatedItem& row : rows)
        result.emplace_back(row, row.items[quickColor]);
    if (eco != 0 && quickColor == 2)
        result.emplace_back(rows[5], 0);
    if (eco != 0 && quickColor != 1)
        result.emplace_back(rows[17], 0);
    return result;
}

- (void)changeItemAccodingQuickColor:(int)quickColor Eco:(int)eco
{
    for (const auto& [row, item] : [self itemsForQuickColor:(SInt16)quickColor eco:(SInt16)eco])
        selectItem(row, item);
}

- (void)getSummaryItemAccodingQuickColor:(int)quickColor
                                     Eco:(int)eco
                             summaryDict:(NSMutableDictionary*)dict
                                addArray:(NSMutableArray*)array
{
    // Economy mode replaces values that are already there and names them twice in the order: kept so.
    for (const auto& [row, item] : [self itemsForQuickColor:(SInt16)quickColor eco:(SInt16)eco])
        summarise(row, item, dict, array);
}

@end
