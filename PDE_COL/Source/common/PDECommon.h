#pragma once

#include "common/ClassNames.h"

#import <Cocoa/Cocoa.h>

/// The logic that both views share, as class methods only. Each subsystem adds its category in its own room:
/// +ControlTable, +PPD, +Ticket and +Summary here, +Profiles and +Discovery in theirs. Main thread only; no
/// method raises for a missing option, item or value.
@interface PDECommon : NSObject
@end
