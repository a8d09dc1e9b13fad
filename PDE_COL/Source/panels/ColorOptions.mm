#include "panels/ColorOptions.h"

#include "common/ControlTable.h"
#include "common/PDECommon+ControlTable.h"
#include "common/PDECommon+Summary.h"
#include "common/PDECommon+Ticket.h"

@implementation ColorOptions

- (void)drawRect:(NSRect)rect
{
}

- (void)setPPDFile:(void*)file
{
    ppd = static_cast<ppd_file_t*>(file);
}

- (void)setPMPrint:(PMPrintSettings)printSettings session:(PMPrintSession)printSession
{
    setting = printSettings;
    session = printSession;
}

- (void)setViewBounds:(NSRect)rect
{
    [self setBounds:NSMakeRect(0, 0, rect.size.width, rect.size.height)];
}

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
    constexpr SInt16 count = sizeof rows / sizeof rows[0];
    ctrlTable = createControlTable(rows, count, ppd);
    ctrlCount = ctrlTable != nullptr ? count : 0;
}

- (void)deallocPDEControlTable
{
    freeControlTable(ctrlTable);
    ctrlTable = nullptr;
}

- (PDEControlItem*)getControlData
{
    return ctrlTable;
}

- (SInt16)getControlCount
{
    return ctrlCount;
}

- (void)addPPDArray:(NSMutableArray*)array
{
    (void)[PDECommon commonAddPPDArray:array table:ctrlTable];
}

- (void)createPPDKeyNSArray:(NSMutableArray*)array
{
    addAllKeys(array, ctrlTable);
}

- (void)createPDEItemForPPDKey
{
    [PDECommon commonBuildPDEItem:ctrlTable ppdfile:ppd];
}

- (void)getSummaryText:(NSMutableDictionary*)dict addArray:(NSMutableArray*)array
{
    (void)[PDECommon commonGetSummaryText:ctrlTable adddict:dict addArray:array];
}

- (void)setControlValueToTicket
{
    (void)[PDECommon commonSyncTicketFromPane:setting session:session table:ctrlTable];
}

- (void)getControlValueFromTicket
{
    (void)[PDECommon commonSyncPaneFromTicket:setting session:session table:ctrlTable];
}

- (void)defaultFromPPDInfo
{
    [PDECommon commonDefaultFromPPDInfo:ctrlTable];
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
