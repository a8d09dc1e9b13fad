#include "panels/ColorOptions.h"

#include "common/ControlTable.h"

@implementation ColorOptions

- (void)createPDEControlTable
{
    const PDEControlItem rows[] = {
        {menu_QuickColor, PDEControlKindPopup, "VelQuickColor", nullptr, "Quick Color", "QuickColorPopup"},
        {menu_Brightness, PDEControlKindPopup, "VelBrightness", nullptr, "Brightness", kNoKey},
        {check_ColorAsGrayscale, PDEControlKindCheckBox, "VelColorAsGray", "Color as Grayscale",
         "Color as Grayscale", "ColorAsGrayCheckBox"},
        {check_EconomyPrint, PDEControlKindCheckBox, "VelEconoMode", "EconoMode", "EconoMode",
         "EconoModeCheckBox"},
        {menu_EdgeStrength, PDEControlKindPopup, "VelEdgeType", nullptr, "EdgeType", "EdgeTypePopup"},
        {text_QuickColor, PDEControlKindText, kNoKey, "Quick Color:", nullptr, kNoKey},
        {text_Brightness, PDEControlKindText, kNoKey, "Brightness:", nullptr, kNoKey},
        {text_Strength, PDEControlKindText, kNoKey, "EdgeType:", nullptr, kNoKey},
        {button_AdvanceColorOptions, PDEControlKindButton, kNoKey, "Advanced Color Options", nullptr,
         "GoToAdvancedOptionsButton"},
        kEndRow,
    };
    [self useRows:rows count:sizeof rows / sizeof rows[0]];
}

- (void)createPPDKeyNSArray:(NSMutableArray*)array
{
    addAllKeys(array, ctrlTable);
}

- (SInt16)getQuickColorValue
{
    return (SInt16)[menu_QuickColor indexOfSelectedItem];
}

- (SInt16)getEconoModeValue
{
    return (SInt16)[check_EconomyPrint intValue];
}

@end
