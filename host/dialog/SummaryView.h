#pragma once

#import <AppKit/AppKit.h>

/// The Summary page: a table of item names and values.
@interface SummaryView : NSScrollView
{
    NSArray* rows_;
}
/// Each row is an array of a name and a value.
- (void)showRows:(NSArray*)rows;
@end
