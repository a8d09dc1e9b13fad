#include "plugin/PainChangeController.h"

#include "panels/AdvancedColorOptions.h"
#include "panels/ColorOptions.h"

// The Quick Color item with which the user's own advanced settings count.
static const SInt16 kQuickColorCustom = 3;

@implementation PainChangeController

// The views lie beside the container in the interface file: inside it, the one that is not shown would have
// no owner.
- (void)awakeFromNib
{
    [self ShowAdvancedToColorView];
}

- (IBAction)ColorToAdvancedView:(id)sender
{
    if ([onAdvancedView getControlData] != nullptr)
        [self SHowColorToAdvancedView];
}

- (IBAction)AdvancedToColorView:(id)sender
{
    if ([onColorView getControlData] != nullptr)
        [self ShowAdvancedToColorView];
}

- (void)show:(ControlTableView*)view inPlaceOf:(NSView*)other
{
    NSRect bounds = onMainCustomView != nil ? [onMainCustomView bounds] : NSZeroRect;
    // The container may have got another size while the view was not in it.
    [view setFrame:bounds];
    [view setViewBounds:bounds];
    [onMainCustomView addSubview:view];
    [onMainCustomView replaceSubview:other with:view];
}

- (void)SHowColorToAdvancedView
{
    [self show:onAdvancedView inPlaceOf:onColorView];
}

- (void)ShowAdvancedToColorView
{
    [self show:onColorView inPlaceOf:onAdvancedView];
}

- (void)creatPDEControlTableEachView
{
    [onAdvancedView createPDEControlTable];
    [onColorView createPDEControlTable];
}

- (void)addPPDArrayEachView:(NSMutableArray*)array
{
    [onAdvancedView addPPDArray:array];
    [onColorView addPPDArray:array];
}

- (void)deallocPDEControlTableEachView
{
    [onAdvancedView deallocPDEControlTable];
    [onColorView deallocPDEControlTable];
}

- (void)setPPDFileEachView:(void*)file
{
    [onAdvancedView setPPDFile:file];
    [onColorView setPPDFile:file];
}

- (void)setPMPrintEachView:(PMPrintSettings)setting session:(PMPrintSession)session
{
    [onAdvancedView setPMPrint:setting session:session];
    [onColorView setPMPrint:setting session:session];
}

- (void)createPDEItemForPPDKeyEachView
{
    [onAdvancedView createPDEItemForPPDKey];
    [onColorView createPDEItemForPPDKey];
}

- (void)defaultFromPPDInfoEachView
{
    // The only one that starts with the Color Options view.
    [onColorView defaultFromPPDInfo];
    [onAdvancedView defaultFromPPDInfo];
}

- (void)getControlValueFromTickettEachView
{
    [onAdvancedView getControlValueFromTicket];
    [onColorView getControlValueFromTicket];
}

- (void)setControlValueToTicketEachView
{
    [onAdvancedView setControlValueToTicket];
    [onColorView setControlValueToTicket];
}

- (SInt16)getControlDataEachView:(PDEControlItem**)out count:(SInt16)count
{
    for (SInt16 i = 0; i < count; ++i)
        out[i] = nullptr;
    out[0] = [onColorView getControlData];
    out[1] = [onAdvancedView getControlData];
    return 2;
}

- (SInt16)getControlCountEachView
{
    return (SInt16)([onColorView getControlCount] + [onAdvancedView getControlCount]);
}

- (void)getSummaryTextEachView:(NSMutableDictionary*)dict addArray:(NSMutableArray*)array
{
    [onColorView getSummaryText:dict addArray:array];
    if ([onColorView getQuickColorValue] == kQuickColorCustom)
        [onAdvancedView getSummaryText:dict addArray:array];
    else
        [self getSummaryAdvancedItemAccodingQuickColor:dict addArray:array];
}

- (void)getSummaryAdvancedItemAccodingQuickColor:(NSMutableDictionary*)dict addArray:(NSMutableArray*)array
{
    [onAdvancedView getSummaryItemAccodingQuickColor:[onColorView getQuickColorValue]
                                                 Eco:[onColorView getEconoModeValue]
                                         summaryDict:dict
                                            addArray:array];
}

- (void)changeAdvancedItemAccodingQuickColor
{
    [onAdvancedView changeItemAccodingQuickColor:[onColorView getQuickColorValue]
                                             Eco:[onColorView getEconoModeValue]];
}

@end
