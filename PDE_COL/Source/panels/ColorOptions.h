#pragma once

#include "panels/ControlTableView.h"

/// The first view of the panel: Quick Color, brightness, grayscale, economy mode and edge type.
@interface ColorOptions : ControlTableView
{
    IBOutlet NSPopUpButton* menu_QuickColor;
    IBOutlet NSPopUpButton* menu_Brightness;
    IBOutlet NSButton* check_ColorAsGrayscale;
    IBOutlet NSButton* check_EconomyPrint;
    IBOutlet NSPopUpButton* menu_EdgeStrength;
    IBOutlet NSTextField* text_QuickColor;
    IBOutlet NSTextField* text_Brightness;
    IBOutlet NSTextField* text_Strength;
    IBOutlet NSButton* button_AdvanceColorOptions;
}

/// Builds the table from the outlets and the PPD; deallocPDEControlTable frees it.
- (void)createPDEControlTable;

/// Adds the key of every row to a mutable array, "" for rows without an option. Has no caller.
- (void)createPPDKeyNSArray:(NSMutableArray*)array;

/// Selected Quick Color item, -1 for none. Item 3 is "Custom": only with it do the advanced settings count.
- (SInt16)getQuickColorValue;
- (SInt16)getEconoModeValue;

@end
