#pragma once

#include "common/ClassNames.h"

#import <Cocoa/Cocoa.h>

/// The class of the panel's root view in the interface file.
@interface MainView : NSView
@end
