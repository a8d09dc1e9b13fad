#pragma once

#include "common/ControlItem.h"
#include "common/PDECommon.h"

/// "Disk" or "Card" in the person's language, "" for any other location, nil when it cannot be had.
NSString* locationWord(SInt32 location);

/// Profiles behind the PPD's choices: as items of the profile pop-ups, and in a queue's dictionary of the
/// print settings under "<key>CustomFilename" (the coded path on the printer) and "<key>Custom" ("True" when
/// a profile is chosen). Positions count the listed profiles of the row's list from 1. The list file is
/// read on each call.
@interface PDECommon (Profiles)

/// Appends an item for each listed profile to the profile pop-ups of the table. -1 when the lists cannot be
/// read, -50 when the table holds a row of another kind: every real table does.
+ (int)commonAddMenuFromProfilePlist:(const PDEControlItem*)table;

/// Position of the stored profile; 0 when it is not listed, -1 for a row without profiles or no dictionary.
+ (SInt16)commonGetTicketAddedProfile:(const PDEControlItem*)item dict:(NSDictionary*)dictionary;

/// Stores the profile at a position; a position that no profile has stores an empty path. 0, or -1 as above.
+ (int)commonSetTicketAddedProfile:(const PDEControlItem*)item
                              dict:(NSMutableDictionary*)dictionary
                            select:(SInt16)position;

/// The stored flag as it is, borrowed; nil when absent and for a row without profiles.
+ (id)commonGetTicketAddedProfileFlag:(const PDEControlItem*)item dict:(NSDictionary*)dictionary;

/// Stores the flag on rows with profiles. Always 0.
+ (int)commonSetTicketAddedProfileFlag:(const PDEControlItem*)item
                                  dict:(NSMutableDictionary*)dictionary
                                  flag:(NSString*)flag;

@end
