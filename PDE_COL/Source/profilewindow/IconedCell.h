#pragma once

#import <Cocoa/Cocoa.h>

#include "common/ClassNames.h"

/// A table cell that shows its image as a small icon and no text.
@interface IconedCell : NSCell
@end
