#pragma once

#include "common/ClassNames.h"
#include "common/ControlItem.h"

#include <cups/ppd.h>

/// What both views of the panel are: the owner of a control table, which hands it to PDECommon for everything
/// that is asked of it. A view builds its table in createPDEControlTable, with useRows:count:.
@interface ControlTableView : NSView
{
    ppd_file_t* ppd;
    PDEControlItem* ctrlTable;
    SInt16 ctrlCount;
    PMPrintSettings setting;
    PMPrintSession session;
}

/// Not owned; must outlive the view. `file` is a ppd_file_t.
- (void)setPPDFile:(void*)file;
- (void)setPMPrint:(PMPrintSettings)printSettings session:(PMPrintSession)printSession;

/// Bounds with origin (0, 0) and the rectangle's size.
- (void)setViewBounds:(NSRect)rect;

/// Makes a table of these rows, the end row included, with the choices that the PPD has for them. Without
/// memory the table stays null, and everything below treats it as empty.
- (void)useRows:(const PDEControlItem*)rows count:(SInt16)count;
- (void)deallocPDEControlTable;
- (PDEControlItem*)getControlData;
/// Rows of the table, its end row included.
- (SInt16)getControlCount;

/// Adds the option keywords to a mutable array.
- (void)addPPDArray:(NSMutableArray*)array;

/// Fills the menus from the PPD and sets the localised titles.
- (void)createPDEItemForPPDKey;
- (void)getSummaryText:(NSMutableDictionary*)dict addArray:(NSMutableArray*)array;
- (void)setControlValueToTicket;
- (void)getControlValueFromTicket;
- (void)defaultFromPPDInfo;

@end
