#pragma once

#import <AppKit/AppKit.h>

/// The Summary page: a table of item names and values in display order.
@interface SummaryView : NSScrollView
{
    NSArray* names_;
    NSDictionary* values_;
}
/// `summary` is what a panel's `summaryInfo` gives.
- (void)showSummary:(NSDictionary*)summary;
@end
