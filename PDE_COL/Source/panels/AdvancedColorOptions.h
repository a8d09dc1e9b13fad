#pragma once

#include "panels/ControlTableView.h"

/// The second view of the panel: source, intent, gray treatment, destination, halftone and edges for images,
/// text and graphics, the simulation of another press, and the buttons to profiles and downloads.
@interface AdvancedColorOptions : ControlTableView
{
    IBOutlet NSPopUpButton* menu_iRGBSource;
    IBOutlet NSPopUpButton* menu_iRGBIntent;
    IBOutlet NSPopUpButton* menu_iRGBGrayTreatment;
    IBOutlet NSPopUpButton* menu_iDestinationProfile;
    IBOutlet NSPopUpButton* menu_iHalftone;
    IBOutlet NSPopUpButton* menu_iEdgeEnhancement;
    IBOutlet NSPopUpButton* menu_tRGBSource;
    IBOutlet NSPopUpButton* menu_tRGBIntent;
    IBOutlet NSPopUpButton* menu_tRGBGrayTreatment;
    IBOutlet NSPopUpButton* menu_tDestinationProfile;
    IBOutlet NSPopUpButton* menu_tHalftone;
    IBOutlet NSPopUpButton* menu_tEdgeEnhancement;
    IBOutlet NSPopUpButton* menu_gRGBSource;
    IBOutlet NSPopUpButton* menu_gRGBIntent;
    IBOutlet NSPopUpButton* menu_gRGBGrayTreatment;
    IBOutlet NSPopUpButton* menu_gDestinationProfile;
    IBOutlet NSPopUpButton* menu_gHalftone;
    IBOutlet NSPopUpButton* menu_gEdgeEnhancement;
    IBOutlet NSPopUpButton* menu_sSimulationProfile;
    IBOutlet NSPopUpButton* menu_sMatchPaperColor;
    IBOutlet NSPopUpButton* menu_sCMYKGrayTreatment;
    IBOutlet NSTabView* tab_SwitchVew;
    IBOutlet NSTextField* text_iRGBSource;
    IBOutlet NSTextField* text_iRGBIntent;
    IBOutlet NSTextField* text_iRGBGrayTreatment;
    IBOutlet NSTextField* text_iDestinationProfile;
    IBOutlet NSTextField* text_iHalftone;
    IBOutlet NSTextField* text_iEdgeEnhancement;
    IBOutlet NSTextField* text_tRGBSource;
    IBOutlet NSTextField* text_tRGBIntent;
    IBOutlet NSTextField* text_tRGBGrayTreatment;
    IBOutlet NSTextField* text_tDestinationProfile;
    IBOutlet NSTextField* text_tHalftone;
    IBOutlet NSTextField* text_tEdgeEnhancement;
    IBOutlet NSTextField* text_gRGBSource;
    IBOutlet NSTextField* text_gRGBIntent;
    IBOutlet NSTextField* text_gRGBGrayTreatment;
    IBOutlet NSTextField* text_gDestinationProfile;
    IBOutlet NSTextField* text_gHalftone;
    IBOutlet NSTextField* text_gEdgeEnhancement;
    IBOutlet NSTextField* text_sSimulationProfile;
    IBOutlet NSTextField* text_sMatchPaperColor;
    IBOutlet NSTextField* text_sCMYKGrayTreatment;
    IBOutlet NSButton* button_ManageProfile;
    IBOutlet NSButton* button_DownloadManager;
    IBOutlet NSButton* button_HideAdvancedOptions;
}

/// Builds the table from the outlets and the PPD and shows the Image tab; deallocPDEControlTable frees it.
/// Asks the helper whether this user may manage profiles, and waits for its answer.
- (void)createPDEControlTable;

/// Adds the key of every row to a mutable array, "" for rows without an option. Has no caller.
- (void)createPPDKeyNSArrayAdvance:(NSMutableArray*)array;

/// Fills the menus from the PPD and the profile lists.
- (void)createPDEItemForPPDKey;

/// Starts the download manager; nothing happens where it is not installed.
- (IBAction)downloadManagerButton:(id)sender;

/// Selects what a Quick Color preset dictates, without any action being sent; `eco` is the economy mode. An
/// index that is no preset ("Custom" is 3, no selection -1) dictates nothing. 16-bit values.
- (void)changeItemAccodingQuickColor:(int)quickColor Eco:(int)eco;

/// Adds the same values to a summary, whatever is selected now.
- (void)getSummaryItemAccodingQuickColor:(int)quickColor
                                     Eco:(int)eco
                             summaryDict:(NSMutableDictionary*)dict
                                addArray:(NSMutableArray*)array;

@end
