#pragma once

#import <AppKit/AppKit.h>

/// Runs a pop-up's list, which is on screen, until the user closes it; `selected` is highlighted first, -1
/// for none. The index of the chosen item, or -1.
NSInteger runList(NSMenuView* view, NSInteger selected);
