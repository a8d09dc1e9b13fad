#pragma once

#include "common/ControlItem.h"
#include "common/PDECommon+Ticket.h"

/// "Disk" or "Card" in the person's language, "" for any other location, nil when it cannot be had.
NSString* locationWord(SInt32 location);

/// Profiles behind the PPD's choices as items of the profile pop-ups. What the print settings hold of them is
/// declared where those are, in PDECommon+Ticket.h.
@interface PDECommon (Profiles)

/// Appends an item for each listed profile to the profile pop-ups of the table. -1 when the lists cannot be
/// read, -50 when the table holds a row of another kind: every real table does.
+ (int)commonAddMenuFromProfilePlist:(const PDEControlItem*)table;

@end
