#pragma once

#import <Cocoa/Cocoa.h>

#include "plugin/ClassNames.h"

/// A table cell that shows its image as a small icon and no text.
@interface IconedCell : NSCell
@end
