#pragma once

#include "common/ClassNames.h"
#include "common/ControlItem.h"

/// Shows one of the two views in the container and makes them one panel: what the panel asks goes to both.
/// Several names are spelt in their own way; they are part of the interface. Both views keep their controls
/// and values while the other is shown.
@interface PainChangeController : NSObject
{
    IBOutlet ColorOptions* onColorView;
    IBOutlet AdvancedColorOptions* onAdvancedView;
    IBOutlet NSView* onMainCustomView;
}

/// Actions of the two buttons; without a table of the view in question nothing happens.
- (IBAction)ColorToAdvancedView:(id)sender;
- (IBAction)AdvancedToColorView:(id)sender;
- (void)SHowColorToAdvancedView;
- (void)ShowAdvancedToColorView;

/// The advanced view first, but for the defaults.
- (void)creatPDEControlTableEachView;
- (void)addPPDArrayEachView:(NSMutableArray*)array;
- (void)deallocPDEControlTableEachView;
- (void)setPPDFileEachView:(void*)file;
- (void)setPMPrintEachView:(PMPrintSettings)setting session:(PMPrintSession)session;
- (void)createPDEItemForPPDKeyEachView;
- (void)defaultFromPPDInfoEachView;
- (void)getControlValueFromTickettEachView;
- (void)setControlValueToTicketEachView;

/// Clears `count` pointers of `out`, stores the Color Options table and the advanced table in the first two
/// and returns 2. `out` has room for two at least.
- (SInt16)getControlDataEachView:(PDEControlItem**)out count:(SInt16)count;
/// Rows of both tables, end rows included. Part of the interface, with no caller.
- (SInt16)getControlCountEachView;

/// Both views' summary; the advanced part is what the Quick Color preset dictates, or for "Custom" the
/// advanced view's own.
- (void)getSummaryTextEachView:(NSMutableDictionary*)dict addArray:(NSMutableArray*)array;
- (void)getSummaryAdvancedItemAccodingQuickColor:(NSMutableDictionary*)dict addArray:(NSMutableArray*)array;

/// Selects in the advanced view what the Quick Color preset dictates.
- (void)changeAdvancedItemAccodingQuickColor;

@end
