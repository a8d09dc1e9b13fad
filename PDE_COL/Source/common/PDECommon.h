#pragma once

#include "common/ClassNames.h"

#import <Cocoa/Cocoa.h>

/// The logic that both views share, as class methods only. Each subsystem adds its category in its own room:
/// +ControlTable, +PPD, +Ticket and +Summary here, +Profiles and +Discovery in theirs. Main thread only; no
/// method raises for a missing option, item or value.
@interface PDECommon : NSObject
@end

/// A keyword or key as text; nil when it is not ASCII.
NSString* asciiText(const char* bytes);

/// The bundle's text for a key, in the person's language; nil for nil.
NSString* localizedText(NSString* key);
