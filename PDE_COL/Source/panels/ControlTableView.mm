#include "panels/ControlTableView.h"

#include "common/ControlTable.h"
#include "common/PDECommon+ControlTable.h"
#include "common/PDECommon+Summary.h"
#include "common/PDECommon+Ticket.h"

@implementation ControlTableView

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

- (void)useRows:(const PDEControlItem*)rows count:(SInt16)count
{
    ctrlTable = createControlTable(rows, count, ppd);
    ctrlCount = ctrlTable != nullptr ? count : (SInt16)0;
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

@end
