#pragma once

#include "common/ControlItem.h"
#include "common/PDECommon.h"

#include <cups/ppd.h>

/// A table or record argument may be null and then counts as empty. Values are what the control holds: the
/// index of a pop-up's selected item (-1 for none), a check box's 0 or 1.
@interface PDECommon (ControlTable)

/// Adds the option keyword of every row that has one. -50 for a null array or a keyword that is no text.
+ (int)commonAddPPDArray:(NSMutableArray*)array table:(const PDEControlItem*)table;

/// Sets the titles of all rows from the bundle's strings and fills the pop-ups from the PPD.
+ (void)commonBuildPDEItem:(PDEControlItem*)table ppdfile:(ppd_file_t*)ppd;

/// Sets every row that has an option to the PPD's default.
+ (void)commonDefaultFromPPDInfo:(PDEControlItem*)table;

/// 0 for a null record and for kinds that have no value.
+ (int)commonGetControlValueWithSInt32:(const PDEControlItem*)item;

/// A pop-up ignores an index that it has no item for; a negative one clears its selection.
+ (void)commonSetControlValueWithSInt32:(const PDEControlItem*)item value:(int)value;

/// Between a control's value and the value that the preset rules compare: pop-up items count from 1 there,
/// 0 being no selection.
+ (int)commonConvertToCSTValue:(const PDEControlItem*)item convalue:(int)value;
+ (int)commonConvertFromCSTValue:(const PDEControlItem*)item convalue:(int)value;

+ (void)commonSetControlTitleFromLocalizeString:(const PDEControlItem*)item;

/// Looks the texts up and assigns neither: part of the interface, with no caller.
+ (void)commonSetControlTitleFromPPD:(const PDEControlItem*)item ppdfile:(ppd_file_t*)ppd;

/// One new table with the rows of `count` tables, in their order; null when memory is short. The rows
/// share their controls and choices with the tables, which must outlive it. Free it with free().
+ (PDEControlItem*)commonControlTableCompound:(PDEControlItem* const*)tables count:(int)count;

@end
