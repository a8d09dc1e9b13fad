#pragma once

#include "common/ControlItem.h"
#include "common/PDECommon.h"

/// Entries of the dialog's summary: the localised name of a setting and its value text. `dict` receives the
/// entry, `array` the name, in display order.
@interface PDECommon (Summary)

/// Adds every row that has a summary name and a value; -50 when a row had to be left out.
+ (int)commonGetSummaryText:(const PDEControlItem*)table
                    adddict:(NSMutableDictionary*)dict
                   addArray:(NSMutableArray*)array;

/// Adds one entry. `key` is the localisation key of the name; `value` is the value, whatever its label says.
/// -50 when either is missing.
+ (int)commonGetSummaryTextQuickColor:(const char*)key
                             itemName:(NSString*)value
                              adddict:(NSMutableDictionary*)dict
                             addArray:(NSMutableArray*)array;

@end
