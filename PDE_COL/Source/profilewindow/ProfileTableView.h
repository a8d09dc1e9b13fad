#pragma once

#import <Cocoa/Cocoa.h>

#include "common/ClassNames.h"

/// The table of profiles: Space is a click on the "inmenu" box of the selected row, for its data source.
@interface ProfileTableView : NSTableView
@end
