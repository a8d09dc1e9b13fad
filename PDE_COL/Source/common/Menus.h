#pragma once

#import <Cocoa/Cocoa.h>

/// Appends an item for each title, in order and also for titles that are there already, which a pop-up's own
/// methods would displace. An empty pop-up then shows its first item.
void appendItems(NSPopUpButton* popup, NSArray* titles);
