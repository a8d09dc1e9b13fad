#pragma once

#include "common/ControlItem.h"
#include "plugin/ClassNames.h"

#include <cups/ppd.h>

/// The first view of the panel: Quick Color, brightness, grayscale, economy mode and edge type. It hands its
/// control table to PDECommon for everything it does.
@interface ColorOptions : NSView
{
    ppd_file_t* ppd;
    PDEControlItem* ctrlTable;
    SInt16 ctrlCount;
    PMPrintSettings setting;
    PMPrintSession session;
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

/// Not owned; must outlive the view. `file` is a ppd_file_t.
- (void)setPPDFile:(void*)file;
- (void)setPMPrint:(PMPrintSettings)printSettings session:(PMPrintSession)printSession;

/// Bounds with origin (0, 0) and the rectangle's size.
- (void)setViewBounds:(NSRect)rect;

/// Builds the table from the outlets and the PPD; deallocPDEControlTable frees it. Without memory the table
/// stays null, and everything below treats it as empty.
- (void)createPDEControlTable;
- (void)deallocPDEControlTable;
- (PDEControlItem*)getControlData;
/// Rows of the table, its end row included.
- (SInt16)getControlCount;

/// Adds the option keywords to a mutable array; createPPDKeyNSArray: adds "" for rows without one, too, and
/// has no caller.
- (void)addPPDArray:(NSMutableArray*)array;
- (void)createPPDKeyNSArray:(NSMutableArray*)array;

/// Fills the menus from the PPD and sets the localised titles.
- (void)createPDEItemForPPDKey;
- (void)getSummaryText:(NSMutableDictionary*)dict addArray:(NSMutableArray*)array;
- (void)setControlValueToTicket;
- (void)getControlValueFromTicket;
- (void)defaultFromPPDInfo;

/// Selected Quick Color item, -1 for none. Item 3 is "Custom": only with it do the advanced settings count.
- (SInt16)getQuickColorValue;
- (SInt16)getEconoModeValue;

@end
