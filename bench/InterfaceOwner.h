#pragma once

#include "common/ClassNames.h"

#import <Cocoa/Cocoa.h>

/// An owner of the panel's interface file for benchmarks, which take from it what they measure.
@interface InterfaceOwner : NSObject
{
@public
    AdvancedColorOptions* onAdvancedView;
    ColorOptions* onColorView;
    PainChangeController* painChange;
    ProfileControl* profileControl;
    NSView* pdeMainView;
}
/// Loads the file; the owner and all that it made are autoreleased.
+ (InterfaceOwner*)loadInterface;
@end
